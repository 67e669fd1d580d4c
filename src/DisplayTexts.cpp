#include "DisplayTexts.h"

#include <algorithm>
#include <iterator>

namespace tessaline {

namespace {

constexpr int SecondsPerDay = 86'400;
constexpr qint64 MsPerDay = qint64(1000) * SecondsPerDay;
constexpr qint64 JulianDayOfEpoch = 2'440'588;

/// Beyond some seventy years around the present nothing is assumed of zones.
constexpr qint64 Farthest = 4'000'000'000'000;

QString shortText(const QLocale &locale, QTime time)
{
    return locale.toString(time, QLocale::ShortFormat);
}

/// Whether the text of date and time is that of the date, a blank, that of the minute. Not so in an
/// invalid zone, in which all texts are empty.
bool isSplittable(const QLocale &locale, const QTimeZone &zone)
{
    const bool showsSeconds = locale.timeFormat(QLocale::ShortFormat).contains(u's');
    // Half a day apart: one moment before noon and one after.
    const qint64 moments[] = {0, MsPerDay / 2};
    return !showsSeconds && std::all_of(std::begin(moments), std::end(moments), [&](qint64 moment) {
        const QDateTime dateTime = QDateTime::fromMSecsSinceEpoch(moment, zone);
        return locale.toString(dateTime, QLocale::ShortFormat) ==
               locale.toString(dateTime.date(), QLocale::ShortFormat) + QLatin1Char(' ') +
                   shortText(locale, dateTime.time());
    });
}

void writeTwoDigits(QChar *&out, int number)
{
    *out++ = QChar(u'0' + number / 10);
    *out++ = QChar(u'0' + number % 10);
}

void writeTime(QChar *&out, int secondOfDay)
{
    writeTwoDigits(out, secondOfDay / 3600);
    *out++ = u':';
    writeTwoDigits(out, secondOfDay / 60 % 60);
    *out++ = u':';
    writeTwoDigits(out, secondOfDay % 60);
}

QString rangeText(int firstSecond, int lastSecond)
{
    QString text(19, Qt::Uninitialized);
    QChar *out = text.data();
    writeTime(out, firstSecond);
    for (const QChar c : {u' ', u'-', u' '})
        *out++ = c;
    writeTime(out, lastSecond);
    return text;
}

} // namespace

DisplayTexts::DisplayTexts(const QTimeZone &zone)
    : m_zone(zone)
    , m_locale(QLocale::system())
    , m_dateFormat(m_locale.dateFormat(QLocale::ShortFormat))
    , m_timeFormat(m_locale.timeFormat(QLocale::ShortFormat))
    , m_isSplittable(isSplittable(m_locale, zone))
    , m_timeTexts(SecondsPerDay / 60)
{
}

bool DisplayTexts::holdFor(const QTimeZone &zone) const
{
    const QLocale locale = QLocale::system();
    return zone == m_zone && locale.dateFormat(QLocale::ShortFormat) == m_dateFormat &&
           locale.timeFormat(QLocale::ShortFormat) == m_timeFormat;
}

DisplayTexts::Texts DisplayTexts::of(qint64 start, qint64 end)
{
    const std::optional<LocalTime> from = localTime(start);
    const std::optional<LocalTime> to = localTime(end);
    if (!from || !to)
        return slowly(start, end);
    const QString date = dayText(from->day);
    return {date, date + QLatin1Char(' ') + timeText(from->secondOfDay / 60),
            rangeText(from->secondOfDay, to->secondOfDay)};
}

/// What the clock shows; nothing where that has to be left to QDateTime.
std::optional<DisplayTexts::LocalTime> DisplayTexts::localTime(qint64 moment)
{
    if (!m_isSplittable || moment < -Farthest || moment >= Farthest)
        return std::nullopt;
    const qint64 local = moment + offsetAt(moment);
    const qint64 day = local / MsPerDay - (local % MsPerDay < 0 ? 1 : 0);
    return LocalTime{day, static_cast<int>((local - day * MsPerDay) / 1000)};
}

/// In milliseconds. An answer has bookmarks of summer and of winter, so more than one span is kept.
qint64 DisplayTexts::offsetAt(qint64 moment)
{
    const auto span = std::find_if(m_spans.cbegin(), m_spans.cend(), [&](const Span &s) {
        return s.begin <= moment && moment < s.end;
    });
    if (span != m_spans.cend())
        return span->offset;

    const QDateTime dateTime = QDateTime::fromMSecsSinceEpoch(moment, QTimeZone::utc());
    const qint64 offset = qint64(1000) * m_zone.offsetFromUtc(dateTime);
    const QDateTime begin = m_zone.previousTransition(dateTime.addMSecs(1)).atUtc;
    QDateTime end = m_zone.nextTransition(dateTime).atUtc;
    // At the last moment of its tables Qt 6.4 does not see the transitions that follow by rule.
    if (!end.isValid())
        end = m_zone.nextTransition(dateTime.addMSecs(1)).atUtc;
    m_spans.push_back({begin.isValid() ? begin.toMSecsSinceEpoch() : -Farthest,
                       end.isValid() ? end.toMSecsSinceEpoch() : Farthest, offset});
    return offset;
}

QString DisplayTexts::dayText(qint64 day)
{
    QString &text = m_dayTexts[day];
    if (text.isNull())
        text =
            m_locale.toString(QDate::fromJulianDay(JulianDayOfEpoch + day), QLocale::ShortFormat);
    return text;
}

QString DisplayTexts::timeText(int minuteOfDay)
{
    QString &text = m_timeTexts[static_cast<std::size_t>(minuteOfDay)];
    if (text.isNull())
        text = shortText(m_locale, QTime(minuteOfDay / 60, minuteOfDay % 60));
    return text;
}

DisplayTexts::Texts DisplayTexts::slowly(qint64 start, qint64 end) const
{
    const QDateTime from = QDateTime::fromMSecsSinceEpoch(start, m_zone);
    const QDateTime to = QDateTime::fromMSecsSinceEpoch(end, m_zone);
    const QString timeOfDay = QStringLiteral("hh:mm:ss");
    return {m_locale.toString(from.date(), QLocale::ShortFormat),
            m_locale.toString(from, QLocale::ShortFormat),
            from.toString(timeOfDay) + QLatin1String(" - ") + to.toString(timeOfDay)};
}

} // namespace tessaline
