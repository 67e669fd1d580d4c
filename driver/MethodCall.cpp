#include "MethodCall.h"

#include "Breadcrumbs.h"
#include "ProcessLifetimeType.h"

#include <QtCore/QObject>

namespace driver {

namespace {

/// Converts an argument to a parameter's type.
/// @return false if the argument does not match the parameter
bool convert(QVariant &argument, QMetaType type)
{
    const bool isText = argument.isNull() || argument.typeId() == QMetaType::QString;
    if (isText != (type.id() == QMetaType::QString))
        return false;
    if (argument.isNull())
        argument = QVariant(type);
    return argument.metaType() == type || argument.convert(type);
}

bool convert(QVariantList &arguments, const QMetaMethod &method)
{
    if (arguments.size() != method.parameterCount())
        return false;
    for (int i = 0; i < method.parameterCount(); ++i) {
        if (!convert(arguments[i], processLifetimeType(method.parameterMetaType(i))))
            return false;
    }
    return true;
}

} // namespace

std::optional<QVariant> callByName(QObject &object, const QByteArray &name,
                                   const QVariantList &arguments)
{
    const QMetaObject *const metaObject = object.metaObject();
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        QVariantList converted = arguments;
        if (method.name() == name && convert(converted, method))
            return callMethod(object, method, converted);
    }
    return std::nullopt;
}

QVariant callMethod(QObject &object, const QMetaMethod &method, QVariantList arguments)
{
    leaveBreadcrumb(QString::fromLatin1(method.methodSignature()));
    const QMetaType type = processLifetimeType(method.returnMetaType());
    const bool hasResult = type.id() != QMetaType::Void;
    QVariant result = hasResult ? QVariant(type) : QVariant();
    void *values[11] = {hasResult ? result.data() : nullptr};
    for (qsizetype i = 0; i < arguments.size(); ++i)
        values[i + 1] = arguments[i].data();
    QMetaObject::metacall(&object, QMetaObject::InvokeMetaMethod, method.methodIndex(), values);
    return result;
}

} // namespace driver
