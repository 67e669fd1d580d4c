#include "StationThread.h"

#include "Protocol.h"

#include <QtCore/QElapsedTimer>

#include <future>

namespace workbench {

StationThread::StationThread(const QList<StationConfig> &stations)
    : m_stations(stations)
{
    m_thread.setObjectName(QStringLiteral("stations"));
    m_thread.start();
}

StationThread::~StationThread()
{
    m_ending = true;
    std::promise<void> closed;
    m_jobs.post([&] {
        m_site.reset();
        m_thread.quit();
        closed.set_value();
    });
    closed.get_future().wait(); // the thread sanitizer sees this wait, but not QThread::wait()
    m_thread.wait();
}

void StationThread::open(const QString &folder, const Opened &opened)
{
    post([=] {
        QString error;
        m_site = Site::open(folder, m_stations, &error);
        if (m_site) {
            connect(m_site.get(), &Site::bookmarkAddedByOther, this,
                    &StationThread::bookmarkAddedByOther);
        }
        opened(m_site.get(), error);
    });
}

void StationThread::perform(const std::function<void(Site &)> &job)
{
    post([=] {
        if (m_site)
            job(*m_site);
    });
}

void StationThread::execute(const QString &command, const QVariant &payload,
                            const QString &relayPath, const Completion &done)
{
    post([=] {
        QElapsedTimer clock;
        clock.start();
        standin::Answer answer = m_site
                                     ? m_site->execute(command, payload, relayPath)
                                     : standin::Answer{QVariant(), protocol::code::DatabaseError};
        answer.tookMs = clock.elapsed();
        done(answer);
    });
}

void StationThread::addByOtherClient(const QString &relayPath, const Bookmark &bookmark)
{
    perform([=](Site &site) {
        if (!site.addByOtherClient(relayPath, bookmark))
            Q_EMIT bookmarkOfOtherRefused(relayPath);
    });
}

void StationThread::setTimeZone(const QByteArray &timeZone)
{
    perform([=](Site &site) { site.setTimeZone(timeZone); });
}

void StationThread::setSettingPermission(bool permission)
{
    perform([=](Site &site) { site.setSettingPermission(permission); });
}

void StationThread::post(const std::function<void()> &job)
{
    m_jobs.post([=] {
        if (!m_ending)
            job();
    });
}

} // namespace workbench
