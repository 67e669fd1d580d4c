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

namespace workbench {

class StationThread;

/// What lies around the plug-in, as a QML program sees and moves it: the stations, the connection,
/// faults and other clients.
class WorkbenchContext : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program creates the only one")
    /// The stations: maps of relayPath, name, locationID and cameras; these of cameraID, name, key,
    /// locationID, relayPath and stationName.
    Q_PROPERTY(QVariantList stations READ stations CONSTANT)
    /// The present, in milliseconds since the epoch.
    Q_PROPERTY(double now READ nowAsNumber CONSTANT)
    /// How many commands still wait for their answer.
    Q_PROPERTY(int outstanding READ outstanding NOTIFY trafficPassed)
    /// "connected", "slow", "failing" or "disconnected" by relay path.
    Q_PROPERTY(QVariantMap stationStates READ stationStates NOTIFY stationStatesChanged)
    /// Names of the stations whose bookmarks are not in the list of all bookmarks: they failed to
    /// tell them or have not answered yet.
    Q_PROPERTY(QStringList failedStations READ failedStations NOTIFY stationStatesChanged)
    /// For integrators: what passes between QML, plug-in and host, and the lines of the log.
    Q_PROPERTY(workbench::Recorder *recorder READ recorder CONSTANT)
    Q_PROPERTY(workbench::TrafficModel *traffic READ traffic CONSTANT)
    Q_PROPERTY(workbench::OpenedRecording *openedRecording READ openedRecording CONSTANT)
    Q_PROPERTY(workbench::LogModel *log READ log CONSTANT)
    Q_PROPERTY(workbench::FaultsModel *faults READ faults CONSTANT)
    /// IANA identifier that the server gives to the next who asks.
    Q_PROPERTY(QString serverTimeZone READ serverTimeZone WRITE setServerTimeZone NOTIFY
                   serverTimeZoneChanged)
    /// The zone that the client has got from the server, by which its bookmarks have their texts.
    Q_PROPERTY(QString clientTimeZone READ clientTimeZone NOTIFY clientTimeZoneChanged)
    /// Whether the server has told the client that its user may change settings.
    Q_PROPERTY(bool settingPermission READ settingPermission NOTIFY settingPermissionChanged)

public:
    /// The four parts are not owned and must outlive the bench.
    WorkbenchContext(PluginBase &plugin, standin::Framework &framework, StationThread &stations,
                     QObject *parent = nullptr);

    /// To be told of everything that passes through the framework.
    void noteTraffic(const standin::Traffic &traffic);

    QVariantList stations() const;
    qint64 now() const { return m_now; }
    double nowAsNumber() const { return double(m_now); } // QML's tools know no longer integers
    int outstanding() const { return int(m_outstanding.size()); }
    /// Whether any station was asked for anything yet.
    bool hasAsked() const { return m_hasAsked; }
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

    /// Tells the plug-in that the connection to the server is up.
    Q_INVOKABLE void connectToServer();

    /// Whether the server lets the client's user change settings; the client hears of it when it
    /// asks, as it does when it connects.
    Q_INVOKABLE void allowSettings(bool allowed);

    /// Makes a station answer every command with a failure, or work again.
    Q_INVOKABLE void failStation(const QString &relayPath, bool fails);

    /// Has another client of the installation add a bookmark; false when there is no such station.
    /// One that refuses it is told by bookmarkOfOtherRefused().
    Q_INVOKABLE bool addByOtherClient(const QString &relayPath, const QString &cameraID,
                                      qint64 start, qint64 end, const QString &description,
                                      const QString &group);

    /// Relay paths of the stations that got this command since the last forgetTraffic(). Before the
    /// first one nothing is kept, as a session may be long.
    Q_INVOKABLE QStringList stationsAsked(const QString &command) const;
    Q_INVOKABLE void forgetTraffic() { m_asked.emplace(); }

    /// Names of all signals of the plug-in's object.
    Q_INVOKABLE QStringList signalNames() const;

    /// Ends the program.
    Q_INVOKABLE void finish() { Q_EMIT finished(); }

Q_SIGNALS:
    /// Something passes through the framework and has not reached its receiver yet; for C++.
    void passing(const standin::Traffic &traffic);
    /// Something has passed and has been dealt with.
    void trafficPassed();
    void stationStatesChanged();
    void serverTimeZoneChanged();
    /// Comes after the plug-in has got the zone.
    void clientTimeZoneChanged();
    void settingPermissionChanged();
    void bookmarkOfOtherRefused(const QString &relayPath);
    void finished();

private:
    void noteAnswer(const standin::Traffic &answer);
    void noteClientTimeZone(const QString &ianaId);

    PluginBase &m_plugin;
    standin::Framework &m_framework;
    StationThread &m_stations;
    qint64 m_now;
    QSet<quint64> m_outstanding; ///< sequence numbers of commands; an answer may come twice
    bool m_hasAsked = false;
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
