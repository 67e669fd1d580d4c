#pragma once

#include "LogObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <functional>

#if defined(QARNLOGUTL_LIBRARY)
#define QARNLOGUTL_EXPORT Q_DECL_EXPORT
#else
#define QARNLOGUTL_EXPORT Q_DECL_IMPORT
#endif

/// Stores the address of the log object in @p object, or null if the first argument is not 0.
/// Clients resolve it by its name; programs that link the library may call it directly.
extern "C" QARNLOGUTL_EXPORT void LogTrace_GetGlobalObject(int, LogObject **object);

namespace standin {

/// One written line.
struct LogLine
{
    QByteArray module;        ///< the registered name, or "module N" for an unknown number
    QByteArray severity;      ///< the level as a word, "error" for 2
    quint32 severityWord = 0; ///< as given to checkLine: module number << 8 | level
    QByteArray file;          ///< as given to checkLine; empty for a line that was not checked
    int line = 0;             ///< as given to checkLine; 0 for a line that was not checked
    QByteArray format;
    QByteArray text; ///< the format with its arguments
};

/// Controls where the lines of the process-wide log object go. Call from the GUI thread only, as
/// the log object itself.
namespace logging {

/// Writes lines to standard error, as by default. A line has local time, severity, module, file,
/// line number and text.
QARNLOGUTL_EXPORT void writeToStandardError();

/// Appends lines to a file.
/// @return false if the file can't be opened; lines go to standard error then
QARNLOGUTL_EXPORT bool writeToFile(const QString &path);

/// Passes lines to a callback instead of writing them.
QARNLOGUTL_EXPORT void writeTo(std::function<void(const LogLine &)> callback);

/// Passes lines to a callback in addition to writing them. Null removes the callback.
QARNLOGUTL_EXPORT void watch(std::function<void(const LogLine &)> callback);

/// Resets everything to the state at load, including the numbers of modules. Lines of a module that
/// registered before have an unknown module or a later module's name.
QARNLOGUTL_EXPORT void reset();

} // namespace logging
} // namespace standin
