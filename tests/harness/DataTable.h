#pragma once

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>

#include <initializer_list>

/// Data rows as a table of text: a line for each row, "|" between its title and its cells, all of
/// them QStrings. A cell in quotes keeps its outer spaces.
inline void addTable(std::initializer_list<const char *> columns, const QString &table)
{
    for (const char *column : columns)
        QTest::addColumn<QString>(column);
    const QStringList lines = table.trimmed().split(u'\n');
    for (const QString &line : lines) {
        const QStringList cells = line.split(u'|');
        if (cells.size() != qsizetype(columns.size()) + 1)
            qFatal("\"%s\" has %d cells", qPrintable(line), int(cells.size()));
        QTestData &row = QTest::newRow(qPrintable(cells.constFirst().trimmed()));
        for (const QString &cell : cells.mid(1)) {
            const QString text = cell.trimmed();
            row << (text.startsWith(u'"') ? text.mid(1, text.size() - 2) : text);
        }
    }
}

/// A cell of the present row of such a table.
inline qint64 numberIn(const char *column)
{
    return static_cast<QString *>(QTest::qData(column, QMetaType::QString))->toLongLong();
}

/// A map as QML writes it; numbers become qlonglong, or double when they are not whole.
inline QVariantMap mapOf(const QString &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (!document.isObject())
        qFatal("%s is no map", qPrintable(json));
    return document.object().toVariantMap();
}
