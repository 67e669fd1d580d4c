#include "Checks.h"
#include "Describe.h"
#include "Host.h"
#include "Scenario.h"
#include "TimeShiftBufferModel.h"
#include "WatchedTopology.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QTimeZone>

// Level 4: what each answer and event does.

namespace check {

using namespace Qt::StringLiterals;

namespace {

void checkSimpleAnswers(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"success", "",
             "reply AddBookmark@A ok {}\nreply DeleteBookmark@A ok 'b'\n"
             "reply RemoveAllBookmarks@A ok\nreply UpdateBookmark@ ok\n"
             "reply QueryBookmarkForRecent@A ok {}",
             R"(signal addBookmarkResponsed(true)
                signal deleteBookmarkResponsed(true)
                signal removeAllBookmarksResponsed(true)
                signal updateBookmarkResponsed(true)
                signal queryBookmarkForRecentResponsed(true))"},
            {"failure", "show cell l A",
             "reply AddBookmark@A -1\nreply DeleteBookmark@A -1 'b'\n"
             "reply RemoveAllBookmarks@A -905\nreply UpdateBookmark@ -1\n"
             "reply QueryBookmarkForRecent@A -1\nreply QueryBookmarkForTimeline@A -1",
             R"(log Tessaline: %s, add bookmark failed <Tessaline::CommandProcessor>
                signal addBookmarkResponsed(false)
                log Tessaline: %s, delete bookmark failed <Tessaline::CommandProcessor>
                signal deleteBookmarkResponsed(false)
                log Tessaline: %s, remove bookmark failed: %d <Tessaline::CommandProcessor, -905>
                signal removeAllBookmarksResponsed(false)
                log Tessaline: %s, update bookmark failed <Tessaline::CommandProcessor>
                signal updateBookmarkResponsed(false)
                log Tessaline: %s, query bookmarks failed <Tessaline::CommandProcessor>
                signal queryBookmarkForRecentResponsed(false)
                log Tessaline: %s, query bookmarks failed <Tessaline::CommandProcessor>
                signal queryBookmarkForTimelineResponsed(false))"},
            {"what is no success", "",
             "reply UpdateBookmark@ ''\nreply UpdateBookmark@ 00\nreply UpdateBookmark@ OK",
             R"(log Tessaline: %s, update bookmark failed <Tessaline::CommandProcessor>
                signal updateBookmarkResponsed(false)
                log Tessaline: %s, update bookmark failed <Tessaline::CommandProcessor>
                signal updateBookmarkResponsed(false)
                log Tessaline: %s, update bookmark failed <Tessaline::CommandProcessor>
                signal updateBookmarkResponsed(false))"},
            {"recycle settings", "",
             "reply GetRecycleSetting@ ok {'reserveHour': 72, 'enableRecycle': true}\n"
             "reply GetRecycleSetting@ -1 {'enableRecycle': true}\nreply GetRecycleSetting@ ok\n"
             "reply GetRecycleSetting@ ok {'reserveHour': 4294967295}\n"
             "reply GetRecycleSetting@ ok {'reserveHour': '4294967295'}\n"
             "reply GetRecycleSetting@ ok {'reserveHour': '-1', 'enableRecycle': 2}\n"
             "reply GetRecycleSetting@ ok {'ReserveHour': 5, 'reserveHour': 'x'}\n"
             "reply UpdateRecycleSetting@ ok true\nreply UpdateRecycleSetting@ -1 true\n"
             "reply UpdateRecycleSetting@ ok",
             R"(signal getRecycleSettingResponse(72,true)
                signal getRecycleSettingResponse(0,true)
                signal getRecycleSettingResponse(0,false)
                signal getRecycleSettingResponse(4294967295,false)
                signal getRecycleSettingResponse(4294967295,false)
                signal getRecycleSettingResponse(0,true)
                signal getRecycleSettingResponse(0,false)
                signal updateRecycleSettingResponse(true)
                signal updateRecycleSettingResponse(true)
                signal updateRecycleSettingResponse(false))"},
            {"settings come silently", "",
             "reply QuerySevTimezone@ ok 'Europe/Berlin'\nreply QuerySettingPermission@ ok true",
             ""},
        });
    // A code that only begins like success can't be written as one word.
    LoggingHost host(trial);
    if (!host)
        return;
    host->answer(u"AddBookmark"_s, QVariantMap(), u"A"_s, nullptr, u"0 "_s);
    trial.compare(u"the code '0 '"_s,
                  u"log Tessaline: %s, add bookmark failed <Tessaline::CommandProcessor>\n"
                  "signal addBookmarkResponsed(false)"_s,
                  host->takeTrace().join(u'\n'));
}

