#pragma once

#include "framework/Mailbox.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include <atomic>
#include <functional>
#include <memory>

namespace stations {
class StationThread;
}

namespace workbench {

/// Prepares the stations for the plug-in, in their thread: opens their files, fills new ones with
/// bookmarks and imports a CSV file.
class Preparation : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program creates it")
    /// The current activity, a text for the user.
    Q_PROPERTY(QString activity READ activity NOTIFY progressed)
    /// The progress of the activity, from 0 to 1.
    Q_PROPERTY(double progress READ progress NOTIFY progressed)
    Q_PROPERTY(bool running READ isRunning NOTIFY runningChanged)
    /// Problems for the user at the end, one per line: skipped lines, unusable files, missing
    /// bookmarks after a cancel. Empty if there are none.
    Q_PROPERTY(QString report READ report NOTIFY runningChanged)
    /// The result of the import in one line; empty without an import.
    Q_PROPERTY(QString summary READ summary NOTIFY runningChanged)

public:
    struct Plan
    {
        QString folder;
        int bookmarks = 0; ///< created if the folder has no station's file
        quint32 seed = 0;
        QString importFile; ///< empty for none
    };

    /// Called with the progress of an activity, from 0 to 1; returns false to cancel.
    using Report = std::function<bool(const QString &activity, double progress)>;

    /// The result of a preparation.
    struct Outcome
    {
        QString error;        ///< reason why the workbench can't start; empty if it can
        QStringList defects;  ///< messages on stations whose files can't be used
        QStringList messages; ///< on first bookmarks and import
        QString summary;
    };

    /// @param stations not owned; must outlive this object and must not be open
    Preparation(stations::StationThread &stations, const Plan &plan, QObject *parent = nullptr);
    ~Preparation() override;

    void start();
    /// Skips the rest; batches that are already stored stay.
    Q_INVOKABLE void cancel() { *m_cancelled = true; }

    QString activity() const { return m_activity; }
    double progress() const { return m_progress; }
    bool isRunning() const { return m_running; }
    QString report() const
    {
        return (m_outcome.defects + m_outcome.messages).join(QLatin1Char('\n'));
    }
    QString summary() const { return m_outcome.summary; }
    const Outcome &outcome() const { return m_outcome; }

Q_SIGNALS:
    void progressed();
    void runningChanged();
    /// Emitted once.
    void finished();
    /// The user has confirmed the messages.
    void acknowledged();

private:
    void show(const QString &activity, double progress);
    void finish(const Outcome &outcome);

    stations::StationThread &m_stations;
    Plan m_plan;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    std::shared_ptr<standin::Mailbox> m_mailbox = std::make_shared<standin::Mailbox>();
    QString m_activity;
    double m_progress = 0;
    bool m_running = false;
    Outcome m_outcome;
};

} // namespace workbench
