#include "PageModel.h"

#include <algorithm>

namespace workbench {

void PageModel::setSelection(RecordSelection *selection)
{
    m_selection = selection;
    connect(selection, &RecordSelection::changed, this, &PageModel::noteSelection);
    Q_EMIT selectionChanged();
    noteSelection();
}

void PageModel::noteSelection()
{
    if (!m_rows.isEmpty())
        Q_EMIT dataChanged(index(0), index(count() - 1), {SelectedRole});
}

void PageModel::setGroups(const QVariantList &groups)
{
    QList<Row> rows;
    for (const QVariant &element : groups) {
        const QVariantMap group = element.toMap();
        const QString title = group.value(QStringLiteral("title")).toString();
        const QVariantList records = group.value(QStringLiteral("bookmarkList")).toList();
        auto sectionCount = static_cast<int>(records.size());
        for (const QVariant &record : records) {
            rows.append({record.toMap(), title, sectionCount});
            m_selection->update(rows.last().record);
            sectionCount = 0;
        }
    }

    const int before = count();
    const auto after = static_cast<int>(rows.size());
    if (after < before) {
        beginRemoveRows({}, after, before - 1);
        m_rows.resize(after);
        endRemoveRows();
    }
    const int kept = std::min(before, after);
    std::copy_n(rows.cbegin(), kept, m_rows.begin());
    if (kept > 0)
        Q_EMIT dataChanged(index(0), index(kept - 1));
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        m_rows = std::move(rows);
        endInsertRows();
    }
    if (after != before)
        Q_EMIT countChanged();
}

QVariantMap PageModel::recordAt(int row) const
{
    return row >= 0 && row < count() ? m_rows.at(row).record : QVariantMap();
}

QVariantList PageModel::recordsBetween(int first, int last) const
{
    const auto [from, to] = std::minmax(first, last);
    QVariantList records;
    for (int row = std::max(from, 0); row <= std::min(to, count() - 1); ++row)
        records.append(m_rows.at(row).record);
    return records;
}

int PageModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant PageModel::data(const QModelIndex &index, int role) const
{
    const Row &row = m_rows.at(index.row());
    switch (role) {
    case RecordRole:
        return row.record;
    case SelectedRole:
        return m_selection->contains(row.record);
    case SectionTitleRole:
        return row.title;
    case SectionCountRole:
        return row.sectionCount;
    default:
        return {};
    }
}

QHash<int, QByteArray> PageModel::roleNames() const
{
    return {{RecordRole, "record"},
            {SelectedRole, "selected"},
            {SectionTitleRole, "sectionTitle"},
            {SectionCountRole, "sectionCount"}};
}

} // namespace workbench
