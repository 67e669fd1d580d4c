#include "Checks.h"
#include "Host.h"
#include "Scenario.h"

#include <QtCore/QDateTime>

// Level 4: what each request sends, says and returns.

namespace check {

using namespace Qt::StringLiterals;

namespace {

void checkSingleRequests(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"all fields", "",
             "addBookmark('c', 'l', 'A', 1704067200000, 1704067260000, 'd', 'me', 'g')",
             R"(send AddBookmark@A {CameraID: QString "c", Creator: QString "me", Description: QString "d", EndTimestamp: qlonglong 1704067260000, Group: QString "g", LocationID: QString "l", StartTimestamp: qlonglong 1704067200000}
                = bool true)"},
            {"blanks stay", "grant",
             "addBookmark(' ', ' l ', ' A', 1, 2, ' d ', ' me ', ' g ')\nupdateBookmark(' b ', ' d ', ' g ')\ndeleteBookmark(' b ', ' A')\nremoveAllBookmarks(' A')\nqueryBookmarkForRecent(' c ', ' A', 1)",
             R"(send AddBookmark@ A {CameraID: QString " ", Creator: QString " me ", Description: QString " d ", EndTimestamp: qlonglong 2, Group: QString " g ", LocationID: QString " l ", StartTimestamp: qlonglong 1}
                = bool true
                send UpdateBookmark@ {BookmarkID: QString " b ", Description: QString " d ", Group: QString " g "}
                = bool true
                send DeleteBookmark@ A {BookmarkID: QString " b "}
                = bool true
                send RemoveAllBookmarks@ A invalid
                = bool true
                send QueryBookmarkForRecent@ A {LocationID: QString " c ", RecentCnt: int 1}
                = bool true)"},
            {"empty fields, end before start", "",
             "addBookmark('c', '', '', 2000, 1000, '', '', '')",
             R"(send AddBookmark@ {CameraID: QString "c", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 1000, Group: QString "", LocationID: QString "", StartTimestamp: qlonglong 2000}
                = bool true)"},
            {"no camera", "", "addBookmark('', 'l', 'A', 1, 2, 'd', 'me', 'g')",
             R"(log Tessaline_Req: %s, Location ID is empty <Tessaline::addBookmark>
                = bool false)"},
            {"null camera", "", "addBookmark(null, 'l', 'A', 1, 2, 'd', 'me', 'g')",
             R"(log Tessaline_Req: %s, Location ID is empty <Tessaline::addBookmark>
                = bool false)"},
            {"delete", "grant", "deleteBookmark('b', 'A')",
             R"(send DeleteBookmark@A {BookmarkID: QString "b"}
                = bool true)"},
            {"delete, no identifier", "grant", "deleteBookmark('', '')",
             R"(send DeleteBookmark@ {BookmarkID: QString ""}
                = bool true)"},
            {"update nothing", "", "updateBookmark('b')",
             R"(send UpdateBookmark@ {BookmarkID: QString "b"}
                = bool true)"},
            {"update with an empty text", "", "updateBookmark('b', '')",
             R"(send UpdateBookmark@ {BookmarkID: QString "b", Description: QString ""}
                = bool true)"},
            {"update the group", "", "updateBookmark('b', null, 'g')",
             R"(send UpdateBookmark@ {BookmarkID: QString "b", Group: QString "g"}
                = bool true)"},
            {"update both", "", "updateBookmark('b', 'd', '')",
             R"(send UpdateBookmark@ {BookmarkID: QString "b", Description: QString "d", Group: QString ""}
                = bool true)"},
            {"remove all", "grant", "removeAllBookmarks('A')",
             R"(send RemoveAllBookmarks@A invalid
                = bool true)"},
        });
}

