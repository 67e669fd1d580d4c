#include "Topology.h"

namespace standin {

namespace {

/// Returns a node's value for a role; invalid for an unknown role.
QVariant valueOf(const Topology::Node &node, const QString &role)
{
    if (role == QLatin1String("idRole") || role == QLatin1String("nodeIDRole"))
        return node.id;
    if (role == QLatin1String("nameRole"))
        return node.name;
    if (role == QLatin1String("nodeTypeRole"))
        return node.type;
    return {};
}

} // namespace

Topology::Topology(QObject *parent)
    : QObject(parent)
{
}

QString Topology::pluginID()
{
    return QStringLiteral("1AA33B3D0AA047C9A202F1181284D2CD");
}

void Topology::setNode(const Node &node)
{
    m_nodes.insert(node.id, node);
}

void Topology::setStation(const QString &relayPath, const QString &name, NodeType type)
{
    setNode({relayPath, name, int(type)});
}

void Topology::setCamera(const QString &cameraKey, const QString &name)
{
    setNode({cameraKey, name, int(Camera)});
}

bool Topology::rename(const QString &id, const QString &name)
{
    const auto known = m_nodes.find(id);
    if (known == m_nodes.end())
        return false;
    known->name = name;
    return true;
}

bool Topology::remove(const QString &id)
{
    return m_nodes.remove(id) > 0;
}

QVariantMap Topology::getValuesFromModel(int tree, const QString &keyRole, const QString &valueRole)
{
    ++m_callCount;
    if (tree != 0)
        return {};
    QVariantMap values;
    for (const Node &node : std::as_const(m_nodes)) {
        const QVariant key = valueOf(node, keyRole);
        const QVariant value = valueOf(node, valueRole);
        if (key.isValid() && value.isValid())
            values.insert(key.toString(), value);
    }
    return values;
}

} // namespace standin
