#pragma once

#include <cstddef>
#include <string>

// Makes allocations of the plug-in fail: those of its own code, and those of Qt and the C++ runtime
// that it calls. Allocations of the stand-ins do not fail.

namespace failingmemory {

/// True if only operator new can fail. The sanitizers replace malloc() and free() themselves.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define FAILING_MEMORY_ONLY_NEW
constexpr bool OnlyNewFails = true;
#else
constexpr bool OnlyNewFails = false;
#endif

/// Sets the file of the plug-in. Call it before the other functions.
void setLibrary(const std::string &path);
/// Counts the plug-in's blocks; no allocation fails.
void watch();
/// Like watch(), but allocation number @p n from now fails, counted from 0.
void failAt(int n);
/// Like watch(), but forks twice at each allocation and waits for the children. In the first child
/// only this allocation fails, in the second one this and all later ones.
void forkAtEach();
/// No allocation fails or is counted any more.
void stop();

/// @return the number of counted blocks that are not freed
std::size_t blocks();
/// @return the number of the plug-in's allocations since the last watch() or failAt()
std::size_t allocations();

/// @return true in a child of forkAtEach()
bool isChild();
/// Ends a child and passes its report to the parent.
[[noreturn]] void endChild(const std::string &report);
/// Removes and returns the reports of the children, with a line for each child that crashed.
std::string takeReports();
/// @return the number of allocations at which forkAtEach() forked
int forkCount();

} // namespace failingmemory
