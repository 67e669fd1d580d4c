#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtTest/QTest>

#include <functional>
#include <limits>

using namespace Qt::Literals::StringLiterals;

using Request = std::function<QVariant(PluginHarness &)>;
Q_DECLARE_METATYPE(Request)

/// What one call sends that needs one command, and what it tells about a command not sent.
class TestRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sends_data();
    void sends();
    void tellsOfRefusal_data() { sends_data(); }
    void tellsOfRefusal();
    void managesWithoutFramework_data() { sends_data(); }
    void managesWithoutFramework();
    void refusesEmptyCamera_data();
    void refusesEmptyCamera();
    void needsPermission();
    void keepsWhatTheOldConnectionTold();
    void passesTextsUnchanged_data();
    void passesTextsUnchanged();
    void refusesQueriesForApi_data();
    void refusesQueriesForApi();
    void takesTextsAsLocalTime_data();
    void takesTextsAsLocalTime();
};

namespace {

constexpr qint64 Earliest = std::numeric_limits<qint64>::min();
constexpr qint64 Latest = std::numeric_limits<qint64>::max();

Request addBookmark(const QString &cameraID, const QString &locationID, const QString &relayPath,
                    qint64 start, qint64 end, const QString &desc, const QString &creator,
                    const QString &group)
{
    return [=](PluginHarness &h) -> QVariant {
        return h.call<bool>("addBookmark", cameraID, locationID, relayPath, start, end, desc,
                            creator, group);
    };
}

Request updateBookmark(const QString &desc, const QString &group)
{
    return [=](PluginHarness &h) -> QVariant {
        return h.call<bool>("updateBookmark", u"b"_s, desc, group);
    };
}

Request queryForRecent(uchar count)
{
    return [=](PluginHarness &h) -> QVariant {
        return h.call<bool>("queryBookmarkForRecent", u"X"_s, u"A"_s, count);
    };
}

Request queryForApi(const QVariantList &cameras, qint64 start, qint64 end)
{
    return [=](PluginHarness &h) {
        h.call("queryBookmarkForAPI", cameras, start, end);
        return QVariant();
    };
}

Request queryForApiByText(const QString &start, const QString &end)
{
    return [=](PluginHarness &h) {
        h.call("queryBookmarkForAPI", QVariantList{u"c"_s}, start, end);
        return QVariant();
    };
}

Request updateRecycleSetting(uint hours, bool enable)
{
    return [=](PluginHarness &h) {
        h.call("updateRecycleSetting", hours, enable);
        return QVariant();
    };
}

QStringList refusalLog(const QString &function)
{
    return {u"src/Tessaline_Req.cpp: Tessaline::"_s + function + u", send command failed"_s};
}

} // namespace

