#include "RecordFinder.h"

#include <QtCore/QDateTime>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <limits>
#include <optional>
#include <utility>

namespace workbench {

namespace {

constexpr qsizetype PageSize = 50; ///< fixed by the plug-in
constexpr qint64 Day = 86'400'000;
constexpr qint64 LongestRange = 400 * Day;

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
    // The plug-in sorts all that match for each page: where it can be done without pages, it is.
    if (filter.value(TimeOfDay).toString().isEmpty() &&
        filter.value(QStringLiteral("text")).toString().isEmpty())
        return recordsOfCamera(filter);
    QVariantList found;
    const QList<Range> ranges = rangesOf(filter);
    for (const auto &[first, last] : ranges) {
        QVariantMap narrowed = filter;
        narrowed.insert(Start, first);
        narrowed.insert(End, last);
        found += pluginRecords(narrowed);
    }
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
    const qint64 first = filter.value(Start).toLongLong();
    const qint64 last = filter.value(End).toLongLong();
    found.removeIf([&](const QVariant &record) {
        const qint64 start = startOf(record);
        return start < first || start > last;
    });
    return found;
}

/// The filter's range, or if that is very long, the range in which bookmarks begin.
RecordFinder::Range RecordFinder::daysOf(const QVariantMap &filter) const
{
    const qint64 first = filter.value(Start).toLongLong();
    const qint64 last = filter.value(End).toLongLong();
    if (first > 0 && last - first < LongestRange)
        return {first, last};
    Range range(std::numeric_limits<qint64>::max(), std::numeric_limits<qint64>::min());
    const QVariantList all = recordsOfCamera(filter);
    for (const QVariant &record : all) {
        range.first = std::min(range.first, startOf(record));
        range.second = std::max(range.second, startOf(record));
    }
    return range;
}

/// The time of day on each day of the filter's range, or that range where there is none.
QList<RecordFinder::Range> RecordFinder::rangesOf(const QVariantMap &filter) const
{
    const auto times = timesOf(filter.value(TimeOfDay).toString());
    if (!times)
        return {{filter.value(Start).toLongLong(), filter.value(End).toLongLong()}};
    const auto &[from, to] = *times;
    const auto [first, last] = daysOf(filter);
    QList<Range> ranges;
    if (first > last)
        return ranges;
    const QDate lastDay = QDateTime::fromMSecsSinceEpoch(last, zone()).date();
    // From the day before on: its night may reach into the range.
    for (QDate day = QDateTime::fromMSecsSinceEpoch(first, zone()).date().addDays(-1);
         day <= lastDay; day = day.addDays(1)) {
        const QDate endDay = to > from ? day : day.addDays(1);
        const qint64 begin = QDateTime(day, from, zone()).toMSecsSinceEpoch();
        const qint64 end = QDateTime(endDay, to, zone()).toMSecsSinceEpoch() - 1;
        if (begin <= last && end >= first)
            ranges.append({std::max(begin, first), std::min(end, last)});
    }
    return ranges;
}

} // namespace workbench