void checkPermission(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"delete without", "", "deleteBookmark('b', 'A')",
             R"(signal deleteBookmarkResponsed(false)
                = bool false)"},
            {"remove all without", "", "removeAllBookmarks('A')",
             R"(signal removeAllBookmarksResponsed(false)
                = bool true)"},
            {"batch without", "",
             "deleteBookmarks([{'BookmarkID': '2', 'relayPath': 'B'}, {'BookmarkID': '1', 'relayPath': 'A'}, {'BookmarkID': '1', 'relayPath': 'A'}])",
             R"(signal deleteBookmarksResponsed(1,2)
                = bool true)"},
            {"empty batch without", "", "deleteBookmarks([])",
             R"(signal deleteBookmarksResponsed()
                = bool true)"},
            {"adding and updating need none", "",
             "addBookmark('c', '', '', 1, 2, '', '', '')\nupdateBookmark('b')",
             R"(send AddBookmark@ {CameraID: QString "c", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 2, Group: QString "", LocationID: QString "", StartTimestamp: qlonglong 1}
                = bool true
                send UpdateBookmark@ {BookmarkID: QString "b"}
                = bool true)"},
            {"taken back", "grant\nreply QuerySettingPermission@ ok false",
             "deleteBookmark('b', 'A')",
             R"(signal deleteBookmarkResponsed(false)
                = bool false)"},
            {"taken back by no value", "grant\nreply QuerySettingPermission@ ok",
             "deleteBookmark('b', 'A')",
             R"(signal deleteBookmarkResponsed(false)
                = bool false)"},
            {"given by a failed answer", "reply QuerySettingPermission@ -1 true",
             "deleteBookmark('b', 'A')",
             R"(send DeleteBookmark@A {BookmarkID: QString "b"}
                = bool true)"},
            {"kept over a connection", "grant\nconnect", "removeAllBookmarks('A')",
             R"(send RemoveAllBookmarks@A invalid
                = bool true)"},
            {"taken back by Init", "grant\ninitialise", "removeAllBookmarks('A')",
             R"(signal removeAllBookmarksResponsed(false)
                = bool true)"},
        });
}

void checkBatchRequests(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"by station", "",
             "addBookmarks([{'CameraID': '2', 'LocationID': 'l', 'relayPath': 'B'}, {'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}, {'CameraID': '0', 'LocationID': 'l', 'relayPath': 'A'}], 1, 2, 'd', 'me', 'g')",
             R"(send AddBookmarks@A [{CameraID: QString "1", Creator: QString "me", Description: QString "d", EndTimestamp: qlonglong 2, Group: QString "g", LocationID: QString "l", StartTimestamp: qlonglong 1}, {CameraID: QString "0", Creator: QString "me", Description: QString "d", EndTimestamp: qlonglong 2, Group: QString "g", LocationID: QString "l", StartTimestamp: qlonglong 1}] context 1
                send AddBookmarks@B [{CameraID: QString "2", Creator: QString "me", Description: QString "d", EndTimestamp: qlonglong 2, Group: QString "g", LocationID: QString "l", StartTimestamp: qlonglong 1}] context 1
                = bool true)"},
            {"doubles and no map", "",
             "addBookmarks([{'CameraID': '1', 'LocationID': 'l'}, 5, {'CameraID': '1', 'LocationID': 'l'}, {'CameraID': '1', 'LocationID': 'k'}], 1, 2, '', '', '')",
             R"(send AddBookmarks@ [{CameraID: QString "1", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 2, Group: QString "", LocationID: QString "l", StartTimestamp: qlonglong 1}, {CameraID: QString "", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 2, Group: QString "", LocationID: QString "", StartTimestamp: qlonglong 1}, {CameraID: QString "1", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 2, Group: QString "", LocationID: QString "k", StartTimestamp: qlonglong 1}] context 1
                = bool true)"},
            {"blanks and capitals stay", "grant",
             "addBookmarks([{'CameraID': ' 1 ', 'LocationID': ' l ', 'relayPath': ' A '}, {'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}, {'CameraID': '1', 'LocationID': 'L', 'relayPath': 'A'}], 1, 2, ' d ', ' me ', ' g ')\ndeleteBookmarks([{'BookmarkID': ' b ', 'relayPath': ' A '}, {'BookmarkID': 'b', 'relayPath': ' A '}])",
             R"(send AddBookmarks@ A  [{CameraID: QString " 1 ", Creator: QString " me ", Description: QString " d ", EndTimestamp: qlonglong 2, Group: QString " g ", LocationID: QString " l ", StartTimestamp: qlonglong 1}] context 1
                send AddBookmarks@A [{CameraID: QString "1", Creator: QString " me ", Description: QString " d ", EndTimestamp: qlonglong 2, Group: QString " g ", LocationID: QString "l", StartTimestamp: qlonglong 1}, {CameraID: QString "1", Creator: QString " me ", Description: QString " d ", EndTimestamp: qlonglong 2, Group: QString " g ", LocationID: QString "L", StartTimestamp: qlonglong 1}] context 1
                = bool true
                send DeleteBookmarks@ A  [{BookmarkID: QString " b "}, {BookmarkID: QString "b"}] context 2
                = bool true)"},
            {"numbers as identifiers", "grant",
             "deleteBookmarks([{'BookmarkID': 7, 'relayPath': 'A'}])",
             R"(send DeleteBookmarks@A [{BookmarkID: QString "7"}] context 1
                = bool true)"},
            {"delete by station", "grant",
             "deleteBookmarks([{'BookmarkID': 'x', 'relayPath': 'C'}, {'BookmarkID': 'x', 'relayPath': 'A'}, {'BookmarkID': 'x', 'relayPath': 'C'}, {'BookmarkID': 'w', 'relayPath': 'C'}])",
             R"(send DeleteBookmarks@A [{BookmarkID: QString "x"}] context 1
                send DeleteBookmarks@C [{BookmarkID: QString "x"}, {BookmarkID: QString "w"}] context 1
                = bool true)"},
            {"nothing to add", "", "addBookmarks([], 1, 2, 'd', 'me', 'g')", "= bool false"},
            {"nothing to delete", "grant", "deleteBookmarks([])", "= bool false"},
            {"one station refuses", "grant\nrefuse A",
             "deleteBookmarks([{'BookmarkID': 'x', 'relayPath': 'A'}, {'BookmarkID': 'y', 'relayPath': 'B'}])\nanswer 2 ok ['y']",
             R"(send DeleteBookmarks@A [{BookmarkID: QString "x"}] context 1 refused
                log Tessaline_Req: %s, send command failed <Tessaline::deleteBookmarks>
                send DeleteBookmarks@B [{BookmarkID: QString "y"}] context 1
                = bool true
                signal deleteBookmarksResponsed())"},
            {"overlapping", "grant",
             "deleteBookmarks([{'BookmarkID': 'x'}])\ndeleteBookmarks([{'BookmarkID': 'x'}])\nanswer 2 -1 ['x']\nanswer 1 ok",
             R"(send DeleteBookmarks@ [{BookmarkID: QString "x"}] context 1
                = bool true
                send DeleteBookmarks@ [{BookmarkID: QString "x"}] context 2
                = bool true
                signal deleteBookmarksResponsed(x)
                signal deleteBookmarksResponsed())"},
        });
}

