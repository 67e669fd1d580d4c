#include "StationThread.h"

#include "Protocol.h"

#include <QtCore/QElapsedTimer>

#include <future>

namespace stations {

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
        m_network.reset();
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
        m_network = StationNetwork::open(folder, m_stations, &error);
        if (m_network) {
            connect(m_network.get(), &StationNetwork::bookmarkAddedByOther, this,
                    &StationThread::bookmarkAddedByOther);
        }
        opened(m_network.get(), error);
    });
}

void StationThread::perform(const std::function<void(StationNetwork &)> &job)
{
    post([=] {
        if (m_network)
            job(*m_network);
    });
}

void StationThread::execute(const QString &command, const QVariant &payload,
                            const QString &relayPath, const Completion &done)
{
    post([=] {
        QElapsedTimer clock;
        clock.start();
        standin::Answer answer = m_network
                                     ? m_network->execute(command, payload, relayPath)
                                     : standin::Answer{QVariant(), protocol::code::DatabaseError};
        answer.tookMs = clock.elapsed();
        done(answer);
    });
}

void StationThread::addByOtherClient(const QString &relayPath, const Bookmark &bookmark)
{
    perform([=](StationNetwork &network) {
        if (!network.addByOtherClient(relayPath, bookmark))
            Q_EMIT addByOtherClientFailed(relayPath);
    });
}

void StationThread::setTimeZone(const QByteArray &timeZone)
{
    perform([=](StationNetwork &network) { network.setTimeZone(timeZone); });
}

void StationThread::setSettingPermission(bool permission)
{
    perform([=](StationNetwork &network) { network.setSettingPermission(permission); });
}

void StationThread::post(const std::function<void()> &job)
{
    m_jobs.post([=] {
        if (!m_ending)
            job();
    });
}

} // namespace stations
