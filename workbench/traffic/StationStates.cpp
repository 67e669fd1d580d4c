#include "StationStates.h"

#include "stations/Protocol.h"

#include <algorithm>
#include <limits>

namespace workbench {

StationStates::StationStates(QObject *parent)
    : QObject(parent)
{
    m_clock.start();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &StationStates::publish);
}

void StationStates::addStation(const QString &relayPath, const QString &name)
{
    Station station;
    station.relayPath = relayPath;
    station.name = name;
    m_stations.append(station);
    m_states.insert(relayPath, stateOf(station, 0));
}

void StationStates::noteTraffic(const standin::Traffic &traffic)
{
    Station *const station = find(traffic.relayPath);
    if (!station)
        return;
    if (traffic.kind == standin::Traffic::Kind::Sent)
        noteSent(*station, traffic, m_clock.elapsed());
    else if (traffic.kind == standin::Traffic::Kind::Answered)
        noteAnswered(*station, traffic, m_clock.elapsed());
    m_timer.start(0);
}

void StationStates::setDisconnected(const QString &relayPath, bool disconnected)
{
    if (Station *const station = find(relayPath))
        station->disconnected = disconnected;
    m_timer.start(0);
}

bool StationStates::isAwaited(const QString &relayPath) const
{
    return std::any_of(m_stations.cbegin(), m_stations.cend(), [&](const Station &station) {
        return station.relayPath == relayPath && !station.outstanding.isEmpty();
    });
}

void StationStates::noteSent(Station &station, const standin::Traffic &command, qint64 now)
{
    if (command.name == protocol::command::QueryAllBookmarks) {
        station.lastQuery = command.sequence;
        station.bookmarksMissing = true;
    }
    if (command.accepted)
        station.outstanding.insert(command.sequence, now);
    else
        station.failing = true;
}

void StationStates::noteAnswered(Station &station, const standin::Traffic &answer, qint64 now) const
{
    const bool succeeded = answer.resultCode == protocol::code::Success;
    station.failing = !succeeded;
    if (answer.request == station.lastQuery)
        station.bookmarksMissing = !succeeded;

    auto &outstanding = station.outstanding;
    const auto command = outstanding.constFind(answer.request);
    if (command == outstanding.cend())
        return; // doubled
    station.slow = now - *command >= m_slowAfter;
    outstanding.erase(command);
    // The station answers again: what is overdue from before that command is lost.
    while (!outstanding.isEmpty() && outstanding.firstKey() < answer.request &&
           now - outstanding.first() >= m_slowAfter)
        outstanding.erase(outstanding.cbegin());
}

StationStates::Station *StationStates::find(const QString &relayPath)
{
    const auto found =
        std::find_if(m_stations.begin(), m_stations.end(),
                     [&](const Station &station) { return station.relayPath == relayPath; });
    return found == m_stations.end() ? nullptr : &*found;
}

QString StationStates::stateOf(const Station &station, qint64 now) const
{
    if (station.disconnected)
        return QStringLiteral("disconnected");
    if (station.failing)
        return QStringLiteral("failing");
    // The commands are in the order of sending, so the first one waits longest.
    const bool overdue =
        !station.outstanding.isEmpty() && now - station.outstanding.first() >= m_slowAfter;
    return station.slow || overdue ? QStringLiteral("slow") : QStringLiteral("connected");
}

void StationStates::publish()
{
    const qint64 now = m_clock.elapsed();
    QVariantMap states;
    QStringList failedStations;
    for (const Station &station : std::as_const(m_stations)) {
        states.insert(station.relayPath, stateOf(station, now));
        if (station.bookmarksMissing)
            failedStations.append(station.name);
    }
    waitForNextDelay(now);
    if (states == m_states && failedStations == m_failedStations)
        return;
    m_states = states;
    m_failedStations = failedStations;
    Q_EMIT changed();
}

/// A station becomes slow without any traffic.
void StationStates::waitForNextDelay(qint64 now)
{
    qint64 next = std::numeric_limits<qint64>::max();
    for (const Station &station : std::as_const(m_stations)) {
        if (!station.outstanding.isEmpty() && now - station.outstanding.first() < m_slowAfter)
            next = std::min(next, station.outstanding.first() + m_slowAfter - now);
    }
    if (next < std::numeric_limits<qint64>::max())
        m_timer.start(static_cast<int>(next));
}

} // namespace workbench
