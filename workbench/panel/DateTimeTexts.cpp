#include "DateTimeTexts.h"

#include <QtCore/QDateTime>

namespace workbench {

namespace {

constexpr QStringView Format = u"yyyy-MM-dd HH:mm:ss";
constexpr QStringView ShortFormat = u"yyyy-MM-dd HH:mm";

} // namespace

QString DateTimeTexts::textOf(qint64 moment) const
{
    return QDateTime::fromMSecsSinceEpoch(moment, zone()).toString(Format);
}

QVariant DateTimeTexts::momentOf(const QString &text) const
{
    const QString trimmed = text.trimmed();
    QDateTime typed = QDateTime::fromString(trimmed, Format);
    if (!typed.isValid())
        typed = QDateTime::fromString(trimmed, ShortFormat);
    if (!typed.isValid())
        return {};
    // A skipped time is moved by the zone's jump, and no longer reads as it was typed.
    const QDateTime moment(typed.date(), typed.time(), zone());
    const bool same = moment.date() == typed.date() && moment.time() == typed.time();
    return moment.isValid() && same ? QVariant(moment.toMSecsSinceEpoch()) : QVariant();
}

} // namespace workbench
