#pragma once

#include <cstddef>
#include <utility>

namespace tessaline {

/// A stretch of positions: the first, and the one behind the last.
using Slice = std::pair<std::size_t, std::size_t>;

/// One page of a list of @p size records. Pages count from 0; beyond the last page the first one is
/// shown again. Any number is allowed for page size and page; what a page size of 0 or below or a
/// negative page gives is what QList::mid() makes of it.
Slice pageSlice(std::size_t size, int pageSize, int pageNumber);

} // namespace tessaline
