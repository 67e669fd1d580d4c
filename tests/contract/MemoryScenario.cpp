#include "MemoryScenario.h"

#include "FailingMemory.h"
#include "LoggingHost.h"

#include <QtCore/QLibraryInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QVersionNumber>

namespace check {

using namespace Qt::StringLiterals;

#ifdef Q_OS_WIN
void playShortOfMemory(CheckContext &context, const ScenarioFile &)
{
    context.skip(u"allocations can't be made to fail on this platform"_s);
}
#else

namespace {

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

QString filledIn(QString steps)
{
    const QString record = u"{'BookmarkID': '%1', 'CameraID': '1', 'LocationID': 'l', "
                           "'StartTimestamp': 5, 'EndTimestamp': 6, 'Description': 'caf\u00e9'}"_s;
    return steps
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
    host.play(filledIn(scenario.textOf(true)));
    run.before = stateOf(host);
    const QString steps = filledIn(scenario.textOf(false));
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

/// Takes the lines "place FILE:LINE STATEMENT" of doubles out.
/// @param statements by place, of all doubles until now; extended
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

void playShortOfMemory(CheckContext &context, const ScenarioFile &file)
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
        // The first run makes whatever is made only once.
        play(*host, scenario, failingmemory::watch);
        const Run good = play(*host, scenario, failingmemory::watch);
        const Run run = play(*host, scenario, failingmemory::forkAtEach);
        if (failingmemory::isDouble()) {
            QStringList report = reportOf(run, good);
            for (const auto &[place, statement] : host.log().statements().toStdMap())
                report.append(u"place %1 %2"_s.arg(place, statement));
            failingmemory::endDouble(report.join(u'\n').toStdString() + '\n');
        }

        const QString reports = QString::fromStdString(failingmemory::takeReports());
        QStringList lines = reports.split(u'\n', Qt::SkipEmptyParts);
        static const QRegularExpression endInQt(u"^died of signal \\d+ in libQt6"_s);
        lines.removeIf([](const QString &line) { return line.contains(endInQt); });
        lines.append(takePlaces(lines, statements));
        lines.removeDuplicates();
        lines.sort();
        QStringList expected = scenario.expected();
        if (!isQtLeaking)
            expected.removeAll(u"fault: 1 blocks leaked"_s);
        if (failingmemory::IsNewAlone) { // which is not all that can fail
            lines.removeIf([&](const QString &line) { return expected.contains(line); });
            expected.clear();
        }
        context.compare(scenario.title, expected.join(u'\n'), lines.join(u'\n'));
    }
    context.summarize(u"%1 allocations failed in %2 scenarios"_s.arg(failingmemory::tried())
                          .arg(file.scenarios.size()));
}
#endif

} // namespace check
