#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QVariant>

#include <optional>

/// Converts values to JSON with their types; docs/recordings.md describes the format.
namespace workbench::recordedvalue {

/// Returns the JSON of a value. A value of an unknown type, or one that is nested too deeply,
/// becomes
/// {"$type": "lost"} with the name of the type.
QJsonValue toJson(const QVariant &value);

/// Returns the value, or nullopt if toJson() can't have written the JSON.
std::optional<QVariant> fromJson(const QJsonValue &json);

/// Returns the beginning of the JSON on one line.
QString brief(const QJsonValue &json);

} // namespace workbench::recordedvalue
