#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>
#include <QtTest/QTest>

#include <functional>
#include <utility>

// The sanitizer's allocator does not tell how much it has given away.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
#define TESSALINE_COUNTS_MEMORY
#include <malloc.h>
#endif

using namespace Qt::StringLiterals;
using standin::Delivery;

/// Calls into the plug-in from inside its own calls and signals, its end included, and what
/// becomes of requests that outlive it. Most of this shows under the sanitizers only.
class TestReentrancy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void survivesCallsFromInside_data();
    void survivesCallsFromInside();
    void reportsABatchSentFromTheSignal();
    void countsAnAnswerDoubledFromInsideOnce();
    void supersedesFromInside_data();
    void supersedesFromInside();
    void staysSilentOnceDeletedFromTheSendCall();
    void answersReachTheNextObject();
    void keepsNothingOfSettledRequests_data();
    void keepsNothingOfSettledRequests();
};

/// A topology plug-in that can be noticed being asked.
class WatchedTopology : public QObject
{
    Q_OBJECT

public:
    explicit WatchedTopology(PluginHarness &harness)
        : m_topology(harness.topology)
    {
        harness.framework.addPlugin(standin::Topology::pluginID(), this);
    }
    std::function<void()> onCall = [] {};

    Q_INVOKABLE QVariantMap getValuesFromModel(int tree, const QString &key, const QString &value)
    {
        onCall();
        return m_topology.getValuesFromModel(tree, key, value);
    }

private:
    standin::Topology &m_topology;
};

namespace {

QVariantMap record(const QString &id)
{
    return serverRecord(id, u"1"_s, u"l"_s, 1, 2);
}

/// A server that does as it is told, for all commands.
class WillingServer : public standin::Server
{
public:
    standin::Answer execute(const QString &command, const QVariant &, const QString &) override
    {
        if (command == u"AddBookmarks")
            return {QVariantList{record(u"x"_s), record(u"y"_s), QVariantMap()}};
        if (command.startsWith(u"Delete"))
            return {QStringList{u"x"_s}};
        return {command == u"AddBookmark" ? record(u"x"_s) : queryAnswer({u"x"_s, u"q"_s})};
    }
};

/// A little of everything.
QString everything()
{
    return u"connect; deleteBookmark('b', 'A'); removeAllBookmarks('A'); delete; grant; "
           "addBookmark('1', 'l', 'A', 1, 2, '', '', ''); add; event; scroll; query; "
           "queryBookmarkForRecent('1', 'A', 1); queryBookmarkForAPI([1], 1, 2); "
           "queryBookmarkForAPI([], 1, 2); updateBookmark('b'); deleteBookmark('b', 'A'); delete; "
           "removeAllBookmarks('A'); getRecycleSetting(); updateRecycleSetting(1, true); "
           "setTimelineFocusInfo('l', 'A', '1'); clearTimelineModel('2'); release"_s;
}

/// A step of a program: something that the host does, or a call as in QML.
void playStep(PluginHarness &h, const QString &step)
{
    static const QHash<QString, QString> calls{
        {u"add"_s, u"addBookmarks([{'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}, "
                   "{'relayPath': 'B'}, {'relayPath': 'C'}], 1, 2, '', '', '')"_s},
        {u"delete"_s, u"deleteBookmarks([{'relayPath': 'A'}, {'relayPath': 'B'}])"_s},
        {u"query"_s, u"queryAllBookmarks()"_s},
        {u"scroll"_s, u"setTimelineBoundary(0, 9, '1')"_s},
        {u"close"_s, u"removeTimelineModel('1')"_s},
    };
    if (step == u"connect")
        h.plugin().PluginServerConnected();
    else if (step == u"grant")
        h.grantPermission();
    else if (step == u"event")
        h.framework.sendEvent(u"AddBookmark"_s, record(u"e"_s), u"A"_s);
    else if (step == u"release")
        h.framework.releaseAll();
    else if (step == u"refuse")
        h.framework.rules().setDefault(Delivery::refused());
    else if (step == u"forget stations")
        h.topology.clear();
    else if (step == u"end")
        h.deletePlugin();
    else if (step.startsWith(u"show "))
        h.openViewCell(step.section(u' ', 1), u"l"_s, u"A"_s);
    else if (step.startsWith(u"answer ")) {
        const auto sent = h.sent();
        for (const standin::SentCommand &command : sent)
            h.framework.answer(command, queryAnswer({u"x"_s}), step.section(u' ', 1));
    } else
        h.run(calls.value(step, step));
}

/// Plays the steps, until the object is gone.
void play(PluginHarness &h, const QString &program)
{
    const QStringList steps = program.split(u"; "_s);
    for (const QString &step : steps) {
        if (h.isAlive())
            playStep(h, step);
    }
}

/// Calls back from each moment of a kind: within a signal, a send call, a question to the topology
/// plug-in or a change of the timeline model of view cell 1.
void callFrom(const QString &place, PluginHarness &h, WatchedTopology &topology,
              const std::function<void()> &callback)
{
    if (place == u"directory")
        topology.onCall = callback;
    if (place == u"signal")
        h.emitted->onSignal = [=](const QString &) { callback(); };
    h.framework.setObserver([=](const standin::Traffic &traffic) {
        if (place == u"send call" && traffic.kind == standin::Traffic::Kind::Sent)
            callback();
    });
    if (place == u"timeline") {
        const auto *const model = h.openViewCell(u"1"_s, u"l"_s, u"A"_s);
        QObject::connect(model, &QAbstractItemModel::rowsInserted, &topology, callback);
        QObject::connect(model, &QAbstractItemModel::rowsRemoved, &topology, callback);
    }
}

qint64 allocatedBytes()
{
#if defined(TESSALINE_COUNTS_MEMORY)
    return qint64(mallinfo2().uordblks);
#else
    return 0;
#endif
}

} // namespace

