#include "Describe.h"
#include "LoadedPlugin.h"
#include "PluginHarness.h"
#include "framework/RetainingFramework.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

/// Uses every command once, answers it, the batches with a failure, and returns all that has left
/// the library. One timeline query stays without an answer.
QVariantList work()
{
    standin::RetainingFramework framework;
    PluginHarness harness;
    framework.topology = &harness.topology;
    PluginBase &plugin = harness.plugin();
    plugin.InitialPluginBase(nullptr, nullptr, &framework);
    QSignalSpy addFailures(&plugin, SIGNAL(addBookmarksResponsed(QStringList)));
    QSignalSpy deleteFailures(&plugin, SIGNAL(deleteBookmarksResponsed(QStringList)));

    const QVariantList targets{
        QVariantMap{{u"CameraID"_s, u"1"_s}, {u"BookmarkID"_s, u"b"_s}, {u"relayPath"_s, u"A"_s}}};
    const QString text = u"text"_s;
    harness.grantPermission();
    plugin.PluginServerConnected();
    harness.call<bool>("addBookmark", text, text, text, 1LL, 2LL, text, text, text);
    harness.call<bool>("addBookmarks", targets, 1LL, 2LL, text, text, text);
    harness.call<bool>("deleteBookmark", text, text);
    harness.call<bool>("deleteBookmarks", targets);
    harness.call<bool>("updateBookmark", text, text, text);
    harness.call<bool>("removeAllBookmarks", text);
    harness.call<bool>("queryBookmarkForRecent", text, text, uchar(3));
    harness.call<bool>("queryAllBookmarks");
    harness.call("queryBookmarkForAPI", targets, 1LL, 2LL);
    harness.call("getRecycleSetting");
    harness.call("updateRecycleSetting", 5U, true);
    const auto *const model = harness.openViewCell(u"cell"_s, u"l"_s, u"A"_s);
    harness.call("setTimelineBoundary", 1LL, 5000LL, u"cell"_s);

    const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"l"_s, 1000, 2000, text, text, text);
    const QVariant found = QVariantMap{{u"Bookmarks"_s, QVariantList{record}}};
    const QVariant refused = QStringList{u"b"_s};
    for (const standin::SentCommand &sent : std::as_const(framework.sent)) {
        const bool isBatch = sent.command.endsWith("Bookmarks"_L1) && sent.context;
        harness.answer(sent, isBatch ? refused : found, isBatch ? u"1"_s : u"0"_s);
    }
    harness.call("setTimelineBoundary", 9000LL, 9999LL, u"cell"_s);

    QVariantList kept = framework.kept;
    kept += {plugin.name, plugin.pluginID, addFailures.at(0).at(0), deleteFailures.at(0).at(0)};
    kept.append(QVariant(harness.call<QVariantList>("getBookmarkListForRecent")));
    kept.append(harness.call<QVariantMap>("getFilteredBookmarkList",
                                          QVariantMap{{u"endTimestamp"_s, 5000}}));
    for (int role = 257; role < 280; ++role)
        kept += {model->index(0, 0).data(role), model->roleNames().value(role)};
    return kept;
}

} // namespace

/// The library leaves the process while the host still holds what came from it.
class TestUnload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesValuesBehindThatStayValid()
    {
        QString first;
        for (int i = 0; i < 50; ++i) { // and can be loaded again and again
            QVariantList kept;
            QString before;
            {
                const LoadedPlugin loaded;
                kept = work();
                before = describe(kept);
            }
            QCOMPARE(describe(kept), before);
            if (first.isEmpty())
                first = before;
            QCOMPARE(before, first);
        }
        // What was held is what should have been.
        for (const char *part :
             {"\"QueryAllBookmars\"", "StartTimestamp: qlonglong 1",
              "QStringList [QString \"Camera A1\"]", "totalBookmarkNumber: qlonglong 3",
              "QByteArray \"dispTimeRangeRole\""})
            QVERIFY2(first.contains(QLatin1String(part)), part);
    }
};

QTEST_GUILESS_MAIN(TestUnload)
#include "tst_unload.moc"
