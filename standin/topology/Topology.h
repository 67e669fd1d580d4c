#pragma once

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace standin {

/// The topology plug-in as other plug-ins see it: a list of stations and cameras whose attributes
/// are read through one method that is called by name.
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
        QString id; ///< relay path of a station; of a camera its relay path, "/", camera ID
        QString name;
        QVariant type; ///< a NodeType; a variant, so that a test can serve something else
    };

    explicit Topology(QObject *parent = nullptr);

    /// The plug-in ID under which plug-ins look for it.
    static QString pluginID();

    /// Adds a node, or replaces the one with this identifier.
    void setNode(const Node &node);
    void setStation(const QString &relayPath, const QString &name, NodeType type = SubStation);
    void setCamera(const QString &cameraKey, const QString &name);

    /// Whether there was such a node.
    bool rename(const QString &id, const QString &name);
    bool remove(const QString &id);
    void clear() { m_nodes.clear(); }

    /// In the order of their identifiers.
    QList<Node> nodes() const { return m_nodes.values(); }

    /// How often getValuesFromModel() was called.
    int callCount() const { return m_callCount; }

    /// Maps, for every node, the value of one role to the value of another. Roles are "idRole",
    /// "nodeIDRole", "nameRole" and "nodeTypeRole"; an unknown one gives an empty map. So does
    /// any tree but 0, the only one that is asked for.
    Q_INVOKABLE QVariantMap getValuesFromModel(int tree, const QString &keyRole,
                                               const QString &valueRole);

private:
    QMap<QString, Node> m_nodes; ///< by identifier
    int m_callCount = 0;
};

} // namespace standin
