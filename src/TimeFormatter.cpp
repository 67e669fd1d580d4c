#include "TimeFormatter.h"

#include <algorithm>
#include <iterator>

namespace tessaline {

namespace {

constexpr int SecondsPerDay = 86'400;
constexpr qint64 MsPerDay = qint64(1000) * SecondsPerDay;
constexpr qint64 JulianDayOfEpoch = 2'440'588;

/// Farther from the epoch than this, some 126 years, QDateTime computes each text: the cache relies
/// on transitions that zones may not have there.
constexpr qint64 MaxCachedMs = 4'000'000'000'000;

QString timeOfDay(const QDateTime &dateTime)
{
    return dateTime.toString(QStringLiteral("hh:mm:ss"));
}

/// Not so in an invalid zone, where all texts are empty.
bool isComposed(const QLocale &locale, const QTimeZone &zone)
{
    const bool showsSeconds = locale.timeFormat(QLocale::ShortFormat).contains(u's');
    const qint64 moments[] = {0, MsPerDay / 2}; // one before and one after noon
    return !showsSeconds && std::all_of(std::begin(moments), std::end(moments), [&](qint64 moment) {
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
    , m_minuteTexts(SecondsPerDay / 60)
{
}

bool TimeFormatter::isValidFor(const QTimeZone &zone) const
{
    const QLocale locale = QLocale::system();
    return zone == m_zone && locale.dateFormat(QLocale::ShortFormat) == m_dateFormat &&
           locale.timeFormat(QLocale::ShortFormat) == m_timeFormat;
}

TimeFormatter::Texts TimeFormatter::format(qint64 start, qint64 end)
{
    const RangeText range = timeRange(start, end);
    const QString timeRange =
        QString::fromLatin1(range.characters.data(), static_cast<qsizetype>(range.size));
    if (const std::optional<LocalTime> local = localTime(start)) {
        const QString date = dayText(local->day);
        return {date, date + QLatin1Char(' ') + minuteText(local->secondOfDay / 60), timeRange};
    }
    const QDateTime from = dateTime(start);
    return {m_locale.toString(from.date(), QLocale::ShortFormat),
            m_locale.toString(from, QLocale::ShortFormat), timeRange};
}

std::optional<QString> TimeFormatter::cacheDate(qint64 start)
{
    const std::optional<LocalTime> local = localTime(start);
    if (!local)
        return std::nullopt;
    minuteText(local->secondOfDay / 60);
    return dayText(local->day);
}

TimeFormatter::RangeText TimeFormatter::timeRange(qint64 start, qint64 end)
{
    RangeText text{};
    const std::optional<LocalTime> from = localTime(start);
    const std::optional<LocalTime> to = localTime(end);
    char *out = text.characters.data();
    if (from && to) {
        out = writeTime(out, from->secondOfDay);
        for (const char c : {' ', '-', ' '})
            *out++ = c;
        out = writeTime(out, to->secondOfDay);
    } else {
        const QByteArray range =
            (timeOfDay(dateTime(start)) + QLatin1String(" - ") + timeOfDay(dateTime(end)))
                .toLatin1();
        out =
            std::copy_n(range.cbegin(), qMin(range.size(), qsizetype(text.characters.size())), out);
    }
    text.size = static_cast<std::size_t>(out - text.characters.data());
    return text;
}

/// @return nullopt when QDateTime has to compute it
std::optional<TimeFormatter::LocalTime> TimeFormatter::localTime(qint64 moment)
{
    if (!m_isComposed || moment < -MaxCachedMs || moment >= MaxCachedMs)
        return std::nullopt;
    const qint64 local = moment + offsetAt(moment);
    const qint64 day = local / MsPerDay - (local % MsPerDay < 0 ? 1 : 0);
    return LocalTime{day, static_cast<int>((local - day * MsPerDay) / 1000)};
}

/// In milliseconds. An answer has bookmarks of summer and of winter, so several periods are cached.
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
    // At the last moment of its tables Qt 6.4 misses the transitions that follow by rule.
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

QString TimeFormatter::minuteText(int minuteOfDay)
{
    QString &text = m_minuteTexts[static_cast<std::size_t>(minuteOfDay)];
    if (text.isNull())
        text = m_locale.toString(QTime(minuteOfDay / 60, minuteOfDay % 60), QLocale::ShortFormat);
    return text;
}

QDateTime TimeFormatter::dateTime(qint64 moment) const
{
    return QDateTime::fromMSecsSinceEpoch(moment, m_zone);
}

} // namespace tessaline
