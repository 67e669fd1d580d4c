#pragma once

#include "Server.h"

#include <QtCore/QStringList>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>

// Tests repeat the names of commands and keys as literals, so that they notice a changed constant.
using namespace Qt::Literals::StringLiterals;

inline QVariantMap record(const QString &description, const QString &camera, qint64 start,
                          qint64 end)
{
    return {{u"CameraID"_s, camera},  {u"LocationID"_s, u"loc"_s},     {u"StartTimestamp"_s, start},
            {u"EndTimestamp"_s, end}, {u"Description"_s, description}, {u"Creator"_s, u"guard"_s},
            {u"Group"_s, u""_s}};
}

/// Parses a payload with the types that clients send: "" is no payload, "{}" an empty map,
/// "BookmarkID=a Group=b" a map, "new@cam" a record, "BookmarkID=a | BookmarkID=b" a list.
inline QVariant payload(const QString &words)
{
    if (words.contains(u'|')) {
        QVariantList list;
        const QStringList elements = words.split(u" | "_s);
        for (const QString &element : elements)
            list.append(payload(element));
        return list;
    }
    if (words.contains(u'@'))
        return record(words.section(u'@', 0, 0), words.section(u'@', 1), 1, 2);
    const QMap<QString, QMetaType> types{{u"StartTimestamp"_s, QMetaType::fromType<qint64>()},
                                         {u"EndTimestamp"_s, QMetaType::fromType<qint64>()},
                                         {u"RecentCnt"_s, QMetaType::fromType<int>()},
                                         {u"reserveHour"_s, QMetaType::fromType<uint>()},
                                         {u"enableRecycle"_s, QMetaType::fromType<bool>()}};
    QVariantMap map;
    const QStringList pairs = words.split(u' ');
    for (const QString &pair : pairs) {
        const QString key = pair.section(u'=', 0, 0);
        QVariant value = pair.section(u'=', 1);
        if (key == u"CameraIDList")
            value = QVariant(value.toString().split(u',', Qt::SkipEmptyParts)).toList();
        else
            value.convert(types.value(key, value.metaType()));
        if (pair.contains(u'='))
            map.insert(key, value);
    }
    return words.isEmpty() ? QVariant() : map;
}

/// Formats a value: a bookmark as "description:group", followed by "?" if it has no identifier;
/// other values with their type.
inline QString inWords(const QVariant &value)
{
    QStringList parts;
    if (value.typeId() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            parts.append(it.key() + u": "_s + inWords(*it));
        if (!map.contains(u"Description"_s))
            return u'{' + parts.join(u", "_s) + u'}';
        const QString group = map.value(u"Group"_s).toString();
        return map.value(u"Description"_s).toString() + (group.isEmpty() ? group : u':' + group) +
               (map.contains(u"BookmarkID"_s) ? u""_s : u"?"_s);
    }
    if (value.typeId() == QMetaType::QVariantList) {
        const QVariantList elements = value.toList();
        for (const QVariant &element : elements)
            parts.append(inWords(element));
        return u'[' + parts.join(u' ') + u']';
    }
    if (value.typeId() == QMetaType::QStringList)
        return u"QStringList "_s + value.toStringList().join(u' ');
    return value.isValid() ? QLatin1String(value.typeName()) + u' ' + value.toString() : u"-"_s;
}

inline QString inWords(const standin::Answer &answer)
{
    return answer.resultCode + u' ' + inWords(answer.result);
}

/// Runs a statement on a file as another application would.
inline bool runSql(const QString &path, const QString &statement)
{
    const QString name = u"outsider"_s;
    bool ok = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, name);
        database.setDatabaseName(path);
        ok = database.open() && QSqlQuery(database).exec(statement);
    }
    QSqlDatabase::removeDatabase(name);
    return ok;
}
