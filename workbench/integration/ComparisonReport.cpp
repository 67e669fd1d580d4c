#include "ComparisonReport.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>
#include <QtCore/QXmlStreamWriter>

#include <algorithm>

namespace workbench {

namespace {

/// Removes the characters that XML can't contain.
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

/// A test case of JUnit, passed if the kind is empty. The kind is "failure" or "error".
struct Case
{
    QString place;
    QString kind;
    QString message;
};

QList<Case> casesOf(const Comparison &comparison)
{
    QList<Case> cases;
    const auto placeOf = [](const QString &file, int line) {
        return QStringLiteral("%1:%2").arg(file).arg(line);
    };
    if (!comparison.error.isEmpty())
        cases.append({comparison.file, QStringLiteral("error"), comparison.error});
    for (const Recording::BadLine &bad : comparison.badLines)
        cases.append({placeOf(bad.file, bad.number), QStringLiteral("error"), bad.reason});
    for (const Difference &difference : comparison.differences) {
        if (difference.cause < 0)
            cases.append({placeOf(comparison.file, difference.line), QStringLiteral("failure"),
                          difference.foldedText()});
    }
    if (cases.isEmpty() && comparison.isEmpty())
        cases.append(
            {comparison.file, QStringLiteral("error"), QStringLiteral("nothing was compared")});
    return cases;
}

} // namespace

QByteArray toJson(const Comparison &comparison)
{
    QJsonArray badLines;
    for (const Recording::BadLine &bad : comparison.badLines)
        badLines.append(QJsonObject{{QStringLiteral("file"), bad.file},
                                    {QStringLiteral("line"), bad.number},
                                    {QStringLiteral("reason"), bad.reason}});
    QJsonArray differences;
    for (const Difference &difference : comparison.differences)
        differences.append(QJsonObject{{QStringLiteral("line"), difference.line},
                                       {QStringLiteral("otherLine"), difference.otherLine},
                                       {QStringLiteral("cause"), difference.cause},
                                       {QStringLiteral("expected"), difference.expected},
                                       {QStringLiteral("found"), difference.found}});
    return QJsonDocument(
               QJsonObject{{QStringLiteral("file"), comparison.file},
                           {QStringLiteral("otherFile"), comparison.otherFile},
                           {QStringLiteral("error"), comparison.error},
                           {QStringLiteral("exitCode"), comparison.exitCode()},
                           {QStringLiteral("inputs"), comparison.inputs},
                           {QStringLiteral("outputs"), comparison.outputs},
                           {QStringLiteral("notes"), QJsonArray::fromStringList(comparison.notes)},
                           {QStringLiteral("badLines"), badLines},
                           {QStringLiteral("differences"), differences}})
        .toJson();
}

Comparison comparisonFromJson(const QByteArray &text)
{
    const QJsonObject json = QJsonDocument::fromJson(text).object();
    Comparison comparison;
    comparison.file = json.value(QLatin1String("file")).toString();
    comparison.otherFile = json.value(QLatin1String("otherFile")).toString();
    comparison.error = json.value(QLatin1String("error")).toString();
    comparison.inputs = json.value(QLatin1String("inputs")).toInt();
    comparison.outputs = json.value(QLatin1String("outputs")).toInt();
    comparison.notes = json.value(QLatin1String("notes")).toVariant().toStringList();
    const QJsonArray badLines = json.value(QLatin1String("badLines")).toArray();
    for (const auto &bad : badLines)
        comparison.badLines.append({bad[QLatin1String("file")].toString(),
                                    bad[QLatin1String("line")].toInt(),
                                    bad[QLatin1String("reason")].toString()});
    const QJsonArray differences = json.value(QLatin1String("differences")).toArray();
    for (const auto &difference : differences)
        comparison.add({difference[QLatin1String("line")].toInt(),
                        difference[QLatin1String("otherLine")].toInt(),
                        difference[QLatin1String("expected")].toString(),
                        difference[QLatin1String("found")].toString(),
                        difference[QLatin1String("cause")].toInt(-1)});
    return comparison;
}

QByteArray toJUnit(const Comparison &comparison)
{
    const QList<Case> cases = casesOf(comparison);
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
        writeCase(comparison.file);
        xml.writeEndElement();
    }
    xml.writeEndDocument();
    return text;
}

QString writeReport(const QString &path, const Comparison &comparison)
{
    QSaveFile file(path);
    const QByteArray text =
        path.endsWith(QLatin1String(".json")) ? toJson(comparison) : toJUnit(comparison);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit())
        return {};
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}

} // namespace workbench
