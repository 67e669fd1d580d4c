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

using namespace Qt::Literals::StringLiterals;
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
    void startsAQueryFromTheSignal();
    void startsAQueryFromTheSendCall_data();
    void startsAQueryFromTheSendCall();
    void startsAQueryFromTheDirectory();
    void staysSilentOnceDeletedFromTheSendCall_data();
    void staysSilentOnceDeletedFromTheSendCall();
    void answersReachTheNextObject();
    void keepsNothingOfSettledRequests_data();
    void keepsNothingOfSettledRequests();
};

using Action = std::function<void(PluginHarness &)>;
Q_DECLARE_METATYPE(Action)
Q_DECLARE_METATYPE(standin::Delivery)

/// A topology plug-in that can be noticed being asked.
class WatchedTopology : public QObject
{
    Q_OBJECT

public:
    WatchedTopology(standin::Topology *topology, std::function<void()> onCall)
        : m_topology(topology)
        , m_onCall(std::move(onCall))
    {
    }
    Q_INVOKABLE QVariantMap getValuesFromModel(int tree, const QString &key, const QString &value)
    {
        m_onCall();
        return m_topology->getValuesFromModel(tree, key, value);
    }

private:
    standin::Topology *m_topology;
    std::function<void()> m_onCall;
};

namespace {

QVariantList targets(const QStringList &stations)
{
    QVariantList list;
    for (const QString &station : stations) {
        list.append(QVariantMap{{u"CameraID"_s, u"1"_s},
                                {u"LocationID"_s, u"l"_s},
                                {u"BookmarkID"_s, u"b"_s},
                                {u"relayPath"_s, station}});
    }
    return list;
}

void addTo(PluginHarness &h, const QStringList &stations)
{
    h.call<bool>("addBookmarks", targets(stations), qint64(1), qint64(2), QString(), QString(),
                 QString());
}

void openCells(PluginHarness &h)
{
    h.openViewCell(u"1"_s, u"l"_s, u"A"_s);
    h.openViewCell(u"2"_s, u"l"_s, u"A"_s);
}

void removeCells(PluginHarness &h)
{
    h.call("removeTimelineModel", u"1"_s);
    h.call("removeTimelineModel", u"2"_s);
}

QVariantMap record(const QString &id)
{
    return serverRecord(id, u"1"_s, u"l"_s, 1, 2);
}

QVariant answerWith(const QStringList &ids)
{
    QVariantList records;
    for (const QString &id : ids)
        records.append(record(id));
    return QVariantMap{{u"Bookmarks"_s, records}};
}

QStringList allIds(PluginHarness &h)
{
    QStringList ids;
    const auto list = h.call<QVariantList>("getBookmarkListByNodeID", QString());
    for (const QVariant &element : list)
        ids.append(element.toMap().value(u"bookmarkID"_s).toString());
    return ids;
}

/// A server that does as it is told, for all commands.
class WillingServer : public standin::Server
{
public:
    standin::Answer execute(const QString &command, const QVariant &, const QString &) override
    {
        if (command == u"AddBookmarks")
            return {QVariantList{record(u"x"_s), record(u"y"_s), QVariantMap()}, u"0"_s};
        if (command == u"AddBookmark")
            return {record(u"z"_s), u"0"_s};
        if (command == u"DeleteBookmark")
            return {u"y"_s, u"0"_s};
        if (command.startsWith(u"Query"))
            return {answerWith({u"q"_s, u"r"_s}), u"0"_s};
        return {QStringList{u"x"_s, u"q"_s}, u"0"_s};
    }
};

/// A little of everything. Stops when the object is gone.
void playProgram(PluginHarness &h)
{
    const QList<Action> steps = {
        [](PluginHarness &p) { p.plugin().PluginServerConnected(); },
        [](PluginHarness &p) { p.call<bool>("deleteBookmark", u"b"_s, u"A"_s); },
        [](PluginHarness &p) { p.call<bool>("removeAllBookmarks", u"A"_s); },
        [](PluginHarness &p) { p.call<bool>("deleteBookmarks", targets({u"A"_s})); },
        [](PluginHarness &p) { p.grantPermission(); },
        [](PluginHarness &p) {
            p.call<bool>("addBookmark", u"1"_s, u"l"_s, u"A"_s, qint64(1), qint64(2), QString(),
                         QString(), QString());
        },
        [](PluginHarness &p) { addTo(p, {u"A"_s}); },
        [](PluginHarness &p) {
            addTo(p, {u"A"_s, u"B"_s, u"C"_s});
        },
        [](PluginHarness &p) { p.framework.sendEvent(u"AddBookmark"_s, record(u"e"_s), u"A"_s); },
        [](PluginHarness &p) { p.call("setTimelineBoundary", qint64(0), qint64(9), u"1"_s); },
        [](PluginHarness &p) { p.call<bool>("queryAllBookmarks"); },
        [](PluginHarness &p) { p.call<bool>("queryBookmarkForRecent", u"1"_s, u"A"_s, uchar(1)); },
        [](PluginHarness &p) {
            p.call("queryBookmarkForAPI", QVariantList{1}, qint64(1), qint64(2));
        },
        [](PluginHarness &p) {
            p.call("queryBookmarkForAPI", QVariantList(), QString(), QString());
        },
        [](PluginHarness &p) { p.call<bool>("updateBookmark", u"b"_s); },
        [](PluginHarness &p) { p.call<bool>("deleteBookmark", u"b"_s, u"A"_s); },
        [](PluginHarness &p) { p.call<bool>("deleteBookmarks", targets({u"A"_s})); },
        [](PluginHarness &p) {
            p.call<bool>("deleteBookmarks", targets({u"A"_s, u"B"_s}));
        },
        [](PluginHarness &p) { p.call<bool>("removeAllBookmarks", u"A"_s); },
        [](PluginHarness &p) { p.call("getRecycleSetting"); },
        [](PluginHarness &p) { p.call("updateRecycleSetting", 1U, true); },
        [](PluginHarness &p) { p.call("setTimelineFocusInfo", u"l"_s, u"A"_s, u"1"_s); },
        [](PluginHarness &p) { p.call("clearTimelineModel", u"2"_s); },
        [](PluginHarness &p) { p.framework.releaseAll(); },
    };
    for (const Action &step : steps) {
        if (h.isAlive())
            step(h);
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
    QTest::addColumn<QString>("delivery");
    QTest::addColumn<Action>("action");

    const QList<QPair<const char *, Action>> actions = {
        {"delete the object", [](PluginHarness &h) { h.deletePlugin(); }},
        {"remove the view cells", removeCells},
        {"make the view cells anew",
         [](PluginHarness &h) {
             removeCells(h);
             openCells(h);
         }},
        {"do it all", playProgram},
        {"answer everything again",
         [](PluginHarness &h) {
             const auto sent = h.sent();
             for (const standin::SentCommand &command : sent)
                 h.framework.answer(command, answerWith({u"again"_s}));
         }},
    };
    for (const char *const place : {"signal", "send call", "directory", "timeline"}) {
        for (const char *const delivery : {"inside", "later"}) {
            for (const auto &[name, action] : actions) {
                QTest::addRow("from a %s, answers %s: %s", place, delivery, name)
                    << QString::fromLatin1(place) << QString::fromLatin1(delivery) << action;
            }
        }
    }
}

void TestReentrancy::survivesCallsFromInside()
{
    QFETCH(QString, place);
    QFETCH(QString, delivery);
    QFETCH(Action, action);

    // Once at each of the moments there are.
    bool done = false;
    for (int moment = 0; !done; ++moment) {
        PluginHarness harness;
        int left = moment;
        const auto pass = [&] {
            if (left-- == 0 && harness.isAlive())
                action(harness);
        };
        WatchedTopology topology(&harness.topology, [&] {
            if (place == u"directory")
                pass();
        });
        harness.framework.addPlugin(standin::Topology::pluginID(), &topology);
        WillingServer server;
        harness.framework.setServer(&server);
        harness.framework.rules().setDefault(delivery == u"inside" ? Delivery::immediate()
                                                                   : Delivery::held());
        openCells(harness);
        if (place == u"signal")
            harness.emitted->onSignal = [&](const QString &) { pass(); };
        harness.framework.setObserver([&](const standin::Traffic &traffic) {
            if (place == u"send call" && traffic.kind == standin::Traffic::Kind::Sent)
                pass();
        });
        if (place == u"timeline") {
            auto *const model = qobject_cast<QAbstractItemModel *>(
                harness.call<QObject *>("getBookmarkModelForTimeline", u"1"_s));
            connect(model, &QAbstractItemModel::rowsInserted, this, pass);
            connect(model, &QAbstractItemModel::rowsRemoved, this, pass);
        }

        playProgram(harness);
        done = left >= 0;

        // What was under way reaches the object that is there then.
        harness.deletePlugin();
        PluginHarness next;
        const auto sent = harness.sent();
        for (const standin::SentCommand &command : sent)
            next.answer(command, answerWith({u"late"_s}));
        QVERIFY(moment < 1000);
        QVERIFY(moment > 0 || !done);
    }
}

void TestReentrancy::reportsABatchSentFromTheSignal()
{
    PluginHarness harness;
    harness.framework.rules().setForStation(u"A"_s, Delivery::immediate().failing(u"-1"_s));
    harness.framework.rules().setForStation(u"B"_s, Delivery::immediate().replacing({}));
    int batches = 1;
    harness.emitted->onSignal = [&](const QString &) {
        if (++batches <= 3)
            addTo(harness, {u"A"_s, u"B"_s});
    };
    addTo(harness, {u"A"_s, u"B"_s});
    const QString line = u"addBookmarksResponsed(Camera A1)"_s;
    QCOMPARE(harness.emitted->take(), QStringList({line, line, line}));
}

void TestReentrancy::startsAQueryFromTheSignal()
{
    PluginHarness harness;
    harness.call<bool>("queryAllBookmarks");
    const auto old = harness.sent();
    harness.framework.clearSent();
    harness.emitted->onSignal = [&](const QString &) {
        harness.emitted->onSignal = {};
        harness.call<bool>("queryAllBookmarks");
    };
    for (const standin::SentCommand &command : old)
        harness.answer(command, answerWith({u"old"_s}));
    QCOMPARE(harness.emitted->take(), QStringList(u"queryAllBookmarksResponsed(false)"_s));
    QCOMPARE(allIds(harness), QStringList());
    const auto current = harness.sent();
    QCOMPARE(harness.takeSent().size(), 3);
    for (const standin::SentCommand &command : current)
        harness.answer(command, answerWith({command.relayPath}));
    QCOMPARE(allIds(harness), QStringList({u"A"_s, u"B"_s, u"C"_s}));
    QCOMPARE(harness.emitted->take().size(), 3);
}

void TestReentrancy::startsAQueryFromTheSendCall_data()
{
    QTest::addColumn<Delivery>("ofOthers"); // than A, which answers from inside
    QTest::addColumn<int>("parts");
    QTest::newRow("all answer from inside") << Delivery::immediate() << 3;
    QTest::newRow("both end with a refusal") << Delivery::refused() << 2;
}

void TestReentrancy::startsAQueryFromTheSendCall()
{
    QFETCH(Delivery, ofOthers);
    QFETCH(int, parts);
    PluginHarness harness;
    const QVariant result = answerWith({u"x"_s});
    harness.framework.rules().setDefault(ofOthers.replacing(result));
    harness.framework.rules().setForStation(u"A"_s, Delivery::immediate().replacing(result));
    int left = 1;
    harness.framework.setObserver([&](const standin::Traffic &traffic) {
        if (traffic.kind == standin::Traffic::Kind::Sent && left-- == 0) // the second of three
            harness.call<bool>("queryAllBookmarks");
    });
    QCOMPARE(harness.call<bool>("queryAllBookmarks"), true);
    // The first part is the superseded query's, all the rest the new one's.
    QCOMPARE(harness.emitted->take(), QStringList(parts, u"queryAllBookmarksResponsed(false)"_s)
                                          << u"queryAllBookmarksResponsed(true)"_s);
    QCOMPARE(allIds(harness),
             QStringList(ofOthers.when == Delivery::When::Refused ? 1 : 3, u"x"_s));
}

void TestReentrancy::startsAQueryFromTheDirectory()
{
    PluginHarness harness;
    harness.call<bool>("queryAllBookmarks");
    const standin::SentCommand old = harness.sent().constFirst();
    bool done = false;
    WatchedTopology topology(&harness.topology, [&] {
        if (!std::exchange(done, true))
            harness.call<bool>("queryAllBookmarks");
    });
    harness.framework.addPlugin(standin::Topology::pluginID(), &topology);
    harness.answer(old, answerWith({u"old"_s}));
    QVERIFY(done);
    QCOMPARE(allIds(harness), QStringList());
    QCOMPARE(harness.emitted->take(), QStringList());
}

void TestReentrancy::staysSilentOnceDeletedFromTheSendCall_data()
{
    QTest::addColumn<Action>("request");
    QTest::newRow("batch") << Action([](PluginHarness &h) { addTo(h, {u"A"_s, u"B"_s, u"C"_s}); });
    QTest::newRow("query of all") << Action(
        [](PluginHarness &h) { h.call<bool>("queryAllBookmarks"); });
    QTest::newRow("connection") << Action(
        [](PluginHarness &h) { h.plugin().PluginServerConnected(); });
}

void TestReentrancy::staysSilentOnceDeletedFromTheSendCall()
{
    QFETCH(Action, request);
    PluginHarness harness;
    harness.framework.setObserver([&](const standin::Traffic &) { harness.deletePlugin(); });
    request(harness);
    QCOMPARE(harness.takeSent().size(), 1);
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
}

void TestReentrancy::answersReachTheNextObject()
{
    QList<standin::SentCommand> sent;
    {
        PluginHarness harness;
        harness.grantPermission();
        openCells(harness);
        addTo(harness, {u"A"_s, u"B"_s});
        harness.call<bool>("deleteBookmarks", targets({u"A"_s, u"B"_s}));
        harness.call("setTimelineBoundary", qint64(0), qint64(9), u"1"_s);
        harness.call("setTimelineBoundary", qint64(0), qint64(9), u"2"_s);
        harness.call<bool>("queryAllBookmarks");
        sent = harness.sent();
        QCOMPARE(sent.size(), 9);
    }
    PluginHarness next;
    openCells(next);
    const auto answerAll = [&] {
        for (const standin::SentCommand &command : std::as_const(sent))
            next.answer(command, QStringList{u"x"_s}, u"-1"_s);
        next.emitted->take();
        return next.log.takeTexts().filter(u"context is NULL"_s).size();
    };
    QCOMPARE(answerAll(), 0);
    QCOMPARE(answerAll(), 3); // all contexts have come to their end
}

void TestReentrancy::keepsNothingOfSettledRequests_data()
{
    QTest::addColumn<Action>("exchange");
    const auto answerAll = [](PluginHarness &h, const QString &code) {
        const auto sent = h.sent();
        for (const standin::SentCommand &command : sent)
            h.answer(command, {}, code);
    };
    QTest::newRow("a batch") << Action([=](PluginHarness &h) {
        addTo(h, {u"A"_s, u"B"_s});
        answerAll(h, u"0"_s);
    });
    QTest::newRow("a batch without permission")
        << Action([](PluginHarness &h) { h.call<bool>("deleteBookmarks", targets({u"A"_s})); });
    QTest::newRow("a batch, nothing sent") << Action([](PluginHarness &h) { addTo(h, {}); });
    QTest::newRow("a superseded query of all") << Action([=](PluginHarness &h) {
        h.call<bool>("queryAllBookmarks");
        h.call<bool>("queryAllBookmarks");
        answerAll(h, u"-1"_s);
    });
    QTest::newRow("a query of no station") << Action([](PluginHarness &h) {
        h.topology.clear();
        h.call<bool>("queryAllBookmarks");
    });
    for (const auto &code : {u"0"_s, u"-1"_s}) {
        QTest::addRow("a timeline's query answered %s", qPrintable(code))
            << Action([=](PluginHarness &h) {
                   h.openViewCell(u"1"_s, u"l"_s, u"A"_s);
                   h.call("setTimelineBoundary", qint64(0), qint64(9), u"1"_s);
                   answerAll(h, code);
               });
    }
    QTest::newRow("a timeline's query refused") << Action([](PluginHarness &h) {
        h.framework.rules().setDefault(Delivery::refused());
        h.openViewCell(u"1"_s, u"l"_s, u"A"_s);
        h.call("setTimelineBoundary", qint64(0), qint64(9), u"1"_s);
    });
    QTest::newRow("a timeline's query, the view cell gone") << Action([=](PluginHarness &h) {
        openCells(h);
        h.call("setTimelineBoundary", qint64(0), qint64(9), u"1"_s);
        removeCells(h);
        answerAll(h, u"0"_s);
    });
}

void TestReentrancy::keepsNothingOfSettledRequests()
{
    QFETCH(Action, exchange);
#if !defined(TESSALINE_COUNTS_MEMORY)
    QSKIP("Allocated memory can't be counted here");
#endif
    PluginHarness harness;
    constexpr qint64 Count = 500;
    const auto run = [&] {
        for (qint64 i = 0; i < Count; ++i) {
            exchange(harness);
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
