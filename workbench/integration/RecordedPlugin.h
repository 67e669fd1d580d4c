#pragma once

#include <QtCore/QMetaObject>
#include <QtCore/QObject>
#include <QtCore/QVariantList>

namespace workbench {

/// Receives the calls of a RecordedPlugin.
class CallObserver
{
public:
    /// Called before a call.
    /// @return a number for end()
    virtual quint64 beginCall(const QString &method, const QVariantList &arguments) = 0;
    /// Called when a call has returned.
    virtual void end(quint64 call, const QVariant &result) = 0;

protected:
    ~CallObserver() = default;
};

/// A proxy with the methods and signals of the plug-in's object: forwards each call and reports it
/// to an observer. QML uses it in place of the plug-in's object.
class RecordedPlugin : public QObject
{
public:
    /// Forwards signals after the slots that are already connected to @p plugin.
    /// @param plugin,observer not owned; must outlive this object
    RecordedPlugin(QObject &plugin, CallObserver &observer);

    const QMetaObject *metaObject() const override { return &m_metaObject; }
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    void forward(const QMetaMethod &method, int id, void **arguments);

    QObject &m_plugin;
    CallObserver &m_observer;
    QMetaObject m_metaObject;
};

/// Returns a call's result as recorded: for an object a map that says whether it is null.
QVariant recordedResult(const QVariant &result);

} // namespace workbench
