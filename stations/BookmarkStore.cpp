#include "BookmarkStore.h"

#include "BookmarkSchema.h"
#include "SqliteConnection.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QSet>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

#include <algorithm>

namespace stations {

namespace {

/// Replaces a null string by an empty one. SQLite stores null as NULL, which equals nothing.
QVariant bound(const QString &text)
{
    return text.isNull() ? QVariant(QStringLiteral("")) : QVariant(text);
}

/// Reads a bookmark; the columns are in the order of the select statement.
/// @param labels cache of texts that many rows share
Bookmark bookmarkOf(const QSqlQuery &row, QSet<QString> &labels)
{
    const auto label = [&](int column) { return *labels.insert(row.value(column).toString()); };
    return {row.value(0).toString(),
            label(1),
            label(2),
            row.value(3).toLongLong(),
            row.value(4).toLongLong(),
            row.value(5).toString(),
            label(6),
            label(7)};
}

QString described(const QString &path, const QString &problem)
{
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), problem);
}

} // namespace

std::unique_ptr<BookmarkStore> BookmarkStore::open(const QString &path, QString *error)
{
    const QString problem = schema::problemOfFile(path);
    if (!problem.isEmpty()) {
        *error = described(path, problem);
        return nullptr;
    }
    std::unique_ptr<BookmarkStore> store(new BookmarkStore(path));
    if (!store->prepareFile()) {
        *error = store->lastError();
        return nullptr;
    }
    return store;
}

QString BookmarkStore::renameEmptied(const QString &path)
{
    const QFileInfo file(path);
    if (!file.isFile() || file.size() != 0)
        return QString();
    QString renamed = path + QLatin1String(".emptied");
    for (int number = 2; QFile::exists(renamed); ++number)
        renamed = QStringLiteral("%1.emptied-%2").arg(path).arg(number);
    if (!QFile::rename(path, renamed))
        return QString();
    for (const char *journal : {"-wal", "-shm", "-journal"})
        QFile::rename(path + QLatin1String(journal), renamed + QLatin1String(journal));
    return renamed;
}

BookmarkStore::BookmarkStore(const QString &path)
    : m_path(path)
    , m_connection(std::make_unique<SqliteConnection>(path))
{
}

BookmarkStore::~BookmarkStore() = default;

bool BookmarkStore::prepareFile()
{
    QSqlDatabase database = m_connection->database();
    const bool isNew = QFile(m_path).size() == 0;
    if (!database.open())
        return fail(database.lastError().text());
    if (!isNew) {
        const QString problem = schema::problemOfDatabase(database);
        if (!problem.isEmpty())
            return fail(problem);
    }

    QSqlQuery query(database);
    // Only UTF-16 preserves every text: a conversion would replace unpaired surrogates.
    if (!query.exec(QStringLiteral("PRAGMA encoding = 'UTF-16'")))
        return fail(query.lastError().text());
    const QString error = schema::migrate(database);
    if (!error.isEmpty())
        return fail(error);

    // After the migration: before it, the file must not differ from an empty one.
    const QStringList pragmas = {
        QStringLiteral("PRAGMA journal_mode = WAL"),
        // With a write-ahead log a power cut loses at most the last transactions, never the file.
        QStringLiteral("PRAGMA synchronous = NORMAL"),
        QStringLiteral("PRAGMA foreign_keys = ON"),
    };
    for (const QString &pragma : pragmas) {
        if (!query.exec(pragma))
            return fail(query.lastError().text());
    }
    return true;
}

bool BookmarkStore::add(const QList<Bookmark> &bookmarks)
{
    Transaction transaction(m_connection->database());
    if (!transaction.hasBegun())
        return fail(m_connection->database().lastError().text());
    QSqlQuery query = prepared(QStringLiteral(
        "INSERT INTO bookmark"
        " (id, camera_id, location_id, start_ms, end_ms, description, creator, label)"
        " VALUES (?, ?, ?, ?, ?, ?, ?, ?)"));
    for (const Bookmark &bookmark : bookmarks) {
        if (!run(query,
                 {bound(bookmark.bookmarkID), bound(bookmark.cameraID), bound(bookmark.locationID),
                  bookmark.start, bookmark.end, bound(bookmark.description),
                  bound(bookmark.creator), bound(bookmark.group)}))
            return false;
    }
    query.finish();
    return transaction.commit() || fail(m_connection->database().lastError().text());
}

BookmarkStore::Outcome BookmarkStore::update(const Bookmark &bookmark)
{
    QSqlQuery query =
        prepared(QStringLiteral("UPDATE bookmark SET description = ?, label = ? WHERE id = ?"));
    if (!run(query,
             {bound(bookmark.description), bound(bookmark.group), bound(bookmark.bookmarkID)}))
        return Outcome::Failed;
    return query.numRowsAffected() == 1 ? Outcome::Done : Outcome::Unknown;
}

BookmarkStore::Outcome BookmarkStore::remove(const QStringList &bookmarkIDs)
{
    const QSet<QString> distinct(bookmarkIDs.cbegin(), bookmarkIDs.cend());
    Transaction transaction(m_connection->database());
    if (!transaction.hasBegun()) {
        fail(m_connection->database().lastError().text());
        return Outcome::Failed;
    }
    QSqlQuery query = prepared(QStringLiteral("DELETE FROM bookmark WHERE id = ?"));
    for (const QString &bookmarkID : distinct) {
        if (!run(query, {bound(bookmarkID)}))
            return Outcome::Failed;
        if (query.numRowsAffected() != 1)
            return Outcome::Unknown;
    }
    query.finish();
    if (!transaction.commit()) {
        fail(m_connection->database().lastError().text());
        return Outcome::Failed;
    }
    return Outcome::Done;
}

