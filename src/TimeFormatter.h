#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QString>
#include <QtCore/QTimeZone>

#include <array>
#include <optional>
#include <unordered_map>
#include <vector>

namespace tessaline {

struct BookmarkRecord;

/// Formats the times of bookmarks in one time zone and in the system locale of its construction.
///
/// Formatting is the costliest part of a record, and the texts repeat. The formatter therefore
/// caches the offsets of the zone, the texts of days and the texts of times of the day.
class TimeFormatter
{
public:
    /// A time range, "hh:mm:ss - hh:mm:ss" in any locale, and a terminating NUL. Not on the heap:
    /// a search formats one for each bookmark.
    using TimeRange = std::array<char, 20>;

    /// @param zone an invalid zone gives empty dates and times, and " - " as time range
    explicit TimeFormatter(const QTimeZone &zone);

    /// @return true if the formatter is for @p zone and for the present system locale
    bool isValidFor(const QTimeZone &zone) const;

    /// Sets the record's date, date and time, and time range from its start and end. Date and time
    /// have the short formats of the system locale.
    void format(BookmarkRecord &record);

    /// Sets the record's date, and caches date and time for a later format().
    /// @return false if the texts can't be cached; nothing is set then, and a later format() would
    /// use the system locale of that moment
    bool cacheDate(BookmarkRecord &record);

    /// @param start,end milliseconds since the epoch
    TimeRange timeRange(qint64 start, qint64 end);

private:
    /// Wall-clock time in the zone.
    struct LocalTime
    {
        qint64 day;      ///< since 1970-01-01
        int secondOfDay; ///< 0 to 86,399
    };

    /// A period in which the zone's offset from UTC is constant.
    struct Period
    {
        qint64 begin;
        qint64 end; ///< excluded
        qint64 offset;
    };

    std::optional<LocalTime> localTime(qint64 moment);
    qint64 offsetAt(qint64 moment);
    QString dayText(qint64 day);
    QString timeText(int secondOfDay);
    QDateTime dateTime(qint64 moment) const
    {
        return QDateTime::fromMSecsSinceEpoch(moment, m_zone);
    }

    QTimeZone m_zone;
    QLocale m_locale;
    QString m_dateFormat;
    QString m_timeFormat;
    bool m_isComposed; ///< true if the locale writes date and time as the date, a blank, the time
    std::vector<Period> m_periods;
    std::unordered_map<qint64, QString> m_dayTexts;
    int m_secondsPerText;             ///< 1 if the time format has seconds, else 60
    std::vector<QString> m_timeTexts; ///< by time of the day; null until needed
};

} // namespace tessaline
