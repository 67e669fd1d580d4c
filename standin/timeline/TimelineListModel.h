#pragma once

#include <QtCore/QAbstractListModel>
#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>

class QStandardItem;

namespace standin {

/// The list model of one timeline. Each item has a row; rows are sorted by start, then by
/// identifier. Emits a signal for each changed row; a slot may change or delete the model.
class TimelineListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit TimelineListModel(QHash<int, QByteArray> roleNames, QObject *parent = nullptr);
    ~TimelineListModel() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Inserts items. An item with a known identifier replaces the existing one.
    /// @param items owned by the model afterwards; null items are ignored
    void merge(const QList<QStandardItem *> &items);

    /// Removes and deletes the items with these identifiers; ignores unknown identifiers.
    void remove(const QList<QString> &itemIds);

    /// Removes and deletes all items.
    void removeAll();

private:
    using ItemPointer = std::unique_ptr<QStandardItem>;

    void put(ItemPointer item);
    void insert(ItemPointer item);
    void replace(QStandardItem *known, ItemPointer item);
    void takeOut(QStandardItem *known);
    qsizetype lowerBound(const QStandardItem *item) const;
    qsizetype rowOf(QStandardItem *item) const;

    const QHash<int, QByteArray> m_roleNames;
    QList<QStandardItem *> m_items; ///< owned
    QHash<QString, QStandardItem *> m_itemsById;
};

} // namespace standin