void TestRequests::sends_data()
{
    QTest::addColumn<Request>("request");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("payload");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QString>("result");  // of a call that was handed on
    QTest::addColumn<QString>("refused"); // of one that was not
    QTest::addColumn<QStringList>("log"); // of one that was not

    const QString yes = u"bool true"_s;
    const QString no = u"bool false"_s;
    const QString none = u"invalid"_s;

    QTest::newRow("add a bookmark")
        << addBookmark(u"c"_s, u"l"_s, u"A"_s, 1704067200000, 1704067260000, u"d"_s, u"me"_s,
                       u"g"_s)
        << u"AddBookmark"_s
        << uR"({CameraID: QString "c", Creator: QString "me", Description: QString "d", )"
           uR"(EndTimestamp: qlonglong 1704067260000, Group: QString "g", )"
           uR"(LocationID: QString "l", StartTimestamp: qlonglong 1704067200000})"_s
        << u"A"_s << yes << no << refusalLog(u"addBookmark"_s);
    QTest::newRow("add a bookmark of nothing but a camera that ends before it starts")
        << addBookmark(u"C1"_s, u""_s, u""_s, 2000, 1000, u""_s, u""_s, u""_s) << u"AddBookmark"_s
        << uR"({CameraID: QString "C1", Creator: QString "", Description: QString "", )"
           uR"(EndTimestamp: qlonglong 1000, Group: QString "", LocationID: QString "", )"
           uR"(StartTimestamp: qlonglong 2000})"_s
        << QString() << yes << no << refusalLog(u"addBookmark"_s);
    QTest::newRow("add a bookmark of null texts at the ends of time")
        << addBookmark(u"c"_s, {}, {}, Earliest, Latest, {}, {}, {}) << u"AddBookmark"_s
        << uR"({CameraID: QString "c", Creator: QString null, Description: QString null, )"
           uR"(EndTimestamp: qlonglong 9223372036854775807, Group: QString null, )"
           uR"(LocationID: QString null, StartTimestamp: qlonglong -9223372036854775808})"_s
        << QString() << yes << no << refusalLog(u"addBookmark"_s);

    QTest::newRow("delete a bookmark") << Request([](PluginHarness &h) -> QVariant {
        return h.call<bool>("deleteBookmark", u"b"_s, u"B"_s);
    }) << u"DeleteBookmark"_s << uR"({BookmarkID: QString "b"})"_s
                                       << u"B"_s << yes << no << refusalLog(u"deleteBookmark"_s);
    QTest::newRow("delete a bookmark without an identifier")
        << Request([](PluginHarness &h) -> QVariant {
               return h.call<bool>("deleteBookmark", QString(), QString());
           })
        << u"DeleteBookmark"_s << u"{BookmarkID: QString null}"_s << QString() << yes << no
        << refusalLog(u"deleteBookmark"_s);
    QTest::newRow("remove all bookmarks") << Request([](PluginHarness &h) -> QVariant {
        return h.call<bool>("removeAllBookmarks", u"C"_s);
    }) << u"RemoveAllBookmarks"_s << none << u"C"_s
                                          << yes << no << refusalLog(u"removeAllBookmarks"_s);

    const QStringList updateLog = refusalLog(u"updateBookmark"_s);
    const QString update = u"UpdateBookmark"_s;
    QTest::newRow("update with the identifier alone") << Request([](PluginHarness &h) -> QVariant {
        return h.call<bool>("updateBookmark", u"b"_s);
    }) << update << uR"({BookmarkID: QString "b"})"_s << QString()
                                                      << yes << no << updateLog;
    QTest::newRow("update the description") << Request([](PluginHarness &h) -> QVariant {
        return h.call<bool>("updateBookmark", u"b"_s, u"d"_s);
    }) << update << uR"({BookmarkID: QString "b", Description: QString "d"})"_s
                                            << QString() << yes << no << updateLog;
    QTest::newRow("update both") << updateBookmark(u"d"_s, u"g"_s) << update
                                 << uR"({BookmarkID: QString "b", Description: QString "d", )"
                                    uR"(Group: QString "g"})"_s
                                 << QString() << yes << no << updateLog;
    QTest::newRow("update neither, as both are null")
        << updateBookmark(QString(), QString()) << update << uR"({BookmarkID: QString "b"})"_s
        << QString() << yes << no << updateLog;
    QTest::newRow("empty the description, leave the group")
        << updateBookmark(u""_s, QString()) << update
        << uR"({BookmarkID: QString "b", Description: QString ""})"_s << QString() << yes << no
        << updateLog;
    QTest::newRow("leave the description, empty the group")
        << updateBookmark(QString(), u""_s) << update
        << uR"({BookmarkID: QString "b", Group: QString ""})"_s << QString() << yes << no
        << updateLog;

    const QString recent = u"QueryBookmarkForRecent"_s;
    QTest::newRow("query no recent bookmark")
        << queryForRecent(0) << recent << uR"({LocationID: QString "X", RecentCnt: int 0})"_s
        << u"A"_s << yes << no << QStringList();
    QTest::newRow("query 255 recent bookmarks")
        << queryForRecent(255) << recent << uR"({LocationID: QString "X", RecentCnt: int 255})"_s
        << u"A"_s << yes << no << QStringList();

    const QString api = u"QueryBookmarkForApi"_s;
    QTest::newRow("query for the API, cameras of any type")
        << queryForApi({u"c"_s, 5, QVariantMap(), QVariant(), u"c"_s}, 1, 2) << api
        << uR"({CameraIDList: [QString "c", int 5, {}, invalid, QString "c"], )"
           uR"(EndTimestamp: qlonglong 2, StartTimestamp: qlonglong 1})"_s
        << QString() << none << none << QStringList();
    QTest::newRow("query for the API from the last to the first moment")
        << queryForApi({u"c"_s}, Latest, Earliest) << api
        << uR"({CameraIDList: [QString "c"], EndTimestamp: qlonglong -9223372036854775808, )"
           uR"(StartTimestamp: qlonglong 9223372036854775807})"_s
        << QString() << none << none << QStringList();
    QTest::newRow("query for the API by texts, in local time")
        << queryForApiByText(u"2024/01/01 00:00:00"_s, u"2024/01/01 01:00:00"_s) << api
        << uR"({CameraIDList: [QString "c"], EndTimestamp: qlonglong 1704067200000, )"
           uR"(StartTimestamp: qlonglong 1704063600000})"_s
        << QString() << none << none << QStringList();

    QTest::newRow("ask for the recycle setting") << Request([](PluginHarness &h) {
        h.call("getRecycleSetting");
        return QVariant();
    }) << u"GetRecycleSetting"_s << none << QString()
                                                 << none << none << QStringList();
    QTest::newRow("update the recycle setting")
        << updateRecycleSetting(72, true) << u"UpdateRecycleSetting"_s
        << u"{enableRecycle: bool true, reserveHour: uint 72}"_s << QString() << none << none
        << QStringList();
    QTest::newRow("update the recycle setting to the most hours")
        << updateRecycleSetting(4294967295, false) << u"UpdateRecycleSetting"_s
        << u"{enableRecycle: bool false, reserveHour: uint 4294967295}"_s << QString() << none
        << none << QStringList();
}

