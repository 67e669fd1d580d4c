#pragma once

#include "topology/Topology.h"

#include <QtCore/QStringList>

#include <functional>
#include <optional>

namespace driver {

/// A topology plug-in that records its calls and can return any value.
class WatchedTopology : public QObject
{
    Q_OBJECT

public:
    explicit WatchedTopology(standin::Topology &topology)
        : m_topology(topology)
    {
    }

    std::function<void()> onCall;      ///< runs inside each call
    std::optional<QVariantMap> result; ///< replaces the real result
    QStringList calls;                 ///< arguments of each call, "0 idRole nameRole"

    Q_INVOKABLE QVariantMap getValuesFromModel(int tree, const QString &key, const QString &value)
    {
        calls.append(QStringLiteral("%1 %2 %3").arg(QString::number(tree), key, value));
        if (const auto callback = onCall)
            callback();
        return result ? *result : m_topology.getValuesFromModel(tree, key, value);
    }

private:
    standin::Topology &m_topology;
};

/// A topology plug-in whose method has other parameters, as in another version of the host.
class ForeignTopology : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE int getValuesFromModel(const QString &) { return 0; }
};

} // namespace driver
