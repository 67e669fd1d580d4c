#pragma once

#include <QtCore/QString>
#include <QtCore/QTimeZone>
#include <QtCore/QVariant>

/// The plug-in's lists and pages computed in the plainest way: each step walks over lists of maps,
/// and nothing is kept from one question to the next. The plug-in must give the same results, ties
/// aside; the benchmark measures how much faster it does.
namespace referencemodel {

/// The display record of a server record.
QVariantMap displayRecord(const QVariantMap &record, const QString &relayPath,
                          const QVariantMap &camNames, const QTimeZone &zone);

/// The values of a timeline item by role.
QMap<int, QVariant> timelineItem(const QVariantMap &record, const QString &relayPath,
                                 const QVariantMap &camNames, const QTimeZone &zone);

void filterByTimestamp(QVariantList &list, qint64 start, qint64 end);
void filterByText(QVariantList &list, const QString &text);
void filterByNodeID(QVariantList &list, const QString &nodeID);
void filterByPage(QVariantList &list, int pageSize, int pageNumber);
void sortByKey(QVariantList &list, const QString &key, bool ascending);
QVariantList groups(const QVariantList &list, QString groupKey);

/// One page of the panel, as getFilteredBookmarkList() answers.
QVariantMap filteredPage(QVariantList list, const QVariantMap &filterMap, int pageSize = 50);

/// Compares a page with the one that the filter gives. Records of equal rank may stand in any
/// order.
/// @return the first difference, or an empty text
QString differenceOf(const QVariantMap &page, const QVariantList &list,
                     const QVariantMap &filterMap);

/// The entries of a batch by relay path, each once.
QMap<QString, QVariantList> groupBatch(const QVariantList &targets, qint64 start, qint64 end,
                                       const QString &desc, const QString &creator,
                                       const QString &group);

} // namespace referencemodel
