#pragma once

#include "Station.h"

#include <QtCore/QList>

namespace workbench {

/// Returns the configuration of the workbench's stations, sub-stations of the connected server. The
/// first ones are the same for every number of stations.
QList<stations::StationConfig> demoStations(int stations = 3, int camerasEach = 4);

} // namespace workbench
