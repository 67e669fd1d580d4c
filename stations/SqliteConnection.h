#pragma once

#include <QtSql/QSqlDatabase>

namespace workbench {

/// A connection to one SQLite file under a name of its own; closed and taken off Qt's list of
/// connections on destruction. All queries made with it must be gone by then.
class SqliteConnection
{
public:
    /// @p databaseName is a path, or an URI where @p options say so.
    explicit SqliteConnection(const QString &databaseName, const QString &options = QString());
    ~SqliteConnection();
    Q_DISABLE_COPY_MOVE(SqliteConnection)

    QSqlDatabase database() const;

private:
    QString m_name;
};

/// A transaction that is rolled back unless it is committed.
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

} // namespace workbench
