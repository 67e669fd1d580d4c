#include "TimeAxis.h"

#include "ServerZone.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

#include <algorithm>
#include <iterator>

namespace workbench {

namespace {

constexpr qint64 SecondMs = 1'000;
constexpr qint64 MinuteMs = 60 * SecondMs;
constexpr qint64 HourMs = 60 * MinuteMs;
constexpr qint64 DayMs = 24 * HourMs;
constexpr double LabelPixels = 62; ///< room for a label with its margin

struct Step
{
    qint64 duration;
    TimeAxis::Kind kind;
};

constexpr Step Steps[] = {
    {5 * SecondMs, TimeAxis::Second},
    {10 * SecondMs, TimeAxis::Second},
    {30 * SecondMs, TimeAxis::Second},
    {MinuteMs, TimeAxis::Minute},
    {5 * MinuteMs, TimeAxis::Minute},
    {10 * MinuteMs, TimeAxis::Minute},
    {30 * MinuteMs, TimeAxis::Minute},
    {HourMs, TimeAxis::Hour},
    {2 * HourMs, TimeAxis::Hour},
    {3 * HourMs, TimeAxis::Hour},
    {6 * HourMs, TimeAxis::Hour},
    {12 * HourMs, TimeAxis::Hour},
    {DayMs, TimeAxis::Day},
    {2 * DayMs, TimeAxis::Day},
    {4 * DayMs, TimeAxis::Day},
};

Step stepFor(double msPerPixel)
{
    const auto fits = [&](const Step &step) {
        return double(step.duration) >= LabelPixels * msPerPixel;
    };
    const Step *const found = std::find_if(std::begin(Steps), std::end(Steps), fits);
    return found == std::end(Steps) ? *std::prev(std::end(Steps)) : *found;
}

/// Returns the milliseconds since the last multiple of @p step in local time.
qint64 pastRound(qint64 time, qint64 step, const QTimeZone &zone)
{
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(time, zone);
    return local.time().msecsSinceStartOfDay() % step;
}

/// Returns the next multiple of @p step in local time. A change of the clocks makes the interval
/// longer or shorter.
qint64 nextRound(qint64 time, qint64 step, const QTimeZone &zone)
{
    const qint64 next = time + step;
    const qint64 past = pastRound(next, step, zone);
    if (past == 0)
        return next;
    const qint64 earlier = next - past;
    return earlier > time && pastRound(earlier, step, zone) == 0 ? earlier : earlier + step;
}

/// Computes the ticks of one range.
class Ticks
{
public:
    Ticks(const VisibleRange &range, double width, const QTimeZone &zone)
        : m_from(qint64(range.from()))
        , m_to(qint64(range.to()))
        , m_msPerPixel(range.span() / width)
        , m_step(stepFor(m_msPerPixel))
        , m_zone(zone)
    {
    }

    QList<Tick> all()
    {
        QDate date = QDateTime::fromMSecsSinceEpoch(m_from, m_zone).date();
        while (addDay(date))
            date = date.addDays(1);
        return m_ticks;
    }

private:
    /// @return false if the day starts after the range
    bool addDay(QDate date)
    {
        const qint64 start = startOf(date);
        if (start > m_to)
            return false;
        const qint64 stepDays = std::max<qint64>(1, m_step.duration / DayMs);
        if (date.toJulianDay() % stepDays == 0)
            add(start, TimeAxis::Day, QStringLiteral("ddd d MMM"));
        if (m_step.kind != TimeAxis::Day)
            addTimesOfDay(start, std::min(startOf(date.addDays(1)) - 1, m_to));
        return true;
    }

    /// Returns the start of a day, which need not be midnight.
    qint64 startOf(QDate date) const { return date.startOfDay(m_zone).toMSecsSinceEpoch(); }

    void addTimesOfDay(qint64 dayStart, qint64 last)
    {
        const qint64 step = m_step.duration;
        const QString format =
            m_step.kind == TimeAxis::Second ? QStringLiteral("HH:mm:ss") : QStringLiteral("HH:mm");
        // Start at the range, because stepping from midnight would take long for a short range.
        const qint64 before = m_from - pastRound(m_from, step, m_zone) - step;
        for (qint64 time = nextRound(std::max(dayStart, before), step, m_zone); time <= last;
             time = nextRound(time, step, m_zone))
            add(time, m_step.kind, format);
    }

    void add(qint64 time, TimeAxis::Kind kind, const QString &format)
    {
        if (time < m_from)
            return;
        const QDateTime local = QDateTime::fromMSecsSinceEpoch(time, m_zone);
        m_ticks.append(
            {double(time - m_from) / m_msPerPixel, m_locale.toString(local, format), kind});
    }

    const qint64 m_from;
    const qint64 m_to;
    const double m_msPerPixel;
    const Step m_step;
    const QTimeZone &m_zone;
    const QLocale m_locale;
    QList<Tick> m_ticks;
};

} // namespace

QList<int> Tick::differsIn(const Tick &other) const
{
    return isSameAs(other) ? QList<int>{TimeAxis::XRole} : QList<int>();
}

TimeAxis::TimeAxis(QObject *parent)
    : QAbstractListModel(parent)
{
    connect(this, &TimeAxis::changed, this, &TimeAxis::outdated);
}

void TimeAxis::setRange(VisibleRange *range)
{
    if (range == m_range)
        return;
    if (m_range)
        m_range->disconnect(this);
    m_range = range;
    if (range)
        connect(range, &VisibleRange::changed, this, &TimeAxis::outdated);
    Q_EMIT changed();
}

void TimeAxis::setWidth(double width)
{
    m_width = width;
    Q_EMIT changed();
}

void TimeAxis::setTimeZone(const QString &ianaId)
{
    m_timeZone = ianaId;
    m_zone = serverZone(ianaId);
    Q_EMIT changed();
}

QString TimeAxis::timeText(qint64 time) const
{
    return QLocale().toString(QDateTime::fromMSecsSinceEpoch(time, m_zone),
                              QStringLiteral("ddd d MMM yyyy HH:mm:ss"));
}

int TimeAxis::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

QVariant TimeAxis::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Tick &tick = m_rows.at(index.row());
    switch (role) {
    case XRole:
        return tick.x;
    case LabelRole:
        return tick.label;
    case KindRole:
        return tick.kind;
    default:
        return {};
    }
}

QHash<int, QByteArray> TimeAxis::roleNames() const
{
    return {{XRole, "tickX"}, {LabelRole, "label"}, {KindRole, "kind"}};
}

void TimeAxis::update()
{
    m_rows.replace(*this,
                   m_range && m_width > 0 ? Ticks(*m_range, m_width, m_zone).all() : QList<Tick>());
}

} // namespace workbench
