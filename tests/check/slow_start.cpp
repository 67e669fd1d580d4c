#include <chrono>
#include <thread>

namespace {

/// Preloaded, it makes a process start as late as on a busy machine, without using the processor.
[[maybe_unused]] const bool late =
    (std::this_thread::sleep_for(std::chrono::milliseconds(1200)), true);

} // namespace
