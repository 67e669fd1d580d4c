#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtTest/QTest>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;

using Request = std::function<QVariant(PluginHarness &)>;
Q_DECLARE_METATYPE(Request)

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

constexpr qint64 First = std::numeric_limits<qint64>::min();
constexpr qint64 Last = std::numeric_limits<qint64>::max();

/// The call of a method; its result is invalid when the method has none.
template <typename Result, typename... Arguments>
Request callOf(const char *method, const Arguments &...arguments)
{
    return [=](PluginHarness &h) {
        if constexpr (std::is_void_v<Result>) {
            h.call(method, arguments...);
            return QVariant();
        } else {
            return QVariant(h.call<Result>(method, arguments...));
        }
    };
}

/// Commands as "AddBookmark@A payload", after checking what they have in common.
QString describeSent(const PluginHarness &h)
{
    QStringList lines;
    const QList<standin::SentCommand> sent = h.sent();
    for (const standin::SentCommand &command : sent) {
        if (command.context || command.flag || command.pluginID != PluginHarness::pluginID() ||
            command.hostHandle != static_cast<const void *>(&h))
            lines.append(u"with odd arguments:"_s);
        lines.append(command.command + u'@' + command.relayPath + u' ' + describe(command.payload));
    }
    return lines.join(u"; ");
}

} // namespace

void TestRequests::sends_data()
{
    QTest::addColumn<QString>("sent");
    QTest::addColumn<QString>("method"); // if it logs that the command was refused
    QTest::addColumn<Request>("request");

    const auto row = [](const char *name, const char *sent, const Request &request,
                        const char *logs = "") {
        QTest::newRow(name) << QString::fromLatin1(sent).replace(u'\'', u'"')
                            << QString::fromLatin1(logs) << request;
    };
    const auto logged = [&](const char *name, const char *sent, const char *method,
                            const auto &...arguments) {
        row(name, sent, callOf<bool>(method, arguments...), method);
    };
    const QString null;

    logged("add a bookmark",
           "AddBookmark@A {CameraID: QString 'c', Creator: QString 'me', Description: QString 'd', "
           "EndTimestamp: qlonglong 1704067260000, Group: QString 'g', LocationID: QString 'l', "
           "StartTimestamp: qlonglong 1704067200000}",
           "addBookmark", u"c"_s, u"l"_s, u"A"_s, 1704067200000LL, 1704067260000LL, u"d"_s, u"me"_s,
           u"g"_s);
    logged("add a bookmark of null and empty texts that ends long before it starts",
           "AddBookmark@ {CameraID: QString 'c', Creator: QString null, Description: QString null, "
           "EndTimestamp: qlonglong -9223372036854775808, Group: QString '', "
           "LocationID: QString '', StartTimestamp: qlonglong 9223372036854775807}",
           "addBookmark", u"c"_s, u""_s, null, Last, First, null, null, u""_s);
    logged("delete a bookmark", "DeleteBookmark@B {BookmarkID: QString 'b'}", "deleteBookmark",
           u"b"_s, u"B"_s);
    logged("delete a bookmark without an identifier", "DeleteBookmark@ {BookmarkID: QString null}",
           "deleteBookmark", null, null);
    logged("remove all bookmarks", "RemoveAllBookmarks@C invalid", "removeAllBookmarks", u"C"_s);

    logged("update with the identifier alone", "UpdateBookmark@ {BookmarkID: QString 'b'}",
           "updateBookmark", u"b"_s);
    logged("update the description",
           "UpdateBookmark@ {BookmarkID: QString 'b', Description: QString 'd'}", "updateBookmark",
           u"b"_s, u"d"_s);
    logged("update both",
           "UpdateBookmark@ {BookmarkID: QString 'b', Description: QString 'd', "
           "Group: QString 'g'}",
           "updateBookmark", u"b"_s, u"d"_s, u"g"_s);
    logged("empty the description, leave the group",
           "UpdateBookmark@ {BookmarkID: QString 'b', Description: QString ''}", "updateBookmark",
           u"b"_s, u""_s, null);
    logged("leave the description, empty the group",
           "UpdateBookmark@ {BookmarkID: QString 'b', Group: QString ''}", "updateBookmark", u"b"_s,
           null, u""_s);

    row("query 255 recent bookmarks",
        "QueryBookmarkForRecent@A {LocationID: QString 'X', RecentCnt: int 255}",
        callOf<bool>("queryBookmarkForRecent", u"X"_s, u"A"_s, uchar(255)));
    row("query for the API, cameras of any type, from the last to the first moment",
        "QueryBookmarkForApi@ {CameraIDList: [QString 'c', int 5, {}, invalid, QString 'c'], "
        "EndTimestamp: qlonglong -9223372036854775808, "
        "StartTimestamp: qlonglong 9223372036854775807}",
        callOf<void>("queryBookmarkForAPI",
                     QVariantList{u"c"_s, 5, QVariantMap(), QVariant(), u"c"_s}, Last, First));
    row("query for the API by local times, winter and summer",
        "QueryBookmarkForApi@ {CameraIDList: [int 1], EndTimestamp: qlonglong 1719784800000, "
        "StartTimestamp: qlonglong 1704063600000}",
        callOf<void>("queryBookmarkForAPI", QVariantList{1}, u"2024/01/01 00:00:00"_s,
                     u"2024/07/01 00:00:00"_s));
    row("query for the API by local times, before the epoch and on a leap day",
        "QueryBookmarkForApi@ {CameraIDList: [int 1], EndTimestamp: qlonglong 1709204400000, "
        "StartTimestamp: qlonglong -3601000}",
        callOf<void>("queryBookmarkForAPI", QVariantList{1}, u"1969/12/31 23:59:59"_s,
                     u"2024/02/29 12:00:00"_s));

    row("ask for the recycle setting", "GetRecycleSetting@ invalid",
        callOf<void>("getRecycleSetting"));
    row("update the recycle setting",
        "UpdateRecycleSetting@ {enableRecycle: bool true, reserveHour: uint 4294967295}",
        callOf<void>("updateRecycleSetting", 4294967295U, true));
    row("connect", "QuerySevTimezone@ invalid; QuerySettingPermission@ invalid",
        [](PluginHarness &h) {
            h.plugin().PluginServerConnected();
            return QVariant();
        });
}

