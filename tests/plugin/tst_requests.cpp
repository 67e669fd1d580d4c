#include "DataTable.h"
#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

/// What one call sends that needs one command, and what it tells about a command not sent.
class TestRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sends_data();
    void sends();
    void tellsWhatWasNotSent_data() { sends_data(); }
    void tellsWhatWasNotSent();
    void refuses_data();
    void refuses();
    void keepsWhatTheOldConnectionTold();
    void passesTextsUnchanged();
};

namespace {

QVariant callOrConnect(PluginHarness &harness, const QString &call)
{
    if (call != u"connect")
        return harness.run(call);
    harness.plugin().PluginServerConnected();
    return {};
}

} // namespace

void TestRequests::sends_data()
{
    // Rows go on in indented lines.
    addTable({"call", "sent", "log"}, uR"(
add a bookmark | addBookmark('c', 'l', 'A', 1704067200000, 1704067260000, 'd', 'me', 'g')
  | AddBookmark@A {CameraID: QString 'c', Creator: QString 'me', Description: QString 'd',
  EndTimestamp: qlonglong 1704067260000, Group: QString 'g', LocationID: QString 'l',
  StartTimestamp: qlonglong 1704067200000} | logged
add a bookmark of null and empty texts that ends long before it starts
  | addBookmark('c', '', null, 9223372036854775807, -9223372036854775808, null, null, '')
  | AddBookmark@ {CameraID: QString 'c', Creator: QString null, Description: QString null,
  EndTimestamp: qlonglong -9223372036854775808, Group: QString '', LocationID: QString '',
  StartTimestamp: qlonglong 9223372036854775807} | logged
delete a bookmark | deleteBookmark('b', 'B') | DeleteBookmark@B {BookmarkID: QString 'b'} | logged
delete a bookmark without an identifier
  | deleteBookmark(null, null) | DeleteBookmark@ {BookmarkID: QString null} | logged
remove all bookmarks | removeAllBookmarks('C') | RemoveAllBookmarks@C invalid | logged
update with the identifier alone
  | updateBookmark('b') | UpdateBookmark@ {BookmarkID: QString 'b'} | logged
update the description | updateBookmark('b', 'd')
  | UpdateBookmark@ {BookmarkID: QString 'b', Description: QString 'd'} | logged
update both | updateBookmark('b', 'd', 'g')
  | UpdateBookmark@ {BookmarkID: QString 'b', Description: QString 'd', Group: QString 'g'} | logged
empty the description, leave the group | updateBookmark('b', '', null)
  | UpdateBookmark@ {BookmarkID: QString 'b', Description: QString ''} | logged
leave the description, empty the group | updateBookmark('b', null, '')
  | UpdateBookmark@ {BookmarkID: QString 'b', Group: QString ''} | logged
add a batch by local times
  | addBookmarks([1], '1970/01/01 01:00:01', '1970/01/01 01:00:02', null, '', 'x')
  | AddBookmarks@ [{CameraID: QString null, Creator: QString '', Description: QString null,
  EndTimestamp: qlonglong 2000, Group: QString 'x', LocationID: QString null,
  StartTimestamp: qlonglong 1000}] 1 | logged
delete a batch
  | deleteBookmarks([1]) | DeleteBookmarks@ [{BookmarkID: QString null}] 1 | logged
query recent bookmarks | queryBookmarkForRecent('X', 'A', 255)
  | QueryBookmarkForRecent@A {LocationID: QString 'X', RecentCnt: int 255} |
query for the API, cameras of any type, from the last to the first moment
  | queryBookmarkForAPI(['c', 5, {}, 'c'], 9223372036854775807, -9223372036854775808)
  | QueryBookmarkForApi@ {CameraIDList: [QString 'c', qlonglong 5, {}, QString 'c'],
  EndTimestamp: qlonglong -9223372036854775808, StartTimestamp: qlonglong 9223372036854775807} |
query for the API by local times, winter and summer
  | queryBookmarkForAPI(['c'], '2024/01/01 00:00:00', '2024/07/01 00:00:00')
  | QueryBookmarkForApi@ {CameraIDList: [QString 'c'], EndTimestamp: qlonglong 1719784800000,
  StartTimestamp: qlonglong 1704063600000} |
query for the API by local times, before the epoch and on a leap day
  | queryBookmarkForAPI(['c'], '1969/12/31 23:59:59', '2024/02/29 12:00:00')
  | QueryBookmarkForApi@ {CameraIDList: [QString 'c'], EndTimestamp: qlonglong 1709204400000,
  StartTimestamp: qlonglong -3601000} |
ask for the recycle setting | getRecycleSetting() | GetRecycleSetting@ invalid |
update the recycle setting | updateRecycleSetting(4294967295, true)
  | UpdateRecycleSetting@ {enableRecycle: bool true, reserveHour: uint 4294967295} |
connect | connect | QuerySevTimezone@ invalid; QuerySettingPermission@ invalid |
)"_s.replace(u"\n  "_s, u" "_s));
}

