#include "InputSimulator.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDateTime>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace workbench {

namespace {

constexpr int NotchAngle = 120;

/// Sends an event with a time stamp, by which Qt distinguishes two clicks from a double click.
void send(QQuickWindow &window, QInputEvent &event)
{
    event.setTimestamp(quint64(QDateTime::currentMSecsSinceEpoch()));
    QCoreApplication::sendEvent(&window, &event);
}

} // namespace

QPointF InputSimulator::positionIn(const QQuickItem &item, double x, double y)
{
    return item.mapToScene({x * item.width(), y * item.height()});
}

void InputSimulator::type(int key, const QString &text)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        send(m_window, event);
    }
}

void InputSimulator::moveTo(QPointF position)
{
    m_position = position;
    sendMouse(QEvent::MouseMove, Qt::NoButton);
}

void InputSimulator::press()
{
    m_pressed = Qt::LeftButton;
    sendMouse(QEvent::MouseButtonPress, Qt::LeftButton);
}

void InputSimulator::release()
{
    m_pressed = Qt::NoButton;
    sendMouse(QEvent::MouseButtonRelease, Qt::LeftButton);
}

void InputSimulator::click()
{
    press();
    release();
}

void InputSimulator::turnWheel(int notches)
{
    QWheelEvent event(m_position, m_window.mapToGlobal(m_position), {}, {0, notches * NotchAngle},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    send(m_window, event);
}

void InputSimulator::sendMouse(int type, Qt::MouseButton button)
{
    QMouseEvent event(QEvent::Type(type), m_position, m_window.mapToGlobal(m_position), button,
                      m_pressed, Qt::NoModifier);
    send(m_window, event);
}

} // namespace workbench