void checkQueryRequests(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"all stations", "", "queryAllBookmarks()",
             R"(send QueryAllBookmars@A {} context 1
                send QueryAllBookmars@B {} context 1
                send QueryAllBookmars@C {} context 1
                = bool true)"},
            {"one station refuses", "refuse B",
             "queryAllBookmarks()\nanswer 1 ok {}\nanswer 3 ok {}",
             R"(send QueryAllBookmars@A {} context 1
                send QueryAllBookmars@B {} context 1 refused
                log Tessaline_Req: %s, SendCommand failed <Tessaline::queryAllBookmarks>
                send QueryAllBookmars@C {} context 1
                = bool true
                signal queryAllBookmarksResponsed(false)
                signal queryAllBookmarksResponsed(true))"},
            {"no stations", "topology gone", "queryAllBookmarks()",
             R"(log Tessaline_Local: %s, get TopologyPlugin failed <Tessaline::GetAllSubStations>
                = bool false)"},
            {"recent", "", "queryBookmarkForRecent('X', '', 255)",
             R"(send QueryBookmarkForRecent@ {LocationID: QString "X", RecentCnt: int 255}
                = bool true)"},
            {"none recent", "", "queryBookmarkForRecent('', 'A', 0)",
             R"(send QueryBookmarkForRecent@A {LocationID: QString "", RecentCnt: int 0}
                = bool true)"},
            {"for others", "", "queryBookmarkForAPI(['1', 2, {'a': true}], -5, -9)",
             R"(send QueryBookmarkForApi@ {CameraIDList: [QString "1", qlonglong 2, {a: bool true}], EndTimestamp: qlonglong -9, StartTimestamp: qlonglong -5})"},
            {"for others, no cameras", "", "queryBookmarkForAPI([], 1, 2)",
             "signal queryBookmarkForApiFinished(false)"},
            {"for others, no start", "", "queryBookmarkForAPI(['1'], 0, 2)",
             "signal queryBookmarkForApiFinished(false)"},
            {"for others, no end", "", "queryBookmarkForAPI(['1'], 1, 0)",
             "signal queryBookmarkForApiFinished(false)"},
            {"lists empty while asking",
             "queryAllBookmarks()\nanswer 1 ok {'Bookmarks': [{'BookmarkID': 'b'}]}\n"
             "reply QueryBookmarkForRecent@A ok {'Bookmarks': [{'BookmarkID': 'r'}]}\n"
             "reply QueryBookmarkForApi@ ok [{'BookmarkID': 'q'}]\nrefuse A B C",
             "list all\nlist recent\nlist api\nqueryBookmarkForRecent('1', 'A', 1)\nqueryAllBookmarks()\nlist all\nlist recent\nlist api",
             R"(list [A/b]
                list [A/r]
                list [q]
                send QueryBookmarkForRecent@A {LocationID: QString "1", RecentCnt: int 1} refused
                = bool false
                send QueryAllBookmars@A {} context 2 refused
                log Tessaline_Req: %s, SendCommand failed <Tessaline::queryAllBookmarks>
                send QueryAllBookmars@B {} context 2 refused
                log Tessaline_Req: %s, SendCommand failed <Tessaline::queryAllBookmarks>
                send QueryAllBookmars@C {} context 2 refused
                log Tessaline_Req: %s, SendCommand failed <Tessaline::queryAllBookmarks>
                = bool false
                list []
                list []
                list [q])"},
        });
}

