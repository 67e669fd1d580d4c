#include "Checks.h"
#include "EchoServer.h"
#include "HostileValues.h"
#include "LoggingHost.h"
#include "ProcessProbe.h"
#include "QtMessages.h"
#include "WatchedTopology.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QRandomGenerator>

#include <algorithm>
#include <array>

// Level 5: a host that answers when it should not, and that calls back from anywhere.

namespace check {

using namespace driver;
using namespace Qt::StringLiterals;
using standin::Delivery;

namespace {

/// A little of everything, by which all moments come up.
const char *const program = R"(
connect
addBookmark('1', 'l', 'A', 1, 2, '', '', '')
addBookmarks([{'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}, {'relayPath': 'B'}, {'relayPath': 'C'}], 1, 2, '', '', '')
event AddBookmark@A {'BookmarkID': 'x', 'LocationID': 'l'}
clearTimelineModel('cell')
setTimelineBoundary(1, 5000, 'cell')
queryAllBookmarks()
queryBookmarkForRecent('1', 'A', 5)
queryBookmarkForAPI(['1'], 1, 2)
updateBookmark('x')
deleteBookmark('x', 'A')
deleteBookmarks([{'BookmarkID': 'x', 'relayPath': 'A'}, {'relayPath': 'B'}])
removeAllBookmarks('A')
getRecycleSetting()
updateRecycleSetting(1, true)
setTimelineFocusInfo('l', 'A', 'cell')
)";

QVariant recordOf(const QString &id)
{
    return serverRecord(id, u"1"_s, u"l"_s, 1000, 2000);
}

/// Everything that can be called, one call a step; then the program, and the end of the object.
const char *const entries[] = {
    "addBookmark('1', 'l', 'A', 1, 2, '', '', '')",
    "addBookmarks([{'CameraID': '1', 'relayPath': 'A'}, {'relayPath': 'B'}], 1, 2, '', '', '')",
    "deleteBookmark('x', 'A')",
    "deleteBookmarks([{'BookmarkID': 'x', 'relayPath': 'A'}, {'relayPath': 'B'}])",
    "updateBookmark('x', 'd', 'g')",
    "removeAllBookmarks('A')",
    "queryBookmarkForRecent('1', 'A', 5)",
    "queryAllBookmarks()",
    "queryBookmarkForAPI(['1'], 1, 2)",
    "clearTimelineModel('cell')",
    "removeTimelineModel('cell')\nshow cell l A",
    "removeTimelineModel('cell')",
    "setTimelineFocusInfo('l', 'A', 'cell')",
    "setTimelineBoundary(1, 5000, 'cell')",
    "clearTimelineModel('cell')\nsetTimelineBoundary(1, 5000, 'cell')",
    "show third l A",
    "getRecycleSetting()",
    "updateRecycleSetting(1, true)",
    "list all\nlist recent\nlist api",
    "getFilteredBookmarkList({'endTimestamp': 5000})",
    "connect",
    "initialise\ngrant",
    "event AddBookmark@A {'BookmarkID': 'e', 'LocationID': 'l'}",
    "answer 1 ok",
    "answer 2 -1",
    "answer 3 ok",
    "answer DeleteBookmark@A ok 'x'",
    program,
    "delete",
};

constexpr std::array places{"signal", "send call", "question to the topology plug-in",
                            "timeline change"};

/// Calls back from inside of one kind of moment.
void callFrom(const char *place, Host &host, WatchedTopology &topology,
              const std::function<void()> &callback)
{
    topology.onCall = nullptr;
    host.onLine = nullptr;
    if (place == places[0])
        host.onLine = [=](const QString &line) {
            if (line.startsWith(u"signal "_s))
                callback();
        };
    else if (place == places[1])
        host.onLine = [=](const QString &line) {
            if (line.startsWith(u"send "_s))
                callback();
        };
    else if (place == places[2])
        topology.onCall = callback;
    else if (const auto *const model = host.showCell(u"cell"_s, u"l"_s, u"A"_s)) {
        QObject::connect(model, &QAbstractItemModel::rowsInserted, &topology, callback);
        QObject::connect(model, &QAbstractItemModel::rowsRemoved, &topology, callback);
    }
}

/// Plays the program and does something else at the n-th moment of a kind.
/// @return whether there was such a moment
bool disturb(Host &host, WatchedTopology &topology, const char *place, int moment,
             const QString &entry)
{
    host.renewObject();
    host.framework.addPlugin(standin::Topology::pluginID(), &topology);
    host.play(u"grant\nshow cell l A\nshow other l A"_s);
    int left = moment;
    callFrom(place, host, topology, [&] {
        if (left-- == 0)
            host.play(entry);
    });
    host.play(QLatin1String(program));
    host.framework.releaseAll();
    host.onLine = nullptr;
    topology.onCall = nullptr;
    return left < 0;
}

/// Every entry from every moment of a kind, with answers from inside the send call or later.
void checkCallsFromInside(CheckContext &context, const char *place)
{
    constexpr int MostMoments = 200;
    LoggingHost host(context);
    if (!host)
        return;
    EchoServer server;
    WatchedTopology topology(host->topology);
    host->framework.setServer(&server);
    int calls = 0;
    for (const bool inside : {true, false}) {
        for (const char *entry : entries) {
            int moment = 0;
            while (moment < MostMoments) {
                host->setDefaultDelivery(inside ? Delivery::immediate() : Delivery::held());
                if (!disturb(*host, topology, place, moment, QLatin1String(entry)))
                    break;
                ++moment;
            }
            calls += moment;
            context.expect(moment > 0, u"a moment to call back"_s, u"none"_s);
            context.expect(moment < MostMoments, u"an end"_s, u"%1 moments"_s.arg(moment));
        }
    }
    host->setDefaultDelivery(Delivery::queued());
    host->framework.setServer(nullptr);
    host->renewObject();
    context.compare(u"an ordinary request afterwards"_s,
                    u"send UpdateBookmark@ {BookmarkID: QString \"b\"}\n= bool true"_s,
                    host->play(u"updateBookmark('b')"_s));
    context.summarize(u"%1 calls from inside"_s.arg(calls));
}

void checkFromSignals(CheckContext &context)
{
    checkCallsFromInside(context, places[0]);
}

void checkFromSends(CheckContext &context)
{
    checkCallsFromInside(context, places[1]);
}

void checkFromQuestions(CheckContext &context)
{
    checkCallsFromInside(context, places[2]);
}

void checkFromTimelines(CheckContext &context)
{
    checkCallsFromInside(context, places[3]);
}

void checkQueriesFromQuestions(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    WatchedTopology topology(host->topology);
    host->framework.addPlugin(standin::Topology::pluginID(), &topology);
    host->play(u"queryAllBookmarks()"_s);
    topology.onCall = [&] {
        topology.onCall = nullptr;
        host->call(u"queryAllBookmarks()"_s);
    };
    context.compare(u"an answer superseded while it is stored"_s, u"list []"_s,
                    host->play(u"answer 1 ok {'Bookmarks': [{'BookmarkID': 'b'}]}\nlist all"_s)
                        .section(u'\n', -1));

    host->renewObject();
    host->framework.addPlugin(standin::Topology::pluginID(), &topology);
    host->play(
        u"addBookmarks([{'CameraID': '1', 'relayPath': 'A'}, {'relayPath': 'B'}], 1, 2, '', '', '')"_s);
    topology.onCall = [&] {
        topology.onCall = nullptr;
        host->answer(host->framework.sent().constFirst(), {}, u"-1"_s);
    };
    context.compare(u"an answer repeated while it is handled"_s,
                    u"signal addBookmarksResponsed(Camera A1,)"_s,
                    host->play(u"answer 1 -1\nanswer 2 -1"_s));
    context.summarize(u"queries and answers made while an answer is handled"_s);
}

// ---- Answers that should not come, or not now ----

/// What a plug-in must have said once all of a batch or query has been answered, however often.
struct Request
{
    const char *steps;
    const char *signalLines;

    QString title() const { return QLatin1String(steps).left(20); }
    QString allSignals() const { return QLatin1String(signalLines); }
    QString lastSignal() const { return allSignals().section(u'\n', -1); }
};

constexpr Request contextRequests[] = {
    {"addBookmarks([{'CameraID': '1', 'relayPath': 'A'}, {'CameraID': '1', 'relayPath': 'B'}], 1, "
     "2, '', '', '')",
     "signal addBookmarksResponsed(Camera A1,Camera B1)"},
    {"deleteBookmarks([{'BookmarkID': 'x', 'relayPath': 'A'}, {'BookmarkID': 'y', 'relayPath': "
     "'B'}])",
     "signal deleteBookmarksResponsed(x,x)"},
    {"setTimelineBoundary(1, 2, 'cell')", "signal queryBookmarkForTimelineResponsed(false)"},
    {"queryAllBookmarks()", "signal queryAllBookmarksResponsed(false)\n"
                            "signal queryAllBookmarksResponsed(false)\n"
                            "signal queryAllBookmarksResponsed(true)"},
};

/// Makes a request of a new object.
/// @return its trace
QString request(Host &host, const char *steps)
{
    host.renewObject();
    host.play(u"grant\nshow cell l A"_s);
    host.framework.clearSent();
    return host.play(QLatin1String(steps));
}

QList<standin::SentCommand> sendAgain(Host &host, const char *steps)
{
    request(host, steps);
    return host.framework.sent();
}

QVariant answeredIds()
{
    return QStringList{u"x"_s};
}

QStringList signalsOf(Host &host)
{
    return host.takeTrace().filter(u"signal "_s);
}

/// Allocators tend to reuse a freed address soon: a repeated answer must not end a request that
/// follows.
void answerEarlierRequestsAgain(CheckContext &context, Host &host, const Request &one)
{
    constexpr int Rounds = 40;
    const auto answerAll = [&](const QList<standin::SentCommand> &commands) {
        for (const standin::SentCommand &command : commands)
            host.answer(command, answeredIds());
        return signalsOf(host).join(u'\n');
    };
    QList<standin::SentCommand> earlier = sendAgain(host, one.steps);
    const QString signalLines = answerAll(earlier);
    for (int round = 0; round < Rounds && !context.hasFailed(); ++round) {
        host.framework.clearSent();
        host.play(u"clearTimelineModel('cell')\n"_s + QLatin1String(one.steps));
        const QList<standin::SentCommand> next = host.framework.sent();
        context.compare(one.title() + u", earlier ones answered again"_s, QString(),
                        answerAll(earlier));
        context.compare(one.title() + u", answered after that"_s, signalLines, answerAll(next));
        earlier += next;
    }
}

void checkDoubledAnswers(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const Request &one : contextRequests) {
        const QString title = one.title();
        // Once more after all are in: by then the context has ended.
        const QList<standin::SentCommand> sent = sendAgain(*host, one.steps);
        for (const standin::SentCommand &command : sent)
            host->answer(command, answeredIds(), u"-1"_s);
        context.compare(title + u", answered once"_s, one.allSignals(),
                        signalsOf(*host).join(u'\n'));
        for (int again = 0; again < 3; ++again) {
            for (const standin::SentCommand &command : sent)
                host->answer(command, answeredIds(), again ? u"0"_s : u"-1"_s);
        }
        // What is a failure by its code alone is told without a context as well.
        const QString ending = one.lastSignal().section(u'(', 0, 0);
        if (ending.endsWith(u"marksResponsed"_s))
            context.compare(title + u", answered again"_s, QString(), signalsOf(*host).join(u'\n'));
        host->takeTrace();

        // The first answer twice in a row, the others once.
        const QList<standin::SentCommand> next = sendAgain(*host, one.steps);
        host->answer(next.constFirst(), answeredIds(), u"-1"_s);
        for (const standin::SentCommand &command : next)
            host->answer(command, answeredIds(), u"-1"_s);
        if (next.size() == 2)
            context.compare(title + u", the first answered twice"_s, one.allSignals(),
                            signalsOf(*host).join(u'\n'));
        // Nothing of it may reach a request that comes after.
        const QList<standin::SentCommand> later = sendAgain(*host, one.steps);
        for (const standin::SentCommand &command : next)
            host->answer(command, answeredIds(), u"-1"_s);
        host->takeTrace();
        for (const standin::SentCommand &command : later)
            host->answer(command, answeredIds(), u"-1"_s);
        context.compare(title + u", after late answers to another"_s, one.allSignals(),
                        signalsOf(*host).join(u'\n'));
        answerEarlierRequestsAgain(context, *host, one);
    }
    context.summarize(u"every context answered twice and more often"_s);
}

void checkForeignContexts(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const Request &one : contextRequests) {
        const QList<standin::SentCommand> sent = sendAgain(*host, one.steps);
        void *const foreign = sent.constFirst().context;
        for (const char *command :
             {"AddBookmark", "AddBookmarks", "DeleteBookmark", "DeleteBookmarks",
              "RemoveAllBookmarks", "UpdateBookmark", "QueryBookmarkForTimeline",
              "QueryBookmarkForRecent", "QueryAllBookmars", "QueryBookmarkForApi", "Nonsense"}) {
            if (sent.constFirst().command == QLatin1String(command))
                continue;
            for (const char *code : {"0", "-1"})
                host->answer(QLatin1String(command), answeredIds(), u"A"_s, foreign,
                             QLatin1String(code));
            host->answer(QLatin1String(command), answeredIds(), u"A"_s, nullptr);
        }
        // Batches and queries know their own contexts alone.
        const QString unknown =
            u"log Tessaline_ReqRespHandler: %s, request response context is NULL "
            "<Tessaline::HandleQueryAllBookmarksResp>"_s;
        for (const QString &command :
             {u"AddBookmarks"_s, u"DeleteBookmarks"_s, u"QueryAllBookmars"_s}) {
            for (void *other :
                 {foreign, static_cast<void *>(&host), static_cast<void *>(nullptr)}) {
                if (other == foreign && command == sent.constFirst().command)
                    continue;
                host->takeTrace();
                host->answer(command, answeredIds(), u"A"_s, other, u"-1"_s);
                context.compare(command + u" with a foreign context"_s,
                                command == u"QueryAllBookmars"_s ? unknown : QString(),
                                host->takeTrace().join(u'\n'));
            }
        }
        // A station that was not asked.
        host->answer(sent.constFirst().command, answeredIds(), u"nowhere"_s, nullptr);
        host->takeTrace();
        for (const standin::SentCommand &command : sent)
            host->answer(command, answeredIds(), u"-1"_s);
        context.compare(one.title() + u", answered at last"_s, one.allSignals(),
                        signalsOf(*host).join(u'\n'));
    }
    context.summarize(u"contexts given back with every other command, and none"_s);
}

void checkAnswersInside(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const Request &one : contextRequests) {
        for (const int copies : {1, 2, 3}) {
            host->setDefaultDelivery(Delivery::immediate().failing(u"-1"_s).times(copies));
            const QString title = one.title() + u", answered inside"_s;
            const QStringList ends = request(*host, one.steps).split(u'\n').filter(u"signal "_s);
            context.expect(!ends.isEmpty(), title, u"no signal"_s);
            if (copies == 1 && !ends.isEmpty() && !title.startsWith(u"delete"_s))
                context.compare(title, one.lastSignal(), ends.constLast());
        }
        // Some inside, some refused, some later.
        host->setDefaultDelivery(Delivery::held());
        host->framework.rules().setForStation(u"A"_s, Delivery::immediate().failing(u"-1"_s));
        host->framework.rules().setForStation(u"B"_s, Delivery::refused());
        request(*host, one.steps);
        host->framework.releaseAll();
    }
    context.summarize(u"answers from inside the send call, once and more often"_s);
}

void checkOrders(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    int orders = 0;
    for (const Request &one : contextRequests) {
        QList<qsizetype> order{0, 1, 2};
        do {
            const QList<standin::SentCommand> sent = sendAgain(*host, one.steps);
            for (const qsizetype position : std::as_const(order)) {
                if (position < sent.size())
                    host->answer(sent.at(position), answeredIds(), u"-1"_s);
            }
            const QStringList ends = signalsOf(*host);
            const qsizetype expected = one.allSignals().count(u'\n') + 1;
            context.expect(ends.size() == expected, u"%1 signals"_s.arg(expected),
                           ends.join(u", "_s));
            ++orders;
        } while (std::next_permutation(order.begin(), order.end()));
    }
    context.summarize(u"%1 orders of answers"_s.arg(orders));
}

void checkDeadViewCells(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    const QVariant found = QVariantMap{{u"Bookmarks"_s, QVariantList{recordOf(u"x"_s)}}};
    const auto query = [&] {
        host->renewObject();
        host->play(u"show cell l A\nsetTimelineBoundary(1, 2, 'cell')"_s);
        return host->framework.sent().value(0);
    };
    standin::SentCommand sent = query();
    host->play(u"removeTimelineModel('cell')"_s);
    host->answer(sent, found);
    context.compare(u"an answer to a closed view cell"_s, QString(), host->takeTrace().join(u'\n'));
    host->answer(sent, found);

    sent = query();
    host->play(u"removeTimelineModel('cell')\nshow cell l A"_s);
    host->answer(sent, found);
    context.compare(u"an answer to a view cell opened again"_s,
                    u"timeline refillItems(x)\nsignal queryBookmarkForTimelineResponsed(true)"_s,
                    host->takeTrace().join(u'\n'));

    const QObject *const model = host->showCell(u"cell"_s, u"l"_s, u"A"_s);
    context.expect(model == host->showCell(u"cell"_s, u"l"_s, u"A"_s), u"the same model again"_s,
                   u"another"_s);
    context.expect(model != host->showCell(u"CELL"_s, u"l"_s, u"A"_s),
                   u"a model of its own for each view cell"_s, u"the same"_s);
    const QPointer<const QObject> closed = model;
    host->call("removeTimelineModel", {u"cell"_s});
    context.expect(!closed, u"a model to end with its view cell"_s, u"it is still there"_s);

    // The object deletes its timeline models with itself.
    sent = query();
    const QPointer<QObject> timeline = host->showCell(u"cell"_s, u"l"_s, u"A"_s);
    host->deleteObject();
    context.expect(!timeline, u"models to end with the object"_s, u"one that is still there"_s);
    context.summarize(u"answers for view cells that are closed, opened again, gone"_s);
}

void checkAfterDestruction(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const Request &one : contextRequests) {
        const QList<standin::SentCommand> sent = sendAgain(*host, one.steps);
        host->deleteObject();
        host->takeTrace();
        host->renewObject();
        host->play(u"grant\nshow cell l A"_s);
        for (int again = 0; again < 2; ++again) {
            for (const standin::SentCommand &command : sent)
                host->answer(command, answeredIds(), again ? u"0"_s : u"-1"_s);
        }
        host->takeTrace();
        context.compare(u"an ordinary request afterwards"_s,
                        u"send UpdateBookmark@ {BookmarkID: QString \"b\"}\n= bool true"_s,
                        host->play(u"updateBookmark('b')"_s));
    }
    context.summarize(u"answers to an object that is gone reach the next one unharmed"_s);
}

