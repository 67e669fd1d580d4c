#pragma once

#include "BookmarkStore.h"
#include "Server.h"

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QTimer>

namespace stations {

struct Camera
{
    QString cameraID;
    QString name;
};

struct StationConfig
{
    QString relayPath; ///< of the station; empty for the connected server
    QString name;
    QString locationID; ///< for bookmarks without a location
    QList<Camera> cameras;
    QString filePath; ///< of the SQLite file; StationNetwork sets it for its stations
};

/// A recording server: executes commands and stores its bookmarks in a file. If recycling is
/// enabled, it deletes old bookmarks when it opens, when the setting changes and every hour. The
/// hourly deletion needs an event loop.
class Station : public QObject
{
    Q_OBJECT

public:
    /// Opens a station.
    /// @param error set on failure to a message with the file
    /// @return null if the file is not usable
    static std::unique_ptr<Station> open(const StationConfig &config, QString *error);

    /// Returns a station without a file, which answers every command with a failure.
    /// @param defect message with the reason, for lastError()
    static std::unique_ptr<Station> broken(const StationConfig &config, const QString &defect);

    const StationConfig &config() const { return m_config; }
    bool hasCamera(const QString &cameraID) const;

    /// Executes any command with any payload. A failed command changes nothing; for its result see
    /// failedAnswer().
    standin::Answer execute(const QString &command, const QVariant &payload);

    /// Stores all bookmarks or none. The caller checks cameras and defects.
    /// @return the bookmarks with their new identifiers, or nullopt on failure; see lastError()
    std::optional<QList<Bookmark>> insert(const QList<Bookmark> &bookmarks);
    QString lastError() const { return m_store ? m_store->lastError() : m_defect; }

    /// If recycling is enabled, deletes bookmarks that ended more than the reserve hours before
    /// @p now, in milliseconds since the epoch.
    /// @return false on a database error; see lastError()
    bool recycle(qint64 now);

    /// @param timeZone IANA identifier of the zone in which the station records
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

/// Returns the answer to a command that fails without being executed: without a result, except that
/// "DeleteBookmarks" returns the requested identifiers, for the client's list of failures.
standin::Answer failedAnswer(const QString &command, const QVariant &payload,
                             const QString &resultCode);

} // namespace stations
