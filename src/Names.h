#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>

#include <utility>

// Every name that the plug-in exchanges with host, server or QML, one table for each set.
//
// The strings are built at load time with their characters on the heap, never as literals: a
// payload, record or role hash may outlive the library, and a key that pointed into the library's
// own memory would then point at nothing.
//
// clazy:excludeall=non-pod-global-static

namespace tessaline {

inline QString heapText(const char *text)
{
    return QString::fromLatin1(text);
}

namespace identity {
inline const QString PluginName = heapText("Corvanth");
inline const QString PluginID = heapText("2F6394EE90434A7190D7511370AFAE17");
inline const QString TopologyPluginID = heapText("1AA33B3D0AA047C9A202F1181284D2CD");
} // namespace identity

/// Commands, as sent and as answered.
namespace command {
inline const QString AddBookmark = heapText("AddBookmark");
inline const QString AddBookmarks = heapText("AddBookmarks");
inline const QString DeleteBookmark = heapText("DeleteBookmark");
inline const QString DeleteBookmarks = heapText("DeleteBookmarks");
inline const QString RemoveAllBookmarks = heapText("RemoveAllBookmarks");
inline const QString UpdateBookmark = heapText("UpdateBookmark");
inline const QString QueryBookmarkForTimeline = heapText("QueryBookmarkForTimeline");
inline const QString QueryBookmarkForRecent = heapText("QueryBookmarkForRecent");
/// Without its k on purpose: servers know the command only by this spelling.
inline const QString QueryAllBookmarks = heapText("QueryAllBookmars");
inline const QString QuerySevTimezone = heapText("QuerySevTimezone");
inline const QString QuerySettingPermission = heapText("QuerySettingPermission");
inline const QString GetRecycleSetting = heapText("GetRecycleSetting");
inline const QString UpdateRecycleSetting = heapText("UpdateRecycleSetting");
/// "Api" in the protocol, "API" in the method that QML calls.
inline const QString QueryBookmarkForApi = heapText("QueryBookmarkForApi");
} // namespace command

/// Server events that the plug-in follows.
namespace event {
inline const QString AddBookmark = heapText("AddBookmark");
} // namespace event

/// Result codes of answers; every other text is a failure.
namespace resultCode {
inline const QString Success = heapText("0");
} // namespace resultCode

inline bool isSuccess(const QString &code)
{
    return code == resultCode::Success;
}

/// Keys of the server's bookmark records, of command payloads and of answers.
namespace serverKey {
inline const QString BookmarkID = heapText("BookmarkID");
inline const QString CameraID = heapText("CameraID");
inline const QString LocationID = heapText("LocationID");
inline const QString StartTimestamp = heapText("StartTimestamp");
inline const QString EndTimestamp = heapText("EndTimestamp");
inline const QString Description = heapText("Description");
inline const QString Creator = heapText("Creator");
inline const QString Group = heapText("Group");
inline const QString CameraIDList = heapText("CameraIDList");
inline const QString RecentCnt = heapText("RecentCnt");
inline const QString Bookmarks = heapText("Bookmarks");
} // namespace serverKey

/// Keys of the recycle setting; lower camel case, unlike all other server keys.
namespace recycleKey {
inline const QString ReserveHour = heapText("reserveHour");
inline const QString EnableRecycle = heapText("enableRecycle");
} // namespace recycleKey

/// Keys of the display records that QML reads.
namespace displayKey {
inline const QString BookmarkID = heapText("bookmarkID");
inline const QString CameraID = heapText("cameraID");
/// Also the key under which QML names the station in the elements of a batch.
inline const QString RelayPath = heapText("relayPath");
inline const QString StartTimestamp = heapText("startTimestamp");
inline const QString EndTimestamp = heapText("endTimestamp");
inline const QString Description = heapText("description");
inline const QString Creator = heapText("creator");
inline const QString Group = heapText("group");
inline const QString CameraName = heapText("cameraName");
inline const QString DisplayDate = heapText("displayDate");
inline const QString DisplayDateTime = heapText("displayDateTime");
/// Shortened, unlike the server's key: QML reads it by this name.
inline const QString LocationID = heapText("locID");
inline const QString DisplayTimeRange = heapText("displayTimeRange");
} // namespace displayKey

/// Keys of the question that getFilteredBookmarkList() answers.
namespace filterKey {
inline const QString NodeID = heapText("nodeID");
inline const QString GroupKey = heapText("groupKey");
inline const QString Ascending = heapText("ascending");
inline const QString Text = heapText("text");
inline const QString StartTimestamp = displayKey::StartTimestamp;
inline const QString EndTimestamp = displayKey::EndTimestamp;
inline const QString PageNumber = heapText("pageNumber");
} // namespace filterKey

/// Keys of the answer of getFilteredBookmarkList() and of its groups.
namespace pageKey {
inline const QString TotalBookmarkNumber = heapText("totalBookmarkNumber");
inline const QString BookmarkGroupList = heapText("bookmarkGroupList");
inline const QString Title = heapText("title");
inline const QString BookmarkList = heapText("bookmarkList");
} // namespace pageKey

/// Roles of the topology plug-in's model.
namespace topologyRole {
inline const QString Id = heapText("idRole");
inline const QString Name = heapText("nameRole");
inline const QString NodeID = heapText("nodeIDRole");
inline const QString NodeType = heapText("nodeTypeRole");
} // namespace topologyRole

/// Roles that the plug-in adds to those of a timeline model.
enum TimelineRole {
    BookmarkIdRole = Qt::UserRole + 13,
    CameraIdRole,
    RelayPathRole,
    DescRole,
    CreatorRole,
    GroupRole,
    CameraNameRole,
    DispDateRole,
    DispDateTimeRole,
    LocationIdRole,
    DispTimeRangeRole,
};

inline const QList<std::pair<int, QByteArray>> timelineRoleNames = {
    {BookmarkIdRole, QByteArray("bookmarkIDRole")},
    {CameraIdRole, QByteArray("cameraIDRole")},
    {RelayPathRole, QByteArray("relayPathRole")},
    {DescRole, QByteArray("descRole")},
    {CreatorRole, QByteArray("creatorRole")},
    {GroupRole, QByteArray("groupRole")},
    {CameraNameRole, QByteArray("cameraNameRole")},
    {DispDateRole, QByteArray("dispDateRole")},
    {DispDateTimeRole, QByteArray("dispDateTimeRole")},
    {LocationIdRole, QByteArray("locationIDRole")},
    {DispTimeRangeRole, QByteArray("dispTimeRangeRole")},
};

} // namespace tessaline
