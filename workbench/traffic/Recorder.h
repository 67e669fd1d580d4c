#pragma once

#include "SignalReceiver.h"
#include "TrafficEntry.h"
#include "framework/Traffic.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

class PluginBase;

namespace standin {
class Framework;
}

namespace workbench {

class TrafficModel;

/// Notes what passes between QML, plug-in and host: the framework's traffic, the plug-in's signals
/// and, where QML calls through recorded.mjs, its calls.
class Recorder : public QObject
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

    /// A call is about to be made, or the connection told; gives the number for end().
    Q_INVOKABLE double beginCall(const QString &method, const QVariantList &arguments);
    double beginConnection();
    /// The call has returned.
    Q_INVOKABLE void end(double call, const QVariant &result);

    /// Writes all entries to a file, for a replay. Returns what went wrong, or an empty text.
    Q_INVOKABLE QString save(const QString &path) const;
    /// The path of a new file of the user.
    Q_INVOKABLE static QString newFile();
    Q_INVOKABLE static bool exists(const QString &path);

private:
    double begin(TrafficEntry entry);
    int depth() const;
    int numberOf(const void *context);

    PluginBase &m_plugin;
    standin::Framework &m_framework;
    TrafficModel &m_model;
    standin::SignalReceiver m_receiver;
    int m_calls = 0; ///< that have not returned yet
    QHash<const void *, int> m_contexts;
};

/// What is noted of a call's result: of an object whether there is one.
QVariant notedResult(const QVariant &result);

} // namespace workbench
