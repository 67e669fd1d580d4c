#include "TimeFormatter.h"

#include "BookmarkRecord.h"

#include <algorithm>
#include <iterator>

namespace tessaline {

namespace {

constexpr int SecondsPerMinute = 60;
constexpr int SecondsPerDay = 86'400;
constexpr qint64 MsPerDay = qint64(1000) * SecondsPerDay;
constexpr qint64 JulianDayOfEpoch = 2'440'588;

/// Some 126 years. For times farther from the epoch QDateTime computes each text: the cache needs
/// the zone's transitions, which may be missing there.
constexpr qint64 MaxCachedMs = 4'000'000'000'000;

/// Returns true if the locale writes date and time as the date, a blank and the time. False for an
/// invalid zone, where all texts are empty.
bool isComposed(const QLocale &locale, const QTimeZone &zone)
{
    const bool showsMilliseconds = locale.timeFormat(QLocale::ShortFormat).contains(u'z');
    const qint64 moments[] = {0, MsPerDay / 2}; // one before and one after noon
    return !showsMilliseconds &&
           std::all_of(std::begin(moments), std::end(moments), [&](qint64 moment) {
               const QDateTime dateTime = QDateTime::fromMSecsSinceEpoch(moment, zone);
               return locale.toString(dateTime, QLocale::ShortFormat) ==
                      locale.toString(dateTime.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
                          locale.toString(dateTime.time(), QLocale::ShortFormat);
           });
}

char *writeTwoDigits(char *out, int number)
{
    *out++ = static_cast<char>('0' + number / 10);
    *out++ = static_cast<char>('0' + number % 10);
    return out;
}

char *writeTime(char *out, int secondOfDay)
{
    out = writeTwoDigits(out, secondOfDay / 3600);
    *out++ = ':';
    out = writeTwoDigits(out, secondOfDay / 60 % 60);
    *out++ = ':';
    return writeTwoDigits(out, secondOfDay % 60);
}

} // namespace

TimeFormatter::TimeFormatter(const QTimeZone &zone)
    : m_zone(zone)
    , m_locale(QLocale::system())
    , m_dateFormat(m_locale.dateFormat(QLocale::ShortFormat))
    , m_timeFormat(m_locale.timeFormat(QLocale::ShortFormat))
    , m_isComposed(isComposed(m_locale, zone))
    , m_secondsPerText(m_timeFormat.contains(u's') ? 1 : SecondsPerMinute)
    , m_timeTexts(static_cast<std::size_t>(SecondsPerDay / m_secondsPerText))
{
}

bool TimeFormatter::isValidFor(const QTimeZone &zone) const
{
    const QLocale locale = QLocale::system();
    return zone == m_zone && locale.dateFormat(QLocale::ShortFormat) == m_dateFormat &&
           locale.timeFormat(QLocale::ShortFormat) == m_timeFormat;
}

void TimeFormatter::format(BookmarkRecord &record)
{
    record.timeRange = QString::fromLatin1(timeRange(record.start, record.end).data());
    if (const std::optional<LocalTime> local = localTime(record.start)) {
        record.date = dayText(local->day);
        record.dateTime = record.date + QLatin1Char(' ') + timeText(local->secondOfDay);
        return;
    }
    const QDateTime start = dateTime(record.start);
    record.date = m_locale.toString(start.date(), QLocale::ShortFormat);
    record.dateTime = m_locale.toString(start, QLocale::ShortFormat);
}

bool TimeFormatter::cacheDate(BookmarkRecord &record)
{
    const std::optional<LocalTime> local = localTime(record.start);
    if (!local)
        return false;
    timeText(local->secondOfDay);
    record.date = dayText(local->day);
    return true;
}

TimeFormatter::TimeRange TimeFormatter::timeRange(qint64 start, qint64 end)
{
    TimeRange range{};
    const std::optional<LocalTime> from = localTime(start);
    const std::optional<LocalTime> to = localTime(end);
    if (from && to) {
        char *out = writeTime(range.data(), from->secondOfDay);
        writeTime(std::copy_n(" - ", 3, out), to->secondOfDay);
    } else {
        const QString timeOfDay = QStringLiteral("hh:mm:ss");
        const QByteArray text = (dateTime(start).toString(timeOfDay) + QLatin1String(" - ") +
                                 dateTime(end).toString(timeOfDay))
                                    .toLatin1();
        qstrncpy(range.data(), text.constData(), range.size());
    }
    return range;
}

/// Returns the local wall-clock time, or nullopt if QDateTime has to compute it.
std::optional<TimeFormatter::LocalTime> TimeFormatter::localTime(qint64 moment)
{
    if (!m_isComposed || moment < -MaxCachedMs || moment >= MaxCachedMs)
        return std::nullopt;
    const qint64 local = moment + offsetAt(moment);
    const qint64 day = local / MsPerDay - (local % MsPerDay < 0 ? 1 : 0);
    return LocalTime{day, static_cast<int>((local - day * MsPerDay) / 1000)};
}

/// Returns the offset in milliseconds. Caches several periods, because an answer has bookmarks of
/// summer and of winter.
qint64 TimeFormatter::offsetAt(qint64 moment)
{
    const auto period = std::find_if(m_periods.cbegin(), m_periods.cend(), [&](const Period &p) {
        return p.begin <= moment && moment < p.end;
    });
    if (period != m_periods.cend())
        return period->offset;

    const QDateTime dateTime = QDateTime::fromMSecsSinceEpoch(moment, QTimeZone::utc());
    const qint64 offset = qint64(1000) * m_zone.offsetFromUtc(dateTime);
    const QDateTime begin = m_zone.previousTransition(dateTime.addMSecs(1)).atUtc;
    QDateTime end = m_zone.nextTransition(dateTime).atUtc;
    // Qt 6.4 finds no transition after the last one of its table, but does a millisecond later.
    if (!end.isValid())
        end = m_zone.nextTransition(dateTime.addMSecs(1)).atUtc;
    m_periods.push_back({begin.isValid() ? begin.toMSecsSinceEpoch() : -MaxCachedMs,
                         end.isValid() ? end.toMSecsSinceEpoch() : MaxCachedMs, offset});
    return offset;
}

QString TimeFormatter::dayText(qint64 day)
{
    QString &text = m_dayTexts[day];
    if (text.isNull())
        text =
            m_locale.toString(QDate::fromJulianDay(JulianDayOfEpoch + day), QLocale::ShortFormat);
    return text;
}

QString TimeFormatter::timeText(int secondOfDay)
{
    QString &text = m_timeTexts[static_cast<std::size_t>(secondOfDay / m_secondsPerText)];
    if (text.isNull()) {
        text = m_locale.toString(QTime::fromMSecsSinceStartOfDay(1000 * secondOfDay),
                                 QLocale::ShortFormat);
    }
    return text;
}

} // namespace tessaline
