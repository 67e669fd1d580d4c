#pragma once

#include "Comparison.h"

namespace workbench {

struct Options;

/// Compares the recording that the options name, with another one or by a replay to a plug-in that
/// is loaded for it and gone afterwards, and prints the report.
Comparison compareAsAsked(const Options &options);

} // namespace workbench
