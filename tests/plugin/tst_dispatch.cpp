#include "PluginHarness.h"

#include "PluginBase.h"
#include "TimeShiftBufferModel.h"
#include "logging/LogControl.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QScopeGuard>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::Literals::StringLiterals;

/// How answers and events become signals, log lines and timeline items.
class TestDispatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judgesTheResultCode_data();
    void judgesTheResultCode();
    void logsBeforeItEmits();
    void keepsTheOddFormatOfRemoval();
    void emitsWithoutTheLog();
    void readsTheRecycleSetting_data();
    void readsTheRecycleSetting();
    void readsFlagsAsBool_data();
    void readsFlagsAsBool();
    void putsAddedBookmarksIntoTheirViewCells();
    void reportsAViewCellWithoutModel();
    void leavesItemsOfAFailedAdd();
    void takesDeletedBookmarksOutOfAllViewCells_data();
    void takesDeletedBookmarksOutOfAllViewCells();
    void putsBookmarksOfOtherClientsIntoTheirViewCells();
    void survivesEventsOfAnyShape();
};

namespace {

/// Result codes; the first one alone is success.
QStringList resultCodes()
{
    return {u"0"_s,  u""_s,     QString(), u"0 "_s,   u" 0"_s,     u"00"_s,
            u"-0"_s, u"-999"_s, u"1"_s,    u"%s%n"_s, u"\u0660"_s, QString(1, QChar())};
}

/// One payload of each shape.
QVariantList payloads()
{
    return {QVariant(),
            QString(),
            u"text"_s,
            5,
            2.5,
            false,
            QByteArray("bytes"),
            QVariantMap(),
            QVariantMap{{u"BookmarkID"_s, QVariantList{1}}, {u"Bookmarks"_s, u"no list"_s}},
            QVariantHash{{u"Bookmarks"_s, QVariantList{1, QVariant(), u"x"_s}}},
            QVariantList{1, QVariantMap(), QVariant()},
            QStringList{u"a"_s, QString()},
            QVariant::fromValue<QObject *>(nullptr),
            QDateTime()};
}

QString answerLog(const QString &text)
{
    return u"src/Tessaline.cpp: Tessaline::CommandProcessor, "_s + text;
}

QStringList idsOf(const QAbstractItemModel *model)
{
    return rowsOf(model, TimeShiftBufferModel::ItemIdRole);
}

QVariantMap recordAt(const QString &bookmarkID, const QString &locationID)
{
    return serverRecord(bookmarkID, u"1"_s, locationID, 1000, 2000);
}

} // namespace

void TestDispatch::judgesTheResultCode_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("signal"); // with %1 for whether the answer is a success
    QTest::addColumn<QString>("successLog");
    QTest::addColumn<QString>("failureLog");

    const auto judged = [](const char *command, const char *signal, const char *log) {
        QTest::newRow(command) << QString::fromLatin1(command) << QString::fromLatin1(signal)
                               << QString() << answerLog(QString::fromLatin1(log));
    };
    judged("AddBookmark", "addBookmarkResponsed(%1)", "add bookmark failed");
    judged("DeleteBookmark", "deleteBookmarkResponsed(%1)", "delete bookmark failed");
    judged("RemoveAllBookmarks", "removeAllBookmarksResponsed(%1)", "remove bookmark failed: ");
    judged("UpdateBookmark", "updateBookmarkResponsed(%1)", "update bookmark failed");
    judged("QueryBookmarkForRecent", "queryBookmarkForRecentResponsed(%1)",
           "query bookmarks failed");

    const auto unlogged = [](const char *command, const char *signal) {
        QTest::newRow(command) << QString::fromLatin1(command) << QString::fromLatin1(signal)
                               << QString() << QString();
    };
    unlogged("QueryBookmarkForApi", "queryBookmarkForApiFinished(%1)");
    // Nothing waits for these answers, as they come without a context.
    unlogged("AddBookmarks", "");
    unlogged("DeleteBookmarks", "");
    const QString noContext = u"src/Tessaline_ReqRespHandler.cpp: "
                              "Tessaline::HandleQueryAllBookmarksResp, "
                              "request response context is NULL"_s;
    QTest::newRow("QueryAllBookmars")
        << u"QueryAllBookmars"_s << QString() << noContext << noContext;
    unlogged("QuerySevTimezone", "");
    unlogged("QuerySettingPermission", "");
}

