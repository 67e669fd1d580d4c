#pragma once

#include <QtCore/QLatin1String>
#include <QtCore/QVariant>

#include <optional>

/// Reading of payloads by their exact types. QVariant's own conversions turn NaN, texts and
/// missing values silently into numbers; a server that took those would store wrong times.
namespace workbench::payload {

std::optional<QVariantMap> toMap(const QVariant &payload);
std::optional<QVariantList> toList(const QVariant &payload);

std::optional<QString> text(const QVariantMap &map, QLatin1String key);
std::optional<qint64> int64(const QVariantMap &map, QLatin1String key);
std::optional<int> integer(const QVariantMap &map, QLatin1String key);
std::optional<uint> unsignedInteger(const QVariantMap &map, QLatin1String key);
std::optional<bool> boolean(const QVariantMap &map, QLatin1String key);

/// Replaces @p value by the text under @p key, if there is one; false when it is no text.
bool replaceText(const QVariantMap &map, QLatin1String key, QString *value);

/// A list of texts; nothing when one of the elements is no text.
std::optional<QStringList> textList(const QVariantMap &map, QLatin1String key);

} // namespace workbench::payload
