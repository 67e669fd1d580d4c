#include "Report.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSaveFile>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>

namespace check {

namespace {

int countOf(const QList<Result> &results, Status status)
{
    return int(std::count_if(results.cbegin(), results.cend(),
                             [=](const Result &result) { return result.status == status; }));
}

QString writeFile(const QString &name, const QByteArray &content)
{
    QSaveFile file(name);
    const bool done =
        file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit();
    return done ? QString() : name + QLatin1String(": ") + file.errorString();
}

/// Replaces control characters, which XML can't represent.
QString printable(QString text)
{
    for (QChar &c : text) {
        if (c.unicode() < 0x20 && c != u'\n')
            c = u'?';
    }
    return text;
}

void writeCase(QXmlStreamWriter &xml, const Result &result)
{
    xml.writeStartElement(QStringLiteral("testcase"));
    xml.writeAttribute(QStringLiteral("classname"), QStringLiteral("level%1").arg(result.level));
    xml.writeAttribute(QStringLiteral("name"), result.name);
    xml.writeAttribute(QStringLiteral("time"),
                       QString::number(double(result.milliseconds) / 1000, 'f', 3));
    const QString details = printable(result.more.join(u'\n'));
    if (result.status == Status::Skipped || isFailure(result.status)) {
        xml.writeStartElement(result.status == Status::Skipped ? QStringLiteral("skipped")
                              : result.status == Status::Fail  ? QStringLiteral("failure")
                                                               : QStringLiteral("error"));
        xml.writeAttribute(QStringLiteral("message"), printable(result.line));
        xml.writeAttribute(QStringLiteral("type"), wordFor(result.status));
        xml.writeCharacters(details);
        xml.writeEndElement();
    } else {
        xml.writeTextElement(QStringLiteral("system-out"),
                             wordFor(result.status) + QLatin1String(": ") + printable(result.line) +
                                 u'\n' + details);
    }
    xml.writeEndElement();
}

void writeSuite(QXmlStreamWriter &xml, const LibraryReport &report)
{
    const auto attribute = [&](const QString &name, int count) {
        xml.writeAttribute(name, QString::number(count));
    };
    const QList<Result> &results = report.results;
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), report.library);
    attribute(QStringLiteral("tests"), int(results.size()));
    attribute(QStringLiteral("failures"), countOf(results, Status::Fail));
    attribute(QStringLiteral("errors"),
              countOf(results, Status::Crash) + countOf(results, Status::Timeout));
    attribute(QStringLiteral("skipped"), countOf(results, Status::Skipped));
    for (const Result &result : results)
        writeCase(xml, result);
    xml.writeEndElement();
}

} // namespace

QString textOf(const Result &result)
{
    QString text = wordFor(result.status).leftJustified(8) + result.name.leftJustified(27) + u' ' +
                   result.line;
    for (const QString &line : result.more)
        text += QLatin1String("\n        ") + line;
    return text;
}

QString summaryOf(const QList<Result> &results)
{
    QStringList parts;
    for (const Status status : {Status::Pass, Status::Warning, Status::Fail, Status::Crash,
                                Status::Timeout, Status::Skipped}) {
        if (const int count = countOf(results, status))
            parts.append(QStringLiteral("%1 %2").arg(count).arg(wordFor(status)));
    }
    if (parts.isEmpty())
        return QStringLiteral("no check ran");
    return QStringLiteral("%1 checks: ").arg(results.size()) + parts.join(QLatin1String(", "));
}

int exitCodeFor(const QList<Result> &results)
{
    const bool nothingRan = countOf(results, Status::Skipped) == results.size();
    const bool failed = std::any_of(results.cbegin(), results.cend(),
                                    [](const Result &result) { return isFailure(result.status); });
    return nothingRan || failed ? 1 : 0;
}

int exitCodeFor(const QList<LibraryReport> &reports)
{
    int code = 0;
    for (const LibraryReport &report : reports)
        code = std::max(code, report.exitCode);
    return code;
}

QString writeJson(const QString &file, quint32 seed, const QList<LibraryReport> &reports)
{
    QJsonArray libraries;
    for (const LibraryReport &report : reports) {
        QJsonArray results;
        for (const Result &result : report.results)
            results.append(result.toJson());
        libraries.append(QJsonObject{{QStringLiteral("library"), report.library},
                                     {QStringLiteral("exitCode"), report.exitCode},
                                     {QStringLiteral("results"), results}});
    }
    const QJsonObject json{{QStringLiteral("seed"), qint64(seed)},
                           {QStringLiteral("exitCode"), exitCodeFor(reports)},
                           {QStringLiteral("libraries"), libraries}};
    return writeFile(file, QJsonDocument(json).toJson());
}

QString writeJUnit(const QString &file, const QList<LibraryReport> &reports)
{
    QByteArray content;
    QXmlStreamWriter xml(&content);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuites"));
    for (const LibraryReport &report : reports)
        writeSuite(xml, report);
    xml.writeEndElement();
    xml.writeEndDocument();
    return writeFile(file, content);
}

} // namespace check
