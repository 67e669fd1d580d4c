#pragma once

#include "TrafficModel.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace workbench {

/// The payload of a traffic entry as a tree with key, value and type of each part. Nodes are
/// created on demand. The model reads the payload in C++, because QML would turn integers into
/// doubles.
class PayloadTree : public QAbstractItemModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(workbench::TrafficModel *traffic READ traffic WRITE setTraffic NOTIFY trafficChanged)
    /// Row of the traffic; -1 for an empty tree.
    Q_PROPERTY(int row READ row WRITE setRow NOTIFY rowChanged)

public:
    enum Column { KeyColumn, ValueColumn, TypeColumn, ColumnCount };
    Q_ENUM(Column)

    explicit PayloadTree(QObject *parent = nullptr);
    ~PayloadTree() override;
    Q_DISABLE_COPY_MOVE(PayloadTree)

    TrafficModel *traffic() const { return m_traffic; }
    /// Not owned.
    void setTraffic(TrafficModel *traffic);
    int row() const { return m_row; }
    /// Keeps the tree if the row shows the same entry, after older entries were dropped.
    void setRow(int row);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex & /*parent*/ = {}) const override { return ColumnCount; }
    QVariant data(const QModelIndex &index, int role) const override;

Q_SIGNALS:
    void trafficChanged();
    void rowChanged();
    /// The tree shows another payload.
    void payloadChanged();

private:
    struct Node;
    Node *nodeAt(const QModelIndex &index) const;
    void update();
    void show(const QVariant &value);

    QPointer<TrafficModel> m_traffic;
    int m_row = -1;
    QVariant m_sequence;          ///< sequence number of the shown entry
    std::unique_ptr<Node> m_root; ///< the payload; its children are the top-level rows
};

} // namespace workbench
