#include "TimelineListModel.h"

#include "TimeShiftBufferModel.h"

#include <QtCore/QPointer>
#include <QtGui/QStandardItem>

#include <algorithm>
#include <vector>

namespace standin {

namespace {

QString idOf(const QStandardItem *item)
{
    return item->data(TimeShiftBufferModel::ItemIdRole).toString();
}

qint64 startOf(const QStandardItem *item)
{
    return item->data(TimeShiftBufferModel::StartTimestampRole).toLongLong();
}

bool comesBefore(const QStandardItem *left, const QStandardItem *right)
{
    const qint64 leftStart = startOf(left);
    const qint64 rightStart = startOf(right);
    return leftStart != rightStart ? leftStart < rightStart : idOf(left) < idOf(right);
}

} // namespace

TimelineListModel::TimelineListModel(QHash<int, QByteArray> roleNames, QObject *parent)
    : QAbstractListModel(parent)
    , m_roleNames(std::move(roleNames))
{
}

TimelineListModel::~TimelineListModel()
{
    qDeleteAll(m_items);
}

int TimelineListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_items.size());
}

QVariant TimelineListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    return m_items.at(index.row())->data(role);
}

QHash<int, QByteArray> TimelineListModel::roleNames() const
{
    return m_roleNames;
}

void TimelineListModel::merge(const QList<QStandardItem *> &items)
{
    // Own all items before the first slot runs: a slot that deletes the model must not leak the
    // others.
    std::vector<ItemPointer> owned;
    owned.reserve(size_t(items.size()));
    for (QStandardItem *item : items)
        owned.emplace_back(item);

    const QPointer<TimelineListModel> self(this);
    for (ItemPointer &item : owned) {
        if (item)
            put(std::move(item));
        if (!self)
            return;
    }
}

void TimelineListModel::remove(const QList<QString> &itemIds)
{
    const QPointer<TimelineListModel> self(this);
    for (const QString &id : itemIds) {
        if (QStandardItem *known = m_itemsById.value(id))
            takeOut(known);
        if (!self)
            return;
    }
}

void TimelineListModel::removeAll()
{
    if (m_items.isEmpty())
        return;
    beginRemoveRows({}, 0, int(m_items.size()) - 1);
    m_itemsById.clear();
    qDeleteAll(m_items);
    m_items.clear();
    endRemoveRows();
}

void TimelineListModel::put(ItemPointer item)
{
    const QPointer<TimelineListModel> self(this);
    const QString id = idOf(item.get());
    // A loop, because a slot on the removal may insert the identifier again.
    while (QStandardItem *known = m_itemsById.value(id)) {
        if (known == item.get()) {
            Q_UNUSED(item.release()) // the list has the same item twice
            return;
        }
        if (startOf(known) == startOf(item.get())) {
            replace(known, std::move(item));
            return;
        }
        takeOut(known);
        if (!self)
            return;
    }
    insert(std::move(item));
}

void TimelineListModel::insert(ItemPointer item)
{
    const qsizetype row = lowerBound(item.get());
    beginInsertRows({}, int(row), int(row));
    m_itemsById.insert(idOf(item.get()), item.get());
    m_items.insert(row, item.release());
    endInsertRows();
}

void TimelineListModel::replace(QStandardItem *known, ItemPointer item)
{
    const qsizetype row = rowOf(known);
    m_itemsById.insert(idOf(item.get()), item.get());
    m_items[row] = item.release();
    delete known;
    const QModelIndex changed = index(int(row));
    Q_EMIT dataChanged(changed, changed);
}

void TimelineListModel::takeOut(QStandardItem *known)
{
    const qsizetype row = rowOf(known);
    beginRemoveRows({}, int(row), int(row));
    m_itemsById.remove(idOf(known));
    m_items.removeAt(row);
    delete known;
    endRemoveRows();
}

qsizetype TimelineListModel::lowerBound(const QStandardItem *item) const
{
    // Most items are appended, because timelines grow at their end.
    if (m_items.isEmpty() || comesBefore(m_items.constLast(), item))
        return m_items.size();
    return std::lower_bound(m_items.cbegin(), m_items.cend(), item, comesBefore) - m_items.cbegin();
}

qsizetype TimelineListModel::rowOf(QStandardItem *item) const
{
    const qsizetype row = lowerBound(item);
    // The row may be wrong: a caller that kept a pointer to the item can change its start.
    return m_items.value(row) == item ? row : m_items.indexOf(item);
}

} // namespace standin
