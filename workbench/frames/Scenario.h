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

/// Performs the most frequent user actions in a window and measures each.
class Scenario
{
public:
    /// None is owned; all must outlive this object. The window shows cameras and bookmarks.
    Scenario(QQuickWindow &window, const WorkbenchContext &bench, standin::Framework &framework);
    ~Scenario();
    Q_DISABLE_COPY_MOVE(Scenario)

    /// Everything once.
    void perform(FrameReport &report);

private:
    using Inputs = std::vector<std::function<void()>>;

    void measure(FrameReport &report, const QString &doing, int intervalMs, const Inputs &inputs);
    void waitUntil(double time) const;
    void waitForQuiet() const;

    Inputs searches();
    Inputs turnedPages();
    Inputs groupsAndOrders();
    /// The timeline is dragged from one of its ends to the other; 1: to later times, -1: to
    /// earlier.
    Inputs drag(int direction);
    Inputs zooms();
    Inputs clicks(const char *objectName, int count);
    Inputs keys(const char *objectName, int key, int count);

    QQuickItem &item(const char *objectName) const;

    QQuickWindow &m_window;
    const WorkbenchContext &m_bench;
    standin::Framework &m_framework;
    FrameMeter m_meter;
    InputSimulator m_input;
    QQuickItem &m_timeline; ///< of the first cell
};

} // namespace workbench
