#pragma once

#include <QtCore/QElapsedTimer>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QTimer>

class QQuickWindow;

namespace workbench {

/// Measured times of a window, in milliseconds.
struct FrameTimes
{
    QList<double>
        latencies;        ///< from the time an input was due to the end of the frame that shows it
    QList<double> frames; ///< from the start of a frame to its end
    QList<double> work;   ///< processor time of a frame
    QList<double> stations; ///< time of a station for an answer, in its thread
    QList<double> answers;  ///< time of the plug-in for an answer, including slots in QML
    QList<double> blocks;   ///< delay of a timer whose thread is busy
    int unshown = 0;        ///< number of inputs that no frame showed
};

/// Measures a window. The window must draw in the GUI thread, as Qt's software renderer does.
class FrameMeter : public QObject
{
    Q_OBJECT

public:
    /// @param window not owned; must outlive this object
    explicit FrameMeter(QQuickWindow &window);

    /// @return milliseconds on the meter's clock
    double now() const { return double(m_clock.nsecsElapsed()) / 1e6; }

    /// Starts a measurement; discards earlier times.
    void begin();
    /// Call before an input.
    /// @param due the time at which the user would have made the input; earlier than now() if the
    ///            thread was busy
    void addInput(double due) { m_inputs.append(due); }
    /// Call after a change of the scene: the next frame shows all inputs so far.
    void markChange();
    void addStationTime(double milliseconds) { m_times.stations.append(milliseconds); }
    void addAnswerTime(double milliseconds) { m_times.answers.append(milliseconds); }
    /// @return true if an input waits for its frame
    bool isWaiting() const { return !m_inputs.isEmpty() || !m_changed.isEmpty(); }
    /// @return the times since begin()
    FrameTimes take();

protected:
    bool eventFilter(QObject *window, QEvent *event) override;

private:
    void endFrame();
    void measureBlock();

    QElapsedTimer m_clock;
    QTimer m_heartbeat;
    double m_lastHeartbeat = 0;
    double m_frameBegin = 0;
    double m_workBegin = 0;  ///< processor time of the thread
    QList<double> m_inputs;  ///< due times of inputs that have not changed the scene
    QList<double> m_changed; ///< due times of inputs that the next frame shows
    FrameTimes m_times;
};

} // namespace workbench
