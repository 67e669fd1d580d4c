#pragma once

#include "Comparison.h"

class PluginBase;

namespace workbench {

/// Plays a recording against a plug-in without stations: makes the recorded calls, delivers the
/// recorded answers and events, and compares what the plug-in does.
namespace replay {

/// Replays a file.
/// @param plugin newly loaded and not initialised; don't use it afterwards
Comparison run(const QString &file, PluginBase &plugin);

} // namespace replay
} // namespace workbench
