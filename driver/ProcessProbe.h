#pragma once

#include <QtCore/QProcessEnvironment>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace driver {

// Facts about a process that only the operating system has. Each platform has its source file.

/// Whether the library is mapped into this process, by path or plain name.
bool isInMemory(const QString &library);

/// The number of threads; nothing where it can't be told.
std::optional<int> threadCount();

/// The open files, sockets and pipes, one line each; nothing where they can't be listed.
std::optional<QStringList> openFiles();

/// What has been allocated and not been freed; nothing where it can't be told.
std::optional<qint64> allocatedBytes();

/// @return processor time of a running process in milliseconds, or nullopt if it can't be read
std::optional<qint64> processorTime(qint64 processId);

/// "signal 11, SIGSEGV" for the exit code of a process that crashed.
QString describeCrash(int exitCode);

/// The environment of a check: a zone with daylight saving, a locale with two-digit years, all
/// temporary files in @p folder, and freed memory overwritten at once where the C library can.
QProcessEnvironment childEnvironment(const QString &folder);

} // namespace driver
