#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QVariant>

#include <optional>

/// Values as JSON that keeps their types; docs/recordings.md describes the form.
namespace workbench::recordedvalue {

/// A value that can't be written (of an unknown type, or nested too deeply) becomes a note of that.
QJsonValue toJson(const QVariant &value);

/// Nothing when the JSON is not of the form that toJson() writes.
std::optional<QVariant> fromJson(const QJsonValue &json);

/// The beginning of the JSON on one line.
QString brief(const QJsonValue &json);

} // namespace workbench::recordedvalue
