#pragma once

#include "Bench.h"
#include "PluginHost.h"
#include "framework/Framework.h"
#include "topology/Topology.h"

#include <optional>

class QQmlEngine;

namespace workbench {

/// The host around the plug-in, put together: device tree, framework, the loaded plug-in, and the
/// bench by which a QML program moves all of it.
class Installation
{
public:
    /// @p stations are not owned and must outlive the installation.
    explicit Installation(StationThread &stations);
    Q_DISABLE_COPY_MOVE(Installation)

    /// Loads the plug-in, once. False with @p error when that can't be done; nothing but the
    /// destructor may be called then.
    bool load(const QString &pluginPath, QString *error);

    PluginBase &plugin() { return *m_plugin; }
    standin::Framework &framework() { return m_framework; }
    Bench &bench() { return *m_bench; }
    /// The plug-in's object for QML: each call is in the traffic.
    QObject &recordedPlugin() { return *m_recorded; }

    /// Where QML engines find the workbench's module.
    static QString importPath() { return QStringLiteral("qrc:/tessaline"); }

    /// Hands the engine's context to the plug-in and has the engine find the workbench's module.
    /// The stations must have been told to open.
    void enter(QQmlEngine &engine);

    /// The start properties of every QML program of the workbench: plugin and bench.
    QVariantMap initialProperties();

private:
    StationThread &m_stations;
    PluginHost m_host;
    PluginBase *m_plugin = nullptr;
    standin::Topology m_topology;
    standin::Framework m_framework;
    std::optional<Bench> m_bench;             ///< there is none before there is a plug-in
    std::optional<RecordedPlugin> m_recorded; ///< as QML gets it
};

} // namespace workbench
