#include "CameraNames.h"

namespace tessaline {

QString cameraKey(const QString &relayPath, const QString &cameraID)
{
    // Joined, not filled into a "%1/%2": a relay path may itself hold "%1" or "%2".
    return relayPath.isEmpty() ? cameraID : relayPath + QLatin1Char('/') + cameraID;
}

QString cameraName(const QVariantMap &camNames, const QString &relayPath, const QString &cameraID)
{
    return camNames.value(cameraKey(relayPath, cameraID)).toString();
}

QString stationAndCameraName(const QVariantMap &camNames, const QString &relayPath,
                             const QString &cameraID)
{
    return camNames.value(relayPath).toString() + QLatin1String(" - ") +
           cameraName(camNames, relayPath, cameraID);
}

} // namespace tessaline
