#pragma once

#include "Options.h"

namespace workbench {

/// Measures the window while simulated inputs operate it. Prints the times and, with --pictures,
/// writes them to frame-times.json.
/// @return the exit code
int measureFrameTimes(const Options &options);

} // namespace workbench
