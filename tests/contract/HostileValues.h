#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

#include <vector>

namespace check {

/// A value that nobody wants to get, and what it is called.
struct HostileValue
{
    QString title;
    QVariant value; ///< invalid for one that is not there at all
};

/// Values of every wrong kind: none, null, each other type, the ends of numbers, texts that are
/// long or broken, containers that are deep, large or hold themselves what they should not.
const std::vector<HostileValue> &hostileValues();

/// The map with one value put in under a key, or taken out where the hostile value is none.
QVariantMap with(QVariantMap map, const QString &key, const HostileValue &hostile);

} // namespace check
