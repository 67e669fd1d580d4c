#pragma once

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/Qt>

class QQuickItem;
class QQuickWindow;

namespace workbench {

/// Sends key and mouse events to a window, as the platform does. Positions are in the window's
/// coordinates.
class InputSimulator
{
public:
    /// @param window not owned; must outlive this object
    explicit InputSimulator(QQuickWindow &window)
        : m_window(window)
    {
    }

    /// Returns a position in an item.
    /// @param x,y from 0, the left or upper edge, to 1
    static QPointF positionIn(const QQuickItem &item, double x = 0.5, double y = 0.5);

    void type(int key, const QString &text = {});
    void moveTo(QPointF position);
    void press();
    void release();
    void click();
    /// @param notches positive: away from the user
    void turnWheel(int notches);

private:
    void sendMouse(int type, Qt::MouseButton button);

    QQuickWindow &m_window;
    QPointF m_position;
    Qt::MouseButtons m_pressed = Qt::NoButton;
};

} // namespace workbench
