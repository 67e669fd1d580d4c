#include "TrafficEntry.h"

namespace workbench {

const QStringList &kindNames()
{
    static const QStringList names = {QStringLiteral("call"),  QStringLiteral("connection"),
                                      QStringLiteral("send"),  QStringLiteral("answer"),
                                      QStringLiteral("event"), QStringLiteral("signal")};
    return names;
}

QString nameOf(TrafficEntry::Kind kind)
{
    return kindNames().at(static_cast<int>(kind));
}

bool kindOf(const QString &name, TrafficEntry::Kind *kind)
{
    const qsizetype index = kindNames().indexOf(name);
    if (index >= 0)
        *kind = static_cast<TrafficEntry::Kind>(index);
    return index >= 0;
}

} // namespace workbench
