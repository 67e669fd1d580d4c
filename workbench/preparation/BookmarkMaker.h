#pragma once

#include "Station.h"

#include <QtCore/QList>
#include <QtCore/QRandomGenerator>

#include <vector>

namespace workbench {

/// Makes up bookmarks as operators might have set them: by day more than by night, over four weeks,
/// now and then several at neighbouring cameras within minutes. The same seed, station and present
/// give the same bookmarks.
class BookmarkMaker
{
public:
    static constexpr int Days = 28;

    /// @param now the present, which no bookmark goes beyond, in milliseconds since the epoch
    BookmarkMaker(const StationConfig &station, quint32 seed, qint64 now);

    /// The next @p count bookmarks, in no order; none for a station without cameras.
    QList<Bookmark> make(int count);

private:
    void beginIncident();
    QString description();
    qint64 timeOfIncident();
    const QString &oneOf(const QStringList &words);

    StationConfig m_station;
    qint64 m_now;
    QRandomGenerator m_random;
    std::vector<qint64> m_hours; ///< starts of hours, in proportion to how much happens in them
    Bookmark m_incident;         ///< what the next bookmark is like
    qsizetype m_camera = 0;      ///< where it is
    int m_left = 0;              ///< how many bookmarks the incident has yet
};

} // namespace workbench
