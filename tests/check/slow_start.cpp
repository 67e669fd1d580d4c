#include <chrono>
#include <thread>

namespace {

/// Delays the start of a process that preloads this library, as a busy machine does, without using
/// processor time.
[[maybe_unused]] const bool late =
    (std::this_thread::sleep_for(std::chrono::milliseconds(1200)), true);

} // namespace
