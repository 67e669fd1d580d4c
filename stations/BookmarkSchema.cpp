#include "BookmarkSchema.h"

#include "SqliteConnection.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtCore/QtEndian>
#include <QtSql/QSqlError>
#include <QtSql/QSqlQuery>

namespace stations::schema {

namespace {

constexpr quint32 ApplicationID = 0x54534C42; // "TSLB"

/// Step n migrates version n to n + 1. Never edit a step that has been shipped.
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
            // The index includes the end, so that a search for overlaps does not read the rows.
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

/// Returns the single value of a statement; invalid if the statement fails.
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
        return QStringLiteral(
                   "was written by a newer version of this program (layout %1, supported "
                   "up to %2); open it with that version")
            .arg(version)
            .arg(currentVersion());
    return QString();
}

/// Checks the file header before SQLite opens the file, which might change a foreign file.
QString problemOfHeader(const QByteArray &header)
{
    constexpr qsizetype headerSize = 100;
    constexpr qsizetype versionAt = 60;
    constexpr qsizetype applicationAt = 68;
    // The magic text includes the terminating NUL.
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

/// Checks the whole file without locks and without creating SQLite's helper files. Only for a file
/// without a journal, because this mode ignores the journal.
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
    // Otherwise SQLite opens it for reading and fails at the first bookmark.
    if (!QFileInfo(file).isWritable())
        return QStringLiteral("is not writable; change its permissions");
    // A crash between creating the file and its first transaction leaves an empty file.
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

} // namespace stations::schema
