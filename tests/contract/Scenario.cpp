#include "Scenario.h"

#include "LoggingHost.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace check {

using namespace Qt::StringLiterals;

namespace {

/// Appends a line of a file to its last scenario.
/// @return false if no scenario or step precedes a line that needs one
bool add(QList<Scenario> &scenarios, const QString &text, int line)
{
    if (text.startsWith(u'[') && text.endsWith(u']')) {
        scenarios.append({text.mid(1).chopped(1), {}});
        return true;
    }
    if (scenarios.isEmpty())
        return false;
    QList<Scenario::Step> &steps = scenarios.last().steps;
    const QString given = u"given "_s;
    if (!text.startsWith(u"> "_s)) {
        const bool isGiven = text.startsWith(given);
        steps.append({isGiven ? text.mid(given.size()) : text, line, isGiven, {}});
        return true;
    }
    if (steps.isEmpty() || steps.constLast().isGiven)
        return false;
    steps.last().expected.append(text.mid(2));
    return true;
}

/// Returns the trace. A line that matches an expected line with "..." is replaced by that line.
QString abbreviated(const QString &trace, const QStringList &expected)
{
    QStringList lines = trace.split(u'\n');
    const QLatin1String gap("...");
    for (qsizetype i = 0; i < qMin(lines.size(), expected.size()); ++i) {
        const QStringView pattern = expected.at(i);
        const qsizetype position = pattern.indexOf(gap);
        if (position >= 0 && lines.at(i).startsWith(pattern.first(position)) &&
            lines.at(i).endsWith(pattern.mid(position + gap.size())))
            lines[i] = expected.at(i);
    }
    return lines.join(u'\n');
}

} // namespace

QString Scenario::textOf(bool given) const
{
    QStringList lines;
    for (const Step &step : steps) {
        if (step.isGiven == given)
            lines.append(step.text);
    }
    return lines.join(u'\n');
}

QStringList Scenario::expected() const
{
    QStringList lines;
    for (const Step &step : steps)
        lines += step.expected;
    return lines;
}

ScenarioFile ScenarioFile::read(const QString &path)
{
    ScenarioFile result{QFileInfo(path).completeBaseName(), {}, {}};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s: %s", qPrintable(path), qPrintable(file.errorString()));
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n');
    result.statement = lines.constFirst().mid(2);
    for (int line = 1; line <= lines.size(); ++line) {
        const QString text = lines.at(line - 1).trimmed();
        if (!text.isEmpty() && !text.startsWith(u'#') && !add(result.scenarios, text, line))
            qFatal("%s:%d: a [title] or a step must precede this line: %s", qPrintable(path), line,
                   qPrintable(text));
    }
    return result;
}

void playScenarios(CheckContext &context, const ScenarioFile &file)
{
    LoggingHost host(context);
    if (!host)
        return;
    const QByteArray fileName = "tests/contract/scenarios/" + file.name.toLatin1() + ".txt";
    for (const Scenario &scenario : file.scenarios) {
        host->resetTopology();
        host->recreateObject();
        for (const Scenario::Step &step : scenario.steps) {
            const QString trace = host->play(step.text, fileName.constData(), step.line);
            const QString place = u"line %1, %2"_s.arg(step.line).arg(scenario.title);
            if (!step.isGiven)
                context.compare(place, step.expected.join(u'\n'),
                                abbreviated(trace, step.expected));
            else if (trace.contains(u"no method accepts"_s))
                context.fail(place + u": "_s + trace);
        }
    }
    context.summarize(u"%1 scenarios"_s.arg(file.scenarios.size()));
}

} // namespace check
