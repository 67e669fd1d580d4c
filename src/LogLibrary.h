#pragma once

#include "LogObject.h"

// Loads the host's logging library at run time. Each platform has a source file.

namespace tessaline {

/// Loads the library from the platform's search path. Returns null if it is not found.
void *loadLogLibrary();

/// Returns the library's entry point, or null if the library lacks it.
LogTrace_GetGlobalObject_t resolveLogEntryPoint(void *library);

/// Unloads the library. @p library must not be null.
void freeLogLibrary(void *library);

} // namespace tessaline
