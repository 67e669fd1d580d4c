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

// Level 2: the life cycle of the library and its object, and the logging library.

namespace check {

using namespace driver;
using namespace Qt::StringLiterals;

namespace {

/// Steps that send each command and use a timeline, a list and an event.
const char *const session = R"(
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

/// Answers a batch with a failure and every other command with a success.
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

/// Loads the library, runs a session and unloads the library.
/// @return false if the library could not be loaded; the check has failed then
bool runSession(CheckContext &context)
{
    Host host(context.library());
    if (!host.error().isEmpty()) {
        context.fail(u"expected a library that loads, found: "_s + host.error());
        return false;
    }
    host.play(QLatin1String(session));
    answerAll(host);
    host.play(QLatin1String(session));
    return true;
}

void checkLoad(CheckContext &context)
{
    const LoadedPlugin plugin(context.library());
    context.expect(plugin.error().isEmpty(), u"a library that loads"_s, plugin.error());
    context.summarize(u"Qt's plug-in loader loads the library"_s);
}

void checkOneObject(CheckContext &context)
{
    LoadedPlugin plugin(context.library());
    if (!context.expect(plugin.error().isEmpty(), u"a library that loads"_s, plugin.error()))
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
    context.expect(first, u"the object to survive the second loader"_s, u"it was deleted"_s);
    delete first;
    const QPointer<QObject> next = plugin.object();
    context.expect(next, u"a new object after the first was deleted"_s, u"none"_s);
    auto *const base = qobject_cast<PluginBase *>(next.data());
    context.expect(base && base->name.isEmpty() && base->pluginID.isEmpty(),
                   u"a new object without name and ID"_s, u"something else"_s);
    delete next;
    context.summarize(u"one object, shared by two loaders and created again after its deletion"_s);
}

void checkUnloadCycles(CheckContext &context)
{
    constexpr qint64 WarmUp = 20;
    constexpr qint64 Cycles = 200;
    qint64 before = 0;
    for (qint64 i = 0; i < WarmUp + Cycles; ++i) {
        if (i == WarmUp)
            before = allocatedBytes().value_or(0);
        if (!runSession(context))
            return;
        if (!context.expect(!isInMemory(context.library()), u"the library to leave the process"_s,
                            u"it still in memory"_s))
            return;
    }
    const qint64 grown = allocatedBytes().value_or(0) - before;
    // A leak in each cycle takes at least 8 bytes, the size of a pointer.
    context.expect(grown < Cycles * 8, u"no growth"_s,
                   u"%1 bytes more after %2 cycles"_s.arg(grown).arg(Cycles));
    context.summarize(
        u"%1 times loaded, used and unloaded, %2 bytes more"_s.arg(WarmUp + Cycles).arg(grown));
}

/// Runs a session and returns all values that the plug-in has passed to host and QML.
QVariantList valuesOfSession(CheckContext &context)
{
    standin::RetainingFramework framework;
    Host host(context.library());
    if (!host.error().isEmpty())
        return {};
    framework.topology = &host.topology;
    host.initialise(&framework);
    QVariantList values;
    const standin::SignalReceiver receiver(
        host.object(),
        [&](const QMetaMethod &, const QVariantList &arguments) { values += arguments; });
    host.play(QLatin1String(session));
    const QList<standin::SentCommand> sent = framework.sent;
    for (const standin::SentCommand &command : sent)
        answer(host, command);
    host.play(u"show cell l A\nevent AddBookmark@A {'BookmarkID': 'e', 'LocationID': 'l'}"_s);
    const auto *const model = host.showCell(u"other"_s, u"l"_s, u"A"_s);
    host.play(u"event AddBookmark@A {'BookmarkID': 'f', 'LocationID': 'l'}"_s);
    for (int role = Qt::UserRole + 1; role < Qt::UserRole + 24; ++role) {
        values.append(model->index(0, 0).data(role));
        values.append(model->roleNames().value(role));
    }
    values += {host.plugin().name, host.plugin().pluginID};
    for (const char *call :
         {"getBookmarkListForRecent()", "getBookmarkListByNodeID('')", "getQueryBookmarkResult()",
          "getFilteredBookmarkList({'endTimestamp': 5000})"})
        values.append(QVariant(host.call(QLatin1String(call))));
    return framework.kept + values;
}

void checkValuesOutliveTheLibrary(CheckContext &context)
{
    QString before;
    QVariantList values;
    {
        const LoadedPlugin library(context.library());
        values = valuesOfSession(context);
        before = describe(values);
    }
    if (!context.expect(!values.isEmpty(), u"values from the plug-in"_s, u"none"_s))
        return;
    if (isInMemory(context.library())) {
        context.fail(u"expected the library to leave the process, found it still in memory"_s);
        return;
    }
    context.compare(u"values after unloading"_s, before, describe(values));
    context.summarize(u"%1 values are valid after unloading"_s.arg(values.size()));
}

void checkExitWithoutUnload(CheckContext &context)
{
    // Never deleted, so that the process ends with the library loaded and the object alive.
    auto *const plugin = new LoadedPlugin(context.library());
    if (!context.expect(plugin->error().isEmpty(), u"a library that loads"_s, plugin->error()))
        return;
    static standin::Framework framework;
    auto *const base = qobject_cast<PluginBase *>(plugin->object());
    if (!context.expect(base, u"an object that implements the host's interface"_s, u"none"_s))
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
    if (runSession(context))
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
        context.skip(u"this platform does not list threads or open files"_s);
        return;
    }
    // The parent process has made this folder the working, home and temporary folder.
    const QStringList written = filesIn(QDir::currentPath());
    const QStringList open = openFiles().value_or(QStringList());
    const int threads = *threadCount();
    {
        Host host(context.library());
        if (!context.expect(host.error().isEmpty(), u"a library that loads"_s, host.error()))
            return;
        host.play(QLatin1String(session));
        answerAll(host);
        context.expect(threadCount() == threads, u"no new thread"_s,
                       u"%1 threads instead of %2"_s.arg(*threadCount()).arg(threads));
        context.compare(u"open files"_s, open.join(u'\n'), openFiles()->join(u'\n'));
    }
    context.compare(u"open files after unloading"_s, open.join(u'\n'), openFiles()->join(u'\n'));
    context.compare(u"files in the working, home and temporary folder"_s, written.join(u'\n'),
                    filesIn(QDir::currentPath()).join(u'\n'));
    context.summarize(u"no thread, open file or written file"_s);
}

void checkSilence(CheckContext &context)
{
    // The parent process checks the output of this one.
    if (runSession(context))
        context.summarize(u"no text on standard output and error"_s);
}

// ---- The logging library ----

/// A request that fails, and its log line.
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
        bool isWritten; ///< the log line
    };
    static constexpr Row rows[] = {
        {"complete", Missing::Nothing, Missing::Nothing, 1, true},
        {"no handle", Missing::Handle, Missing::Handle, 1, false},
        {"no registerModule", Missing::RegisterModule, Missing::RegisterModule, 0, true},
        {"no checkLine", Missing::CheckLine, Missing::CheckLine, 1, false},
        {"no writeLine", Missing::WriteLine, Missing::WriteLine, 1, false},
        {"all functions removed after the load", Missing::Nothing, Missing::Everything, 1, false},
        {"all functions added after the load", Missing::Everything, Missing::Nothing, 0, true},
    };
    for (const Row &row : rows) {
        LogProbe log(row.atLoad);
        if (!log.error().isEmpty())
            return context.warn(u"the logging library can't be loaded: "_s + log.error());
        Host host(context.library(), Host::Initialised, &log);
        if (!context.expect(host.error().isEmpty(), u"a library that loads"_s, host.error()))
            return;
        log.setMissing(row.later);
        const QString title = QLatin1String(row.title);
        context.compare(title,
                        (row.isWritten ? QString(badRequestLine) + u'\n' : QString()) +
                            u"= bool false"_s,
                        host.play(badRequest));
        context.compare(title + u", registration"_s,
                        row.registrations ? u"19 Tessaline"_s : QString(),
                        log.registrations().join(u", "_s));
    }
    context.expect(!isInMemory(LogProbe::loaderName()), u"the logging library to be released"_s,
                   u"it still in memory"_s);
    context.summarize(u"works without each function of the logging library"_s);
}

