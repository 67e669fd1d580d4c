#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace driver {

// The last steps of a check, kept in a file that is mapped into memory: so that they are there for
// whoever started the process, however it ended, and cost next to nothing.

/// Keeps breadcrumbs in this file from now on.
void keepBreadcrumbsIn(const QString &file);

/// Notes a step that is about to be taken; nothing where no file was named.
void leaveBreadcrumb(const QString &step);

/// The last steps in a file, oldest first.
QStringList breadcrumbsIn(const QString &file);

} // namespace driver
