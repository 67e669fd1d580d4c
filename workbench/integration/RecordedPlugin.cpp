#include "RecordedPlugin.h"

#include "ProcessLifetimeType.h"

#include <QtCore/QMetaMethod>

namespace workbench {

namespace {

QVariant argumentAt(const QMetaType type, const void *value)
{
    // The engine passes "undefined" as a null text; the plug-in treats an empty one differently.
    if (type.id() == QMetaType::QString && static_cast<const QString *>(value)->isNull())
        return {};
    return QVariant(processLifetimeType(type), value);
}

} // namespace

RecordedPlugin::RecordedPlugin(QObject &plugin, CallObserver &observer)
    : m_plugin(plugin)
    , m_observer(observer)
    , m_metaObject(*plugin.metaObject())
{
    // Without this, the engine would call the plug-in's function with a pointer to this object.
    m_metaObject.d.static_metacall = nullptr;
    for (int i = m_metaObject.methodOffset(); i < m_metaObject.methodCount(); ++i) {
        if (m_metaObject.method(i).methodType() == QMetaMethod::Signal)
            QMetaObject::connect(&m_plugin, i, this, i, Qt::DirectConnection);
    }
}

int RecordedPlugin::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    const int offset = m_metaObject.methodOffset();
    if (call != QMetaObject::InvokeMetaMethod || id < offset)
        return call == QMetaObject::RegisterMethodArgumentMetaType && id >= offset
                   ? m_plugin.qt_metacall(call, id, arguments)
                   : QObject::qt_metacall(call, id, arguments);

    const QMetaMethod method = m_metaObject.method(id);
    if (method.methodType() == QMetaMethod::Signal)
        QMetaObject::activate(this, &m_metaObject, id - offset, arguments);
    else
        forward(method, id, arguments);
    return -1;
}

void RecordedPlugin::forward(const QMetaMethod &method, int id, void **arguments)
{
    QVariantList values;
    for (int i = 0; i < method.parameterCount(); ++i)
        values.append(argumentAt(method.parameterMetaType(i), arguments[i + 1]));
    const quint64 call = m_observer.beginCall(QString::fromLatin1(method.name()), values);
    m_plugin.qt_metacall(QMetaObject::InvokeMetaMethod, id, arguments);
    const bool returns = method.returnType() != QMetaType::Void && arguments[0];
    m_observer.end(call, returns ? recordedResult(QVariant(
                                       processLifetimeType(method.returnMetaType()), arguments[0]))
                                 : QVariant());
}

QVariant recordedResult(const QVariant &result)
{
    if (!result.canConvert<QObject *>())
        return result;
    return QVariantMap{{QStringLiteral("object"), result.value<QObject *>() != nullptr}};
}

} // namespace workbench
