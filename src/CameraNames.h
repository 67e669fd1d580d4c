#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <unordered_map>

namespace tessaline {

/// The key of a camera in the name directory and in the device tree: relay path, "/", camera
/// identifier, or the bare identifier on the directly connected server (empty relay path). Nothing
/// is escaped or interpreted.
QString cameraKey(const QString &relayPath, const QString &cameraID);

/// A camera with its name at one moment.
struct Camera
{
    QString relayPath;
    QString cameraID;
    QString key;           ///< see cameraKey()
    QString qualifiedName; ///< see CameraNames::qualifiedName()
};

/// Names of the cameras of one station.
class CameraNames
{
public:
    /// @param directory names of stations by relay path and of cameras by camera key
    CameraNames(const QVariantMap &directory, const QString &relayPath);

    QString relayPath() const { return m_relayPath; }

    /// The camera's own name, empty for an unknown camera.
    QString name(const QString &cameraID) const;

    Camera camera(const QString &cameraID) const;

    /// @return "station - camera", the name that operators read. The separator stands also where a
    ///         name is unknown: operators then recognise the bookmark by its times. Cached.
    QString qualifiedName(const QString &cameraID);

private:
    QVariantMap m_directory;
    QString m_relayPath;
    QString m_stationPrefix;
    std::unordered_map<QString, QString> m_qualifiedNames; ///< by camera ID
};

} // namespace tessaline
