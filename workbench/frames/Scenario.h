#pragma once

#include "FrameMeter.h"
#include "InputSimulator.h"

#include <functional>
#include <vector>

class QQuickItem;
class QQuickWindow;

namespace standin {
class Framework;
}

namespace workbench {

class WorkbenchContext;
class FrameReport;

/// Simulates the most frequent user actions in a window and measures each.
class Scenario
{
public:
    /// Arguments are not owned and must outlive this object. The window must show cameras and
    /// bookmarks.
    Scenario(QQuickWindow &window, const WorkbenchContext &workbench,
             standin::Framework &framework);
    ~Scenario();
    Q_DISABLE_COPY_MOVE(Scenario)

    /// Performs each action once and adds its times to a report.
    void perform(FrameReport &report);

private:
    using Inputs = std::vector<std::function<void()>>;

    void measure(FrameReport &report, const QString &action, int intervalMs, const Inputs &inputs);
    void waitUntil(double time) const;
    void waitForQuiet() const;

    Inputs searches();
    Inputs turnedPages();
    Inputs groupsAndOrders();
    /// Drags the timeline over its whole width.
    /// @param direction 1: to later times, -1: to earlier times
    Inputs drag(int direction);
    Inputs zooms();
    Inputs clicks(const char *objectName, int count);
    Inputs keys(const char *objectName, int key, int count);

    QQuickItem &item(const char *objectName) const;

    QQuickWindow &m_window;
    const WorkbenchContext &m_workbench;
    standin::Framework &m_framework;
    FrameMeter m_meter;
    InputSimulator m_input;
    QQuickItem &m_timeline; ///< of the first cell
};

} // namespace workbench
