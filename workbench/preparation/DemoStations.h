#pragma once

#include "Station.h"

#include <QtCore/QList>

namespace workbench {

/// The stations of the workbench's installation, sub-stations with so many cameras each. The first
/// ones are the same however many there are.
QList<StationConfig> demoStations(int stations = 3, int camerasEach = 4);

} // namespace workbench
