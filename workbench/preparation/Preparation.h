#pragma once

#include "framework/Mailbox.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtQml/qqmlregistration.h>

#include <atomic>
#include <functional>
#include <memory>

namespace workbench {

class StationThread;

/// What is done before the plug-in gets to see the stations: their files are opened, filled for the
/// first time, and a CSV file is imported. All of it in the stations' thread.
class Preparation : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes it")
    /// What is being done, for the user.
    Q_PROPERTY(QString activity READ activity NOTIFY progressed)
    /// From 0 to 1, of the activity.
    Q_PROPERTY(double progress READ progress NOTIFY progressed)
    Q_PROPERTY(bool running READ isRunning NOTIFY runningChanged)
    /// What the user should know when it is over: lines that were skipped, files that can't be
    /// used, what is missing after a cancel. A line each; empty when all went well.
    Q_PROPERTY(QString report READ report NOTIFY runningChanged)
    /// One line that sums up an import; empty when there was none.
    Q_PROPERTY(QString summary READ summary NOTIFY runningChanged)

public:
    struct Plan
    {
        QString folder;
        int bookmarks = 0; ///< made up when the folder holds no station's file; 0 for none
        quint32 seed = 0;
        QString importFile; ///< empty for none
    };

    /// Called with the progress of an activity, from 0 to 1; returns false to cancel.
    using Report = std::function<bool(const QString &activity, double progress)>;

    /// What has come of it.
    struct Outcome
    {
        QString error;        ///< why the workbench can't begin; empty when it can
        QStringList defects;  ///< of stations whose files can't be used, and that fail
        QStringList messages; ///< of first data and import
        QString summary;
    };

    /// @p stations is not owned, must outlive this object and must not be open yet.
    Preparation(StationThread &stations, const Plan &plan, QObject *parent = nullptr);
    ~Preparation() override;

    void start();
    /// Leaves whole what has been stored, and skips the rest.
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
    /// Comes once.
    void finished();
    /// The user has read the messages.
    void acknowledged();

private:
    void show(const QString &activity, double progress);
    void finish(const Outcome &outcome);

    StationThread &m_stations;
    Plan m_plan;
    std::shared_ptr<std::atomic_bool> m_cancelled = std::make_shared<std::atomic_bool>(false);
    std::shared_ptr<standin::Mailbox> m_mailbox = std::make_shared<standin::Mailbox>();
    QString m_activity;
    double m_progress = 0;
    bool m_running = false;
    Outcome m_outcome;
};

} // namespace workbench
