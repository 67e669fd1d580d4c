#pragma once

#include <QtCore/QString>

class QSqlDatabase;

/// The layout of a station's file: checks files and migrates older layouts. Messages do not name
/// the file; the caller adds its name.
namespace stations::schema {

/// Returns the number of the newest layout, which SQLite stores as user_version.
int currentVersion();

/// Returns the reason why the file must not be opened for writing. Empty for a valid station's file
/// and for a file that does not exist. Changes no file.
QString problemOfFile(const QString &path);

/// Like problemOfFile(), for an open database. Reads all of it.
QString problemOfDatabase(const QSqlDatabase &database);

/// Migrates an open database, also an empty one, to the newest layout. Each step is a transaction.
/// @return an error message, or an empty text
QString migrate(const QSqlDatabase &database);

} // namespace stations::schema