bool BookmarkStore::removeAll()
{
    QSqlQuery query = prepared(QStringLiteral("DELETE FROM bookmark"));
    return run(query, {});
}

std::optional<int> BookmarkStore::removeEndedBefore(qint64 time)
{
    QSqlQuery query = prepared(QStringLiteral("DELETE FROM bookmark WHERE end_ms < ?"));
    if (!run(query, {time}))
        return std::nullopt;
    return query.numRowsAffected();
}

std::optional<QList<Bookmark>> BookmarkStore::find(const QString &bookmarkID)
{
    return select(QStringLiteral("WHERE id = ?"), {bound(bookmarkID)});
}

std::optional<QList<Bookmark>> BookmarkStore::all()
{
    return select(QStringLiteral("ORDER BY seq"), {});
}

std::optional<QList<Bookmark>> BookmarkStore::newest(const QString &locationOrCameraID, int count)
{
    // Each inner select reads a few entries of an index; a plain OR would sort all rows.
    const QVariant id = bound(locationOrCameraID);
    return select(
        QStringLiteral("WHERE seq IN ("
                       " SELECT seq FROM (SELECT seq FROM bookmark WHERE location_id = ?"
                       "  ORDER BY start_ms DESC, seq DESC LIMIT ?)"
                       " UNION SELECT seq FROM (SELECT seq FROM bookmark WHERE camera_id = ?"
                       "  ORDER BY start_ms DESC, seq DESC LIMIT ?))"
                       " ORDER BY start_ms DESC, seq DESC LIMIT ?"),
        {id, count, id, count, count});
}

std::optional<QList<Bookmark>> BookmarkStore::ofLocation(const QString &locationID,
                                                         const TimeRange &range)
{
    return overlapping(QStringLiteral("location_id"), locationID, range);
}

std::optional<QList<Bookmark>> BookmarkStore::ofCameras(const QStringList &cameraIDs,
                                                        const TimeRange &range)
{
    QList<Bookmark> found;
    QSet<QString> done;
    for (const QString &cameraID : cameraIDs) {
        if (done.contains(cameraID))
            continue;
        done.insert(cameraID);
        const auto ofCamera = overlapping(QStringLiteral("camera_id"), cameraID, range);
        if (!ofCamera)
            return std::nullopt;
        found.append(*ofCamera);
    }
    std::stable_sort(found.begin(), found.end(), [](const Bookmark &left, const Bookmark &right) {
        return left.start < right.start;
    });
    return found;
}

std::optional<RecycleSetting> BookmarkStore::recycleSetting()
{
    QSqlQuery query = prepared(QStringLiteral("SELECT reserve_hour, enabled FROM recycle_setting"));
    if (!run(query, {}))
        return std::nullopt;
    if (!query.next()) {
        fail(QStringLiteral("has no recycle setting"));
        return std::nullopt;
    }
    return RecycleSetting{query.value(0).toUInt(), query.value(1).toBool()};
}

bool BookmarkStore::setRecycleSetting(const RecycleSetting &setting)
{
    QSqlQuery query =
        prepared(QStringLiteral("UPDATE recycle_setting SET reserve_hour = ?, enabled = ?"));
    return run(query, {setting.reserveHour, setting.enabled});
}

QSqlQuery BookmarkStore::prepared(const QString &statement)
{
    QSqlQuery query(m_connection->database());
    query.setForwardOnly(true);
    // run() reports a failure, which stays in the query.
    query.prepare(statement);
    return query;
}

bool BookmarkStore::run(QSqlQuery &query, const QVariantList &values)
{
    // Executing an invalid statement would replace the error by one on the number of values.
    if (query.lastError().isValid())
        return fail(query.lastError().text());
    for (int i = 0; i < values.size(); ++i)
        query.bindValue(i, values.at(i));
    return query.exec() || fail(query.lastError().text());
}

std::optional<QList<Bookmark>> BookmarkStore::select(const QString &clauses,
                                                     const QVariantList &values)
{
    QSqlQuery query = prepared(QStringLiteral("SELECT id, camera_id, location_id, start_ms, end_ms,"
                                              " description, creator, label FROM bookmark ") +
                               clauses);
    if (!run(query, values))
        return std::nullopt;
    QList<Bookmark> bookmarks;
    QSet<QString> labels;
    while (query.next())
        bookmarks.append(bookmarkOf(query, labels));
    // Reading may fail in the middle; a partial list must not be returned as a complete one.
    if (query.lastError().isValid()) {
        fail(query.lastError().text());
        return std::nullopt;
    }
    return bookmarks;
}

std::optional<QList<Bookmark>>
BookmarkStore::overlapping(const QString &column, const QString &value, const TimeRange &range)
{
    if (range.end < range.start)
        return QList<Bookmark>();
    return select(QStringLiteral("WHERE %1 = ? AND start_ms <= ? AND end_ms >= ?"
                                 " ORDER BY start_ms, seq")
                      .arg(column),
                  {bound(value), range.end, range.start});
}

bool BookmarkStore::fail(const QString &problem)
{
    m_lastError = described(m_path, problem);
    return false;
}

} // namespace stations
