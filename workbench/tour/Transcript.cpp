#include "Transcript.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonValue>

namespace workbench {

namespace {

/// Formats a value on one line, as JSON if possible.
QString oneLine(const QVariant &value)
{
    if (!value.isValid())
        return QStringLiteral("-");
    if (value.canConvert<QObject *>())
        return QLatin1String(value.value<QObject *>() ? "a model" : "null");
    // A JSON document must be an array or object: format an array and remove its brackets.
    const QJsonArray list{QJsonValue::fromVariant(value)};
    const QByteArray text = QJsonDocument(list).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(text.mid(1, text.size() - 2));
}

QString joined(const QVariantList &arguments)
{
    QStringList texts;
    for (const QVariant &argument : arguments)
        texts.append(oneLine(argument));
    return texts.join(QLatin1String(", "));
}

QString stationOf(const standin::Traffic &traffic)
{
    return traffic.relayPath.isEmpty() ? QStringLiteral("connected server") : traffic.relayPath;
}

} // namespace

Transcript::Transcript(FILE *file, bool verbose, QObject *parent)
    : QObject(parent)
    , m_out(file)
    , m_verbose(verbose)
{
}

void Transcript::printStep(const QString &title)
{
    m_out << '\n' << ++m_steps << ". " << title << '\n';
    m_out.flush();
}

void Transcript::printCall(const QString &method, const QVariantList &arguments)
{
    printLine("call    ", method + QLatin1Char('(') + joined(arguments) + QLatin1Char(')'));
}

void Transcript::printResult(const QVariant &result)
{
    // A page of records is too long; the step prints the relevant columns.
    if (!result.isValid() || (!m_verbose && result.typeId() > QMetaType::QString))
        return;
    printLine("   gives", oneLine(result));
}

void Transcript::printTraffic(const standin::Traffic &traffic)
{
    using Kind = standin::Traffic::Kind;
    QString text = traffic.name;
    const char *mark = nullptr;
    switch (traffic.kind) {
    case Kind::Sent:
        mark = "  send >";
        text += QLatin1String(" to ") + stationOf(traffic);
        if (!traffic.accepted)
            text += QLatin1String(", rejected");
        break;
    case Kind::Answered:
        mark = "answer <";
        text += QLatin1String(" from ") + stationOf(traffic) + QLatin1String(", code ") +
                traffic.resultCode;
        break;
    case Kind::Event:
        mark = " event <";
        text += QLatin1String(" from ") + stationOf(traffic);
        break;
    }
    if (m_verbose)
        text += QLatin1String(": ") + oneLine(traffic.value);
    printLine(mark, text);
}

void Transcript::printSignal(const QString &name, const QVariantList &arguments)
{
    printLine("signal !", name + QLatin1Char('(') + joined(arguments) + QLatin1Char(')'));
}

void Transcript::printRows(const QString &title, const QVariantList &rows)
{
    printLine("rows    ", title + QLatin1String(": ") + QString::number(rows.size()));
    for (const QVariant &row : rows)
        printLine("       |", row.toStringList().join(QLatin1String("  |  ")));
}

void Transcript::printCheck(bool passed, const QString &what)
{
    ++m_checks;
    if (!passed)
        ++m_failures;
    printLine(passed ? "ok      " : "FAILED  ", what);
}

void Transcript::printSummary()
{
    m_out << '\n' << m_checks - m_failures << " checks passed, " << m_failures << " failed.\n";
    m_out.flush();
}

void Transcript::printLine(const char *mark, const QString &text)
{
    m_out << "   " << mark << ' ' << text << '\n';
    m_out.flush();
}

} // namespace workbench
