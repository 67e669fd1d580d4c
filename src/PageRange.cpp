#include "PageRange.h"

#include <QtCore/qglobal.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaline {

namespace {

/// Number of pages, in single precision and truncated, as the panel's pager computes it too.
int pageCount(std::size_t size, int pageSize)
{
    if (pageSize == 0)
        return 0; // the division would give no number; every page is empty anyway
    constexpr auto limit = static_cast<float>(std::numeric_limits<int>::max());
    const float pages = std::ceil(static_cast<float>(size) / static_cast<float>(pageSize));
    if (pages >= limit)
        return std::numeric_limits<int>::max();
    return static_cast<int>(std::max(pages, -limit));
}

} // namespace

Range pageRange(std::size_t size, int pageSize, int pageNumber)
{
    if (pageNumber >= pageCount(size, pageSize))
        pageNumber = 0;
    const auto limit = static_cast<qint64>(size);
    const qint64 first = qint64(pageSize) * pageNumber;
    const qint64 end = pageSize < 0 ? limit : first + pageSize;
    return {static_cast<std::size_t>(std::clamp(first, qint64(0), limit)),
            static_cast<std::size_t>(std::clamp(end, qint64(0), limit))};
}

} // namespace tessaline
