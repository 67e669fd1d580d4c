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

/// Formats the times of bookmarks as operators read them, in one time zone.
///
/// Date and time texts are the costliest part of a record, and they repeat: the offsets of the
/// zone, the texts of days and of times of the day are cached. The formatter is made for the zone
/// and the formats of the system locale at its construction; a cached text does not change
/// afterwards.
class TimeFormatter
{
public:
    /// A time range, "hh:mm:ss - hh:mm:ss" in any locale, and a 0. Without heap memory: a search
    /// formats one for each bookmark.
    using TimeRange = std::array<char, 20>;

    /// @param zone an invalid zone gives empty dates and times, and the separator alone as range
    explicit TimeFormatter(const QTimeZone &zone);

    /// @return true if a new formatter for @p zone and the present system locale would be equal
    bool isValidFor(const QTimeZone &zone) const;

    /// Sets date, date and time, and time range of the record from its start and end: the first two
    /// in the short formats of the system locale.
    void format(BookmarkRecord &record);

    /// Sets the date, and caches date and time for a later format().
    /// @return false, and nothing is set, if they can't be cached: format() follows the system
    /// locale
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

    /// A period in which the zone keeps its offset from UTC.
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
    bool m_isComposed; ///< date and time are formatted as the date, a blank, and the time
    std::vector<Period> m_periods;
    std::unordered_map<qint64, QString> m_dayTexts;
    int m_secondsPerText;             ///< 1 if the time format has seconds, else 60
    std::vector<QString> m_timeTexts; ///< by time of the day; null until needed
};

} // namespace tessaline