void TestRequests::sends()
{
    QFETCH(Request, request);
    PluginHarness harness;
    harness.grantPermission();

    QTEST(describe(request(harness)), "result");
    const standin::SentCommand sent = harness.onlySent();
    QTEST(sent.command, "command");
    QTEST(describe(sent.payload), "payload");
    QTEST(sent.relayPath, "target");
    QCOMPARE(sent.context, nullptr);
    QCOMPARE(sent.flag, false);
    QCOMPARE(sent.hostHandle, static_cast<void *>(&harness));
    QCOMPARE(sent.pluginID, PluginHarness::pluginID());
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
}

void TestRequests::tellsOfRefusal()
{
    QFETCH(Request, request);
    PluginHarness harness;
    harness.grantPermission();
    harness.framework.rules().setDefault(standin::Delivery::refused());

    QTEST(describe(request(harness)), "refused");
    QTEST(harness.log.take(), "log");
    QCOMPARE(harness.emitted->take(), QStringList());
}

void TestRequests::managesWithoutFramework()
{
    QFETCH(Request, request);
    PluginHarness harness(PluginHarness::Bare);
    harness.grantPermission();
    for (const char *const state : {"before initialisation", "after it"}) {
        QVERIFY2(harness.framework.sent().isEmpty(), state);
        QTEST(describe(request(harness)), "refused");
        QTEST(harness.log.take(), "log");
        QCOMPARE(harness.emitted->take(), QStringList());
        harness.plugin().PluginServerConnected();
        QCOMPARE(harness.log.take(), QStringList());

        QVERIFY(harness.plugin().InitialPluginBase(nullptr, nullptr, nullptr));
        harness.grantPermission();
    }
}

void TestRequests::refusesEmptyCamera_data()
{
    QTest::addColumn<QString>("cameraID");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("null") << QString();
}

void TestRequests::refusesEmptyCamera()
{
    QFETCH(QString, cameraID);
    PluginHarness harness;
    QCOMPARE(addBookmark(cameraID, u"l"_s, u"A"_s, 1, 2, u"d"_s, u"c"_s, u"g"_s)(harness), false);
    QCOMPARE(harness.takeSent(), QStringList());
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.log.take(),
             QStringList(u"src/Tessaline_Req.cpp: Tessaline::addBookmark, Location ID is empty"_s));
}

