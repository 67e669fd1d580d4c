#pragma once

#include "Preparation.h"

namespace workbench {

/// Prepares stations for a program that needs all of them. Prints the progress on standard error.
/// @return the error that prevents the program's start, or an empty text
QString prepareStations(stations::StationThread &stations, const Preparation::Plan &plan);

} // namespace workbench
