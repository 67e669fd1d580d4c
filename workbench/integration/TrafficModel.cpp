#include "TrafficModel.h"

#include "PayloadText.h"
#include "Recording.h"

#include <QtCore/QDateTime>
#include <QtCore/QThreadPool>
#include <QtGui/QClipboard>
#include <QtGui/QGuiApplication>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

constexpr int PublishInterval = 100; // milliseconds
constexpr qsizetype SummaryLength = 240;

qint64 weightOf(const TrafficEntry &entry)
{
    return payloadtext::countValues(entry.value) + payloadtext::countValues(entry.result);
}

QString summaryOf(const TrafficEntry &entry)
{
    using Kind = TrafficEntry::Kind;
    if (entry.omitted > 0)
        return TrafficModel::tr("(%L1 values, too many to keep)").arg(entry.omitted);
    QString text =
        entry.kind == Kind::Connection ? QString() : payloadtext::brief(entry.value, SummaryLength);
    if (entry.kind == Kind::Call && entry.result.isValid())
        text += QStringLiteral(" \u2192 ") + payloadtext::brief(entry.result, SummaryLength);
    return text;
}

/// Frees the results of answers in another thread, because freeing the bookmarks of a station takes
/// longer than a frame. Values from QML must be freed in QML's thread.
template <typename Entry>
void freeAnswers(Entry first, Entry last)
{
    QVariantList values;
    for (; first != last; ++first) {
        if (first->kind == TrafficEntry::Kind::Answered)
            values.append(std::exchange(first->value, QVariant()));
    }
    if (!values.isEmpty())
        QThreadPool::globalInstance()->start([values = std::move(values)] {});
}

} // namespace

TrafficModel::TrafficModel(QObject *parent)
    : QAbstractListModel(parent)
    , m_startTime(QDateTime::currentMSecsSinceEpoch())
{
    m_publishing.setSingleShot(true);
    m_publishing.setInterval(PublishInterval);
    connect(&m_publishing, &QTimer::timeout, this, &TrafficModel::publish);
}

void TrafficModel::setLimits(int entryCount, qint64 valueCount)
{
    m_entryLimit = entryCount;
    m_valueLimit = valueCount;
}

quint64 TrafficModel::append(TrafficEntry entry)
{
    entry.sequence = ++m_lastSequence;
    entry.elapsed = QDateTime::currentMSecsSinceEpoch() - m_startTime;
    addWeight(entry);
    m_tracker.add(entry);
    if (entry.kind == TrafficEntry::Kind::Answered || entry.kind == TrafficEntry::Kind::Sent)
        updateProgress(entry);
    m_entries.push_back(std::move(entry));
    if (!m_paused && !m_publishing.isActive())
        m_publishing.start();
    return m_lastSequence;
}

void TrafficModel::setResult(quint64 sequence, const QVariant &result)
{
    if (m_entries.empty() || sequence < m_entries.front().sequence)
        return; // the entry was dropped
    TrafficEntry &entry = m_entries[static_cast<size_t>(sequence - m_entries.front().sequence)];
    m_values -= weightOf(entry);
    entry.result = result;
    addWeight(entry);
    updateRow(sequence, {SummaryRole});
}

/// Updates the rows of a command and of its call.
void TrafficModel::updateProgress(const TrafficEntry &entry)
{
    if (const CallTracker::Command *const command = m_tracker.command(entry.request))
        updateRow(command->sequence, {TookRole});
    if (const CallTracker::Call *const call = m_tracker.call(entry.call))
        updateRow(call->sequence, {CommandCountRole, AnsweredCountRole});
}

void TrafficModel::updateRow(quint64 sequence, const QList<int> &roles)
{
    if (m_entries.empty() || sequence < m_entries.front().sequence)
        return;
    const auto row = static_cast<int>(sequence - m_entries.front().sequence);
    if (row < m_rows)
        Q_EMIT dataChanged(index(row), index(row), roles);
}

/// @return true if the entry is the first of its call
bool TrafficModel::begins(const TrafficEntry &entry) const
{
    const CallTracker::Call *const call = m_tracker.call(entry.call);
    return call && call->sequence == entry.sequence;
}

qint64 TrafficModel::tookOf(const TrafficEntry &entry) const
{
    const bool counts = (entry.kind == TrafficEntry::Kind::Sent && entry.accepted) ||
                        entry.kind == TrafficEntry::Kind::Answered;
    const CallTracker::Command *const command = counts ? m_tracker.command(entry.request) : nullptr;
    return command ? command->took : -1;
}

void TrafficModel::addWeight(TrafficEntry &entry)
{
    qint64 weight = weightOf(entry);
    if (weight > m_valueLimit) {
        entry.omitted = weight;
        entry.value.clear();
        entry.result.clear();
        weight = weightOf(entry);
    }
    m_values += weight;
}

void TrafficModel::load(const Recording &recording)
{
    beginResetModel();
    m_entries.clear();
    m_tracker = {};
    m_lastSequence = 0;
    m_startTime = recording.header.start;
    for (const Recording::Line &line : recording.lines) {
        TrafficEntry entry = line.entry;
        // Views identify entries by their sequence, and files that were edited repeat some.
        m_lastSequence = std::max(entry.sequence, m_lastSequence + 1);
        entry.sequence = m_lastSequence;
        m_tracker.add(entry);
        m_entries.push_back(std::move(entry));
    }
    m_rows = static_cast<int>(m_entries.size());
    endResetModel();
    Q_EMIT countChanged();
}

void TrafficModel::setMarks(const QMap<int, Mark> &marks)
{
    m_marks = marks;
    if (m_rows > 0)
        Q_EMIT dataChanged(index(0), index(m_rows - 1), {DifferenceRole, FollowsRole});
}

