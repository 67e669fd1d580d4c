#pragma once

#include "Station.h"

#include <QtCore/QList>
#include <QtCore/QRandomGenerator>

#include <vector>

namespace workbench {

/// Creates random bookmarks of the last four weeks that look like those of operators: more by day
/// than by night, sometimes several at neighbouring cameras within minutes. The same seed, station
/// and time give the same bookmarks.
class BookmarkMaker
{
public:
    static constexpr int Days = 28;

    /// @param now end of the latest bookmark, in milliseconds since the epoch
    BookmarkMaker(const stations::StationConfig &station, quint32 seed, qint64 now);

    /// Returns the next @p count bookmarks, unsorted; none for a station without cameras.
    QList<stations::Bookmark> make(int count);

private:
    void beginIncident();
    QString description();
    qint64 timeOfIncident();
    const QString &oneOf(const QStringList &words);

    stations::StationConfig m_station;
    qint64 m_now;
    QRandomGenerator m_random;
    std::vector<qint64> m_hours;   ///< starts of hours, repeated by their weight
    stations::Bookmark m_incident; ///< template of the next bookmark
    qsizetype m_camera = 0;        ///< index of its camera
    int m_remaining = 0;           ///< bookmarks of the incident still to be made
};

} // namespace workbench
