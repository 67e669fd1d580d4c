#include "RecordingPlan.h"

#include "StationNetwork.h"
#include "topology/CameraKey.h"

#include <QtCore/QDateTime>
#include <QtCore/QTimeZone>

#include <algorithm>

namespace stations {

RecordingPlan::RecordingPlan(const StationNetwork &network, QDate baseDate)
    : m_network(network)
    , m_baseDate(baseDate)
{
}

std::optional<PlacedRecording> RecordingPlan::recording(const QString &name, Station *station)
{
    const std::pair<Station *, QString> key(station, name);
    const auto known = m_recordings.constFind(key);
    if (known != m_recordings.cend())
        return *known;

    std::optional<Place> place = knownCamera(name, station);
    if (!place)
        place = nextCamera(station);
    if (!place)
        return std::nullopt;
    const int daysBack = m_daysBack[{place->station, place->cameraID}]++;
    const QDateTime start(m_baseDate.addDays(-daysBack), QTime(8, 0), QTimeZone::utc());
    const PlacedRecording recording{place->station, place->cameraID, start.toMSecsSinceEpoch()};
    m_recordings.insert(key, recording);
    return recording;
}

std::optional<RecordingPlan::Place> RecordingPlan::knownCamera(const QString &name,
                                                               Station *station) const
{
    const QList<Place> places = cameras(station);
    for (const Place &place : places) {
        const QString relayPath = place.station->config().relayPath;
        if (name == place.cameraID || name == standin::cameraKey(relayPath, place.cameraID))
            return place;
    }
    return std::nullopt;
}

bool RecordingPlan::isKey(const QString &name) const
{
    const QList<Station *> stations = m_network.stations();
    return std::any_of(stations.cbegin(), stations.cend(), [&name](const Station *station) {
        const QString prefix = standin::cameraKey(station->config().relayPath, {});
        return !prefix.isEmpty() && name.startsWith(prefix);
    });
}

std::optional<RecordingPlan::Place> RecordingPlan::nextCamera(Station *station)
{
    const QList<Place> places = cameras(station);
    if (places.isEmpty())
        return std::nullopt;
    return places.at(m_nextCamera[station]++ % places.size());
}

QList<RecordingPlan::Place> RecordingPlan::cameras(Station *station) const
{
    QList<Place> places;
    const QList<Station *> stations = station ? QList<Station *>{station} : m_network.stations();
    for (Station *each : stations) {
        for (const Camera &camera : each->config().cameras)
            places.append({each, camera.cameraID});
    }
    return places;
}

} // namespace stations
