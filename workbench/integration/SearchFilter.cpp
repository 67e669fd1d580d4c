#include "SearchFilter.h"

#include <utility>

namespace workbench {

SearchFilter::SearchFilter(QObject *parent)
    : QSortFilterProxyModel(parent)
{
    connect(this, &QAbstractItemModel::rowsInserted, this, &SearchFilter::countChanged);
    connect(this, &QAbstractItemModel::rowsRemoved, this, &SearchFilter::countChanged);
    connect(this, &QAbstractItemModel::modelReset, this, &SearchFilter::countChanged);
}

void SearchFilter::setSource(QAbstractItemModel *model)
{
    m_searchable = dynamic_cast<const Searchable *>(model);
    m_matcher = nullptr;
    updateMatcher();
    setSourceModel(model);
    Q_EMIT sourceChanged();
    Q_EMIT countChanged();
}

void SearchFilter::setText(const QString &text)
{
    if (text == m_text)
        return;
    m_text = text;
    updateMatcher();
    invalidateFilter();
    Q_EMIT textChanged();
}

void SearchFilter::updateMatcher()
{
    QString error;
    if (m_searchable) {
        if (Searchable::Matcher matcher = m_searchable->matcher(m_text, &error))
            m_matcher = std::move(matcher);
    }
    if (error != std::exchange(m_error, error))
        Q_EMIT errorChanged();
}

void SearchFilter::setHiddenKinds(const QStringList &kinds)
{
    if (kinds == m_hiddenKinds)
        return;
    m_hiddenKinds = kinds;
    invalidateFilter();
    Q_EMIT hiddenKindsChanged();
}

int SearchFilter::rowOf(int sourceRow) const
{
    return sourceModel() ? mapFromSource(sourceModel()->index(sourceRow, 0)).row() : -1;
}

bool SearchFilter::filterAcceptsRow(int sourceRow, const QModelIndex & /*sourceParent*/) const
{
    if (!m_searchable || m_hiddenKinds.contains(m_searchable->kindAt(sourceRow)))
        return false;
    return !m_matcher || m_matcher(sourceRow);
}

} // namespace workbench