void TestRequests::sends()
{
    QFETCH(const QString, call);
    QFETCH(QString, sent);
    PluginHarness harness;
    // All others are for everybody.
    if (sent.startsWith(u"DeleteBookmark") || sent.startsWith(u"RemoveAllBookmarks"))
        harness.grantPermission();

    QVERIFY(callOrConnect(harness, call) != QVariant(false));
    QCOMPARE(harness.describeSent().join(u"; "), sent.replace(u'\'', u'"'));
    QCOMPARE(harness.emitted->take() + harness.log.take(), QStringList());
}

void TestRequests::tellsWhatWasNotSent()
{
    QFETCH(const QString, call);
    QFETCH(const QString, log);
    const QString line = u"src/Tessaline_Req.cpp: Tessaline::"_s + call.section(u'(', 0, 0) +
                         u", send command failed"_s;
    for (const QString &reason : {u"refused"_s, u"not initialised"_s, u"no framework"_s}) {
        PluginHarness harness(reason == u"refused" ? PluginHarness::Initialised
                                                   : PluginHarness::Bare);
        harness.framework.rules().setDefault(standin::Delivery::refused());
        if (reason == u"no framework")
            QVERIFY(harness.plugin().InitialPluginBase(nullptr, nullptr, nullptr));
        harness.grantPermission();

        QVERIFY2(callOrConnect(harness, call) != QVariant(true), qPrintable(reason));
        QCOMPARE(harness.log.take(), log.isEmpty() ? QStringList() : QStringList(line));
        QCOMPARE(harness.emitted->take(), QStringList());
    }
}

