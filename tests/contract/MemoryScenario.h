#pragma once

#include "Scenario.h"

namespace check {

/// Plays each scenario once for each allocation that the plug-in makes in it, in a fork of the
/// process: once that allocation fails alone, once together with all that follow. The plug-in
/// throws nothing, leaks nothing, and each list and model is in its old or its new state.
///
/// The expected lines are those that do not appear without the lack of memory, sorted. A fork that
/// crashes inside Qt does not count: Qt reads memory that it could not allocate.
void playShortOfMemory(CheckContext &context, const ScenarioFile &file);

} // namespace check
