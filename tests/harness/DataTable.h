#pragma once

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>

#include <initializer_list>

/// Adds columns of type QString and the rows of a table to the test's data. A line has a row's
/// title and its cells, separated by "|". Outer spaces of a cell are removed unless it is in
/// quotes.
inline void addTable(std::initializer_list<const char *> columns, const QString &table)
{
    for (const char *column : columns)
        QTest::addColumn<QString>(column);
    const QStringList lines = table.trimmed().split(u'\n');
    for (const QString &line : lines) {
        const QStringList cells = line.split(u'|');
        if (cells.size() != qsizetype(columns.size()) + 1)
            qFatal("\"%s\": expected %d cells, found %d", qPrintable(line), int(columns.size()) + 1,
                   int(cells.size()));
        QTestData &row = QTest::newRow(qPrintable(cells.constFirst().trimmed()));
        for (const QString &cell : cells.mid(1)) {
            const QString text = cell.trimmed();
            row << (text.startsWith(u'"') ? text.mid(1, text.size() - 2) : text);
        }
    }
}

/// @return a cell of the current row of such a table, as a number
inline qint64 numberIn(const char *column)
{
    return static_cast<QString *>(QTest::qData(column, QMetaType::QString))->toLongLong();
}

/// @return the map in a JSON text; whole numbers become qlonglong, others double
inline QVariantMap mapOf(const QString &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (!document.isObject())
        qFatal("not a JSON object: %s", qPrintable(json));
    return document.object().toVariantMap();
}