void checkNeverAnswered(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (int i = 0; i < 1000; ++i) {
        host->play(QLatin1String(program));
        host->framework.clearSent();
    }
    host->deleteObject();
    context.summarize(u"16000 requests without an answer, and the end"_s);
}

void checkTopologies(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    const auto work = [&] {
        host->play(QLatin1String(program));
        const QList<standin::SentCommand> sent = host->framework.sent();
        EchoServer server;
        for (const standin::SentCommand &command : sent)
            host->answer(command, server.execute(command.command, {}, {}).result);
    };
    WatchedTopology topology(host->topology);
    for (const HostileValue &hostile : hostileValues()) {
        host->renewObject();
        host->play(u"grant\nshow cell l A"_s);
        host->framework.addPlugin(standin::Topology::pluginID(), &topology);
        topology.says = QVariantMap{
            {u"A"_s, hostile.value}, {u"A/1"_s, hostile.value}, {hostile.value.toString(), 1}};
        work();
    }
    host->renewObject();
    host->play(u"grant\nshow cell l A"_s);
    // Going away while it is being asked would be its own fault; from one question to the next not.
    auto mortal = std::make_unique<WatchedTopology>(host->topology);
    host->framework.addPlugin(standin::Topology::pluginID(), mortal.get());
    work();
    mortal.reset();
    work();
    context.summarize(u"topology plug-ins that say anything, or end"_s);
}

