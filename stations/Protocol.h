#pragma once

#include <QtCore/QLatin1String>

/// Every name that client and station exchange, as the station spells it.
namespace stations::protocol {

namespace command {
inline constexpr QLatin1String AddBookmark("AddBookmark");
inline constexpr QLatin1String AddBookmarks("AddBookmarks");
inline constexpr QLatin1String DeleteBookmark("DeleteBookmark");
inline constexpr QLatin1String DeleteBookmarks("DeleteBookmarks");
inline constexpr QLatin1String UpdateBookmark("UpdateBookmark");
inline constexpr QLatin1String RemoveAllBookmarks("RemoveAllBookmarks");
// Without its k on purpose: installed clients and servers accept no other spelling.
inline constexpr QLatin1String QueryAllBookmarks("QueryAllBookmars");
inline constexpr QLatin1String QueryBookmarkForRecent("QueryBookmarkForRecent");
inline constexpr QLatin1String QueryBookmarkForTimeline("QueryBookmarkForTimeline");
// "Api", although the QML method ends in "API".
inline constexpr QLatin1String QueryBookmarkForApi("QueryBookmarkForApi");
inline constexpr QLatin1String GetRecycleSetting("GetRecycleSetting");
inline constexpr QLatin1String UpdateRecycleSetting("UpdateRecycleSetting");
inline constexpr QLatin1String QueryServerTimeZone("QuerySevTimezone");
inline constexpr QLatin1String QuerySettingPermission("QuerySettingPermission");
} // namespace command

namespace event {
inline constexpr QLatin1String BookmarkAdded("AddBookmark");
} // namespace event

namespace key {
inline constexpr QLatin1String BookmarkID("BookmarkID");
inline constexpr QLatin1String CameraID("CameraID");
inline constexpr QLatin1String LocationID("LocationID");
inline constexpr QLatin1String StartTimestamp("StartTimestamp");
inline constexpr QLatin1String EndTimestamp("EndTimestamp");
inline constexpr QLatin1String Description("Description");
inline constexpr QLatin1String Creator("Creator");
inline constexpr QLatin1String Group("Group");
inline constexpr QLatin1String Bookmarks("Bookmarks");
inline constexpr QLatin1String CameraIDList("CameraIDList");
inline constexpr QLatin1String RecentCount("RecentCnt");
// The two recycle keys begin with a small letter, all others with a capital.
inline constexpr QLatin1String ReserveHour("reserveHour");
inline constexpr QLatin1String EnableRecycle("enableRecycle");
} // namespace key

/// Result codes. The client distinguishes only success and failure; the numbers help to read logs.
namespace code {
inline constexpr QLatin1String Success("0");
inline constexpr QLatin1String BadPayload("1");      ///< missing key, wrong type, exceeded limit
inline constexpr QLatin1String UnknownBookmark("2"); ///< no bookmark with this identifier
inline constexpr QLatin1String UnknownCommand("3");
inline constexpr QLatin1String DatabaseError("4"); ///< nothing was changed; see the log
inline constexpr QLatin1String UnknownStation("5");
inline constexpr QLatin1String UnknownCamera("6"); ///< AddBookmark for a camera of another station
} // namespace code

} // namespace stations::protocol
