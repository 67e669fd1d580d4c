#include "Checks.h"
#include "Describe.h"
#include "HostileValues.h"
#include "LoggingHost.h"
#include "MethodCall.h"

#include <QtCore/QMetaMethod>

#include <algorithm>

// Level 5: hostile values in every place. Qt converts them somehow; the plug-in must not crash,
// must signal the end of each request and must keep working.

namespace check {

using namespace Qt::StringLiterals;

namespace {

struct Command
{
    const char *name;
    const char *request; ///< call that sends the command to one station
    const char *signal;  ///< signal of its answer; null for none
};

constexpr Command commands[] = {
    {"AddBookmark", "addBookmark('1', 'l', 'A', 1, 2, '', '', '')", "addBookmarkResponsed"},
    {"AddBookmarks",
     "addBookmarks([{'CameraID': '1', 'LocationID': 'l', 'relayPath': 'A'}], 1, 2, '', '', '')",
     "addBookmarksResponsed"},
    {"DeleteBookmark", "deleteBookmark('b', 'A')", "deleteBookmarkResponsed"},
    {"DeleteBookmarks", "deleteBookmarks([{'BookmarkID': 'b', 'relayPath': 'A'}])",
     "deleteBookmarksResponsed"},
    {"RemoveAllBookmarks", "removeAllBookmarks('A')", "removeAllBookmarksResponsed"},
    {"UpdateBookmark", "updateBookmark('b')", "updateBookmarkResponsed"},
    {"QueryBookmarkForTimeline", "setTimelineBoundary(1, 2, 'cell')",
     "queryBookmarkForTimelineResponsed"},
    {"QueryBookmarkForRecent", "queryBookmarkForRecent('1', 'A', 1)",
     "queryBookmarkForRecentResponsed"},
    {"QueryAllBookmars", "queryAllBookmarks()", "queryAllBookmarksResponsed"},
    {"QuerySevTimezone", "connect", nullptr},
    {"QuerySettingPermission", "connect", nullptr},
    {"GetRecycleSetting", "getRecycleSetting()", "getRecycleSettingResponse"},
    {"UpdateRecycleSetting", "updateRecycleSetting(1, true)", "updateRecycleSettingResponse"},
    {"QueryBookmarkForApi", "queryBookmarkForAPI(['1'], 1, 2)", "queryBookmarkForApiFinished"},
};

/// A host with a view cell and the setting permission, and a check that the plug-in still works.
class RobustnessHost
{
public:
    explicit RobustnessHost(CheckContext &context)
        : m_context(context)
        , m_host(context)
    {
        if (m_host)
            m_host->play(u"grant\nshow cell l A"_s);
    }

    explicit operator bool() const { return bool(m_host); }
    Host *operator->() const { return m_host.operator->(); }

    /// Calls the request and answers its command. The answer must cause exactly the command's
    /// signal.
    void requestAndAnswer(const Command &command, const QVariant &result, const QString &code,
                          const QString &title)
    {
        m_host->framework.clearSent();
        m_host->play(u"grant\nclearTimelineModel('cell')\n"_s + QLatin1String(command.request));
        const QList<standin::SentCommand> sent = m_host->framework.sent();
        const auto found = std::find_if(sent.cbegin(), sent.cend(), [&](const auto &one) {
            return one.command == QLatin1String(command.name);
        });
        if (!m_context.expect(found != sent.cend(), QLatin1String(command.name) + u" to be sent"_s,
                              u"it was not sent, so no answer with "_s + title))
            return;
        m_host->takeTrace();
        m_host->answer(*found, result, code);
        const QStringList ends = m_host->takeTrace().filter(u"signal "_s);
        const QString expected =
            command.signal ? u"signal "_s + QLatin1String(command.signal) : QString();
        QStringList names;
        for (const QString &line : ends)
            names.append(line.section(u'(', 0, 0));
        m_context.compare(u"answer to %1, %2"_s.arg(QLatin1String(command.name), title), expected,
                          names.join(u", "_s));
    }

