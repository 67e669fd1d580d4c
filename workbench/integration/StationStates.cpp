#include "StationStates.h"

#include "Protocol.h"

#include <algorithm>

namespace workbench {

namespace {

/// Returns the milliseconds between two ticks, an eighth of the time after which a station is slow.
int tickInterval(int slowAfter)
{
    return std::max(1, slowAfter / 8);
}

} // namespace

StationStates::StationStates(QObject *parent)
    : QObject(parent)
{
    m_publication.setSingleShot(true);
    connect(&m_publication, &QTimer::timeout, this, &StationStates::publish);
    connect(&m_tickTimer, &QTimer::timeout, this, &StationStates::tick);
}

void StationStates::addStation(const QString &relayPath, const QString &name)
{
    Station station;
    station.relayPath = relayPath;
    station.name = name;
    m_stations.append(station);
    m_states.insert(relayPath, stateOf(station));
}

void StationStates::noteTraffic(const standin::Traffic &traffic)
{
    Station *const station = find(traffic.relayPath);
    if (!station)
        return;
    if (traffic.kind == standin::Traffic::Kind::Sent)
        noteSent(*station, traffic);
    else if (traffic.kind == standin::Traffic::Kind::Answered)
        noteAnswered(*station, traffic);
    m_publication.start(0);
}

void StationStates::setDisconnected(const QString &relayPath, bool disconnected)
{
    if (Station *const station = find(relayPath))
        station->disconnected = disconnected;
    m_publication.start(0);
}

void StationStates::noteSent(Station &station, const standin::Traffic &command)
{
    if (command.name == stations::protocol::command::QueryAllBookmarks) {
        station.lastQuery = command.sequence;
        station.bookmarksMissing = true;
    }
    if (!command.accepted) {
        station.failing = true;
        return;
    }
    station.outstanding.insert(command.sequence, m_now);
    if (!m_tickTimer.isActive()) {
        m_sinceTick.start();
        m_tickTimer.start(tickInterval(m_slowAfter));
    }
}

void StationStates::noteAnswered(Station &station, const standin::Traffic &answer)
{
    const bool succeeded = answer.resultCode == stations::protocol::code::Success;
    station.failing = !succeeded;
    if (answer.request == station.lastQuery)
        station.bookmarksMissing = !succeeded;

    auto &outstanding = station.outstanding;
    const auto command = outstanding.constFind(answer.request);
    if (command == outstanding.cend())
        return; // a second answer
    station.slow = answer.tookMs >= m_slowAfter;
    outstanding.erase(command);
    // The station answers again, so overdue answers to earlier commands are lost.
    while (!outstanding.isEmpty() && outstanding.firstKey() < answer.request &&
           isOverdue(outstanding.first()))
        outstanding.erase(outstanding.cbegin());
    restartClocksAfter(answer.request);
}

/// Later commands had to wait for this one, so their time starts now.
void StationStates::restartClocksAfter(quint64 request)
{
    for (Station &station : m_stations) {
        auto &outstanding = station.outstanding;
        for (auto it = outstanding.upperBound(request); it != outstanding.end(); ++it) {
            if (!isOverdue(*it))
                *it = m_now;
        }
    }
}

StationStates::Station *StationStates::find(const QString &relayPath)
{
    const auto found =
        std::find_if(m_stations.begin(), m_stations.end(),
                     [&](const Station &station) { return station.relayPath == relayPath; });
    return found == m_stations.end() ? nullptr : &*found;
}

QString StationStates::stateOf(const Station &station) const
{
    if (station.disconnected)
        return QStringLiteral("disconnected");
    if (station.failing)
        return QStringLiteral("failing");
    const bool overdue = std::any_of(station.outstanding.cbegin(), station.outstanding.cend(),
                                     [this](qint64 since) { return isOverdue(since); });
    return station.slow || overdue ? QStringLiteral("slow") : QStringLiteral("connected");
}

bool StationStates::isWaiting() const
{
    return std::any_of(m_stations.cbegin(), m_stations.cend(), [this](const Station &station) {
        return std::any_of(station.outstanding.cbegin(), station.outstanding.cend(),
                           [this](qint64 since) { return !isOverdue(since); });
    });
}

/// Counts at most two intervals: a later tick means that this program was busy, and answers may
/// wait for delivery.
void StationStates::tick()
{
    m_now += std::min(m_sinceTick.restart(), qint64(2) * m_tickTimer.interval());
    publish();
    if (!isWaiting())
        m_tickTimer.stop();
}

void StationStates::publish()
{
    QVariantMap states;
    QStringList failedStations;
    for (const Station &station : std::as_const(m_stations)) {
        states.insert(station.relayPath, stateOf(station));
        if (station.bookmarksMissing)
            failedStations.append(station.name);
    }
    if (states == m_states && failedStations == m_failedStations)
        return;
    m_states = states;
    m_failedStations = failedStations;
    Q_EMIT changed();
}

} // namespace workbench