void checkOtherRequests(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"two connections", "", "connect\nconnect",
             R"(send QuerySevTimezone@ invalid
                send QuerySettingPermission@ invalid
                send QuerySevTimezone@ invalid
                send QuerySettingPermission@ invalid)"},
            {"recycle settings", "", "getRecycleSetting()\nupdateRecycleSetting(4294967295, false)",
             R"(send GetRecycleSetting@ invalid
                send UpdateRecycleSetting@ {enableRecycle: bool false, reserveHour: uint 4294967295})"},
            {"recycle on", "", "updateRecycleSetting(72, true)",
             "send UpdateRecycleSetting@ {enableRecycle: bool true, reserveHour: uint 72}"},
            {"timeline", "show cell l A", "setTimelineBoundary(1, 5000, 'cell')",
             R"(timeline setBoundary(1, 5000, -1, 0)
                send QueryBookmarkForTimeline@A {EndTimestamp: qlonglong 5000, LocationID: QString "l", StartTimestamp: qlonglong 1} context 1)"},
        });
}

void checkRefusedSends(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"add", "refuse A", "addBookmark('c', '', 'A', 1, 2, '', '', '')",
             R"(send AddBookmark@A {CameraID: QString "c", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 2, Group: QString "", LocationID: QString "", StartTimestamp: qlonglong 1} refused
                log Tessaline_Req: %s, send command failed <Tessaline::addBookmark>
                = bool false)"},
            {"delete", "grant\nrefuse A", "deleteBookmark('b', 'A')",
             R"(send DeleteBookmark@A {BookmarkID: QString "b"} refused
                log Tessaline_Req: %s, send command failed <Tessaline::deleteBookmark>
                = bool false)"},
            {"update", "refuse -", "updateBookmark('b')",
             R"(send UpdateBookmark@ {BookmarkID: QString "b"} refused
                log Tessaline_Req: %s, send command failed <Tessaline::updateBookmark>
                = bool false)"},
            {"remove all", "grant\nrefuse A", "removeAllBookmarks('A')",
             R"(send RemoveAllBookmarks@A invalid refused
                log Tessaline_Req: %s, send command failed <Tessaline::removeAllBookmarks>
                = bool false)"},
            {"add many", "refuse A B",
             "addBookmarks([{'CameraID': '1', 'relayPath': 'A'}, {'CameraID': '1', 'relayPath': 'B'}], 1, 2, '', '', '')",
             R"(send AddBookmarks@A [{CameraID: QString "1", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 2, Group: QString "", LocationID: QString "", StartTimestamp: qlonglong 1}] context 1 refused
                log Tessaline_Req: %s, send command failed <Tessaline::addBookmarks>
                send AddBookmarks@B [{CameraID: QString "1", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 2, Group: QString "", LocationID: QString "", StartTimestamp: qlonglong 1}] context 1 refused
                log Tessaline_Req: %s, send command failed <Tessaline::addBookmarks>
                = bool false)"},
            {"recent", "refuse A", "queryBookmarkForRecent('X', 'A', 1)",
             R"(send QueryBookmarkForRecent@A {LocationID: QString "X", RecentCnt: int 1} refused
                = bool false)"},
            {"silent ones", "refuse -",
             "connect\ngetRecycleSetting()\nupdateRecycleSetting(1, true)\nqueryBookmarkForAPI(['1'], 1, 2)",
             R"(send QuerySevTimezone@ invalid refused
                send QuerySettingPermission@ invalid refused
                send GetRecycleSetting@ invalid refused
                send UpdateRecycleSetting@ {enableRecycle: bool true, reserveHour: uint 1} refused
                send QueryBookmarkForApi@ {CameraIDList: [QString "1"], EndTimestamp: qlonglong 2, StartTimestamp: qlonglong 1} refused)"},
            {"timeline", "show cell l A\nrefuse A", "setTimelineBoundary(1, 2, 'cell')",
             R"(timeline setBoundary(1, 2, -1, 0)
                send QueryBookmarkForTimeline@A {EndTimestamp: qlonglong 2, LocationID: QString "l", StartTimestamp: qlonglong 1} context 1 refused)"},
        });
}

