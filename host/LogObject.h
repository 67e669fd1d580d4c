#pragma once

#include <QtCore/qglobal.h>

#include <cstdarg>
#include <cstddef>

/// The process-wide object of the host's logging library. It belongs to the library and is never
/// freed by its users. The positions of the fields are a binary contract.
struct LogObject
{
    void *reserved1[3];

    void *handle; ///< first argument of every function; logging is off while it is null

    void *reserved2[5];

    /// Registers a module by name and stores the number assigned to it in @p moduleId. May be
    /// null.
    void (*registerModule)(void *handle, int, const char *moduleName, quint32 *moduleId);

    void *reserved3[4];

    /// Whether a line is wanted: 0 means yes. May be null.
    /// @param severity the module number shifted left by 8 bits, ORed with the level
    int (*checkLine)(void *handle, quint32 severity, int, const char *file, int line);

    /// Formats and writes a line, printf-style. May be null.
    void (*writeLine)(void *handle, const char *format, va_list arguments);
};

static_assert(sizeof(void *) != 8 || offsetof(LogObject, handle) == 24);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, registerModule) == 72);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, checkLine) == 112);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, writeLine) == 120);

/// The one entry point of the library, resolved by its name: stores the address of the log object
/// in @p object. The integer is 0 for every caller.
using LogTrace_GetGlobalObject_t = void (*)(int, LogObject **object);
#define LogTrace_GetGlobalObject_name "LogTrace_GetGlobalObject"
