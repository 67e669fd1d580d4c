#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtTest/QTest>

using namespace Qt::Literals::StringLiterals;
using standin::Delivery;

/// The three queries whose answers fill a list, above all the one that asks every station.
class TestQueries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksEveryStation();
    void gathersAnswersInTheirOrder_data();
    void gathersAnswersInTheirOrder();
    void asksOnlyStations();
    void needsTopology();
    void dropsStationsThatRefuse();
    void takesAnswersFromInsideTheCall_data();
    void takesAnswersFromInsideTheCall();
    void countsAnswersOfOtherStations();
    void logsAnswersWithoutContext();
    void dropsSupersededAnswers();
    void readsAnswersOfAnyShape_data();
    void readsAnswersOfAnyShape();
    void fillsTheRecentList();
    void keepsTheResultForApi();
};

namespace {

QString function()
{
    return u"src/Tessaline_ReqRespHandler.cpp: Tessaline::HandleQueryAllBookmarksResp, "_s;
}

QString failureLog(const QString &station)
{
    return function() + u"query all bookmarks for server ("_s + station + u") failed"_s;
}

QString noContextLog()
{
    return function() + u"request response context is NULL"_s;
}

QVariant answerWith(const QStringList &ids)
{
    QVariantList records;
    for (const QString &id : ids)
        records.append(serverRecord(id, u"1"_s, u"l"_s, 1, 2));
    return QVariantMap{{u"Bookmarks"_s, records}};
}

/// The bookmarks of a list of display records, as "relay path/identifier" each.
QStringList idsOf(const QVariantList &list)
{
    QStringList ids;
    for (const QVariant &record : list) {
        const QVariantMap map = record.toMap();
        ids.append(map.value(u"relayPath"_s).toString() + u'/' +
                   map.value(u"bookmarkID"_s).toString());
    }
    return ids;
}

QStringList allIds(PluginHarness &harness)
{
    return idsOf(harness.call<QVariantList>("getBookmarkListByNodeID", QString()));
}

QList<standin::SentCommand> queryAll(PluginHarness &harness)
{
    if (!harness.call<bool>("queryAllBookmarks"))
        return {};
    QList<standin::SentCommand> sent = harness.sent();
    harness.framework.clearSent();
    return sent;
}

/// "queryAllBookmarksResponsed" for each letter, t or f.
QStringList done(const char *letters)
{
    QStringList lines;
    for (; *letters; ++letters)
        lines.append(*letters == 't' ? u"queryAllBookmarksResponsed(true)"_s
                                     : u"queryAllBookmarksResponsed(false)"_s);
    return lines;
}

} // namespace

void TestQueries::asksEveryStation()
{
    PluginHarness harness;
    QCOMPARE(harness.call<bool>("queryAllBookmarks"), true);
    const QList<standin::SentCommand> sent = harness.sent();
    QCOMPARE(harness.takeSent(), QStringList({u"QueryAllBookmars@A"_s, u"QueryAllBookmars@B"_s,
                                              u"QueryAllBookmars@C"_s}));
    for (const standin::SentCommand &command : sent) {
        QCOMPARE(describe(command.payload), u"{}"_s);
        QVERIFY(command.context);
        QCOMPARE(command.context, sent.at(0).context);
        QCOMPARE(command.flag, false);
        QCOMPARE(command.hostHandle, static_cast<void *>(&harness));
        QCOMPARE(command.pluginID, PluginHarness::pluginID());
    }
    QVERIFY(queryAll(harness).at(0).context != sent.at(0).context);
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
}

