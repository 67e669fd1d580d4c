#pragma once

#include <QtCore/QList>
#include <QtCore/QMetaMethod>
#include <QtCore/QObject>
#include <QtCore/QVariant>

#include <functional>

namespace standin {

/// Receives every signal of an object's own class without a slot for each signal.
class SignalReceiver : public QObject
{
public:
    using Callback = std::function<void(const QMetaMethod &signal, const QVariantList &arguments)>;

    /// @param callback called inside each emission; the arguments have the types of the signal's
    ///                 parameters
    explicit SignalReceiver(QObject *sender, Callback callback);

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    QList<QMetaMethod> m_signals;
    Callback m_callback;
};

} // namespace standin
