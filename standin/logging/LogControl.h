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

/// The entry point; resolved by its name, or called directly by a program that links the library.
/// It stores no object for another first argument than 0, the only one known.
extern "C" QARNLOGUTL_EXPORT void LogTrace_GetGlobalObject(int, LogObject **object);

namespace standin {

/// One written line.
struct LogLine
{
    QByteArray module;        ///< the registered name; "module N" for an unknown number
    QByteArray severity;      ///< the level as a word, "error" for 2
    quint32 severityWord = 0; ///< as given to checkLine: module number << 8 | level
    QByteArray file;          ///< as given to checkLine; empty for a line that was not checked
    int line = 0;             ///< likewise; 0 for a line that was not checked
    QByteArray format;
    QByteArray text; ///< the format with its arguments filled in
};

/// Controls where the lines of the process-wide log object go. Like the log object itself for the
/// thread of the user interface only.
namespace logging {

/// Sends lines to standard error, the default: local time, severity, module, file and line, text.
QARNLOGUTL_EXPORT void writeToStandardError();

/// Appends lines to a file. False when it cannot be opened; lines go to standard error then.
QARNLOGUTL_EXPORT bool writeToFile(const QString &path);

/// Hands lines to a callback and writes them nowhere.
QARNLOGUTL_EXPORT void writeTo(std::function<void(const LogLine &)> callback);

/// Hands lines to a callback as well, wherever they are written. Null ends it.
QARNLOGUTL_EXPORT void watch(std::function<void(const LogLine &)> callback);

/// Puts everything back to the state at load, the numbering of modules included. A module that
/// registered before keeps its number, and shows as unknown or under a later module's name.
QARNLOGUTL_EXPORT void reset();

} // namespace logging
} // namespace standin