const char *const threeTargets =
    "addBookmarks([{'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}, {'CameraID': '2', 'LocationID': 'l', 'relayPath': 'A'}, {'CameraID': '1', 'LocationID': 'l', 'relayPath': 'B'}], 1, 2, '', '', '')";

void checkBatchAnswers(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"all created", threeTargets,
             "answer 2 ok [{'BookmarkID': 'x', 'CameraID': '1'}]\n"
             "answer 1 ok [{'BookmarkID': 'y', 'CameraID': '1'}, {'BookmarkID': 'z', 'CameraID': '2'}]",
             "signal addBookmarksResponsed()"},
            {"one station fails", threeTargets, "answer 1 -1\nanswer 2 ok []",
             "signal addBookmarksResponsed(Camera A1,)"},
            {"some not created", threeTargets,
             "answer 1 ok [{'CameraID': '1'}, {'BookmarkID': '', 'CameraID': '1'}]\n"
             "answer 2 ok [{'CameraID': '1'}, 'nonsense']",
             "signal addBookmarksResponsed(Camera A1,Camera B1,)"},
            {"named once for each view cell without a model",
             "setTimelineFocusInfo('l', 'A', 'none')\nsetTimelineFocusInfo('l', 'A', 'other')\n"
             "addBookmarks([{'CameraID': '1', 'relayPath': 'A'}], 1, 2, '', '', '')",
             "answer 1 ok [{'BookmarkID': 'x', 'CameraID': '1', 'LocationID': 'l'}]",
             "signal addBookmarksResponsed(Camera A1,Camera A1)"},
            {"answered by a map",
             "addBookmarks([{'CameraID': '1', 'relayPath': 'A'}], 1, 2, '', '', '')",
             "answer 1 ok {'Bookmarks': [{'CameraID': '1'}]}", "signal addBookmarksResponsed()"},
            {"placed in view cells",
             "show cell l A\nshow other l A\nsetTimelineFocusInfo('l', 'A', 'none')\n"
             "addBookmarks([{'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}], 1, 2, '', '', '')",
             "answer 1 ok [{'BookmarkID': 'x', 'CameraID': '1', 'LocationID': 'l'}, {'BookmarkID': 'y', 'CameraID': '1', 'LocationID': 'k'}]\nrows cell\nrows other",
             R"(timeline refillItems(x)
                timeline refillItems(x)
                signal addBookmarksResponsed(Camera A1)
                rows [x]
                rows [x])"},
            {"no directory", "topology gone",
             "addBookmarks([{'CameraID': '1', 'relayPath': 'A'}], 1, 2, '', '', '')\nanswer 1 -1",
             R"(send AddBookmarks@A [{CameraID: QString "1", Creator: QString "", Description: QString "", EndTimestamp: qlonglong 2, Group: QString "", LocationID: QString "", StartTimestamp: qlonglong 1}] context 1
                = bool true
                log Tessaline_Local: %s, get TopologyPlugin failed <Tessaline::GetAllCamNames>
                signal addBookmarksResponsed())"},
            {"all deleted",
             "grant\nshow cell l A\nshow other l B\nevent AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'l'}\n"
             "deleteBookmarks([{'BookmarkID': 'x', 'relayPath': 'A'}, {'BookmarkID': 'y', 'relayPath': 'B'}])",
             "answer 2 ok ['y']\nanswer 1 ok ['x', 'z']\nrows cell",
             R"(timeline removeItems(y)
                timeline removeItems(y)
                timeline removeItems(x z)
                timeline removeItems(x z)
                signal deleteBookmarksResponsed()
                rows [])"},
            {"one station can't delete",
             "grant\nshow cell l A\nevent AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'l'}\n"
             "deleteBookmarks([{'BookmarkID': 'x', 'relayPath': 'A'}, {'BookmarkID': 'y', 'relayPath': 'B'}])",
             "answer 1 -1 ['x', 'also']\nanswer 2 ok ['y']\nrows cell",
             R"(timeline removeItems(y)
                signal deleteBookmarksResponsed(x,also)
                rows [x])"},
            {"object gone while bookmarks are placed",
             "show cell l A\nwatch cell\n"
             "addBookmarks([{'CameraID': '1', 'relayPath': 'A'}], 1, 2, '', '', '')",
             "during changed cell | delete\n"
             "answer 1 ok [{'BookmarkID': 'x', 'LocationID': 'l'}, {'CameraID': '1'}]",
             R"(timeline refillItems(x)
                changed cell)"},
            {"object gone while bookmarks are removed",
             "grant\nshow cell l A\nshow other l A\n"
             "event AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'l'}\nwatch cell\n"
             "deleteBookmarks([{'BookmarkID': 'x', 'relayPath': 'A'}])",
             "during changed cell | delete\nanswer 1 ok ['x']",
             R"(timeline removeItems(x)
                changed cell)"},
        });
}