void TestDispatch::judgesTheResultCode()
{
    QFETCH(QString, command);
    QFETCH(QString, signal);
    PluginHarness harness;
    const QStringList codes = resultCodes();
    for (const QString &code : codes) {
        const bool success = code == codes.constFirst();
        const QString line =
            signal.contains(u'%') ? signal.arg(success ? u"true"_s : u"false"_s) : signal;
        const QVariantList results = payloads();
        for (const QVariant &result : results) {
            harness.answer(command, result, u"A"_s, nullptr, code);
            QCOMPARE(harness.emitted->take(), line.isEmpty() ? QStringList() : QStringList(line));
            QString log = harness.log.take().join(u'\n');
            if (command == u"RemoveAllBookmarks" && !success) {
                QVERIFY2(log.startsWith(answerLog(u"remove bookmark failed: "_s)), qPrintable(log));
                log.truncate(answerLog(u"remove bookmark failed: "_s).size());
            }
            if (success)
                QTEST(log, "successLog");
            else
                QTEST(log, "failureLog");
        }
    }
    QCOMPARE(harness.takeSent(), QStringList());
}

void TestDispatch::logsBeforeItEmits()
{
    PluginHarness harness;
    QStringList atSignal;
    harness.emitted->onSignal = [&](const QString &) { atSignal = harness.log.takeTexts(); };
    harness.answer(u"UpdateBookmark"_s, {}, {}, nullptr, u"-1"_s);
    QCOMPARE(atSignal, QStringList(u"Tessaline::CommandProcessor, update bookmark failed"_s));

    // A timeline's answer too, even when nobody asked.
    harness.answer(u"QueryBookmarkForTimeline"_s, {}, {}, nullptr, u"-1"_s);
    QCOMPARE(atSignal, QStringList(u"Tessaline::CommandProcessor, query bookmarks failed"_s));
    QCOMPARE(harness.emitted->take(), QStringList({u"updateBookmarkResponsed(false)"_s,
                                                   u"queryBookmarkForTimelineResponsed(false)"_s}));
    harness.answer(u"QueryBookmarkForTimeline"_s, {});
    QCOMPARE(harness.emitted->take(), QStringList());
}

void TestDispatch::keepsTheOddFormatOfRemoval()
{
    PluginHarness harness;
    standin::LogLine written;
    standin::logging::writeTo([&](const standin::LogLine &line) { written = line; });
    harness.answer(u"RemoveAllBookmarks"_s, {}, {}, nullptr, u"-999"_s);
    QCOMPARE(written.format, QByteArray("%s, remove bookmark failed: %d"));
    QCOMPARE(written.severity, QByteArray("error"));
    QCOMPARE(written.module, QByteArray("Tessaline"));
    QVERIFY(written.line > 0);
}

void TestDispatch::emitsWithoutTheLog()
{
    const auto restore = qScopeGuard([] {
        standin::logging::refuseLines(false);
        standin::logging::withhold({});
    });
    PluginHarness harness;
    const auto failAll = [&] {
        harness.answer(u"RemoveAllBookmarks"_s, {}, {}, nullptr, u"%s"_s);
        harness.call<bool>("addBookmark", QString(), QString(), QString(), qint64(0), qint64(0),
                           QString(), QString(), QString());
        return harness.emitted->take();
    };
    const QStringList signal(u"removeAllBookmarksResponsed(false)"_s);

    standin::logging::refuseLines(true);
    QCOMPARE(failAll(), signal);
    standin::logging::refuseLines(false);
    for (const standin::LogPart part :
         {standin::LogPart::Handle, standin::LogPart::CheckLine, standin::LogPart::WriteLine}) {
        standin::logging::withhold(part);
        QCOMPARE(failAll(), signal);
    }
    QCOMPARE(harness.log.take(), QStringList());

    standin::logging::withhold({});
    QCOMPARE(failAll(), signal);
    QCOMPARE(harness.log.take().size(), 2);
}

