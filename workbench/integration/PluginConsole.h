#pragma once

#include "SignalReceiver.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace workbench {

/// Calls the methods of an object with arguments that a user types, and counts the object's
/// signals.
class PluginConsole : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    /// The object; not owned. Set it once.
    Q_PROPERTY(QObject *plugin READ plugin WRITE setPlugin NOTIFY pluginChanged REQUIRED)
    /// The methods in the order of their declaration: maps of "signature", "name", "index" and
    /// "parameters", a list of maps of "name" and "type".
    Q_PROPERTY(QVariantList methods READ methods NOTIFY pluginChanged)
    Q_PROPERTY(QStringList signalNames READ signalNames NOTIFY pluginChanged)
    /// The emitted signals by name: maps of "count" and "arguments", the last ones as text.
    Q_PROPERTY(QVariantMap emitted READ emitted NOTIFY emittedChanged)

public:
    using QObject::QObject;

    QObject *plugin() const { return m_plugin; }
    void setPlugin(QObject *plugin);
    QVariantList methods() const;
    QStringList signalNames() const;
    QVariantMap emitted() const { return m_emitted; }

    /// Calls a method.
    /// @param index of the method
    /// @param texts the arguments; lists and maps as JSON
    /// @return a map with "result", the beginning of the result as text; or without a call a map
    /// with
    ///         "error", a message, and "parameter", the index of the unusable argument
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
