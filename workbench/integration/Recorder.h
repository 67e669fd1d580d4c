#pragma once

#include "RecordedPlugin.h"
#include "SignalReceiver.h"
#include "TrafficEntry.h"
#include "TrafficSource.h"
#include "framework/Traffic.h"

#include <QtCore/QHash>
#include <QtQml/qqmlregistration.h>

class PluginBase;

namespace standin {
class Framework;
}

namespace workbench {

/// Adds the traffic between QML, plug-in and host to a TrafficModel: commands, answers and events
/// of the framework, signals of the plug-in, calls of a RecordedPlugin.
class Recorder : public workbench::TrafficSource, public CallObserver
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Use the property recorder of the workbench")

public:
    /// Create it before QML connects to the plug-in's signals: slots run in the order of
    /// connection, and a signal must be recorded before the calls of its slots.
    /// @param plugin,framework,model not owned; must outlive this object
    Recorder(PluginBase &plugin, standin::Framework &framework, TrafficModel &model,
             QObject *parent = nullptr);

    /// Call it for each command, answer and event of the framework.
    void noteTraffic(const standin::Traffic &traffic);

    quint64 beginCall(const QString &method, const QVariantList &arguments) override;
    /// Call it before the plug-in is notified of the connection to the server.
    /// @return a number for end()
    quint64 beginConnection();
    void end(quint64 call, const QVariant &result) override;

    /// @return a path in the user's home folder for a new recording
    Q_INVOKABLE static QString newFile();
    Q_INVOKABLE static bool exists(const QString &path);

protected:
    Recording::Header header() const override;

private:
    quint64 begin(TrafficEntry entry);
    int depth() const;
    int numberOf(const void *context);

    PluginBase &m_plugin;
    standin::Framework &m_framework;
    TrafficModel &m_model;
    standin::SignalReceiver m_receiver;
    int m_calls = 0; ///< depth of nested calls
    QHash<const void *, int> m_contexts;
};

} // namespace workbench
