#include "DifferencesModel.h"

namespace workbench {

void DifferencesModel::show(const QList<Difference> &differences)
{
    beginResetModel();
    m_differences = differences;
    m_followers = QList<QList<int>>(differences.size());
    m_rows.clear();
    m_unfolded.clear();
    for (int i = 0; i < differences.size(); ++i) {
        const int cause = differences.at(i).cause;
        (cause < 0 ? m_rows : m_followers[cause]).append(i);
    }
    endResetModel();
}

void DifferencesModel::toggle(int row)
{
    if (row < 0 || row >= m_rows.size() || m_followers.at(m_rows.at(row)).isEmpty())
        return;
    const int index = m_rows.at(row);
    const QList<int> &followers = m_followers.at(index);
    const int last = row + static_cast<int>(followers.size());
    if (m_unfolded.remove(index)) {
        beginRemoveRows({}, row + 1, last);
        m_rows.remove(row + 1, followers.size());
        endRemoveRows();
    } else {
        m_unfolded.insert(index);
        beginInsertRows({}, row + 1, last);
        m_rows = m_rows.mid(0, row + 1) + followers + m_rows.mid(row + 1);
        endInsertRows();
    }
    const QModelIndex changed = this->index(row);
    Q_EMIT dataChanged(changed, changed, {UnfoldedRole});
}

int DifferencesModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant DifferencesModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const int position = m_rows.at(index.row());
    const Difference &difference = m_differences.at(position);
    switch (role) {
    case LineRole:
        return difference.line;
    case Qt::DisplayRole:
    case DescriptionRole:
        return difference.text();
    case FollowsRole:
        return difference.cause >= 0;
    case FollowersRole:
        return m_followers.at(position).size();
    case UnfoldedRole:
        return m_unfolded.contains(position);
    default:
        return {};
    }
}

QHash<int, QByteArray> DifferencesModel::roleNames() const
{
    return {{LineRole, "line"},
            {DescriptionRole, "description"},
            {FollowsRole, "follows"},
            {FollowersRole, "followers"},
            {UnfoldedRole, "unfolded"}};
}

} // namespace workbench
