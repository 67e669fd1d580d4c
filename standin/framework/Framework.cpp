#include "Framework.h"

#include "DeepCopy.h"

#include <QtCore/QDeadlineTimer>
#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTimer>

#include <algorithm>
#include <utility>

namespace standin {

namespace {

Q_LOGGING_CATEGORY(lcStandin, "tessaline.standin", QtInfoMsg)

PluginBase *pluginBase(QObject *object)
{
    // The second cast finds test doubles that do not declare the interface to the meta-object
    // system.
    auto *plugin = qobject_cast<PluginBase *>(object);
    return plugin ? plugin : dynamic_cast<PluginBase *>(object);
}

/// Returns a deep copy. The framework copies each answer once, when the server returns it, because
/// copying a hundred thousand bookmarks at each delivery would block the window.
Answer withDataOfItsOwn(const Answer &answer)
{
    return {deepCopy(answer.result), deepCopy(answer.resultCode), answer.tookMs};
}

} // namespace

Framework::~Framework()
{
    m_inbox->close();
}

bool Framework::SendCommand(void *hostHandle, const QString &pluginID, const QString &command,
                            const QVariant &payload, void *context, bool flag,
                            const QString &relayPath)
{
    const Delivery delivery = m_rules.find(relayPath, command);
    SentCommand sent;
    sent.hostHandle = hostHandle;
    sent.pluginID = deepCopy(pluginID);
    sent.command = deepCopy(command);
    sent.payload = deepCopy(payload);
    sent.context = context;
    sent.flag = flag;
    sent.relayPath = deepCopy(relayPath);
    sent.accepted = delivery.when != Delivery::When::Rejected;

    sent = record(std::move(sent));
    if (!sent.accepted)
        return false;
    if (m_asyncServer && !delivery.failureCode)
        executeElsewhere(sent, delivery);
    else if (const std::optional<Answer> answer = execute(sent, delivery))
        schedule({sent, *answer}, delivery);
    return true;
}

QObject *Framework::FindPlugin(void *hostHandle, const QString &pluginID)
{
    Q_UNUSED(hostHandle)
    return m_plugins.value(pluginID);
}

void Framework::addPlugin(const QString &pluginID, QObject *plugin)
{
    m_plugins.insert(deepCopy(pluginID), plugin);
}

void Framework::removePlugin(const QString &pluginID)
{
    m_plugins.remove(pluginID);
}

void Framework::setObserver(std::function<void(const Traffic &)> observer)
{
    m_observer = std::move(observer);
}

void Framework::setCallObserver(std::function<void(double)> observer)
{
    m_callObserver = std::move(observer);
}

void Framework::answer(const SentCommand &command, const QVariant &result,
                       const QString &resultCode)
{
    deliver({command, withDataOfItsOwn({result, resultCode})});
}

QList<SentCommand> Framework::held() const
{
    QList<SentCommand> commands;
    for (const Pending &pending : m_held)
        commands.append(pending.command);
    return commands;
}

bool Framework::release(qsizetype position)
{
    if (position < 0 || position >= m_held.size())
        return false;
    deliver(m_held.takeAt(position));
    return true;
}

void Framework::releaseAll()
{
    const QList<Pending> released = std::exchange(m_held, {});
    for (const Pending &pending : released)
        deliver(pending);
}

void Framework::releaseInOrder(const QList<qsizetype> &positions)
{
    const QList<Pending> released = std::exchange(m_held, {});
    for (const qsizetype position : positions) {
        if (position >= 0 && position < released.size())
            deliver(released.at(position));
        else
            qCWarning(lcStandin,
                      "No answer is held at position %lld of %lld; the position is ignored",
                      qlonglong(position), qlonglong(released.size()));
    }
}

void Framework::sendEvent(const QString &eventName, const QVariant &data, const QString &relayPath)
{
    Traffic traffic;
    traffic.kind = Traffic::Kind::Event;
    traffic.sequence = ++m_lastSequence;
    traffic.name = deepCopy(eventName);
    traffic.value = deepCopy(data);
    traffic.relayPath = deepCopy(relayPath);
    notify(traffic);

    // A copy, because a plug-in may add or remove plug-ins, including itself.
    const auto plugins = m_plugins;
    ++m_deliveries;
    for (const QPointer<QObject> &object : plugins) {
        if (PluginBase *plugin = pluginBase(object))
            plugin->EventProcessor(deepCopy(eventName), 0, 0, 0, deepCopy(data), traffic.relayPath);
    }
    --m_deliveries;
}

SentCommand Framework::record(SentCommand command)
{
    command.sequence = ++m_lastSequence;
    if (m_recording)
        m_sent.append(command);

    Traffic traffic;
    traffic.kind = Traffic::Kind::Sent;
    traffic.sequence = command.sequence;
    traffic.name = command.command;
    traffic.value = command.payload;
    traffic.context = command.context;
    traffic.relayPath = command.relayPath;
    traffic.accepted = command.accepted;
    notify(traffic);
    return command;
}

/// Returns the answer to a command, or nullopt if the caller of answer() has to provide it.
std::optional<Answer> Framework::execute(const SentCommand &command, const Delivery &delivery)
{
    if (delivery.failureCode) {
        if (m_asyncServer)
            return m_asyncServer->failureAnswer(command.command, command.payload,
                                                *delivery.failureCode);
        return m_server ? m_server->failureAnswer(command.command, command.payload,
                                                  *delivery.failureCode)
                        : Answer{{}, *delivery.failureCode};
    }
    std::optional<Answer> answer;
    if (m_server)
        answer = m_server->execute(command.command, command.payload, command.relayPath);
    if (delivery.replacedResult) {
        answer = answer.value_or(Answer());
        answer->result = *delivery.replacedResult;
    }
    return answer ? withDataOfItsOwn(*answer) : answer;
}

void Framework::executeElsewhere(const SentCommand &command, const Delivery &delivery)
{
    if (delivery.when == Delivery::When::Reversed)
        ++m_roundUnderWay;
    const auto done = [this, inbox = m_inbox, command, delivery](const Answer &answer) {
        // This runs in the server's thread; the posted call runs only while the framework exists.
        // The answer needs no copy, because the server does not use it any more.
        inbox->post([=] {
            if (delivery.when == Delivery::When::Reversed)
                --m_roundUnderWay;
            const Answer delayed{delivery.replacedResult.value_or(answer.result), answer.resultCode,
                                 answer.tookMs + delivery.delayMs};
            schedule({command, delayed}, delivery);
        });
    };
    m_asyncServer->execute(command.command, command.payload, command.relayPath, done);
}

void Framework::schedule(const Pending &pending, const Delivery &delivery)
{
    const auto deliverLater = [this, pending] { deliver(pending); };
    for (int i = 0; i < delivery.copies; ++i) {
        switch (delivery.when) {
        case Delivery::When::Queued:
            QMetaObject::invokeMethod(&m_eventContext, deliverLater, Qt::QueuedConnection);
            break;
        case Delivery::When::Delayed:
            m_delayed.emplace(QDeadlineTimer(delivery.delayMs).deadlineNSecs(), pending);
            QTimer::singleShot(delivery.delayMs, &m_eventContext, [this] { deliverNextDelayed(); });
            break;
        case Delivery::When::Immediate:
            deliver(pending);
            break;
        case Delivery::When::Held:
            m_held.append(pending);
            break;
        case Delivery::When::Reversed:
            m_round.append(pending);
            QMetaObject::invokeMethod(
                &m_eventContext, [this] { deliverRound(); }, Qt::QueuedConnection);
            break;
        case Delivery::When::Never:
        case Delivery::When::Rejected:
            break;
        }
    }
}

void Framework::deliver(const Pending &pending)
{
    const SentCommand &command = pending.command;
    const QPointer<QObject> receiver = m_plugins.value(command.pluginID);
    if (!receiver) {
        qCDebug(lcStandin) << "Dropped the answer to" << command.command << "from station"
                           << command.relayPath << "because no plug-in has the ID"
                           << command.pluginID;
        return;
    }

    Traffic traffic;
    traffic.kind = Traffic::Kind::Answered;
    traffic.sequence = ++m_lastSequence;
    traffic.request = command.sequence;
    traffic.name = command.command;
    traffic.value = pending.answer.result;
    traffic.context = command.context;
    traffic.resultCode = pending.answer.resultCode;
    traffic.relayPath = command.relayPath;
    traffic.tookMs = pending.answer.tookMs;
    notify(traffic);

    ++m_deliveries;
    // Read the receiver again: the observer may have destroyed it.
    QElapsedTimer timer;
    timer.start();
    if (PluginBase *plugin = pluginBase(receiver))
        plugin->CommandProcessor(command.command, pending.answer.result, command.context,
                                 pending.answer.resultCode, QString(), false, command.relayPath);
    if (m_callObserver)
        m_callObserver(double(timer.nsecsElapsed()) / 1e6);
    --m_deliveries;
}

/// Delivers the answer that is due first. Timers that end together fire in any order, so a timer is
/// not bound to an answer.
void Framework::deliverNextDelayed()
{
    deliver(m_delayed.extract(m_delayed.begin()).mapped());
}

/// Delivers the round in reverse order. Each answer posts this call; the first call that finds the
/// round complete delivers all of it.
void Framework::deliverRound()
{
    if (m_roundUnderWay > 0)
        return;
    const QList<Pending> round = std::exchange(m_round, {});
    std::for_each(round.crbegin(), round.crend(),
                  [this](const Pending &pending) { deliver(pending); });
}

void Framework::notify(const Traffic &traffic)
{
    // A copy, because the observer may install another one.
    const auto observer = m_observer;
    if (observer)
        observer(traffic);
}

} // namespace standin
