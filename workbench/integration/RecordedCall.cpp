#include "RecordedCall.h"

namespace workbench {

RecordedCall::RecordedCall(QObject &target)
    : m_recorded(target, *this)
{
    QJSEngine::setObjectOwnership(&m_recorded, QJSEngine::CppOwnership);
    m_target = m_engine.newQObject(&m_recorded);
}

QVariant RecordedCall::make(const QString &method, const QVariantList &arguments)
{
    QJSValueList values;
    for (const QVariant &argument : arguments)
        values.append(m_engine.toScriptValue(argument));
    const QJSValue function = m_target.property(method);
    if (!function.isCallable())
        return QStringLiteral("there is no such method");
    m_result = QVariant();
    const QJSValue returned = function.callWithInstance(m_target, values);
    if (returned.isError())
        return QVariantMap{{QStringLiteral("exception"), returned.toString()}};
    return m_result;
}

} // namespace workbench
