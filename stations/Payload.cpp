#include "Payload.h"

#include <QtCore/QStringList>

namespace stations::payload {

namespace {

template <typename T>
std::optional<T> exactly(const QVariant &value)
{
    if (value.metaType() != QMetaType::fromType<T>())
        return std::nullopt;
    return value.value<T>();
}

} // namespace

std::optional<QVariantMap> toMap(const QVariant &payload)
{
    return exactly<QVariantMap>(payload);
}

std::optional<QVariantList> toList(const QVariant &payload)
{
    return exactly<QVariantList>(payload);
}

std::optional<QString> text(const QVariantMap &map, QLatin1String key)
{
    return exactly<QString>(map.value(key));
}

std::optional<qint64> int64(const QVariantMap &map, QLatin1String key)
{
    return exactly<qint64>(map.value(key));
}

std::optional<int> integer(const QVariantMap &map, QLatin1String key)
{
    return exactly<int>(map.value(key));
}

std::optional<uint> unsignedInteger(const QVariantMap &map, QLatin1String key)
{
    return exactly<uint>(map.value(key));
}

std::optional<bool> boolean(const QVariantMap &map, QLatin1String key)
{
    return exactly<bool>(map.value(key));
}

bool replaceText(const QVariantMap &map, QLatin1String key, QString *value)
{
    if (!map.contains(key))
        return true;
    const std::optional<QString> replacement = text(map, key);
    if (replacement)
        *value = *replacement;
    return replacement.has_value();
}

std::optional<QStringList> textList(const QVariantMap &map, QLatin1String key)
{
    const std::optional<QVariantList> elements = toList(map.value(key));
    if (!elements)
        return std::nullopt;
    QStringList texts;
    texts.reserve(elements->size());
    for (const QVariant &element : *elements) {
        const std::optional<QString> text = exactly<QString>(element);
        if (!text)
            return std::nullopt;
        texts.append(*text);
    }
    return texts;
}

} // namespace stations::payload