void checkForeignTopology(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    ForeignTopology topology;
    host->framework.addPlugin(standin::Topology::pluginID(), &topology);
    const QtMessages quiet; // Qt tells of each call that fails
    context.compare(u"a query of all"_s, u"= bool false"_s, host->play(u"queryAllBookmarks()"_s));
    context.compare(
        u"a failed batch"_s, u"signal addBookmarksResponsed()"_s,
        host->play(u"addBookmarks([{'CameraID': '1'}], 1, 2, '', '', '')\nanswer 1 -1"_s)
            .section(u'\n', -1));
    context.summarize(u"a topology plug-in whose method is another one"_s);
}

void checkKeptMemory(CheckContext &context)
{
    constexpr qint64 Count = 500;
    LoggingHost host(context);
    if (!host)
        return;
    if (!allocatedBytes()) {
        context.skip(u"allocated memory can't be told on this platform"_s);
        return;
    }
    static constexpr const char *programs[] = {
        "addBookmarks([{'CameraID': '1', 'relayPath': 'A'}, {'relayPath': 'B'}], 1, 2, '', '', "
        "'')\nanswer 1 ok\nanswer 2 -1",
        "addBookmarks([], 1, 2, '', '', '')",
        "refuse A\naddBookmarks([{'relayPath': 'A'}], 1, 2, '', '', '')",
        "grant\ndeleteBookmarks([{'relayPath': 'A'}])\nanswer 1 ok",
        "answer QuerySettingPermission@ ok false\ndeleteBookmarks([{'relayPath': 'A'}])",
        "queryAllBookmarks()\nanswer 1 ok\nanswer 2 ok\nanswer 3 -1",
        "queryAllBookmarks()\nqueryAllBookmarks()\nanswer 1 ok\nanswer 2 ok\nanswer 3 -1\nanswer 4 "
        "ok\nanswer 5 ok\nanswer 6 -1",
        "refuse A B C\nqueryAllBookmarks()",
        "show cell l A\nsetTimelineBoundary(1, 2, 'cell')\nanswer 1 ok",
        "show cell l A\nsetTimelineBoundary(1, 2, 'cell')\nanswer 1 -1",
        "show cell l A\nsetTimelineBoundary(1, 2, 'cell')\nremoveTimelineModel('cell')\nanswer 1 "
        "ok",
        "refuse A\nshow cell l A\nsetTimelineBoundary(1, 2, 'cell')",
        "show cell l A\nevent AddBookmark@A {'BookmarkID': 'x', 'LocationID': "
        "'l'}\nremoveTimelineModel('cell')",
    };
    for (const char *steps : programs) {
        host->renewObject();
        const auto repeat = [&] {
            for (int i = 0; i < Count; ++i) {
                host->forgetTraffic();
                host->play(QLatin1String(steps));
            }
            host->forgetTraffic();
            return *allocatedBytes();
        };
        const qint64 before = repeat();
        const qint64 grown = repeat() - before;
        // The least context is an allocation of its own.
        context.expect(grown < Count * 16, u"nothing kept"_s,
                       u"%1 bytes after %2 times %3"_s.arg(grown).arg(Count).arg(
                           QString::fromLatin1(steps).simplified()));
    }
    context.summarize(u"requests that came to their end leave nothing behind"_s);
}

