#pragma once

#include <QtCore/QLatin1String>
#include <QtCore/QVariant>

#include <optional>

/// Reads payloads and checks exact types. QVariant converts NaN, texts and missing values silently
/// into numbers, so that a station would store wrong times. The functions return nullopt for a
/// missing key or another type.
namespace stations::payload {

std::optional<QVariantMap> toMap(const QVariant &payload);
std::optional<QVariantList> toList(const QVariant &payload);

std::optional<QString> text(const QVariantMap &map, QLatin1String key);
std::optional<qint64> int64(const QVariantMap &map, QLatin1String key);
std::optional<int> integer(const QVariantMap &map, QLatin1String key);
std::optional<uint> unsignedInteger(const QVariantMap &map, QLatin1String key);
std::optional<bool> boolean(const QVariantMap &map, QLatin1String key);

/// Replaces @p value by the text under @p key, if the key exists.
/// @return false if the value under the key is not a text
bool replaceText(const QVariantMap &map, QLatin1String key, QString *value);

/// Returns a list of texts, or nullopt if an element is not a text.
std::optional<QStringList> textList(const QVariantMap &map, QLatin1String key);

} // namespace stations::payload
