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

/// The framework object: takes commands from plug-ins, has a server execute them and delivers the
/// answers as the delivery rules say. Without a server it only records; the test then answers by
/// hand. Answers that are still under way when the object is destroyed are dropped.
class Framework final : public FrameworkWrapperBase
{
public:
    Framework() = default;
    ~Framework();
    Q_DISABLE_COPY_MOVE(Framework)

    // What the plug-ins call.
    bool SendCommand(void *hostHandle, const QString &pluginID, const QString &command,
                     const QVariant &payload, void *context, bool flag,
                     const QString &relayPath) override;
    QObject *FindPlugin(void *hostHandle, const QString &pluginID) override;

    /// Registers a plug-in object, which stays its owner's and may be destroyed at any time.
    /// Whoever bears the identifier at the time of delivery gets the answer.
    void addPlugin(const QString &pluginID, QObject *plugin);
    void removePlugin(const QString &pluginID);

    /// Not owned; null stops executing. A command is executed while it is being sent, only its
    /// answer waits.
    void setServer(Server *server) { m_server = server; }
    /// The same for one that executes elsewhere and answers later; it comes before the other. The
    /// delivery rule of a command begins to count when the server has answered.
    void setAsyncServer(AsyncServer *server) { m_asyncServer = server; }

    /// The rules for what is sent from now on.
    DeliveryRules &rules() { return m_rules; }

    /// Called for everything that passes through, before it is delivered. May send or answer.
    void setObserver(std::function<void(const Traffic &)> observer);
    /// Called after each answer with the milliseconds that the plug-in took for it, slots of its
    /// signals included.
    void setCallObserver(std::function<void(double milliseconds)> observer);

    /// All commands in the order of sending, refused ones included.
    QList<SentCommand> sent() const { return m_sent; }
    void clearSent() { m_sent.clear(); }
    /// Whether commands are added to sent(); they are by default. Off for runs of any length.
    void setRecording(bool on) { m_recording = on; }

    /// Delivers an answer to the sender of @p command at once; any number of times.
    void answer(const SentCommand &command, const QVariant &result,
                const QString &resultCode = QString::fromLatin1("0"));

    /// The commands whose answers are held, oldest first. One that is held twice occurs twice.
    QList<SentCommand> held() const;
    /// Delivers one held answer; false when there is no such position.
    bool release(qsizetype position);
    /// Delivers all answers that are held now, oldest first.
    void releaseAll();
    /// Takes all held answers and delivers those at the given positions, in that order: one named
    /// twice is delivered twice, one not named is lost.
    void releaseInOrder(const QList<qsizetype> &positions);

    /// Delivers an event to all plug-ins, at once.
    void sendEvent(const QString &eventName, const QVariant &data, const QString &relayPath);

    /// How many answers and events are being delivered at this moment, one from inside the other.
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
    QList<Pending> m_round;                   ///< waits for being delivered in reverse
    int m_roundUnderWay = 0; ///< commands of that round that the server has not answered yet

    std::shared_ptr<Mailbox> m_inbox = std::make_shared<Mailbox>();
    QObject m_eventContext; ///< what is on the event loop dies with it, hence the last member
};

} // namespace standin
