#pragma once

#include <QtCore/QString>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>

/// The literals of these tests stand for what clients send: names are spelled out on purpose.
inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

/// Runs a statement on a file as another application would.
inline bool runSql(const QString &path, const char *statement)
{
    const QString name = text("outsider");
    bool ok = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(text("QSQLITE"), name);
        database.setDatabaseName(path);
        ok = database.open() && QSqlQuery(database).exec(text(statement));
    }
    QSqlDatabase::removeDatabase(name);
    return ok;
}
