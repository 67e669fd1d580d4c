#include "PayloadTree.h"

#include "PayloadText.h"

#include <vector>

namespace workbench {

/// A part of the payload. Children are created on demand, so that a list of a hundred thousand
/// records opens at once.
struct PayloadTree::Node
{
    Node *parent = nullptr;
    int row = 0;
    QString key;
    QVariant value;
    QStringList keys;      ///< of a map
    QVariantList elements; ///< of a list; of a map in the order of the keys
    std::vector<std::unique_ptr<Node>> children;

    Node(Node *parentNode, int rowInParent, const QString &itsKey, const QVariant &itsValue)
        : parent(parentNode)
        , row(rowInParent)
        , key(itsKey)
        , value(itsValue)
    {
        if (value.typeId() == QMetaType::QVariantMap || value.typeId() == QMetaType::QVariantHash) {
            const QVariantMap map = value.toMap();
            keys = map.keys();
            elements = map.values();
        } else if (value.typeId() == QMetaType::QVariantList ||
                   value.typeId() == QMetaType::QStringList) {
            elements = value.toList();
        }
        children.resize(static_cast<size_t>(elements.size()));
    }

    Node *child(int childRow)
    {
        std::unique_ptr<Node> &node = children[static_cast<size_t>(childRow)];
        if (!node) {
            const QString childKey =
                keys.isEmpty() ? QStringLiteral("[%1]").arg(childRow) : keys.at(childRow);
            node = std::make_unique<Node>(this, childRow, childKey, elements.at(childRow));
        }
        return node.get();
    }

    QString text() const
    {
        constexpr qsizetype length = 2000;
        if (children.empty())
            return payloadtext::brief(value, length);
        return keys.isEmpty() ? PayloadTree::tr("%1 elements").arg(children.size())
                              : PayloadTree::tr("%1 keys").arg(children.size());
    }
};

PayloadTree::PayloadTree(QObject *parent)
    : QAbstractItemModel(parent)
    , m_root(std::make_unique<Node>(nullptr, 0, QString(), QVariant()))
{
}

PayloadTree::~PayloadTree() = default;

void PayloadTree::setTraffic(TrafficModel *traffic)
{
    m_traffic = traffic;
    m_sequence.clear(); // both may have one of that number
    show({});
    Q_EMIT trafficChanged();
    update();
}

void PayloadTree::setRow(int row)
{
    m_row = row;
    Q_EMIT rowChanged();
    update();
}

void PayloadTree::update()
{
    const QVariant sequence =
        m_traffic ? m_traffic->index(m_row).data(TrafficModel::SequenceRole) : QVariant();
    if (sequence == m_sequence)
        return;
    m_sequence = sequence;
    show(sequence.isValid() ? m_traffic->payloadAt(m_row) : QVariant());
}

void PayloadTree::show(const QVariant &value)
{
    beginResetModel();
    m_root = std::make_unique<Node>(nullptr, 0, QString(), value);
    if (m_root->children.empty() && value.isValid()) // a value without parts is shown in a row
        m_root = std::make_unique<Node>(nullptr, 0, QString(), QVariantList{value});
    endResetModel();
    Q_EMIT payloadChanged();
}

PayloadTree::Node *PayloadTree::nodeAt(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Node *>(index.internalPointer()) : m_root.get();
}

QModelIndex PayloadTree::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, nodeAt(parent)->child(row));
}

QModelIndex PayloadTree::parent(const QModelIndex &child) const
{
    Node *const node = nodeAt(child)->parent;
    return !node || node == m_root.get() ? QModelIndex() : createIndex(node->row, 0, node);
}

int PayloadTree::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(nodeAt(parent)->children.size());
}

QVariant PayloadTree::data(const QModelIndex &index, int role) const
{
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Node &node = *nodeAt(index);
    switch (index.column()) {
    case KeyColumn:
        return node.key;
    case ValueColumn:
        return node.text();
    default:
        return node.value.isValid() ? QString::fromLatin1(node.value.typeName())
                                    : QStringLiteral("invalid");
    }
}

} // namespace workbench
