#pragma once

#include "Options.h"

namespace workbench {

/// Measures how fluid the window is while it is used, prints the figures and writes them to
/// frame-times.json in the folder of pictures, if there is one; returns the exit code.
int measureFrameTimes(const Options &options);

} // namespace workbench
