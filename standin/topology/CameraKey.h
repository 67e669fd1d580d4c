#pragma once

#include <QtCore/QString>

namespace standin {

/// Returns a camera's key in the topology. The relay path of the connected server is empty.
inline QString cameraKey(const QString &relayPath, const QString &cameraID)
{
    return relayPath.isEmpty() ? cameraID : relayPath + QLatin1Char('/') + cameraID;
}

} // namespace standin
