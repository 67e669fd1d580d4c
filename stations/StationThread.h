#pragma once

#include "AsyncServer.h"
#include "StationNetwork.h"
#include "framework/Mailbox.h"

#include <QtCore/QObject>
#include <QtCore/QThread>

#include <atomic>
#include <functional>
#include <memory>

namespace stations {

/// Runs a station network in a separate thread, so that the GUI thread never waits for files. All
/// calls return at once; the thread executes them in order.
class StationThread : public QObject, public standin::AsyncServer
{
    Q_OBJECT

public:
    /// @param network null if it can't be opened
    /// @param error   the message then; see StationNetwork::open()
    using Opened = std::function<void(StationNetwork *network, const QString &error)>;

    explicit StationThread(const QList<StationConfig> &stations);
    /// Waits for the current call and drops the others.
    ~StationThread() override;
    Q_DISABLE_COPY_MOVE(StationThread)

    QList<StationConfig> stations() const { return m_stations; }

    /// Opens the network, then calls @p opened in the thread. Call this first: without an open
    /// network all commands fail.
    void open(const QString &folder, const Opened &opened);

    /// Calls @p job in the thread if the network is open.
    void perform(const std::function<void(StationNetwork &network)> &job);

    void execute(const QString &command, const QVariant &payload, const QString &relayPath,
                 const Completion &done) override;
    standin::Answer failureAnswer(const QString &command, const QVariant &payload,
                                  const QString &resultCode) override
    {
        return failedAnswer(command, payload, resultCode);
    }

    // These calls return at once; see StationNetwork.
    void addByOtherClient(const QString &relayPath, const Bookmark &bookmark);
    void setTimeZone(const QByteArray &timeZone);
    void setSettingPermission(bool permission);

Q_SIGNALS:
    /// See StationNetwork.
    void bookmarkAddedByOther(const QVariantMap &record, const QString &relayPath);
    /// A station did not store the bookmark of addByOtherClient().
    void addByOtherClientFailed(const QString &relayPath);

private:
    void post(const std::function<void()> &job);

    QList<StationConfig> m_stations;
    std::unique_ptr<StationNetwork> m_network; ///< made, used and destroyed in the thread
    std::atomic_bool m_ending = false;
    QThread m_thread;
    standin::Mailbox m_jobs{&m_thread};
};

} // namespace stations
