#pragma once

#include "RowList.h"
#include "VisibleRange.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QPointer>
#include <QtCore/QTimeZone>

namespace workbench {

struct Tick
{
    double x;
    QString label;
    int kind;

    bool operator==(const Tick &other) const { return x == other.x && isSameAs(other); }
    bool isSameAs(const Tick &other) const { return label == other.label && kind == other.kind; }
    QList<int> differsIn(const Tick &other) const;
};

/// The ticks of a timeline at round local times, as dense as their labels allow. Rows change only
/// in update().
class TimeAxis : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    /// The visible range. Not owned.
    Q_PROPERTY(workbench::VisibleRange *range READ range WRITE setRange NOTIFY changed)
    /// The width of the timeline in pixels.
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY changed)
    /// IANA identifier; UTC if it is unknown.
    Q_PROPERTY(QString timeZone READ timeZone WRITE setTimeZone NOTIFY changed)

public:
    enum Kind { Day, Hour, Minute, Second };
    Q_ENUM(Kind)

    /// In QML tickX (in pixels), label and kind.
    enum Role { XRole = Qt::UserRole + 1, LabelRole, KindRole };
    Q_ENUM(Role)

    explicit TimeAxis(QObject *parent = nullptr);

    VisibleRange *range() const { return m_range; }
    void setRange(VisibleRange *range);
    double width() const { return m_width; }
    void setWidth(double width);
    QString timeZone() const { return m_timeZone; }
    void setTimeZone(const QString &ianaId);

    /// Updates the rows. Call it after outdated(), before the next frame.
    Q_INVOKABLE void update();

    /// @return date and time in the axis's zone
    Q_INVOKABLE QString timeText(qint64 time) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();
    void outdated();

private:
    friend class RowList<Tick>;

    QPointer<VisibleRange> m_range;
    double m_width = 0;
    QString m_timeZone;
    QTimeZone m_zone = QTimeZone::utc();
    RowList<Tick> m_rows;
};

} // namespace workbench
