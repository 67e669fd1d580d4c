#pragma once

#include <QtCore/QTimeZone>

namespace workbench {

/// The zone with that IANA identifier; UTC when there is none.
inline QTimeZone serverZone(const QString &ianaId)
{
    const QTimeZone zone(ianaId.toLatin1());
    return zone.isValid() ? zone : QTimeZone::utc();
}

} // namespace workbench
