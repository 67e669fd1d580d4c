#pragma once

#include <cstddef>
#include <string>

// Lets allocations fail: those of the plug-in's own code and those that Qt makes for it, which are
// the ones whose nearest caller outside of Qt and the runtime is the plug-in. The memory of the
// stand-ins is not the plug-in's to handle.

namespace failingmemory {

/// Whether operator new alone can fail; the sanitizers need the C functions for themselves.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define FAILING_MEMORY_IS_NEW_ALONE
constexpr bool IsNewAlone = true;
#else
constexpr bool IsNewAlone = false;
#endif

/// The file of the plug-in; set before anything else.
void setLibrary(const std::string &path);
/// Nothing fails, but what the plug-in allocates is noted.
void watch();
/// The n-th allocation from now fails, counted from 0.
void failAt(int n);
/// At each allocation the process is doubled twice: in one double only that allocation fails, in
/// the other all that follow too. The process itself goes on when its doubles have ended.
void forkAtEach();
/// Nothing fails any more.
void stop();

/// Number of blocks noted and not yet freed.
std::size_t blocks();

bool isDouble();
/// Ends a double. What it has to say reaches the process.
[[noreturn]] void endDouble(const std::string &report);
/// What all doubles said since the last call, and how those ended that did not come to speak.
std::string takeReports();
/// How many allocations have failed in doubles so far.
int tried();

} // namespace failingmemory
