#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QVariant>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace workbench {

/// A payload as a tree: key, value and type of each part. Parts are made when they are looked at.
class PayloadTree : public QAbstractItemModel
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY valueChanged)

public:
    enum Column { KeyColumn, ValueColumn, TypeColumn, ColumnCount };

    explicit PayloadTree(QObject *parent = nullptr);
    ~PayloadTree() override;
    Q_DISABLE_COPY_MOVE(PayloadTree)

    QVariant value() const;
    void setValue(const QVariant &value);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &child) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex & /*parent*/ = {}) const override { return ColumnCount; }
    QVariant data(const QModelIndex &index, int role) const override;

Q_SIGNALS:
    void valueChanged();

private:
    struct Node;
    Node *nodeAt(const QModelIndex &index) const;

    std::unique_ptr<Node> m_root; ///< its one child is the payload
};

} // namespace workbench
