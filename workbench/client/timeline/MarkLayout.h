#pragma once

#include "CameraMarks.h"
#include "MarkBars.h"
#include "RowList.h"
#include "VisibleRange.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QPointer>

namespace workbench {

struct MarkRow
{
    double x;
    double width;
    int lane;
    int count;
    bool over;
    qint64 start;
    qint64 end;
    QString bookmarkID;
    QString text;

    bool operator==(const MarkRow &other) const
    {
        return x == other.x && width == other.width && lane == other.lane && over == other.over &&
               end == other.end && text == other.text && isSameAs(other);
    }
    bool isSameAs(const MarkRow &other) const
    {
        return bookmarkID == other.bookmarkID && start == other.start && count == other.count;
    }
    /// @return the roles that differ; empty for all roles
    QList<int> differsIn(const MarkRow &other) const;
};

/// The positions of one camera's bookmarks on a timeline, one row for each visible bar. Rows change
/// only in update().
class MarkLayout : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    /// A timeline model of the plug-in; null for none. Not owned.
    Q_PROPERTY(QAbstractItemModel *source READ source WRITE setSource NOTIFY changed)
    /// The visible range. Not owned.
    Q_PROPERTY(workbench::VisibleRange *range READ range WRITE setRange NOTIFY changed)
    /// The width of the timeline in pixels.
    Q_PROPERTY(double width READ width WRITE setWidth NOTIFY changed)
    /// The number of lanes for overlapping bookmarks.
    Q_PROPERTY(int lanes READ lanes WRITE setLanes NOTIFY changed)
    /// The camera, a map of cameraID and relayPath.
    Q_PROPERTY(QVariantMap camera READ camera WRITE setCamera NOTIFY changed)

public:
    /// In QML barX and barWidth (in pixels), lane, count, over (an earlier bar), start, end,
    /// bookmarkID (of the first one), text (of the first few).
    enum Role {
        XRole = Qt::UserRole + 1,
        WidthRole,
        LaneRole,
        CountRole,
        OverRole,
        StartRole,
        EndRole,
        BookmarkIdRole,
        TextRole
    };

    explicit MarkLayout(QObject *parent = nullptr);

    QAbstractItemModel *source() const { return m_marks.source(); }
    void setSource(QAbstractItemModel *source);
    VisibleRange *range() const { return m_range; }
    void setRange(VisibleRange *range);
    double width() const { return m_width; }
    void setWidth(double width);
    int lanes() const { return m_lanes; }
    void setLanes(int lanes);
    QVariantMap camera() const { return m_camera; }
    void setCamera(const QVariantMap &camera);

    /// Updates the rows. Call it after outdated(), before the next frame.
    Q_INVOKABLE void update();

    /// @param x in pixels
    /// @return the row of the topmost bar at this position, or -1
    Q_INVOKABLE int rowAt(double x, int lane) const;
    /// @return the values of all roles of a row, by name
    Q_INVOKABLE QVariantMap row(int row) const;
    /// @return the start of the first bookmark after a time or of the last one before it; -1 for
    /// none
    Q_INVOKABLE qint64 startAfter(qint64 time);
    Q_INVOKABLE qint64 startBefore(qint64 time);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void changed();
    /// The rows need an update. Emitted for every changed row of the source.
    void outdated();
    /// The rows are up to date.
    void updated();

private:
    friend class RowList<MarkRow>;

    void arrange();
    MarkRow rowFor(const MarkBar &bar);
    QString textOf(const MarkBar &bar);

    CameraMarks m_marks;
    QPointer<VisibleRange> m_range;
    double m_width = 0;
    int m_lanes = 1;
    QVariantMap m_camera;
    RowList<MarkRow> m_rows;

    std::vector<MarkBar> m_bars; ///< of all bookmarks, visible or not
    double m_arrangedScale =
        0; ///< milliseconds per pixel for which m_bars are arranged; 0 if they must be arranged
};

} // namespace workbench
