#pragma once

#include "PluginHost.h"
#include "WorkbenchContext.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <optional>

class QQmlEngine;

namespace workbench {

/// The host around the plug-in: topology, framework, the loaded plug-in, and the context through
/// which QML reads and changes them.
class HostShell
{
public:
    /// @p stations are not owned and must outlive this object.
    explicit HostShell(StationThread &stations);
    Q_DISABLE_COPY_MOVE(HostShell)

    /// Loads the plug-in, once. False with @p error when that can't be done; nothing but the
    /// destructor may be called then.
    bool load(const QString &pluginPath, QString *error);

    PluginBase &plugin() { return *m_plugin; }
    standin::Framework &framework() { return m_framework; }
    WorkbenchContext &bench() { return *m_bench; }
    /// The plug-in's object for QML: each call is in the traffic.
    QObject &recordedPlugin() { return *m_recorded; }

    /// Where QML engines find the workbench's module.
    static QString importPath() { return QStringLiteral("qrc:/tessaline"); }

    /// Initialises the plug-in with the engine's context, and adds the import path to the engine.
    /// Call StationThread::open() before.
    void enter(QQmlEngine &engine);

    /// The start properties of every QML program of the workbench: plugin and bench.
    QVariantMap initialProperties();

private:
    StationThread &m_stations;
    PluginHost m_host;
    PluginBase *m_plugin = nullptr;
    standin::Topology m_topology;
    standin::Framework m_framework;
    std::optional<WorkbenchContext> m_bench;  ///< there is none before there is a plug-in
    std::optional<RecordedPlugin> m_recorded; ///< as QML gets it
};

} // namespace workbench