void TestQueries::gathersAnswersInTheirOrder_data()
{
    QTest::addColumn<QList<int>>("order");
    QTest::addColumn<QStringList>("codes"); // of A, B and C
    QTest::addColumn<QStringList>("ids");
    const QString ok = u"0"_s;
    QTest::newRow("as sent") << QList<int>{0, 1, 2} << QStringList{ok, ok, ok}
                             << QStringList{u"A/2"_s, u"A/1"_s, u"B/2"_s,
                                            u"B/1"_s, u"C/2"_s, u"C/1"_s};
    QTest::newRow("otherwise") << QList<int>{2, 0, 1} << QStringList{ok, ok, ok}
                               << QStringList{u"C/2"_s, u"C/1"_s, u"A/2"_s,
                                              u"A/1"_s, u"B/2"_s, u"B/1"_s};
    QTest::newRow("the last one fails") << QList<int>{1, 0, 2} << QStringList{ok, ok, u"-999"_s}
                                        << QStringList{u"B/2"_s, u"B/1"_s, u"A/2"_s, u"A/1"_s};
    QTest::newRow("all fail") << QList<int>{2, 1, 0} << QStringList{u""_s, QString(), u"0 "_s}
                              << QStringList();
}

void TestQueries::gathersAnswersInTheirOrder()
{
    QFETCH(QList<int>, order);
    QFETCH(QStringList, codes);
    PluginHarness harness;
    harness.storeBookmarks({serverRecord(u"old"_s, u"1"_s, u"l"_s, 1, 2)});
    const auto sent = queryAll(harness);
    QCOMPARE(allIds(harness), QStringList());
    const int calls = harness.topology.callCount();
    QStringList log;
    int named = 0;
    for (const int position : std::as_const(order)) {
        harness.answer(sent.at(position), answerWith({u"2"_s, u"1"_s}), codes.at(position));
        if (codes.at(position) == u"0")
            ++named;
        else
            log.append(failureLog(sent.at(position).relayPath));
    }
    QTEST(allIds(harness), "ids");
    QCOMPARE(harness.emitted->take(), done("fft"));
    QCOMPARE(harness.log.take(), log);
    QCOMPARE(harness.topology.callCount() - calls, named); // names are fetched once an answer
}

void TestQueries::asksOnlyStations()
{
    PluginHarness harness;
    harness.topology.clear();
    QCOMPARE(harness.call<bool>("queryAllBookmarks"), false);
    QCOMPARE(harness.log.take(), QStringList());

    const QList<QPair<QString, QVariant>> nodes = {
        {u"z"_s, 1},   {u"Z"_s, u"1"_s},  {u"camera"_s, 2},        {u"connected"_s, 0},
        {u""_s, 1},    {u"no"_s, u"x"_s}, {u"none"_s, QVariant()}, {u"map"_s, QVariantMap()},
        {u"neg"_s, -1}};
    for (const auto &[id, type] : nodes)
        harness.topology.setNode({id, id, type});
    // 8-bit texts and format signs reach the log as they are.
    const QString odd = u"S\u00fcd %1 %s%n"_s;
    harness.topology.setStation(odd, odd);

    const auto sent = queryAll(harness);
    QStringList targets;
    for (const standin::SentCommand &command : sent)
        targets.append(command.relayPath);
    QCOMPARE(targets, QStringList({u""_s, odd, u"Z"_s, u"z"_s}));
    harness.answer(sent.at(1), {}, u"-1"_s);
    QCOMPARE(harness.log.take(), QStringList(failureLog(odd)));
}

void TestQueries::needsTopology()
{
    PluginHarness harness;
    harness.storeBookmarks({serverRecord(u"old"_s, u"1"_s, u"l"_s, 1, 2)});
    const auto sent = queryAll(harness);
    harness.framework.removePlugin(standin::Topology::pluginID());
    const QString line = u"src/Tessaline_Local.cpp: Tessaline::%1, get TopologyPlugin failed"_s;

    harness.answer(sent.at(0), answerWith({u"1"_s}));
    QCOMPARE(harness.log.take(), QStringList(line.arg(u"GetAllCamNames"_s)));
    QCOMPARE(allIds(harness), QStringList(u"A/1"_s));
    harness.emitted->take();

    const auto expectNothing = [&] {
        QCOMPARE(harness.call<bool>("queryAllBookmarks"), false);
        QCOMPARE(harness.log.take(), QStringList(line.arg(u"GetAllSubStations"_s)));
        QCOMPARE(harness.takeSent(), QStringList());
        QCOMPARE(harness.emitted->take(), QStringList());
        QCOMPARE(allIds(harness), QStringList());
    };
    expectNothing();
    harness.plugin().InitialPluginBase(nullptr, nullptr, nullptr);
    expectNothing();

    // An object that lacks the method knows no names and no stations.
    harness.plugin().InitialPluginBase(nullptr, nullptr, &harness.framework);
    QObject other;
    harness.framework.addPlugin(standin::Topology::pluginID(), &other);
    QTest::ignoreMessage(QtWarningMsg, "QMetaObject::invokeMethod: No such method "
                                       "QObject::getValuesFromModel(int,QString,QString)");
    QCOMPARE(harness.call<bool>("queryAllBookmarks"), false);
    QCOMPARE(harness.log.take(), QStringList());
}

