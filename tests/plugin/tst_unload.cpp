#include "Describe.h"
#include "LoadedPlugin.h"

#include "FrameworkWrapperBase.h"
#include "topology/Topology.h"

#include <QtCore/QAbstractItemModel>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <algorithm>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// What was sent, with the very values that the plug-in has passed. A deep copy, as hosts make it,
/// would hide values that live in the library's own memory.
struct Sent
{
    QString sender;
    QString command;
    QVariant payload;
    QString relayPath;
    void *context;
};

class KeepingFramework final : public FrameworkWrapperBase
{
public:
    bool SendCommand(void *, const QString &pluginID, const QString &command,
                     const QVariant &payload, void *context, bool,
                     const QString &relayPath) override
    {
        sent.push_back({pluginID, command, payload, relayPath, context});
        return true;
    }
    QObject *FindPlugin(void *, const QString &) override { return &topology; }

    standin::Topology topology;
    std::vector<Sent> sent;
};

QVariant server(const QString &id)
{
    return QVariantMap{{u"BookmarkID"_s, id},     {u"CameraID"_s, u"1"_s},
                       {u"LocationID"_s, u"l"_s}, {u"StartTimestamp"_s, 1000},
                       {u"EndTimestamp"_s, 2000}, {u"Description"_s, u"d"_s},
                       {u"Creator"_s, u"c"_s},    {u"Group"_s, u"g"_s}};
}

/// Everything that leaves the library while it works.
struct Harvest
{
    std::vector<Sent> sent;
    std::vector<QVariant> values; ///< lists, pages, items, signal arguments
    QHash<int, QByteArray> roleNames;
    QString name;
    QString pluginID;
};

class Work
{
public:
    Work()
        : m_loaded(&m_framework)
        , m_addFailures(m_loaded.object(), SIGNAL(addBookmarksResponsed(QList<QString>)))
        , m_deleteFailures(m_loaded.object(), SIGNAL(deleteBookmarksResponsed(QList<QString>)))
    {
        m_framework.topology.setStation(u"A"_s, u"Station"_s);
        m_framework.topology.setCamera(u"A/1"_s, u"Camera"_s);
    }

    /// Uses every command once; the last query of each kind stays without an answer.
    void sendEverything()
    {
        const QVariantList targets{QVariantMap{
            {u"CameraID"_s, u"1"_s}, {u"BookmarkID"_s, u"b"_s}, {u"relayPath"_s, u"A"_s}}};
        const QString text = u"text"_s;
        answer(u"QuerySettingPermission"_s, true);
        m_loaded.plugin().PluginServerConnected();
        call("addBookmark", text, text, text, 1LL, 2LL, text, text, text);
        call("addBookmarks", targets, 1LL, 2LL, text, text, text);
        call("deleteBookmark", text, text);
        call("deleteBookmarks", targets);
        call("updateBookmark", text, text, text);
        call("removeAllBookmarks", text);
        call("queryBookmarkForRecent", text, text, uchar(3));
        call("queryAllBookmarks");
        call("queryBookmarkForAPI", targets, 1LL, 2LL);
        call("getRecycleSetting");
        call("updateRecycleSetting", 5U, true);
        call("getBookmarkModelForTimeline", u"cell"_s);
        call("setTimelineFocusInfo", u"l"_s, u"A"_s, u"cell"_s);
        call("setTimelineBoundary", 1LL, 5000LL, u"cell"_s);
    }

    /// Answers what was sent, the batches with a failure, and keeps all that comes of it.
    Harvest harvest()
    {
        const QVariantMap found{{u"Bookmarks"_s, QVariantList{server(u"b1"_s), server(u"b2"_s)}}};
        Harvest harvest;
        for (const Sent &sent : m_framework.sent) {
            const bool isBatch = sent.command.endsWith("Bookmarks"_L1) && sent.context;
            m_loaded.plugin().CommandProcessor(
                sent.command, isBatch ? QVariant(QStringList{u"b"_s}) : QVariant(found),
                sent.context, isBatch ? u"1"_s : u"0"_s, {}, false, sent.relayPath);
        }
        harvest.values = {result<QVariantList>("getBookmarkListForRecent"),
                          result<QVariantList>("getBookmarkListByNodeID", u"A/1"_s),
                          result<QVariantMap>("getFilteredBookmarkList",
                                              QVariantMap{{u"endTimestamp"_s, 5000},
                                                          {u"groupKey"_s, u"displayDate"_s}})};
        for (const QSignalSpy *spy : {&m_addFailures, &m_deleteFailures})
            harvest.values.push_back(spy->value(0).value(0));
        const auto *const model = qobject_cast<QAbstractItemModel *>(
            result<QObject *>("getBookmarkModelForTimeline", u"cell"_s));
        for (int role = 257; role < 280; ++role)
            harvest.values.push_back(model->index(0, 0).data(role));
        harvest.roleNames = model->roleNames();
        harvest.sent = m_framework.sent;
        harvest.name = m_loaded.plugin().name;
        harvest.pluginID = m_loaded.plugin().pluginID;
        return harvest;
    }

