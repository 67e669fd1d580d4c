#pragma once

#include "AsyncServer.h"
#include "Site.h"
#include "framework/Mailbox.h"

#include <QtCore/QObject>
#include <QtCore/QThread>

#include <atomic>
#include <functional>
#include <memory>

namespace workbench {

/// Runs a site in a separate thread, so that the GUI thread never waits for files. All calls return
/// at once; the thread executes them in order.
class StationThread : public QObject, public standin::AsyncServer
{
    Q_OBJECT

public:
    /// @param site  null if the site can't be opened
    /// @param error message then; see Site::open()
    using Opened = std::function<void(Site *site, const QString &error)>;

    explicit StationThread(const QList<StationConfig> &stations);
    /// Waits for the current call and drops the others.
    ~StationThread() override;
    Q_DISABLE_COPY_MOVE(StationThread)

    QList<StationConfig> stations() const { return m_stations; }

    /// Opens the site, then calls @p opened in the thread. Call this first: without an open site
    /// all commands fail.
    void open(const QString &folder, const Opened &opened);

    /// Calls @p job in the thread if the site is open.
    void perform(const std::function<void(Site &site)> &job);

    void execute(const QString &command, const QVariant &payload, const QString &relayPath,
                 const Completion &done) override;
    standin::Answer refuse(const QString &command, const QVariant &payload,
                           const QString &resultCode) override
    {
        return Site::refusal(command, payload, resultCode);
    }

    // See Site.
    void addByOtherClient(const QString &relayPath, const Bookmark &bookmark);
    void setTimeZone(const QByteArray &timeZone);
    void setSettingPermission(bool permission);

Q_SIGNALS:
    void bookmarkAddedByOther(const QVariantMap &record, const QString &relayPath);
    void bookmarkOfOtherRefused(const QString &relayPath);

private:
    void post(const std::function<void()> &job);

    QList<StationConfig> m_stations;
    std::unique_ptr<Site> m_site; ///< made, used and destroyed in the thread
    std::atomic_bool m_ending = false;
    QThread m_thread;
    standin::Mailbox m_jobs{&m_thread};
};

} // namespace workbench
