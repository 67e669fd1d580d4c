#include "MarkLayout.h"

#include <algorithm>

namespace workbench {

namespace {

constexpr double BarMargin = 8; ///< pixels by which bars are drawn beyond the ends

} // namespace

QList<int> MarkRow::differsIn(const MarkRow &other) const
{
    MarkRow moved = other;
    moved.x = x;
    moved.width = width;
    return moved == *this ? QList<int>{MarkLayout::XRole, MarkLayout::WidthRole} : QList<int>();
}

MarkLayout::MarkLayout(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(&m_marks, &CameraMarks::outdated, this, [this] {
        m_arrangedScale = 0;
        Q_EMIT outdated();
    });
    connect(this, &MarkLayout::changed, this, &MarkLayout::outdated);
}

void MarkLayout::setSource(QAbstractItemModel *source)
{
    if (source == m_marks.source())
        return;
    m_marks.setSource(source);
    Q_EMIT changed();
}

void MarkLayout::setRange(VisibleRange *range)
{
    if (range == m_range)
        return;
    if (m_range)
        m_range->disconnect(this);
    m_range = range;
    if (range)
        connect(range, &VisibleRange::changed, this, &MarkLayout::outdated);
    Q_EMIT changed();
}

void MarkLayout::setWidth(double width)
{
    m_width = width;
    Q_EMIT changed();
}

void MarkLayout::setLanes(int lanes)
{
    m_lanes = lanes;
    m_arrangedScale = 0;
    Q_EMIT changed();
}

void MarkLayout::setCamera(const QVariantMap &camera)
{
    m_camera = camera;
    m_marks.setCamera(camera.value(QStringLiteral("cameraID")).toString(),
                      camera.value(QStringLiteral("relayPath")).toString());
    Q_EMIT changed();
}

int MarkLayout::rowAt(double x, int lane) const
{
    const auto hit = [&](const MarkRow &row) {
        return row.lane == lane && x >= row.x && x <= row.x + row.width;
    };
    // Later bars are drawn over earlier ones, so search from the end.
    const auto found = std::find_if(std::reverse_iterator(m_rows.end()),
                                    std::reverse_iterator(m_rows.begin()), hit);
    return int(found.base() - m_rows.begin()) - 1;
}

QVariantMap MarkLayout::row(int row) const
{
    QVariantMap values;
    const QHash<int, QByteArray> names = roleNames();
    for (auto it = names.cbegin(); it != names.cend(); ++it)
        values.insert(QString::fromLatin1(it.value()), data(index(row), it.key()));
    return values;
}

qint64 MarkLayout::startAfter(qint64 time)
{
    const auto &marks = m_marks.marks();
    const auto found = std::upper_bound(marks.cbegin(), marks.cend(), time,
                                        [](qint64 t, const Mark &mark) { return t < mark.start; });
    return found == marks.cend() ? -1 : found->start;
}

qint64 MarkLayout::startBefore(qint64 time)
{
    const auto &marks = m_marks.marks();
    const auto found = std::lower_bound(marks.cbegin(), marks.cend(), time,
                                        [](const Mark &mark, qint64 t) { return mark.start < t; });
    return found == marks.cbegin() ? -1 : std::prev(found)->start;
}

int MarkLayout::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

QVariant MarkLayout::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const MarkRow &row = m_rows.at(index.row());
    switch (role) {
    case XRole:
        return row.x;
    case WidthRole:
        return row.width;
    case LaneRole:
        return row.lane;
    case CountRole:
        return row.count;
    case OverRole:
        return row.over;
    case StartRole:
        return row.start;
    case EndRole:
        return row.end;
    case BookmarkIdRole:
        return row.bookmarkID;
    case TextRole:
        return row.text;
    default:
        return {};
    }
}

QHash<int, QByteArray> MarkLayout::roleNames() const
{
    return {{XRole, "barX"},    {WidthRole, "barWidth"},
            {LaneRole, "lane"}, {CountRole, "count"},
            {OverRole, "over"}, {StartRole, "start"},
            {EndRole, "end"},   {BookmarkIdRole, "bookmarkID"},
            {TextRole, "text"}};
}

void MarkLayout::update()
{
    QList<MarkRow> visible;
    if (m_range && m_width > 0) {
        arrange();
        const double from = m_range->from() - BarMargin * m_arrangedScale;
        const double to = m_range->to() + BarMargin * m_arrangedScale;
        for (const MarkBar &bar : m_bars) {
            if (double(bar.right) >= from && double(bar.left) <= to)
                visible.append(rowFor(bar));
        }
    }
    m_rows.replace(*this, visible);
    Q_EMIT updated();
}

void MarkLayout::arrange()
{
    const double scale = m_range->span() / m_width;
    if (scale == m_arrangedScale)
        return;
    m_bars = arrangeMarks(m_marks.marks(), scale, m_lanes);
    m_arrangedScale = scale;
}

MarkRow MarkLayout::rowFor(const MarkBar &bar)
{
    // A bar may be much longer than the visible range; the scene graph draws with 32-bit floats.
    const auto x = [this](qint64 time) {
        return std::clamp((double(time) - m_range->from()) / m_arrangedScale, -BarMargin,
                          m_width + BarMargin);
    };
    const double left = x(bar.left);
    return {left,       x(bar.right) - left,
            bar.lane,   bar.count,
            bar.over,   bar.start,
            bar.end,    m_marks.text(bar.first.front(), "bookmarkIDRole"),
            textOf(bar)};
}

QString MarkLayout::textOf(const MarkBar &bar)
{
    QStringList lines;
    for (const int mark : bar.first)
        lines.append(m_marks.text(mark, "descRole"));
    if (bar.count > lines.size())
        lines.append(QStringLiteral("…"));
    return lines.join(u'\n');
}

} // namespace workbench