void TestReentrancy::survivesCallsFromInside_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<bool>("inside");
    QTest::addColumn<QString>("program");
    for (const char *const place : {"signal", "send call", "directory", "timeline"}) {
        for (const bool inside : {true, false}) {
            for (const QString &program : {u"end"_s, u"close; show 1"_s, u"answer 0"_s,
                                           u"close; removeTimelineModel('2')"_s, everything()}) {
                QTest::addRow("from a %s, answers %s: %s", place, inside ? "inside" : "later",
                              program == everything() ? "everything" : qPrintable(program))
                    << QString::fromLatin1(place) << inside << program;
            }
        }
    }
}

void TestReentrancy::survivesCallsFromInside()
{
    QFETCH(const QString, place);
    QFETCH(const bool, inside);
    QFETCH(const QString, program);

    // Once at each of the moments there are.
    bool done = false;
    for (int moment = 0; !done; ++moment) {
        PluginHarness harness;
        int left = moment;
        const auto pass = [&] {
            if (left-- == 0)
                play(harness, program);
        };
        WatchedTopology topology(harness);
        WillingServer server;
        harness.framework.setServer(&server);
        harness.framework.rules().setDefault(inside ? Delivery::immediate() : Delivery::held());
        play(harness, u"show 1; show 2"_s);
        callFrom(place, harness, topology, pass);
        play(harness, everything());
        done = left >= 0;

        // What was under way reaches the object that is there then.
        harness.deletePlugin();
        PluginHarness next;
        const auto sent = harness.sent();
        for (const standin::SentCommand &command : sent)
            next.answer(command, queryAnswer({u"late"_s}));
        QVERIFY(moment < 1000);
        QVERIFY(moment > 0 || !done);
    }
}

void TestReentrancy::reportsABatchSentFromTheSignal()
{
    PluginHarness harness;
    harness.framework.rules().setDefault(Delivery::immediate().replacing({}));
    harness.framework.rules().setForStation(u"A"_s, Delivery::immediate().failing(u"-1"_s));
    int batches = 1;
    harness.emitted->onSignal = [&](const QString &) {
        if (++batches <= 3)
            play(harness, u"add"_s);
    };
    play(harness, u"add"_s);
    QCOMPARE(harness.emitted->take(), QStringList(3, u"addBookmarksResponsed(Camera A1)"_s));
}

void TestReentrancy::countsAnAnswerDoubledFromInsideOnce()
{
    PluginHarness harness;
    WatchedTopology topology(harness);
    play(harness, u"add"_s);
    const auto sent = harness.sent();
    bool doubled = false;
    topology.onCall = [&] {
        if (!std::exchange(doubled, true))
            harness.answer(sent.constFirst(), {}, u"-1"_s);
    };
    for (const standin::SentCommand &command : sent)
        harness.answer(command, {}, u"-1"_s);
    QCOMPARE(harness.emitted->take(), QStringList(u"addBookmarksResponsed(Camera A1,,)"_s));
}

