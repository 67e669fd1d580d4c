#pragma once

#include <QtCore/QAbstractListModel>
#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>

class QStandardItem;

namespace standin {

/// The list model of one timeline: one row an item, in order of start and then of identifier.
/// Every change is announced row by row, and a slot may change or delete the model.
class TimelineListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    explicit TimelineListModel(QHash<int, QByteArray> roleNames, QObject *parent = nullptr);
    ~TimelineListModel() override;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    /// Puts items in; an item with a known identifier replaces the one that is there. Takes
    /// ownership; null items are skipped.
    void merge(const QList<QStandardItem *> &items);

    /// Takes out and deletes the items with these identifiers, as far as they are known.
    void remove(const QList<QString> &itemIds);

    /// Takes out and deletes all items.
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
