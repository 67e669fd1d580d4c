#pragma once

#include <cstddef>

namespace tessaline {

/// Positions from @p first up to but without @p end.
struct Range
{
    std::size_t first;
    std::size_t end;
};

/// One page of a list.
///
/// @param size number of records in the list
/// @param pageSize any number; 0 or below gives what QList::mid() makes of it
/// @param pageNumber from 0; beyond the last page the first one is returned
Range pageRange(std::size_t size, int pageSize, int pageNumber);

} // namespace tessaline
