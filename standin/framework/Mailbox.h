#pragma once

#include <QtCore/QMutex>
#include <QtCore/QObject>

#include <deque>
#include <functional>
#include <memory>
#include <utility>

namespace standin {

/// Brings calls from other threads into the thread that made it, one for each turn of its event
/// loop: what is done with the answers of several stations must not hold a window up in one go.
/// Whoever posts shares it with its owner, and so may come after the owner's end.
class Mailbox
{
public:
    /// Has @p call run on the owner's event loop, after those posted before; from any thread.
    void post(const std::function<void()> &call)
    {
        const QMutexLocker lock(&m_mutex);
        if (!m_receiver)
            return;
        m_calls.push_back(call);
        if (m_calls.size() == 1)
            wake();
    }

    /// Drops what has not run yet and all that will be posted; for the owner.
    void close()
    {
        const QMutexLocker lock(&m_mutex);
        m_receiver.reset();
    }

private:
    std::function<void()> takeNext()
    {
        const QMutexLocker lock(&m_mutex);
        std::function<void()> call = std::move(m_calls.front());
        m_calls.pop_front();
        if (!m_calls.empty() && m_receiver)
            wake();
        return call;
    }

    void wake()
    {
        QMetaObject::invokeMethod(
            m_receiver.get(), [this] { takeNext()(); }, Qt::QueuedConnection);
    }

    QMutex m_mutex;
    std::deque<std::function<void()>> m_calls;
    std::unique_ptr<QObject> m_receiver = std::make_unique<QObject>();
};

} // namespace standin
