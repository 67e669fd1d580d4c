#include "HostShell.h"

#include "PluginBase.h"
#include "StationThread.h"
#include "topology/CameraKey.h"

#include <QtCore/QCoreApplication>
#include <QtQml/QQmlContext>
#include <QtQml/QQmlEngine>

namespace workbench {

namespace {

/// Shows stations and cameras in the device tree, as sub-stations of the connected server.
void showInTopology(const QList<StationConfig> &stations, standin::Topology &topology)
{
    for (const StationConfig &station : stations) {
        topology.setStation(station.relayPath, station.name);
        for (const Camera &camera : station.cameras)
            topology.setCamera(standin::cameraKey(station.relayPath, camera.cameraID), camera.name);
    }
}

} // namespace

HostShell::HostShell(StationThread &stations)
    : m_stations(stations)
{
}

bool HostShell::load(const QString &pluginPath, QString *error)
{
    m_plugin = m_host.load(pluginPath, error);
    if (!m_plugin)
        return false;

    showInTopology(m_stations.stations(), m_topology);
    m_framework.setRecording(false); // nobody here asks what was sent
    m_framework.setAsyncServer(&m_stations);
    m_framework.addPlugin(standin::Topology::pluginID(), &m_topology);
    m_framework.addPlugin(PluginHost::pluginID(), m_plugin);
    m_bench.emplace(*m_plugin, m_framework, m_stations);
    m_bench->openedRecording()->setReplayProgram(QCoreApplication::applicationFilePath(),
                                                 pluginPath);
    m_recorded.emplace(*m_plugin, *m_bench->recorder());
    m_framework.setObserver(
        [this](const standin::Traffic &traffic) { m_bench->noteTraffic(traffic); });
    return true;
}

void HostShell::enter(QQmlEngine &engine)
{
    m_bench->setServerTimeZone(QStringLiteral("Europe/Berlin"));
    engine.addImportPath(importPath());
    m_plugin->InitialPluginBase(engine.rootContext(), nullptr, &m_framework);
}

QVariantMap HostShell::initialProperties()
{
    return {{QStringLiteral("plugin"), QVariant::fromValue<QObject *>(&*m_recorded)},
            {QStringLiteral("bench"), QVariant::fromValue<QObject *>(&*m_bench)}};
}

} // namespace workbench
