#pragma once

#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <optional>

namespace standin {

/// How a command is answered: when, how often and with what. Made by one of the functions and
/// refined by the others, as in Delivery::held().failing(code).
struct Delivery
{
    enum class When {
        Queued,    ///< later on the event loop, in the order of sending
        Delayed,   ///< after some milliseconds
        Immediate, ///< from inside the send call
        Held,      ///< when the test releases it
        Reversed,  ///< on the event loop, the last one sent first
        Never,     ///< executed, but the answer is lost
        Refused,   ///< SendCommand returns false, nothing is executed
    };

    When when = When::Queued;
    int delayMs = 0;
    int copies = 1;
    std::optional<QString> failureCode;     ///< not executed; the result is invalid
    std::optional<QVariant> replacedResult; ///< executed, but this is what arrives

    static Delivery queued() { return at(When::Queued); }
    static Delivery delayed(int ms);
    static Delivery immediate() { return at(When::Immediate); }
    static Delivery held() { return at(When::Held); }
    static Delivery reversed() { return at(When::Reversed); }
    static Delivery never() { return at(When::Never); }
    static Delivery refused() { return at(When::Refused); }
    static Delivery twice() { return queued().times(2); }
    static Delivery failed(const QString &code) { return queued().failing(code); }
    static Delivery wrongPayload(const QVariant &result) { return queued().replacing(result); }

    Delivery times(int count) const;
    Delivery failing(const QString &code) const;
    Delivery replacing(const QVariant &result) const;

private:
    static Delivery at(When when);
};

/// Which delivery holds for which command: the most exact rule that was set, in the order station
/// and command, command, station, default.
class DeliveryRules
{
public:
    void setDefault(const Delivery &delivery) { m_default = delivery; }
    void setForStation(const QString &relayPath, const Delivery &delivery);
    void setForCommand(const QString &command, const Delivery &delivery);
    void setFor(const QString &relayPath, const QString &command, const Delivery &delivery);

    /// Back to one rule: everything is queued.
    void reset() { *this = {}; }

    Delivery find(const QString &relayPath, const QString &command) const;

private:
    Delivery m_default;
    QHash<QString, Delivery> m_byStation;
    QHash<QString, Delivery> m_byCommand;
    QHash<QPair<QString, QString>, Delivery> m_byBoth;
};

} // namespace standin
