#pragma once

#include "Station.h"

#include <QtCore/QList>

namespace standin {
class Topology;
}

namespace workbench {

/// The stations of the workbench's installation: three sub-stations with four cameras each.
QList<StationConfig> demoStations();

/// Shows stations and cameras in the device tree, as sub-stations of the connected server.
void showInTopology(const QList<StationConfig> &stations, standin::Topology &topology);

/// The key of a camera in the device tree.
QString cameraKeyOf(const StationConfig &station, const Camera &camera);

} // namespace workbench
