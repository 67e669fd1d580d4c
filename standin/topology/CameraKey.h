#pragma once

#include <QtCore/QString>

namespace standin {

/// The identifier of a camera in the topology. The connected server has no relay path.
inline QString cameraKey(const QString &relayPath, const QString &cameraID)
{
    return relayPath.isEmpty() ? cameraID : relayPath + QLatin1Char('/') + cameraID;
}

} // namespace standin
