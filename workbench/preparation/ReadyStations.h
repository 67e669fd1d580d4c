#pragma once

#include "Preparation.h"

namespace workbench {

/// Prepares stations for a program that needs all of them, and tells how far that is on standard
/// error. Returns when it is done, with what keeps the program from beginning or an empty text.
QString makeReady(StationThread &stations, const Preparation::Plan &plan);

} // namespace workbench
