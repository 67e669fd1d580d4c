#include "DataTable.h"
#include "Describe.h"
#include "PluginHarness.h"
#include "StationScript.h"

#include "PluginBase.h"

#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using standin::Delivery;

/// The three queries whose answers fill a list, above all the one that asks every station.
class TestQueries : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void asksEveryStation();
    void gathersAnswers_data();
    void gathersAnswers();
    void asksOnlyStations();
    void needsTopology();
    void logsForeignContexts();
    void readsAnswersOfAnyShape_data();
    void readsAnswersOfAnyShape();
    void fillsTheRecentList();
    void keepsTheResultForApi();
};

namespace {

const char *const handler =
    "src/Tessaline_ReqRespHandler.cpp: Tessaline::HandleQueryAllBookmarksResp, ";

QString allIds(PluginHarness &harness)
{
    return displayedIds(harness.call<QVariantList>("getBookmarkListByNodeID", QString()));
}

QList<standin::SentCommand> queryAll(PluginHarness &harness)
{
    harness.framework.clearSent();
    harness.call<bool>("queryAllBookmarks");
    return harness.sent();
}

QStringList done(bool all)
{
    return {u"queryAllBookmarksResponsed(%1)"_s.arg(all ? u"true"_s : u"false"_s)};
}

} // namespace

void TestQueries::asksEveryStation()
{
    PluginHarness harness;
    harness.run(u"queryAllBookmarks()"_s);
    harness.run(u"queryAllBookmarks()"_s);
    QStringList expected;
    for (const QString &number : {u"1"_s, u"2"_s}) {
        for (const QString &station : {u"A"_s, u"B"_s, u"C"_s})
            expected.append(u"QueryAllBookmars@"_s + station + u" {} "_s + number);
    }
    QCOMPARE(harness.describeSent(), expected);
}

void TestQueries::gathersAnswers_data()
{
    // In the trace "A" is the command to A, "more" and "done" the signal. Rows go on in indented
    // lines.
    addTable({"script", "trace", "ids"}, uR"(
all inside       | A inside, B inside, C inside, send | A more B more C done true | A/i B/i C/i
all fail inside  | A fails inside, B fails inside, C fails inside, send
  | A A-failed more B B-failed more C C-failed done true |
first inside     | A inside, send, 1C x, 1B y | A more B C true more done | A/i C/x B/y
last inside      | C inside, send, 1A x, 1B y | A B C more true more done | C/i A/x B/y
first refused    | A refuses, B inside, C fails inside, send
  | !A refused B more C C-failed done true | B/i
last refused     | A inside, B inside, C refuses, send
  | A more B more !C refused done true | A/i B/i
two refused      | A inside, B refuses, C refuses, send
  | A more !B refused !C refused done true | A/i
one of each      | A inside, C refuses, send, 1B x | A more B !C refused true done | A/i B/x
all refused      | A refuses, B refuses, C refuses, send | !A refused !B refused !C refused false |
others and twice | send, 1A x, 1A y, 1a z, 1D fails, 1C, 1B
  | A B C true more more more D-failed more more done | A/x A/y a/z
superseded       | send, 1A old, send, 1B old, 2A x, 1A old, 1C fails, 1C, 2B y, 2C z, 2C
  | A B C true more A B C true more C-failed unknown more done unknown | A/x B/y C/z
)"_s.replace(u"\n  "_s, u" "_s));
}

void TestQueries::gathersAnswers()
{
    QFETCH(const QString, script);
    PluginHarness harness;
    harness.storeBookmarks({serverRecord(u"of the query before"_s, u"1"_s, u"l"_s, 1, 2)});
    StationScript stations;
    stations.send = [](PluginHarness &h) { return h.call<bool>("queryAllBookmarks"); };
    stations.result = [&](const QString &, const QStringList &ids) {
        return queryAnswer(ids.isEmpty() && script.contains(u"inside") ? QStringList(u"i"_s) : ids);
    };
    QString trace = stations.play(harness, script);
    trace.remove(u"QueryAllBookmars@"_s);
    trace.replace(done(false).constFirst(), u"more"_s).replace(done(true).constFirst(), u"done"_s);
    trace.replace(u"src/Tessaline_Req.cpp: Tessaline::queryAllBookmarks, SendCommand failed"_s,
                  u"refused"_s);
    const QString prefix = QString::fromLatin1(handler);
    trace.replace(prefix + u"request response context is NULL"_s, u"unknown"_s);
    trace.replace(
        QRegularExpression(prefix + u"query all bookmarks for server \\((.*?)\\) failed"_s),
        u"\\1-failed"_s);
    QTEST(trace, "trace");
    QTEST(allIds(harness), "ids");
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
    harness.framework.rules().setDefault(Delivery::immediate().failing(u"-1"_s));
    queryAll(harness);
    const QString command = u"QueryAllBookmars@"_s;
    QCOMPARE(harness.takeSent(),
             QStringList({command, command + odd, command + u'Z', command + u'z'}));
    QCOMPARE(harness.log.take().at(1), QString::fromLatin1(handler) +
                                           u"query all bookmarks for server ("_s + odd +
                                           u") failed"_s);
}

