#pragma once

#include "SignalReceiver.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace workbench {

/// Calls the methods of an object by texts that a user types, and counts the object's signals.
class PluginConsole : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    /// Not owned; set once.
    Q_PROPERTY(QObject *plugin READ plugin WRITE setPlugin NOTIFY pluginChanged REQUIRED)
    /// The methods in their order: maps of "signature", "name", "index" and "parameters"; these are
    /// maps of "name" and "type".
    Q_PROPERTY(QVariantList methods READ methods NOTIFY pluginChanged)
    Q_PROPERTY(QStringList signalNames READ signalNames NOTIFY pluginChanged)
    /// By name of a signal that was emitted: a map of "count" and "arguments", those of the last.
    Q_PROPERTY(QVariantMap emitted READ emitted NOTIFY emittedChanged)

public:
    using QObject::QObject;

    QObject *plugin() const { return m_plugin; }
    void setPlugin(QObject *plugin);
    QVariantList methods() const;
    QStringList signalNames() const;
    QVariantMap emitted() const { return m_emitted; }

    /// Calls a method. Lists and maps are typed as JSON.
    /// @param index of the method
    /// @param texts the arguments
    /// @return a map of "result", the beginning of it as text, or of "error" and "parameter", the
    /// number of the argument that can't be used
    Q_INVOKABLE QVariantMap call(int index, const QStringList &texts);
    Q_INVOKABLE void resetCounts();

Q_SIGNALS:
    void pluginChanged();
    void emittedChanged();

private:
    QObject *m_plugin = nullptr;
    QVariantMap m_emitted;
    std::optional<standin::SignalReceiver> m_receiver;
};

} // namespace workbench