void checkQueryAnswers(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"out of order", "queryAllBookmarks()",
             "answer 3 ok {'Bookmarks': [{'BookmarkID': 'c'}]}\nanswer 1 ok {'Bookmarks': [{'BookmarkID': 'a'}, {'BookmarkID': 'b'}]}\n"
             "answer 2 ok {'bookmarks': [{'BookmarkID': 'lost'}]}\nlist all",
             R"(signal queryAllBookmarksResponsed(false)
                signal queryAllBookmarksResponsed(false)
                signal queryAllBookmarksResponsed(true)
                list [C/c A/a A/b])"},
            {"one station fails", "queryAllBookmarks()",
             "answer 1 -1 {'Bookmarks': [{'BookmarkID': 'lost'}]}\nanswer 2 ok\nanswer 3 '' {}\nlist all",
             R"(log Tessaline_ReqRespHandler: %s, query all bookmarks for server (%s) failed <Tessaline::HandleQueryAllBookmarksResp, A>
                signal queryAllBookmarksResponsed(false)
                signal queryAllBookmarksResponsed(false)
                log Tessaline_ReqRespHandler: %s, query all bookmarks for server (%s) failed <Tessaline::HandleQueryAllBookmarksResp, C>
                signal queryAllBookmarksResponsed(true)
                list [])"},
            {"superseded", "queryAllBookmarks()\nqueryAllBookmarks()",
             "answer 1 ok {'Bookmarks': [{'BookmarkID': 'old'}]}\nanswer 4 ok {'Bookmarks': [{'BookmarkID': 'new'}]}\n"
             "answer 5 ok\nanswer 2 ok\nanswer 6 ok\nlist all",
             R"(signal queryAllBookmarksResponsed(false)
                signal queryAllBookmarksResponsed(false)
                signal queryAllBookmarksResponsed(true)
                list [A/new])"},
            {"superseded and failed", "queryAllBookmarks()\nqueryAllBookmarks()", "answer 1 -1",
             "log Tessaline_ReqRespHandler: %s, query all bookmarks for server (%s) failed <Tessaline::HandleQueryAllBookmarksResp, A>"},
            {"Init begins to count anew", "queryAllBookmarks()\ninitialise\nqueryAllBookmarks()",
             "answer 1 ok {'Bookmarks': [{'BookmarkID': 'a'}]}\n"
             "answer 4 ok {'Bookmarks': [{'BookmarkID': 'b'}]}\nlist all",
             R"(signal queryAllBookmarksResponsed(false)
                signal queryAllBookmarksResponsed(false)
                list [A/a A/b])"},
            {"Init keeps the lists and the focus",
             "show cell l A\nqueryAllBookmarks()\nanswer 1 ok {'Bookmarks': [{'BookmarkID': 'b'}]}\n"
             "reply QueryBookmarkForRecent@A ok {'Bookmarks': [{'BookmarkID': 'r'}]}\n"
             "reply QueryBookmarkForApi@ ok [{'BookmarkID': 'q'}]",
             "initialise\nlist all\nlist recent\nlist api\n"
             "event AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'l'}",
             R"(list [A/b]
                list [A/r]
                list [q]
                timeline refillItems(x))"},
            {"no identifier, and the same twice", "queryAllBookmarks()",
             "answer 1 ok {'Bookmarks': [{}, {'BookmarkID': 'b'}, {'BookmarkID': 'b'}]}\nlist all",
             R"(signal queryAllBookmarksResponsed(false)
                list [A/ A/b A/b])"},
            {"Init supersedes nothing", "queryAllBookmarks()\ninitialise",
             "answer 1 ok {'Bookmarks': [{'BookmarkID': 'b'}]}\nlist all",
             R"(signal queryAllBookmarksResponsed(false)
                list [A/b])"},
            {"lists are filled before the signal", "queryAllBookmarks()",
             "during signal queryAllBookmarksResponsed | list all\n"
             "answer 1 ok {'Bookmarks': [{'BookmarkID': 'a'}]}\n"
             "during signal queryBookmarkForRecentResponsed | list recent\n"
             "reply QueryBookmarkForRecent@A ok {'Bookmarks': [{'BookmarkID': 'r'}]}\n"
             "during signal queryBookmarkForApiFinished | list api\n"
             "reply QueryBookmarkForApi@ ok [{'BookmarkID': 'q'}]",
             R"(signal queryAllBookmarksResponsed(false)
                list [A/a]
                signal queryBookmarkForRecentResponsed(true)
                list [A/r]
                signal queryBookmarkForApiFinished(true)
                list [q])"},
            {"no context", "",
             "reply QueryAllBookmars@A ok {'Bookmarks': [{'BookmarkID': 'b'}]}\nlist all",
             R"(log Tessaline_ReqRespHandler: %s, request response context is NULL <Tessaline::HandleQueryAllBookmarksResp>
                list [])"},
            {"recent ones add up", "",
             "reply QueryBookmarkForRecent@A ok {'Bookmarks': [{'BookmarkID': 'a'}]}\n"
             "reply QueryBookmarkForRecent@ ok {'Bookmarks': [{'BookmarkID': 'b'}]}\nlist recent",
             R"(signal queryBookmarkForRecentResponsed(true)
                signal queryBookmarkForRecentResponsed(true)
                list [A/a b])"},
            {"for others, replaced by success alone", "",
             "reply QueryBookmarkForApi@ ok [{'BookmarkID': 'a', 'more': 1}]\nreply QueryBookmarkForApi@ -1 [{'BookmarkID': 'lost'}]\n"
             "getQueryBookmarkResult()\nreply QueryBookmarkForApi@ ok\nlist api",
             R"(signal queryBookmarkForApiFinished(true)
                signal queryBookmarkForApiFinished(false)
                = [{BookmarkID: QString "a", more: qlonglong 1}]
                signal queryBookmarkForApiFinished(true)
                list [])"},
            {"no directory", "queryAllBookmarks()\ntopology gone",
             "answer 1 ok {'Bookmarks': [{'BookmarkID': 'b'}]}\nlist all",
             R"(log Tessaline_Local: %s, get TopologyPlugin failed <Tessaline::GetAllCamNames>
                signal queryAllBookmarksResponsed(false)
                list [A/b])"},
        });
}