bool TrafficModel::isComplete() const
{
    return m_entries.empty() ||
           (m_entries.front().sequence == 1 &&
            std::none_of(m_entries.cbegin(), m_entries.cend(),
                         [](const TrafficEntry &entry) { return entry.omitted > 0; }));
}

void TrafficModel::setPaused(bool paused)
{
    if (paused == m_paused)
        return;
    m_paused = paused;
    if (paused)
        m_publishing.stop();
    else
        publish();
    Q_EMIT pausedChanged();
}

void TrafficModel::clear()
{
    beginResetModel();
    m_entries.clear();
    m_tracker.forgetBefore(m_lastSequence + 1);
    m_rows = 0;
    m_values = 0;
    endResetModel();
    Q_EMIT countChanged();
}

void TrafficModel::publish()
{
    const int last = static_cast<int>(m_entries.size()) - 1;
    if (last >= m_rows) {
        beginInsertRows({}, m_rows, last);
        m_rows = last + 1;
        endInsertRows();
    }
    dropOldest();
    Q_EMIT countChanged();
}

void TrafficModel::dropOldest()
{
    // Drop more than necessary, so that this does not happen for each new entry.
    const auto tooMany = static_cast<int>(m_entries.size()) - m_entryLimit;
    int count = tooMany > 0 ? tooMany + m_entryLimit / 20 : 0;
    qint64 values = m_values;
    for (int row = 0; row < m_rows && (row < count || values > m_valueLimit); ++row) {
        values -= weightOf(at(row));
        count = std::max(count, row + 1);
    }
    count = std::min(count, m_rows);
    if (count == 0)
        return;
    beginRemoveRows({}, 0, count - 1);
    freeAnswers(m_entries.begin(), m_entries.begin() + count);
    m_entries.erase(m_entries.begin(), m_entries.begin() + count);
    m_tracker.forgetBefore(m_entries.empty() ? m_lastSequence + 1 : m_entries.front().sequence);
    m_rows -= count;
    m_values = values;
    endRemoveRows();
}

QVariant TrafficModel::payloadAt(int row) const
{
    if (row < 0 || row >= m_rows)
        return {};
    const TrafficEntry &entry = at(row);
    if (entry.omitted > 0)
        return summaryOf(entry);
    if (entry.kind != TrafficEntry::Kind::Call)
        return entry.value;
    return QVariantMap{{QStringLiteral("arguments"), entry.value},
                       {QStringLiteral("result"), entry.result}};
}

void TrafficModel::copyAsJson(int row) const
{
    QGuiApplication::clipboard()->setText(payloadtext::toJson(payloadAt(row)));
}

void TrafficModel::copyEntry(int row) const
{
    if (row >= 0 && row < m_rows)
        QGuiApplication::clipboard()->setText(
            QString::fromUtf8(Recording::lineOf(at(row)).trimmed()));
}

int TrafficModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows;
}

QVariant TrafficModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const TrafficEntry &entry = at(index.row());
    switch (role) {
    case SequenceRole:
        return entry.sequence;
    case CallRole:
        return entry.call;
    case DepthRole:
        return entry.depth;
    case TookRole:
        return tookOf(entry);
    case CommandCountRole:
        return begins(entry) ? m_tracker.call(entry.call)->commands : 0;
    case AnsweredCountRole:
        return begins(entry) ? m_tracker.call(entry.call)->answered : 0;
    case ElapsedRole:
        return entry.elapsed;
    case ClockRole:
        return QDateTime::fromMSecsSinceEpoch(m_startTime + entry.elapsed)
            .toString(QStringLiteral("hh:mm:ss.zzz"));
    case KindRole:
        return nameOf(entry.kind);
    case Qt::DisplayRole:
    case NameRole:
        return entry.name;
    case RelayPathRole:
        return entry.relayPath;
    case ContextRole:
        return entry.context;
    case CodeRole:
        return entry.code;
    case AcceptedRole:
        return entry.accepted;
    case ValueRole:
        return entry.value;
    case SummaryRole:
        return summaryOf(entry);
    case DifferenceRole:
        return m_marks.value(index.row()).texts.join(QLatin1Char('\n'));
    case FollowsRole:
        return m_marks.value(index.row()).follows;
    default:
        return {};
    }
}

QHash<int, QByteArray> TrafficModel::roleNames() const
{
    return {{SequenceRole, "sequence"},
            {ElapsedRole, "elapsed"},
            {ClockRole, "clock"},
            {CallRole, "call"},
            {DepthRole, "depth"},
            {TookRole, "took"},
            {CommandCountRole, "commandCount"},
            {AnsweredCountRole, "answeredCount"},
            {KindRole, "kind"},
            {NameRole, "name"},
            {RelayPathRole, "relayPath"},
            {ContextRole, "context"},
            {CodeRole, "code"},
            {AcceptedRole, "accepted"},
            {ValueRole, "value"},
            {SummaryRole, "summary"},
            {DifferenceRole, "difference"},
            {FollowsRole, "follows"}};
}

bool TrafficModel::contains(int row, const QString &text) const
{
    const TrafficEntry &entry = at(row);
    return entry.name.contains(text, Qt::CaseInsensitive) ||
           entry.relayPath.contains(text, Qt::CaseInsensitive) ||
           entry.code.compare(text, Qt::CaseInsensitive) == 0 ||
           payloadtext::contains(entry.value, text, searchedValues()) ||
           payloadtext::contains(entry.result, text, searchedValues());
}

QString TrafficModel::kindAt(int row) const
{
    return nameOf(at(row).kind);
}

} // namespace workbench
