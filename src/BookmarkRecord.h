#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <memory>

class QStandardItem;

namespace tessaline {

class CameraNames;
class TimeFormatter;

/// A bookmark as QML reads it. Times are milliseconds since 1970-01-01T00:00:00 UTC.
struct BookmarkRecord
{
    QString bookmarkID;
    QString cameraID;
    QString creator;
    QString description;
    QString group;
    QString locationID;
    qint64 start = 0;
    qint64 end = 0;
    QString relayPath;
    QString cameraKey;
    QString cameraName; ///< "station - camera"
    QString date;
    QString dateTime;
    QString timeRange;
};

/// Returns the bookmark of a server record, with the camera's names. The texts of times stay empty;
/// a missing or mistyped value becomes an empty text or 0.
BookmarkRecord readServerRecord(const QVariantMap &serverRecord, CameraNames &names);

/// Returns the bookmark of a server record, with the camera's names and the texts of times.
BookmarkRecord makeRecord(const QVariantMap &serverRecord, CameraNames &names,
                          TimeFormatter &formatter);

/// Returns the display record: a map with exactly the 13 display keys.
QVariantMap toDisplayMap(const BookmarkRecord &record);

/// Returns the text under a display key, or an empty text for any other key.
QString displayText(const BookmarkRecord &record, const QString &key);

/// Adds the roles that bookmarks have in addition to the default roles of a timeline model.
void addTimelineRoles(QHash<int, QByteArray> &roleNames);

/// Returns a new item for a timeline model, owned by the caller.
std::unique_ptr<QStandardItem> toTimelineItem(const BookmarkRecord &record);

} // namespace tessaline
