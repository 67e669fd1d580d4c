#pragma once

#include <QtCore/QElapsedTimer>

#include <algorithm>
#include <limits>

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
