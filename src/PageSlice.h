#pragma once

#include <QtCore/QList>
#include <QtCore/QVariant>

namespace tessaline {

/// One page of @p list. Pages count from 0; beyond the last page the first one is shown again.
/// Any number is allowed for either argument; what a page size of 0 or below or a negative page
/// gives is what QList::mid() makes of it.
QList<QVariant> pageSlice(const QList<QVariant> &list, int pageSize, int pageNumber);

} // namespace tessaline
