#pragma once

#include "topology/Topology.h"

#include <QtCore/QStringList>

#include <functional>
#include <optional>

namespace driver {

/// A topology plug-in that can be noticed being asked, and that can be made to say anything.
class WatchedTopology : public QObject
{
    Q_OBJECT

public:
    explicit WatchedTopology(standin::Topology &topology)
        : m_topology(topology)
    {
    }

    std::function<void()> onCall;    ///< from inside each question
    std::optional<QVariantMap> says; ///< instead of what is true
    QStringList asked;               ///< "0 idRole nameRole" for each question

    Q_INVOKABLE QVariantMap getValuesFromModel(int tree, const QString &key, const QString &value)
    {
        asked.append(QStringLiteral("%1 %2 %3").arg(QString::number(tree), key, value));
        if (const auto callback = onCall)
            callback();
        return says ? *says : m_topology.getValuesFromModel(tree, key, value);
    }

private:
    standin::Topology &m_topology;
};

/// One whose method takes something else, as an older or newer host's might.
class ForeignTopology : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE int getValuesFromModel(const QString &) { return 0; }
};

} // namespace driver