void checkTimelines(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"filled by a query", "show cell l A\nsetTimelineBoundary(1, 5000, 'cell')",
             "answer 1 ok {'Bookmarks': [{'BookmarkID': 'b', 'LocationID': 'l', 'StartTimestamp': 5}, {'BookmarkID': 'k', 'LocationID': 'L'}, {'BookmarkID': 'a', 'LocationID': 'l'}]}\nrows cell",
             R"(timeline refillItems(b a)
                signal queryBookmarkForTimelineResponsed(true)
                rows [a b])"},
            {"range backwards", "show cell l A", "setTimelineBoundary(5000, 1, 'cell')",
             "timeline setBoundary(5000, 1, -1, 0)"},
            {"nothing found", "show cell l A\nsetTimelineBoundary(1, 5000, 'cell')",
             "answer 1 ok {}",
             R"(timeline refillItems()
                signal queryBookmarkForTimelineResponsed(true))"},
            {"failed", "show cell l A\nsetTimelineBoundary(1, 5000, 'cell')", "answer 1 -1 {}",
             R"(log Tessaline: %s, query bookmarks failed <Tessaline::CommandProcessor>
                signal queryBookmarkForTimelineResponsed(false))"},
            {"focus moved", "show cell l A\nsetTimelineBoundary(1, 5000, 'cell')",
             "setTimelineFocusInfo('k', 'A', 'cell')\nanswer 1 ok {'Bookmarks': [{'BookmarkID': 'b', 'LocationID': 'l'}]}",
             R"(timeline clear()
                timeline refillItems()
                signal queryBookmarkForTimelineResponsed(true))"},
            {"another station", "show cell l A\nsetTimelineBoundary(1, 5000, 'cell')",
             "setTimelineFocusInfo('l', 'B', 'cell')\nanswer 1 ok {'Bookmarks': [{'BookmarkID': 'b', 'LocationID': 'l'}]}",
             R"(timeline clear()
                timeline refillItems()
                signal queryBookmarkForTimelineResponsed(true))"},
            {"range set while the focus moves", "show cell l A",
             "during timeline clear() | setTimelineBoundary(1, 2, 'cell')\n"
             "setTimelineFocusInfo('k', 'B', 'cell')",
             R"(timeline clear()
                timeline setBoundary(1, 2, -1, 0)
                send QueryBookmarkForTimeline@A {EndTimestamp: qlonglong 2, LocationID: QString "l", StartTimestamp: qlonglong 1} context 1)"},
            {"view cell closed",
             "show cell l A\nsetTimelineBoundary(1, 5000, 'cell')\nremoveTimelineModel('cell')",
             "answer 1 ok {'Bookmarks': [{'BookmarkID': 'b', 'LocationID': 'l'}]}", ""},
            {"unknown view cells", "",
             "setTimelineBoundary(1, 2, 'cell')\nclearTimelineModel('cell')\nremoveTimelineModel('cell')",
             ""},
            {"focus before the model", "setTimelineFocusInfo('l', 'A', 'cell')",
             "getBookmarkModelForTimeline('cell')\nsetTimelineBoundary(1, 2, 'cell')",
             R"(= an object
                timeline setBoundary(1, 2, -1, 0)
                send QueryBookmarkForTimeline@A {EndTimestamp: qlonglong 2, LocationID: QString "l", StartTimestamp: qlonglong 1} context 1)"},
            {"no focus, or an old one", "show cell l A\nremoveTimelineModel('cell')",
             "getBookmarkModelForTimeline('cell')\nsetTimelineBoundary(1, 2, 'cell')",
             R"(= an object
                timeline setBoundary(1, 2, -1, 0)
                send QueryBookmarkForTimeline@ {EndTimestamp: qlonglong 2, LocationID: QString "", StartTimestamp: qlonglong 1} context 1)"},
            {"cleared", "show cell l A\nevent AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'l'}",
             "clearTimelineModel('cell')\nrows cell",
             R"(timeline clear()
                rows [])"},
            {"deleted everywhere",
             "show cell l A\nshow other k B\nsetTimelineFocusInfo('k', 'B', 'none')",
             "reply DeleteBookmark@C ok 'x'",
             R"(timeline removeItems(x)
                timeline removeItems(x)
                signal deleteBookmarkResponsed(true))"},
        });
}

