#pragma once

#include "Bookmark.h"

#include <QtCore/QList>
#include <QtCore/QStringList>

#include <memory>
#include <optional>

class QSqlQuery;

namespace workbench {

class SqliteConnection;

/// A closed range of time, milliseconds since 1970-01-01T00:00:00 UTC.
struct TimeRange
{
    qint64 start = 0;
    qint64 end = 0;
};

/// Whether and when a station deletes old bookmarks by itself.
struct RecycleSetting
{
    uint reserveHour = 0; ///< hours that a bookmark is kept after its end
    bool enabled = false;
};

/// The bookmarks of one station in one SQLite file. To be used in the thread that opened it.
/// Whatever changes more than one row is one transaction. An operation that fails has changed
/// nothing and leaves a text in lastError().
class BookmarkStore
{
public:
    enum class Outcome {
        Done,
        Unknown, ///< a bookmark is not in the store; nothing was changed
        Failed   ///< see lastError()
    };

    /// Opens the file, creates it when there is none. Null with @p error, which names the file,
    /// for one that isn't a station's, is damaged or is of a newer version; it stays untouched.
    static std::unique_ptr<BookmarkStore> open(const QString &path, QString *error);
    /// Renames a file of 0 bytes and its journals: SQLite would take it for a new file, and delete
    /// the log that may hold its bookmarks. Returns the new name, or an empty text for other files.
    static QString renameEmptied(const QString &path);
    ~BookmarkStore();
    Q_DISABLE_COPY_MOVE(BookmarkStore)

    /// The last failure, in words, with the name of the file.
    QString lastError() const { return m_lastError; }

    /// Stores all or none; each needs an identifier of its own.
    bool add(const QList<Bookmark> &bookmarks);
    /// Replaces description and group of the bookmark with that identifier.
    Outcome update(const Bookmark &bookmark);
    /// Deletes all or none; an identifier may be there twice.
    Outcome remove(const QStringList &bookmarkIDs);
    bool removeAll();
    /// How many were deleted.
    std::optional<int> removeEndedBefore(qint64 time);

    /// One bookmark or an empty list.
    std::optional<QList<Bookmark>> find(const QString &bookmarkID);
    /// In the order in which they were added.
    std::optional<QList<Bookmark>> all();
    /// The @p count latest by their start, latest first, of a location or a camera.
    std::optional<QList<Bookmark>> newest(const QString &locationOrCameraID, int count);
    /// What overlaps the range, by start; nothing for a range that ends before it starts.
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

} // namespace workbench
