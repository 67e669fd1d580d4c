#pragma once

#include <QtCore/QMetaObject>
#include <QtCore/QObject>
#include <QtCore/QVariantList>

namespace workbench {

/// Is notified of the calls that pass a RecordedPlugin.
class CallObserver
{
public:
    /// @return a number for end()
    virtual quint64 beginCall(const QString &method, const QVariantList &arguments) = 0;
    /// The call has returned.
    virtual void end(quint64 call, const QVariant &result) = 0;

protected:
    ~CallObserver() = default;
};

/// The plug-in's object as the workbench offers it to QML: it has the methods and signals of the
/// plug-in's object, forwards each call, and reports it to an observer.
class RecordedPlugin : public QObject
{
public:
    /// Neither is owned; both must outlive this object. Signals come after those that were
    /// connected to @p plugin before.
    RecordedPlugin(QObject &plugin, CallObserver &observer);

    const QMetaObject *metaObject() const override { return &m_metaObject; }
    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    void forward(const QMetaMethod &method, int id, void **arguments);

    QObject &m_plugin;
    CallObserver &m_observer;
    QMetaObject m_metaObject;
};

/// What is noted of a call's result: of an object whether there is one.
QVariant notedResult(const QVariant &result);

} // namespace workbench
