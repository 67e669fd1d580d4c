#include "Checks.h"
#include "Describe.h"
#include "FailingMemory.h"
#include "Host.h"
#include "Scenario.h"

#include <QtCore/QLibraryInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QVersionNumber>

// Level 6: in each scenario every allocation of the plug-in fails once, in a fork of the process:
// alone, and together with all that follow. The plug-in throws nothing, leaks nothing, and each
// list and model is in its old or its new state. Qt itself may end the process: it reads memory
// that it could not allocate.

namespace check {

using namespace Qt::StringLiterals;

namespace {

#ifdef Q_OS_WIN
void playShortOfMemory(Trial &trial, std::initializer_list<Scenario>)
{
    trial.skip(u"allocations can't be made to fail on this platform"_s);
}
#else

/// One run of a scenario's steps.
struct Run
{
    QStringList before; ///< the lists and the view cell's rows
    QStringList after;
    QStringList again; ///< after the same steps with enough memory
    QStringList trace; ///< of the steps
    QStringList traceAgain;
    bool hasThrown = false;
    std::size_t leaked = 0; ///< blocks
};

QString filledIn(const char *steps)
{
    const QString record = u"{'BookmarkID': '%1', 'CameraID': '1', 'LocationID': 'l', "
                           "'StartTimestamp': 5, 'EndTimestamp': 6, 'Description': 'caf\u00e9'}"_s;
    return QString::fromUtf8(steps)
        .replace(u"BOOKMARKS"_s,
                 u"{'Bookmarks': [%1, %2]}"_s.arg(record.arg(u"q1"_s), record.arg(u"q2"_s)))
        .replace(u"RECORD"_s, record.arg(u"x"_s));
}

/// The four lists, then the view cell's rows.
QStringList stateOf(Host &host)
{
    return host
        .play(
            u"list all\nlist recent\nlist api\n"
            "getFilteredBookmarkList({'groupKey': 'displayDate', 'endTimestamp': 9})\nrows cell"_s)
        .split(u'\n');
}

Run play(Host &host, const Scenario &scenario, void (*arm)())
{
    Run run;
    run.leaked = failingmemory::blocks();
    host.renewObject();
    host.play(
        u"grant\nshow cell l A\nevent AddBookmark@A {'BookmarkID': 'e', 'LocationID': 'l'}"_s);
    host.play(filledIn(scenario.before));
    run.before = stateOf(host);
    const QString steps = filledIn(scenario.steps);
    arm();
    try {
        run.trace = host.play(steps).split(u'\n');
    } catch (...) {
        run.hasThrown = true;
    }
    failingmemory::stop();
    run.after = stateOf(host);
    run.traceAgain = host.play(steps).split(u'\n');
    run.again = stateOf(host);

    // No request is under way any more, so memory that is still allocated has leaked.
    const QList<standin::SentCommand> sent = host.framework.sent();
    for (const standin::SentCommand &command : sent)
        host.answer(command, QVariant(), u"-1"_s);
    host.deleteObject();
    host.forgetTraffic();
    run.leaked = failingmemory::blocks() - run.leaked;
    return run;
}

/// Whether the state is one of two. A view cell shows as many items as there was memory for.
bool isEither(const QStringList &state, const QStringList &old, const QStringList &next)
{
    const QString rows = state.last().chopped(1); // without the bracket
    return (state.first(4) == old.first(4) || state.first(4) == next.first(4)) &&
           (state.last() == old.last() || next.last().startsWith(rows));
}

/// What is wrong with a double, each line marked; then the lines that only it has.
QStringList reportOf(const Run &run, const Run &good)
{
    QStringList report;
    const auto expect = [&](bool holds, const QString &fault) {
        if (!holds)
            report.append(u"fault: "_s + fault);
    };
    const auto sentIn = [](const Run &one) { return one.trace.filter(u"send "_s); };
    expect(!run.hasThrown, u"an exception came out"_s);
    expect(run.leaked <= good.leaked, u"%1 blocks leaked"_s.arg(run.leaked - good.leaked));
    expect(isEither(run.after, good.before, good.after),
           u"neither the old state nor the new: "_s + run.after.join(u", "_s));
    expect(isEither(run.again, good.after, good.again),
           u"another state when done again: "_s + run.again.join(u", "_s));
    expect(!run.trace.contains(u"= bool true"_s) || sentIn(run) == sentIn(good),
           u"true though not all was sent: "_s + sentIn(run).join(u", "_s));
    // A request to several stations waits for each: an answer that failed must still be awaited.
    static const QRegularExpression endOfMany(u"^signal \\w+marksResponsed"_s);
    expect(good.trace.filter(endOfMany).isEmpty() ||
               !(run.trace + run.traceAgain).filter(endOfMany).isEmpty(),
           u"no end of the request, not even when answered again"_s);
    if (run.trace != good.trace && run.trace.filter(u"log "_s).isEmpty())
        report.append(u"nothing logged"_s);
    for (const QString &line : run.trace) {
        if (!good.trace.contains(line))
            report.append(line);
    }
    return report;
}

/// Plays each scenario. Its trace is what is heard of the lack of memory: the lines that do not
/// come otherwise, in alphabetical order.
void playShortOfMemory(Trial &trial, std::initializer_list<Scenario> scenarios)
{
    LoggingHost host(trial);
    if (!host)
        return;
    for (const QString &station : {u"B"_s, u"C"_s})
        host->topology.remove(station);
    failingmemory::setLibrary(trial.library().toStdString());
    for (const Scenario &scenario : scenarios) {
        // The first run makes whatever is made only once.
        play(*host, scenario, failingmemory::watch);
        const Run good = play(*host, scenario, failingmemory::watch);
        const Run run = play(*host, scenario, failingmemory::forkAtEach);
        if (failingmemory::isDouble())
            failingmemory::endDouble(reportOf(run, good).join(u'\n').toStdString() + '\n');

        const QString reports = QString::fromStdString(failingmemory::takeReports());
        QStringList lines = reports.split(u'\n', Qt::SkipEmptyParts);
        static const QRegularExpression endInQt(u"^died of signal \\d+ in libQt6"_s);
        lines.removeIf([](const QString &line) { return line.contains(endInQt); });
        lines.removeDuplicates();
        lines.sort();
        QString expected = withoutIndentation(scenario.trace);
        if (failingmemory::IsNewAlone) { // which is not all that can fail
            const QStringList known = expected.split(u'\n');
            lines.removeIf([&](const QString &line) { return known.contains(line); });
            expected.clear();
        }
        trial.compare(QLatin1String(scenario.title), expected, lines.join(u'\n'));
    }
    trial.summarize(u"%1 allocations failed in %2 scenarios"_s.arg(failingmemory::tried())
                        .arg(scenarios.size()));
}
#endif

void checkShortInRequests(Trial &trial)
{
    playShortOfMemory(
        trial,
        {
            {"add", "", "addBookmark('1', 'l', 'A', 1, 2, 'd', 'c', 'g')", R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::addBookmark>)"},
            {"add many", "",
             "addBookmarks([{'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}, {'CameraID': '2', 'relayPath': 'A'}], 1, 2, 'd', 'c', 'g')",
             R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::addBookmarks>)"},
            {"add from texts", "",
             "addBookmarks([{'relayPath': 'A'}], '2020/01/01 10:00:00', '2020/01/01 10:00:01', '', '', '')",
             R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::addBookmarks>)"},
            {"delete", "", "deleteBookmark('b', 'A')", R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::deleteBookmark>)"},
            {"delete many", "",
             "deleteBookmarks([{'BookmarkID': 'b', 'relayPath': 'A'}, {'BookmarkID': 'c', 'relayPath': 'A'}])",
             R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::deleteBookmarks>)"},
            {"update", "", "updateBookmark('b', 'd', 'g')", R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::updateBookmark>)"},
            {"query", "", "queryAllBookmarks()", R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::queryAllBookmarks>
                log Tessaline_Req: %s, new request context list failed <Tessaline::queryAllBookmarks>)"},
            {"query again", "queryAllBookmarks()\nanswer 1 ok BOOKMARKS", "queryAllBookmarks()",
             R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::queryAllBookmarks>
                log Tessaline_Req: %s, new request context list failed <Tessaline::queryAllBookmarks>)"},
            {"recent", "", "queryBookmarkForRecent('1', 'A', 3)",
             R"(= bool false
                log Tessaline_Req: %s, malloc memory fail <Tessaline::queryBookmarkForRecent>)"},
            {"for others", "", "queryBookmarkForAPI([1], 1, 2)",
             "log Tessaline_Req: %s, malloc memory fail <Tessaline::queryBookmarkForAPI>"},
            {"for others from texts", "",
             "queryBookmarkForAPI([1], '2020/01/01 10:00:00', '2020/01/01 10:00:00')",
             "log Tessaline_Req: %s, malloc memory fail <Tessaline::queryBookmarkForAPI>"},
            {"settings", "", "updateRecycleSetting(1, true)",
             "log Tessaline_Local: %s, malloc memory fail <Tessaline::updateRecycleSetting>"},
            {"without memory of its own", "",
             "connect\ngetRecycleSetting()\nremoveAllBookmarks('A')\nremoveTimelineModel('none')",
             ""},
            {"Init", "", "initialise", "log Tessaline: %s, malloc memory fail <Tessaline::Init>"},
        });
}

void checkShortInAnswers(Trial &trial)
{
    const char *const add =
        "addBookmarks([{'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}, {'CameraID': '2', 'relayPath': 'A'}], 1, 2, 'd', 'c', 'g')";
    const char *const remove =
        "deleteBookmarks([{'BookmarkID': 'b', 'relayPath': 'A'}, {'BookmarkID': 'c', 'relayPath': 'A'}])";
    playShortOfMemory(
        trial,
        {
            {"added", "", "reply AddBookmark@A ok RECORD",
             R"(log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>
                log Tessaline_Local: %s, create model item failed <Tessaline::CreateBookmarkModelItem>
                signal addBookmarkResponsed(false))"},
            {"many added", add, "answer 1 ok [RECORD, {'CameraID': '1'}]",
             R"(log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>
                log Tessaline_Local: %s, create model item failed <Tessaline::CreateBookmarkModelItem>
                signal addBookmarksResponsed(Camera A1,Camera A1))"},
            {"none added", add, "answer 1 -1",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"deleted", "", "reply DeleteBookmark@A ok 'x'",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"many deleted", remove, "answer 1 ok ['x', 'y']",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"none deleted", remove, "answer 1 -1 ['x', 'y']",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"not updated", "", "reply UpdateBookmark@ -1",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"all", "queryAllBookmarks()", "answer 1 ok BOOKMARKS",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"all once more", "queryAllBookmarks()\nanswer 1 ok BOOKMARKS\nqueryAllBookmarks()",
             "answer 2 ok BOOKMARKS",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"all, failed", "queryAllBookmarks()", "answer 1 -1",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"recent", "", "reply QueryBookmarkForRecent@A ok BOOKMARKS",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"for others", "", "reply QueryBookmarkForApi@ ok [RECORD]", ""},
            {"zone", "", "reply QuerySevTimezone@ ok 'Asia/Tokyo'",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"permission and settings", "",
             "reply QuerySettingPermission@ ok true\nreply GetRecycleSetting@ ok {'reserveHour': 5}",
             ""},
        });
}

void checkShortInViews(Trial &trial)
{
    // Qt before 6.5 leaves a block behind when a connection can't be made.
    const bool isQtLeaking = QLibraryInfo::version() < QVersionNumber(6, 5);
    const QByteArray failedViewCell =
        QByteArray(isQtLeaking ? "fault: 1 blocks leaked\n" : "") +
        R"(log Tessaline: %s, Create time shift buffer model failed <Tessaline::CreateTimelineModel>
           log Tessaline: %s, malloc memory fail <Tessaline::getBookmarkModelForTimeline>
           log Tessaline: %s, malloc memory fail <Tessaline::setTimelineFocusInfo>)";
    playShortOfMemory(
        trial,
        {
            {"view cell", "", "show other l A", failedViewCell.constData()},
            {"focus", "", "setTimelineFocusInfo('m', 'B', 'other')",
             "log Tessaline: %s, malloc memory fail <Tessaline::setTimelineFocusInfo>"},
            {"event", "", "event AddBookmark@A RECORD",
             R"(log Tessaline: %s, malloc memory fail <Tessaline::EventProcessor>
                log Tessaline_Local: %s, create model item failed <Tessaline::CreateBookmarkModelItem>)"},
            {"range", "", "setTimelineBoundary(0, 9, 'cell')",
             R"(log Tessaline: %s, malloc memory fail <Tessaline::queryBookmarkForTimeline>
                nothing logged)"},
            {"timeline", "setTimelineBoundary(0, 9, 'cell')", "answer 1 ok BOOKMARKS",
             R"(log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>
                log Tessaline_Local: %s, create model item failed <Tessaline::CreateBookmarkModelItem>
                timeline refillItems()
                timeline refillItems(q1))"},
            {"timeline, failed", "setTimelineBoundary(0, 9, 'cell')", "answer 1 -1",
             "log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"},
            {"page", "queryAllBookmarks()\nanswer 1 ok BOOKMARKS",
             "getFilteredBookmarkList({'text': 'CAF\u00c9', 'nodeID': 'A/1', 'groupKey': 'creator', 'endTimestamp': 9})",
             R"(= {}
                log Tessaline_Local: %s, malloc memory fail <Tessaline::getFilteredBookmarkList>)"},
            {"bookmarks of a camera", "reply QueryBookmarkForRecent@A ok BOOKMARKS",
             "getBookmarkListByNodeID('A/1')",
             "log Tessaline_Local: %s, malloc memory fail <Tessaline::getBookmarkListByNodeID>"},
        });
}

} // namespace

std::vector<Check> memoryChecks()
{
    return {
        {"6.requests", "Requests while memory is short", checkShortInRequests},
        {"6.answers", "Answers while memory is short", checkShortInAnswers},
        {"6.views", "View cells and pages while memory is short", checkShortInViews},
    };
}

} // namespace check
