#pragma once

#include "Replay.h"

namespace workbench {

struct Options;

/// Replays the recording that the options name, against a plug-in that is loaded for it and gone
/// afterwards, and prints the report.
replay::Result playRecording(const Options &options);

} // namespace workbench
