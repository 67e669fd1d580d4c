#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>
#include <QtTest/QTest>

#include <cstdlib>
#include <cstring>
#include <new>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace {

/// Which of the next allocations fails, counted from 0; negative for none.
int s_countdown = -1;

/// Only what the plug-in's own code allocates can fail. Qt does not recover from a failure in its
/// own libraries, and those of the host's stand-ins are not the plug-in's to handle.
bool isFromPlugin(const void *caller)
{
    Dl_info info = {};
    return dladdr(caller, &info) && info.dli_fname &&
           std::strcmp(info.dli_fname, TESSALINE_PLUGIN_PATH) == 0;
}

void *allocate(std::size_t size, const void *caller)
{
    if (s_countdown >= 0 && isFromPlugin(caller) && s_countdown-- == 0)
        return nullptr;
    return std::malloc(size ? size : 1);
}

void *allocateOrThrow(std::size_t size, const void *caller)
{
    if (void *const memory = allocate(size, caller))
        return memory;
    throw std::bad_alloc();
}

} // namespace

// The loaded library takes these instead of the runtime's, as every program's own come first.
// clang-format off
void *operator new(std::size_t size) { return allocateOrThrow(size, __builtin_return_address(0)); }
void *operator new[](std::size_t size) { return allocateOrThrow(size, __builtin_return_address(0)); }
void *operator new(std::size_t size, const std::nothrow_t &) noexcept { return allocate(size, __builtin_return_address(0)); }
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept { return allocate(size, __builtin_return_address(0)); }
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete[](void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void *memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void *memory, const std::nothrow_t &) noexcept { std::free(memory); }
void operator delete[](void *memory, const std::nothrow_t &) noexcept { std::free(memory); }
// clang-format on

namespace {

constexpr int Many = 1000;

/// Lets the plug-in's n-th allocation from now fail during a call.
template <typename Call>
auto withFailing(int n, Call call)
{
    struct Reset
    {
        ~Reset() { s_countdown = -1; }
    } const reset;
    s_countdown = n;
    return call();
}

/// Repeats the attempt, each time failing one allocation later, until it says that the failure has
/// been reported as it should; false when that never happens.
template <typename Attempt>
bool firstReportedFailure(Attempt attempt)
{
    for (int n = 0; n < 20; ++n) {
        try {
            if (withFailing(n, attempt))
                return true;
        } catch (const std::bad_alloc &) {
            continue;
        }
    }
    return false;
}

QString modelFailed()
{
    return u"Tessaline::CreateTimelineModel, Create time shift buffer model failed"_s;
}
QString itemFailed()
{
    return u"Tessaline::CreateBookmarkModelItem, create model item failed"_s;
}

constexpr int BookmarkIdRole = 269;

QObject *getModel(PluginHarness &harness)
{
    return harness.call<QObject *>("getBookmarkModelForTimeline", u"cell"_s);
}

QVariantMap record(const QString &id)
{
    return serverRecord(id, u"1"_s, u"loc"_s, 5, 6);
}

} // namespace

/// Memory runs short while the plug-in works.
class TestAllocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesABatch_data();
    void refusesABatch();
    void refusesAQueryOfAll();
    void asksNoTimelineQuery();
    void makesAModelLater();
    void skipsAMissingModel();
    void keepsTheItemsMadeSoFar();
    void reportsABookmarkThatIsNotShown();
};

void TestAllocation::refusesABatch_data()
{
    QTest::addColumn<bool>("adds");
    QTest::newRow("of additions") << true;
    QTest::newRow("of deletions") << false;
}

void TestAllocation::refusesABatch()
{
    QFETCH(const bool, adds);

    PluginHarness harness;
    harness.grantPermission();
    const QVariantList targets{
        QVariantMap{{u"CameraID"_s, u"1"_s}, {u"BookmarkID"_s, u"b"_s}, {u"relayPath"_s, u"A"_s}}};
    const auto request = [&] {
        return adds ? harness.call<bool>("addBookmarks", targets, 1LL, 2LL, QString(), QString(),
                                         QString())
                    : harness.call<bool>("deleteBookmarks", targets);
    };
    // The context itself, and its place among those outstanding.
    for (int n = 0; n < 2; ++n) {
        QVERIFY(!withFailing(n, request));
        QCOMPARE(harness.log.takeTexts(),
                 QStringList{adds ? u"Tessaline::addBookmarks, malloc memory fail"_s
                                  : u"Tessaline::deleteBookmarks, malloc memory fail"_s});
        QCOMPARE(harness.takeSent(), QStringList());
        QCOMPARE(harness.emitted->take(), QStringList());
    }
    QVERIFY(request());
    QCOMPARE(harness.takeSent().size(), 1);
}

