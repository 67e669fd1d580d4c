#pragma once

#include <QtCore/QTimeZone>

namespace workbench {

/// Returns the time zone with an IANA identifier, or UTC if there is none.
inline QTimeZone serverZone(const QString &ianaId)
{
    const QTimeZone zone(ianaId.toLatin1());
    return zone.isValid() ? zone : QTimeZone::utc();
}

} // namespace workbench
