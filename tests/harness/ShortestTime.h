#pragma once

#include <QtCore/QElapsedTimer>

#include <algorithm>
#include <limits>

/// Whether times say something of the library: it is optimized, and does not run under wine.
#if defined(__OPTIMIZE__) && !defined(Q_OS_WIN)
constexpr bool timesTell = true;
#else
constexpr bool timesTell = false;
#endif

/// In nanoseconds, undisturbed by whatever else the machine does.
template <typename Work>
qint64 shortestTime(const Work &work)
{
    qint64 shortest = std::numeric_limits<qint64>::max();
    for (int i = 0; i < 7; ++i) {
        QElapsedTimer timer;
        timer.start();
        work();
        shortest = std::min(shortest, timer.nsecsElapsed());
    }
    return shortest;
}
