#pragma once

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/Qt>

class QQuickItem;
class QQuickWindow;

namespace workbench {

/// Sends key and mouse events to a window as the platform does. Places are in the window's
/// coordinates.
class InputSimulator
{
public:
    /// @p window is not owned and must outlive this object.
    explicit InputSimulator(QQuickWindow &window)
        : m_window(window)
    {
    }

    /// For an item's place; 0 is its left or upper edge, 1 the other one.
    static QPointF placeIn(const QQuickItem &item, double x = 0.5, double y = 0.5);

    void type(int key, const QString &text = {});
    void moveTo(QPointF place);
    void press();
    void release();
    void click();
    /// @p notches: away from the user when positive.
    void turnWheel(int notches);

private:
    void sendMouse(int type, Qt::MouseButton button);

    QQuickWindow &m_window;
    QPointF m_place;
    Qt::MouseButtons m_pressed = Qt::NoButton;
};

} // namespace workbench
