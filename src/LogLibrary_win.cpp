#include "LogLibrary.h"

#include <qt_windows.h>

namespace tessaline {

void *loadLogLibrary()
{
    return LoadLibraryA("QarnLogUtl.dll");
}

LogTrace_GetGlobalObject_t resolveLogEntryPoint(void *library)
{
    const auto address =
        GetProcAddress(static_cast<HMODULE>(library), LogTrace_GetGlobalObject_name);
    return reinterpret_cast<LogTrace_GetGlobalObject_t>(reinterpret_cast<void *>(address));
}

void freeLogLibrary(void *library)
{
    FreeLibrary(static_cast<HMODULE>(library));
}

} // namespace tessaline
