#pragma once

#include <QtCore/QString>

class QSqlDatabase;

/// The layout of a station's file: what is accepted as one, and how an older one is brought up
/// to date. Texts of errors do not name the file; the caller does.
namespace workbench::schema {

/// The newest layout, kept in SQLite's user_version.
int currentVersion();

/// Why the file at @p path must not be opened for writing; empty for a station's file in order
/// and for one that is not there yet. Changes nothing, neither in the file nor beside it.
QString problemOfFile(const QString &path);

/// The same for an open database; reads all of it.
QString problemOfDatabase(const QSqlDatabase &database);

/// Brings an open database, also a new and empty one, to the newest layout, each step in a
/// transaction. Returns the text of an error, or an empty text.
QString migrate(const QSqlDatabase &database);

} // namespace workbench::schema
