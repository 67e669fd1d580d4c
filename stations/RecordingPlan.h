#pragma once

#include <QtCore/QDate>
#include <QtCore/QHash>
#include <QtCore/QString>

#include <optional>
#include <utility>

namespace workbench {

class Site;
class Station;

/// Where and when something was recorded.
struct PlacedRecording
{
    Station *station = nullptr;
    QString cameraID;
    qint64 start = 0; ///< milliseconds since the epoch
};

/// Gives recordings that are known by name only a camera and a start. In the order in which the
/// names come, they go round the cameras of the site, or of a station; when each camera has one,
/// the next round is a day earlier. Every recording starts at eight o'clock UTC. The same names
/// in the same order always give the same plan.
///
/// A name that is a camera's identifier, or its key (relay path, "/", identifier), keeps that
/// camera and takes part in the count of days of this camera alone.
class RecordingPlan
{
public:
    /// @p site outlives the plan; @p baseDate is the day of the first round.
    RecordingPlan(const Site &site, QDate baseDate);

    /// The recording of that name, always the same one. @p station narrows the choice; null for
    /// the whole site. Nothing when there is no camera to choose from.
    std::optional<PlacedRecording> recording(const QString &name, Station *station);

    /// Whether a name is a camera's identifier or key, at @p station if that is not null.
    bool isCamera(const QString &name, Station *station) const
    {
        return knownCamera(name, station).has_value();
    }
    /// Whether a name begins like a key: with a station's relay path and a slash.
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

    const Site &m_site;
    QDate m_baseDate;
    QHash<std::pair<Station *, QString>, PlacedRecording> m_recordings;
    QHash<std::pair<Station *, QString>, int> m_daysBack;
    QHash<Station *, qsizetype> m_nextCamera;
};

} // namespace workbench
