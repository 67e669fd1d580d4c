#pragma once

#include "LogObject.h"

// The plug-in's log. Every line goes to the host's logging library at level error; without the
// library the plug-in works and logs nothing.

namespace tessaline {

extern void *g_logModule;      ///< handle of the logging library, or null
extern LogObject *g_logObject; ///< the library's log object, or null
extern quint32 g_logModuleId;  ///< the plug-in's module number in the library; 0 without a library

/// @return true if the library wants an error line from this place
bool logWanted(const char *file, int line);

/// Writes a line, printf-style. Not declared as such: one format deliberately has "%d" for a text.
void logWrite(const char *format, ...);

} // namespace tessaline

/// Writes one error line: a format that begins with "%s, ", then "Tessaline::" and the name of the
/// function, then the other arguments of the format. Arguments are evaluated only if the library
/// wants the line. TESSALINE_SOURCE replaces __FILE__, which contains a folder of the build
/// machine.
#define LOG_ERROR(...) LOG_ERROR_AT(__LINE__, __VA_ARGS__)

/// Like LOG_ERROR, with the line of another statement in the source file.
#define LOG_ERROR_AT(line, ...)                                                                    \
    do {                                                                                           \
        if (tessaline::logWanted(TESSALINE_SOURCE, line))                                          \
            tessaline::logWrite(__VA_ARGS__);                                                      \
    } while (false)
