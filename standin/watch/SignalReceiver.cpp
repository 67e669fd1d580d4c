#include "SignalReceiver.h"

#include "ProcessLifetimeType.h"

#include <utility>

namespace standin {

SignalReceiver::SignalReceiver(QObject *sender, Callback callback)
    : m_callback(std::move(callback))
{
    const QMetaObject *const metaObject = sender->metaObject();
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        const int slot = QObject::staticMetaObject.methodCount() + int(m_signals.size());
        QMetaObject::connect(sender, i, this, slot, Qt::DirectConnection);
        m_signals.append(method);
    }
}

int SignalReceiver::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (call != QMetaObject::InvokeMetaMethod || id < 0 || id >= m_signals.size())
        return id;

    const QMetaMethod signal = m_signals.at(id);
    QVariantList values;
    for (int i = 0; i < signal.parameterCount(); ++i)
        values.append(QVariant(processLifetimeType(signal.parameterMetaType(i)), arguments[i + 1]));
    m_callback(signal, values);
    return -1;
}

} // namespace standin
