#pragma once

#include "LogObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QFlags>
#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>

#if defined(QARNLOGUTL_LIBRARY)
#define QARNLOGUTL_EXPORT Q_DECL_EXPORT
#else
#define QARNLOGUTL_EXPORT Q_DECL_IMPORT
#endif

/// The entry point; resolved by its name, or called directly by whoever links the library.
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

/// One call of registerModule.
struct LogRegistration
{
    int constant = 0; ///< the second argument
    QByteArray name;
    quint32 number = 0; ///< the module number given back
};

/// How often each function was called.
struct LogCalls
{
    int getGlobalObject = 0;
    int withWrongArgument = 0; ///< those of them whose first argument was not 0, the only one known
    int registerModule = 0;
    int checkLine = 0;
    int writeLine = 0;
    int withWrongHandle = 0; ///< calls of the three above that did not pass the object's handle
};

/// The parts of the log object that may be missing.
enum class LogPart {
    Handle = 1,
    RegisterModule = 2,
    CheckLine = 4,
    WriteLine = 8,
};
Q_DECLARE_FLAGS(LogParts, LogPart)
Q_DECLARE_OPERATORS_FOR_FLAGS(LogParts)

/// Controls the process-wide log object and shows what its users did with it. Like the log object
/// itself for the thread of the user interface only.
namespace logging {

/// Sends lines to standard error, the default: local time, severity, module, file and line, text.
QARNLOGUTL_EXPORT void writeToStandardError();

/// Appends lines to a file. False when it cannot be opened; lines go to standard error then.
QARNLOGUTL_EXPORT bool writeToFile(const QString &path);

/// Hands lines to a callback and writes them nowhere.
QARNLOGUTL_EXPORT void writeTo(std::function<void(const LogLine &)> callback);

/// Hands lines to a callback as well, wherever they are written. Null ends it.
QARNLOGUTL_EXPORT void watch(std::function<void(const LogLine &)> callback);

/// Takes parts out of the log object: they are null from now on, all others as usual. A handle or
/// function that a user has copied before stays valid.
QARNLOGUTL_EXPORT void withhold(LogParts parts);

/// Makes checkLine answer non-zero.
QARNLOGUTL_EXPORT void refuseLines(bool refuse);

QARNLOGUTL_EXPORT LogCalls calls();
QARNLOGUTL_EXPORT QList<LogRegistration> registrations();

/// Puts everything back to the state at load, the numbering of modules included. A module that
/// registered before keeps its number, and shows as unknown or under a later module's name.
QARNLOGUTL_EXPORT void reset();

} // namespace logging
} // namespace standin