void TestRequests::sends()
{
    QFETCH(const Request, request);
    QFETCH(const QString, sent);
    PluginHarness harness;
    // All others are for everybody.
    if (sent.startsWith(u"DeleteBookmark") || sent.startsWith(u"RemoveAllBookmarks"))
        harness.grantPermission();

    QVERIFY(request(harness) != QVariant(false));
    QCOMPARE(describeSent(harness), sent);
    QCOMPARE(harness.emitted->take() + harness.log.take(), QStringList());
}

void TestRequests::tellsWhatWasNotSent()
{
    QFETCH(const Request, request);
    QFETCH(const QString, method);
    QStringList log;
    if (!method.isEmpty()) {
        log.append(u"src/Tessaline_Req.cpp: Tessaline::"_s + method + u", send command failed"_s);
    }
    for (const QString &reason : {u"refused"_s, u"not initialised"_s, u"no framework"_s}) {
        PluginHarness harness(reason == u"refused" ? PluginHarness::Initialised
                                                   : PluginHarness::Bare);
        harness.framework.rules().setDefault(standin::Delivery::refused());
        if (reason == u"no framework")
            QVERIFY(harness.plugin().InitialPluginBase(nullptr, nullptr, nullptr));
        harness.grantPermission();

        QVERIFY2(request(harness) != QVariant(true), qPrintable(reason));
        QCOMPARE(harness.log.take(), log);
        QCOMPARE(harness.emitted->take(), QStringList());
    }
}

void TestRequests::refuses_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("trace");
    QTest::addColumn<Request>("request");

    const auto row = [](const char *name, const QVariant &result, const QString &trace,
                        const Request &request) {
        QTest::newRow(name) << result << trace << request;
    };

    const QString noCamera =
        u"src/Tessaline_Req.cpp: Tessaline::addBookmark, Location ID is empty"_s;
    for (const QString &camera : {u""_s, QString()}) {
        row(camera.isNull() ? "a null camera" : "an empty camera", false, noCamera,
            callOf<bool>("addBookmark", camera, u"l"_s, u"A"_s, qint64(1), qint64(2), u"d"_s,
                         u"c"_s, u"g"_s));
    }

    row("to delete without permission", false, u"deleteBookmarkResponsed(false)"_s,
        callOf<bool>("deleteBookmark", u"b"_s, u"A"_s));
    row("to remove all without permission", true, u"removeAllBookmarksResponsed(false)"_s,
        callOf<bool>("removeAllBookmarks", u"A"_s));
    const auto bookmark = [](const QString &id, const QString &station) {
        return QVariantMap{{u"BookmarkID"_s, id}, {u"relayPath"_s, station}};
    };
    const QVariantList batch{bookmark(u"2"_s, u"B"_s), bookmark(u"1"_s, u"A"_s),
                             bookmark(u"1"_s, u"A"_s), bookmark(u"1"_s, u"B"_s), 5};
    row("to delete a batch without permission", true, u"deleteBookmarksResponsed(,1,2,1)"_s,
        callOf<bool>("deleteBookmarks", batch));
    row("to delete an empty batch without permission", true, u"deleteBookmarksResponsed()"_s,
        callOf<bool>("deleteBookmarks", QVariantList()));

    const QString failed = u"queryBookmarkForApiFinished(false)"_s;
    const auto query = [&](const char *name, const QVariantList &cameras, const auto &start,
                           const auto &end) {
        row(name, {}, failed, callOf<void>("queryBookmarkForAPI", cameras, start, end));
    };
    query("no camera", {}, qint64(1), qint64(2));
    query("no start", {1}, qint64(0), qint64(2));
    query("no end", {1}, qint64(1), qint64(0));
    const QString good = u"2024/01/01 00:00:00"_s;
    const QString bad = u"2024/13/01 00:00:00"_s;
    query("a month 13 at the start", {1}, bad, good);
    query("a month 13 at the end", {1}, good, bad);
    query("a text that goes on", {1}, good + u' ', good);
    query("a day that is not in that year", {1}, u"2023/02/29 00:00:00"_s, good);
    query("the epoch itself, by text", {1}, u"1970/01/01 01:00:00"_s, good);

    const auto add = [&](const QString &start, const QString &end) {
        return callOf<bool>("addBookmarks", QVariantList{1}, start, end, u""_s, u""_s, u""_s);
    };
    row("a batch from a month 13", false, {}, add(bad, good));
    row("a batch until a month 13", false, {}, add(good, bad));
}

void TestRequests::refuses()
{
    QFETCH(const Request, request);
    PluginHarness harness;
    harness.startTrace();
    QTEST(request(harness), "result");
    QTEST(harness.takeTrace().join(u"; "), "trace");
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
