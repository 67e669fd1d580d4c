#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QObject>
#include <QtCore/QThread>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

namespace standin {

/// Brings calls from other threads into its owner's thread, one for each turn of its event
/// loop: what is done with the answers of several stations must not hold a window up in one go.
/// Whoever posts shares it with its owner, and so may come after the owner's end.
///
/// The thread sanitizer sees through all of it: calls are passed under a standard mutex, as Qt's is
/// not instrumented, and by an event, as Qt lets either thread delete the functor of a queued call.
class Mailbox
{
public:
    Mailbox() = default;
    /// Runs the calls in another thread than its maker's.
    explicit Mailbox(QThread *thread) { m_receiver->moveToThread(thread); }
    ~Mailbox() = default;
    Q_DISABLE_COPY_MOVE(Mailbox)

    /// Has @p call run on the owner's event loop, after those posted before; from any thread.
    void post(const std::function<void()> &call)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_receiver)
            return;
        m_calls.push_back(call);
        if (m_calls.size() == 1)
            wake();
    }

    /// Drops what has not run yet and all that will be posted; for the owner.
    void close()
    {
        const std::lock_guard lock(m_mutex);
        m_receiver.reset();
    }

private:
    class Receiver final : public QObject
    {
    public:
        explicit Receiver(Mailbox &mailbox)
            : m_mailbox(mailbox)
        {
        }
        void customEvent(QEvent * /*wakeUp*/) override { m_mailbox.takeNext()(); }

    private:
        Mailbox &m_mailbox;
    };

    std::function<void()> takeNext()
    {
        const std::lock_guard lock(m_mutex);
        std::function<void()> call = std::move(m_calls.front());
        m_calls.pop_front();
        if (!m_calls.empty() && m_receiver)
            wake();
        return call;
    }

    void wake() { QCoreApplication::postEvent(m_receiver.get(), new QEvent(QEvent::User)); }

    std::mutex m_mutex;
    std::deque<std::function<void()>> m_calls;
    std::unique_ptr<Receiver> m_receiver = std::make_unique<Receiver>(*this);
};

} // namespace standin
