#pragma once

#include <QtCore/QMutex>
#include <QtCore/QObject>

#include <functional>
#include <memory>

namespace standin {

/// Brings calls from other threads into the thread that made it. Whoever posts shares it with its
/// owner, and so may come after the owner's end.
class Mailbox
{
public:
    /// Has @p call run on the owner's event loop, after those posted before; from any thread.
    void post(const std::function<void()> &call)
    {
        const QMutexLocker lock(&m_mutex);
        if (m_receiver)
            QMetaObject::invokeMethod(m_receiver.get(), call, Qt::QueuedConnection);
    }

    /// Drops what has not run yet and all that will be posted; for the owner.
    void close()
    {
        const QMutexLocker lock(&m_mutex);
        m_receiver.reset();
    }

private:
    QMutex m_mutex;
    std::unique_ptr<QObject> m_receiver = std::make_unique<QObject>();
};

} // namespace standin