void TestDispatch::readsTheRecycleSetting_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("signal");

    const QString hours = u"reserveHour"_s;
    const QString enable = u"enableRecycle"_s;
    const auto map = [](const char *name, const QVariantMap &result, const char *arguments) {
        QTest::newRow(name) << QVariant(result)
                            << u"getRecycleSettingResponse(%1)"_s.arg(QLatin1String(arguments));
    };
    map("both", {{hours, 72U}, {enable, true}}, "72,true");
    map("the most hours", {{hours, 4294967295U}, {enable, false}}, "4294967295,false");
    map("no hours", {{enable, true}}, "0,true");
    map("no switch", {{hours, 7}}, "7,false");
    map("texts", {{hours, u"72"_s}, {enable, u"true"_s}}, "72,true");
    map("texts that are no values", {{hours, u"many"_s}, {enable, u"False"_s}}, "0,false");
    map("a text that is not empty", {{hours, u"-1"_s}, {enable, u"yes"_s}}, "0,true");
    map("fractions", {{hours, 2.6}, {enable, 0.0}}, "3,false");
    map("maps inside", {{hours, QVariantMap()}, {enable, QVariantList{true}}}, "0,false");
    map("capitals", {{u"ReserveHour"_s, 1}, {u"EnableRecycle"_s, true}}, "0,false");

    QTest::newRow("a hash") << QVariant(QVariantHash{{hours, 5}, {enable, 1}})
                            << u"getRecycleSettingResponse(5,true)"_s;
    const QString nothing = u"getRecycleSettingResponse(0,false)"_s;
    QTest::newRow("nothing") << QVariant() << nothing;
    QTest::newRow("a list") << QVariant(QVariantList{72U, true}) << nothing;
    QTest::newRow("a number") << QVariant(72U) << nothing;
    QTest::newRow("a text") << QVariant(u"{\"reserveHour\": 5}"_s) << nothing;
}

void TestDispatch::readsTheRecycleSetting()
{
    QFETCH(QVariant, result);
    QFETCH(QString, signal);
    PluginHarness harness;
    const QStringList codes = resultCodes();
    for (const QString &code : codes) {
        harness.answer(u"GetRecycleSetting"_s, result, {}, nullptr, code);
        QCOMPARE(harness.emitted->take(), QStringList(signal));
    }
    QCOMPARE(harness.log.take(), QStringList());
}

void TestDispatch::readsFlagsAsBool_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<bool>("flag");
    QTest::newRow("true") << QVariant(true) << true;
    QTest::newRow("false") << QVariant(false) << false;
    QTest::newRow("one") << QVariant(1) << true;
    QTest::newRow("minus one") << QVariant(-1) << true;
    QTest::newRow("zero") << QVariant(0) << false;
    QTest::newRow("the least number") << QVariant(std::numeric_limits<qint64>::min()) << true;
    QTest::newRow("the text true") << QVariant(u"true"_s) << true;
    QTest::newRow("the text FALSE") << QVariant(u"FALSE"_s) << false;
    QTest::newRow("the text 0") << QVariant(u"0"_s) << false;
    QTest::newRow("the text 00") << QVariant(u"00"_s) << true;
    QTest::newRow("an empty text") << QVariant(u""_s) << false;
    QTest::newRow("a null text") << QVariant(QString()) << false;
    QTest::newRow("the bytes false") << QVariant(QByteArray("false")) << false;
    QTest::newRow("the bytes no") << QVariant(QByteArray("no")) << true;
    QTest::newRow("nothing") << QVariant() << false;
    QTest::newRow("a list") << QVariant(QVariantList{true}) << false;
    QTest::newRow("a map") << QVariant(QVariantMap{{u"result"_s, true}}) << false;
}

