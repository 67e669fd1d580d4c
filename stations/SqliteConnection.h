#pragma once

#include <QtSql/QSqlDatabase>

namespace stations {

/// A connection to a SQLite file with a unique name in Qt's list of connections. The destructor
/// closes and removes it; destroy all its queries before.
class SqliteConnection
{
public:
    /// @param databaseName a path, or a URI if @p options contain QSQLITE_OPEN_URI
    explicit SqliteConnection(const QString &databaseName, const QString &options = QString());
    ~SqliteConnection();
    Q_DISABLE_COPY_MOVE(SqliteConnection)

    QSqlDatabase database() const;

private:
    QString m_name;
};

/// A transaction. The destructor rolls it back unless it is committed.
class Transaction
{
public:
    explicit Transaction(const QSqlDatabase &database);
    ~Transaction();
    Q_DISABLE_COPY_MOVE(Transaction)

    bool hasBegun() const { return m_open; }
    bool commit();

private:
    QSqlDatabase m_database;
    bool m_open;
};

} // namespace stations