    /// Checks that the plug-in still sends an ordinary request and returns its lists.
    void expectStillWorking(const QString &after)
    {
        m_host.expectStillWorking(after);
        for (const char *call :
             {"getBookmarkListForRecent()", "getBookmarkListByNodeID('')",
              "getQueryBookmarkResult()", "getFilteredBookmarkList({'endTimestamp': 5000})"})
            m_host->call(QLatin1String(call));
        m_host->play(u"rows cell"_s);
    }

private:
    CheckContext &m_context;
    LoggingHost m_host;
};

/// Returns the hostile values that QML can pass for a parameter of this type.
QVariantList argumentsOf(QMetaType type)
{
    QVariantList arguments;
    for (const HostileValue &hostile : hostileValues()) {
        QVariant value = hostile.value;
        if (value.metaType() == type || (value.isValid() && value.convert(type)))
            arguments.append(value);
        if (type.id() == QMetaType::QVariantList)
            arguments.append(QVariant(QVariantList{hostile.value, hostile.value}));
    }
    return arguments;
}

QVariantList ordinaryArguments(const QMetaMethod &method)
{
    QVariantList arguments;
    for (int i = 0; i < method.parameterCount(); ++i)
        arguments.append(QVariant(method.parameterMetaType(i)));
    return arguments;
}

void checkArguments(CheckContext &context)
{
    RobustnessHost host(context);
    if (!host)
        return;
    const QMetaObject *const meta = host->object()->metaObject();
    int calls = 0;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() == QMetaMethod::Signal)
            continue;
        for (int parameter = 0; parameter < method.parameterCount(); ++parameter) {
            const QVariantList values = argumentsOf(method.parameterMetaType(parameter));
            for (const QVariant &value : values) {
                QVariantList arguments = ordinaryArguments(method);
                arguments[parameter] = value;
                driver::callMethod(*host->object(), method, arguments);
                host->takeTrace();
                host->framework.clearSent();
                ++calls;
            }
        }
        host.expectStillWorking(QString::fromLatin1(method.name()));
    }
    context.summarize(u"%1 calls"_s.arg(calls));
}

void checkMapsInArguments(CheckContext &context)
{
    RobustnessHost host(context);
    if (!host)
        return;
    int calls = 0;
    for (const HostileValue &hostile : hostileValues()) {
        for (const char *key : {"CameraID", "LocationID", "relayPath", "BookmarkID"}) {
            const QVariantList list{
                withValue({{u"CameraID"_s, u"1"_s}}, QLatin1String(key), hostile)};
            host->call("addBookmarks", {list, 1LL, 2LL, u"d"_s, u"c"_s, u"g"_s});
            host->call("deleteBookmarks", {list});
            calls += 2;
        }
        for (const char *key : {"nodeID", "groupKey", "ascending", "text", "startTimestamp",
                                "endTimestamp", "pageNumber"}) {
            host->call("getFilteredBookmarkList", {withValue({}, QLatin1String(key), hostile)});
            ++calls;
        }
        host->framework.clearSent();
        host->takeTrace();
    }
    host.expectStillWorking(u"hostile batches and filters"_s);
    context.summarize(u"%1 calls"_s.arg(calls));
}

void checkAnswers(CheckContext &context)
{
    RobustnessHost host(context);
    if (!host)
        return;
    int answers = 0;
    for (const Command &command : commands) {
        for (const HostileValue &hostile : hostileValues()) {
            for (const char *code : {"0", "-1"}) {
                host.requestAndAnswer(command, hostile.value, QLatin1String(code), hostile.title);
                ++answers;
            }
        }
        host.expectStillWorking(QLatin1String(command.name));
    }
    context.summarize(u"%1 answers"_s.arg(answers));
}

/// Returns the result of a command with this record.
QVariant resultWith(const QString &command, const QVariant &record)
{
    if (command.startsWith(u"Query"_s) && command != u"QueryBookmarkForApi")
        return QVariantMap{{u"Bookmarks"_s, QVariantList{record, record}}};
    if (command == u"AddBookmark")
        return record;
    return QVariantList{record, record};
}

