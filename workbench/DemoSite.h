#pragma once

#include "Station.h"

#include <QtCore/QList>

namespace standin {
class Topology;
}

namespace workbench {

/// The stations of the workbench's installation, sub-stations with so many cameras each. The first
/// ones are the same however many there are.
QList<StationConfig> demoStations(int stations = 3, int camerasEach = 4);

/// Shows stations and cameras in the device tree, as sub-stations of the connected server.
void showInTopology(const QList<StationConfig> &stations, standin::Topology &topology);

} // namespace workbench
