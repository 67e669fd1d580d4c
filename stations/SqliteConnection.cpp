#include "SqliteConnection.h"

#include <QtCore/QUuid>

namespace stations {

SqliteConnection::SqliteConnection(const QString &databaseName, const QString &options)
    : m_name(QUuid::createUuid().toString(QUuid::WithoutBraces))
{
    QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
    database.setDatabaseName(databaseName);
    database.setConnectOptions(options);
}

SqliteConnection::~SqliteConnection()
{
    database().close();
    QSqlDatabase::removeDatabase(m_name);
}

QSqlDatabase SqliteConnection::database() const
{
    return QSqlDatabase::database(m_name, false);
}

Transaction::Transaction(const QSqlDatabase &database)
    : m_database(database)
    , m_open(m_database.transaction())
{
}

Transaction::~Transaction()
{
    if (m_open)
        m_database.rollback();
}

bool Transaction::commit()
{
    const bool committed = m_database.commit();
    m_open = m_open && !committed;
    return committed;
}

} // namespace stations
