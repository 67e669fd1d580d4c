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

/// Notes what passes between QML, plug-in and host: the framework's traffic, the plug-in's signals
/// and the calls through a RecordedPlugin.
class Recorder : public workbench::TrafficSource, public CallObserver
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one recorder, the bench's")

public:
    /// All three are not owned and must outlive the recorder. Made before QML connects to the
    /// plug-in's signals, it notes each signal before what QML does about it.
    Recorder(PluginBase &plugin, standin::Framework &framework, TrafficModel &model,
             QObject *parent = nullptr);

    /// To be told of everything that passes through the framework.
    void noteTraffic(const standin::Traffic &traffic);

    quint64 beginCall(const QString &method, const QVariantList &arguments) override;
    /// The plug-in is about to be notified of the connection. @return a number for end()
    quint64 beginConnection();
    void end(quint64 call, const QVariant &result) override;

    /// The path of a new file of the user.
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
    int m_calls = 0; ///< that have not returned yet
    QHash<const void *, int> m_contexts;
};

} // namespace workbench