void TestQueries::needsTopology()
{
    PluginHarness harness;
    const auto sent = queryAll(harness);
    harness.framework.removePlugin(standin::Topology::pluginID());
    const QString line = u"src/Tessaline_Local.cpp: Tessaline::%1, get TopologyPlugin failed"_s;
    harness.answer(sent.at(0), queryAnswer({u"1"_s}));
    QCOMPARE(harness.log.take(), QStringList(line.arg(u"GetAllCamNames"_s)));
    QCOMPARE(harness.emitted->take(), done(false));
    QCOMPARE(allIds(harness), u"A/1"_s);

    // A query that asks nobody supersedes as well.
    const auto expectNothing = [&] {
        QVERIFY(queryAll(harness).isEmpty());
        QCOMPARE(harness.log.take(), QStringList(line.arg(u"GetAllSubStations"_s)));
        QCOMPARE(harness.emitted->take(), QStringList());
        QCOMPARE(allIds(harness), QString());
    };
    expectNothing();
    harness.answer(sent.at(1), queryAnswer({u"old"_s}));
    QCOMPARE(allIds(harness), QString());
    QCOMPARE(harness.emitted->take(), QStringList());
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

void TestQueries::logsForeignContexts()
{
    PluginHarness harness;
    harness.grantPermission();
    harness.call<bool>("deleteBookmarks", QVariantList{QVariantMap()});
    const standin::SentCommand batch = harness.onlySent();
    queryAll(harness);
    int dummy = 0;
    const QList<void *> contexts = {nullptr, &dummy, batch.context};
    const QString line = QString::fromLatin1(handler) + u"request response context is NULL"_s;
    for (void *const context : contexts) {
        for (const auto &code : {u"0"_s, u"-1"_s})
            harness.answer(u"QueryAllBookmars"_s, queryAnswer({u"1"_s}), u"A"_s, context, code);
        QCOMPARE(harness.log.take(), QStringList({line, line}));
    }
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(allIds(harness), QString());
    harness.answer(batch, {});
    QCOMPARE(harness.emitted->take(), QStringList(u"deleteBookmarksResponsed()"_s));
}

void TestQueries::readsAnswersOfAnyShape_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("ids"); // from station A
    const QString key = u"Bookmarks"_s;
    QTest::newRow("nothing") << QVariant() << u""_s;
    QTest::newRow("a bare list") << QVariant(QVariantList{QVariantMap()}) << u""_s;
    QTest::newRow("no list") << QVariant(QVariantMap{{key, 5}}) << u""_s;
    QTest::newRow("no maps") << QVariant(QVariantMap{{key, QVariantList{1, {}}}}) << u"A/ A/"_s;
    QTest::newRow("texts") << QVariant(QVariantMap{{key, QStringList{u"x"_s}}}) << u"A/"_s;
    QTest::newRow("a hash") << QVariant(QVariantHash{{key, QVariantList{1}}}) << u"A/"_s;
}

void TestQueries::readsAnswersOfAnyShape()
{
    QFETCH(const QVariant, result);
    PluginHarness harness;
    harness.answer(queryAll(harness).at(0), result);
    QCOMPARE(harness.emitted->take(), done(false));
    QTEST(allIds(harness), "ids");

    harness.answer(u"QueryBookmarkForRecent"_s, result, u"A"_s);
    QCOMPARE(harness.emitted->take(), QStringList(u"queryBookmarkForRecentResponsed(true)"_s));
    QTEST(displayedIds(harness.call<QVariantList>("getBookmarkListForRecent")), "ids");

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
        return displayedIds(harness.call<QVariantList>("getBookmarkListForRecent"));
    };
    const QString query = u"queryBookmarkForRecent('X', 'A', 2)"_s;
    QCOMPARE(harness.run(query), true);
    const standin::SentCommand sent = harness.onlySent();
    harness.answer(sent, queryAnswer({u"2"_s, u"1"_s}));
    QCOMPARE(harness.topology.callCount(), 1);   // names are fetched once an answer
    harness.answer(sent, queryAnswer({u"3"_s})); // there is nothing that tells answers apart
    harness.answer(sent, queryAnswer({u"4"_s}), u"-1"_s);
    QCOMPARE(recent(), u"A/2 A/1 A/3"_s);
    QCOMPARE(allIds(harness), QString());

    // Asking again empties it at once, even when nothing can be sent.
    harness.framework.rules().setDefault(Delivery::refused());
    QCOMPARE(harness.run(query), false);
    QCOMPARE(recent(), QString());
}

void TestQueries::keepsTheResultForApi()
{
    PluginHarness harness;
    const auto resultAfter = [&](const QVariant &answer, const QString &code) {
        harness.answer(u"QueryBookmarkForApi"_s, answer, {}, nullptr, code);
        harness.run(u"queryBookmarkForAPI([1], 1, 2)"_s);
        return harness.call<QVariantList>("getQueryBookmarkResult");
    };
    const QVariantList records = {serverRecord(u"b"_s, u"1"_s, u"l"_s, 1, 2), 5, QVariantMap()};
    QCOMPARE(describe(resultAfter(records, u"0"_s)), describe(records));
    QCOMPARE(describe(resultAfter(QVariantList{1}, u"00"_s)), describe(records));
    QCOMPARE(resultAfter(QVariant(), u"0"_s), QVariantList());
}

QTEST_GUILESS_MAIN(TestQueries)
#include "tst_queries.moc"
