#pragma once

#include <QtCore/QVariant>

#include <array>
#include <cstddef>
#include <utility>

// Records are maps, and a site has hundreds of thousands of them. Reading several fields in one
// walk takes half the time of looking up each.

namespace tessaline {

/// The values under some keys, in the order of the keys, which must be ascending; an invalid value
/// for a key that is missing. The values are those of the map, and live as long as it does.
template <std::size_t Count>
std::array<const QVariant *, Count> valuesOf(const QVariantMap &map,
                                             const std::array<const QString *, Count> &keys)
{
    static const QVariant missing;
    std::array<const QVariant *, Count> values;
    auto entry = map.cbegin();
    for (std::size_t i = 0; i < Count; ++i) {
        // Equality first: it is cheaper, and nearly always what is found.
        bool found = false;
        while (entry != map.cend() && !(found = entry.key() == *keys[i]) && entry.key() < *keys[i])
            ++entry;
        values[i] = found ? &*entry : &missing;
    }
    return values;
}

/// Makes maps that have the same keys: to copy a map takes a third of the time of inserting its
/// entries one by one.
template <std::size_t Count>
class MapShape
{
public:
    /// @param keys ascending
    explicit MapShape(const std::array<const QString *, Count> &keys)
    {
        for (const QString *key : keys)
            m_shape.insert(*key, QVariant());
    }

    /// A map of these values, which come in the order of the keys.
    QVariantMap filled(std::array<QVariant, Count> values) const
    {
        QVariantMap map = m_shape;
        auto value = values.begin();
        for (QVariant &entry : map)
            entry = std::move(*value++);
        return map;
    }

private:
    QVariantMap m_shape;
};

} // namespace tessaline