void TestRequests::needsPermission()
{
    PluginHarness harness;
    QCOMPARE(harness.call<bool>("deleteBookmark", u"b"_s, u"A"_s), false);
    QCOMPARE(harness.emitted->take(), QStringList(u"deleteBookmarkResponsed(false)"_s));
    QCOMPARE(harness.call<bool>("removeAllBookmarks", u"A"_s), true);
    QCOMPARE(harness.emitted->take(), QStringList(u"removeAllBookmarksResponsed(false)"_s));
    QCOMPARE(harness.takeSent(), QStringList());

    // The other requests are for everybody.
    QCOMPARE(harness.call<bool>("updateBookmark", u"b"_s), true);
    harness.call("getRecycleSetting");
    harness.call("updateRecycleSetting", 1U, true);
    QCOMPARE(harness.takeSent(), QStringList({u"UpdateBookmark@"_s, u"GetRecycleSetting@"_s,
                                              u"UpdateRecycleSetting@"_s}));
    QCOMPARE(harness.log.take(), QStringList());
}

void TestRequests::keepsWhatTheOldConnectionTold()
{
    PluginHarness harness;
    harness.grantPermission();
    harness.plugin().PluginServerConnected();
    harness.plugin().PluginServerConnected();

    const QList<standin::SentCommand> sent = harness.sent();
    for (const standin::SentCommand &command : sent) {
        QCOMPARE(describe(command.payload), u"invalid"_s);
        QCOMPARE(command.context, nullptr);
        QCOMPARE(command.flag, false);
        QCOMPARE(command.hostHandle, static_cast<void *>(&harness));
        QCOMPARE(command.pluginID, PluginHarness::pluginID());
    }
    const QStringList round = {u"QuerySevTimezone@"_s, u"QuerySettingPermission@"_s};
    QCOMPARE(harness.takeSent(), round + round);

    harness.framework.rules().setDefault(standin::Delivery::refused());
    harness.plugin().PluginServerConnected();
    QCOMPARE(harness.takeSent(),
             QStringList({u"!QuerySevTimezone@"_s, u"!QuerySettingPermission@"_s}));
    QCOMPARE(harness.log.take(), QStringList());

    harness.framework.rules().reset();
    QVERIFY(harness.call<bool>("deleteBookmark", u"b"_s, u"A"_s));
    QVERIFY(harness.plugin().Init(nullptr));
    QVERIFY(!harness.call<bool>("deleteBookmark", u"b"_s, u"A"_s));
}

void TestRequests::passesTextsUnchanged_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("places for arguments") << u"%1 %2 %L1 %99"_s;
    QTest::newRow("format signs") << u"%s%n%d%p%*s%%"_s;
    QTest::newRow("slashes and blanks") << u" /a//b\\c/ \t\r\n"_s;
    QTest::newRow("beyond the first plane") << u"\U0001F4F7 \u00e4\u6f22 e\u0301"_s;
    QTest::newRow("half a character") << QString(QChar(0xd800)) + u'x' + QChar(0xdfff);
    QTest::newRow("an embedded NUL") << QString::fromUtf16(u"a\0b\0", 4);
    QTest::newRow("a megabyte") << QString(1 << 19, u'x');
}

