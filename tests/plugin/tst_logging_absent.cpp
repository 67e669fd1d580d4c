#include "LoadedPlugin.h"
#include "SignalLines.h"

#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using standin::Delivery;

namespace {

const char *const logLibrary = "libQarnLogUtl.so";

/// The plug-in in a host that refuses every command, or has the test answer it.
class Host
{
public:
    Host()
        : loaded(&framework)
        , emitted(loaded.object())
    {
        topology.setStation(u"A"_s, u"Station A"_s);
        framework.addPlugin(standin::Topology::pluginID(), &topology);
    }

    template <typename... Arguments>
    void call(const char *method, const Arguments &...arguments)
    {
        bool result = false;
        if (!QMetaObject::invokeMethod(
                loaded.object(), method, Q_RETURN_ARG(bool, result),
                QArgument<Arguments>(QMetaType::fromType<Arguments>().name(), arguments)...))
            qFatal("%s can't be called so", method);
        transcript += QLatin1String(method) + (result ? " true"_L1 : " false"_L1);
        noteSignals();
    }
    void answer(const QString &command, const QString &code, void *context = nullptr)
    {
        loaded.plugin().CommandProcessor(command, true, context, code, {}, false, u"A"_s);
        transcript += command + u' ' + code;
        noteSignals();
    }
    void noteSignals()
    {
        for (const QString &line : emitted.take())
            transcript.last() += u' ' + line;
    }

    standin::Framework framework;
    standin::Topology topology;
    LoadedPlugin loaded;
    SignalLines emitted;
    QStringList transcript;
};

} // namespace

/// A client without the logging library. This program does not link it; the second run finds it by
/// the search path, so that both are held against the same texts.
class TestLoggingAbsent : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsTheLibraryAsLongAsItself();
    void changesNothing();
};

void TestLoggingAbsent::holdsTheLibraryAsLongAsItself()
{
    const bool onPath = qgetenv("LD_LIBRARY_PATH").contains("logging");
    QVERIFY(!LoadedPlugin::isInMemory(logLibrary));
    LoadedPlugin loaded(nullptr);
    QCOMPARE(LoadedPlugin::isInMemory(logLibrary), onPath);
    QVERIFY(loaded.unload());
    QVERIFY(!LoadedPlugin::isInMemory(logLibrary));
}

void TestLoggingAbsent::changesNothing()
{
    const QString text;
    const QVariantList targets{QVariantMap{{u"CameraID"_s, u"1"_s}, {u"BookmarkID"_s, u"b"_s}}};
    Host host;
    host.answer(u"QuerySettingPermission"_s, u"0"_s);
    for (const Delivery &delivery : {Delivery::refused(), Delivery::never()}) {
        host.framework.rules().setDefault(delivery);
        host.call("addBookmark", text, text, text, 1LL, 2LL, text, text, text);
        host.call("addBookmark", u"1"_s, text, text, 1LL, 2LL, text, text, text);
        host.call("addBookmarks", targets, 1LL, 2LL, text, text, text);
        host.call("deleteBookmark", text, text);
        host.call("deleteBookmarks", targets);
        host.call("updateBookmark", text);
        host.call("removeAllBookmarks", text);
        host.call("queryAllBookmarks");
    }
    host.answer(u"QueryAllBookmars"_s, u"7"_s, host.framework.sent().constLast().context);
    host.answer(u"QueryAllBookmars"_s, u"0"_s);
    for (const QString &command :
         {u"AddBookmark"_s, u"DeleteBookmark"_s, u"RemoveAllBookmarks"_s, u"UpdateBookmark"_s,
          u"QueryBookmarkForTimeline"_s, u"QueryBookmarkForRecent"_s})
        host.answer(command, u"7"_s);
    host.framework.removePlugin(standin::Topology::pluginID());
    host.call("queryAllBookmarks");
    host.answer(u"QueryBookmarkForRecent"_s, u"0"_s);

    QCOMPARE(host.transcript,
             QStringList({u"QuerySettingPermission 0"_s,
                          u"addBookmark false"_s,
                          u"addBookmark false"_s,
                          u"addBookmarks false"_s,
                          u"deleteBookmark false"_s,
                          u"deleteBookmarks false"_s,
                          u"updateBookmark false"_s,
                          u"removeAllBookmarks false"_s,
                          u"queryAllBookmarks false"_s,
                          u"addBookmark false"_s,
                          u"addBookmark true"_s,
                          u"addBookmarks true"_s,
                          u"deleteBookmark true"_s,
                          u"deleteBookmarks true"_s,
                          u"updateBookmark true"_s,
                          u"removeAllBookmarks true"_s,
                          u"queryAllBookmarks true"_s,
                          u"QueryAllBookmars 7 queryAllBookmarksResponsed(true)"_s,
                          u"QueryAllBookmars 0"_s,
                          u"AddBookmark 7 addBookmarkResponsed(false)"_s,
                          u"DeleteBookmark 7 deleteBookmarkResponsed(false)"_s,
                          u"RemoveAllBookmarks 7 removeAllBookmarksResponsed(false)"_s,
                          u"UpdateBookmark 7 updateBookmarkResponsed(false)"_s,
                          u"QueryBookmarkForTimeline 7 queryBookmarkForTimelineResponsed(false)"_s,
                          u"QueryBookmarkForRecent 7 queryBookmarkForRecentResponsed(false)"_s,
                          u"queryAllBookmarks false"_s,
                          u"QueryBookmarkForRecent 0 queryBookmarkForRecentResponsed(true)"_s}));
}

QTEST_GUILESS_MAIN(TestLoggingAbsent)
#include "tst_logging_absent.moc"
