#pragma once

#include "framework/Traffic.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtCore/QVariant>

namespace workbench {

/// Derives the states of the stations from the traffic.
///
/// A station is "disconnected" if setDisconnected() says so; "failing" if its last answer was a
/// failure or its last command was rejected; "slow" if an answer is overdue or the last one took
/// too long; otherwise "connected". The time of an answer does not include the time of earlier
/// commands, which the stations execute one after the other, or the time when this program is busy.
class StationStates : public QObject
{
    Q_OBJECT

public:
    explicit StationStates(QObject *parent = nullptr);

    void addStation(const QString &relayPath, const QString &name);
    /// Sets the time after which a station is slow; 2000 by default.
    void setSlowAfter(int ms) { m_slowAfter = ms; }

    /// Call it for each command, answer and event of the framework.
    void noteTraffic(const standin::Traffic &traffic);
    void setDisconnected(const QString &relayPath, bool disconnected);

    /// @return the states by relay path
    QVariantMap states() const { return m_states; }
    /// @return the names of the stations whose bookmarks are missing in the list of all bookmarks:
    /// the last query failed or is not answered
    QStringList failedStations() const { return m_failedStations; }

Q_SIGNALS:
    /// Emitted from the event loop, never inside noteTraffic().
    void changed();

private:
    struct Station
    {
        QString relayPath;
        QString name;
        bool disconnected = false;
        bool failing = false;
        bool slow = false;                 ///< the last answer took too long
        QMap<quint64, qint64> outstanding; ///< start times on the clock m_now, by sequence number
        quint64 lastQuery = 0;             ///< sequence number of the last query of all bookmarks
        bool bookmarksMissing = false;
    };

    void noteSent(Station &station, const standin::Traffic &command);
    void noteAnswered(Station &station, const standin::Traffic &answer);
    void restartClocksAfter(quint64 request);
    bool isOverdue(qint64 since) const { return m_now - since >= m_slowAfter; }
    /// @return true if an outstanding answer may become overdue
    bool isWaiting() const;
    Station *find(const QString &relayPath);
    QString stateOf(const Station &station) const;
    void tick();
    void publish();

    QList<Station> m_stations;
    qint64 m_now = 0; ///< milliseconds, without the time when this program is busy
    QElapsedTimer m_sinceTick;
    QTimer m_tickTimer;
    QTimer m_publication;
    int m_slowAfter = 2000;
    QVariantMap m_states;
    QStringList m_failedStations;
};

} // namespace workbench
