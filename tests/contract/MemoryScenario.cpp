#include "MemoryScenario.h"

#include "FailingMemory.h"
#include "LoggingHost.h"

#include <QtCore/QLibraryInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QVersionNumber>

namespace check {

using namespace Qt::StringLiterals;

#ifdef Q_OS_WIN
void playWithFailingMemory(CheckContext &context, const ScenarioFile &)
{
    context.skip(u"this platform has no way to make allocations fail"_s);
}
#else

namespace {

/// One run of a scenario's steps.
struct Run
{
    QStringList stateBefore;
    QStringList stateAfter;
    QStringList stateAfterRetry; ///< after the same steps with enough memory
    QStringList trace;
    QStringList retryTrace;
    bool hasThrown = false;
    std::size_t leakedBlocks = 0;
};

/// Replaces the words BOOKMARKS and RECORD by values.
QString expanded(QString steps)
{
    const QString record = u"{'BookmarkID': '%1', 'CameraID': '1', 'LocationID': 'l', "
                           "'StartTimestamp': 5, 'EndTimestamp': 6, 'Description': 'caf\u00e9'}"_s;
    return steps
        .replace(u"BOOKMARKS"_s,
                 u"{'Bookmarks': [%1, %2]}"_s.arg(record.arg(u"q1"_s), record.arg(u"q2"_s)))
        .replace(u"RECORD"_s, record.arg(u"x"_s));
}

/// Returns the three lists and a page, then the rows of the view cell.
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
    run.leakedBlocks = failingmemory::blocks();
    host.recreateObject();
    host.play(
        u"grant\nshow cell l A\nevent AddBookmark@A {'BookmarkID': 'e', 'LocationID': 'l'}"_s);
    host.play(expanded(scenario.textOf(true)));
    run.stateBefore = stateOf(host);
    const QString steps = expanded(scenario.textOf(false));
    arm();
    try {
        run.trace = host.play(steps).split(u'\n');
    } catch (...) {
        run.hasThrown = true;
    }
    failingmemory::stop();
    run.stateAfter = stateOf(host);
    run.retryTrace = host.play(steps).split(u'\n');
    run.stateAfterRetry = stateOf(host);

    // Answers end all requests, so blocks that are still allocated have leaked.
    const QList<standin::SentCommand> sent = host.framework.sent();
    for (const standin::SentCommand &command : sent)
        host.answer(command, QVariant(), u"-1"_s);
    host.deleteObject();
    host.clearTraffic();
    run.leakedBlocks = failingmemory::blocks() - run.leakedBlocks;
    return run;
}

/// Returns true if a state is one of two. The view cell may have a part of the new rows.
bool isOneOf(const QStringList &state, const QStringList &old, const QStringList &next)
{
    const QString rows = state.last().chopped(1); // without the bracket
    return (state.first(4) == old.first(4) || state.first(4) == next.first(4)) &&
           (state.last() == old.last() || next.last().startsWith(rows));
}

/// Returns a line "fault: ..." for each fault of a run with failing memory, and the lines of its
/// trace that the good run does not have.
QStringList reportOf(const Run &run, const Run &good)
{
    QStringList report;
    const auto expect = [&](bool condition, const QString &fault) {
        if (!condition)
            report.append(u"fault: "_s + fault);
    };
    const auto sentIn = [](const Run &one) { return one.trace.filter(u"send "_s); };
    expect(!run.hasThrown, u"an exception left the plug-in"_s);
    expect(run.leakedBlocks <= good.leakedBlocks,
           u"%1 blocks leaked"_s.arg(run.leakedBlocks - good.leakedBlocks));
    expect(isOneOf(run.stateAfter, good.stateBefore, good.stateAfter),
           u"neither the old nor the new state: "_s + run.stateAfter.join(u", "_s));
    expect(isOneOf(run.stateAfterRetry, good.stateAfter, good.stateAfterRetry),
           u"another state after a retry: "_s + run.stateAfterRetry.join(u", "_s));
    expect(!run.trace.contains(u"= bool true"_s) || sentIn(run) == sentIn(good),
           u"returns true, but did not send all commands: "_s + sentIn(run).join(u", "_s));
    // The final signal of a batch or query must come, at the latest when the answers are repeated.
    static const QRegularExpression finalSignal(u"^signal \\w+marksResponsed"_s);
    expect(good.trace.filter(finalSignal).isEmpty() ||
               !(run.trace + run.retryTrace).filter(finalSignal).isEmpty(),
           u"no final signal, not even after a retry"_s);
    if (run.trace != good.trace && run.trace.filter(u"log "_s).isEmpty())
        report.append(u"nothing logged"_s);
    for (const QString &line : run.trace) {
        if (!good.trace.contains(line))
            report.append(line);
    }
    return report;
}

/// Removes the lines "place FILE:LINE STATEMENT" from the children's reports.
/// @param statements statements by place, of all children so far; the new ones are added
/// @return an error for each place with two statements
QStringList takePlaces(QStringList &lines, LogProbe::Statements &statements)
{
    QStringList errors;
    for (const QString &line : std::as_const(lines)) {
        if (!line.startsWith(u"place "_s))
            continue;
        const QString place = line.section(u' ', 1, 1);
        const QString statement = line.section(u' ', 2);
        const QString known = statements.value(place, statement);
        if (known != statement)
            errors.append(u"fault: %1 logs \"%2\" and \"%3\""_s.arg(place, known, statement));
        statements.insert(place, statement);
    }
    lines.removeIf([](const QString &line) { return line.startsWith(u"place "_s); });
    return errors;
}

} // namespace

void playWithFailingMemory(CheckContext &context, const ScenarioFile &file)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const QString &station : {u"B"_s, u"C"_s})
        host->topology.remove(station);
    failingmemory::setLibrary(context.library().toStdString());
    // Qt before 6.5 leaves a block behind when a connection can't be made.
    const bool isQtLeaking = QLibraryInfo::version() < QVersionNumber(6, 5);
    LogProbe::Statements statements;
    for (const Scenario &scenario : file.scenarios) {
        // The first run makes allocations that occur only once in a process.
        play(*host, scenario, failingmemory::watch);
        const Run good = play(*host, scenario, failingmemory::watch);
        const Run run = play(*host, scenario, failingmemory::forkAtEach);
        if (failingmemory::isChild()) {
            QStringList report = reportOf(run, good);
            for (const auto &[place, statement] : host.log().statements().toStdMap())
                report.append(u"place %1 %2"_s.arg(place, statement));
            failingmemory::endChild(report.join(u'\n').toStdString() + '\n');
        }

        const QString reports = QString::fromStdString(failingmemory::takeReports());
        QStringList lines = reports.split(u'\n', Qt::SkipEmptyParts);
        static const QRegularExpression crashInQt(u"^crashed with signal \\d+ in libQt6"_s);
        lines.removeIf([](const QString &line) { return line.contains(crashInQt); });
        lines.append(takePlaces(lines, statements));
        lines.removeDuplicates();
        lines.sort();
        QStringList expected = scenario.expected();
        if (!isQtLeaking)
            expected.removeAll(u"fault: 1 blocks leaked"_s);
        if (failingmemory::OnlyNewFails) { // some expected failures do not occur
            lines.removeIf([&](const QString &line) { return expected.contains(line); });
            expected.clear();
        }
        context.compare(scenario.title, expected.join(u'\n'), lines.join(u'\n'));
    }
    context.summarize(
        u"made each of %1 allocations in %2 scenarios fail"_s.arg(failingmemory::forkCount())
            .arg(file.scenarios.size()));
}
#endif

} // namespace check
