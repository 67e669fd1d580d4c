#include "ReplayReport.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>

namespace workbench::replay {

namespace {

/// The text without characters that XML can't contain.
QString forXml(QString text)
{
    for (QChar &character : text) {
        const bool isControl = character.unicode() < 0x20 && character != QLatin1Char('\n') &&
                               character != QLatin1Char('\t');
        if (isControl || character.isSurrogate() || character.unicode() >= 0xfffe)
            character = QChar::ReplacementCharacter;
    }
    return text;
}

/// A test case for JUnit; @p kind is "failure" or "error".
struct Case
{
    QString place;
    QString kind;
    QString message;
};

QList<Case> casesOf(const Result &result)
{
    QList<Case> cases;
    const auto placeOf = [](const QString &file, int line) {
        return QStringLiteral("%1:%2").arg(file).arg(line);
    };
    if (!result.error.isEmpty())
        cases.append({result.file, QStringLiteral("error"), result.error});
    for (const Recording::BadLine &bad : result.badLines)
        cases.append({placeOf(bad.file, bad.number), QStringLiteral("error"), bad.reason});
    for (const Difference &difference : result.differences)
        cases.append(
            {placeOf(result.file, difference.line), QStringLiteral("failure"),
             QStringLiteral("expected %1, found %2").arg(difference.expected, difference.found)});
    if (cases.isEmpty() && result.isEmpty())
        cases.append(
            {result.file, QStringLiteral("error"), QStringLiteral("nothing was compared")});
    return cases;
}

} // namespace

QByteArray toJson(const Result &result)
{
    QJsonArray badLines;
    for (const Recording::BadLine &bad : result.badLines)
        badLines.append(QJsonObject{{QStringLiteral("file"), bad.file},
                                    {QStringLiteral("line"), bad.number},
                                    {QStringLiteral("reason"), bad.reason}});
    QJsonArray differences;
    for (const Difference &difference : result.differences)
        differences.append(QJsonObject{{QStringLiteral("line"), difference.line},
                                       {QStringLiteral("expected"), difference.expected},
                                       {QStringLiteral("found"), difference.found}});
    return QJsonDocument(
               QJsonObject{{QStringLiteral("file"), result.file},
                           {QStringLiteral("error"), result.error},
                           {QStringLiteral("exitCode"), result.exitCode()},
                           {QStringLiteral("inputs"), result.inputs},
                           {QStringLiteral("outputs"), result.outputs},
                           {QStringLiteral("notes"), QJsonArray::fromStringList(result.notes)},
                           {QStringLiteral("badLines"), badLines},
                           {QStringLiteral("differences"), differences}})
        .toJson();
}

QByteArray toJUnit(const Result &result)
{
    const QList<Case> cases = casesOf(result);
    const auto count = [&](const char *kind) {
        return QString::number(std::count_if(cases.cbegin(), cases.cend(), [&](const Case &one) {
            return one.kind == QLatin1String(kind);
        }));
    };
    QByteArray text;
    QXmlStreamWriter xml(&text);
    xml.setAutoFormatting(true);
    xml.writeStartDocument();
    xml.writeStartElement(QStringLiteral("testsuite"));
    xml.writeAttribute(QStringLiteral("name"), QStringLiteral("replay"));
    xml.writeAttribute(QStringLiteral("tests"),
                       QString::number(std::max<qsizetype>(1, cases.size())));
    xml.writeAttribute(QStringLiteral("failures"), count("failure"));
    xml.writeAttribute(QStringLiteral("errors"), count("error"));
    const auto writeCase = [&](const QString &place) {
        xml.writeStartElement(QStringLiteral("testcase"));
        xml.writeAttribute(QStringLiteral("classname"), QStringLiteral("replay"));
        xml.writeAttribute(QStringLiteral("name"), forXml(place));
    };
    for (const Case &one : cases) {
        writeCase(one.place);
        xml.writeStartElement(one.kind);
        xml.writeAttribute(QStringLiteral("message"), forXml(one.message));
        xml.writeEndElement();
        xml.writeEndElement();
    }
    if (cases.isEmpty()) {
        writeCase(result.file);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return text;
}

QString writeReport(const QString &path, const Result &result)
{
    QSaveFile file(path);
    const QByteArray text =
        path.endsWith(QLatin1String(".json")) ? toJson(result) : toJUnit(result);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return {};
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}

} // namespace workbench::replay
