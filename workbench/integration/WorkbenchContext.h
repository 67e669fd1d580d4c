#pragma once

#include "FaultsModel.h"
#include "LogModel.h"
#include "OpenedRecording.h"
#include "Recorder.h"
#include "StationStates.h"
#include "TrafficModel.h"
#include "framework/Traffic.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include <optional>

class PluginBase;

namespace standin {
class Framework;
}

namespace stations {
class StationThread;
}

namespace workbench {

/// Gives QML access to the host of the plug-in: stations, connection, faults, other clients,
/// traffic and log.
class WorkbenchContext : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program creates the only one")
    /// The stations: maps of relayPath, name, locationID and cameras. Cameras are maps of cameraID,
    /// name, key, locationID, relayPath and stationName.
    Q_PROPERTY(QVariantList stations READ stations CONSTANT)
    /// The time of the program's start, in milliseconds since the epoch.
    Q_PROPERTY(double now READ nowAsNumber CONSTANT)
    /// The number of accepted commands without an answer.
    Q_PROPERTY(int outstanding READ outstanding NOTIFY trafficPassed)
    /// "connected", "slow", "failing" or "disconnected" by relay path.
    Q_PROPERTY(QVariantMap stationStates READ stationStates NOTIFY stationStatesChanged)
    /// Names of the stations whose bookmarks are missing in the list of all bookmarks: the last
    /// query failed or is not answered.
    Q_PROPERTY(QStringList failedStations READ failedStations NOTIFY stationStatesChanged)
    /// For integrators: recorder, traffic, log and faults.
    Q_PROPERTY(workbench::Recorder *recorder READ recorder CONSTANT)
    Q_PROPERTY(workbench::TrafficModel *traffic READ traffic CONSTANT)
    Q_PROPERTY(workbench::OpenedRecording *openedRecording READ openedRecording CONSTANT)
    Q_PROPERTY(workbench::LogModel *log READ log CONSTANT)
    Q_PROPERTY(workbench::FaultsModel *faults READ faults CONSTANT)
    /// IANA identifier that the server returns to the next query.
    Q_PROPERTY(QString serverTimeZone READ serverTimeZone WRITE setServerTimeZone NOTIFY
                   serverTimeZoneChanged)
    /// IANA identifier that the client got from the server, for the texts of bookmarks.
    Q_PROPERTY(QString clientTimeZone READ clientTimeZone NOTIFY clientTimeZoneChanged)
    /// The permission to change settings that the client got from the server.
    Q_PROPERTY(bool settingPermission READ settingPermission NOTIFY settingPermissionChanged)

public:
    /// @param plugin,framework,stations not owned; must outlive this object
    WorkbenchContext(PluginBase &plugin, standin::Framework &framework,
                     stations::StationThread &stations, QObject *parent = nullptr);

    /// Call it for each command, answer and event of the framework.
    void noteTraffic(const standin::Traffic &traffic);

    QVariantList stations() const;
    qint64 now() const { return m_now; }
    double nowAsNumber() const { return double(m_now); } // qmllint rejects 64-bit integers
    int outstanding() const { return int(m_outstanding.size()); }
    /// @return true if a command was accepted since the start
    bool hasSentCommand() const { return m_hasSentCommand; }
    QVariantMap stationStates() const { return m_stationStates.states(); }
    QStringList failedStations() const { return m_stationStates.failedStations(); }
    Recorder *recorder() { return &m_recorder; }
    TrafficModel *traffic() { return &m_traffic; }
    OpenedRecording *openedRecording() { return &m_openedRecording; }
    LogModel *log() { return &m_log; }
    FaultsModel *faults() { return &m_faults; }
    QString serverTimeZone() const { return m_serverTimeZone; }
    void setServerTimeZone(const QString &ianaId);
    QString clientTimeZone() const
    {
        return m_clientTimeZone.isEmpty() ? m_serverTimeZone : m_clientTimeZone;
    }
    bool settingPermission() const { return m_settingPermission; }

    /// Notifies the plug-in of the connection to the server.
    Q_INVOKABLE void connectToServer();

    /// Sets the user's permission to change settings at the server. The client queries it when it
    /// connects.
    Q_INVOKABLE void allowSettings(bool allowed);

    /// Makes a station fail every command, or ends the failure.
    Q_INVOKABLE void failStation(const QString &relayPath, bool fails);

    /// Adds a bookmark as another client. If the station fails, addByOtherClientFailed() follows.
    /// @return false if there is no such station
    Q_INVOKABLE bool addByOtherClient(const QString &relayPath, const QString &cameraID,
                                      qint64 start, qint64 end, const QString &description,
                                      const QString &group);

    /// Returns the relay paths of the stations that got a command since the last forgetTraffic();
    /// nothing before its first call, because a long session would need too much memory.
    Q_INVOKABLE QStringList stationsAsked(const QString &command) const;
    Q_INVOKABLE void forgetTraffic() { m_asked.emplace(); }

    /// @return the names of all signals of the plug-in's object
    Q_INVOKABLE QStringList signalNames() const;

    /// Ends the program.
    Q_INVOKABLE void finish() { Q_EMIT finished(); }

Q_SIGNALS:
    /// Traffic that its receiver has not got yet; for C++.
    void passing(const standin::Traffic &traffic);
    /// The receiver has processed traffic.
    void trafficPassed();
    void stationStatesChanged();
    void serverTimeZoneChanged();
    /// Emitted after the plug-in has got the zone.
    void clientTimeZoneChanged();
    void settingPermissionChanged();
    /// A station did not store the bookmark of addByOtherClient().
    void addByOtherClientFailed(const QString &relayPath);
    void finished();

private:
    void noteAnswer(const standin::Traffic &answer);
    void noteClientTimeZone(const QString &ianaId);

    PluginBase &m_plugin;
    standin::Framework &m_framework;
    stations::StationThread &m_stations;
    qint64 m_now;
    QSet<quint64>
        m_outstanding; ///< sequence numbers of commands; a set, because an answer may come twice
    bool m_hasSentCommand = false;
    StationStates m_stationStates;
    TrafficModel m_traffic;
    Recorder m_recorder;
    OpenedRecording m_openedRecording;
    LogModel m_log;
    FaultsModel m_faults;
    QString m_serverTimeZone;
    QString m_clientTimeZone; ///< empty before the first answer
    bool m_settingPermission = false;
    std::optional<QHash<QString, QStringList>> m_asked; ///< relay paths by command
};

} // namespace workbench
