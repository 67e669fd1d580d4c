#pragma once

#include <QtCore/QAbstractItemModel>
#include <QtCore/QList>

#include <algorithm>

namespace workbench {

/// The rows of a list model that computes all rows at once. Emits signals for the differences, so
/// that views keep their delegates: inserts and removes rows at both ends, as for panning, and
/// changes the others. The model must declare this class as friend. Rows need operator==,
/// isSameAs() and differsIn().
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
        alignFronts(model, rows);
        const qsizetype common = std::min(m_rows.size(), rows.size());
        if (common < m_rows.size()) {
            model.beginRemoveRows({}, int(common), size() - 1);
            m_rows.resize(common);
            model.endRemoveRows();
        }
        for (qsizetype i = 0; i < common; ++i) {
            if (m_rows.at(i) == rows.at(i))
                continue;
            const QModelIndex changed = model.index(int(i));
            const QList<int> roles = rows.at(i).differsIn(m_rows.at(i));
            m_rows[i] = rows.at(i);
            Q_EMIT model.dataChanged(changed, changed, roles);
        }
        if (common < rows.size()) {
            model.beginInsertRows({}, int(common), int(rows.size()) - 1);
            m_rows = rows;
            model.endInsertRows();
        }
    }

private:
    template <typename Model>
    void alignFronts(Model &model, const QList<Row> &rows)
    {
        if (m_rows.isEmpty() || rows.isEmpty())
            return;
        if (const int gone = positionOf(rows.constFirst(), m_rows); gone > 0) {
            model.beginRemoveRows({}, 0, gone - 1);
            m_rows.remove(0, gone);
            model.endRemoveRows();
        } else if (const int come = positionOf(m_rows.constFirst(), rows); come > 0) {
            model.beginInsertRows({}, 0, come - 1);
            m_rows = rows.first(come) + m_rows;
            model.endInsertRows();
        }
    }

    static int positionOf(const Row &row, const QList<Row> &rows)
    {
        const auto found = std::find_if(rows.cbegin(), rows.cend(),
                                        [&](const Row &other) { return row.isSameAs(other); });
        return found == rows.cend() ? -1 : int(found - rows.cbegin());
    }

    QList<Row> m_rows;
};

} // namespace workbench
