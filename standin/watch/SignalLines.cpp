#include "SignalLines.h"

namespace {

QString textOf(int type, const void *value)
{
    if (type == QMetaType::QStringList)
        return static_cast<const QStringList *>(value)->join(u',');
    return QVariant(QMetaType(type), value).toString();
}

} // namespace

SignalLines::SignalLines(QObject *object)
{
    const QMetaObject *const metaObject = object->metaObject();
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() != QMetaMethod::Signal)
            continue;
        const int slot = QObject::staticMetaObject.methodCount() + int(m_signals.size());
        QMetaObject::connect(object, i, this, slot, Qt::DirectConnection);
        m_signals.append(method);
    }
}

int SignalLines::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    id = QObject::qt_metacall(call, id, arguments);
    if (call != QMetaObject::InvokeMetaMethod || id < 0 || id >= m_signals.size())
        return id;

    const QMetaMethod &method = m_signals.at(id);
    QStringList texts;
    for (int i = 0; i < method.parameterCount(); ++i)
        texts.append(textOf(method.parameterType(i), arguments[i + 1]));
    const QString line = QString::fromLatin1(method.name()) + u'(' + texts.join(u',') + u')';
    m_lines.append(line);
    if (const auto callback = onSignal)
        callback(line);
    return -1;
}
