#include "CameraNames.h"

namespace tessaline {

QString cameraKey(const QString &relayPath, const QString &cameraID)
{
    // Not with arg() and "%1/%2": a relay path may itself contain "%1" or "%2".
    return relayPath.isEmpty() ? cameraID : relayPath + QLatin1Char('/') + cameraID;
}

CameraNames::CameraNames(const QVariantMap &names, const QString &relayPath)
    : m_names(names)
    , m_relayPath(relayPath)
    , m_stationPrefix(names.value(relayPath).toString() + QLatin1String(" - "))
{
}

const Camera &CameraNames::camera(const QString &cameraID)
{
    const auto known = m_cameras.find(cameraID);
    if (known != m_cameras.cend())
        return known->second;
    const QString key = cameraKey(m_relayPath, cameraID);
    const QString name = m_names.value(key).toString();
    return m_cameras.emplace(cameraID, Camera{key, name, m_stationPrefix + name}).first->second;
}

} // namespace tessaline