void TestQueries::dropsStationsThatRefuse()
{
    const QString line =
        u"src/Tessaline_Req.cpp: Tessaline::queryAllBookmarks, SendCommand failed"_s;
    PluginHarness harness;
    harness.framework.rules().setForStation(u"B"_s, Delivery::refused());
    const auto sent = queryAll(harness);
    QCOMPARE(sent.size(), 3);
    QCOMPARE(harness.log.take(), QStringList(line));
    harness.answer(sent.at(0), {});
    harness.answer(sent.at(2), {});
    QCOMPARE(harness.emitted->take(), done("ft"));

    harness.framework.rules().setDefault(Delivery::refused());
    QCOMPARE(harness.call<bool>("queryAllBookmarks"), false);
    QCOMPARE(harness.log.take(), QStringList({line, line, line}));
    QCOMPARE(harness.emitted->take(), QStringList());
}

void TestQueries::takesAnswersFromInsideTheCall_data()
{
    QTest::addColumn<QString>("delivery"); // of A, B and C: inside, failing inside, later, refused
    QTest::addColumn<QStringList>("inside");
    QTest::addColumn<QStringList>("later");
    const auto row = [](const char *name, const char *delivery, const char *inside,
                        const char *later) {
        QTest::newRow(name) << QString::fromLatin1(delivery) << done(inside) << done(later);
    };
    row("all inside", "iii", "fft", "");
    row("all failing inside", "fff", "fft", "");
    row("the first inside", "ill", "f", "ft");
    row("the last inside", "lli", "f", "ft");
    row("the first refused", "rif", "ft", "");
    row("the last refused", "iir", "fft", ""); // done only now that C is out
    row("the last two refused", "irr", "ft", "");
    row("one inside, one later, one refused", "ilr", "f", "t");
}

void TestQueries::takesAnswersFromInsideTheCall()
{
    QFETCH(QString, delivery);
    PluginHarness harness;
    const QStringList stations = {u"A"_s, u"B"_s, u"C"_s};
    QStringList ids;
    for (qsizetype i = 0; i < stations.size(); ++i) {
        const QChar how = delivery.at(i);
        if (how == u'i')
            ids.append(stations.at(i) + u"/1"_s);
        harness.framework.rules().setForStation(
            stations.at(i), how == u'l'   ? Delivery::held().failing(u"-1"_s)
                            : how == u'r' ? Delivery::refused()
                            : how == u'f' ? Delivery::immediate().failing(u"-1"_s)
                                          : Delivery::immediate().replacing(answerWith({u"1"_s})));
    }
    QCOMPARE(harness.call<bool>("queryAllBookmarks"), true);
    QTEST(harness.emitted->take(), "inside");
    harness.framework.releaseAll();
    QTEST(harness.emitted->take(), "later");
    QCOMPARE(allIds(harness), ids);

    harness.log.take();
    harness.answer(harness.sent().at(0), answerWith({u"1"_s}));
    QCOMPARE(harness.log.take(), QStringList(noContextLog()));
    QCOMPARE(harness.emitted->take(), QStringList());
}

