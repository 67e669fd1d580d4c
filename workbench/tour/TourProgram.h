#pragma once

#include "Options.h"

namespace workbench {

/// Plays the tour of the plug-in's interface in the terminal.
/// @return the exit code
int playTour(const Options &options);

} // namespace workbench
