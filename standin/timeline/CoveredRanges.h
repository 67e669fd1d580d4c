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

/// The set of times that were requested, stored as closed ranges.
class CoveredRanges
{
public:
    /// Adds [@p first, @p last].
    /// @return the parts that were not covered before, in ascending order; none for an inverted
    ///         range
    std::vector<TimeRange> cover(qint64 first, qint64 last);

    void clear() { m_ranges.clear(); }

private:
    std::vector<TimeRange> m_ranges; ///< ascending; no two overlap or touch
};

} // namespace standin
