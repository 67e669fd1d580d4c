#include "VisibleRange.h"

#include <algorithm>
#include <cmath>

namespace workbench {

namespace {

constexpr qint64 Minute = 60'000;
constexpr qint64 Day = 1'440 * Minute;
constexpr qint64 ShortestSpan = Minute;
constexpr qint64 LongestSpan = 8 * Day;
// Limits within which dates are readable and sums of times do not overflow.
constexpr qint64 FirstTime = 0;
constexpr qint64 LastTime = 253'402'300'799'999; ///< the end of the year 9999

} // namespace

VisibleRange::VisibleRange(QObject *parent)
    : QObject(parent)
    , m_span(Day)
{
}

double VisibleRange::requestedFrom() const
{
    return double(std::max(FirstTime, (m_from / step() - 1) * step()));
}

double VisibleRange::requestedTo() const
{
    const qint64 stepsBeforeEnd = end() / step();
    return double((stepsBeforeEnd + 2) * step());
}

void VisibleRange::show(qint64 from, qint64 to)
{
    to = std::clamp(to, FirstTime, LastTime);
    const qint64 span =
        std::clamp(to - std::clamp(from, FirstTime, LastTime), ShortestSpan, LongestSpan);
    set(to - span, span);
}

void VisibleRange::moveBy(qint64 distance)
{
    set(m_from + std::clamp(distance, -LastTime, LastTime), m_span);
}

void VisibleRange::zoomAbout(qint64 time, double factor)
{
    const double share = double(time - m_from) / double(m_span);
    const double span =
        std::clamp(double(m_span) * factor, double(ShortestSpan), double(LongestSpan));
    set(time - qint64(std::llround(share * span)), qint64(std::llround(span)));
}

void VisibleRange::reveal(qint64 time)
{
    time = std::clamp(time, FirstTime, LastTime);
    if (time < m_from || time > end())
        set(time - m_span / 2, m_span);
}

void VisibleRange::revealRange(qint64 from, qint64 to)
{
    constexpr qint64 Part = 20;
    from = std::clamp(from, FirstTime, LastTime);
    to = std::clamp(to, from, LastTime);
    const qint64 length = to - from;
    const qint64 middle = from + length / 2;
    if (length > m_span)
        show(from - length / Part, to + length / Part);
    else if (length > 0 && length * Part < m_span)
        show(middle - Part / 2 * length, middle + Part / 2 * length);
    else if (from < m_from || to > end())
        set(middle - m_span / 2, m_span);
    reveal(from);
}

void VisibleRange::follow(qint64 before, qint64 after)
{
    if (before <= end() && after > end())
        set(after - m_span + m_span / 20, m_span);
}

void VisibleRange::set(qint64 from, qint64 span)
{
    from = std::clamp(from, FirstTime, LastTime - span);
    if (from == m_from && span == m_span)
        return;
    m_from = from;
    m_span = span;
    Q_EMIT changed();
}

} // namespace workbench
