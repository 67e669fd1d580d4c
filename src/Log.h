#pragma once

#include "LogObject.h"

// The plug-in's log: every line goes to the host's logging library, at level error. Without the
// library nothing is written and nothing else changes.

namespace tessaline {

extern void *g_logModule;      ///< handle of the logging library, or null
extern LogObject *g_logObject; ///< the library's log object, or null
extern quint32 g_logModuleId;  ///< number that the library gave to this plug-in; 0 without

/// Asks the library whether an error line of this place is to be written.
bool logWanted(const char *file, int line);

/// Hands a line to the library. Not declared as printf-like: one of the formats deliberately asks
/// for a number where a text is passed.
void logWrite(const char *format, ...);

} // namespace tessaline

/// Writes one error line: a format that begins with "%s, ", then "Tessaline::" and the name of the
/// function, then what else the format needs. The arguments are evaluated only when the library
/// wants the line. The build names each source file by TESSALINE_SOURCE, as __FILE__ would give
/// away the folder of whoever built the library.
#define LOG_ERROR(...)                                                                             \
    do {                                                                                           \
        if (tessaline::logWanted(TESSALINE_SOURCE, __LINE__))                                      \
            tessaline::logWrite(__VA_ARGS__);                                                      \
    } while (false)
