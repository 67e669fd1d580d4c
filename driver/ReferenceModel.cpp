#include "ReferenceModel.h"

#include "Describe.h"
#include "topology/CameraKey.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

#include <algorithm>
#include <cmath>
#include <limits>

namespace referencemodel {

using namespace Qt::StringLiterals;

namespace {

QString textOf(const QVariant &record, const QString &key)
{
    return record.toMap().value(key).toString();
}

struct Texts
{
    QString cameraName, date, dateTime, timeRange;
};

Texts textsOf(const QVariantMap &record, const QString &relayPath, const QVariantMap &camNames,
              const QTimeZone &zone)
{
    const QLocale locale = QLocale::system();
    const qint64 start = record.value(u"StartTimestamp"_s).toLongLong();
    const qint64 end = record.value(u"EndTimestamp"_s).toLongLong();
    const QDateTime from = QDateTime::fromMSecsSinceEpoch(start, zone);
    const QDateTime to = QDateTime::fromMSecsSinceEpoch(end, zone);
    const QString key = standin::cameraKey(relayPath, record.value(u"CameraID"_s).toString());
    return {camNames.value(relayPath).toString() + u" - "_s + camNames.value(key).toString(),
            locale.toString(from.date(), QLocale::ShortFormat),
            locale.toString(from, QLocale::ShortFormat),
            from.toString(u"hh:mm:ss"_s) + u" - "_s + to.toString(u"hh:mm:ss"_s)};
}

template <typename Predicate>
void keepIf(QVariantList &list, Predicate matches)
{
    QVariantList kept;
    for (const QVariant &record : std::as_const(list)) {
        if (matches(record))
            kept.append(record);
    }
    list = kept;
}

} // namespace

QVariantMap displayRecord(const QVariantMap &record, const QString &relayPath,
                          const QVariantMap &camNames, const QTimeZone &zone)
{
    const Texts texts = textsOf(record, relayPath, camNames, zone);
    return {{u"bookmarkID"_s, record.value(u"BookmarkID"_s).toString()},
            {u"cameraID"_s, record.value(u"CameraID"_s).toString()},
            {u"relayPath"_s, relayPath},
            {u"startTimestamp"_s, record.value(u"StartTimestamp"_s).toLongLong()},
            {u"endTimestamp"_s, record.value(u"EndTimestamp"_s).toLongLong()},
            {u"description"_s, record.value(u"Description"_s).toString()},
            {u"creator"_s, record.value(u"Creator"_s).toString()},
            {u"group"_s, record.value(u"Group"_s).toString()},
            {u"cameraName"_s, texts.cameraName},
            {u"displayDate"_s, texts.date},
            {u"displayDateTime"_s, texts.dateTime},
            {u"locID"_s, record.value(u"LocationID"_s).toString()},
            {u"displayTimeRange"_s, texts.timeRange}};
}

QMap<int, QVariant> timelineItem(const QVariantMap &record, const QString &relayPath,
                                 const QVariantMap &camNames, const QTimeZone &zone)
{
    const Texts texts = textsOf(record, relayPath, camNames, zone);
    const QString id = record.value(u"BookmarkID"_s).toString();
    const QString camera = record.value(u"CameraID"_s).toString();
    return {{257, id},
            {258, camera},
            {261, record.value(u"StartTimestamp"_s).toLongLong()},
            {264, record.value(u"EndTimestamp"_s).toLongLong()},
            {262, 0},
            {263, 0},
            {265, 0},
            {269, id},
            {270, camera},
            {271, relayPath},
            {272, record.value(u"Description"_s).toString()},
            {273, record.value(u"Creator"_s).toString()},
            {274, record.value(u"Group"_s).toString()},
            {275, texts.cameraName},
            {276, texts.date},
            {277, texts.dateTime},
            {278, record.value(u"LocationID"_s).toString()},
            {279, texts.timeRange}};
}

void filterByTimestamp(QVariantList &list, qint64 start, qint64 end)
{
    keepIf(list, [&](const QVariant &record) {
        const qint64 value = record.toMap().value(u"startTimestamp"_s).toLongLong();
        return start <= value && value <= end;
    });
}

void filterByText(QVariantList &list, const QString &text)
{
    if (text.isEmpty())
        return;
    const QStringList fields{u"cameraName"_s, u"creator"_s, u"description"_s,
                             u"displayTimeRange"_s};
    keepIf(list, [&](const QVariant &record) {
        return std::any_of(fields.cbegin(), fields.cend(), [&](const QString &field) {
            return textOf(record, field).contains(text, Qt::CaseInsensitive);
        });
    });
}

void filterByNodeID(QVariantList &list, const QString &nodeID)
{
    if (nodeID.isEmpty())
        return;
    keepIf(list, [&](const QVariant &record) {
        return standin::cameraKey(textOf(record, u"relayPath"_s), textOf(record, u"cameraID"_s)) ==
               nodeID;
    });
}

void filterByPage(QVariantList &list, int pageSize, int pageNumber)
{
    const int pages = int(std::ceil(float(list.size()) / float(pageSize)));
    list = list.mid(qsizetype(pageSize) * (pageNumber >= pages ? 0 : pageNumber), pageSize);
}

void sortByKey(QVariantList &list, const QString &key, bool ascending)
{
    if (key == "displayTimeRange"_L1 || key == "displayDate"_L1) {
        const QString format = QLocale::system().dateFormat(QLocale::ShortFormat);
        std::sort(list.begin(), list.end(), [&](const QVariant &left, const QVariant &right) {
            const auto a = QDateTime::fromString(textOf(left, u"displayDate"_s), format);
            const auto b = QDateTime::fromString(textOf(right, u"displayDate"_s), format);
            return ascending ? a < b : a > b;
        });
        return;
    }
    std::sort(list.begin(), list.end(), [&](const QVariant &left, const QVariant &right) {
        const QString a = textOf(left, key);
        const QString b = textOf(right, key);
        return ascending ? a < b : b < a;
    });
}

QVariantList groups(const QVariantList &list, QString groupKey)
{
    if (groupKey == "displayTimeRange"_L1)
        groupKey = u"displayDate"_s;
    QStringList titles;
    QHash<QString, QVariantList> recordsOf;
    for (const QVariant &record : list) {
        const QString title = textOf(record, groupKey);
        if (!recordsOf.contains(title))
            titles.append(title);
        recordsOf[title].append(record);
    }
    QVariantList result;
    for (const QString &title : std::as_const(titles))
        result.append(QVariantMap{{u"title"_s, title}, {u"bookmarkList"_s, recordsOf[title]}});
    return result;
}

QVariantMap filteredPage(QVariantList list, const QVariantMap &filterMap, int pageSize)
{
    const QString groupKey = filterMap.value(u"groupKey"_s).toString();
    filterByTimestamp(list, filterMap.value(u"startTimestamp"_s).toLongLong(),
                      filterMap.value(u"endTimestamp"_s).toLongLong());
    filterByText(list, filterMap.value(u"text"_s).toString());
    filterByNodeID(list, filterMap.value(u"nodeID"_s).toString());
    const qint64 total = list.size();
    sortByKey(list, u"startTimestamp"_s, false);
    sortByKey(list, groupKey, filterMap.value(u"ascending"_s).toBool());
    filterByPage(list, pageSize, filterMap.value(u"pageNumber"_s).toInt());
    return {{u"totalBookmarkNumber"_s, total}, {u"bookmarkGroupList"_s, groups(list, groupKey)}};
}

namespace {

QVariantList recordsOf(const QVariantMap &page)
{
    QVariantList records;
    const QVariantList groupList = page.value(u"bookmarkGroupList"_s).toList();
    for (const QVariant &group : groupList)
        records += group.toMap().value(u"bookmarkList"_s).toList();
    return records;
}

/// Returns the sort values of the records of a page, one on each line.
QString sortValues(const QVariantMap &page, const QString &key)
{
    const bool byDate = key == "displayTimeRange"_L1 || key == "displayDate"_L1;
    const QString format = QLocale::system().dateFormat(QLocale::ShortFormat);
    QStringList values;
    for (const QVariant &record : recordsOf(page)) {
        const QString text = textOf(record, byDate ? u"displayDate"_s : key);
        values.append(byDate ? QDateTime::fromString(text, format).toString(Qt::ISODate) : text);
    }
    return values.join(u'\n');
}

} // namespace

QString differenceOf(const QVariantMap &page, const QVariantList &list,
                     const QVariantMap &filterMap)
{
    const QVariantMap expected = filteredPage(list, filterMap);
    const QString key = filterMap.value(u"groupKey"_s).toString();
    const auto difference = [&](const char *what, const QString &found, const QString &wanted) {
        return u"%1: expected %2, found %3"_s.arg(QLatin1String(what), wanted, found);
    };
    const QString total = u"totalBookmarkNumber"_s;
    const QStringList keys = page.keys();
    if (keys != expected.keys() || describe(page[total]) != describe(expected[total]))
        return difference("keys and total", describe(page), describe(expected[total]));
    if (sortValues(page, key) != sortValues(expected, key))
        return difference("order", sortValues(page, key), sortValues(expected, key));
    const QVariantList grouped = groups(recordsOf(page), key);
    if (page[u"bookmarkGroupList"_s].toList() != grouped)
        return difference("groups", describe(page[u"bookmarkGroupList"_s]), describe(grouped));
    // The end of a page may separate records with equal sort values, so any of these may be on it.
    QVariantMap allPages = filterMap;
    allPages[u"pageNumber"_s] = 0;
    QVariantList matching =
        recordsOf(filteredPage(list, allPages, std::numeric_limits<int>::max()));
    for (const QVariant &record : recordsOf(page)) {
        if (!matching.removeOne(record))
            return difference("records", describe(record),
                              u"a matching record that is not repeated"_s);
    }
    return {};
}

QMap<QString, QVariantList> groupBatch(const QVariantList &targets, qint64 start, qint64 end,
                                       const QString &desc, const QString &creator,
                                       const QString &group)
{
    QMap<QString, QVariantList> entriesOf;
    for (const QVariant &element : targets) {
        const QVariantMap entry{{u"CameraID"_s, textOf(element, u"CameraID"_s)},
                                {u"LocationID"_s, textOf(element, u"LocationID"_s)},
                                {u"StartTimestamp"_s, start},
                                {u"EndTimestamp"_s, end},
                                {u"Description"_s, desc},
                                {u"Creator"_s, creator},
                                {u"Group"_s, group}};
        QVariantList &entries = entriesOf[textOf(element, u"relayPath"_s)];
        if (!entries.contains(entry))
            entries.append(entry);
    }
    return entriesOf;
}

} // namespace referencemodel
