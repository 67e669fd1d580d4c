#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace tessaline {

/// The key of a camera in the name directory and in the device tree: relay path, "/", camera
/// identifier, or the bare identifier on the directly connected server (empty relay path). Nothing
/// is escaped or interpreted.
QString cameraKey(const QString &relayPath, const QString &cameraID);

/// The camera's own name, empty for an unknown camera.
/// @param camNames the directory: names of stations by relay path and of cameras by camera key
QString cameraName(const QVariantMap &camNames, const QString &relayPath, const QString &cameraID);

/// Station and camera as shown to the operator: "station - camera". The separator stands even
/// where a name is unknown; such a row is still told apart by its times.
QString stationAndCameraName(const QVariantMap &camNames, const QString &relayPath,
                             const QString &cameraID);

} // namespace tessaline
