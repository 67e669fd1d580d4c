#include "DisplayTexts.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QTimeZone>

namespace tessaline {

DisplayTexts displayTexts(qint64 start, qint64 end, const QTimeZone &zone)
{
    const QLocale locale = QLocale::system();
    const QDateTime from = QDateTime::fromMSecsSinceEpoch(start, zone);
    const QDateTime to = QDateTime::fromMSecsSinceEpoch(end, zone);
    const QString timeOfDay = QStringLiteral("hh:mm:ss");
    return {locale.toString(from.date(), QLocale::ShortFormat),
            locale.toString(from, QLocale::ShortFormat),
            from.toString(timeOfDay) + QLatin1String(" - ") + to.toString(timeOfDay)};
}

} // namespace tessaline
