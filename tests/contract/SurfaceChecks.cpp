#include "Checks.h"
#include "FrameworkProbe.h"
#include "LoggingHost.h"

#include <QtCore/QMetaMethod>

#include <cstring>

// Level 3: the interfaces of the object for host and QML.

namespace check {

using namespace Qt::StringLiterals;

namespace {

// The order is a part of the contract. "+" marks an overload that moc makes for default arguments.
const char *const methodTable = R"(
signal void addBookmarkResponsed(bool success)
signal void addBookmarksResponsed(QStringList failCamNameList)
signal void deleteBookmarkResponsed(bool success)
signal void deleteBookmarksResponsed(QStringList failBookmarkIdList)
signal void removeAllBookmarksResponsed(bool success)
signal void updateBookmarkResponsed(bool success)
signal void queryBookmarkForTimelineResponsed(bool success)
signal void queryBookmarkForRecentResponsed(bool success)
signal void queryAllBookmarksResponsed(bool done)
signal void queryBookmarkForApiFinished(bool success)
signal void getRecycleSettingResponse(uint reserveHour, bool enableRecycle)
signal void updateRecycleSettingResponse(bool success)
bool addBookmark(QString cameraID, QString locationID, QString relayPath, qlonglong startTimestamp, qlonglong endTimestamp, QString desc, QString creator, QString group)
bool addBookmarks(QVariantList targetList, qlonglong startTimestamp, qlonglong endTimestamp, QString desc, QString creator, QString group)
bool addBookmarks(QVariantList targetList, QString startDateTime, QString endDateTime, QString desc, QString creator, QString group)
bool deleteBookmark(QString bookmarkID, QString relayPath)
bool deleteBookmarks(QVariantList deleteList)
bool updateBookmark(QString bookmarkID, QString desc, QString group)
+bool updateBookmark(QString bookmarkID, QString desc)
+bool updateBookmark(QString bookmarkID)
bool removeAllBookmarks(QString relayPath)
bool queryBookmarkForRecent(QString cameraID, QString relayPath, uchar recentCnt)
bool queryAllBookmarks()
void queryBookmarkForAPI(QVariantList camIdList, QString startDateTime, QString endDateTime)
void queryBookmarkForAPI(QVariantList camIdList, qlonglong startTimestamp, qlonglong endTimestamp)
void clearTimelineModel(QString viewCellUID)
void removeTimelineModel(QString viewCellUID)
void setTimelineFocusInfo(QString locationID, QString relayPath, QString viewCellUID)
void setTimelineBoundary(qlonglong headBoundTs, qlonglong tailBoundTs, QString viewCellUID)
void getRecycleSetting()
void updateRecycleSetting(uint reserveHour, bool enableRecycle)
QObject* getBookmarkModelForTimeline(QString viewCellUID)
QVariantList getBookmarkListForRecent()
QVariantList getBookmarkListByNodeID(QString nodeID)
QVariantMap getFilteredBookmarkList(QVariantMap filterMap)
QVariantList getQueryBookmarkResult() const
)";

/// Returns the name of a type, independent of aliases in the source.
QString typeName(QMetaType type)
{
    return QLatin1String(type.name());
}

QString lineOf(const QMetaMethod &method)
{
    QStringList parameters;
    const QList<QByteArray> names = method.parameterNames();
    for (int i = 0; i < method.parameterCount(); ++i)
        parameters.append(typeName(method.parameterMetaType(i)) + u' ' +
                          QString::fromLatin1(names.value(i)));
    const bool isSignal = method.methodType() == QMetaMethod::Signal;
    const bool isClone = method.attributes() & QMetaMethod::Cloned;
    return QLatin1String(isSignal ? "signal " : "") + QLatin1String(isClone ? "+" : "") +
           typeName(method.returnMetaType()) + u' ' + QString::fromLatin1(method.name()) + u'(' +
           parameters.join(u", "_s) + u')' + QLatin1String(method.isConst() ? " const" : "");
}

void checkMethods(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    const QMetaObject *const meta = host->object()->metaObject();
    QStringList lines;
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        lines.append(lineOf(method));
        context.expect(method.access() == QMetaMethod::Public,
                       QString::fromLatin1(method.name()) + u" to be public"_s,
                       u"it is not public"_s);
    }
    const QStringList expected = QString::fromLatin1(methodTable).trimmed().split(u'\n');
    for (qsizetype i = 0; i < qMax(expected.size(), lines.size()); ++i)
        context.compare(u"method %1"_s.arg(i), expected.value(i), lines.value(i));
    context.summarize(
        u"%1 methods with their types, parameter names and order"_s.arg(lines.size()));
}

