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

/// What passed between QML, plug-in and host, the oldest first. The oldest entries are dropped when
/// there are too many, or when their payloads take too much memory. Of an entry whose payload takes
/// too much all by itself the rest is kept.
///
/// Rows appear in portions, some times a second, so that traffic costs its sender little.
class TrafficModel : public QAbstractListModel, public Searchable
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one list of the traffic, the bench's")
    /// While paused no rows appear or vanish; they do afterwards.
    Q_PROPERTY(bool paused READ isPaused WRITE setPaused NOTIFY pausedChanged)
    /// How many values of a payload a search looks at.
    Q_PROPERTY(int searchedValues READ searchedValues CONSTANT)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    /// Commands without an answer.
    Q_PROPERTY(int unanswered READ unanswered NOTIFY countChanged)

public:
    enum Role {
        SequenceRole = Qt::UserRole + 1,
        CallRole,     ///< number of the call to which it belongs
        DepthRole,    ///< how many calls, answers and events it happened inside
        TookRole,     ///< milliseconds, of a command and its answer; negative: none came yet
        AskedRole,    ///< of a call: its commands
        AnsweredRole, ///< of a call: its commands that were answered
        ElapsedRole,  ///< milliseconds since the recording began
        ClockRole,    ///< local time of day
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

    /// @param valueCount of all payloads together, see payloadtext::countValues()
    void setLimits(int entryCount, qint64 valueCount);

    /// Gives the entry its number and time, and returns the number.
    quint64 append(TrafficEntry entry);
    /// For a call that has returned.
    void setResult(quint64 sequence, const QVariant &result);

    /// Replaces all rows with the entries of a recording, without limits.
    void load(const Recording &recording);

    /// Of rows that stay, as those of a recording do.
    void setMarks(const QMap<int, Mark> &marks);

    const std::deque<TrafficEntry> &entries() const { return m_entries; }
    /// Whether nothing has been dropped, omitted or cleared.
    bool isComplete() const;
    qint64 startTime() const { return m_startTime; }

    static int searchedValues() { return 5000; }
    bool isPaused() const { return m_paused; }
    void setPaused(bool paused);
    int count() const { return rowCount(); }
    int unanswered() const { return m_tracker.unanswered(); }

    Q_INVOKABLE void clear();
    /// What a row's payload is shown as: of a call a map of its arguments and result, of one that
    /// was omitted a text that says so.
    Q_INVOKABLE QVariant payloadAt(int row) const;
    /// Puts the payload of a row onto the clipboard.
    Q_INVOKABLE void copyAsJson(int row) const;
    /// Puts a row onto the clipboard, as the line of a recording.
    Q_INVOKABLE void copyEntry(int row) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool contains(int row, const QString &text) const override;
    /// The text is a FilterExpression of the conditions in TrafficFilter.cpp.
    Matcher matcher(const QString &text, QString *error) const override;
    /// Texts to which a user may complete the beginning of an expression.
    Q_INVOKABLE QStringList completions(const QString &text) const;
    QString kindAt(int row) const override;

Q_SIGNALS:
    void pausedChanged();
    void countChanged();

private:
    const TrafficEntry &at(int row) const { return m_entries[static_cast<size_t>(row)]; }
    void weigh(TrafficEntry &entry);
    void noteProgress(const TrafficEntry &entry);
    bool begins(const TrafficEntry &entry) const;
    qint64 tookOf(const TrafficEntry &entry) const;
    bool holds(int row, const FilterExpression::Condition &condition) const;
    void updateRow(quint64 sequence, const QList<int> &roles);
    void publish();
    void dropOldest();

    std::deque<TrafficEntry> m_entries; ///< the last ones may wait to appear as rows
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
