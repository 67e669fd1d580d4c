#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>

namespace workbench {

/// Lets work be done once a frame however often it is asked for: at the next turn of the event
/// loop after a pause, a frame after the last time otherwise.
class FrameGate : public QObject
{
    Q_OBJECT

public:
    explicit FrameGate(QObject *parent = nullptr);

    void schedule();

Q_SIGNALS:
    /// The work is to be done now.
    void due();

private:
    QTimer m_timer;
    QElapsedTimer m_sinceDue;
};

} // namespace workbench