void checkRandomCalls(CheckContext &context)
{
    constexpr int Rounds = 300;
    constexpr int Steps = 60;
    constexpr int SingleCalls = int(std::size(entries)) - 2; // neither the program nor the end
    LoggingHost host(context);
    if (!host)
        return;
    QRandomGenerator random(context.seed());
    EchoServer server;
    host->framework.setServer(&server);
    const Delivery deliveries[] = {Delivery::immediate(), Delivery::held(), Delivery::refused(),
                                   Delivery::never(), Delivery::immediate().times(2)};
    for (int round = 0; round < Rounds; ++round) {
        host->renewObject();
        host->play(u"grant\nshow cell l A\nshow other l A"_s);
        for (int i = 0; i < Steps && host->isAlive(); ++i) {
            host->setDefaultDelivery(deliveries[random.bounded(int(std::size(deliveries)))]);
            host->play(QLatin1String(entries[random.bounded(SingleCalls)]));
            if (random.bounded(10) == 0)
                host->framework.releaseAll();
            if (random.bounded(10) == 0)
                host->play(u"answer %1 %2"_s.arg(random.bounded(1, 9)).arg(random.bounded(2)));
        }
        host->framework.releaseAll();
    }
    host->framework.setServer(nullptr);
    host->setDefaultDelivery(Delivery::queued());
    host->renewObject();
    context.compare(u"an ordinary request afterwards"_s,
                    u"send UpdateBookmark@ {BookmarkID: QString \"b\"}\n= bool true"_s,
                    host->play(u"updateBookmark('b')"_s));
    context.summarize(u"%1 steps from seed %2"_s.arg(Rounds * Steps).arg(context.seed()));
}

} // namespace

