#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QString>
#include <QtCore/QTimeZone>

#include <optional>
#include <unordered_map>
#include <vector>

namespace tessaline {

/// Makes what an operator reads of the times of bookmarks, in one time zone.
///
/// Date and time texts are the costliest part of a record, and they repeat: so the offsets of the
/// zone, the texts of days and the texts of minutes are kept. They hold for the zone and for the
/// formats of the system locale that were in force at construction.
class DisplayTexts
{
public:
    struct Texts
    {
        QString date;      ///< date of the start, in the system locale's short format
        QString dateTime;  ///< date and time of the start, in the system locale's short format
        QString timeRange; ///< times of day of start and end, "hh:mm:ss - hh:mm:ss" everywhere
    };

    /// In an invalid zone no time has a text: the parts are empty, and the range is the separator
    /// alone.
    explicit DisplayTexts(const QTimeZone &zone);

    /// Whether the texts are still right: for this zone, and for the system locale of now.
    bool holdFor(const QTimeZone &zone) const;

    /// The texts of the stretch from @p start to @p end, in milliseconds since the epoch.
    Texts of(qint64 start, qint64 end);

private:
    /// A moment on the clock of the zone.
    struct LocalTime
    {
        qint64 day;      ///< since 1970-01-01
        int secondOfDay; ///< 0 to 86,399
    };

    /// A stretch of time in which the zone keeps its offset.
    struct Span
    {
        qint64 begin;
        qint64 end; ///< excluded
        qint64 offset;
    };

    std::optional<LocalTime> localTime(qint64 moment);
    qint64 offsetAt(qint64 moment);
    QString dayText(qint64 day);
    QString timeText(int minuteOfDay);
    Texts slowly(qint64 start, qint64 end) const;

    QTimeZone m_zone;
    QLocale m_locale;
    QString m_dateFormat;
    QString m_timeFormat;
    bool m_isSplittable; ///< the text of date and time is that of the date, a blank, that of the
                         ///< minute
    std::vector<Span> m_spans;
    std::unordered_map<qint64, QString> m_dayTexts;
    std::vector<QString> m_timeTexts; ///< by minute of the day; null until asked for
};

} // namespace tessaline
