// Records, the topology's names, the list of all bookmarks, and the recycle setting.

#include "Tessaline.h"

#include "CameraNames.h"
#include "FrameworkWrapperBase.h"
#include "Log.h"
#include "Names.h"
#include "NoThrow.h"
#include "TimeFormatter.h"

#include <QtGui/QStandardItem>

#include <algorithm>
#include <limits>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

using namespace tessaline;

namespace {

/// Node type that marks a station reached through the connected server.
constexpr int SubStationType = 1;

/// The argument with which the topology plug-in returns the whole tree.
constexpr int WholeTree = 0;

QString textOf(const QVariantMap &record, const QString &key)
{
    return record.value(key).toString();
}

qint64 timestampOf(const QVariantMap &record, const QString &key)
{
    return record.value(key).toLongLong();
}

} // namespace

// ---- Records ----

QVariantMap Tessaline::CreateBookmarkItem(const QVariantMap &record, CameraNames &camNames,
                                          TimeFormatter &formatter)
{
    return toDisplayMap(makeRecord(record, camNames, formatter));
}

std::unique_ptr<QStandardItem> Tessaline::CreateBookmarkModelItem(const QVariantMap &record,
                                                                  CameraNames &camNames,
                                                                  TimeFormatter &formatter)
{
    try {
        return toTimelineItem(makeRecord(record, camNames, formatter));
    } catch (...) {
        LOG_ERROR("%s, create model item failed", "Tessaline::CreateBookmarkModelItem");
        return nullptr;
    }
}

std::shared_ptr<TimeFormatter> Tessaline::timeFormatter()
{
    if (!m_timeFormatter || !m_timeFormatter->isValidFor(m_serverTimeZone))
        m_timeFormatter = std::make_shared<TimeFormatter>(m_serverTimeZone);
    return m_timeFormatter;
}

// ---- Topology ----

QObject *Tessaline::findTopologyPlugin() const
{
    return m_framework ? m_framework->FindPlugin(m_hostHandle, identity::TopologyPluginID)
                       : nullptr;
}

QVariantMap Tessaline::GetAllCamNames()
{
    QObject *const topology = findTopologyPlugin();
    if (!topology) {
        LOG_ERROR("%s, get TopologyPlugin failed", "Tessaline::GetAllCamNames");
        return {};
    }
    QVariantMap names;
    QMetaObject::invokeMethod(topology, "getValuesFromModel", Qt::DirectConnection,
                              Q_RETURN_ARG(QVariantMap, names), Q_ARG(int, WholeTree),
                              Q_ARG(QString, topologyRole::Id), Q_ARG(QString, topologyRole::Name));
    return names;
}

std::vector<QString> Tessaline::GetAllSubStations()
{
    QObject *const topology = findTopologyPlugin();
    if (!topology) {
        LOG_ERROR("%s, get TopologyPlugin failed", "Tessaline::GetAllSubStations");
        return {};
    }
    QVariantMap nodeTypes;
    QMetaObject::invokeMethod(topology, "getValuesFromModel", Qt::AutoConnection,
                              Q_RETURN_ARG(QVariantMap, nodeTypes), Q_ARG(int, WholeTree),
                              Q_ARG(QString, topologyRole::NodeID),
                              Q_ARG(QString, topologyRole::NodeType));
    std::vector<QString> stations;
    for (auto node = nodeTypes.cbegin(); node != nodeTypes.cend(); ++node) {
        if (node->toInt() == SubStationType)
            stations.push_back(node.key());
    }
    return stations;
}

// ---- Filters ----

Rows Tessaline::filterBookmarkListByTimestamp(qint64 startTimestamp, qint64 endTimestamp) const
{
    // Only the start matters: a bookmark that began before the range does not belong to it.
    return m_allBookmarks.rowsInRange(startTimestamp, endTimestamp);
}

void Tessaline::filterBookmarkListByText(Rows &rows, const QString &text) const
{
    if (!text.isEmpty())
        m_allBookmarks.filterByText(rows, text);
}

void Tessaline::filterBookmarkListByNodeID(Rows &rows, const QString &nodeID) const
{
    if (!nodeID.isEmpty())
        m_allBookmarks.filterByCamera(rows, nodeID);
}

Range Tessaline::filterBookmarkListByPageNumber(const Rows &rows, int pageNumber) const
{
    return pageRange(rows.size(), m_bookmarksPerPage, pageNumber);
}

void Tessaline::setBookmarkNumberPerPage(int number)
{
    m_bookmarksPerPage = number;
}

