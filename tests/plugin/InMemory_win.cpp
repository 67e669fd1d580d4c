#include "InMemory.h"

#include <cstring>

#include <qt_windows.h>

bool isInMemory(const char *library)
{
    // A module is known by its name; how a path is written may differ.
    const char *const folderEnd = std::strrchr(library, '/');
    return GetModuleHandleA(folderEnd ? folderEnd + 1 : library);
}
