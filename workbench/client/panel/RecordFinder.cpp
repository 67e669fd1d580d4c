#include "RecordFinder.h"

#include <QtCore/QDateTime>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace workbench {

namespace {

constexpr qsizetype PageSize = 50; ///< fixed by the plug-in

constexpr QLatin1String Start("startTimestamp");
constexpr QLatin1String End("endTimestamp");
constexpr QLatin1String Records("bookmarkList");
constexpr QLatin1String TimeOfDay("timeOfDay");

qint64 startOf(const QVariant &record)
{
    return record.toMap().value(Start).toLongLong();
}

/// @return true if the plug-in's filter "text" would keep the record
bool hasText(const QVariantMap &record, const QString &text)
{
    constexpr QLatin1String searched[] = {QLatin1String("description"), QLatin1String("cameraName"),
                                          QLatin1String("creator"),
                                          QLatin1String("displayTimeRange")};
    return text.isEmpty() ||
           std::any_of(std::begin(searched), std::end(searched), [&](QLatin1String key) {
               return record.value(key).toString().contains(text, Qt::CaseInsensitive);
           });
}

std::optional<std::pair<QTime, QTime>> timesOf(const QString &text)
{
    static const QRegularExpression pattern(
        QStringLiteral("^\\s*(\\d\\d?:\\d\\d)\\D+(\\d\\d?:\\d\\d)\\s*$"));
    const QRegularExpressionMatch match = pattern.match(text);
    const QTime from = QTime::fromString(match.captured(1), QStringLiteral("H:mm"));
    const QTime to = QTime::fromString(match.captured(2), QStringLiteral("H:mm"));
    if (!from.isValid() || !to.isValid())
        return std::nullopt;
    return std::pair(from, to);
}

/// A range that ends before it begins includes midnight.
bool isWithin(QTime time, const std::pair<QTime, QTime> &times)
{
    const auto &[from, to] = times;
    return from < to ? from <= time && time < to : from <= time || time < to;
}

/// A record with its sort keys, because reading them from the map is slow.
struct Row
{
    qint64 start;
    QString title;
    QVariant record;
};

/// Sorts like the plug-in: groups by title, days by date; within a group the newest first.
QVariantList sorted(const QVariantList &records, const QString &groupKey, bool ascending)
{
    QList<Row> rows;
    rows.reserve(records.size());
    for (const QVariant &record : records)
        rows.append({startOf(record), record.toMap().value(groupKey).toString(), record});
    const bool byDate = groupKey.startsWith(QLatin1String("display"));
    std::stable_sort(rows.begin(), rows.end(), [&](const Row &a, const Row &b) {
        if (a.title == b.title)
            return a.start > b.start;
        const bool isLess = byDate ? a.start < b.start : a.title < b.title;
        return isLess == ascending;
    });
    QVariantList list;
    list.reserve(rows.size());
    for (const Row &row : std::as_const(rows))
        list.append(row.record);
    return list;
}

QVariantList grouped(const QVariantList &records, const QString &groupKey)
{
    QVariantList groups;
    QString title;
    QVariantList members;
    const auto close = [&] {
        if (!members.isEmpty())
            groups.append(QVariantMap{{QStringLiteral("title"), title}, {Records, members}});
        members.clear();
    };
    for (const QVariant &record : records) {
        const QString next = record.toMap().value(groupKey).toString();
        if (next != title)
            close();
        title = next;
        members.append(record);
    }
    close();
    return groups;
}

} // namespace

bool RecordFinder::isTimeOfDay(const QString &text)
{
    return text.isEmpty() || timesOf(text);
}

QVariantMap RecordFinder::page(const QVariantMap &filter) const
{
    if (filter.value(TimeOfDay).toString().isEmpty()) {
        QVariantMap page;
        QMetaObject::invokeMethod(m_plugin, "getFilteredBookmarkList",
                                  Q_RETURN_ARG(QVariantMap, page), Q_ARG(QVariantMap, filter));
        return page;
    }
    QString groupKey = filter.value(QStringLiteral("groupKey")).toString();
    if (groupKey == QLatin1String("displayTimeRange"))
        groupKey = QStringLiteral("displayDate");
    const QVariantList found =
        sorted(records(filter), groupKey, filter.value(QStringLiteral("ascending")).toBool());
    qsizetype first = filter.value(QStringLiteral("pageNumber")).toLongLong() * PageSize;
    if (first >= found.size())
        first = 0;
    return {{QStringLiteral("totalBookmarkNumber"), found.size()},
            {QStringLiteral("bookmarkGroupList"), grouped(found.mid(first, PageSize), groupKey)}};
}

QVariantList RecordFinder::records(const QVariantMap &filter) const
{
    // One call for all records: for pages of 50 the plug-in would search and sort each time.
    QVariantList found;
    QMetaObject::invokeMethod(m_plugin, "getBookmarkListByNodeID",
                              Q_RETURN_ARG(QVariantList, found),
                              Q_ARG(QString, filter.value(QStringLiteral("nodeID")).toString()));
    const qint64 first = filter.value(Start).toLongLong();
    const qint64 last = filter.value(End).toLongLong();
    const QString text = filter.value(QStringLiteral("text")).toString();
    const auto times = timesOf(filter.value(TimeOfDay).toString());
    const QTimeZone zone = this->zone();
    found.removeIf([&](const QVariant &element) {
        const QVariantMap record = element.toMap();
        const qint64 start = record.value(Start).toLongLong();
        // Compare local times, because a change of the clocks skips or repeats some times.
        return start < first || start > last || !hasText(record, text) ||
               (times && !isWithin(QDateTime::fromMSecsSinceEpoch(start, zone).time(), *times));
    });
    return found;
}

} // namespace workbench
