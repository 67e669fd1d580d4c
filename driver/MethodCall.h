#pragma once

#include <QtCore/QMetaMethod>
#include <QtCore/QVariant>

#include <optional>

class QObject;

namespace driver {

/// Calls a method of an object's own class as QML does: the number of the arguments, and which of
/// them are texts, choose the overload. A null argument is a null text.
/// @return the method's result, invalid for a void method; nullopt if no overload fits
std::optional<QVariant> callByName(QObject &object, const QByteArray &name,
                                   const QVariantList &arguments);

/// Calls one method.
/// @param arguments of the method's parameter types
/// @return the result; invalid for a void method
QVariant callMethod(QObject &object, const QMetaMethod &method, QVariantList arguments);

} // namespace driver
