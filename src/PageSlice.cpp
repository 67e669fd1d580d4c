#include "PageSlice.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tessaline {

namespace {

/// Number of pages, in single precision and truncated, as the panel's pager computes it too.
int pageCount(qsizetype size, int pageSize)
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

QList<QVariant> pageSlice(const QList<QVariant> &list, int pageSize, int pageNumber)
{
    if (pageNumber >= pageCount(list.size(), pageSize))
        pageNumber = 0;
    return list.mid(static_cast<qint64>(pageSize) * pageNumber, pageSize);
}

} // namespace tessaline
