#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <vector>

namespace check {

/// A value of a wrong type or with an extreme content.
struct HostileValue
{
    QString title;
    QVariant value; ///< invalid for a missing value
};

/// @return no value, null values, values of every type, minimal and maximal numbers, long and
/// malformed texts, deep containers, and containers with elements of other types
const std::vector<HostileValue> &hostileValues();

/// @return @p map with the hostile value at @p key; without that key for a missing value
QVariantMap withValue(QVariantMap map, const QString &key, const HostileValue &hostile);

} // namespace check
