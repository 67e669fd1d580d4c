#include "FrameMeter.h"

#include <QtCore/QEvent>
#include <QtQuick/QQuickWindow>

#include <algorithm>
#include <ctime>
#include <utility>

namespace workbench {

namespace {

constexpr int HeartbeatMs = 2;

/// Returns the processor time of this thread, in milliseconds; 0 where the system does not report
/// it.
double threadTime()
{
#ifdef Q_OS_UNIX
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) * 1e3 + double(time.tv_nsec) / 1e6;
#else
    return 0;
#endif
}

} // namespace

FrameMeter::FrameMeter(QQuickWindow &window)
{
    m_clock.start();
    window.installEventFilter(this);
    connect(&window, &QQuickWindow::frameSwapped, this, &FrameMeter::endFrame);
    m_heartbeat.setTimerType(Qt::PreciseTimer);
    connect(&m_heartbeat, &QTimer::timeout, this, &FrameMeter::measureBlock);
    m_heartbeat.start(HeartbeatMs);
}

void FrameMeter::begin()
{
    m_inputs.clear();
    m_changed.clear();
    m_times = {};
    m_lastHeartbeat = now();
}

FrameTimes FrameMeter::take()
{
    m_times.unshown = int(m_inputs.size() + m_changed.size());
    return std::exchange(m_times, {});
}

bool FrameMeter::eventFilter(QObject * /*window*/, QEvent *event)
{
    if (event->type() == QEvent::UpdateRequest) {
        m_frameBegin = now();
        m_workBegin = threadTime();
    }
    return false;
}

void FrameMeter::markChange()
{
    m_changed.append(std::exchange(m_inputs, {}));
}

void FrameMeter::endFrame()
{
    const double end = now();
    m_times.frames.append(end - m_frameBegin);
    m_times.work.append(threadTime() - m_workBegin);
    const QList<double> shown = std::exchange(m_changed, {});
    for (const double due : shown)
        m_times.latencies.append(end - due);
}

void FrameMeter::measureBlock()
{
    const double elapsed = now() - std::exchange(m_lastHeartbeat, now());
    m_times.blocks.append(std::max(0.0, elapsed - HeartbeatMs));
}

} // namespace workbench
