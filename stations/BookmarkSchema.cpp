#include "BookmarkSchema.h"

#include "SqliteConnection.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtCore/QtEndian>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace workbench::schema {

namespace {

constexpr quint32 ApplicationID = 0x54534C42; // "TSLB"

/// Step n brings version n to n + 1. A step that has been shipped is never edited.
QList<QStringList> migrations()
{
    return {
        {
            QStringLiteral("CREATE TABLE bookmark ("
                           " seq INTEGER PRIMARY KEY,"
                           " id TEXT NOT NULL UNIQUE,"
                           " camera_id TEXT NOT NULL,"
                           " location_id TEXT NOT NULL,"
                           " start_ms INTEGER NOT NULL,"
                           " end_ms INTEGER NOT NULL CHECK (end_ms >= start_ms),"
                           " description TEXT NOT NULL,"
                           " creator TEXT NOT NULL,"
                           " label TEXT NOT NULL) STRICT"),
            // The end stands in the index so that an overlap is decided without the row.
            QStringLiteral("CREATE INDEX bookmark_by_location"
                           " ON bookmark (location_id, start_ms, end_ms)"),
            QStringLiteral("CREATE INDEX bookmark_by_camera"
                           " ON bookmark (camera_id, start_ms, end_ms)"),
            QStringLiteral("CREATE INDEX bookmark_by_end ON bookmark (end_ms)"),
            QStringLiteral("CREATE TABLE recycle_setting ("
                           " only_row INTEGER PRIMARY KEY CHECK (only_row = 1),"
                           " reserve_hour INTEGER NOT NULL,"
                           " enabled INTEGER NOT NULL) STRICT"),
            QStringLiteral("INSERT INTO recycle_setting VALUES (1, 0, 0)"),
        },
    };
}

/// The single value that a statement yields; nothing when it fails.
QVariant valueOf(const QSqlDatabase &database, const QString &statement)
{
    QSqlQuery query(database);
    return query.exec(statement) && query.next() ? query.value(0) : QVariant();
}

QString problemOfIdentity(quint32 applicationID, quint32 version)
{
    if (applicationID != ApplicationID)
        return QStringLiteral("is a database of another application");
    if (version > static_cast<quint32>(currentVersion()))
        return QStringLiteral("was written by a newer version (layout %1, known up to %2)")
            .arg(version)
            .arg(currentVersion());
    return QString();
}

/// Judges by the file header, so that a foreign file is never handed to SQLite.
QString problemOfHeader(const QByteArray &header)
{
    constexpr qsizetype headerSize = 100;
    constexpr qsizetype versionAt = 60;
    constexpr qsizetype applicationAt = 68;
    // The terminating NUL belongs to SQLite's magic text.
    if (header.size() < headerSize || !header.startsWith(QByteArray("SQLite format 3", 16)))
        return QStringLiteral("is not a SQLite database");
    return problemOfIdentity(qFromBigEndian<quint32>(header.constData() + applicationAt),
                             qFromBigEndian<quint32>(header.constData() + versionAt));
}

bool hasJournal(const QString &path)
{
    return QFileInfo::exists(path + QLatin1String("-wal")) ||
           QFileInfo::exists(path + QLatin1String("-journal"));
}

/// Reads the whole file without locks and without SQLite's helper files beside it. Only for a
/// file that has no journal: what stands in a journal would not be seen.
QString problemOfContents(const QString &path)
{
    const QUrl url = QUrl::fromLocalFile(QFileInfo(path).absoluteFilePath());
    const SqliteConnection connection(QString::fromLatin1(url.toEncoded()) +
                                          QLatin1String("?immutable=1"),
                                      QStringLiteral("QSQLITE_OPEN_URI;QSQLITE_OPEN_READONLY"));
    QSqlDatabase database = connection.database();
    return database.open() ? problemOfDatabase(database) : database.lastError().text();
}

QString runStep(const QSqlDatabase &database, const QStringList &statements, int newVersion)
{
    Transaction transaction(database);
    if (!transaction.hasBegun())
        return database.lastError().text();
    QSqlQuery query(database);
    const QStringList identity = {
        QStringLiteral("PRAGMA application_id = %1").arg(ApplicationID),
        QStringLiteral("PRAGMA user_version = %1").arg(newVersion),
    };
    const QStringList all = statements + identity;
    for (const QString &statement : all) {
        if (!query.exec(statement))
            return query.lastError().text();
    }
    query.finish();
    return transaction.commit() ? QString() : database.lastError().text();
}

} // namespace

int currentVersion()
{
    return static_cast<int>(migrations().size());
}

QString problemOfFile(const QString &path)
{
    QFile file(path);
    if (!file.exists())
        return QString();
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    // SQLite would open it for reading and fail at the first bookmark.
    if (!QFileInfo(file).isWritable())
        return QStringLiteral("is not writable");
    // What a crash between creating the file and its first transaction leaves.
    if (file.size() == 0)
        return QString();
    QString problem = problemOfHeader(file.read(100));
    if (!problem.isEmpty() || hasJournal(path))
        return problem;
    file.close();
    return problemOfContents(path);
}

QString problemOfDatabase(const QSqlDatabase &database)
{
    const QVariant applicationID = valueOf(database, QStringLiteral("PRAGMA application_id"));
    const QVariant version = valueOf(database, QStringLiteral("PRAGMA user_version"));
    if (!applicationID.isValid() || !version.isValid())
        return QStringLiteral("is damaged");
    QString problem = problemOfIdentity(applicationID.toUInt(), version.toUInt());
    if (!problem.isEmpty())
        return problem;
    const QString check = valueOf(database, QStringLiteral("PRAGMA quick_check(1)")).toString();
    return check == QLatin1String("ok") ? QString() : QStringLiteral("is damaged: %1").arg(check);
}

QString migrate(const QSqlDatabase &database)
{
    const QList<QStringList> steps = migrations();
    const int version = valueOf(database, QStringLiteral("PRAGMA user_version")).toInt();
    for (int step = version; step < steps.size(); ++step) {
        QString error = runStep(database, steps.at(step), step + 1);
        if (!error.isEmpty())
            return error;
    }
    return QString();
}

} // namespace workbench::schema
