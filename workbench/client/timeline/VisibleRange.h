#pragma once

#include <QtCore/QObject>
#include <QtQml/qqmlregistration.h>

namespace workbench {

/// The stretch of time that a timeline bar shows: between a minute and eight days. All times in
/// milliseconds since the epoch; whole numbers, as double because QML has no other.
class VisibleRange : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double from READ from NOTIFY changed)
    Q_PROPERTY(double to READ to NOTIFY changed)
    Q_PROPERTY(double span READ span NOTIFY changed)
    /// What is worth asking for: somewhat more than is visible, in steps, so that panning does
    /// not ask for a sliver with every frame.
    Q_PROPERTY(double askedFrom READ askedFrom NOTIFY changed)
    Q_PROPERTY(double askedTo READ askedTo NOTIFY changed)

public:
    explicit VisibleRange(QObject *parent = nullptr);

    double from() const { return double(m_from); }
    double to() const { return double(end()); }
    double span() const { return double(m_span); }
    double askedFrom() const;
    double askedTo() const;

    /// Shows @p from to @p to; a range that is too short or too long keeps its end.
    Q_INVOKABLE void show(qint64 from, qint64 to);
    Q_INVOKABLE void moveBy(qint64 distance);
    /// Changes the span by a factor; @p time stays where it is on the screen.
    Q_INVOKABLE void zoomAbout(qint64 time, double factor);
    /// Keeps the span and puts @p time in the middle, unless it can be seen already.
    Q_INVOKABLE void reveal(qint64 time);
    /// Shows a bookmark so that it can be seen well: with at least a twentieth of the span.
    Q_INVOKABLE void revealRange(qint64 from, qint64 to);
    /// Moves on with a play head that has run out at the end.
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