QString millisecondsOf(const QString &localTime)
{
    return QString::number(
        QDateTime::fromString(localTime, u"yyyy/MM/dd hh:mm:ss"_s).toMSecsSinceEpoch());
}

void checkDateTimes(Trial &trial)
{
    LoggingHost host(trial);
    if (!host)
        return;
    const QString start = u"2024/01/01 00:00:00"_s;
    const QString end = u"2024/07/01 01:02:03"_s;
    const QString query = u"queryBookmarkForAPI(['1'], '%1', '%2')"_s;
    const QString batch = u"addBookmarks([{}], '%1', '%2', '', '', '')"_s;
    // Forwards, backwards and for a moment: the order is the server's business.
    for (const auto &[first, last] :
         {std::pair(start, end), std::pair(end, start), std::pair(end, end)}) {
        trial.compare(u"query"_s,
                      u"send QueryBookmarkForApi@ {CameraIDList: [QString \"1\"], EndTimestamp: "
                      "qlonglong %2, StartTimestamp: qlonglong %1}"_s.arg(millisecondsOf(first),
                                                                          millisecondsOf(last)),
                      host->play(query.arg(first, last)));
        trial.compare(
            u"batch"_s,
            u"AddBookmarks@ [{CameraID: QString \"\", Creator: QString \"\", Description: QString \"\", EndTimestamp: qlonglong %2, Group: QString \"\", LocationID: QString \"\", StartTimestamp: qlonglong %1}]"_s
                .arg(millisecondsOf(first), millisecondsOf(last)),
            host->play(batch.arg(first, last)).section(u' ', 1).section(u" context"_s, 0, 0));
    }
    for (const char *wrong : {"", "2024/13/01 00:00:00", "2024/01/01", "2024-01-01 00:00:00",
                              "2024/1/1 0:0:0", "2024/02/30 00:00:00", "2024/01/01 24:00:00",
                              "24/01/01 00:00:00", " 2024/01/01 00:00:00", "now"}) {
        const QString text = QLatin1String(wrong);
        for (const auto &[first, second] : {std::pair(text, end), std::pair(start, text)}) {
            trial.compare(u"query from '%1' to '%2'"_s.arg(first, second),
                          u"signal queryBookmarkForApiFinished(false)"_s,
                          host->play(query.arg(first, second)));
            trial.compare(u"batch from '%1' to '%2'"_s.arg(first, second), u"= bool false"_s,
                          host->play(batch.arg(first, second)));
        }
    }
    trial.summarize(u"local times as yyyy/MM/dd hh:mm:ss, and nothing else"_s);
}

} // namespace

std::vector<Check> requestChecks()
{
    return {
        {"4.single-requests", "Adding, deleting, updating one bookmark, removing all",
         checkSingleRequests},
        {"4.permission", "What needs the setting permission and what not", checkPermission},
        {"4.batch-requests", "Batches: one command a station, order, doubles", checkBatchRequests},
        {"4.query-requests", "The queries, and when the stored lists are emptied",
         checkQueryRequests},
        {"4.date-times", "Times given as text", checkDateTimes},
        {"4.other-requests", "Connection, recycle settings, timeline query", checkOtherRequests},
        {"4.refused-sends", "What becomes of requests that the host does not take",
         checkRefusedSends},
    };
}

} // namespace check
