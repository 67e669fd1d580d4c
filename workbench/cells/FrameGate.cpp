#include "FrameGate.h"

#include <algorithm>

namespace workbench {

namespace {

constexpr qint64 FrameMs = 16;

} // namespace

FrameGate::FrameGate(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_sinceDue.start();
        Q_EMIT due();
    });
}

void FrameGate::schedule()
{
    if (m_timer.isActive())
        return;
    const qint64 elapsed = m_sinceDue.isValid() ? m_sinceDue.elapsed() : FrameMs;
    m_timer.start(int(std::clamp<qint64>(FrameMs - elapsed, 0, FrameMs)));
}

} // namespace workbench
