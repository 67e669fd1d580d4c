#pragma once

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <optional>

namespace standin {

/// Describes when, how often and with which result a command is answered. Start with a static
/// function and refine the result, as in Delivery::held().failing(code).
struct Delivery
{
    enum class When {
        Queued,    ///< later on the event loop, in the order of sending
        Delayed,   ///< after some milliseconds
        Immediate, ///< from inside the send call
        Held,      ///< when Framework::release() or its like is called
        Reversed,  ///< on the event loop, the last one sent first
        Never,     ///< executed, but the answer is lost
        Rejected,  ///< SendCommand returns false, nothing is executed
    };

    When when = When::Queued;
    int delayMs = 0;
    int copies = 1;
    std::optional<QString> failureCode;     ///< not executed; the result is invalid
    std::optional<QVariant> replacedResult; ///< executed, but the answer has this result

    static Delivery queued() { return at(When::Queued); }
    static Delivery delayed(int ms);
    static Delivery immediate() { return at(When::Immediate); }
    static Delivery held() { return at(When::Held); }
    static Delivery reversed() { return at(When::Reversed); }
    static Delivery never() { return at(When::Never); }
    static Delivery rejected() { return at(When::Rejected); }
    static Delivery twice() { return queued().times(2); }
    static Delivery failed(const QString &code) { return queued().failing(code); }
    static Delivery wrongPayload(const QVariant &result) { return queued().replacing(result); }

    Delivery times(int count) const;
    Delivery failing(const QString &code) const;
    Delivery replacing(const QVariant &result) const;

private:
    static Delivery at(When when);
};

/// Selects the delivery for a command. The most exact rule applies: station and command, command,
/// station, default.
class DeliveryRules
{
public:
    void setDefault(const Delivery &delivery) { m_default = delivery; }
    void setForStation(const QString &relayPath, const Delivery &delivery);
    void setForCommand(const QString &command, const Delivery &delivery);
    void setFor(const QString &relayPath, const QString &command, const Delivery &delivery);

    /// Removes all rules; every answer is queued.
    void reset() { *this = {}; }

    Delivery find(const QString &relayPath, const QString &command) const;

private:
    Delivery m_default;
    QHash<QString, Delivery> m_byStation;
    QHash<QString, Delivery> m_byCommand;
    QHash<QPair<QString, QString>, Delivery> m_byBoth;
};

} // namespace standin
