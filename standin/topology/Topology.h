#pragma once

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace standin {

/// Stand-in for the topology plug-in: a list of stations and cameras. Other plug-ins read it with
/// getValuesFromModel(), which they call by name.
class Topology : public QObject
{
    Q_OBJECT

public:
    enum NodeType {
        ConnectedServer = 0,
        SubStation = 1, ///< a station reached through the connected server
        Camera = 2,
    };

    struct Node
    {
        QString id; ///< relay path of a station, or camera key
        QString name;
        QVariant type; ///< a NodeType; a variant, so that tests can use other values
    };

    explicit Topology(QObject *parent = nullptr);

    /// @return the plug-in ID of the topology plug-in
    static QString pluginID();

    /// Adds a node, or replaces the one with this identifier.
    void setNode(const Node &node);
    void setStation(const QString &relayPath, const QString &name, NodeType type = SubStation);
    void setCamera(const QString &cameraKey, const QString &name);

    /// @return false if there is no such node
    bool rename(const QString &id, const QString &name);
    /// @return false if there is no such node
    bool remove(const QString &id);
    void clear() { m_nodes.clear(); }

    /// @return all nodes, sorted by identifier
    QList<Node> nodes() const { return m_nodes.values(); }

    /// @return the number of calls of getValuesFromModel()
    int callCount() const { return m_callCount; }

    /// Returns the value of one role by the value of another, for every node.
    /// @param tree 0 for the whole tree; any other number gives an empty map
    /// @param keyRole,valueRole "idRole", "nodeIDRole", "nameRole" or "nodeTypeRole"; any other
    ///                          text gives an empty map
    Q_INVOKABLE QVariantMap getValuesFromModel(int tree, const QString &keyRole,
                                               const QString &valueRole);

private:
    QMap<QString, Node> m_nodes; ///< by identifier
    int m_callCount = 0;
};

} // namespace standin
