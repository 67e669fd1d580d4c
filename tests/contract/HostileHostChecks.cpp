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

// Level 5: a host that answers at wrong times and calls the plug-in from inside its callbacks.

namespace check {

using namespace driver;
using namespace Qt::StringLiterals;
using standin::Delivery;

namespace {

/// Steps that cause every kind of callback.
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

/// Calls of every entry of the plug-in. The last two are the program above and the deletion of the
/// object.
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

/// The kinds of callbacks.
enum class Place { Signal, SendCall, TopologyCall, TimelineChange };

/// Makes the host run @p callback inside each callback of one kind.
void callFrom(Place place, Host &host, WatchedTopology &topology,
              const std::function<void()> &callback)
{
    const auto onLines = [&](const QString &beginning) {
        host.onLine = [=](const QString &line) {
            if (line.startsWith(beginning))
                callback();
        };
    };
    topology.onCall = nullptr;
    host.onLine = nullptr;
    if (place == Place::Signal)
        onLines(u"signal "_s);
    else if (place == Place::SendCall)
        onLines(u"send "_s);
    else if (place == Place::TopologyCall)
        topology.onCall = callback;
    else if (const auto *const model = host.showCell(u"cell"_s, u"l"_s, u"A"_s)) {
        QObject::connect(model, &QAbstractItemModel::rowsInserted, &topology, callback);
        QObject::connect(model, &QAbstractItemModel::rowsRemoved, &topology, callback);
    }
}

/// Plays the program on a new object and plays @p entry inside callback number @p index of a kind.
/// @return false if the program causes fewer callbacks
bool playInsideCallback(Host &host, WatchedTopology &topology, Place place, int index,
                        const QString &entry)
{
    host.recreateObject();
    host.framework.addPlugin(standin::Topology::pluginID(), &topology);
    host.play(u"grant\nshow cell l A\nshow other l A"_s);
    int left = index;
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

/// Plays every entry inside every callback of a kind, with answers inside the send call and later.
template <Place place>
void checkCallsFromInside(CheckContext &context)
{
    constexpr int MaxCallbacks = 200;
    LoggingHost host(context);
    if (!host)
        return;
    EchoServer server;
    WatchedTopology topology(host->topology);
    host->framework.setServer(&server);
    int calls = 0;
    for (const bool inside : {true, false}) {
        for (const char *entry : entries) {
            int index = 0;
            while (index < MaxCallbacks) {
                host->setDefaultDelivery(inside ? Delivery::immediate() : Delivery::held());
                if (!playInsideCallback(*host, topology, place, index, QLatin1String(entry)))
                    break;
                ++index;
            }
            calls += index;
            context.expect(index > 0, u"at least one callback"_s, u"none"_s);
            context.expect(index < MaxCallbacks, u"fewer than %1 callbacks"_s.arg(MaxCallbacks),
                           QString::number(index));
        }
    }
    host->setDefaultDelivery(Delivery::queued());
    host->framework.setServer(nullptr);
    host->recreateObject();
    host.expectStillWorking(u"calls from inside"_s);
    context.summarize(u"%1 calls from inside callbacks"_s.arg(calls));
}

void checkInsideTopologyCalls(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    WatchedTopology topology(host->topology);
    // Plays the steps @p first. Then plays the steps @p then, with @p action inside their first
    // call of the topology plug-in, and compares all lines except sent commands.
    const auto compare = [&](const QString &title, const QString &first, const QString &then,
                             const std::function<void()> &action, const QString &expected) {
        host->recreateObject();
        host->framework.addPlugin(standin::Topology::pluginID(), &topology);
        host->play(first);
        topology.onCall = [&] {
            topology.onCall = nullptr;
            action();
        };
        QStringList lines = host->play(then).split(u'\n');
        lines.removeIf([](const QString &line) { return line.startsWith(u"send "_s); });
        context.compare(title, expected, lines.join(u'\n'));
    };
    const auto answerAgain = [&](qsizetype command) {
        host->answer(host->framework.sent().at(command), {}, u"-1"_s);
    };
    compare(
        u"an answer superseded while it is stored"_s, u"queryAllBookmarks()"_s,
        u"answer 1 ok {'Bookmarks': [{'BookmarkID': 'b'}]}\nlist all"_s,
        [&] { host->call(u"queryAllBookmarks()"_s); }, u"list []"_s);
    compare(
        u"an answer repeated while it is handled"_s,
        u"addBookmarks([{'CameraID': '1', 'relayPath': 'A'}, {'relayPath': 'B'}], 1, 2, '', '', '')"_s,
        u"answer 1 -1\nanswer 2 -1"_s, [&] { answerAgain(0); },
        u"signal addBookmarksResponsed(Camera A1,)"_s);
    compare(
        u"the last answer repeated while it is stored"_s,
        u"queryAllBookmarks()\nanswer 1 ok\nanswer 2 ok"_s, u"answer 3 ok"_s,
        [&] { answerAgain(2); },
        u"log Tessaline_ReqRespHandler: %s, query all bookmarks for server (%s) failed "
        "<Tessaline::HandleQueryAllBookmarksResp, C>\n"
        "signal queryAllBookmarksResponsed(true)"_s);
    compare(
        u"a query whose object is deleted before it sends"_s, QString(), u"queryAllBookmarks()"_s,
        [&] { host->deleteObject(); }, u"= bool false"_s);
    context.summarize(u"queries, answers and a deletion inside calls of the topology plug-in"_s);
}

// ---- Unexpected answers ----

/// A request with a context, and the signals that all of its answers must cause together.
struct Request
{
    const char *steps;
    const char *signalLines; ///< in the trace

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

/// Calls a request of a new object.
/// @return its trace
QString request(Host &host, const char *steps)
{
    host.recreateObject();
    host.play(u"grant\nshow cell l A"_s);
    host.framework.clearSent();
    return host.play(QLatin1String(steps));
}

/// Calls a request of a new object.
/// @return the commands that the plug-in sends
QList<standin::SentCommand> commandsOf(Host &host, const char *steps)
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

/// Repeats the answers of completed requests. Allocators tend to reuse a freed address, so a
/// repeated answer may have the address of a later request's context and must not end that request.
void repeatEarlierAnswers(CheckContext &context, Host &host, const Request &one)
{
    constexpr int Rounds = 40;
    const auto answerAll = [&](const QList<standin::SentCommand> &commands) {
        for (const standin::SentCommand &command : commands)
            host.answer(command, answeredIds());
        return signalsOf(host).join(u'\n');
    };
    QList<standin::SentCommand> earlier = commandsOf(host, one.steps);
    const QString signalLines = answerAll(earlier);
    for (int round = 0; round < Rounds && !context.hasFailed(); ++round) {
        host.framework.clearSent();
        host.play(u"clearTimelineModel('cell')\n"_s + QLatin1String(one.steps));
        const QList<standin::SentCommand> next = host.framework.sent();
        context.compare(one.title() + u", answers of earlier requests repeated"_s, QString(),
                        answerAll(earlier));
        context.compare(one.title() + u", answered after these"_s, signalLines, answerAll(next));
        earlier += next;
    }
}

void checkRepeatedAnswers(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const Request &one : contextRequests) {
        const QString title = one.title();
        // Answer all commands, then repeat the answers: the context has ended by then.
        const QList<standin::SentCommand> sent = commandsOf(*host, one.steps);
        for (const standin::SentCommand &command : sent)
            host->answer(command, answeredIds(), u"-1"_s);
        context.compare(title + u", answered once"_s, one.allSignals(),
                        signalsOf(*host).join(u'\n'));
        for (int again = 0; again < 3; ++again) {
            for (const standin::SentCommand &command : sent)
                host->answer(command, answeredIds(), again ? u"0"_s : u"-1"_s);
        }
        // Only batches and the query of all must stay silent: a failed timeline query is signalled
        // even without a context.
        const QString ending = one.lastSignal().section(u'(', 0, 0);
        if (ending.endsWith(u"marksResponsed"_s))
            context.compare(title + u", answers repeated"_s, QString(),
                            signalsOf(*host).join(u'\n'));
        host->takeTrace();

        // Repeat the first answer before the others come.
        const QList<standin::SentCommand> next = commandsOf(*host, one.steps);
        host->answer(next.constFirst(), answeredIds(), u"-1"_s);
        for (const standin::SentCommand &command : next)
            host->answer(command, answeredIds(), u"-1"_s);
        if (next.size() == 2)
            context.compare(title + u", first answer repeated"_s, one.allSignals(),
                            signalsOf(*host).join(u'\n'));
        // Late answers to an earlier request must not affect a later one.
        const QList<standin::SentCommand> later = commandsOf(*host, one.steps);
        for (const standin::SentCommand &command : next)
            host->answer(command, answeredIds(), u"-1"_s);
        host->takeTrace();
        for (const standin::SentCommand &command : later)
            host->answer(command, answeredIds(), u"-1"_s);
        context.compare(title + u", after late answers to an earlier request"_s, one.allSignals(),
                        signalsOf(*host).join(u'\n'));
        repeatEarlierAnswers(context, *host, one);
    }
    context.summarize(u"every answer repeated"_s);
}

void checkForeignContexts(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const Request &one : contextRequests) {
        const QList<standin::SentCommand> sent = commandsOf(*host, one.steps);
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
        // Batches and the query of all ignore contexts of other commands.
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
        // An answer from a station without a command.
        host->answer(sent.constFirst().command, answeredIds(), u"nowhere"_s, nullptr);
        host->takeTrace();
        for (const standin::SentCommand &command : sent)
            host->answer(command, answeredIds(), u"-1"_s);
        context.compare(one.title() + u", answered after these"_s, one.allSignals(),
                        signalsOf(*host).join(u'\n'));
    }
    context.summarize(u"every context with every other command, and no context"_s);
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
        // Station A answers inside the call, B rejects the command, C answers later.
        host->setDefaultDelivery(Delivery::held());
        host->framework.rules().setForStation(u"A"_s, Delivery::immediate().failing(u"-1"_s));
        host->framework.rules().setForStation(u"B"_s, Delivery::rejected());
        request(*host, one.steps);
        host->framework.releaseAll();
    }
    context.summarize(u"answers inside the send call, up to three times each"_s);
}

void checkAnswerOrders(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    int orders = 0;
    for (const Request &one : contextRequests) {
        QList<qsizetype> order{0, 1, 2};
        do {
            const QList<standin::SentCommand> sent = commandsOf(*host, one.steps);
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

void checkClosedViewCells(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    const QVariant found = QVariantMap{{u"Bookmarks"_s, QVariantList{recordOf(u"x"_s)}}};
    const auto query = [&] {
        host->recreateObject();
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
    context.expect(!closed, u"the model to be deleted with its view cell"_s, u"it still exists"_s);

    sent = query();
    const QPointer<QObject> timeline = host->showCell(u"cell"_s, u"l"_s, u"A"_s);
    host->deleteObject();
    context.expect(!timeline, u"the model to be deleted with the object"_s, u"it still exists"_s);
    context.summarize(u"answers for view cells that are closed, opened again or deleted"_s);
}

void checkAfterDestruction(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const Request &one : contextRequests) {
        const QList<standin::SentCommand> sent = commandsOf(*host, one.steps);
        host->deleteObject();
        host->takeTrace();
        host->recreateObject();
        host->play(u"grant\nshow cell l A"_s);
        for (int again = 0; again < 2; ++again) {
            for (const standin::SentCommand &command : sent)
                host->answer(command, answeredIds(), again ? u"0"_s : u"-1"_s);
        }
        host->takeTrace();
        host.expectStillWorking(u"the end of the object"_s);
    }
    context.summarize(u"late answers to a deleted object reach the next object"_s);
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
    host.expectStillWorking(u"requests without an answer"_s);
    host->deleteObject();
    context.summarize(u"16000 requests without an answer"_s);
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
        host->recreateObject();
        host->play(u"grant\nshow cell l A"_s);
        host->framework.addPlugin(standin::Topology::pluginID(), &topology);
        topology.result = QVariantMap{
            {u"A"_s, hostile.value}, {u"A/1"_s, hostile.value}, {hostile.value.toString(), 1}};
        work();
    }
    host->recreateObject();
    host->play(u"grant\nshow cell l A"_s);
    // The host may delete the topology plug-in between two calls.
    auto deleted = std::make_unique<WatchedTopology>(host->topology);
    host->framework.addPlugin(standin::Topology::pluginID(), deleted.get());
    work();
    deleted.reset();
    work();
    host.expectStillWorking(u"the end of the topology plug-in"_s);
    context.summarize(u"topology plug-ins that return hostile values or are deleted"_s);
}

void checkForeignTopology(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    ForeignTopology topology;
    host->framework.addPlugin(standin::Topology::pluginID(), &topology);
    const QtMessages quiet; // Qt warns of each call that fails
    context.compare(u"a query of all"_s, u"= bool false"_s, host->play(u"queryAllBookmarks()"_s));
    context.compare(
        u"a failed batch"_s, u"signal addBookmarksResponsed()"_s,
        host->play(u"addBookmarks([{'CameraID': '1'}], 1, 2, '', '', '')\nanswer 1 -1"_s)
            .section(u'\n', -1));
    context.summarize(u"a topology plug-in whose method has other parameters"_s);
}

void checkMemoryGrowth(CheckContext &context)
{
    constexpr qint64 Count = 500;
    LoggingHost host(context);
    if (!host)
        return;
    if (!allocatedBytes()) {
        context.skip(u"this platform does not count allocated memory"_s);
        return;
    }
    static constexpr const char *programs[] = {
        "addBookmarks([{'CameraID': '1', 'relayPath': 'A'}, {'relayPath': 'B'}], 1, 2, '', '', "
        "'')\nanswer 1 ok\nanswer 2 -1",
        "addBookmarks([], 1, 2, '', '', '')",
        "reject A\naddBookmarks([{'relayPath': 'A'}], 1, 2, '', '', '')",
        "grant\ndeleteBookmarks([{'relayPath': 'A'}])\nanswer 1 ok",
        "answer QuerySettingPermission@ ok false\ndeleteBookmarks([{'relayPath': 'A'}])",
        "queryAllBookmarks()\nanswer 1 ok\nanswer 2 ok\nanswer 3 -1",
        "queryAllBookmarks()\nqueryAllBookmarks()\nanswer 1 ok\nanswer 2 ok\nanswer 3 -1\nanswer 4 "
        "ok\nanswer 5 ok\nanswer 6 -1",
        "reject A B C\nqueryAllBookmarks()",
        "show cell l A\nsetTimelineBoundary(1, 2, 'cell')\nanswer 1 ok",
        "show cell l A\nsetTimelineBoundary(1, 2, 'cell')\nanswer 1 -1",
        "show cell l A\nsetTimelineBoundary(1, 2, 'cell')\nremoveTimelineModel('cell')\nanswer 1 "
        "ok",
        "reject A\nshow cell l A\nsetTimelineBoundary(1, 2, 'cell')",
        "show cell l A\nevent AddBookmark@A {'BookmarkID': 'x', 'LocationID': "
        "'l'}\nremoveTimelineModel('cell')",
    };
    for (const char *steps : programs) {
        host->recreateObject();
        const auto repeat = [&] {
            for (int i = 0; i < Count; ++i) {
                host->clearTraffic();
                host->play(QLatin1String(steps));
            }
            host->clearTraffic();
            return *allocatedBytes();
        };
        const qint64 before = repeat();
        const qint64 grown = repeat() - before;
        // A leaked context takes at least 16 bytes.
        context.expect(grown < Count * 16, u"no growth of memory"_s,
                       u"%1 bytes more after %2 times %3"_s.arg(grown).arg(Count).arg(
                           QString::fromLatin1(steps).simplified()));
    }
    context.summarize(u"completed requests leave no memory behind"_s);
}

void checkRandomCalls(CheckContext &context)
{
    constexpr int Rounds = 300;
    constexpr int Steps = 60;
    constexpr int SingleCalls = int(std::size(entries)) - 2; // without the program and the deletion
    LoggingHost host(context);
    if (!host)
        return;
    QRandomGenerator random(context.seed());
    EchoServer server;
    host->framework.setServer(&server);
    const Delivery deliveries[] = {Delivery::immediate(), Delivery::held(), Delivery::rejected(),
                                   Delivery::never(), Delivery::immediate().times(2)};
    for (int round = 0; round < Rounds; ++round) {
        host->recreateObject();
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
    host->recreateObject();
    host.expectStillWorking(u"random calls"_s);
    context.summarize(u"%1 random steps, seed %2"_s.arg(Rounds * Steps).arg(context.seed()));
}

} // namespace

std::vector<Check> hostileHostChecks()
{
    return {
        {"5.repeated-answers", "Repeated and late answers change nothing", checkRepeatedAnswers},
        {"5.foreign-contexts", "Answers with a foreign context change nothing",
         checkForeignContexts},
        {"5.answers-inside", "Answers may come inside the send call, also repeatedly",
         checkAnswersInside},
        {"5.answer-orders", "Answers may come in every order", checkAnswerOrders},
        {"5.never-answered", "Requests without an answer do no harm", checkNeverAnswered},
        {"5.closed-view-cells", "Answers for closed view cells change nothing",
         checkClosedViewCells},
        {"5.after-destruction", "Answers to a deleted object do no harm to the next one",
         checkAfterDestruction},
        {"5.topologies", "The topology plug-in may return hostile values", checkTopologies},
        {"5.foreign-topology", "The topology plug-in may have another method",
         checkForeignTopology},
        {"5.from-signals", "Every entry may be called inside each signal",
         checkCallsFromInside<Place::Signal>},
        {"5.from-sends", "Every entry may be called inside each send call",
         checkCallsFromInside<Place::SendCall>},
        {"5.from-topology-calls", "Every entry may be called inside calls of the topology plug-in",
         checkCallsFromInside<Place::TopologyCall>},
        {"5.from-timelines", "Every entry may be called inside changes of a timeline model",
         checkCallsFromInside<Place::TimelineChange>},
        {"5.query-from-topology-call",
         "A query, an answer or a deletion may come inside calls of the topology plug-in",
         checkInsideTopologyCalls},
        {"5.memory-growth", "Completed requests leave no memory behind", checkMemoryGrowth},
        {"5.random-calls", "Calls and answers may come in random order", checkRandomCalls},
    };
}

} // namespace check
