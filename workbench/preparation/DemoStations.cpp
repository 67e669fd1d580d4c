#include "DemoStations.h"

namespace workbench {

namespace {

/// The first three, which the tour speaks of.
QString knownStationName(int index)
{
    static const QStringList names{QStringLiteral("Harbour"), QStringLiteral("Depot"),
                                   QStringLiteral("Station hall")};
    return names.value(index);
}

QString stationName(int index)
{
    static const QStringList kinds{QStringLiteral("Warehouse"),   QStringLiteral("Car park"),
                                   QStringLiteral("Market hall"), QStringLiteral("Hospital"),
                                   QStringLiteral("Stadium"),     QStringLiteral("Power plant"),
                                   QStringLiteral("Airfield"),    QStringLiteral("Town hall"),
                                   QStringLiteral("Brickworks"),  QStringLiteral("Museum")};
    static const QStringList places{QStringLiteral("north"),    QStringLiteral("south"),
                                    QStringLiteral("east"),     QStringLiteral("west"),
                                    QStringLiteral("old town"), QStringLiteral("riverside"),
                                    QStringLiteral("hill"),     QStringLiteral("ring road"),
                                    QStringLiteral("valley"),   QStringLiteral("lake")};
    QString known = knownStationName(index);
    if (!known.isEmpty())
        return known;
    // Runs through all pairs, neighbours of different kinds.
    const int pair = index - 3;
    return kinds.at(pair % kinds.size()) + QLatin1Char(' ') +
           places.at((pair + pair / kinds.size()) % places.size());
}

QString cameraName(int station, int index)
{
    static const QList<QStringList> known{
        {QStringLiteral("Gate"), QStringLiteral("Quay north"), QStringLiteral("Quay south"),
         QStringLiteral("Crane")},
        {QStringLiteral("Ramp"), QStringLiteral("Yard"), QStringLiteral("Fence east"),
         QStringLiteral("Office")},
        {QStringLiteral("Main entrance"), QStringLiteral("Ticket office"),
         QStringLiteral("Platform 1"), QStringLiteral("Platform 2")}};
    static const QStringList places{QStringLiteral("Entrance"),  QStringLiteral("Exit"),
                                    QStringLiteral("Corridor"),  QStringLiteral("Stairs"),
                                    QStringLiteral("Lift"),      QStringLiteral("Loading bay"),
                                    QStringLiteral("Roof"),      QStringLiteral("Reception"),
                                    QStringLiteral("Courtyard"), QStringLiteral("Cellar")};
    QString name = known.value(station).value(index);
    if (!name.isEmpty())
        return name;
    const QString &place = places.at(index % places.size());
    const qsizetype round = index / places.size();
    return round == 0 ? place : place + QLatin1Char(' ') + QString::number(round + 1);
}

/// Distinct among all stations, and the same however many cameras a station has.
QString cameraID(int stationNumber, int cameraNumber)
{
    const int decade = cameraNumber < 10 ? 10 : 1'000;
    return QStringLiteral("camera-%1").arg(decade * stationNumber + cameraNumber);
}

} // namespace

QList<StationConfig> demoStations(int stations, int camerasEach)
{
    QList<StationConfig> configs;
    for (int index = 0; index < stations; ++index) {
        const int number = index + 1;
        StationConfig station;
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
