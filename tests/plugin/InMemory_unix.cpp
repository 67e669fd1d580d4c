#include "InMemory.h"

#include <dlfcn.h>

bool isInMemory(const char *library)
{
    void *const handle = dlopen(library, RTLD_NOW | RTLD_NOLOAD);
    if (handle)
        dlclose(handle);
    return handle;
}
