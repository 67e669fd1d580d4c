#include "ZonedObject.h"

#include "ServerZone.h"

namespace workbench {

void ZonedObject::setTimeZone(const QString &ianaId)
{
    if (ianaId == m_timeZone)
        return;
    m_timeZone = ianaId;
    m_zone = serverZone(ianaId);
    Q_EMIT timeZoneChanged();
}

} // namespace workbench
