#include "DateTimeTexts.h"

#include <QtCore/QDateTime>

namespace workbench {

namespace {

constexpr QStringView Format = u"yyyy-MM-dd HH:mm:ss";
constexpr QStringView DateFormat = u"yyyy-MM-dd";
constexpr QStringView TimeFormat = u"HH:mm:ss";
constexpr QStringView ShortTimeFormat = u"HH:mm";

} // namespace

QString DateTimeTexts::textOf(qint64 moment) const
{
    return QDateTime::fromMSecsSinceEpoch(moment, zone()).toString(Format);
}

QVariant DateTimeTexts::momentOf(const QString &text) const
{
    const QString trimmed = text.trimmed();
    // One by one: a date and time together would be read by the clock of this computer, which may
    // skip what the station's does not.
    const QDate date = QDate::fromString(trimmed.section(u' ', 0, 0), DateFormat);
    QTime time = QTime::fromString(trimmed.section(u' ', 1), TimeFormat);
    if (!time.isValid())
        time = QTime::fromString(trimmed.section(u' ', 1), ShortTimeFormat);
    if (!date.isValid() || !time.isValid())
        return {};
    // A skipped time is moved by the zone's jump, and no longer reads as it was typed.
    const QDateTime moment(date, time, zone());
    const bool same = moment.date() == date && moment.time() == time;
    return moment.isValid() && same ? QVariant(moment.toMSecsSinceEpoch()) : QVariant();
}

} // namespace workbench
