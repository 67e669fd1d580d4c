#include "DateTimeTexts.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace workbench {

namespace {

constexpr QStringView Format = u"yyyy-MM-dd HH:mm:ss";
constexpr QStringView DateFormat = u"yyyy-MM-dd";
constexpr QStringView TimeFormat = u"HH:mm:ss";
constexpr QStringView ShortTimeFormat = u"HH:mm";

struct DateAndTime
{
    QDate date;
    QTime time;
};

// Parses date and time separately: QDateTime would use this computer's zone, which may skip a time
// that exists in the station's zone.
DateAndTime read(const QString &text)
{
    const QString trimmed = text.trimmed();
    const QString time = trimmed.section(u' ', 1);
    DateAndTime read{QDate::fromString(trimmed.section(u' ', 0, 0), DateFormat),
                     QTime::fromString(time, TimeFormat)};
    if (!read.time.isValid())
        read.time = QTime::fromString(time, ShortTimeFormat);
    return read;
}

} // namespace

QString DateTimeTexts::textOf(qint64 moment) const
{
    return QDateTime::fromMSecsSinceEpoch(moment, zone()).toString(Format);
}

QVariant DateTimeTexts::momentOf(const QString &text) const
{
    const auto [date, time] = read(text);
    const QList<qint64> moments = momentsOf(date, time);
    return moments.isEmpty() ? QVariant() : QVariant(moments.constFirst());
}

QString DateTimeTexts::remarkOn(const QString &text) const
{
    const auto [date, time] = read(text);
    const QString day = text.trimmed().section(u' ', 0, 0);
    if (time.isValid() && !date.isValid() && day.size() == DateFormat.size())
        return tr("The calendar has no day %1.").arg(day);
    if (!date.isValid() || !time.isValid())
        return tr("This is not a time. Type it as 2026-03-29 14:05.");
    const QList<qint64> moments = momentsOf(date, time);
    const QString clock = time.toString(ShortTimeFormat);
    if (moments.isEmpty())
        return tr("%1 does not occur on this day: the clocks go forward.").arg(clock);
    if (moments.size() == 1)
        return QString();
    const bool isSummer =
        zone().isDaylightTime(QDateTime::fromMSecsSinceEpoch(moments.constFirst()));
    return isSummer ? tr("%1 occurs twice; the one in summer time is used.").arg(clock)
                    : tr("%1 occurs twice; the first one is used.").arg(clock);
}

QString DateTimeTexts::lengthText(qint64 milliseconds)
{
    const qint64 seconds = (milliseconds + 500) / 1000;
    QStringList parts;
    const auto add = [&](qint64 amount, const QString &unit) {
        if (amount > 0)
            parts.append(unit.arg(amount));
    };
    add(seconds / 86400, tr("%1 d"));
    add(seconds / 3600 % 24, tr("%1 h"));
    add(seconds / 60 % 60, tr("%1 min"));
    add(seconds % 60, tr("%1 s"));
    return parts.isEmpty() ? tr("%1 s").arg(0) : parts.join(u' ');
}

QList<qint64> DateTimeTexts::momentsOf(QDate date, QTime time) const
{
    QList<qint64> moments;
    if (!date.isValid() || !time.isValid())
        return moments;
    const QDateTime local(date, time, QTimeZone::utc());
    // The offset at this time is that of the day before or of the day after.
    for (const int days : {-1, 1}) {
        const int offset = zone().offsetFromUtc(local.addDays(days));
        const QDateTime moment = local.addSecs(-offset);
        if (zone().offsetFromUtc(moment) == offset && !moments.contains(moment.toMSecsSinceEpoch()))
            moments.append(moment.toMSecsSinceEpoch());
    }
    std::sort(moments.begin(), moments.end());
    return moments;
}

} // namespace workbench