void checkClass(CheckContext &context)
{
    LoggingHost host(context, Host::Bare);
    if (!host)
        return;
    QObject *const object = host->object();
    const QMetaObject *const meta = object->metaObject();
    context.compare(u"class"_s, u"Tessaline"_s, QLatin1String(meta->className()));
    context.compare(u"superclass"_s, u"QObject"_s, QLatin1String(meta->superClass()->className()));
    const int extra = (meta->propertyCount() - meta->propertyOffset()) +
                      (meta->enumeratorCount() - meta->enumeratorOffset()) +
                      (meta->classInfoCount() - meta->classInfoOffset()) + meta->constructorCount();
    context.expect(extra == 0, u"no properties, enumerations, class infos or constructors"_s,
                   QString::number(extra));
    auto *const plugin = static_cast<void *>(&host->plugin());
    for (const char *name : {"Tessaline", "com.MARLUNE.UIFramework.PluginInterface", "QObject"})
        context.expect(object->qt_metacast(name) == plugin, u"a cast to "_s + QLatin1String(name),
                       u"none"_s);
    for (const char *name : {"PluginBase", static_cast<const char *>(nullptr)})
        context.expect(!object->qt_metacast(name), u"no cast to "_s + QLatin1String(name),
                       u"an object"_s);
    context.summarize(u"class name, superclass and casts are correct"_s);
}

/// Reads a text at an offset, because the host's compiler has fixed the offsets of the fields.
QString textAtOffset(const void *object, std::size_t offset)
{
    return *reinterpret_cast<const QString *>(static_cast<const char *>(object) + offset);
}

void checkHostEntries(CheckContext &context)
{
    LoggingHost host(context, Host::Bare);
    if (!host)
        return;
    PluginBase &plugin = host->plugin();
    constexpr std::size_t NameOffset = sizeof(QObject) + sizeof(void *);
    constexpr std::size_t IdOffset = NameOffset + sizeof(QString);
    plugin.PluginServerConnected();
    context.compare(u"before InitialPluginBase"_s, QString(), host->takeTrace().join(u'\n'));
    context.expect(plugin.Init(nullptr), u"Init to return true"_s, u"false"_s);
    context.compare(u"name before InitialPluginBase"_s, QString(),
                    textAtOffset(&plugin, NameOffset));
    context.expect(plugin.InitialPluginBase(nullptr, nullptr, nullptr),
                   u"InitialPluginBase to return true"_s, u"false"_s);
    context.compare(u"name"_s, u"Corvanth"_s, textAtOffset(&plugin, NameOffset));
    context.compare(u"pluginID"_s, u"2F6394EE90434A7190D7511370AFAE17"_s,
                    textAtOffset(&plugin, IdOffset));
    context.compare(u"without a framework"_s,
                    u"log Tessaline_Req: %s, send command failed <Tessaline::updateBookmark>\n"
                    "= bool false"_s,
                    host->play(u"connect\nupdateBookmark('b')"_s));

    host->initialise(&host->framework);
    context.compare(u"PluginServerConnected"_s,
                    u"send QuerySevTimezone@ invalid\nsend QuerySettingPermission@ invalid"_s,
                    host->play(u"connect"_s));
    plugin.HostHook1();
    plugin.HostHook2();
    plugin.HostHook3();
    const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"l"_s, 1, 2);
    plugin.CommandProcessorEx(u"AddBookmark"_s, nullptr, record, nullptr, u"0"_s, {}, true, u"A"_s);
    plugin.EventProcessorEx(u"AddBookmark"_s, nullptr, 1, 2, 3, record, u"A"_s);
    context.compare(u"entries without an effect"_s, QString(), host->takeTrace().join(u'\n'));
    context.compare(u"CommandProcessor"_s, u"signal updateBookmarkResponsed(true)"_s,
                    host->play(u"answer UpdateBookmark@ ok"_s));
    context.summarize(u"virtual functions and fields are at their positions"_s);
}

