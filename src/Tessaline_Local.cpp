#include "Tessaline.h"

#include "CameraNames.h"
#include "DisplayTexts.h"
#include "FrameworkWrapperBase.h"
#include "Log.h"
#include "Names.h"
#include "PageSlice.h"
#include "TimeShiftBufferModel.h"

#include <QtCore/QDateTime>
#include <QtCore/QHash>
#include <QtCore/QLocale>
#include <QtCore/QPointer>
#include <QtGui/QStandardItem>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

using namespace tessaline;

namespace {

/// Node type that marks a station reached through the connected server.
constexpr int SubStationType = 1;

/// The selector of the topology plug-in's query that gives the whole tree.
constexpr int WholeTree = 0;

/// Roles of a timeline's default set that have no meaning for bookmarks; they hold 0.
constexpr int UnusedTimelineRoles[] = {Qt::UserRole + 6, Qt::UserRole + 7, Qt::UserRole + 9};

QString textOf(const QVariantMap &record, const QString &key)
{
    return record.value(key).toString();
}

qint64 timestampOf(const QVariantMap &record, const QString &key)
{
    return record.value(key).toLongLong();
}

/// Keeps the records that pass, in their order.
template <typename Predicate>
void keepIf(QList<QVariant> &list, Predicate passes)
{
    list.removeIf([&](const QVariant &element) { return !passes(element.toMap()); });
}

/// Sorts by keys that are made once for each record; equal records keep their order.
template <typename KeyOf>
void sortByKey(QList<QVariant> &list, bool ascending, KeyOf keyOf)
{
    using Key = decltype(keyOf(QVariantMap()));
    std::vector<std::pair<Key, QVariant>> keyed;
    keyed.reserve(static_cast<std::size_t>(list.size()));
    for (const QVariant &element : std::as_const(list))
        keyed.emplace_back(keyOf(element.toMap()), element);
    std::stable_sort(keyed.begin(), keyed.end(), [ascending](const auto &left, const auto &right) {
        return ascending ? left.first < right.first : right.first < left.first;
    });
    std::transform(keyed.cbegin(), keyed.cend(), list.begin(),
                   [](const auto &entry) { return entry.second; });
}

} // namespace

// ---- Records ----

QVariantMap Tessaline::CreateBookmarkItem(const QVariantMap &record, const QString &relayPath,
                                          const QVariantMap &camNames) const
{
    const QString cameraID = textOf(record, serverKey::CameraID);
    const qint64 start = timestampOf(record, serverKey::StartTimestamp);
    const qint64 end = timestampOf(record, serverKey::EndTimestamp);
    const DisplayTexts texts = displayTexts(start, end, m_serverTimeZone);
    return {
        {displayKey::BookmarkID, textOf(record, serverKey::BookmarkID)},
        {displayKey::CameraID, cameraID},
        {displayKey::RelayPath, relayPath},
        {displayKey::StartTimestamp, start},
        {displayKey::EndTimestamp, end},
        {displayKey::Description, textOf(record, serverKey::Description)},
        {displayKey::Creator, textOf(record, serverKey::Creator)},
        {displayKey::Group, textOf(record, serverKey::Group)},
        {displayKey::CameraName, stationAndCameraName(camNames, relayPath, cameraID)},
        {displayKey::DisplayDate, texts.date},
        {displayKey::DisplayDateTime, texts.dateTime},
        {displayKey::LocationID, textOf(record, serverKey::LocationID)},
        {displayKey::DisplayTimeRange, texts.timeRange},
    };
}

QVariantList Tessaline::CreateBookmarkItems(const QVariant &data, const QString &relayPath)
{
    const QPointer<Tessaline> self(this);
    const QVariantMap camNames = GetAllCamNames();
    if (!self)
        return {};
    QVariantList items;
    const QVariantList records = data.toMap().value(serverKey::Bookmarks).toList();
    for (const QVariant &record : records)
        items.append(CreateBookmarkItem(record.toMap(), relayPath, camNames));
    return items;
}