std::vector<Check> hostileHostChecks()
{
    return {
        {"5.doubled-answers", "Answers that come twice, and late", checkDoubledAnswers},
        {"5.foreign-contexts", "Answers with the context of another request", checkForeignContexts},
        {"5.answers-inside", "Answers from inside the send call", checkAnswersInside},
        {"5.orders", "Answers in every order", checkOrders},
        {"5.never-answered", "Requests that are never answered", checkNeverAnswered},
        {"5.dead-view-cells", "Answers for view cells that are gone", checkDeadViewCells},
        {"5.after-destruction", "Answers to an object that is gone", checkAfterDestruction},
        {"5.topologies", "A topology plug-in that says anything", checkTopologies},
        {"5.foreign-topology", "A topology plug-in with another method", checkForeignTopology},
        {"5.from-signals", "Every entry called from inside each signal", checkFromSignals},
        {"5.from-sends", "Every entry called from inside each send call", checkFromSends},
        {"5.from-questions", "Every entry called from inside questions to the topology plug-in",
         checkFromQuestions},
        {"5.from-timelines", "Every entry called from inside changes of a timeline model",
         checkFromTimelines},
        {"5.query-from-question", "A new query made while an answer is being stored",
         checkQueriesFromQuestions},
        {"5.kept-memory", "Nothing is kept of requests that have ended", checkKeptMemory},
        {"5.random-calls", "Calls and answers in random order", checkRandomCalls},
    };
}

} // namespace check
