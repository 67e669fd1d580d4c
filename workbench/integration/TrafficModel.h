#pragma once

#include "CallTracker.h"
#include "FilterExpression.h"
#include "SearchFilter.h"
#include "TrafficEntry.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QMap>
#include <QtCore/QTimer>
#include <QtQml/qqmlregistration.h>

#include <deque>

namespace workbench {

struct Recording;

/// The traffic between QML, plug-in and host, oldest entries first. Drops the oldest entries if
/// there are too many or if their payloads need too much memory. Omits a single payload that is too
/// large.
///
/// New rows appear in groups, ten times a second, so that recording does not slow down the sender.
class TrafficModel : public QAbstractListModel, public Searchable
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Use the property traffic of the workbench")
    /// While true, rows neither appear nor vanish; they do afterwards.
    Q_PROPERTY(bool paused READ isPaused WRITE setPaused NOTIFY pausedChanged)
    /// Maximum number of values of a payload that a search reads.
    Q_PROPERTY(int searchedValues READ searchedValues CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// Number of accepted commands without an answer.
    Q_PROPERTY(int unanswered READ unanswered NOTIFY countChanged)

public:
    enum Role {
        SequenceRole = Qt::UserRole + 1,
        CallRole,          ///< number of the entry's call
        DepthRole,         ///< number of enclosing calls, answers and events
        TookRole,          ///< of a command or answer: milliseconds; negative: no answer yet
        CommandCountRole,  ///< of a call: number of its commands
        AnsweredCountRole, ///< of a call: number of its answered commands
        ElapsedRole,       ///< milliseconds since the recording began
        ClockRole,         ///< local time of day
        KindRole,
        NameRole,
        RelayPathRole,
        ContextRole,
        CodeRole,
        AcceptedRole,
        ValueRole,
        SummaryRole,    ///< the beginning of the payload
        DifferenceRole, ///< from what a recording was compared with; empty: none
        FollowsRole,    ///< from an earlier difference
    };
    Q_ENUM(Role)

    /// Differences of a row.
    struct Mark
    {
        QStringList texts;
        bool follows = true; ///< all of them, from earlier ones
    };

    explicit TrafficModel(QObject *parent = nullptr);

    /// Sets the maximum number of entries and of values in all payloads, see
    /// payloadtext::countValues().
    void setLimits(int entryCount, qint64 valueCount);

    /// Appends an entry and sets its sequence number and time.
    /// @return the sequence number
    quint64 append(TrafficEntry entry);
    /// Sets the result of a call that has returned.
    void setResult(quint64 sequence, const QVariant &result);

    /// Replaces all rows with the entries of a recording, without limits.
    void load(const Recording &recording);

    /// Of rows that stay, as those of a recording do.
    void setMarks(const QMap<int, Mark> &marks);

    const std::deque<TrafficEntry> &entries() const { return m_entries; }
    /// @return true if no entry or payload was dropped
    bool isComplete() const;
    qint64 startTime() const { return m_startTime; }

    static int searchedValues() { return 5000; }
    bool isPaused() const { return m_paused; }
    void setPaused(bool paused);
    int count() const { return rowCount(); }
    int unanswered() const { return m_tracker.unanswered(); }

    Q_INVOKABLE void clear();
    /// @return the payload of a row; for a call a map of "arguments" and "result"; for an omitted
    /// payload a text that says so
    Q_INVOKABLE QVariant payloadAt(int row) const;
    /// Copies the payload of a row to the clipboard.
    Q_INVOKABLE void copyAsJson(int row) const;
    /// Copies a row to the clipboard, as a line of a recording.
    Q_INVOKABLE void copyEntry(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool contains(int row, const QString &text) const override;
    /// @param text a FilterExpression with the conditions of TrafficFilter.cpp
    Matcher matcher(const QString &text, QString *error) const override;
    /// @return complete expressions that begin with @p text, at most eight
    Q_INVOKABLE QStringList completions(const QString &text) const;
    QString kindAt(int row) const override;

Q_SIGNALS:
    void pausedChanged();
    void countChanged();

private:
    const TrafficEntry &at(int row) const { return m_entries[static_cast<size_t>(row)]; }
    void addWeight(TrafficEntry &entry);
    void updateProgress(const TrafficEntry &entry);
    bool begins(const TrafficEntry &entry) const;
    qint64 tookOf(const TrafficEntry &entry) const;
    bool matches(int row, const FilterExpression::Condition &condition) const;
    void updateRow(quint64 sequence, const QList<int> &roles);
    void publish();
    void dropOldest();

    std::deque<TrafficEntry> m_entries; ///< those from m_rows on are not yet shown as rows
    QMap<int, Mark> m_marks;            ///< by row
    CallTracker m_tracker;
    int m_rows = 0;
    quint64 m_lastSequence = 0;
    qint64 m_startTime; ///< milliseconds since the epoch
    int m_entryLimit = 100'000;
    qint64 m_valueLimit = 3'000'000;
    qint64 m_values = 0;
    bool m_paused = false;
    QTimer m_publishing;
};

} // namespace workbench