void checkEvents(Trial &trial)
{
    playScenarios(
        trial,
        {
            {"event", "show cell l A\nshow other l B\nshow third l A",
             "event AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'l'}",
             R"(timeline refillItems(x)
                timeline refillItems(x))"},
            {"view cells in the order of their names", "show b l A\nshow a l A\nwatch a\nwatch b",
             "event AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'l'}\n"
             "reply DeleteBookmark@A ok 'x'",
             R"(timeline refillItems(x)
                changed a
                timeline refillItems(x)
                changed b
                timeline removeItems(x)
                changed a
                timeline removeItems(x)
                changed b
                signal deleteBookmarkResponsed(true))"},
            {"event that fits no cell", "show cell l A",
             "event AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'L'}\nevent AddBookmark@a {'BookmarkID': 'x', 'LocationID': 'l'}",
             ""},
            {"event without a map", "show cell l A", "event AddBookmark@A 5\nevent AddBookmark@A",
             ""},
            {"event for a cell without location", "show cell  ", "event AddBookmark@ {}",
             "timeline refillItems()"},
            {"added", "show cell l A\nsetTimelineFocusInfo('k', 'A', 'none')",
             "reply AddBookmark@A ok {'BookmarkID': 'x', 'LocationID': 'l'}\n"
             "reply AddBookmark@A ok {'BookmarkID': 'x', 'LocationID': 'k'}\n"
             "reply AddBookmark@B ok {'BookmarkID': 'x', 'LocationID': 'l'}",
             R"(timeline refillItems(x)
                signal addBookmarkResponsed(true)
                signal addBookmarkResponsed(false)
                signal addBookmarkResponsed(true))"},
            {"added for a view cell without a model, and one with",
             "setTimelineFocusInfo('l', 'A', 'before')\nshow cell l A",
             "reply AddBookmark@A ok {'BookmarkID': 'x', 'LocationID': 'l'}",
             R"(timeline refillItems(x)
                signal addBookmarkResponsed(false))"},
            {"view cell asked for without a focus", "getBookmarkModelForTimeline('cell')",
             "event AddBookmark@ {}\nsetTimelineBoundary(1, 2, 'cell')\nevent AddBookmark@ {}",
             R"(timeline setBoundary(1, 2, -1, 0)
                send QueryBookmarkForTimeline@ {EndTimestamp: qlonglong 2, LocationID: QString "", StartTimestamp: qlonglong 1} context 1
                timeline refillItems())"},
            {"added without a directory", "show cell l A\ntopology gone",
             "reply AddBookmark@A ok {'BookmarkID': 'x', 'LocationID': 'l'}",
             R"(log Tessaline_Local: %s, get TopologyPlugin failed <Tessaline::GetAllCamNames>
                timeline refillItems(x)
                signal addBookmarkResponsed(true))"},
        });
}

// ---- Records ----

/// A moment as the panels show it, in the server's zone and the machine's language.
struct ShownTime
{
    ShownTime(qint64 milliseconds, const QTimeZone &zone)
        : dateTime(QDateTime::fromMSecsSinceEpoch(milliseconds, zone))
    {
    }
    QString date() const
    {
        return QLocale::system().toString(dateTime.date(), QLocale::ShortFormat);
    }
    QString full() const { return QLocale::system().toString(dateTime, QLocale::ShortFormat); }
    QString time() const { return dateTime.toString(u"hh:mm:ss"_s); }

