#pragma once

#include <QtCore/qglobal.h>

#include <cstdarg>
#include <cstddef>

/// The process-wide object of the host's logging library. Keep the offsets of its fields: they are
/// a binary contract. Any function may be null.
/// [library-owned] [gui-thread]
struct LogObject
{
    void *reserved1[3];

    void *handle; ///< first argument of every function; logging is off while it is null

    void *reserved2[5];

    /// Registers a module by name and stores its number in @p moduleId. Pass 19 as the integer.
    /// [gui-thread] [may be null]
    void (*registerModule)(void *handle, int, const char *moduleName, quint32 *moduleId);

    void *reserved3[4];

    /// Checks whether a line shall be written. Pass 0 as the integer.
    /// [gui-thread] [may be null]
    /// @param severity the module number shifted left by 8 bits, ORed with the level; 2 for an
    /// error
    /// @param file     source file of the log statement
    /// @return 0 if the line shall be written
    int (*checkLine)(void *handle, quint32 severity, int, const char *file, int line);

    /// Formats the line as printf does and writes it.
    /// [gui-thread] [may be null]
    void (*writeLine)(void *handle, const char *format, va_list arguments);
};

static_assert(sizeof(void *) != 8 || offsetof(LogObject, handle) == 24);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, registerModule) == 72);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, checkLine) == 112);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, writeLine) == 120);

/// The library's only entry point, resolved by its name. Stores the address of the log object, or
/// null, in @p object. Pass 0 as the integer.
using LogTrace_GetGlobalObject_t = void (*)(int, LogObject **object);
#define LogTrace_GetGlobalObject_name "LogTrace_GetGlobalObject"
