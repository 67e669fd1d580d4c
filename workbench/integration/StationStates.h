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

/// The states of the stations, from the traffic with them.
///
/// A station is "disconnected" when the host says so, "failing" when its last answer was a failure
/// or it refused the last command, "slow" when an answer is outstanding for too long or the last
/// one took too long, else "connected". Time counts for a station only while nothing else holds its
/// answer up: neither commands that were sent before, as the stations work one after the other, nor
/// this program while it is busy.
class StationStates : public QObject
{
    Q_OBJECT

public:
    explicit StationStates(QObject *parent = nullptr);

    void addStation(const QString &relayPath, const QString &name);
    /// From how many milliseconds on a station is slow; 2000 at first.
    void setSlowAfter(int ms) { m_slowAfter = ms; }

    /// To be told of everything that passes through the framework.
    void noteTraffic(const standin::Traffic &traffic);
    void setDisconnected(const QString &relayPath, bool disconnected);

    /// The states by relay path.
    QVariantMap states() const { return m_states; }
    /// Names of the stations whose bookmarks are not in the list of all bookmarks: they were asked
    /// for them, and failed or have not answered yet.
    QStringList failedStations() const { return m_failedStations; }

Q_SIGNALS:
    /// Emitted from the event loop, never from within the traffic.
    void changed();

private:
    struct Station
    {
        QString relayPath;
        QString name;
        bool disconnected = false;
        bool failing = false;
        bool slow = false;                 ///< took too long for its last answer
        QMap<quint64, qint64> outstanding; ///< since when, by sequence number
        quint64 lastQuery = 0;             ///< sequence number of the last query of all bookmarks
        bool bookmarksMissing = false;
    };

    void noteSent(Station &station, const standin::Traffic &command);
    void noteAnswered(Station &station, const standin::Traffic &answer);
    void restartClocksAfter(quint64 request);
    bool isOverdue(qint64 since) const { return m_now - since >= m_slowAfter; }
    /// Whether an answer is outstanding that may become overdue.
    bool isWaiting() const;
    Station *find(const QString &relayPath);
    QString stateOf(const Station &station) const;
    void beat();
    void publish();

    QList<Station> m_stations;
    qint64 m_now = 0; ///< milliseconds, counted by beats and only while this program is not busy
    QElapsedTimer m_sinceBeat;
    QTimer m_beat;
    QTimer m_publication;
    int m_slowAfter = 2000;
    QVariantMap m_states;
    QStringList m_failedStations;
};

} // namespace workbench