    QDateTime dateTime;
};

QString timeRange(const QVariantMap &record, const QTimeZone &zone)
{
    return ShownTime(record.value(u"StartTimestamp"_s).toLongLong(), zone).time() + u" - "_s +
           ShownTime(record.value(u"EndTimestamp"_s).toLongLong(), zone).time();
}

QVariantMap displayRecord(const QVariantMap &record, const QString &relayPath,
                          const QString &cameraName, const QTimeZone &zone)
{
    const qint64 start = record.value(u"StartTimestamp"_s).toLongLong();
    return {{u"bookmarkID"_s, record.value(u"BookmarkID"_s).toString()},
            {u"cameraID"_s, record.value(u"CameraID"_s).toString()},
            {u"relayPath"_s, relayPath},
            {u"startTimestamp"_s, start},
            {u"endTimestamp"_s, record.value(u"EndTimestamp"_s).toLongLong()},
            {u"description"_s, record.value(u"Description"_s).toString()},
            {u"creator"_s, record.value(u"Creator"_s).toString()},
            {u"group"_s, record.value(u"Group"_s).toString()},
            {u"cameraName"_s, cameraName},
            {u"displayDate"_s, ShownTime(start, zone).date()},
            {u"displayDateTime"_s, ShownTime(start, zone).full()},
            {u"locID"_s, record.value(u"LocationID"_s).toString()},
            {u"displayTimeRange"_s, timeRange(record, zone)}};
}

/// The same with null texts as empty ones.
QString textOf(const QVariant &value)
{
    return describe(value).replace(u"QString null"_s, u"QString \"\""_s);
}

/// Records worth showing: around midnight and the change of clocks, far times, nothing at all.
QList<QVariantMap> recordsToShow()
{
    QList<QVariantMap> records{
        serverRecord(u"b1"_s, u"1"_s, u"l"_s, 1704067199000, 1704070800000, u"d"_s, u"me"_s,
                     u"g"_s),
        serverRecord(u"b2"_s, u"2"_s, u""_s, 1711846800000, 1711843200000),
        serverRecord(u"b3"_s, u"1/2"_s, u"\u00d6\u4e2d"_s, -1, 4102444800000, u"a\nb"_s),
        serverRecord(u" b "_s, u" 1 "_s, u" l "_s, 1, 2, u" d "_s, u" me "_s, u" g "_s),
        QVariantMap(),
        QVariantMap{{u"BookmarkID"_s, 5},
                    {u"StartTimestamp"_s, u"1704067200000"_s},
                    {u"EndTimestamp"_s, 1.5e12},
                    {u"Description"_s, true},
                    {u"Other"_s, 1}},
    };
    for (int day = 0; day < 20; ++day)
        records.append(serverRecord(QString::number(day), u"1"_s, u"l"_s, 86399999LL * day * 17,
                                    86400000LL * day * 17));
    return records;
}

QString cameraNameOf(const QVariantMap &record, const QString &relayPath,
                     standin::Topology &topology)
{
    const QVariantMap names = topology.getValuesFromModel(0, u"idRole"_s, u"nameRole"_s);
    const QString cameraID = record.value(u"CameraID"_s).toString();
    return names.value(relayPath).toString() + u" - "_s +
           names.value(relayPath.isEmpty() ? cameraID : relayPath + u'/' + cameraID).toString();
}

void checkDisplayRecords(Trial &trial)
{
    LoggingHost host(trial);
    if (!host)
        return;
    for (const char *camera : {"1", "A/1/2", "%2/1", "A/ 1 "})
        host->topology.setCamera(QLatin1String(camera), u"Camera "_s + QLatin1String(camera));
    host->topology.setStation(u"%2"_s, u"Placeholder"_s);
    QVariantList answer;
    const QList<QVariantMap> records = recordsToShow();
    for (const QVariantMap &record : records)
        answer.append(record);
    for (const char *id : {"", "Asia/Kathmandu", "America/New_York", "Europe/Berlin"}) {
        host->answer(u"QuerySevTimezone"_s, QByteArray(id), {});
        const QTimeZone zone{*id ? QByteArray(id) : QTimeZone::systemTimeZoneId()};
        for (const QString &relayPath : {u"A"_s, u"%2"_s, QString()}) {
            host->call(u"queryBookmarkForRecent('', '', 1)"_s);
            host->answer(u"QueryBookmarkForRecent"_s, QVariantMap{{u"Bookmarks"_s, answer}},
                         relayPath);
            const QVariantList shown = host->call(u"getBookmarkListForRecent()"_s).toList();
            trial.expect(shown.size() == records.size(), QString::number(records.size()),
                         QString::number(shown.size()));
            for (qsizetype i = 0; i < records.size(); ++i) {
                trial.compare(u"record %1 in the zone '%2'"_s.arg(i).arg(QLatin1String(id)),
                              textOf(displayRecord(
                                  records.at(i), relayPath,
                                  cameraNameOf(records.at(i), relayPath, host->topology), zone)),
                              textOf(shown.value(i)));
            }
        }
    }
    trial.summarize(u"%1 records in four time zones"_s.arg(records.size()));
}

