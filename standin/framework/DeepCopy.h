#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace standin {

/// A string with data of its own; null stays null. No data of a library that may be unloaded, and
/// nothing shared that a receiver could rely on, survives it.
QString deepCopy(const QString &text);

/// A value with data of its own, at any depth: maps, hashes, lists, string lists, strings and byte
/// arrays are rebuilt, with all keys. Values of other types are copied as QVariant copies them.
QVariant deepCopy(const QVariant &value);

} // namespace standin
