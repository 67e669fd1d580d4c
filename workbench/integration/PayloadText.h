#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

/// Formats and searches payloads. A payload may contain a hundred thousand records, so most
/// functions read only a part of it.
namespace workbench::payloadtext {

/// Returns the beginning of a value on one line, similar to JSON.
/// @param length maximum length in UTF-16 units, without the ellipsis
QString brief(const QVariant &value, qsizetype length);

/// Searches the keys and values of a payload, ignoring case.
/// @param valueCount maximum number of values to search
bool contains(const QVariant &value, const QString &text, int valueCount);

/// Estimates the number of values in a payload, including containers, as a measure of its memory.
qint64 countValues(const QVariant &value);

/// Returns a value as indented JSON. Values of types without a JSON form become texts.
QString toJson(const QVariant &value);

} // namespace workbench::payloadtext
