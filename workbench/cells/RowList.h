#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QList>

#include <algorithm>

namespace workbench {

/// The rows of a list model that are computed anew as a whole. Views keep their delegates: rows
/// change in place, and only the end grows or shrinks. The model has to be its friend.
template <typename Row>
class RowList
{
public:
    int size() const { return int(m_rows.size()); }
    const Row &at(int row) const { return m_rows.at(row); }
    auto begin() const { return m_rows.cbegin(); }
    auto end() const { return m_rows.cend(); }

    template <typename Model>
    void replace(Model &model, const QList<Row> &rows)
    {
        const qsizetype common = std::min(m_rows.size(), rows.size());
        if (common < m_rows.size()) {
            model.beginRemoveRows({}, int(common), size() - 1);
            m_rows.resize(common);
            model.endRemoveRows();
        }
        for (qsizetype i = 0; i < common; ++i) {
            if (m_rows.at(i) == rows.at(i))
                continue;
            m_rows[i] = rows.at(i);
            const QModelIndex changed = model.index(int(i));
            Q_EMIT model.dataChanged(changed, changed);
        }
        if (common < rows.size()) {
            model.beginInsertRows({}, int(common), int(rows.size()) - 1);
            m_rows = rows;
            model.endInsertRows();
        }
    }

private:
    QList<Row> m_rows;
};

} // namespace workbench