void TestDispatch::readsFlagsAsBool()
{
    QFETCH(QVariant, result);
    QFETCH(bool, flag);
    PluginHarness harness;
    const QStringList codes = resultCodes();
    for (const QString &code : codes) {
        harness.answer(u"UpdateRecycleSetting"_s, result, {}, nullptr, code);
        QCOMPARE(harness.emitted->take(),
                 QStringList(u"updateRecycleSettingResponse(%1)"_s.arg(flag ? u"true" : u"false")));

        // From the opposite, so that an ignored answer shows.
        harness.answer(u"QuerySettingPermission"_s, !flag);
        harness.answer(u"QuerySettingPermission"_s, result, {}, nullptr, code);
        QCOMPARE(harness.call<bool>("deleteBookmark", u"b"_s, u"A"_s), flag);
        QCOMPARE(harness.emitted->take().isEmpty(), flag);
    }
    QCOMPARE(harness.log.take(), QStringList());
}

void TestDispatch::putsAddedBookmarksIntoTheirViewCells()
{
    PluginHarness harness;
    const auto *const one = harness.openViewCell(u"1"_s, u"loc"_s, u"A"_s);
    const auto *const two = harness.openViewCell(u"2"_s, u"loc"_s, u"B"_s);
    const auto *const three = harness.openViewCell(u"3"_s, u"Loc"_s, u"A"_s);
    const auto *const four = harness.openViewCell(u"4"_s, u"loc"_s, u"A"_s);

    harness.answer(u"AddBookmark"_s, recordAt(u"b"_s, u"loc"_s), u"A"_s);
    harness.answer(u"AddBookmark"_s, recordAt(u"c"_s, u"elsewhere"_s), u"A"_s);
    QCOMPARE(harness.emitted->take(),
             QStringList({u"addBookmarkResponsed(true)"_s, u"addBookmarkResponsed(true)"_s}));
    QCOMPARE(idsOf(one), QStringList(u"b"_s));
    QCOMPARE(idsOf(two), QStringList());
    QCOMPARE(idsOf(three), QStringList());
    QCOMPARE(idsOf(four), QStringList(u"b"_s));
}

void TestDispatch::reportsAViewCellWithoutModel()
{
    PluginHarness harness;
    harness.call("setTimelineFocusInfo", u"loc"_s, u"A"_s, u"1"_s);
    const auto *const shown = harness.openViewCell(u"2"_s, u"loc"_s, u"A"_s);
    harness.answer(u"AddBookmark"_s, recordAt(u"b"_s, u"loc"_s), u"A"_s);
    QCOMPARE(harness.emitted->take(), QStringList(u"addBookmarkResponsed(false)"_s));
    QCOMPARE(idsOf(shown), QStringList(u"b"_s));
    QCOMPARE(harness.log.take(), QStringList());
}

void TestDispatch::leavesItemsOfAFailedAdd()
{
    PluginHarness harness;
    const auto *const shown = harness.openViewCell(u"1"_s, u"loc"_s, u"A"_s);
    harness.answer(u"AddBookmark"_s, recordAt(u"b"_s, u"loc"_s), u"A"_s, nullptr, u"-1"_s);
    QCOMPARE(idsOf(shown), QStringList());

    harness.answer(u"AddBookmark"_s, recordAt(u"b"_s, u"loc"_s), u"A"_s);
    harness.answer(u"DeleteBookmark"_s, u"b"_s, u"A"_s, nullptr, u"-1"_s);
    harness.answer(u"RemoveAllBookmarks"_s, {}, u"A"_s);
    harness.answer(u"UpdateBookmark"_s, recordAt(u"c"_s, u"loc"_s), u"A"_s);
    QCOMPARE(idsOf(shown), QStringList(u"b"_s));
}

