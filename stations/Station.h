#pragma once

#include "BookmarkStore.h"
#include "Server.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace workbench {

struct Camera
{
    QString cameraID;
    QString name;
};

struct StationConfig
{
    QString relayPath; ///< addresses the station; empty for the directly connected server
    QString name;
    QString locationID; ///< given to bookmarks that come without one
    QList<Camera> cameras;
    QString filePath; ///< where the bookmarks are; set by Site for its stations
};

/// A recording server: executes the commands that reach it and keeps its bookmarks in a file.
/// With recycling switched on it deletes old bookmarks when it opens, when the setting changes
/// and every hour, provided there is an event loop.
class Station : public QObject
{
    Q_OBJECT

public:
    /// Null with @p error, which names the file, when the file can't be used.
    static std::unique_ptr<Station> open(const StationConfig &config, QString *error);

    /// A station whose file can't be used because of @p defect: whatever it is told, it fails.
    static std::unique_ptr<Station> broken(const StationConfig &config, const QString &defect);

    const StationConfig &config() const { return m_config; }
    bool hasCamera(const QString &cameraID) const;

    /// Answers any command with any payload; a failure has changed nothing. A failed
    /// "DeleteBookmarks" carries the requested identifiers, for the client's list of failures.
    standin::Answer execute(const QString &command, const QVariant &payload);

    /// Stores all or none, under new identifiers, and returns them as stored; nothing on a
    /// failure, see lastError(). Cameras and defects are the caller's business.
    std::optional<QList<Bookmark>> insert(const QList<Bookmark> &bookmarks);
    QString lastError() const { return m_store ? m_store->lastError() : m_defect; }

    /// Deletes what ended more than the reserve hours before @p now (milliseconds since the
    /// epoch), if recycling is on. False on a database error.
    bool recycle(qint64 now);

    /// IANA identifier of the zone in which the station records.
    void setTimeZone(const QByteArray &timeZone) { m_timeZone = timeZone; }
    void setSettingPermission(bool permission) { m_settingPermission = permission; }

private:
    Station(const StationConfig &config, std::unique_ptr<BookmarkStore> store);

    standin::Answer addBookmark(const QVariant &payload);
    standin::Answer addBookmarks(const QVariant &payload);
    standin::Answer deleteBookmark(const QVariant &payload);
    standin::Answer deleteBookmarks(const QVariant &payload);
    standin::Answer updateBookmark(const QVariant &payload);
    standin::Answer removeAllBookmarks(const QVariant &payload);
    standin::Answer queryAllBookmarks(const QVariant &payload);
    standin::Answer queryBookmarkForRecent(const QVariant &payload);
    standin::Answer queryBookmarkForTimeline(const QVariant &payload);
    standin::Answer queryBookmarkForApi(const QVariant &payload);
    standin::Answer recycleSetting(const QVariant &payload);
    standin::Answer updateRecycleSetting(const QVariant &payload);
    standin::Answer timeZone(const QVariant &payload);
    standin::Answer settingPermission(const QVariant &payload);

    standin::Answer databaseFailure(const QVariant &result = QVariant()) const;
    standin::Answer bookmarkMap(const std::optional<QList<Bookmark>> &bookmarks) const;
    QStringList ownCameraIDs(const QStringList &cameraKeys) const;

    StationConfig m_config;
    std::unique_ptr<BookmarkStore> m_store; ///< null for a broken station
    QString m_defect;
    QByteArray m_timeZone;
    bool m_settingPermission = true;
    QTimer m_recycleTimer;
};

/// The identifiers in a "DeleteBookmarks" payload; nothing when it is malformed.
std::optional<QStringList> bookmarkIDsOf(const QVariant &payload);

} // namespace workbench
