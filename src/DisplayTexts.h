#pragma once

#include <QtCore/QString>

class QTimeZone;

namespace tessaline {

/// What an operator reads of a bookmark's time.
struct DisplayTexts
{
    QString date;      ///< date of the start, in the system locale's short format
    QString dateTime;  ///< date and time of the start, in the system locale's short format
    QString timeRange; ///< times of day of start and end, "hh:mm:ss - hh:mm:ss" in every locale
};

/// The texts of the stretch from @p start to @p end (milliseconds since the epoch) in @p zone. In
/// an invalid zone no time has a text: the parts are empty, and the range is the separator alone.
DisplayTexts displayTexts(qint64 start, qint64 end, const QTimeZone &zone);

} // namespace tessaline
