#pragma once

/// Whether this process has the library loaded; by its path, or by the name that the loader knows.
bool isInMemory(const char *library);
