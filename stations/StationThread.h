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

/// A site in a thread of its own, so that nobody waits for its files. Everything that is asked for
/// is done in the order of the calls, which return at once.
class StationThread : public QObject, public standin::AsyncServer
{
    Q_OBJECT

public:
    /// @p site is null, with an error, when the site can't be opened.
    using Opened = std::function<void(Site *site, const QString &error)>;

    explicit StationThread(const QList<StationConfig> &stations);
    /// Finishes what is being done and drops the rest.
    ~StationThread() override;
    Q_DISABLE_COPY_MOVE(StationThread)

    QList<StationConfig> stations() const { return m_stations; }

    /// Opens the site, see Site::open(), then calls @p opened in the thread. Comes first; until it
    /// is done, and when it fails, all commands are answered with a failure.
    void open(const QString &folder, const Opened &opened);

    /// Calls @p job in the thread, provided that the site is open.
    void perform(const std::function<void(Site &site)> &job);

    void execute(const QString &command, const QVariant &payload, const QString &relayPath,
                 const Completion &done) override;
    standin::Answer refuse(const QString &command, const QVariant &payload,
                           const QString &resultCode) override
    {
        return Site::refusal(command, payload, resultCode);
    }

    // As those of Site.
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
