#pragma once

#include "AsyncServer.h"
#include "Delivery.h"
#include "FrameworkWrapperBase.h"
#include "Mailbox.h"
#include "PluginBase.h"
#include "Traffic.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QPointer>

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace standin {

/// Stand-in for the host's framework: accepts commands from plug-ins, lets a server execute them
/// and delivers the answers according to the delivery rules. Without a server it only records, and
/// the caller answers with answer(). The destructor drops answers that are not yet delivered.
class Framework final : public FrameworkWrapperBase
{
public:
    Framework() = default;
    ~Framework();
    Q_DISABLE_COPY_MOVE(Framework)

    // Called by the plug-ins.
    bool SendCommand(void *hostHandle, const QString &pluginID, const QString &command,
                     const QVariant &payload, void *context, bool flag,
                     const QString &relayPath) override;
    QObject *FindPlugin(void *hostHandle, const QString &pluginID) override;

    /// Registers a plug-in object. It is not owned and may be destroyed at any time. An answer goes
    /// to the object that has the identifier at the time of delivery.
    void addPlugin(const QString &pluginID, QObject *plugin);
    void removePlugin(const QString &pluginID);

    /// Sets the server that executes commands inside SendCommand().
    /// @param server not owned; null: commands are only recorded
    void setServer(Server *server) { m_server = server; }
    /// Sets a server that executes commands later; it has priority over setServer(). The delay of a
    /// delivery rule begins when the server has answered.
    /// @param server not owned; null: none
    void setAsyncServer(AsyncServer *server) { m_asyncServer = server; }

    /// @return the rules for the commands that follow
    DeliveryRules &rules() { return m_rules; }

    /// Sets a function that is called with each command, answer and event before its delivery. It
    /// may send commands and answer.
    void setObserver(std::function<void(const Traffic &)> observer);
    /// Sets a function that is called after each answer with the milliseconds that the plug-in
    /// needed, including slots on its signals.
    void setCallObserver(std::function<void(double milliseconds)> observer);

    /// @return all commands in the order of sending, including rejected ones
    QList<SentCommand> sent() const { return m_sent; }
    void clearSent() { m_sent.clear(); }
    /// Sets whether commands are added to sent(); true by default. Set false for long runs, or the
    /// list grows without limit.
    void setRecording(bool on) { m_recording = on; }

    /// Delivers an answer to the sender of @p command at once. May be called repeatedly.
    void answer(const SentCommand &command, const QVariant &result,
                const QString &resultCode = QString::fromLatin1("0"));

    /// @return the commands with held answers, oldest first; one for each held answer
    QList<SentCommand> held() const;
    /// Delivers one held answer.
    /// @return false if there is no such position
    bool release(qsizetype position);
    /// Delivers all answers that are held now, oldest first.
    void releaseAll();
    /// Removes all held answers and delivers those at the given positions, in that order. A
    /// repeated position is delivered repeatedly; an answer without a position is lost.
    void releaseInOrder(const QList<qsizetype> &positions);

    /// Delivers an event to all plug-ins, at once.
    void sendEvent(const QString &eventName, const QVariant &data, const QString &relayPath);

    /// @return the depth of nested deliveries; 0 outside of answers and events
    int deliveries() const { return m_deliveries; }

private:
    struct Pending
    {
        SentCommand command;
        Answer answer;
    };

    SentCommand record(SentCommand command);
    std::optional<Answer> execute(const SentCommand &command, const Delivery &delivery);
    void executeElsewhere(const SentCommand &command, const Delivery &delivery);
    void schedule(const Pending &pending, const Delivery &delivery);
    void deliver(const Pending &pending);
    void deliverNextDelayed();
    void deliverRound();
    void notify(const Traffic &traffic);

    QMap<QString, QPointer<QObject>> m_plugins;
    Server *m_server = nullptr;
    AsyncServer *m_asyncServer = nullptr;
    DeliveryRules m_rules;
    std::function<void(const Traffic &)> m_observer;
    std::function<void(double)> m_callObserver;
    quint64 m_lastSequence = 0;
    int m_deliveries = 0;
    bool m_recording = true;
    QList<SentCommand> m_sent;
    QList<Pending> m_held;
    std::multimap<qint64, Pending> m_delayed; ///< by the moment when it is due
    QList<Pending> m_round;                   ///< to be delivered in reverse order
    int m_roundUnderWay = 0; ///< commands of that round without an answer of the server

    std::shared_ptr<Mailbox> m_inbox = std::make_shared<Mailbox>();
    QObject m_eventContext; ///< last member: its destructor cancels queued calls first
};

} // namespace standin
