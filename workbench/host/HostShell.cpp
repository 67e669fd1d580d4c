#include "HostShell.h"

#include "PluginBase.h"
#include "StationThread.h"
#include "topology/CameraKey.h"

#include <QtCore/QCoreApplication>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>

namespace workbench {

namespace {

/// Adds stations and cameras to the topology, as sub-stations of the connected server.
void addToTopology(const QList<stations::StationConfig> &stations, standin::Topology &topology)
{
    for (const stations::StationConfig &station : stations) {
        topology.setStation(station.relayPath, station.name);
        for (const stations::Camera &camera : station.cameras)
            topology.setCamera(standin::cameraKey(station.relayPath, camera.cameraID), camera.name);
    }
}

} // namespace

HostShell::HostShell(stations::StationThread &stations)
    : m_stations(stations)
{
}

bool HostShell::load(const QString &pluginPath, QString *error)
{
    m_plugin = m_host.load(pluginPath, error);
    if (!m_plugin)
        return false;

    addToTopology(m_stations.stations(), m_topology);
    m_framework.setRecording(false); // or sent() would grow without limit
    m_framework.setAsyncServer(&m_stations);
    m_framework.addPlugin(standin::Topology::pluginID(), &m_topology);
    m_framework.addPlugin(PluginHost::pluginID(), m_plugin);
    m_workbench.emplace(*m_plugin, m_framework, m_stations);
    m_workbench->openedRecording()->setReplayProgram(QCoreApplication::applicationFilePath(),
                                                     pluginPath);
    m_recorded.emplace(*m_plugin, *m_workbench->recorder());
    m_framework.setObserver(
        [this](const standin::Traffic &traffic) { m_workbench->noteTraffic(traffic); });
    return true;
}

void HostShell::initialise(QQmlEngine &engine)
{
    m_workbench->setServerTimeZone(QStringLiteral("Europe/Berlin"));
    engine.addImportPath(importPath());
    m_plugin->InitialPluginBase(engine.rootContext(), nullptr, &m_framework);
}

QVariantMap HostShell::initialProperties()
{
    return {{QStringLiteral("plugin"), QVariant::fromValue<QObject *>(&*m_recorded)},
            {QStringLiteral("workbench"), QVariant::fromValue<QObject *>(&*m_workbench)}};
}

} // namespace workbench
