#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <unordered_map>

namespace tessaline {

/// The key of a camera in the name directory and in the device tree: relay path, "/", camera
/// identifier, or the bare identifier on the directly connected server (empty relay path). Nothing
/// is escaped or interpreted.
QString cameraKey(const QString &relayPath, const QString &cameraID);

/// The names of one station's cameras; each is looked up once.
class CameraNames
{
public:
    /// @param directory names of stations by relay path and of cameras by camera key
    CameraNames(const QVariantMap &directory, const QString &relayPath);

    QString relayPath() const { return m_relayPath; }

    /// The camera's own name, empty for an unknown camera.
    QString name(const QString &cameraID) const;

    /// Station and camera as shown to the operator: "station - camera". The separator stands even
    /// where a name is unknown; such a row is still told apart by its times.
    QString withStation(const QString &cameraID);

private:
    QVariantMap m_directory;
    QString m_relayPath;
    QString m_stationPrefix;
    std::unordered_map<QString, QString> m_withStation; ///< by camera ID
};

} // namespace tessaline
