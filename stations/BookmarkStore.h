#pragma once

#include "Bookmark.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

#include <memory>
#include <optional>

class QSqlQuery;

namespace stations {

class SqliteConnection;

/// A time range that includes both ends, in milliseconds since 1970-01-01T00:00:00 UTC.
struct TimeRange
{
    qint64 start = 0;
    qint64 end = 0;
};

/// Controls the automatic deletion of old bookmarks at a station.
struct RecycleSetting
{
    uint reserveHour = 0; ///< hours between the end of a bookmark and its deletion
    bool enabled = false;
};

/// Stores the bookmarks of one station in a SQLite file. Use it in the thread that opened it. Each
/// operation is atomic: a failed one changes nothing and sets lastError().
class BookmarkStore
{
public:
    enum class Outcome {
        Done,
        Unknown, ///< a bookmark is not in the store; nothing was changed
        Failed   ///< nothing was changed; see lastError()
    };

    /// Opens or creates a file.
    /// @param error set on failure to a message with the file's name
    /// @return null if the file is not a station's, is damaged or is of a newer version; the file
    /// is
    ///         not changed then
    static std::unique_ptr<BookmarkStore> open(const QString &path, QString *error);
    /// Renames a file of 0 bytes and its journals: SQLite would treat it as a new file and delete
    /// the log, which may contain its bookmarks.
    /// @return the new name; empty for any other file
    static QString renameEmptied(const QString &path);
    ~BookmarkStore();
    Q_DISABLE_COPY_MOVE(BookmarkStore)

    /// @return a message on the last failure, with the name of the file
    QString lastError() const { return m_lastError; }

    /// Stores all bookmarks or none. Each needs a unique identifier.
    bool add(const QList<Bookmark> &bookmarks);
    /// Replaces description and group of the bookmark with the same identifier.
    Outcome update(const Bookmark &bookmark);
    /// Deletes all bookmarks or none. Identifiers may be repeated.
    Outcome remove(const QStringList &bookmarkIDs);
    bool removeAll();
    /// @return the number of deleted bookmarks, or nullopt on failure
    std::optional<int> removeEndedBefore(qint64 time);

    // The queries return nullopt on failure.

    /// Returns one bookmark or an empty list.
    std::optional<QList<Bookmark>> find(const QString &bookmarkID);
    /// Returns all bookmarks in the order in which they were added.
    std::optional<QList<Bookmark>> all();
    /// Returns the @p count latest bookmarks of a location or camera, the latest start first.
    std::optional<QList<Bookmark>> newest(const QString &locationOrCameraID, int count);
    /// Returns the bookmarks that overlap the range, sorted by start; none for an inverted range.
    std::optional<QList<Bookmark>> ofLocation(const QString &locationID, const TimeRange &range);
    std::optional<QList<Bookmark>> ofCameras(const QStringList &cameraIDs, const TimeRange &range);

    std::optional<RecycleSetting> recycleSetting();
    bool setRecycleSetting(const RecycleSetting &setting);

private:
    explicit BookmarkStore(const QString &path);

    bool prepareFile();
    QSqlQuery prepared(const QString &statement);
    bool run(QSqlQuery &query, const QVariantList &values);
    std::optional<QList<Bookmark>> select(const QString &clauses, const QVariantList &values);
    std::optional<QList<Bookmark>> overlapping(const QString &column, const QString &value,
                                               const TimeRange &range);
    bool fail(const QString &problem);

    QString m_path;
    QString m_lastError;
    std::unique_ptr<SqliteConnection> m_connection;
};

} // namespace stations
