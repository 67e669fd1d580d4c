#include "Scenario.h"

#include "Host.h"

namespace check {

QString withoutIndentation(const char *text)
{
    QStringList lines;
    const QStringList indented = QString::fromUtf8(text).split(u'\n');
    for (const QString &line : indented) {
        if (const QString trimmed = line.trimmed(); !trimmed.isEmpty())
            lines.append(trimmed);
    }
    return lines.join(u'\n');
}

void playScenarios(Trial &trial, std::initializer_list<Scenario> scenarios)
{
    LoggingHost host(trial);
    if (!host)
        return;
    for (const Scenario &scenario : scenarios) {
        host->renewObject();
        host->play(QString::fromUtf8(scenario.before));
        trial.compare(QLatin1String(scenario.title), withoutIndentation(scenario.trace),
                      host->play(QString::fromUtf8(scenario.steps)));
    }
    trial.summarize(QStringLiteral("%1 scenarios").arg(scenarios.size()));
}

} // namespace check