void TestAllocation::refusesAQueryOfAll()
{
    PluginHarness harness;
    const auto stored = [&] {
        return harness.call<QVariantList>("getBookmarkListByNodeID", QString()).size();
    };
    for (int n = 0; n < 2; ++n) {
        harness.storeBookmarks({record(u"b"_s)});
        QCOMPARE(stored(), 1);
        QVERIFY(harness.call<bool>("queryAllBookmarks"));
        const QList<standin::SentCommand> running = harness.sent();
        harness.answer(running.at(0), QVariantMap{{u"Bookmarks"_s, QVariantList{record(u"b"_s)}}});
        QCOMPARE(stored(), 1);
        harness.emitted->take();
        harness.takeSent();

        QVERIFY(!withFailing(n, [&] { return harness.call<bool>("queryAllBookmarks"); }));
        QCOMPARE(harness.log.takeTexts(),
                 QStringList{u"Tessaline::queryAllBookmarks, new request context list failed"_s});
        QCOMPARE(harness.takeSent(), QStringList());
        QCOMPARE(harness.emitted->take(), QStringList());
        QCOMPARE(stored(), 0);

        // The query that was under way is still the newest.
        for (const standin::SentCommand &query : running.mid(1)) {
            harness.answer(query, QVariantMap{{u"Bookmarks"_s, QVariantList{record(u"b"_s)}}});
        }
        QCOMPARE(harness.emitted->take(), QStringList({u"queryAllBookmarksResponsed(false)"_s,
                                                       u"queryAllBookmarksResponsed(true)"_s}));
        QCOMPARE(stored(), 2);
    }
}

void TestAllocation::asksNoTimelineQuery()
{
    PluginHarness harness;
    harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
    for (int n = 0; n < 2; ++n) {
        withFailing(n, [&] { harness.call("setTimelineBoundary", 1LL, 2LL, u"cell"_s); });
        QCOMPARE(harness.takeSent(), QStringList());
        QCOMPARE(harness.emitted->take(), QStringList());
        QCOMPARE(harness.log.take(), QStringList());
        harness.call("clearTimelineModel", u"cell"_s);
    }
    harness.call("setTimelineBoundary", 1LL, 2LL, u"cell"_s);
    QCOMPARE(harness.takeSent(), QStringList{u"QueryBookmarkForTimeline@A"_s});
}

void TestAllocation::makesAModelLater()
{
    int reported = 0;
    for (int n = 0; n < Many; ++n) {
        PluginHarness harness;
        QObject *model = nullptr;
        try {
            model = withFailing(n, [&] { return getModel(harness); });
            if (model)
                break;
            ++reported;
            QCOMPARE(harness.log.takeTexts(), QStringList{modelFailed()});
        } catch (const std::bad_alloc &) {
            // There was not even room to note the view cell.
            QCOMPARE(harness.log.take(), QStringList());
        }
        QCOMPARE(harness.plugin().children(), QObjectList());
        QVERIFY(getModel(harness));
        QCOMPARE(harness.plugin().children().size(), 1);
    }
    QVERIFY(reported >= 2); // the model, its connection
}

