#pragma once

#include <cstddef>
#include <optional>
#include <vector>

/// Pairs the elements of two different lists, with as few elements without a partner as possible.
namespace workbench::alignment {

/// Identifiers of a list's elements; equal ones may be paired.
using Ids = std::vector<size_t>;

/// The positions of two elements that belong together. One of them is missing for an element
/// without a partner.
struct Pair
{
    std::optional<size_t> left;
    std::optional<size_t> right;
};

/// Pairs elements with equal contents first, then elements of the same thing between these pairs.
/// @param leftThings,rightThings     identify the elements without their contents
/// @param leftContents,rightContents identify the elements with their contents
/// @return all elements in the order of both lists
std::vector<Pair> align(const Ids &leftThings, const Ids &leftContents, const Ids &rightThings,
                        const Ids &rightContents);

} // namespace workbench::alignment