/// The roles of a timeline's item and what they hold.
QMap<int, QVariant> itemData(const QVariantMap &record, const QString &relayPath,
                             const QString &cameraName, const QTimeZone &zone)
{
    const QVariantMap shown = displayRecord(record, relayPath, cameraName, zone);
    return {{257, shown.value(u"bookmarkID"_s)},
            {258, shown.value(u"cameraID"_s)},
            {261, shown.value(u"startTimestamp"_s)},
            {262, 0},
            {263, 0},
            {264, shown.value(u"endTimestamp"_s)},
            {265, 0},
            {269, shown.value(u"bookmarkID"_s)},
            {270, shown.value(u"cameraID"_s)},
            {271, shown.value(u"relayPath"_s)},
            {272, shown.value(u"description"_s)},
            {273, shown.value(u"creator"_s)},
            {274, shown.value(u"group"_s)},
            {275, shown.value(u"cameraName"_s)},
            {276, shown.value(u"displayDate"_s)},
            {277, shown.value(u"displayDateTime"_s)},
            {278, shown.value(u"locID"_s)},
            {279, shown.value(u"displayTimeRange"_s)}};
}

void checkTimelineItems(Trial &trial)
{
    static const char *const ownRoles[] = {"bookmarkIDRole", "cameraIDRole",     "relayPathRole",
                                           "descRole",       "creatorRole",      "groupRole",
                                           "cameraNameRole", "dispDateRole",     "dispDateTimeRole",
                                           "locationIDRole", "dispTimeRangeRole"};
    LoggingHost host(trial);
    if (!host)
        return;
    const QTimeZone zone("Asia/Kathmandu");
    host->answer(u"QuerySevTimezone"_s, QByteArray("Asia/Kathmandu"), {});
    const QList<QVariantMap> records = recordsToShow();
    for (const QVariantMap &record : records) {
        const QString location = record.value(u"LocationID"_s).toString();
        host->call(u"removeTimelineModel('cell')"_s);
        const QAbstractItemModel *const model = host->showCell(u"cell"_s, location, u"A"_s);
        if (!trial.expect(model, u"a list model"_s, u"none"_s))
            return;
        host->framework.sendEvent(u"AddBookmark"_s, record, u"A"_s);
        const auto data =
            itemData(record, u"A"_s, cameraNameOf(record, u"A"_s, host->topology), zone);
        for (auto entry = data.cbegin(); entry != data.cend(); ++entry)
            trial.compare(u"role %1"_s.arg(entry.key()), textOf(*entry),
                          textOf(model->index(0, 0).data(entry.key())));
        for (int i = 0; i < 11; ++i)
            trial.compare(u"name of role %1"_s.arg(269 + i), QLatin1String(ownRoles[i]),
                          QString::fromLatin1(model->roleNames().value(269 + i)));
        const auto roles = TimeShiftBufferModel::defaultRoleHash();
        for (auto role = roles.cbegin(); role != roles.cend(); ++role)
            trial.compare(u"name of the model's own role %1"_s.arg(role.key()),
                          QString::fromLatin1(*role),
                          QString::fromLatin1(model->roleNames().value(role.key())));
    }
    trial.summarize(u"18 roles of %1 items"_s.arg(records.size()));
}

