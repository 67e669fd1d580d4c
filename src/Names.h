#pragma once

#include <QtCore/QString>

// Every name that the plug-in exchanges with host, server or QML, one table for each set. The roles
// of timeline items are in BookmarkRecord.cpp, beside their values.
//
// The characters are on the heap: a payload, record or role hash may outlive the library, and a key
// made of a literal would then point into unloaded memory.
//
// clazy:excludeall=non-pod-global-static

namespace tessaline {

inline QString heapString(const char *text)
{
    return QString::fromLatin1(text);
}

namespace identity {
inline const QString PluginName = heapString("Corvanth");
inline const QString PluginID = heapString("2F6394EE90434A7190D7511370AFAE17");
inline const QString TopologyPluginID = heapString("1AA33B3D0AA047C9A202F1181284D2CD");
} // namespace identity

/// Commands, as sent and as answered.
namespace command {
inline const QString AddBookmark = heapString("AddBookmark");
inline const QString AddBookmarks = heapString("AddBookmarks");
inline const QString DeleteBookmark = heapString("DeleteBookmark");
inline const QString DeleteBookmarks = heapString("DeleteBookmarks");
inline const QString RemoveAllBookmarks = heapString("RemoveAllBookmarks");
inline const QString UpdateBookmark = heapString("UpdateBookmark");
inline const QString QueryBookmarkForTimeline = heapString("QueryBookmarkForTimeline");
inline const QString QueryBookmarkForRecent = heapString("QueryBookmarkForRecent");
/// Without its k on purpose: servers accept no other spelling.
inline const QString QueryAllBookmarks = heapString("QueryAllBookmars");
inline const QString QuerySevTimezone = heapString("QuerySevTimezone");
inline const QString QuerySettingPermission = heapString("QuerySettingPermission");
inline const QString GetRecycleSetting = heapString("GetRecycleSetting");
inline const QString UpdateRecycleSetting = heapString("UpdateRecycleSetting");
/// "Api" in the protocol, "API" in the method that QML calls.
inline const QString QueryBookmarkForApi = heapString("QueryBookmarkForApi");
} // namespace command

/// Server events that the plug-in handles.
namespace event {
inline const QString AddBookmark = heapString("AddBookmark");
} // namespace event

/// Result codes of answers; every other text is a failure.
namespace resultCode {
inline const QString Success = heapString("0");
} // namespace resultCode

inline bool isSuccess(const QString &code)
{
    return code == resultCode::Success;
}

/// Keys of the server's bookmark records, of command payloads and of answers.
namespace serverKey {
inline const QString BookmarkID = heapString("BookmarkID");
inline const QString CameraID = heapString("CameraID");
inline const QString LocationID = heapString("LocationID");
inline const QString StartTimestamp = heapString("StartTimestamp");
inline const QString EndTimestamp = heapString("EndTimestamp");
inline const QString Description = heapString("Description");
inline const QString Creator = heapString("Creator");
inline const QString Group = heapString("Group");
inline const QString CameraIDList = heapString("CameraIDList");
inline const QString RecentCnt = heapString("RecentCnt");
inline const QString Bookmarks = heapString("Bookmarks");
} // namespace serverKey

/// Keys of the recycle setting; lower camel case, unlike all other server keys.
namespace recycleKey {
inline const QString ReserveHour = heapString("reserveHour");
inline const QString EnableRecycle = heapString("enableRecycle");
} // namespace recycleKey

/// Keys of the display records that QML reads.
namespace displayKey {
inline const QString BookmarkID = heapString("bookmarkID");
inline const QString CameraID = heapString("cameraID");
/// Also the key under which QML names the station in the elements of a batch.
inline const QString RelayPath = heapString("relayPath");
inline const QString StartTimestamp = heapString("startTimestamp");
inline const QString EndTimestamp = heapString("endTimestamp");
inline const QString Description = heapString("description");
inline const QString Creator = heapString("creator");
inline const QString Group = heapString("group");
inline const QString CameraName = heapString("cameraName");
inline const QString DisplayDate = heapString("displayDate");
inline const QString DisplayDateTime = heapString("displayDateTime");
/// Shortened, unlike the server's key: QML reads it by this name.
inline const QString LocationID = heapString("locID");
inline const QString DisplayTimeRange = heapString("displayTimeRange");
} // namespace displayKey

/// Keys of the map that getFilteredBookmarkList() receives.
namespace filterKey {
inline const QString NodeID = heapString("nodeID");
inline const QString GroupKey = heapString("groupKey");
inline const QString Ascending = heapString("ascending");
inline const QString Text = heapString("text");
inline const QString StartTimestamp = displayKey::StartTimestamp;
inline const QString EndTimestamp = displayKey::EndTimestamp;
inline const QString PageNumber = heapString("pageNumber");
} // namespace filterKey

/// Keys of the page that getFilteredBookmarkList() returns, and of its groups.
namespace pageKey {
inline const QString TotalBookmarkNumber = heapString("totalBookmarkNumber");
inline const QString BookmarkGroupList = heapString("bookmarkGroupList");
inline const QString Title = heapString("title");
inline const QString BookmarkList = heapString("bookmarkList");
} // namespace pageKey

/// Roles of the topology plug-in's model.
namespace topologyRole {
inline const QString Id = heapString("idRole");
inline const QString Name = heapString("nameRole");
inline const QString NodeID = heapString("nodeIDRole");
inline const QString NodeType = heapString("nodeTypeRole");
} // namespace topologyRole

} // namespace tessaline
