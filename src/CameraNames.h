#pragma once

#include <QtCore/QHashFunctions>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <unordered_map>

namespace tessaline {

/// The key of a camera in the topology: relay path, "/", camera identifier, or the bare identifier
/// on the directly connected server (empty relay path). Nothing is escaped.
QString cameraKey(const QString &relayPath, const QString &cameraID);

struct Camera
{
    QString key;
    QString name;          ///< empty for an unknown camera
    QString qualifiedName; ///< "station - camera"; the separator stands also without a name
};

/// Names of the cameras of one station; each is looked up once.
class CameraNames
{
public:
    /// @param names names of stations by relay path and of cameras by camera key
    CameraNames(const QVariantMap &names, const QString &relayPath);

    QString relayPath() const { return m_relayPath; }
    /// @return the camera, valid as long as this object
    const Camera &camera(const QString &cameraID);

private:
    QVariantMap m_names;
    QString m_relayPath;
    QString m_stationPrefix;
    std::unordered_map<QString, Camera> m_cameras; ///< by camera identifier
};

} // namespace tessaline