void checkTimeZone(Trial &trial)
{
    LoggingHost host(trial);
    if (!host)
        return;
    const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"l"_s, 1704067200000, 1704067200000);
    const QByteArray system = QTimeZone::systemTimeZoneId();
    struct Row
    {
        QVariant answer;
        QByteArray zone;
    };
    const Row rows[] = {{QVariant(), system},
                        {QByteArray("Pacific/Chatham"), "Pacific/Chatham"},
                        {QByteArray(), "Pacific/Chatham"},
                        {u"America/Caracas"_s, "America/Caracas"},
                        {QVariantMap(), "America/Caracas"},
                        {QByteArray(""), "America/Caracas"},
                        {u""_s, "America/Caracas"},
                        {QByteArray(" Asia/Tokyo "), " Asia/Tokyo "},
                        {QByteArray("Asia/Tokyo"), "Asia/Tokyo"},
                        {QByteArray("Nowhere/City"), "Nowhere/City"}};
    for (const Row &row : rows) {
        host->call(u"queryBookmarkForRecent('', '', 1)"_s);
        host->answer(u"QuerySevTimezone"_s, row.answer, {}, nullptr, u"-1"_s);
        host->answer(u"QueryBookmarkForRecent"_s,
                     QVariantMap{{u"Bookmarks"_s, QVariantList{record}}}, {});
        const auto list = host->call(u"getBookmarkListForRecent()"_s).toList();
        trial.compare(u"after the answer "_s + describe(row.answer),
                      timeRange(record, QTimeZone(row.zone)),
                      list.value(0).toMap().value(u"displayTimeRange"_s).toString());
    }
    trial.summarize(u"the server's zone once it is known, the system's before"_s);
}

void checkDirectory(Trial &trial)
{
    LoggingHost host(trial);
    if (!host)
        return;
    // A walk over the whole tree for each call: so one for each answer, not one for each record.
    const auto callsOf = [&](const char *steps) {
        const int before = host->topology.callCount();
        host->play(QLatin1String(steps));
        return QString::number(host->topology.callCount() - before);
    };
    host->play(u"show cell l A\nshow other l A"_s);
    trial.compare(u"questions of a query of all"_s, u"1"_s, callsOf("queryAllBookmarks()"));
    trial.compare(u"questions of its answers"_s, u"3"_s,
                  callsOf("answer 1 ok {'Bookmarks': [{}, {}, {}]}\n"
                          "answer 2 ok {'Bookmarks': [{}, {}]}\nanswer 3 ok {}"));
    trial.compare(u"questions of an event"_s, u"1"_s,
                  callsOf("event AddBookmark@A {'LocationID': 'l'}"));

    // Renamed between two answers.
    const char *const answer =
        "reply QueryBookmarkForRecent@A ok {'Bookmarks': [{'CameraID': '1'}]}";
    host->play(QLatin1String(answer));
    host->topology.rename(u"A/1"_s, u"Renamed"_s);
    host->play(QLatin1String(answer));
    QStringList names;
    for (const QVariant &record : host->call(u"getBookmarkListForRecent()"_s).toList())
        names.append(record.toMap().value(u"cameraName"_s).toString());
    trial.compare(u"names of a renamed camera"_s, u"Station A - Camera A1,Station A - Renamed"_s,
                  names.join(u','));

    host->topology.setNode({u"D"_s, u"Text"_s, u"1"_s});
    host->topology.setNode({u"E"_s, u"Other"_s, u"one"_s});
    host->topology.setNode({u"F"_s, u"Other"_s, 3});
    host->topology.setStation(u" G "_s, u"Blanks"_s);
    host->topology.remove(u"B"_s);
    host->framework.clearSent();
    host->play(u"queryAllBookmarks()"_s);
    QStringList stations;
    const QList<standin::SentCommand> sent = host->framework.sent();
    for (const standin::SentCommand &command : sent)
        stations.append(command.relayPath);
    trial.compare(u"stations"_s, u" G ,A,C,D"_s, stations.join(u','));

    WatchedTopology watched(host->topology);
    host->framework.addPlugin(standin::Topology::pluginID(), &watched);
    host->play(u"queryAllBookmarks()\n"_s + QLatin1String(answer));
    trial.compare(u"roles asked for"_s, u"0 nodeIDRole nodeTypeRole,0 idRole nameRole"_s,
                  watched.asked.join(u','));
    trial.summarize(u"stations by their type, names once for each answer"_s);
}

} // namespace

std::vector<Check> answerChecks()
{
    return {
        {"4.simple-answers", "Answers to single requests and settings, success and failure",
         checkSimpleAnswers},
        {"4.batch-answers", "Batches end with one signal that names what failed",
         checkBatchAnswers},
        {"4.query-answers", "The three stored lists and their signals", checkQueryAnswers},
        {"4.timelines", "Timeline models: focus, range, queries and their answers", checkTimelines},
        {"4.events", "New bookmarks reach the view cells that show their location", checkEvents},
        {"4.display-records", "Records as QML gets them, values and types", checkDisplayRecords},
        {"4.timeline-items", "Items of timelines, all roles", checkTimelineItems},
        {"4.time-zone", "Which zone times are shown in", checkTimeZone},
        {"4.directory", "Stations and names come from the topology plug-in", checkDirectory},
    };
}

} // namespace check
