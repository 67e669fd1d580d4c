#pragma once

#include <QtCore/QString>
#include <QtCore/QTimeZone>
#include <QtCore/QVariant>

/// Computes the plug-in's lists and pages in the simplest way: each function walks over lists of
/// maps and stores nothing. Tests compare its results with the plug-in's, except for the order of
/// equal records. The benchmark compares its times with the plug-in's.
namespace referencemodel {

/// Converts a server record to a display record.
/// @param camNames names of stations by relay path and of cameras by camera key
/// @param zone zone of the date and time texts
QVariantMap displayRecord(const QVariantMap &record, const QString &relayPath,
                          const QVariantMap &camNames, const QTimeZone &zone);

/// Converts a server record to the values of a timeline item, by role. Parameters as in
/// displayRecord().
QMap<int, QVariant> timelineItem(const QVariantMap &record, const QString &relayPath,
                                 const QVariantMap &camNames, const QTimeZone &zone);

/// Keeps the display records that start between @p start and @p end, both inclusive.
void filterByTimestamp(QVariantList &list, qint64 start, qint64 end);
/// Keeps the records whose searched texts contain @p text in any case; all if it is empty.
void filterByText(QVariantList &list, const QString &text);
/// Keeps the records of one camera; all if the camera key is empty.
void filterByNodeID(QVariantList &list, const QString &nodeID);
/// Keeps one page. Pages count from 0; a page after the last one gives the first.
void filterByPage(QVariantList &list, int pageSize, int pageNumber);
/// Sorts by the text of a key. The keys of dates and time ranges sort by date.
void sortByKey(QVariantList &list, const QString &key, bool ascending);
/// @return the groups of a page in the order of their first record
QVariantList groups(const QVariantList &list, QString groupKey);

/// @return the result of getFilteredBookmarkList() for these records
QVariantMap filteredPage(QVariantList list, const QVariantMap &filterMap, int pageSize = 50);

/// Compares a page of the plug-in with filteredPage(). Records with equal sort values may be in any
/// order.
/// @param page result of the plug-in's getFilteredBookmarkList()
/// @param list all display records
/// @return the first difference; empty if there is none
QString differenceOf(const QVariantMap &page, const QVariantList &list,
                     const QVariantMap &filterMap);

/// Splits a batch by relay path and removes repeated entries.
QMap<QString, QVariantList> groupBatch(const QVariantList &targets, qint64 start, qint64 end,
                                       const QString &desc, const QString &creator,
                                       const QString &group);

} // namespace referencemodel
