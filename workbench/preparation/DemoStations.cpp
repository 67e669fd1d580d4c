#include "DemoStations.h"

namespace workbench {

namespace {

QStringList words(QLatin1String text)
{
    return QString(text).split(QLatin1Char(','));
}

QString stationName(int index)
{
    // The texts of the tour and of tests contain these names.
    static const QStringList known = words(QLatin1String("Harbour,Depot,Station hall"));
    static const QStringList kinds =
        words(QLatin1String("Warehouse,Car park,Market hall,Hospital,Stadium,Power plant,Airfield,"
                            "Town hall,Brickworks,Museum"));
    static const QStringList places =
        words(QLatin1String("north,south,east,west,old town,riverside,hill,ring road,valley,lake"));
    if (index < known.size())
        return known.at(index);
    // Goes through all pairs of kind and place, so that names differ.
    const qsizetype pair = index - known.size();
    return kinds.at(pair % kinds.size()) + QLatin1Char(' ') +
           places.at((pair + pair / kinds.size()) % places.size());
}

QString cameraName(int station, int index)
{
    static const QList<QStringList> known{
        words(QLatin1String("Gate,Quay north,Quay south,Crane")),
        words(QLatin1String("Ramp,Yard,Fence east,Office")),
        words(QLatin1String("Main entrance,Ticket office,Platform 1,Platform 2"))};
    static const QStringList places = words(QLatin1String(
        "Entrance,Exit,Corridor,Stairs,Lift,Loading bay,Roof,Reception,Courtyard,Cellar"));
    QString name = known.value(station).value(index);
    if (!name.isEmpty())
        return name;
    const QString &place = places.at(index % places.size());
    const qsizetype round = index / places.size();
    return round == 0 ? place : place + QLatin1Char(' ') + QString::number(round + 1);
}

/// Returns an identifier that is unique among all stations and does not depend on the number of
/// cameras.
QString cameraID(int stationNumber, int cameraNumber)
{
    const int decade = cameraNumber < 10 ? 10 : 1'000;
    return QStringLiteral("camera-%1").arg(decade * stationNumber + cameraNumber);
}

} // namespace

QList<stations::StationConfig> demoStations(int stations, int camerasEach)
{
    QList<stations::StationConfig> configs;
    for (int index = 0; index < stations; ++index) {
        const int number = index + 1;
        stations::StationConfig station;
        station.relayPath = QStringLiteral("relay-%1").arg(number);
        station.name = stationName(index);
        station.locationID = QStringLiteral("location-%1").arg(number);
        for (int camera = 0; camera < camerasEach; ++camera)
            station.cameras.append({cameraID(number, camera + 1), cameraName(index, camera)});
        configs.append(station);
    }
    return configs;
}

} // namespace workbench
