#include "Tessaline.h"

#include "CameraNames.h"
#include "FrameworkWrapperBase.h"
#include "Guard.h"
#include "Log.h"
#include "MapFields.h"
#include "Names.h"
#include "PageSlice.h"
#include "TimeShiftBufferModel.h"

#include <QtCore/QPointer>
#include <QtGui/QStandardItem>

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

using namespace tessaline;

namespace {

/// Node type that marks a station reached through the connected server.
constexpr int SubStationType = 1;

/// The selector of the topology plug-in's query that gives the whole tree.
constexpr int WholeTree = 0;

constexpr int timelineItemRoles[] = {
    TimeShiftBufferModel::ItemIdRole, TimeShiftBufferModel::ChannelIdRole,
    TimeShiftBufferModel::StartTimestampRole, TimeShiftBufferModel::EndTimestampRole,
    BookmarkIdRole, CameraIdRole, RelayPathRole, DescRole, CreatorRole, GroupRole, CameraNameRole,
    DispDateRole, DispDateTimeRole, LocationIdRole, DispTimeRangeRole,
    // Without a meaning for bookmarks; they hold 0.
    Qt::UserRole + 6, Qt::UserRole + 7, Qt::UserRole + 9};

/// Keys of a server's bookmark record, in ascending order.
const std::array serverRecordKeys{&serverKey::BookmarkID,   &serverKey::CameraID,
                                  &serverKey::Creator,      &serverKey::Description,
                                  &serverKey::EndTimestamp, &serverKey::Group,
                                  &serverKey::LocationID,   &serverKey::StartTimestamp};

/// A timeline item with 0 for each role: in a copy of it the values are replaced, where those
/// of a new item would have to be moved again and again as they become more.
std::unique_ptr<QStandardItem> timelineItemShape()
{
    auto item = std::make_unique<QStandardItem>();
    for (const int role : timelineItemRoles)
        item->setData(0, role);
    return item;
}

/// Reaches the assignment that a QStandardItem keeps to its heirs. No item is of this class, as it
/// would leave its virtual functions behind when the library goes; nor made by clone(), as that
/// leaks when memory is short.
struct CopiedItem : QStandardItem
{
    using QStandardItem::operator=;

    static void assign(QStandardItem &item, const QStandardItem &other)
    {
        using Assignment = QStandardItem &(QStandardItem::*)(const QStandardItem &);
        (item.*static_cast<Assignment>(&CopiedItem::operator=))(other);
    }
};

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
                                          DisplayTexts &texts)
{
    const auto [bookmarkID, camera, creator, description, endTimestamp, group, locationID,
                startTimestamp] = valuesOf(record, serverRecordKeys);
    const QString cameraID = camera->toString();
    const qint64 start = startTimestamp->toLongLong();
    const qint64 end = endTimestamp->toLongLong();
    const DisplayTexts::Texts shown = texts.of(start, end);

    static const MapShape display(displayRecordKeys);
    return display.filled({bookmarkID->toString(), cameraID, camNames.withStation(cameraID),
                           creator->toString(), description->toString(), shown.date, shown.dateTime,
                           shown.timeRange, end, group->toString(), locationID->toString(),
                           camNames.relayPath(), start});
}

DisplayTexts &Tessaline::displayTexts()
{
    if (!m_displayTexts || !m_displayTexts->holdFor(m_serverTimeZone))
        m_displayTexts.emplace(m_serverTimeZone);
    return *m_displayTexts;
}

std::unique_ptr<QStandardItem> Tessaline::CreateBookmarkModelItem(const QVariantMap &record,
                                                                  CameraNames &camNames,
                                                                  DisplayTexts &texts)
{
    try {
        const auto [bookmark, camera, creator, description, endTimestamp, group, locationID,
                    startTimestamp] = valuesOf(record, serverRecordKeys);
        const QString bookmarkID = bookmark->toString();
        const QString cameraID = camera->toString();
        const qint64 start = startTimestamp->toLongLong();
        const qint64 end = endTimestamp->toLongLong();
        const DisplayTexts::Texts shown = texts.of(start, end);

        static const std::unique_ptr<QStandardItem> shape = timelineItemShape();
        auto item = std::make_unique<QStandardItem>();
        CopiedItem::assign(*item, *shape);
        item->setData(bookmarkID, TimeShiftBufferModel::ItemIdRole);
        item->setData(cameraID, TimeShiftBufferModel::ChannelIdRole);
        item->setData(start, TimeShiftBufferModel::StartTimestampRole);
        item->setData(end, TimeShiftBufferModel::EndTimestampRole);
        item->setData(bookmarkID, BookmarkIdRole);
        item->setData(cameraID, CameraIdRole);
        item->setData(camNames.relayPath(), RelayPathRole);
        item->setData(description->toString(), DescRole);
        item->setData(creator->toString(), CreatorRole);
        item->setData(group->toString(), GroupRole);
        item->setData(camNames.withStation(cameraID), CameraNameRole);
        item->setData(shown.date, DispDateRole);
        item->setData(shown.dateTime, DispDateTimeRole);
        item->setData(locationID->toString(), LocationIdRole);
        item->setData(shown.timeRange, DispTimeRangeRole);
        return item;
    } catch (...) {
        LOG_ERROR("%s, create model item failed", "Tessaline::CreateBookmarkModelItem");
        return nullptr;
    }
}

