#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace standin {

/// Returns a string with its own data; null stays null. The copy stays valid if the library that
/// made @p text is unloaded.
QString deepCopy(const QString &text);

/// Returns a value with its own data at any depth, keys included: rebuilds maps, hashes, lists,
/// string lists, strings and byte arrays. Values of other types are copied as QVariant does.
QVariant deepCopy(const QVariant &value);

} // namespace standin
