#pragma once

#include "Comparison.h"

namespace workbench {

struct Options;

/// Compares the recording that the options name with another one, or with a plug-in that is loaded
/// for the replay and unloaded afterwards. Prints the report.
Comparison compareAsAsked(const Options &options);

} // namespace workbench
