#include "RecordedCall.h"

#include "Recorder.h"

namespace workbench {

RecordedCall::RecordedCall(QObject &target)
{
    QJSEngine::setObjectOwnership(&target, QJSEngine::CppOwnership);
    QJSEngine::setObjectOwnership(this, QJSEngine::CppOwnership);
    const QJSValue module =
        m_engine.importModule(QStringLiteral(":/tessaline/Workbench/window/drawer/recorded.mjs"));
    m_target = module.property(QStringLiteral("recorded"))
                   .call({m_engine.newQObject(&target), m_engine.newQObject(this)});
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
    function.call(values); // an exception is told as the result
    return m_result;
}

void RecordedCall::end(double /*call*/, const QVariant &result)
{
    m_result = notedResult(result);
}

} // namespace workbench
