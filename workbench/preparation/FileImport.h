#pragma once

#include "Preparation.h"

namespace stations {
class StationNetwork;
}

namespace workbench {

/// Imports the CSV file of a plan, unless a file with the same content was imported into its folder
/// before. Sets an error if no bookmark was imported.
void importFile(stations::StationNetwork &network, const Preparation::Plan &plan,
                const Preparation::Report &report, Preparation::Outcome &outcome);

} // namespace workbench