void checkRecords(CheckContext &context)
{
    RobustnessHost host(context);
    if (!host)
        return;
    const QVariantMap ordinary = serverRecord(u"b"_s, u"1"_s, u"l"_s, 1, 2, u"d"_s, u"c"_s, u"g"_s);
    const QStringList keys = ordinary.keys();
    int records = 0;
    for (const Command &command : commands) {
        const QString name = QLatin1String(command.name);
        if (name != u"AddBookmark" && name != u"AddBookmarks" && name != u"QueryAllBookmars" &&
            !name.startsWith(u"QueryBookmark"_s))
            continue;
        for (const HostileValue &hostile : hostileValues()) {
            for (const QString &key : keys) {
                host.requestAndAnswer(command, resultWith(name, withValue(ordinary, key, hostile)),
                                      u"0"_s, key + u", "_s + hostile.title);
                host->framework.sendEvent(u"AddBookmark"_s, withValue(ordinary, key, hostile),
                                          u"A"_s);
                records += 3;
            }
            host.requestAndAnswer(command, resultWith(name, hostile.value), u"0"_s, hostile.title);
            host->framework.sendEvent(u"AddBookmark"_s, hostile.value, u"A"_s);
        }
        host.expectStillWorking(u"records of "_s + name);
    }
    context.summarize(u"%1 records"_s.arg(records));
}

void checkTexts(CheckContext &context)
{
    RobustnessHost host(context);
    if (!host)
        return;
    // Names, codes and relay paths have the type QString, so only texts can be passed.
    for (const HostileValue &hostile : hostileValues()) {
        if (hostile.value.typeId() != QMetaType::QString)
            continue;
        const QString text = hostile.value.toString();
        host->framework.sendEvent(text, QVariantMap(), text);
        for (const Command &command : commands) {
            host->answer(text, QVariantMap(), text, nullptr, text);
            host->answer(QLatin1String(command.name), QVariantMap(), text, nullptr, u"0"_s);
            host->answer(QLatin1String(command.name), QVariantMap(), text, nullptr, text);
        }
        host->showCell(text, text, text);
        host->framework.sendEvent(u"AddBookmark"_s,
                                  serverRecord(text, text, text, 1, 2, text, text, text), text);
        host->call("removeTimelineModel", {text});
        host->takeTrace();
    }
    host.expectStillWorking(u"hostile texts"_s);
    context.summarize(u"hostile names, codes and relay paths"_s);
}

void checkLargeLists(CheckContext &context)
{
    constexpr int Million = 1000000;
    constexpr int Many = 50000; // for lists that store each record
    RobustnessHost host(context);
    if (!host)
        return;
    const QVariantList invalid(Million);
    const QVariantList maps(Million, QVariantMap());
    const QVariantList stored(Many,
                              serverRecord(u"b"_s, u"1"_s, u"l"_s, 1, 2, QString(1000, u'x')));
    for (const Command &command : commands) {
        const QString name = QLatin1String(command.name);
        const bool isStored = name == u"QueryAllBookmars" || name == u"QueryBookmarkForRecent";
        const QVariantMap records{{u"Bookmarks"_s, isStored ? stored : maps}};
        host.requestAndAnswer(command, invalid, u"0"_s, u"a list of a million"_s);
        host.requestAndAnswer(command, records, u"0"_s, u"a million bookmarks"_s);
    }
    for (const QVariantList &list : {invalid, maps}) {
        host->call("addBookmarks", {list, 1LL, 2LL, u"d"_s, u"c"_s, u"g"_s});
        host->call("deleteBookmarks", {list});
        host->call("queryBookmarkForAPI", {list, 1LL, 2LL});
        host->framework.clearSent();
        host->takeTrace();
    }
    // A search that starts again at each bookmark would exceed the time of the check.
    host->call(u"getFilteredBookmarkList({'endTimestamp': 5000, 'text': 'nowhere'})"_s);
    host.expectStillWorking(u"lists of a million"_s);
    context.summarize(u"lists of a million in answers and arguments"_s);
}

} // namespace

std::vector<Check> hostileValueChecks()
{
    return {
        {"5.arguments", "Every method accepts hostile arguments", checkArguments},
        {"5.maps-in-arguments", "Batches and filters may have hostile values",
         checkMapsInArguments},
        {"5.answer-values", "Answers may have hostile values", checkAnswers},
        {"5.record-values", "Records in answers and events may have hostile values", checkRecords},
        {"5.texts", "Names, result codes and relay paths may be hostile texts", checkTexts},
        {"5.large-lists", "Lists may have a million elements", checkLargeLists},
    };
}

} // namespace check