    bool unload() { return m_loaded.unload(); }

private:
    template <typename... Arguments>
    void call(const char *method, const Arguments &...arguments)
    {
        if (!QMetaObject::invokeMethod(m_loaded.object(), method, argument(arguments)...))
            qFatal("%s can't be called so", method);
    }
    template <typename Result, typename... Arguments>
    Result result(const char *method, const Arguments &...arguments)
    {
        Result result{};
        if (!QMetaObject::invokeMethod(
                m_loaded.object(), method,
                QReturnArgument<Result>(QMetaType::fromType<Result>().name(), result),
                argument(arguments)...))
            qFatal("%s can't be called so", method);
        return result;
    }
    template <typename T>
    static QGenericArgument argument(const T &value)
    {
        return QArgument<T>(QMetaType::fromType<T>().name(), value);
    }
    void answer(const QString &command, const QVariant &value)
    {
        m_loaded.plugin().CommandProcessor(command, value, nullptr, u"0"_s, {}, false, {});
    }

    KeepingFramework m_framework;
    LoadedPlugin m_loaded;
    QSignalSpy m_addFailures;
    QSignalSpy m_deleteFailures;
};

/// One line for each thing; reads every character of it.
QStringList describeAll(const Harvest &harvest)
{
    QStringList lines{harvest.name, harvest.pluginID};
    for (const Sent &sent : harvest.sent) {
        lines.append(sent.sender + u' ' + sent.command + u'@' + sent.relayPath + u' ' +
                     describe(sent.payload));
    }
    for (const QVariant &value : harvest.values)
        lines.append(describe(value));
    QList<int> roles = harvest.roleNames.keys();
    std::sort(roles.begin(), roles.end());
    for (const int role : std::as_const(roles))
        lines.append(QString::fromLatin1(harvest.roleNames.value(role)));
    return lines;
}

} // namespace

/// The library leaves the process while the host still holds what came from it.
class TestUnload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesValuesBehindThatStayValid();
    void takesOutstandingContextsAlong();
    void canBeLoadedAgainAndAgain();
};

void TestUnload::leavesValuesBehindThatStayValid()
{
    Harvest harvest;
    QStringList before;
    {
        Work work;
        work.sendEverything();
        harvest = work.harvest();
        before = describeAll(harvest);
        QVERIFY(work.unload());
    }
    QCOMPARE(describeAll(harvest), before);

    // What was held is what should have been.
    QStringList commands;
    for (const Sent &sent : harvest.sent)
        commands.append(sent.command);
    QCOMPARE(commands.join(u' '),
             u"QuerySevTimezone QuerySettingPermission AddBookmark AddBookmarks DeleteBookmark "
             "DeleteBookmarks UpdateBookmark RemoveAllBookmarks QueryBookmarkForRecent "
             "QueryAllBookmars QueryBookmarkForApi GetRecycleSetting UpdateRecycleSetting "
             "QueryBookmarkForTimeline"_s);
    QCOMPARE(harvest.values.at(0).toList().size(), 2);
    QCOMPARE(harvest.values.at(1).toList().size(), 2);
    QCOMPARE(harvest.values.at(2).toMap().value(u"bookmarkGroupList"_s).toList().size(), 1);
    QCOMPARE(harvest.values.at(3).toStringList(), QStringList{u"Camera"_s});
    QCOMPARE(harvest.values.at(4).toStringList(), QStringList{u"b"_s});
    QCOMPARE(harvest.values.at(5).toString(), u"b1"_s);
    QVERIFY(harvest.roleNames.size() > 11);
}

void TestUnload::takesOutstandingContextsAlong()
{
    Work work;
    work.sendEverything();
    work.sendEverything();
    QVERIFY(work.unload());
}

void TestUnload::canBeLoadedAgainAndAgain()
{
    QStringList first;
    for (int i = 0; i < 50; ++i) {
        Work work;
        work.sendEverything();
        const QStringList lines = describeAll(work.harvest());
        if (first.isEmpty())
            first = lines;
        QCOMPARE(lines, first);
        QVERIFY(work.unload());
    }
}

QTEST_GUILESS_MAIN(TestUnload)
#include "tst_unload.moc"
