#pragma once

#include <QtCore/QDate>
#include <QtCore/QHash>
#include <QtCore/QString>

#include <optional>
#include <utility>

namespace stations {

class StationNetwork;
class Station;

/// Station, camera and start of a recording.
struct PlacedRecording
{
    Station *station = nullptr;
    QString cameraID;
    qint64 start = 0; ///< milliseconds since the epoch
};

/// Assigns a camera and a start to recordings that have only a name. Each new name gets
/// the next camera of the network or station. After the last camera the next round begins, a day
/// earlier. Every recording starts at eight o'clock UTC. The same names in the same order always
/// give the same plan.
///
/// A name that is a camera identifier or camera key gets that camera, on the camera's next earlier
/// day.
class RecordingPlan
{
public:
    /// @param network  not owned; must outlive the plan
    /// @param baseDate day of the first round
    RecordingPlan(const StationNetwork &network, QDate baseDate);

    /// Returns the recording with a name; the same name always gives the same recording.
    /// @param station limits the choice of cameras; null: all stations
    /// @return nullopt if there is no camera
    std::optional<PlacedRecording> recording(const QString &name, Station *station);

    /// @param station limits the search; null: all stations
    /// @return true if a name is a camera identifier or camera key
    bool isCamera(const QString &name, Station *station) const
    {
        return knownCamera(name, station).has_value();
    }
    /// @return true if a name begins like a camera key, with a station's relay path and a slash
    bool isKey(const QString &name) const;

private:
    struct Place
    {
        Station *station = nullptr;
        QString cameraID;
    };

    std::optional<Place> knownCamera(const QString &name, Station *station) const;
    std::optional<Place> nextCamera(Station *station);
    QList<Place> cameras(Station *station) const;

    const StationNetwork &m_network;
    QDate m_baseDate;
    QHash<std::pair<Station *, QString>, PlacedRecording> m_recordings;
    QHash<std::pair<Station *, QString>, int> m_daysBack;
    QHash<Station *, qsizetype> m_nextCamera;
};

} // namespace stations