// ---- Sorting, grouping and the filtered list ----

void Tessaline::sortBookmarkListByKey(Rows &rows, const QString &key, bool ascending, Range page)
{
    m_allBookmarks.sort(rows, key, ascending, page);
}

QVariantList Tessaline::bookmarksAt(const Rows &rows, Range range) const
{
    QVariantList list;
    for (std::size_t i = range.first; i < range.end; ++i)
        list.append(toDisplayMap(m_allBookmarks.record(rows[i])));
    return list;
}

QList<QVariant> Tessaline::generateBookmarkGroupList(const QList<QVariant> &list,
                                                     QString groupKey) const
{
    if (groupKey == displayKey::DisplayTimeRange)
        groupKey = displayKey::DisplayDate;

    QStringList titles;
    std::unordered_map<QString, QVariantList> recordsByTitle;
    for (const QVariant &element : list) {
        const QString title = textOf(element.toMap(), groupKey);
        QVariantList &records = recordsByTitle[title];
        if (records.isEmpty())
            titles.append(title);
        records.append(element);
    }

    QList<QVariant> groups;
    for (const QString &title : std::as_const(titles)) {
        groups.append(
            QVariantMap{{pageKey::Title, title}, {pageKey::BookmarkList, recordsByTitle[title]}});
    }
    return groups;
}

QVariantMap Tessaline::getFilteredBookmarkList(const QVariantMap &filterMap)
{
    return noThrow("Tessaline::getFilteredBookmarkList", [&]() -> QVariantMap {
        const QString groupKey = textOf(filterMap, filterKey::GroupKey);
        Rows rows = filterBookmarkListByTimestamp(timestampOf(filterMap, filterKey::StartTimestamp),
                                                  timestampOf(filterMap, filterKey::EndTimestamp));
        filterBookmarkListByText(rows, textOf(filterMap, filterKey::Text));
        filterBookmarkListByNodeID(rows, textOf(filterMap, filterKey::NodeID));
        const auto total = static_cast<qint64>(rows.size());

        const Range page =
            filterBookmarkListByPageNumber(rows, filterMap.value(filterKey::PageNumber).toInt());
        sortBookmarkListByKey(rows, groupKey, filterMap.value(filterKey::Ascending).toBool(), page);
        return {{pageKey::TotalBookmarkNumber, total},
                {pageKey::BookmarkGroupList,
                 generateBookmarkGroupList(bookmarksAt(rows, page), groupKey)}};
    });
}

QVariantList Tessaline::getBookmarkListByNodeID(const QString &nodeID)
{
    return noThrow("Tessaline::getBookmarkListByNodeID", [&] {
        QVariantList bookmarks = bookmarksOfCamera(nodeID);
        sortRecentBookmarks();
        return bookmarks;
    });
}

QVariantList Tessaline::bookmarksOfCamera(const QString &nodeID) const
{
    Rows rows = filterBookmarkListByTimestamp(std::numeric_limits<qint64>::min(),
                                              std::numeric_limits<qint64>::max());
    filterBookmarkListByNodeID(rows, nodeID);
    return bookmarksAt(rows, {0, rows.size()});
}

/// Sorts the newest start first, as the panel expects; compares the numbers as texts.
void Tessaline::sortRecentBookmarks()
{
    const auto startText = [](const QVariant &record) {
        return textOf(record.toMap(), displayKey::StartTimestamp);
    };
    std::vector<QVariant> sorted(m_recentBookmarks.cbegin(), m_recentBookmarks.cend());
    std::stable_sort(sorted.begin(), sorted.end(),
                     [&](const QVariant &left, const QVariant &right) {
                         return startText(right) < startText(left);
                     });
    QVariantList list;
    for (const QVariant &record : sorted)
        list.append(record);
    m_recentBookmarks.swap(list);
}

// ---- Recycle settings ----

bool Tessaline::hasSettingPermission() const
{
    return m_hasSettingPermission;
}

// Both requests ignore a failed send: they return nothing, and their signals only report answers.

void Tessaline::getRecycleSetting()
{
    sendCommand(command::GetRecycleSetting, QVariant(), nullptr, QString());
}

void Tessaline::updateRecycleSetting(uint reserveHour, bool enableRecycle)
{
    noThrow("Tessaline::updateRecycleSetting", [&] {
        sendCommand(command::UpdateRecycleSetting,
                    QVariantMap{{recycleKey::ReserveHour, reserveHour},
                                {recycleKey::EnableRecycle, enableRecycle}},
                    nullptr, QString());
    });
}
