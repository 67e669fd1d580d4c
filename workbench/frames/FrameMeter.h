#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QTimer>

class QQuickWindow;

namespace workbench {

/// What was seen of a window while it worked. All times in milliseconds.
struct FrameTimes
{
    QList<double> latencies; ///< from the moment an input was due to the frame that shows it
    QList<double> frames;    ///< from the begin of a frame to its end
    QList<double> work;      ///< what the thread worked of that; else it waited for a processor
    QList<double> stations;  ///< how long a station worked for an answer, in its own thread
    QList<double> answers;   ///< how long the plug-in took for an answer, QML's slots included
    QList<double> blocks;    ///< how long a timer that was due had to wait for the event loop
    int unseen = 0;          ///< inputs that no frame has shown
};

/// Watches a window that draws in the thread it lives in, as it does in software.
class FrameMeter : public QObject
{
    Q_OBJECT

public:
    /// @p window is not owned and must outlive the meter.
    explicit FrameMeter(QQuickWindow &window);

    /// Milliseconds on the meter's clock.
    double now() const { return double(m_clock.nsecsElapsed()) / 1e6; }

    /// Forgets what it has seen so far.
    void begin();
    /// An input follows that was due then; when the thread was busy, that is a while ago.
    void noteInput(double due) { m_inputs.append(due); }
    /// What is to be drawn follows all inputs noted so far: the next frame shows them.
    void noteChange();
    void noteStation(double milliseconds) { m_times.stations.append(milliseconds); }
    void noteAnswer(double milliseconds) { m_times.answers.append(milliseconds); }
    /// Whether an input waits for its frame.
    bool isWaiting() const { return !m_inputs.isEmpty() || !m_changed.isEmpty(); }
    /// What was seen since begin().
    FrameTimes take();

protected:
    bool eventFilter(QObject *window, QEvent *event) override;

private:
    void noteFrame();
    void noteHeartbeat();

    QElapsedTimer m_clock;
    QTimer m_heartbeat;
    double m_lastHeartbeat = 0;
    double m_frameBegin = 0;
    double m_workBegin = 0;  ///< on the thread's own clock
    QList<double> m_inputs;  ///< due times, of those that have changed nothing yet
    QList<double> m_changed; ///< of those whose change the next frame shows
    FrameTimes m_times;
};

} // namespace workbench
