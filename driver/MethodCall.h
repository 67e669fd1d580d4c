#pragma once

#include <QtCore/QMetaMethod>
#include <QtCore/QVariant>

#include <optional>

class QObject;

namespace driver {

/// Calls a method of the object's class as QML does. The number of arguments, and which of them are
/// texts, select the overload.
/// @param name without parameter types
/// @param arguments a null value becomes a null text
/// @return the method's result, invalid for a void method; nullopt if no overload accepts the
/// arguments
std::optional<QVariant> callByName(QObject &object, const QByteArray &name,
                                   const QVariantList &arguments);

/// Calls a method.
/// @param arguments values of exactly the parameter types
/// @return the result; invalid for a void method
QVariant callMethod(QObject &object, const QMetaMethod &method, QVariantList arguments);

} // namespace driver
