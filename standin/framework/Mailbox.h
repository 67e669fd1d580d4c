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

/// Runs calls from other threads in its owner's thread. Each turn of the event loop runs one call,
/// because handling the answers of several stations at once would block the window. Owner and
/// posting threads share the mailbox, because a thread may post after the owner's end.
///
/// Uses a standard mutex, because the thread sanitizer does not see Qt's locks, and an event,
/// because Qt may delete the functor of a queued call in either thread.
class Mailbox
{
public:
    Mailbox() = default;
    /// Runs the calls in @p thread instead of the constructing thread.
    explicit Mailbox(QThread *thread) { m_receiver->moveToThread(thread); }
    ~Mailbox() = default;
    Q_DISABLE_COPY_MOVE(Mailbox)

    /// Runs @p call on the owner's event loop, after all earlier calls. Thread-safe.
    void post(const std::function<void()> &call)
    {
        const std::lock_guard lock(m_mutex);
        if (!m_receiver)
            return;
        m_calls.push_back(call);
        if (m_calls.size() == 1)
            wake();
    }

    /// Drops all calls that have not run, and all later ones. Only the owner may call this.
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
