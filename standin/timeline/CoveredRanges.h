#pragma once

#include <QtCore/qglobal.h>

#include <vector>

namespace standin {

/// A closed range of times.
struct TimeRange
{
    qint64 first;
    qint64 last;
};

/// The set of times that have been asked for, as few closed ranges as possible.
class CoveredRanges
{
public:
    /// Adds [@p first, @p last] and returns, in ascending order, what of it was not covered
    /// before. An inverted range covers nothing.
    std::vector<TimeRange> cover(qint64 first, qint64 last);

    void clear() { m_ranges.clear(); }

private:
    std::vector<TimeRange> m_ranges; ///< ascending; no two overlap or touch
};

} // namespace standin
