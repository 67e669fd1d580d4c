#include "Checks.h"
#include "Describe.h"
#include "LoggingHost.h"
#include "ProcessProbe.h"
#include "SignalReceiver.h"
#include "framework/RetainingFramework.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QDirIterator>

// Level 2: how the library and its one object come and go.

namespace check {

using namespace driver;
using namespace Qt::StringLiterals;

namespace {

/// A little of everything: each command sent and answered, timelines, lists, an event.
const char *const dayOfWork = R"(
connect
grant
show cell l A
addBookmark('1', 'l', 'A', 1, 2, 'd', 'c', 'g')
addBookmarks([{'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}], 1, 2, 'd', 'c', 'g')
deleteBookmark('b', 'A')
deleteBookmarks([{'BookmarkID': 'b', 'relayPath': 'A'}])
updateBookmark('b', 'd', 'g')
removeAllBookmarks('A')
queryBookmarkForRecent('1', 'A', 5)
queryAllBookmarks()
queryBookmarkForAPI(['1'], 1, 2)
setTimelineBoundary(1, 5000, 'cell')
getRecycleSetting()
updateRecycleSetting(5, true)
event AddBookmark@A {'BookmarkID': 'e', 'CameraID': '1', 'LocationID': 'l', 'StartTimestamp': 5}
list all
rows cell
removeTimelineModel('cell')
)";

QVariant bookmarksAnswer()
{
    const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"l"_s, 1000, 2000, u"text"_s);
    return QVariantMap{{u"Bookmarks"_s, QVariantList{record}}};
}

/// Answers a command, a batch with a failure.
void answer(Host &host, const standin::SentCommand &command)
{
    const bool isBatch = command.context && command.command.endsWith(u"Bookmarks"_s);
    if (isBatch)
        host.answer(command, QStringList{u"b"_s}, u"1"_s);
    else
        host.answer(command, bookmarksAnswer());
}

void answerAll(Host &host)
{
    const QList<standin::SentCommand> sent = host.framework.sent();
    for (const standin::SentCommand &command : sent)
        answer(host, command);
}

/// Runs a day of work on a library that is loaded for it; false when it could not be loaded.
bool workOnce(CheckContext &context)
{
    Host host(context.library());
    if (!host.error().isEmpty()) {
        context.fail(u"expected a plug-in, found: "_s + host.error());
        return false;
    }
    host.play(QLatin1String(dayOfWork));
    answerAll(host);
    host.play(QLatin1String(dayOfWork));
    return true;
}

void checkLoad(CheckContext &context)
{
    const LoadedPlugin plugin(context.library());
    context.expect(plugin.error().isEmpty(), u"a plug-in"_s, plugin.error());
    context.summarize(u"loaded by Qt's plug-in loader"_s);
}

void checkOneObject(CheckContext &context)
{
    LoadedPlugin plugin(context.library());
    if (!context.expect(plugin.error().isEmpty(), u"a plug-in"_s, plugin.error()))
        return;
    const QPointer<QObject> first = plugin.object();
    if (!context.expect(first, u"an object"_s, u"none"_s))
        return;
    context.expect(plugin.object() == first, u"the same object again"_s, u"another"_s);
    context.expect(!first->parent(), u"an object without a parent"_s, u"a parent"_s);
    {
        LoadedPlugin second(context.library());
        context.expect(second.object() == first, u"the same object from a second loader"_s,
                       u"another"_s);
    }
    context.expect(first, u"the object to outlive the second loader"_s, u"its end"_s);
    delete first;
    const QPointer<QObject> next = plugin.object();
    context.expect(next, u"a new object after the first was deleted"_s, u"none"_s);
    auto *const base = qobject_cast<PluginBase *>(next.data());
    context.expect(base && base->name.isEmpty() && base->pluginID.isEmpty(),
                   u"a new object without name and ID"_s, u"something else"_s);
    delete next;
    context.summarize(u"one object, made again after its end, shared by two loaders"_s);
}

void checkUnloadCycles(CheckContext &context)
{
    constexpr qint64 WarmUp = 20;
    constexpr qint64 Cycles = 200;
    qint64 before = 0;
    for (qint64 i = 0; i < WarmUp + Cycles; ++i) {
        if (i == WarmUp)
            before = allocatedBytes().value_or(0);
        if (!workOnce(context))
            return;
        if (!context.expect(!isInMemory(context.library()), u"the library to leave the process"_s,
                            u"it still in memory after unloading"_s))
            return;
    }
    const qint64 grown = allocatedBytes().value_or(0) - before;
    // A library that keeps anything for each cycle keeps at least a pointer.
    context.expect(grown < Cycles * 8, u"no growth"_s,
                   u"%1 bytes more after %2 cycles"_s.arg(grown).arg(Cycles));
    context.summarize(
        u"%1 times loaded, used and unloaded, %2 bytes more"_s.arg(WarmUp + Cycles).arg(grown));
}

QVariantList keptOfWork(CheckContext &context)
{
    standin::RetainingFramework framework;
    Host host(context.library());
    if (!host.error().isEmpty())
        return {};
    framework.topology = &host.topology;
    host.introduce(&framework);
    QVariantList kept;
    const standin::SignalReceiver receiver(
        host.object(), [&](const QMetaMethod &, const QVariantList &values) { kept += values; });
    host.play(QLatin1String(dayOfWork));
    const QList<standin::SentCommand> sent = framework.sent;
    for (const standin::SentCommand &command : sent)
        answer(host, command);
    host.play(u"show cell l A\nevent AddBookmark@A {'BookmarkID': 'e', 'LocationID': 'l'}"_s);
    const auto *const model = host.showCell(u"other"_s, u"l"_s, u"A"_s);
    host.play(u"event AddBookmark@A {'BookmarkID': 'f', 'LocationID': 'l'}"_s);
    for (int role = Qt::UserRole + 1; role < Qt::UserRole + 24; ++role) {
        kept.append(model->index(0, 0).data(role));
        kept.append(model->roleNames().value(role));
    }
    kept += {host.plugin().name, host.plugin().pluginID};
    for (const char *call :
         {"getBookmarkListForRecent()", "getBookmarkListByNodeID('')", "getQueryBookmarkResult()",
          "getFilteredBookmarkList({'endTimestamp': 5000})"})
        kept.append(QVariant(host.call(QLatin1String(call))));
    return framework.kept + kept;
}

void checkValuesOutliveTheLibrary(CheckContext &context)
{
    QString before;
    QVariantList kept;
    {
        LoadedPlugin stays(context.library());
        kept = keptOfWork(context);
        before = describe(kept);
    }
    if (!context.expect(!kept.isEmpty(), u"values from the plug-in"_s, u"none"_s))
        return;
    if (isInMemory(context.library())) {
        context.fail(u"expected the library to leave the process, found it still in memory"_s);
        return;
    }
    context.compare(u"values after the unload"_s, before, describe(kept));
    context.summarize(u"%1 values read after the library was gone"_s.arg(kept.size()));
}

void checkExitWithoutUnload(CheckContext &context)
{
    // Left to the end of the process: the loader, the object, its lists and its contexts.
    auto *const plugin = new LoadedPlugin(context.library());
    if (!context.expect(plugin->error().isEmpty(), u"a plug-in"_s, plugin->error()))
        return;
    static standin::Framework framework;
    auto *const base = qobject_cast<PluginBase *>(plugin->object());
    if (!context.expect(base, u"an object of the host's interface"_s, u"none"_s))
        return;
    base->InitialPluginBase(nullptr, nullptr, &framework);
    base->PluginServerConnected();
    QMetaObject::invokeMethod(base, "queryAllBookmarks");
    QMetaObject::invokeMethod(base, "setTimelineBoundary", Q_ARG(qlonglong, 1), Q_ARG(qlonglong, 2),
                              Q_ARG(QString, u"cell"_s));
    context.summarize(u"the process ends with the object alive"_s);
}

void checkExitAfterUnload(CheckContext &context)
{
    if (workOnce(context))
        context.summarize(u"the process ends after the library was unloaded"_s);
}

QStringList filesIn(const QString &folder)
{
    QStringList files;
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext())
        files.append(entries.next());
    files.sort();
    return files;
}

void checkThreadsAndFiles(CheckContext &context)
{
    if (!threadCount() || !openFiles()) {
        context.skip(u"threads or open files can't be listed on this platform"_s);
        return;
    }
    // The folder is the check's own and serves as home and for temporary files as well.
    const QStringList written = filesIn(QDir::currentPath());
    const QStringList open = openFiles().value_or(QStringList());
    const int threads = *threadCount();
    {
        Host host(context.library());
        if (!context.expect(host.error().isEmpty(), u"a plug-in"_s, host.error()))
            return;
        host.play(QLatin1String(dayOfWork));
        answerAll(host);
        context.expect(threadCount() == threads, u"no thread of its own"_s,
                       u"%1 threads instead of %2"_s.arg(*threadCount()).arg(threads));
        context.compare(u"open files"_s, open.join(u'\n'), openFiles()->join(u'\n'));
    }
    context.compare(u"open files after unloading"_s, open.join(u'\n'), openFiles()->join(u'\n'));
    context.compare(u"files in the working, home and temporary folder"_s, written.join(u'\n'),
                    filesIn(QDir::currentPath()).join(u'\n'));
    context.summarize(u"no thread, no open file, no file written"_s);
}

void checkSilence(CheckContext &context)
{
    // The parent process checks the output of this one.
    if (workOnce(context))
        context.summarize(u"nothing on standard output and error"_s);
}

// ---- The logging library ----

/// A failing request, and what a plug-in that logs says about it.
constexpr QLatin1String badRequest("addBookmark('', '', '', 1, 2, '', '', '')");
constexpr QLatin1String
    badRequestLine("log Tessaline_Req: %s, Location ID is empty <Tessaline::addBookmark>");

void checkLogFunctionsMissing(CheckContext &context)
{
    using Missing = LogProbe::Missing;
    struct Row
    {
        const char *title;
        Missing atLoad;
        Missing later;
        int registrations;
        bool writes;
    };
    static constexpr Row rows[] = {
        {"all there", Missing::Nothing, Missing::Nothing, 1, true},
        {"no handle", Missing::Handle, Missing::Handle, 1, false},
        {"no registerModule", Missing::RegisterModule, Missing::RegisterModule, 0, true},
        {"no checkLine", Missing::CheckLine, Missing::CheckLine, 1, false},
        {"no writeLine", Missing::WriteLine, Missing::WriteLine, 1, false},
        {"all vanish after the load", Missing::Nothing, Missing::Everything, 1, false},
        {"all appear after the load", Missing::Everything, Missing::Nothing, 0, true},
    };
    for (const Row &row : rows) {
        LogProbe log(row.atLoad);
        if (!log.error().isEmpty())
            return context.warn(u"the logging library is not there: "_s + log.error());
        Host host(context.library(), Host::Initialised, &log);
        if (!context.expect(host.error().isEmpty(), u"a plug-in"_s, host.error()))
            return;
        log.withhold(row.later);
        const QString title = QLatin1String(row.title);
        context.compare(
            title, (row.writes ? QString(badRequestLine) + u'\n' : QString()) + u"= bool false"_s,
            host.play(badRequest));
        context.compare(title + u", registration"_s,
                        row.registrations ? u"19 Tessaline"_s : QString(),
                        log.registrations().join(u", "_s));
    }
    context.expect(!isInMemory(LogProbe::loaderName()), u"the logging library to be released"_s,
                   u"it still in memory"_s);
    context.summarize(u"works with each function of the logging library missing"_s);
}

void checkLogRefused(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    host.log().refuseLines(true);
    context.compare(u"refused"_s, u"= bool false"_s, host->play(badRequest));
    context.expect(host.log().checks() == 1, u"one question whether the line is wanted"_s,
                   QString::number(host.log().checks()));
    host.log().refuseLines(false);
    context.compare(u"wanted again"_s, QString(badRequestLine) + u"\n= bool false"_s,
                    host->play(badRequest));
    context.summarize(u"asks before each line and keeps to the answer"_s);
}

void checkLogAbsent(CheckContext &context)
{
    Host host(context.library());
    if (!context.expect(host.error().isEmpty(), u"a plug-in"_s, host.error()))
        return;
    const QString name = LogProbe::libraryPath().section(u'/', -1);
    if (isInMemory(LogProbe::loaderName())) {
        context.skip(name + u" is on the search path of this process"_s);
        return;
    }
    context.compare(u"without the logging library"_s, u"= bool false"_s, host.play(badRequest));
    host.play(QLatin1String(dayOfWork));
    answerAll(host);
    context.summarize(u"works without "_s + name);
}

/// Works with a logging library that lacks something from the start.
/// @param folder of the library, beside this program
void workWithLackingLog(CheckContext &context, const QString &folder, const QString &lack)
{
    QLibrary library(QCoreApplication::applicationDirPath() + u'/' + folder + u'/' +
                     LogProbe::loaderName());
    if (!library.load()) {
        context.warn(u"the stand-in without %1 is not there: "_s.arg(lack) + library.errorString());
        return;
    }
    Host host(context.library());
    if (!context.expect(host.error().isEmpty(), u"a plug-in"_s, host.error()))
        return;
    context.compare(u"without "_s + lack, u"= bool false"_s, host.play(badRequest));
    context.summarize(u"works with a logging library without "_s + lack);
}

void checkLogWithoutEntryPoint(CheckContext &context)
{
    workWithLackingLog(context, u"log_without_entry_point"_s, u"an entry point"_s);
}

void checkLogWithoutObject(CheckContext &context)
{
    workWithLackingLog(context, u"log_without_object"_s, u"a log object"_s);
}

} // namespace

std::vector<Check> lifeChecks()
{
    return {
        {loadCheck, "It can be loaded", checkLoad},
        {"2.one-object", "One object, made again after its end, also by a second loader",
         checkOneObject},
        {"2.unload-cycles", "It can be loaded and unloaded any number of times without growth",
         checkUnloadCycles},
        {"2.values-outlive", "What it handed out is valid after it has been unloaded",
         checkValuesOutliveTheLibrary},
        {"2.exit-loaded", "The process can end while it is loaded and its object alive",
         checkExitWithoutUnload},
        {"2.exit-unloaded", "The process can end after it was used and unloaded",
         checkExitAfterUnload},
        {"2.threads-files", "It starts no thread, keeps no file open and writes none",
         checkThreadsAndFiles},
        {"2.silence", "It writes nothing on standard output and error", checkSilence},
        {"2.log-functions", "It registers, and works with each function of the log missing",
         checkLogFunctionsMissing},
        {"2.log-refused", "It writes only lines that the log wants", checkLogRefused},
        {"2.log-absent", "It works without the logging library", checkLogAbsent},
        {"2.log-without-entry-point", "It works with a logging library that has no entry point",
         checkLogWithoutEntryPoint},
        {"2.log-without-object", "It works with a logging library that gives no log object",
         checkLogWithoutObject},
    };
}

} // namespace check