void TestDispatch::takesDeletedBookmarksOutOfAllViewCells_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("a text") << QVariant(u"5"_s) << QStringList(u""_s);
    QTest::newRow("a number") << QVariant(5) << QStringList(u""_s);
    QTest::newRow("bytes") << QVariant(QByteArray("5")) << QStringList(u""_s);
    QTest::newRow("an unknown one") << QVariant(u"6"_s) << QStringList({u""_s, u"5"_s});
    QTest::newRow("nothing, which is the empty text") << QVariant() << QStringList(u"5"_s);
    QTest::newRow("a map, likewise") << QVariant(QVariantMap()) << QStringList(u"5"_s);
}

void TestDispatch::takesDeletedBookmarksOutOfAllViewCells()
{
    QFETCH(QVariant, result);
    PluginHarness harness;
    const auto *const one = harness.openViewCell(u"1"_s, u"loc"_s, u"A"_s);
    const auto *const two = harness.openViewCell(u"2"_s, u"loc"_s, u"B"_s);
    for (const auto &station : {u"A"_s, u"B"_s}) {
        harness.answer(u"AddBookmark"_s, recordAt(u""_s, u"loc"_s), station);
        harness.answer(u"AddBookmark"_s, recordAt(u"5"_s, u"loc"_s), station);
    }
    harness.emitted->take();

    // Identifiers are looked for everywhere, whatever station answers.
    harness.answer(u"DeleteBookmark"_s, result, u"C"_s);
    QCOMPARE(harness.emitted->take(), QStringList(u"deleteBookmarkResponsed(true)"_s));
    QTEST(idsOf(one), "left");
    QTEST(idsOf(two), "left");
}

void TestDispatch::putsBookmarksOfOtherClientsIntoTheirViewCells()
{
    PluginHarness harness;
    const auto *const one = harness.openViewCell(u"1"_s, u"loc"_s, u"A"_s);
    const auto *const two = harness.openViewCell(u"2"_s, u"loc"_s, u"B"_s);
    harness.call("setTimelineFocusInfo", u"loc"_s, u"A"_s, u"without a model"_s);

    harness.framework.sendEvent(u"AddBookmark"_s, recordAt(u"b"_s, u"loc"_s), u"A"_s);
    QCOMPARE(idsOf(one), QStringList(u"b"_s));
    QCOMPARE(idsOf(two), QStringList());
    harness.framework.sendEvent(u"AddBookmark"_s, recordAt(u"c"_s, u"loc"_s), u"B"_s);
    QCOMPARE(idsOf(two), QStringList(u"c"_s));

    harness.framework.removePlugin(standin::Topology::pluginID());
    harness.framework.sendEvent(u"AddBookmark"_s, recordAt(u"d"_s, u"loc"_s), u"B"_s);
    QCOMPARE(idsOf(two), QStringList({u"c"_s, u"d"_s}));
    QCOMPARE(harness.log.take(), QStringList(u"src/Tessaline_Local.cpp: Tessaline::GetAllCamNames, "
                                             "get TopologyPlugin failed"_s));
    QCOMPARE(harness.emitted->take(), QStringList());
}

void TestDispatch::survivesEventsOfAnyShape()
{
    PluginHarness harness;
    const auto *const shown = harness.openViewCell(u"1"_s, u"loc"_s, u"A"_s);
    const QVariantList shapes = payloads();
    for (const QVariant &data : shapes)
        harness.framework.sendEvent(u"AddBookmark"_s, data, u"A"_s);
    QCOMPARE(idsOf(shown), QStringList());
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());

    // Without a location an event belongs to the view cell that shows none.
    const auto *const idle = harness.openViewCell(u"2"_s, QString(), u"A"_s);
    harness.framework.sendEvent(u"AddBookmark"_s, u"no map"_s, u"A"_s);
    QCOMPARE(idsOf(idle), QStringList(u""_s));
}

QTEST_GUILESS_MAIN(TestDispatch)
#include "tst_dispatch.moc"
