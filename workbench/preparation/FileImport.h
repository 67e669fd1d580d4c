#pragma once

#include "Preparation.h"

namespace workbench {

class Site;

/// Imports the CSV file of a plan, unless the plan's folder has got its content before. A file of
/// which nothing could be imported is an error.
void importFile(Site &site, const Preparation::Plan &plan, const Preparation::Report &report,
                Preparation::Outcome &outcome);

} // namespace workbench