void TestQueries::countsAnswersOfOtherStations()
{
    PluginHarness harness;
    const auto sent = queryAll(harness);
    harness.answer(sent.at(0), answerWith({u"1"_s}));
    harness.answer(sent.at(0), answerWith({u"2"_s})); // doubled
    harness.answer(sent.at(0).command, answerWith({u"3"_s}), u"a"_s, sent.at(0).context);
    harness.answer(sent.at(0).command, {}, u"D"_s, sent.at(0).context, u"-1"_s);
    QCOMPARE(harness.emitted->take(), done("ffff"));
    QCOMPARE(harness.log.take(), QStringList(failureLog(u"D"_s)));
    QCOMPARE(allIds(harness), QStringList({u"A/1"_s, u"A/2"_s, u"a/3"_s}));
    harness.answer(sent.at(2), {});
    harness.answer(sent.at(1), {});
    QCOMPARE(harness.emitted->take(), done("ft"));
}

void TestQueries::logsAnswersWithoutContext()
{
    PluginHarness harness;
    harness.grantPermission();
    const auto sent = queryAll(harness);
    harness.call<bool>("deleteBookmarks", QVariantList{QVariantMap()});
    const standin::SentCommand batch = harness.onlySent();
    for (const standin::SentCommand &command : sent)
        harness.answer(command, {});
    QCOMPARE(harness.emitted->take(), done("fft"));

    int dummy = 0;
    const QList<void *> contexts = {nullptr, &dummy, batch.context, sent.at(0).context};
    for (void *const context : contexts) {
        for (const auto &code : {u"0"_s, u"-1"_s})
            harness.answer(u"QueryAllBookmars"_s, answerWith({u"1"_s}), u"A"_s, context, code);
        QCOMPARE(harness.log.take(), QStringList({noContextLog(), noContextLog()}));
    }
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(allIds(harness), QStringList());
    harness.answer(batch, {});
    QCOMPARE(harness.emitted->take(), QStringList(u"deleteBookmarksResponsed()"_s));
}

void TestQueries::dropsSupersededAnswers()
{
    PluginHarness harness;
    const auto old = queryAll(harness);
    harness.answer(old.at(0), answerWith({u"old"_s}));
    QCOMPARE(harness.emitted->take(), done("f"));
    const auto current = queryAll(harness);
    QCOMPARE(allIds(harness), QStringList());

    harness.answer(old.at(1), answerWith({u"old"_s}));
    harness.answer(current.at(0), answerWith({u"1"_s}));
    harness.answer(old.at(0), answerWith({u"old"_s})); // doubled
    QCOMPARE(harness.emitted->take(), done("f"));
    QCOMPARE(harness.log.take(), QStringList());
    harness.answer(old.at(2), {}, u"-1"_s);
    QCOMPARE(harness.log.take(), QStringList(failureLog(u"C"_s)));
    QCOMPARE(harness.emitted->take(), QStringList());

    // Its last answer was the end of the old query; the new one goes on.
    harness.answer(old.at(2), {});
    QCOMPARE(harness.log.take(), QStringList(noContextLog()));
    harness.answer(current.at(1), answerWith({u"2"_s}));
    harness.answer(current.at(2), answerWith({u"3"_s}));
    QCOMPARE(harness.emitted->take(), done("ft"));
    QCOMPARE(allIds(harness), QStringList({u"A/1"_s, u"B/2"_s, u"C/3"_s}));
    harness.answer(current.at(2), {});
    QCOMPARE(harness.log.take(), QStringList(noContextLog()));

    // A query that asks nobody supersedes as well.
    const auto last = queryAll(harness);
    harness.topology.clear();
    QVERIFY(queryAll(harness).isEmpty());
    for (const standin::SentCommand &command : last)
        harness.answer(command, answerWith({u"old"_s}));
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(allIds(harness), QStringList());
}

void TestQueries::readsAnswersOfAnyShape_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<int>("count");
    const QString key = u"Bookmarks"_s;
    QTest::newRow("nothing") << QVariant() << 0;
    QTest::newRow("a text") << QVariant(u"x"_s) << 0;
    QTest::newRow("a bare list") << QVariant(QVariantList{QVariantMap()}) << 0;
    QTest::newRow("another key") << QVariant(QVariantMap{{u"bookmarks"_s, QVariantList{1}}}) << 0;
    QTest::newRow("no list") << QVariant(QVariantMap{{key, 5}}) << 0;
    QTest::newRow("no maps") << QVariant(QVariantMap{{key, QVariantList{1, QVariant(), {}}}}) << 3;
    QTest::newRow("texts") << QVariant(QVariantMap{{key, QStringList{u"x"_s, u"y"_s}}}) << 2;
    QTest::newRow("a hash") << QVariant(QVariantHash{{key, QVariantList{QVariantHash()}}}) << 1;
}