void checkLogFilter(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    host.log().rejectLines(true);
    context.compare(u"rejected line"_s, u"= bool false"_s, host->play(badRequest));
    context.expect(host.log().checks() == 1, u"one call of checkLine"_s,
                   QString::number(host.log().checks()));
    host.log().rejectLines(false);
    context.compare(u"accepted line"_s, QString(badRequestLine) + u"\n= bool false"_s,
                    host->play(badRequest));
    context.summarize(u"writes only lines that checkLine accepts"_s);
}

void checkLogAbsent(CheckContext &context)
{
    Host host(context.library());
    if (!context.expect(host.error().isEmpty(), u"a library that loads"_s, host.error()))
        return;
    const QString name = LogProbe::libraryPath().section(u'/', -1);
    if (isInMemory(LogProbe::loaderName())) {
        context.skip(name + u" is on the search path of this process"_s);
        return;
    }
    context.compare(u"without the logging library"_s, u"= bool false"_s, host.play(badRequest));
    host.play(QLatin1String(session));
    answerAll(host);
    context.summarize(u"works without "_s + name);
}

/// Runs a request with an incomplete logging library.
/// @param folder folder of that library, in the folder of this program
/// @param missing the missing part, for messages
void useIncompleteLog(CheckContext &context, const QString &folder, const QString &missing)
{
    QLibrary library(QCoreApplication::applicationDirPath() + u'/' + folder + u'/' +
                     LogProbe::loaderName());
    if (!library.load()) {
        context.warn(u"the stand-in without %1 can't be loaded: "_s.arg(missing) +
                     library.errorString());
        return;
    }
    Host host(context.library());
    if (!context.expect(host.error().isEmpty(), u"a library that loads"_s, host.error()))
        return;
    context.compare(u"without "_s + missing, u"= bool false"_s, host.play(badRequest));
    context.summarize(u"works with a logging library without "_s + missing);
}

