#pragma once

#include <QtCore/QVariant>

namespace standin {

/// Returns a server record with all eight keys. Times are milliseconds since the epoch.
inline QVariantMap serverRecord(const QString &bookmarkID, const QString &cameraID,
                                const QString &locationID, qint64 start, qint64 end,
                                const QString &description = {}, const QString &creator = {},
                                const QString &group = {})
{
    const auto key = [](const char *name) { return QString::fromLatin1(name); };
    return {{key("BookmarkID"), bookmarkID}, {key("CameraID"), cameraID},
            {key("LocationID"), locationID}, {key("StartTimestamp"), start},
            {key("EndTimestamp"), end},      {key("Description"), description},
            {key("Creator"), creator},       {key("Group"), group}};
}

} // namespace standin
