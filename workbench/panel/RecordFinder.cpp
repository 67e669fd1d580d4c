#include "RecordFinder.h"

#include <QtCore/QDateTime>
#include <QtCore/QMap>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <optional>
#include <utility>

namespace workbench {

namespace {

constexpr qsizetype PageSize = 50; ///< fixed by the plug-in
constexpr qint64 Day = 86'400'000;
constexpr qint64 LongRange = 400 * Day;

constexpr QLatin1String Start("startTimestamp");
constexpr QLatin1String End("endTimestamp");
constexpr QLatin1String PageNumber("pageNumber");
constexpr QLatin1String Total("totalBookmarkNumber");
constexpr QLatin1String Groups("bookmarkGroupList");
constexpr QLatin1String Records("bookmarkList");
constexpr QLatin1String TimeOfDay("timeOfDay");

qint64 startOf(const QVariant &record)
{
    return record.toMap().value(Start).toLongLong();
}

std::pair<qint64, qint64> rangeOf(const QVariantMap &filter)
{
    return {filter.value(Start).toLongLong(), filter.value(End).toLongLong()};
}

bool isLong(const QVariantMap &filter)
{
    const auto [first, last] = rangeOf(filter);
    return first < 0 || last - first >= LongRange;
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

/// A time of day that ends before it begins goes on over midnight.
bool isWithin(QTime time, const std::pair<QTime, QTime> &times)
{
    const auto &[from, to] = times;
    return from < to ? from <= time && time < to : from <= time || time < to;
}

/// A record with the values that it is sorted by: reading them from the map takes longer.
struct Row
{
    qint64 start;
    QString title;
    QVariant record;
};

/// Sorts as the plug-in does: groups by title, days by date, and the newest first within a group.
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
    if (filter.value(TimeOfDay).toString().isEmpty())
        return pluginPage(filter);
    QString groupKey = filter.value(QStringLiteral("groupKey")).toString();
    if (groupKey == QLatin1String("displayTimeRange"))
        groupKey = QStringLiteral("displayDate");
    const QVariantList found =
        sorted(records(filter), groupKey, filter.value(QStringLiteral("ascending")).toBool());
    qsizetype first = filter.value(PageNumber).toLongLong() * PageSize;
    if (first >= found.size())
        first = 0;
    return {{Total, found.size()}, {Groups, grouped(found.mid(first, PageSize), groupKey)}};
}

QVariantList RecordFinder::records(const QVariantMap &filter) const
{
    const auto times = timesOf(filter.value(TimeOfDay).toString());
    QVariantList found;
    // The plug-in sorts all that match for each page: where it can be done without pages, it is.
    if (filter.value(QStringLiteral("text")).toString().isEmpty() && (!times || isLong(filter))) {
        found = recordsOfCamera(filter);
    } else {
        const QList<Range> ranges = times ? daysOf(filter) : QList<Range>{rangeOf(filter)};
        for (const auto &[first, last] : ranges) {
            QVariantMap narrowed = filter;
            narrowed.insert(Start, first);
            narrowed.insert(End, last);
            found += pluginRecords(narrowed);
        }
    }
    // By the clock at each moment, as clocks that change skip or repeat some times.
    if (times)
        found.removeIf([&](const QVariant &record) {
            return !isWithin(QDateTime::fromMSecsSinceEpoch(startOf(record), zone()).time(),
                             *times);
        });
    return found;
}

QVariantMap RecordFinder::pluginPage(const QVariantMap &filter) const
{
    QVariantMap page;
    QMetaObject::invokeMethod(m_plugin, "getFilteredBookmarkList", Q_RETURN_ARG(QVariantMap, page),
                              Q_ARG(QVariantMap, filter));
    return page;
}

QVariantList RecordFinder::pluginRecords(const QVariantMap &filter) const
{
    QVariantList found;
    QVariantMap wanted = filter;
    for (int number = 0;; ++number) {
        wanted.insert(PageNumber, number);
        const QVariantMap page = pluginPage(wanted);
        const QVariantList groups = page.value(Groups).toList();
        for (const QVariant &group : groups)
            found += group.toMap().value(Records).toList();
        if (groups.isEmpty() || found.size() >= page.value(Total).toLongLong())
            return found;
    }
}

/// All that begin in the filter's range, whatever their texts.
QVariantList RecordFinder::recordsOfCamera(const QVariantMap &filter) const
{
    QVariantList found;
    QMetaObject::invokeMethod(m_plugin, "getBookmarkListByNodeID",
                              Q_RETURN_ARG(QVariantList, found),
                              Q_ARG(QString, filter.value(QStringLiteral("nodeID")).toString()));
    found.removeIf([range = rangeOf(filter)](const QVariant &record) {
        const qint64 start = startOf(record);
        return start < range.first || start > range.second;
    });
    return found;
}

/// Ranges of a day each in which bookmarks of the filter begin: short, as the plug-in sorts all of
/// a range for each of its pages.
QList<RecordFinder::Range> RecordFinder::daysOf(const QVariantMap &filter) const
{
    const auto [first, last] = rangeOf(filter);
    QList<Range> days;
    if (!isLong(filter)) {
        for (qint64 begin = first; last - begin >= Day; begin += Day)
            days.append({begin, begin + Day - 1});
        days.append({first + days.size() * Day, last});
        return days;
    }
    QMap<qint64, Range> ranges;
    const QVariantList all = recordsOfCamera(filter);
    for (const QVariant &record : all) {
        const qint64 start = startOf(record);
        Range &range =
            ranges.insert(start / Day, ranges.value(start / Day, {start, start})).value();
        range = {std::min(range.first, start), std::max(range.second, start)};
    }
    return ranges.values();
}

} // namespace workbench
