#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QString>
#include <QtCore/QTimeZone>

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tessaline {

/// Formats the times of bookmarks as operators read them, in one time zone.
///
/// Date and time texts are the costliest part of a record, and they repeat: the offsets of the
/// zone, the texts of days and the texts of minutes are cached. The formatter is made for the zone
/// and the formats of the system locale at its construction; a cached text does not change
/// afterwards.
class TimeFormatter
{
public:
    struct Texts
    {
        QString date;      ///< date of the start, in the system locale's short format
        QString dateTime;  ///< date and time of the start, in the system locale's short format
        QString timeRange; ///< times of day of start and end, "hh:mm:ss - hh:mm:ss" in any locale
    };

    /// A time range without heap memory: a search formats one for each bookmark.
    struct RangeText
    {
        std::array<char, 19> characters;
        std::size_t size;

        std::string_view view() const { return {characters.data(), size}; }
    };

    /// @param zone an invalid zone gives empty dates and times, and the separator alone as range
    explicit TimeFormatter(const QTimeZone &zone);

    /// @return true if a new formatter for @p zone and the present system locale would be equal
    bool isValidFor(const QTimeZone &zone) const;

    /// @param start,end milliseconds since the epoch
    Texts format(qint64 start, qint64 end);

    /// Caches what format() needs for a bookmark that starts at @p start.
    /// @return the date of the start, or nullopt if it can't be cached: its texts then follow the
    ///         system locale
    std::optional<QString> cacheDate(qint64 start);

    /// The range of format().
    RangeText timeRange(qint64 start, qint64 end);

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
    QString minuteText(int minuteOfDay);
    QDateTime dateTime(qint64 moment) const;

    QTimeZone m_zone;
    QLocale m_locale;
    QString m_dateFormat;
    QString m_timeFormat;
    bool m_isComposed; ///< date and time are formatted as the date, a blank, and the minute
    std::vector<Period> m_periods;
    std::unordered_map<qint64, QString> m_dayTexts;
    std::vector<QString> m_minuteTexts; ///< by minute of the day; null until needed
};

} // namespace tessaline