void TestRequests::passesTextsUnchanged()
{
    QFETCH(QString, text);
    PluginHarness harness;
    harness.grantPermission();

    QVERIFY(harness.call<bool>("addBookmark", text, text, text, qint64(1), qint64(2), text, text,
                               text));
    QVERIFY(harness.call<bool>("deleteBookmark", text, text));
    QVERIFY(harness.call<bool>("updateBookmark", text, text, text));
    QVERIFY(harness.call<bool>("removeAllBookmarks", text));
    QVERIFY(harness.call<bool>("queryBookmarkForRecent", text, text, uchar(1)));
    harness.call("queryBookmarkForAPI", QVariantList{text}, qint64(1), qint64(2));
    const QVariantMap target{
        {u"CameraID"_s, text}, {u"LocationID"_s, text}, {u"relayPath"_s, text}};
    QVERIFY(harness.call<bool>("addBookmarks", QVariantList{target}, qint64(1), qint64(2), text,
                               text, text));

    const QList<standin::SentCommand> sent = harness.sent();
    QCOMPARE(sent.size(), 7);
    for (const standin::SentCommand &command : sent) {
        const bool hasTarget =
            command.command != u"UpdateBookmark" && command.command != u"QueryBookmarkForApi";
        QCOMPARE(command.relayPath, hasTarget ? text : QString());
        const QVariantList parts = command.payload.typeId() == QMetaType::QVariantList
                                       ? command.payload.toList()
                                       : QVariantList{command.payload};
        for (const QVariant &part : parts) {
            const QVariantMap values = part.toMap();
            for (const QVariant &value : values) {
                if (value.typeId() == QMetaType::QString)
                    QCOMPARE(value.toString(), text);
                else if (value.typeId() == QMetaType::QVariantList)
                    QCOMPARE(value.toList(), QVariantList{text});
            }
        }
    }
}

void TestRequests::refusesQueriesForApi_data()
{
    QTest::addColumn<Request>("request");
    QTest::newRow("no camera") << queryForApi({}, 1, 2);
    QTest::newRow("no start") << queryForApi({u"c"_s}, 0, 2);
    QTest::newRow("no end") << queryForApi({u"c"_s}, 1, 0);
    const QString good = u"2024/01/01 00:00:00"_s;
    QTest::newRow("a month 13 at the start") << queryForApiByText(u"2024/13/01 00:00:00"_s, good);
    QTest::newRow("a month 13 at the end") << queryForApiByText(good, u"2024/13/01 00:00:00"_s);
    QTest::newRow("an empty text") << queryForApiByText(u""_s, good);
    QTest::newRow("a null text") << queryForApiByText(good, QString());
    QTest::newRow("a text that goes on") << queryForApiByText(good + u" "_s, good);
    QTest::newRow("another format") << queryForApiByText(u"2024-01-01 00:00:00"_s, good);
    QTest::newRow("a year of two digits") << queryForApiByText(u"24/01/01 00:00:00"_s, good);
    QTest::newRow("a day that is not in that year")
        << queryForApiByText(u"2023/02/29 00:00:00"_s, good);
    QTest::newRow("the epoch itself, by text") << queryForApiByText(u"1970/01/01 01:00:00"_s, good);
}

void TestRequests::refusesQueriesForApi()
{
    QFETCH(Request, request);
    PluginHarness harness;
    request(harness);
    QCOMPARE(harness.takeSent(), QStringList());
    QCOMPARE(harness.emitted->take(), QStringList(u"queryBookmarkForApiFinished(false)"_s));
    QCOMPARE(harness.log.take(), QStringList());
}

void TestRequests::takesTextsAsLocalTime_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qint64>("time");
    QTest::newRow("winter") << u"2024/01/01 00:00:00"_s << qint64(1704063600000);
    QTest::newRow("summer") << u"2024/07/01 00:00:00"_s << qint64(1719784800000);
    QTest::newRow("before the epoch") << u"1969/12/31 23:59:59"_s << qint64(-3601000);
    QTest::newRow("a leap day") << u"2024/02/29 12:00:00"_s << qint64(1709204400000);
}

void TestRequests::takesTextsAsLocalTime()
{
    QFETCH(QString, text);
    QFETCH(qint64, time);
    PluginHarness harness;
    queryForApiByText(text, text)(harness);
    QCOMPARE(describe(harness.onlySent().payload.toMap().value(u"StartTimestamp"_s)),
             describe(time));

    // The batch reads its texts as the query does.
    QVERIFY(harness.call<bool>("addBookmarks", QVariantList{QVariant()}, text, text, QString(),
                               QString(), QString()));
    const QVariantList batch = harness.onlySent().payload.toList();
    QCOMPARE(describe(batch.at(0).toMap().value(u"EndTimestamp"_s)), describe(time));
}

QTEST_GUILESS_MAIN(TestRequests)
#include "tst_requests.moc"