void TestReentrancy::supersedesFromInside_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<int>("moment");
    QTest::addColumn<bool>("refused"); // by all stations but A
    QTest::addColumn<int>("parts");    // the superseded query's and the new one's
    QTest::addColumn<QString>("ids");
    QTest::newRow("first signal") << u"signal"_s << 0 << false << 3 << u"A/x B/x C/x"_s;
    QTest::newRow("second send call") << u"send call"_s << 1 << false << 3 << u"A/x B/x C/x"_s;
    QTest::newRow("second of three, refused") << u"send call"_s << 1 << true << 2 << u"A/x"_s;
    QTest::newRow("names of cameras") << u"directory"_s << 1 << false << 2 << u"A/x B/x C/x"_s;
}

void TestReentrancy::supersedesFromInside()
{
    QFETCH(const QString, place);
    QFETCH(int, moment);
    QFETCH(const bool, refused);
    QFETCH(const int, parts);
    PluginHarness harness;
    WatchedTopology topology(harness);
    const Delivery answered = Delivery::immediate().replacing(queryAnswer({u"x"_s}));
    harness.framework.rules().setDefault(refused ? Delivery::refused() : answered);
    harness.framework.rules().setForStation(u"A"_s, answered);
    callFrom(place, harness, topology, [&] {
        if (moment-- == 0)
            play(harness, u"query"_s);
    });
    QVERIFY(harness.call<bool>("queryAllBookmarks"));
    QCOMPARE(harness.emitted->take(), QStringList(parts, u"queryAllBookmarksResponsed(false)"_s)
                                          << u"queryAllBookmarksResponsed(true)"_s);
    QTEST(displayedIds(harness.call<QVariantList>("getBookmarkListByNodeID", QString())), "ids");
}

void TestReentrancy::staysSilentOnceDeletedFromTheSendCall()
{
    for (const QString &request : {u"add"_s, u"query"_s, u"connect"_s}) {
        PluginHarness harness;
        harness.framework.setObserver([&](const standin::Traffic &) { harness.deletePlugin(); });
        play(harness, request);
        QCOMPARE(harness.takeSent().size(), 1);
        QCOMPARE(harness.emitted->take() + harness.log.take(), QStringList());
    }
}

void TestReentrancy::answersReachTheNextObject()
{
    QList<standin::SentCommand> sent;
    {
        PluginHarness harness;
        play(harness, u"grant; show 1; add; delete; scroll; query"_s);
        sent = harness.sent();
        QCOMPARE(sent.size(), 9);
    }
    PluginHarness next;
    play(next, u"show 1; show 2"_s);
    const auto answerAll = [&] {
        for (const standin::SentCommand &command : std::as_const(sent))
            next.answer(command, QStringList{u"x"_s}, u"-1"_s);
        return next.log.takeTexts().filter(u"context is NULL"_s).size();
    };
    QCOMPARE(answerAll(), 0);
    QCOMPARE(answerAll(), 3); // all contexts have come to their end
}

void TestReentrancy::keepsNothingOfSettledRequests_data()
{
    QTest::addColumn<QString>("program");
    for (const QString &program :
         {u"add; answer 0"_s, u"delete"_s, u"addBookmarks([], 1, 2, '', '', '')"_s,
          u"query; query; answer -1"_s, u"forget stations; query"_s, u"show 1; scroll; answer 0"_s,
          u"show 1; scroll; answer -1"_s, u"refuse; show 1; scroll"_s,
          u"show 1; scroll; close; answer 0"_s})
        QTest::newRow(qPrintable(program)) << program;
}

void TestReentrancy::keepsNothingOfSettledRequests()
{
    QFETCH(const QString, program);
#if !defined(TESSALINE_COUNTS_MEMORY)
    QSKIP("Allocated memory can't be counted here");
#endif
    PluginHarness harness;
    constexpr qint64 Count = 500;
    const auto run = [&] {
        for (qint64 i = 0; i < Count; ++i) {
            play(harness, program);
            harness.takeSent();
            harness.emitted->take();
            harness.log.take();
        }
        return allocatedBytes();
    };
    const qint64 before = run();
    const qint64 grown = run() - before;
    QVERIFY2(grown < Count * 16, qPrintable(u"%1 bytes were kept"_s.arg(grown)));
}

QTEST_GUILESS_MAIN(TestReentrancy)
#include "tst_reentrancy.moc"
