#pragma once

#include <QtCore/QHashFunctions>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <unordered_map>

namespace tessaline {

/// Returns a camera's key in the topology: relay path, "/", camera identifier, nothing escaped. For
/// the connected server, whose relay path is empty, it is the camera identifier alone.
QString cameraKey(const QString &relayPath, const QString &cameraID);

struct Camera
{
    QString key;
    QString name;          ///< empty for an unknown camera
    QString qualifiedName; ///< "station - camera"; has the separator even if a name is empty
};

/// Caches the names of one station's cameras.
class CameraNames
{
public:
    /// @param names names of stations by relay path and of cameras by camera key
    CameraNames(const QVariantMap &names, const QString &relayPath);

    QString relayPath() const { return m_relayPath; }
    /// @return the camera; the reference is valid as long as this object
    const Camera &camera(const QString &cameraID);

private:
    QVariantMap m_names;
    QString m_relayPath;
    QString m_stationPrefix;
    std::unordered_map<QString, Camera> m_cameras; ///< by camera identifier
};

} // namespace tessaline
