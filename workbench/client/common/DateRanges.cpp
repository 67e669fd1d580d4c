#include "DateRanges.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

#include <algorithm>
#include <limits>

namespace workbench {

namespace {

/// Limits beyond any bookmark that a JavaScript number represents exactly with its 53 bits: the
/// smallest 64-bit number, and the largest one with ten zero bits at its end.
constexpr qint64 Earliest = std::numeric_limits<qint64>::min();
constexpr qint64 Latest = std::numeric_limits<qint64>::max() - 1023;

QVariantMap rangeMap(qint64 start, qint64 end)
{
    return {{QStringLiteral("startTimestamp"), start}, {QStringLiteral("endTimestamp"), end}};
}

/// Returns a range of whole days. A day may have 23 or 25 hours and need not start at midnight.
QVariantMap daysBetween(QDate first, QDate last, const QTimeZone &zone)
{
    return rangeMap(first.startOfDay(zone).toMSecsSinceEpoch(),
                    last.addDays(1).startOfDay(zone).toMSecsSinceEpoch() - 1);
}

QDate dateOf(const QString &day)
{
    return QDate::fromString(day, Qt::ISODate);
}

} // namespace

QVariantMap DateRanges::range(Preset preset, qint64 now, const QString &firstDay,
                              const QString &lastDay) const
{
    const QDate today = QDateTime::fromMSecsSinceEpoch(now, zone()).date();
    switch (preset) {
    case Today:
        return daysBetween(today, today, zone());
    case Yesterday:
        return daysBetween(today.addDays(-1), today.addDays(-1), zone());
    case ThisWeek: {
        const int sinceWeekBegan = (today.dayOfWeek() - QLocale().firstDayOfWeek() + 7) % 7;
        const QDate first = today.addDays(-sinceWeekBegan);
        return daysBetween(first, first.addDays(6), zone());
    }
    case Days: {
        const auto [first, last] = std::minmax({dateOf(firstDay), dateOf(lastDay)});
        if (first.isValid() && last.isValid())
            return daysBetween(first, last, zone());
        break;
    }
    case All:
        break;
    }
    return rangeMap(Earliest, Latest);
}

QString DateRanges::dayOf(qint64 moment) const
{
    return QDateTime::fromMSecsSinceEpoch(moment, zone()).date().toString(Qt::ISODate);
}

QString DateRanges::dayLater(const QString &day, int days, int months)
{
    return dateOf(day).addMonths(months).addDays(days).toString(Qt::ISODate);
}

QString DateRanges::shortText(const QString &day)
{
    return QLocale().toString(dateOf(day), QLocale::ShortFormat);
}

} // namespace workbench