void TestQueries::readsAnswersOfAnyShape()
{
    QFETCH(QVariant, result);
    QFETCH(int, count);
    PluginHarness harness;
    harness.answer(queryAll(harness).at(0), result);
    QCOMPARE(harness.emitted->take(), done("f"));
    QCOMPARE(allIds(harness), QStringList(count, u"A/"_s));

    harness.answer(u"QueryBookmarkForRecent"_s, result, u"B"_s);
    QCOMPARE(harness.emitted->take(), QStringList(u"queryBookmarkForRecentResponsed(true)"_s));
    QCOMPARE(idsOf(harness.call<QVariantList>("getBookmarkListForRecent")),
             QStringList(count, u"B/"_s));

    harness.answer(u"QueryBookmarkForApi"_s, result);
    QCOMPARE(harness.emitted->take(), QStringList(u"queryBookmarkForApiFinished(true)"_s));
    QCOMPARE(describe(harness.call<QVariantList>("getQueryBookmarkResult")),
             describe(result.toList()));
    QCOMPARE(harness.log.take(), QStringList());
}

void TestQueries::fillsTheRecentList()
{
    PluginHarness harness;
    const auto recent = [&] {
        return idsOf(harness.call<QVariantList>("getBookmarkListForRecent"));
    };
    const auto query = [&] {
        return harness.call<bool>("queryBookmarkForRecent", u"X"_s, u"A"_s, uchar(2));
    };
    QVERIFY(query());
    const int calls = harness.topology.callCount();
    const standin::SentCommand sent = harness.onlySent();
    harness.answer(sent, answerWith({u"2"_s, u"1"_s}));
    QCOMPARE(harness.topology.callCount(), calls + 1);
    harness.answer(sent, answerWith({u"3"_s})); // there is nothing that tells answers apart
    QCOMPARE(recent(), QStringList({u"A/2"_s, u"A/1"_s, u"A/3"_s}));
    harness.answer(sent, answerWith({u"4"_s}), u"-1"_s);
    QCOMPARE(recent().size(), 3);
    QCOMPARE(harness.emitted->take(), QStringList({u"queryBookmarkForRecentResponsed(true)"_s,
                                                   u"queryBookmarkForRecentResponsed(true)"_s,
                                                   u"queryBookmarkForRecentResponsed(false)"_s}));

    // Asking again empties it at once, even when nothing can be sent.
    harness.framework.rules().setDefault(Delivery::refused());
    QVERIFY(!query());
    QCOMPARE(recent(), QStringList());
    QCOMPARE(allIds(harness), QStringList());
}

void TestQueries::keepsTheResultForApi()
{
    PluginHarness harness;
    const auto result = [&] {
        return describe(harness.call<QVariantList>("getQueryBookmarkResult"));
    };
    const QString command = u"QueryBookmarkForApi"_s;
    const QVariantList records = {serverRecord(u"b"_s, u"1"_s, u"l"_s, 1, 2), 5, QVariantMap()};
    harness.answer(command, records);
    QCOMPARE(result(), describe(records));
    harness.call("queryBookmarkForAPI", QVariantList{u"1"_s}, qint64(1), qint64(2));
    harness.call("queryBookmarkForAPI", QVariantList(), qint64(1), qint64(2));
    harness.answer(command, QVariantList{1}, {}, nullptr, u"00"_s);
    QCOMPARE(result(), describe(records));
    harness.answer(command, QVariant());
    QCOMPARE(result(), u"[]"_s);
    const QString name = u"queryBookmarkForApiFinished("_s;
    QCOMPARE(harness.emitted->take(), QStringList({name + u"true)"_s, name + u"false)"_s,
                                                   name + u"false)"_s, name + u"true)"_s}));
    QCOMPARE(harness.log.take(), QStringList());
}

QTEST_GUILESS_MAIN(TestQueries)
#include "tst_queries.moc"
