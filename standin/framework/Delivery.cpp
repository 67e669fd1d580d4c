#include "Delivery.h"

namespace standin {

Delivery Delivery::at(When when)
{
    Delivery delivery;
    delivery.when = when;
    return delivery;
}

Delivery Delivery::delayed(int ms)
{
    Delivery delivery = at(When::Delayed);
    delivery.delayMs = ms;
    return delivery;
}

Delivery Delivery::times(int count) const
{
    Delivery delivery = *this;
    delivery.copies = count;
    return delivery;
}

Delivery Delivery::failing(const QString &code) const
{
    Delivery delivery = *this;
    delivery.failureCode = code;
    return delivery;
}

Delivery Delivery::replacing(const QVariant &result) const
{
    Delivery delivery = *this;
    delivery.replacedResult = result;
    return delivery;
}

void DeliveryRules::setForStation(const QString &relayPath, const Delivery &delivery)
{
    m_byStation.insert(relayPath, delivery);
}

void DeliveryRules::setForCommand(const QString &command, const Delivery &delivery)
{
    m_byCommand.insert(command, delivery);
}

void DeliveryRules::setFor(const QString &relayPath, const QString &command,
                           const Delivery &delivery)
{
    m_byBoth.insert({relayPath, command}, delivery);
}

Delivery DeliveryRules::find(const QString &relayPath, const QString &command) const
{
    const auto both = m_byBoth.constFind({relayPath, command});
    if (both != m_byBoth.cend())
        return *both;
    const auto byCommand = m_byCommand.constFind(command);
    if (byCommand != m_byCommand.cend())
        return *byCommand;
    return m_byStation.value(relayPath, m_default);
}

} // namespace standin
