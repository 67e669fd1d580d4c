#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace driver {

// Breadcrumbs are the last steps of a check in a memory-mapped file. The parent process can read
// them after a crash, and writing one needs no system call.

/// Creates @p file and stores all further breadcrumbs in it. Without this call, and if the file
/// can't be created, no breadcrumb is stored.
void openBreadcrumbFile(const QString &file);

/// Stores @p step, which is about to run. Only the last four steps remain.
void leaveBreadcrumb(const QString &step);

/// @return the steps in @p file, oldest first; empty if the file is missing or incomplete
QStringList readBreadcrumbs(const QString &file);

} // namespace driver
