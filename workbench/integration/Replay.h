#pragma once

#include "Comparison.h"

class PluginBase;

namespace workbench {

/// Plays a recording against a plug-in without stations: makes the recorded calls, delivers the
/// recorded answers and events, and compares what the plug-in does.
namespace replay {

/// @param plugin newly loaded and not yet initialised; must not be used for anything else after
Comparison run(const QString &file, PluginBase &plugin);

} // namespace replay
} // namespace workbench
