#pragma once

#include "LogObject.h"

// The platform's way to load the host's logging library at run time; one source file a platform.

namespace tessaline {

/// Loads the library from the platform's usual search path. Null when there is none.
void *loadLogLibrary();

/// The library's entry point, or null when the library lacks it.
LogTrace_GetGlobalObject_t resolveLogEntryPoint(void *library);

/// Gives the library back. @p library must not be null.
void freeLogLibrary(void *library);

} // namespace tessaline
