#pragma once

#include <QtCore/QPointF>
#include <QtCore/QString>
#include <QtCore/Qt>

class QQuickItem;
class QQuickWindow;

namespace workbench {

/// Keys and mouse of a user: what they do reaches the window as the events of the platform do.
/// Places are in the window's coordinates.
class Hands
{
public:
    /// @p window is not owned and must outlive this object.
    explicit Hands(QQuickWindow &window)
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
