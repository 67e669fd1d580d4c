#include "MarkBars.h"

#include <algorithm>
#include <limits>

namespace workbench {

namespace {

constexpr double GapPixels = 1;
constexpr double ThinnestPixels = 4; ///< smallest width that a user can see and click
constexpr double NarrowPixels = 8;   ///< narrower bars are hard to distinguish
constexpr double BucketPixels = 28;  ///< maximum width of joined narrow bars; fits a count
constexpr int FirstFew = 5;
constexpr qint64 Never = std::numeric_limits<qint64>::min();
/// Limit for the ends of bars, so that sums of 64-bit times do not overflow.
constexpr qint64 Farthest = std::numeric_limits<qint64>::max() / 4;

qint64 drawn(qint64 time)
{
    return std::clamp(time, -Farthest, Farthest);
}

class Arrangement
{
public:
    Arrangement(double msPerPixel, int lanes)
        : m_gap(toMs(GapPixels, msPerPixel))
        , m_thinnest(toMs(ThinnestPixels, msPerPixel))
        , m_narrow(toMs(NarrowPixels, msPerPixel))
        , m_bucket(toMs(BucketPixels, msPerPixel))
        , m_lanes(size_t(std::max(1, lanes)))
    {
    }

    void place(const Mark &mark, int index)
    {
        MarkBar bar = barFor(mark, index);
        if (bar.narrow && joinNarrow(bar))
            return;
        const auto free = std::find_if(m_lanes.begin(), m_lanes.end(), [&](const Lane &lane) {
            return lane.right == Never || lane.right + m_gap <= bar.left;
        });
        bar.over = free == m_lanes.end();
        Lane &lane = bar.over ? m_lanes.back() : *free;
        if (bar.over && hides(bar, m_bars[lane.bar])) {
            joinLast(bar);
            return;
        }
        bar.lane = int(&lane - m_lanes.data());
        lane = {std::max(lane.right, bar.right), m_bars.size()};
        if (bar.narrow)
            m_lastNarrow = int(m_bars.size());
        m_bars.push_back(std::move(bar));
    }

    std::vector<MarkBar> takeBars() { return std::move(m_bars); }

private:
    struct Lane
    {
        qint64 right = Never; ///< of all its bars
        size_t bar = 0;       ///< the last one
    };

    static qint64 toMs(double pixels, double msPerPixel)
    {
        return std::max<qint64>(1, qint64(pixels * msPerPixel));
    }

    /// Buckets have fixed positions in time, so that panning does not change the bars.
    qint64 bucketEnd(qint64 time) const { return (time / m_bucket + 1) * m_bucket; }

    MarkBar barFor(const Mark &mark, int index) const
    {
        MarkBar bar{
            drawn(mark.start), drawn(mark.end), mark.start, mark.end, 0, 1, false, false, {index}};
        bar.narrow = bar.right - bar.left < m_narrow;
        if (bar.narrow) {
            const qint64 limit = bucketEnd(bar.left) - m_gap;
            bar.left = std::min(bar.left, limit - m_thinnest);
            bar.right = std::clamp(bar.right, bar.left + m_thinnest, limit);
        }
        return bar;
    }

    bool joinNarrow(const MarkBar &bar)
    {
        if (m_lastNarrow < 0)
            return false;
        MarkBar &last = m_bars[size_t(m_lastNarrow)];
        if (bucketEnd(last.left) != bucketEnd(bar.left) || bar.left > last.right + m_gap)
            return false;
        join(last, bar);
        last.right = bucketEnd(bar.left) - m_gap;
        qint64 &laneRight = m_lanes[size_t(last.lane)].right;
        laneRight = std::max(laneRight, last.right);
        return true;
    }

    /// @return true if too little of @p below would be visible beside a bar drawn over it
    bool hides(const MarkBar &bar, const MarkBar &below) const
    {
        return bar.left - below.left < m_thinnest && below.right - bar.right < m_thinnest;
    }

    void joinLast(const MarkBar &bar)
    {
        Lane &lane = m_lanes.back();
        MarkBar &last = m_bars[lane.bar];
        join(last, bar);
        last.right = std::max(last.right, bar.right);
        last.narrow = false;
        lane.right = std::max(lane.right, last.right);
    }

    static void join(MarkBar &bar, const MarkBar &added)
    {
        ++bar.count;
        bar.end = std::max(bar.end, added.end);
        if (bar.first.size() < FirstFew)
            bar.first.append(added.first.front());
    }

    const qint64 m_gap;
    const qint64 m_thinnest;
    const qint64 m_narrow;
    const qint64 m_bucket;
    std::vector<Lane> m_lanes;
    std::vector<MarkBar> m_bars;
    int m_lastNarrow = -1;
};

} // namespace

std::vector<MarkBar> arrangeMarks(const std::vector<Mark> &marks, double msPerPixel, int lanes)
{
    Arrangement arrangement(msPerPixel, lanes);
    for (size_t i = 0; i < marks.size(); ++i)
        arrangement.place(marks[i], int(i));
    return arrangement.takeBars();
}

} // namespace workbench