void TestAllocation::skipsAMissingModel()
{
    PluginHarness harness;
    harness.grantPermission();
    harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
    harness.call("setTimelineBoundary", 1LL, 100LL, u"cell"_s);
    const standin::SentCommand query = harness.onlySent();
    const QVariant result = QVariantMap{{u"Bookmarks"_s, QVariantList{record(u"b"_s)}}};

    harness.call("removeTimelineModel", u"cell"_s);
    harness.call("setTimelineFocusInfo", u"loc"_s, u"A"_s, u"cell"_s);
    const bool missing = firstReportedFailure([&] {
        return !getModel(harness) && harness.log.takeTexts() == QStringList{modelFailed()};
    });
    QVERIFY(missing);

    harness.call("setTimelineBoundary", 1LL, 100LL, u"cell"_s);
    harness.call("clearTimelineModel", u"cell"_s);
    harness.call("setTimelineFocusInfo", u"loc"_s, u"A"_s, u"cell"_s);
    QCOMPARE(harness.takeSent(), QStringList());
    harness.answer(query, result);
    QCOMPARE(
        harness.log.takeTexts(),
        QStringList{u"Tessaline::HandleQueryBookmarkForTimelineResp, bookmark model is NULL"_s});
    QCOMPARE(harness.emitted->take(), QStringList{u"queryBookmarkForTimelineResponsed(false)"_s});
    harness.answer(query, result); // its context has ended
    harness.answer(u"AddBookmark"_s, record(u"b"_s), u"A"_s);
    harness.answer(u"DeleteBookmark"_s, u"b"_s, u"A"_s);
    QCOMPARE(harness.emitted->take(),
             QStringList({u"addBookmarkResponsed(false)"_s, u"deleteBookmarkResponsed(true)"_s}));
    QCOMPARE(harness.log.take(), QStringList());

    QVERIFY(getModel(harness));
    harness.answer(u"AddBookmark"_s, record(u"b"_s), u"A"_s);
    QCOMPARE(harness.emitted->take(), QStringList{u"addBookmarkResponsed(true)"_s});
}

void TestAllocation::keepsTheItemsMadeSoFar()
{
    PluginHarness harness;
    const auto *const model = harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
    const QVariant result = QVariantMap{
        {u"Bookmarks"_s, QVariantList{record(u"b1"_s), record(u"b2"_s), record(u"b3"_s)}}};
    const QStringList all{u"b1"_s, u"b2"_s, u"b3"_s};
    QStringList rows;
    QSet<qsizetype> sizes;
    for (int n = 0; n < Many && rows.size() < 3; ++n) {
        harness.call("clearTimelineModel", u"cell"_s);
        harness.call("setTimelineBoundary", 1LL, 100LL, u"cell"_s);
        const standin::SentCommand query = harness.onlySent();
        withFailing(n, [&] { harness.answer(query, result); });
        rows = rowsOf(model, BookmarkIdRole);
        sizes.insert(rows.size());
        QCOMPARE(rows, all.first(rows.size()));
        QCOMPARE(harness.log.takeTexts(),
                 rows.size() < 3 ? QStringList{itemFailed()} : QStringList());
        QCOMPARE(harness.emitted->take(),
                 QStringList{u"queryBookmarkForTimelineResponsed(true)"_s});
    }
    QCOMPARE(sizes, (QSet<qsizetype>{0, 1, 2, 3}));
}

void TestAllocation::reportsABookmarkThatIsNotShown()
{
    PluginHarness harness;
    const auto *const model = harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
    QVERIFY(firstReportedFailure([&] {
        harness.answer(u"AddBookmark"_s, record(u"b"_s), u"A"_s);
        return harness.log.takeTexts() == QStringList{itemFailed()};
    }));
    QCOMPARE(harness.emitted->take(), QStringList{u"addBookmarkResponsed(false)"_s});
    QCOMPARE(model->rowCount(), 0);

    const QVariantList targets{QVariantMap{{u"CameraID"_s, u"1"_s}, {u"relayPath"_s, u"A"_s}}};
    harness.call<bool>("addBookmarks", targets, 5LL, 6LL, QString(), QString(), QString());
    const standin::SentCommand batch = harness.onlySent();
    QVERIFY(firstReportedFailure([&] {
        harness.answer(batch, QVariantList{record(u"b"_s)});
        return harness.log.takeTexts() == QStringList{itemFailed()};
    }));
    QCOMPARE(harness.emitted->take(), QStringList{u"addBookmarksResponsed(Camera A1)"_s});
    QCOMPARE(model->rowCount(), 0);
}

QTEST_GUILESS_MAIN(TestAllocation)
#include "tst_allocation.moc"
