#pragma once

#include "PluginHost.h"
#include "WorkbenchContext.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <optional>

class QQmlEngine;

namespace workbench {

/// Owns the host of the workbench: topology, framework, the loaded plug-in, and the objects through
/// which QML reaches them.
class HostShell
{
public:
    /// @param stations not owned; must outlive this object
    explicit HostShell(stations::StationThread &stations);
    Q_DISABLE_COPY_MOVE(HostShell)

    /// Loads the plug-in. Call it once.
    /// @param error set on failure to a message with the file
    /// @return false on failure; then only the destructor may be called
    bool load(const QString &pluginPath, QString *error);

    PluginBase &plugin() { return *m_plugin; }
    standin::Framework &framework() { return m_framework; }
    WorkbenchContext &workbench() { return *m_workbench; }
    /// @return the plug-in's object for QML, which records each call as traffic
    QObject &recordedPlugin() { return *m_recorded; }

    /// @return the import path of the workbench's QML modules
    static QString importPath() { return QStringLiteral("qrc:/tessaline"); }

    /// Initialises the plug-in with the engine's context, and adds the import path to the engine.
    /// Call StationThread::open() before.
    void initialise(QQmlEngine &engine);

    /// @return the initial properties "plugin" and "workbench" for the root objects of QML
    QVariantMap initialProperties();

private:
    stations::StationThread &m_stations;
    PluginHost m_host;
    PluginBase *m_plugin = nullptr;
    standin::Topology m_topology;
    standin::Framework m_framework;
    std::optional<WorkbenchContext> m_workbench; ///< set by load()
    std::optional<RecordedPlugin> m_recorded;    ///< set by load()
};

} // namespace workbench
