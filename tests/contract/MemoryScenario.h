#pragma once

#include "Scenario.h"

namespace check {

/// Plays each scenario twice for each allocation of the plug-in, in a child process: once only this
/// allocation fails, once this and all later ones. The check fails if an exception leaves the
/// plug-in, if a block leaks, or if a list or model is in neither its old nor its new state.
///
/// The expected lines of the file are those that appear only when memory is short, sorted. Crashes
/// inside Qt do not count, because Qt reads some memory that it could not allocate.
void playWithFailingMemory(CheckContext &context, const ScenarioFile &file);

} // namespace check
