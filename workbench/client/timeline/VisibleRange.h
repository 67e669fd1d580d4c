#pragma once

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// The range of times that a timeline shows, between a minute and eight days. Times are whole
/// milliseconds since the epoch, as double because QML has no 64-bit integers.
class VisibleRange : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double from READ from NOTIFY changed)
    Q_PROPERTY(double to READ to NOTIFY changed)
    Q_PROPERTY(double span READ span NOTIFY changed)
    /// The range to request: larger than the visible one and rounded to steps, so that panning does
    /// not cause a request in every frame.
    Q_PROPERTY(double requestedFrom READ requestedFrom NOTIFY changed)
    Q_PROPERTY(double requestedTo READ requestedTo NOTIFY changed)

public:
    explicit VisibleRange(QObject *parent = nullptr);

    double from() const { return double(m_from); }
    double to() const { return double(end()); }
    double span() const { return double(m_span); }
    double requestedFrom() const;
    double requestedTo() const;

    /// Shows a range. If it is too short or too long, its start is adjusted.
    Q_INVOKABLE void show(qint64 from, qint64 to);
    Q_INVOKABLE void moveBy(qint64 distance);
    /// Changes the span by a factor; @p time keeps its position on the screen.
    Q_INVOKABLE void zoomAbout(qint64 time, double factor);
    /// Moves @p time to the middle, unless it is visible.
    Q_INVOKABLE void reveal(qint64 time);
    /// Shows a whole bookmark, with at least a twentieth of the span.
    Q_INVOKABLE void revealRange(qint64 from, qint64 to);
    /// Moves the range if playback has moved the play head beyond its end.
    Q_INVOKABLE void follow(qint64 before, qint64 after);

Q_SIGNALS:
    void changed();

private:
    void set(qint64 from, qint64 span);
    qint64 end() const { return m_from + m_span; }
    qint64 step() const { return m_span / 4; }

    qint64 m_from = 0;
    qint64 m_span;
};

} // namespace workbench
