#include "LogLibrary.h"

#include <dlfcn.h>

namespace tessaline {

void *loadLogLibrary()
{
    return dlopen("libQarnLogUtl.so", RTLD_NOW | RTLD_LOCAL);
}

LogTrace_GetGlobalObject_t resolveLogEntryPoint(void *library)
{
    return reinterpret_cast<LogTrace_GetGlobalObject_t>(
        dlsym(library, LogTrace_GetGlobalObject_name));
}

void freeLogLibrary(void *library)
{
    dlclose(library);
}

} // namespace tessaline
