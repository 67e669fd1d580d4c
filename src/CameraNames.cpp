#include "CameraNames.h"

namespace tessaline {

QString cameraKey(const QString &relayPath, const QString &cameraID)
{
    // Joined, not filled into a "%1/%2": a relay path may itself hold "%1" or "%2".
    return relayPath.isEmpty() ? cameraID : relayPath + QLatin1Char('/') + cameraID;
}

CameraNames::CameraNames(const QVariantMap &directory, const QString &relayPath)
    : m_directory(directory)
    , m_relayPath(relayPath)
    , m_stationPrefix(directory.value(relayPath).toString() + QLatin1String(" - "))
{
}

QString CameraNames::name(const QString &cameraID) const
{
    return m_directory.value(cameraKey(m_relayPath, cameraID)).toString();
}

Camera CameraNames::camera(const QString &cameraID) const
{
    const QString key = cameraKey(m_relayPath, cameraID);
    return {m_relayPath, cameraID, key, m_stationPrefix + m_directory.value(key).toString()};
}

QString CameraNames::qualifiedName(const QString &cameraID)
{
    QString &known = m_qualifiedNames[cameraID];
    if (known.isNull())
        known = camera(cameraID).qualifiedName;
    return known;
}

} // namespace tessaline
