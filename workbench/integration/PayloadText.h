#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

/// Payloads as text, in parts: whole ones may hold records by the hundred thousand.
namespace workbench::payloadtext {

/// The beginning of the value on one line, much as JSON, cut after about @p length characters.
QString brief(const QVariant &value, qsizetype length);

/// Whether a key or value contains the text, whatever its case. Looks at the first
/// @p valueCount values only.
bool contains(const QVariant &value, const QString &text, int valueCount);

/// About how many values a payload holds, containers included; a measure of the memory it takes.
qint64 countValues(const QVariant &value);

/// The value as indented JSON, for reading; types that JSON lacks become texts.
QString toJson(const QVariant &value);

} // namespace workbench::payloadtext