void checkFrameworkEntries(CheckContext &context)
{
    LoggingHost host(context, Host::Bare);
    if (!host)
        return;
    FrameworkProbe probe(&host->topology);
    host->initialise(probe.asFramework());
    host->play(u"connect\ngrant\naddBookmark('1', 'l', 'A', 1, 2, '', '', '')\n"
               "queryAllBookmarks()\ndeleteBookmarks([{}])\nevent AddBookmark@A {}\n"
               "show cell l A\nsetTimelineBoundary(1, 2, 'cell')\n"
               "answer QueryBookmarkForRecent@A ok {}"_s);
    // Eight commands. The topology: once for the stations, and for the names of an event and an
    // answer.
    context.compare(u"entries called"_s, u"2 x8, 14 x3"_s, probe.summary());
    context.compare(u"arguments of the entries"_s, QString(), probe.violations().join(u", "_s));
    context.summarize(u"entries called: "_s + probe.summary());
}

void checkUnknownNames(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    host->play(u"show cell l A"_s);
    for (const char *name :
         {"", "addbookmark", "ADDBOOKMARK", "AddBookmark ", " AddBookmark", "QueryAllBookmarks",
          "QueryBookmarkForAPI", "queryAllBookmars", "RemoveAllBookmark", "AddBookmark%00",
          "EventTunnelConnected", "EventTunnelDisConnected"}) {
        const QString text = QString::fromLatin1(name).replace(u"%00"_s, QString(QChar(0)));
        const QVariant record = serverRecord(u"b"_s, u"1"_s, u"l"_s, 1, 2);
        host->answer(text, record, u"A"_s);
        host->answer(text, record, u"A"_s, nullptr, u"1"_s);
        host->framework.sendEvent(text, record, u"A"_s);
        context.compare(u"the name '%1'"_s.arg(text), QString(), host->takeTrace().join(u'\n'));
    }
    for (const char *name : {"DeleteBookmark", "UpdateBookmark", "AddBookmarks", "addBookmark"}) {
        host->framework.sendEvent(QLatin1String(name), QVariantMap(), u"A"_s);
        context.compare(u"the event '%1'"_s.arg(QLatin1String(name)), QString(),
                        host->takeTrace().join(u'\n'));
    }
    for (const char *method : {"getBookmarkList", "hasSettingPermission", "CommandProcessor",
                               "setBookmarkNumberPerPage", "queryBookmarkForTimeline"})
        context.expect(!host->hasMethod(method), u"no method %1"_s.arg(QLatin1String(method)),
                       u"one"_s);
    context.summarize(u"unknown commands and events are ignored; unknown methods do not exist"_s);
}

} // namespace

std::vector<Check> surfaceChecks()
{
    return {
        {"3.class", "The object has the class name, superclass and casts of the contract",
         checkClass},
        {"3.methods", "Signals and methods have their types, parameter names and order",
         checkMethods},
        {"3.host-entries", "Virtual functions and fields are at the positions that the host uses",
         checkHostEntries},
        {"3.framework-entries", "The plug-in calls only two entries of the host's framework",
         checkFrameworkEntries},
        {"3.unknown-names", "Unknown commands and events are ignored", checkUnknownNames},
    };
}

} // namespace check
