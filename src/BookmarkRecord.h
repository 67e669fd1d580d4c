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

/// Reads a server's record and adds the names; the texts of times stay empty. A missing or mistyped
/// value reads as an empty text or 0.
BookmarkRecord readServerRecord(const QVariantMap &serverRecord, CameraNames &names);

/// The same with the texts of times.
BookmarkRecord makeRecord(const QVariantMap &serverRecord, CameraNames &names,
                          TimeFormatter &formatter);

/// @return a map of exactly the 13 display keys
QVariantMap toDisplayMap(const BookmarkRecord &record);

/// @return the text under a display key, empty for any other key
QString displayText(const BookmarkRecord &record, const QString &key);

/// Adds the roles that items have beside those of every timeline model.
void addTimelineRoles(QHash<int, QByteArray> &roleNames);

/// @return an item of a timeline model, owned by the caller
std::unique_ptr<QStandardItem> toTimelineItem(const BookmarkRecord &record);

} // namespace tessaline
