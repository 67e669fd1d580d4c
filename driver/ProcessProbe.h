#pragma once

#include <QtCore/QProcessEnvironment>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>

namespace driver {

// Reads facts about processes from the operating system. Each platform has its own source file.

/// @param library path or file name
/// @return true if the library is loaded in this process
bool isInMemory(const QString &library);

/// @return the number of threads of this process, or nullopt if the platform does not report it
std::optional<int> threadCount();

/// @return one line for each open file, socket and pipe of this process, or nullopt if the platform
/// does not list them
std::optional<QStringList> openFiles();

/// @return the bytes that are allocated and not freed, or nullopt if the platform does not count
/// them
std::optional<qint64> allocatedBytes();

/// @return processor time of a running process in milliseconds, or nullopt if it can't be read
std::optional<qint64> processorTime(qint64 processId);

/// @param exitCode of a process that crashed
/// @return a text for reports, "signal 11, SIGSEGV"
QString describeCrash(int exitCode);

/// Returns the environment of a check. Temporary files and settings are in @p folder. On Linux the
/// time zone has daylight saving, the locale has two-digit years, and the C library overwrites
/// freed memory.
QProcessEnvironment childEnvironment(const QString &folder);

} // namespace driver
