#pragma once

#include <cstddef>
#include <optional>
#include <vector>

/// Pairs the elements of two lists that differ, as few of them as possible without a partner.
namespace workbench::alignment {

/// Identifiers of a list's elements; equal ones may be paired.
using Ids = std::vector<size_t>;

/// Positions of two elements that belong together; an element without a partner has none beside it.
struct Pair
{
    std::optional<size_t> left;
    std::optional<size_t> right;
};

/// @param contents identify what the elements are with all they contain; such pairs come first
/// @param things identify what they are; these pair the elements between
/// @return all elements in the order of both lists
std::vector<Pair> align(const Ids &leftThings, const Ids &leftContents, const Ids &rightThings,
                        const Ids &rightContents);

} // namespace workbench::alignment
