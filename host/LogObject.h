#pragma once

#include <QtCore/qglobal.h>

#include <cstdarg>
#include <cstddef>

/// The process-wide object of the host's logging library. The positions of its fields are a binary
/// contract.
/// [host-owned]
struct LogObject
{
    void *reserved1[3];

    void *handle; ///< first argument of every function; logging is off while it is null

    void *reserved2[5];

    /// Registers a module by name and stores its number in @p moduleId.
    /// [may be null]
    void (*registerModule)(void *handle, int, const char *moduleName, quint32 *moduleId);

    void *reserved3[4];

    /// Returns 0 if the library wants the line.
    /// [may be null]
    /// @param severity the module number shifted left by 8 bits, ORed with the level
    int (*checkLine)(void *handle, quint32 severity, int, const char *file, int line);

    /// Formats and writes a line, printf-style.
    /// [may be null]
    void (*writeLine)(void *handle, const char *format, va_list arguments);
};

static_assert(sizeof(void *) != 8 || offsetof(LogObject, handle) == 24);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, registerModule) == 72);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, checkLine) == 112);
static_assert(sizeof(void *) != 8 || offsetof(LogObject, writeLine) == 120);

/// The library's only entry point, resolved by its name. Stores the address of the log object in
/// @p object. Every caller passes 0 as the integer.
using LogTrace_GetGlobalObject_t = void (*)(int, LogObject **object);
#define LogTrace_GetGlobalObject_name "LogTrace_GetGlobalObject"
