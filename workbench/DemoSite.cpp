#include "DemoSite.h"

#include "topology/Topology.h"

namespace workbench {

namespace {

StationConfig makeStation(int number, const QString &name, const QStringList &cameraNames)
{
    StationConfig station;
    station.relayPath = QStringLiteral("relay-%1").arg(number);
    station.name = name;
    station.locationID = QStringLiteral("location-%1").arg(number);
    for (const QString &cameraName : cameraNames) {
        const QString cameraID =
            QStringLiteral("camera-%1").arg(qsizetype(10) * number + station.cameras.size() + 1);
        station.cameras.append({cameraID, cameraName});
    }
    return station;
}

} // namespace

QList<StationConfig> demoStations()
{
    return {
        makeStation(1, QStringLiteral("Harbour"),
                    {QStringLiteral("Gate"), QStringLiteral("Quay north"),
                     QStringLiteral("Quay south"), QStringLiteral("Crane")}),
        makeStation(2, QStringLiteral("Depot"),
                    {QStringLiteral("Ramp"), QStringLiteral("Yard"), QStringLiteral("Fence east"),
                     QStringLiteral("Office")}),
        makeStation(3, QStringLiteral("Station hall"),
                    {QStringLiteral("Main entrance"), QStringLiteral("Ticket office"),
                     QStringLiteral("Platform 1"), QStringLiteral("Platform 2")}),
    };
}

void showInTopology(const QList<StationConfig> &stations, standin::Topology &topology)
{
    for (const StationConfig &station : stations) {
        topology.setStation(station.relayPath, station.name);
        for (const Camera &camera : station.cameras)
            topology.setCamera(cameraKeyOf(station, camera), camera.name);
    }
}

QString cameraKeyOf(const StationConfig &station, const Camera &camera)
{
    return station.relayPath.isEmpty() ? camera.cameraID
                                       : station.relayPath + QLatin1Char('/') + camera.cameraID;
}

} // namespace workbench