QStandardItem *Tessaline::CreateBookmarkModelItem(const QVariantMap &record,
                                                  const QString &relayPath,
                                                  const QVariantMap &camNames) const
{
    try {
        const QString bookmarkID = textOf(record, serverKey::BookmarkID);
        const QString cameraID = textOf(record, serverKey::CameraID);
        const qint64 start = timestampOf(record, serverKey::StartTimestamp);
        const qint64 end = timestampOf(record, serverKey::EndTimestamp);
        const DisplayTexts texts = displayTexts(start, end, m_serverTimeZone);

        auto item = std::make_unique<QStandardItem>();
        item->setData(bookmarkID, TimeShiftBufferModel::ItemIdRole);
        item->setData(cameraID, TimeShiftBufferModel::ChannelIdRole);
        item->setData(start, TimeShiftBufferModel::StartTimestampRole);
        item->setData(end, TimeShiftBufferModel::EndTimestampRole);
        for (const int role : UnusedTimelineRoles)
            item->setData(0, role);
        item->setData(bookmarkID, BookmarkIdRole);
        item->setData(cameraID, CameraIdRole);
        item->setData(relayPath, RelayPathRole);
        item->setData(textOf(record, serverKey::Description), DescRole);
        item->setData(textOf(record, serverKey::Creator), CreatorRole);
        item->setData(textOf(record, serverKey::Group), GroupRole);
        item->setData(stationAndCameraName(camNames, relayPath, cameraID), CameraNameRole);
        item->setData(texts.date, DispDateRole);
        item->setData(texts.dateTime, DispDateTimeRole);
        item->setData(textOf(record, serverKey::LocationID), LocationIdRole);
        item->setData(texts.timeRange, DispTimeRangeRole);
        return item.release();
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

QList<QString> Tessaline::GetAllSubStations()
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
    QList<QString> stations;
    for (auto node = nodeTypes.cbegin(); node != nodeTypes.cend(); ++node) {
        if (node->toInt() == SubStationType) // each once, as the map holds a key but once
            stations.append(node.key());
    }
    return stations;
}

// ---- Filters ----

void Tessaline::filterBookmarkListByNodeID(QList<QVariant> &list, const QString &nodeID)
{
    if (nodeID.isEmpty())
        return;
    keepIf(list, [&](const QVariantMap &record) {
        return cameraKey(textOf(record, displayKey::RelayPath),
                         textOf(record, displayKey::CameraID)) == nodeID;
    });
}

void Tessaline::filterBookmarkListByText(QList<QVariant> &list, const QString &text)
{
    if (text.isEmpty())
        return;
    static const QString *const searched[] = {&displayKey::CameraName, &displayKey::Creator,
                                              &displayKey::Description,
                                              &displayKey::DisplayTimeRange};
    keepIf(list, [&](const QVariantMap &record) {
        return std::any_of(std::begin(searched), std::end(searched), [&](const QString *key) {
            return textOf(record, *key).contains(text, Qt::CaseInsensitive);
        });
    });
}

void Tessaline::filterBookmarkListByTimestamp(QList<QVariant> &list, const qint64 &startTimestamp,
                                              const qint64 &endTimestamp)
{
    // The start alone decides: a bookmark that runs into the range does not belong to it.
    keepIf(list, [&](const QVariantMap &record) {
        const qint64 start = timestampOf(record, displayKey::StartTimestamp);
        return startTimestamp <= start && start <= endTimestamp;
    });
}

void Tessaline::filterBookmarkListByPageNumber(QList<QVariant> &list, int pageNumber)
{
    list = pageSlice(list, m_bookmarksPerPage, pageNumber);
}

void Tessaline::setBookmarkNumberPerPage(int number)
{
    m_bookmarksPerPage = number;
}

// ---- Sorting, grouping and the filtered list ----

void Tessaline::sortBookmarkListByKey(QList<QVariant> &list, const QString &key, bool ascending)
{
    if (key == displayKey::DisplayTimeRange || key == displayKey::DisplayDate) {
        // By the day as shown, even for the time range. A two-digit year is of the 1900s, which is
        // the base year that fromString() takes when it is not told another.
        const QString format = QLocale::system().dateFormat(QLocale::ShortFormat);
        sortByKey(list, ascending, [&](const QVariantMap &record) {
            return QDateTime::fromString(textOf(record, displayKey::DisplayDate), format);
        });
        return;
    }
    // Numbers too are compared as texts.
    sortByKey(list, ascending, [&](const QVariantMap &record) { return textOf(record, key); });
}

QList<QVariant> Tessaline::generateBookmarkGroupList(const QList<QVariant> &list,
                                                     QString groupKey) const
{
    if (groupKey == displayKey::DisplayTimeRange)
        groupKey = displayKey::DisplayDate;

    QStringList titles;
    QHash<QString, QVariantList> recordsByTitle;
    for (const QVariant &element : list) {
        const QString title = textOf(element.toMap(), groupKey);
        QVariantList &records = recordsByTitle[title];
        if (records.isEmpty())
            titles.append(title);
        records.append(element);
    }

    QList<QVariant> groups;
    for (const QString &title : std::as_const(titles)) {
        groups.append(QVariantMap{{pageKey::Title, title},
                                  {pageKey::BookmarkList, recordsByTitle.value(title)}});
    }
    return groups;
}

QVariantMap Tessaline::getFilteredBookmarkList(const QVariantMap &filterMap)
{
    const QString groupKey = textOf(filterMap, filterKey::GroupKey);
    QList<QVariant> list = m_allBookmarks;
    filterBookmarkListByTimestamp(list, timestampOf(filterMap, filterKey::StartTimestamp),
                                  timestampOf(filterMap, filterKey::EndTimestamp));
    filterBookmarkListByText(list, textOf(filterMap, filterKey::Text));
    filterBookmarkListByNodeID(list, textOf(filterMap, filterKey::NodeID));
    const qint64 total = list.size();

    sortBookmarkListByKey(list, displayKey::StartTimestamp, false);
    sortBookmarkListByKey(list, groupKey, filterMap.value(filterKey::Ascending).toBool());
    filterBookmarkListByPageNumber(list, filterMap.value(filterKey::PageNumber).toInt());
    return {{pageKey::TotalBookmarkNumber, total},
            {pageKey::BookmarkGroupList, generateBookmarkGroupList(list, groupKey)}};
}

QVariantList Tessaline::getBookmarkListByNodeID(const QString &nodeID)
{
    QVariantList list = m_allBookmarks;
    filterBookmarkListByNodeID(list, nodeID);
    // The panel of recent bookmarks relies on being put in order by this call.
    sortBookmarkListByKey(m_recentBookmarks, displayKey::StartTimestamp, false);
    return list;
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
    sendCommand(command::UpdateRecycleSetting,
                QVariantMap{{recycleKey::ReserveHour, reserveHour},
                            {recycleKey::EnableRecycle, enableRecycle}},
                nullptr, QString());
}