void checkLogWithoutEntryPoint(CheckContext &context)
{
    useIncompleteLog(context, u"log_without_entry_point"_s, u"an entry point"_s);
}

void checkLogWithoutObject(CheckContext &context)
{
    useIncompleteLog(context, u"log_without_object"_s, u"a log object"_s);
}

} // namespace

std::vector<Check> lifeChecks()
{
    return {
        {loadCheck, "Qt can load the library", checkLoad},
        {"2.one-object", "The library has one object and creates it again after its deletion",
         checkOneObject},
        {"2.unload-cycles", "Loading and unloading leaves no memory behind", checkUnloadCycles},
        {"2.values-outlive", "Values of the plug-in are valid after the library was unloaded",
         checkValuesOutliveTheLibrary},
        {"2.exit-loaded", "The process may end while the object exists", checkExitWithoutUnload},
        {"2.exit-unloaded", "The process may end after the library was unloaded",
         checkExitAfterUnload},
        {"2.threads-files", "The plug-in starts no thread and opens or writes no file",
         checkThreadsAndFiles},
        {"2.silence", "The plug-in writes nothing to standard output and error", checkSilence},
        {"2.log-functions",
         "The plug-in registers with the log and works without each of its functions",
         checkLogFunctionsMissing},
        {"2.log-filter", "The plug-in writes only lines that checkLine accepts", checkLogFilter},
        {"2.log-absent", "The plug-in works without the logging library", checkLogAbsent},
        {"2.log-without-entry-point",
         "The plug-in works with a logging library without an entry point",
         checkLogWithoutEntryPoint},
        {"2.log-without-object", "The plug-in works with a logging library without a log object",
         checkLogWithoutObject},
    };
}

} // namespace check