void TestRequests::refuses_data()
{
    addTable({"call", "result", "trace"}, uR"(
an empty camera | addBookmark('', 'l', 'A', 1, 2, 'd', 'c', 'g') | bool false | no camera
a null camera | addBookmark(null, 'l', 'A', 1, 2, 'd', 'c', 'g') | bool false | no camera
to delete without permission
  | deleteBookmark('b', 'A') | bool false | deleteBookmarkResponsed(false)
to remove all without permission
  | removeAllBookmarks('A') | bool true | removeAllBookmarksResponsed(false)
to delete a batch without permission | deleteBookmarks([{'BookmarkID': '2', 'relayPath': 'B'},
  {'BookmarkID': '1', 'relayPath': 'A'}, {'BookmarkID': '1', 'relayPath': 'A'},
  {'BookmarkID': '1', 'relayPath': 'B'}, 5]) | bool true | deleteBookmarksResponsed(,1,2,1)
to delete an empty batch without permission
  | deleteBookmarks([]) | bool true | deleteBookmarksResponsed()
no camera | queryBookmarkForAPI([], 1, 2) | invalid | failed
no start | queryBookmarkForAPI([1], 0, 2) | invalid | failed
no end | queryBookmarkForAPI([1], 1, 0) | invalid | failed
a month 13 at the start | queryBookmarkForAPI([1], MONTH13, GOOD) | invalid | failed
a month 13 at the end | queryBookmarkForAPI([1], GOOD, MONTH13) | invalid | failed
a text that goes on | queryBookmarkForAPI([1], '2024/01/01 00:00:00 ', GOOD) | invalid | failed
a month of one digit | queryBookmarkForAPI([1], '2024/1/01 00:00:00', GOOD) | invalid | failed
a year of two digits | queryBookmarkForAPI([1], '24/01/01 00:00:00', GOOD) | invalid | failed
a day that is not in that year
  | queryBookmarkForAPI([1], '2023/02/29 00:00:00', GOOD) | invalid | failed
the epoch itself | queryBookmarkForAPI([1], '1970/01/01 01:00:00', GOOD) | invalid | failed
an empty batch | addBookmarks([], 1, 2, 'd', 'c', 'g') | bool false |
a batch from a month 13 | addBookmarks([1], MONTH13, GOOD, 'd', 'c', 'g') | bool false |
a batch until a month 13 | addBookmarks([1], GOOD, MONTH13, 'd', 'c', 'g') | bool false |
)"_s.replace(u"GOOD"_s, u"'2024/01/01 00:00:00'"_s)
                                              .replace(u"MONTH13"_s, u"'2024/13/01 00:00:00'"_s)
                                              .replace(u"\n  "_s, u" "_s));
}

void TestRequests::refuses()
{
    QFETCH(const QString, call);
    for (const auto start : {PluginHarness::Initialised, PluginHarness::Bare}) {
        PluginHarness harness(start);
        harness.startTrace();
        QTEST(describe(harness.run(call)), "result");
        QString trace = harness.takeTrace().join(u"; ");
        trace.replace(u"src/Tessaline_Req.cpp: Tessaline::addBookmark, Location ID is empty"_s,
                      u"no camera"_s);
        QTEST(trace.replace(u"queryBookmarkForApiFinished(false)"_s, u"failed"_s), "trace");
    }
}

void TestRequests::keepsWhatTheOldConnectionTold()
{
    PluginHarness harness;
    harness.grantPermission();
    harness.plugin().PluginServerConnected();
    QVERIFY(harness.call<bool>("deleteBookmark", u"b"_s, u"A"_s));
    QVERIFY(harness.plugin().Init(nullptr));
    QVERIFY(!harness.call<bool>("deleteBookmark", u"b"_s, u"A"_s));
}

void TestRequests::passesTextsUnchanged()
{
    // What the commands look like when every text that the caller gives is this one.
    const auto describeAll = [](const QString &text) {
        PluginHarness h;
        h.grantPermission();
        h.call<bool>("addBookmark", text, text, text, qint64(1), qint64(2), text, text, text);
        h.call<bool>("deleteBookmark", text, text);
        h.call<bool>("updateBookmark", text, text, text);
        h.call<bool>("removeAllBookmarks", text);
        h.call<bool>("queryBookmarkForRecent", text, text, uchar(1));
        h.call("queryBookmarkForAPI", QVariantList{text}, qint64(1), qint64(2));
        QStringList lines;
        const QList<standin::SentCommand> sent = h.sent();
        for (const standin::SentCommand &command : sent)
            lines.append(describe(command.payload) + describe(command.relayPath));
        return lines;
    };
    const QString odd = u"%1 %2 %L1 %99 %s%n%d%p%*s%% /a//b\\c/ \t\r\n \U0001F4F7 e\u0301"_s +
                        QChar(0xd800) + u'x' + QChar(0xdfff) + QString::fromUtf16(u"a\0b\0", 4) +
                        QString(1 << 19, u'x');
    QStringList expected = describeAll(u"plain"_s);
    QCOMPARE(expected.size(), 6);
    QCOMPARE(describeAll(odd), expected.replaceInStrings(describe(u"plain"_s), describe(odd)));
}

QTEST_GUILESS_MAIN(TestRequests)
#include "tst_requests.moc"