// ---- Directory ----

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
        if (node->toInt() == SubStationType) // each once, as the map holds a key but once
            stations.push_back(node.key());
    }
    return stations;
}

// ---- Filters ----

Rows Tessaline::filterBookmarkListByTimestamp(qint64 startTimestamp, qint64 endTimestamp) const
{
    // The start alone decides: a bookmark that runs into the range does not belong to it.
    return m_allBookmarksIndex.startingBetween(startTimestamp, endTimestamp);
}

void Tessaline::filterBookmarkListByText(Rows &rows, const QString &text) const
{
    if (!text.isEmpty())
        m_allBookmarksIndex.keepText(rows, text, m_allBookmarks);
}

void Tessaline::filterBookmarkListByNodeID(Rows &rows, const QString &nodeID) const
{
    if (!nodeID.isEmpty())
        m_allBookmarksIndex.keepCamera(rows, nodeID);
}

Slice Tessaline::filterBookmarkListByPageNumber(const Rows &rows, int pageNumber) const
{
    return pageSlice(rows.size(), m_bookmarksPerPage, pageNumber);
}

void Tessaline::setBookmarkNumberPerPage(int number)
{
    m_bookmarksPerPage = number;
}

// ---- Sorting, grouping and the filtered list ----

void Tessaline::sortBookmarkListByKey(Rows &rows, const QString &key, bool ascending, Slice page)
{
    m_allBookmarksIndex.sort(rows, key, ascending, page, m_allBookmarks);
}

QVariantList Tessaline::bookmarksAt(const Rows &rows, Slice slice) const
{
    QVariantList list;
    for (std::size_t i = slice.first; i < slice.second; ++i)
        list.append(m_allBookmarks.at(rows[i]));
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
    return guarded("Tessaline::getFilteredBookmarkList", [&]() -> QVariantMap {
        const QString groupKey = textOf(filterMap, filterKey::GroupKey);
        Rows rows = filterBookmarkListByTimestamp(timestampOf(filterMap, filterKey::StartTimestamp),
                                                  timestampOf(filterMap, filterKey::EndTimestamp));
        filterBookmarkListByText(rows, textOf(filterMap, filterKey::Text));
        filterBookmarkListByNodeID(rows, textOf(filterMap, filterKey::NodeID));
        const auto total = static_cast<qint64>(rows.size());

        const Slice page =
            filterBookmarkListByPageNumber(rows, filterMap.value(filterKey::PageNumber).toInt());
        sortBookmarkListByKey(rows, groupKey, filterMap.value(filterKey::Ascending).toBool(), page);
        return {{pageKey::TotalBookmarkNumber, total},
                {pageKey::BookmarkGroupList,
                 generateBookmarkGroupList(bookmarksAt(rows, page), groupKey)}};
    });
}

QVariantList Tessaline::getBookmarkListByNodeID(const QString &nodeID)
{
    return guarded("Tessaline::getBookmarkListByNodeID", [&] {
        Rows rows = filterBookmarkListByTimestamp(std::numeric_limits<qint64>::min(),
                                                  std::numeric_limits<qint64>::max());
        filterBookmarkListByNodeID(rows, nodeID);
        sortRecentBookmarks();
        return bookmarksAt(rows, {0, rows.size()});
    });
}

/// Newest start first, as the panel of recent bookmarks relies on; but by the number's text.
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

// Both requests ignore whether they could be sent: they return nothing that could tell.

void Tessaline::getRecycleSetting()
{
    sendCommand(command::GetRecycleSetting, QVariant(), nullptr, QString());
}

void Tessaline::updateRecycleSetting(uint reserveHour, bool enableRecycle)
{
    guarded("Tessaline::updateRecycleSetting", [&] {
        sendCommand(command::UpdateRecycleSetting,
                    QVariantMap{{recycleKey::ReserveHour, reserveHour},
                                {recycleKey::EnableRecycle, enableRecycle}},
                    nullptr, QString());
    });
}
