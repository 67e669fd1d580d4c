#pragma once

#include "LogObject.h"

// The plug-in's log: every line goes to the host's logging library, at level error. Without the
// library nothing is written and nothing else changes.

namespace tessaline {

extern void *g_logModule;      ///< handle of the logging library, or null
extern LogObject *g_logObject; ///< the library's log object, or null
extern quint32 g_logModuleId;  ///< number that the library gave to this plug-in; 0 without

/// @return true if the library wants an error line from this place
bool logWanted(const char *file, int line);

/// Passes a line to the library. Not declared as printf-like: one of the formats deliberately asks
/// for a number where a text is passed.
void logWrite(const char *format, ...);

} // namespace tessaline

/// Writes one error line: a format that begins with "%s, ", then "Tessaline::" and the name of the
/// function, then the other arguments of the format. The arguments are evaluated only when the
/// library wants the line. The build defines TESSALINE_SOURCE for each source file: __FILE__ would
/// contain a folder of the build machine.
#define LOG_ERROR(...) LOG_ERROR_AT(__LINE__, __VA_ARGS__)

/// The same for a statement in another line of the source file.
#define LOG_ERROR_AT(line, ...)                                                                    \
    do {                                                                                           \
        if (tessaline::logWanted(TESSALINE_SOURCE, line))                                          \
            tessaline::logWrite(__VA_ARGS__);                                                      \
    } while (false)
