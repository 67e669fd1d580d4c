#pragma once

#include "Comparison.h"

namespace workbench {

struct Options;

/// Compares the recording of --replay with another one or with a newly loaded plug-in. Prints the
/// report.
Comparison compareByOptions(const Options &options);

} // namespace workbench
