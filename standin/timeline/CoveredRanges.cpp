#include "CoveredRanges.h"

#include <algorithm>

namespace standin {

namespace {

// The first comparison keeps the arithmetic from overflowing at either end of 64 bits.

bool endsWellBefore(const TimeRange &range, qint64 time)
{
    return range.last < time && range.last + 1 < time;
}

bool beginsWellAfter(const TimeRange &range, qint64 time)
{
    return range.first > time && range.first - 1 > time;
}

} // namespace

std::vector<TimeRange> CoveredRanges::cover(qint64 first, qint64 last)
{
    std::vector<TimeRange> gaps;
    if (first > last)
        return gaps;

    const auto begin = std::lower_bound(m_ranges.begin(), m_ranges.end(), first, endsWellBefore);
    auto end = begin;
    TimeRange merged{first, last};
    qint64 next = first;
    bool reachedLast = false;
    for (; end != m_ranges.end() && !beginsWellAfter(*end, last); ++end) {
        if (end->first > next)
            gaps.push_back({next, end->first - 1});
        if (end->last >= last)
            reachedLast = true;
        else
            next = end->last + 1;
        merged.first = std::min(merged.first, end->first);
        merged.last = std::max(merged.last, end->last);
    }
    if (!reachedLast)
        gaps.push_back({next, last});

    m_ranges.insert(m_ranges.erase(begin, end), merged);
    return gaps;
}

} // namespace standin
