#include "DataTable.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>

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

#define CALLER __builtin_return_address(0)

// The loaded library takes these instead of the runtime's, as every program's own come first.
// clang-format off
void *operator new(std::size_t n) { return allocateOrThrow(n, CALLER); }
void *operator new[](std::size_t n) { return allocateOrThrow(n, CALLER); }
void *operator new(std::size_t n, const std::nothrow_t &) noexcept { return allocate(n, CALLER); }
void *operator new[](std::size_t n, const std::nothrow_t &) noexcept { return allocate(n, CALLER); }
void operator delete(void *memory) noexcept { std::free(memory); }
void operator delete[](void *memory) noexcept { std::free(memory); }
void operator delete(void *memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void *memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void *memory, const std::nothrow_t &) noexcept { std::free(memory); }
void operator delete[](void *memory, const std::nothrow_t &) noexcept { std::free(memory); }
// clang-format on

namespace {

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

QVariantMap record(const QString &id)
{
    return serverRecord(id, u"1"_s, u"loc"_s, 5, 6);
}

QVariant bookmarks(const QVariantList &records)
{
    return QVariantMap{{u"Bookmarks"_s, records}};
}

class ShortOfMemory : public PluginHarness
{
public:
    bool request(const QString &method)
    {
        const QVariantList targets{QVariantMap{
            {u"CameraID"_s, u"1"_s}, {u"BookmarkID"_s, u"b"_s}, {u"relayPath"_s, u"A"_s}}};
        const QString text;
        if (method == "addBookmarks"_L1)
            return call<bool>("addBookmarks", targets, 1LL, 2LL, text, text, text);
        if (method == "deleteBookmarks"_L1)
            return call<bool>("deleteBookmarks", targets);
        if (method == "queryAllBookmarks"_L1)
            return call<bool>("queryAllBookmarks");
        call("clearTimelineModel", u"cell"_s);
        call("setTimelineBoundary", 1LL, 2LL, u"cell"_s);
        return !sent().isEmpty();
    }
    QObject *getModel() { return call<QObject *>("getBookmarkModelForTimeline", u"cell"_s); }
    bool logs(const QString &text) { return log.takeTexts() == QStringList{text}; }
};

const char *const modelFailed =
    "Tessaline::CreateTimelineModel, Create time shift buffer model failed";
const char *const itemFailed = "Tessaline::CreateBookmarkModelItem, create model item failed";

} // namespace

/// Memory runs short while the plug-in works.
class TestAllocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesARequest_data()
    {
        addTable({"method", "line"}, uR"(
        add      | addBookmarks        | malloc memory fail
        delete   | deleteBookmarks     | malloc memory fail
        query    | queryAllBookmarks   | new request context list failed
        timeline | setTimelineBoundary |
        )"_s);
    }
    void refusesARequest()
    {
        QFETCH(const QString, method);
        QFETCH(const QString, line);

        ShortOfMemory harness;
        harness.grantPermission();
        harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
        // The context itself, and its place among those outstanding.
        for (int n = 0; n < 2; ++n) {
            QVERIFY(!withFailing(n, [&] { return harness.request(method); }));
            QCOMPARE(harness.log.takeTexts().join(u'|'),
                     line.isEmpty() ? line : u"Tessaline::"_s + method + u", "_s + line);
            QCOMPARE(harness.takeSent() + harness.emitted->take(), QStringList());
        }
        QVERIFY(harness.request(method));
        QVERIFY(!harness.takeSent().isEmpty());
    }

    void keepsTheQueryUnderWay()
    {
        ShortOfMemory harness;
        const auto stored = [&] {
            return harness.call<QVariantList>("getBookmarkListByNodeID", QString()).size();
        };
        harness.request(u"queryAllBookmarks"_s);
        const QList<standin::SentCommand> running = harness.sent();
        harness.answer(running.at(0), bookmarks({record(u"b"_s)}));
        QCOMPARE(stored(), 1);
        QVERIFY(!withFailing(0, [&] { return harness.request(u"queryAllBookmarks"_s); }));
        QCOMPARE(stored(), 0);
        for (const standin::SentCommand &query : running.mid(1))
            harness.answer(query, bookmarks({record(u"b"_s)}));
        QCOMPARE(stored(), 2);
        QCOMPARE(harness.emitted->take().constLast(), u"queryAllBookmarksResponsed(true)"_s);
    }

    void makesAModelLater()
    {
        int reported = 0;
        for (int n = 0;; ++n) {
            ShortOfMemory harness;
            harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
            harness.request(u"setTimelineBoundary"_s);
            const standin::SentCommand query = harness.onlySent();
            harness.call("removeTimelineModel", u"cell"_s);
            harness.call("setTimelineFocusInfo", u"loc"_s, u"A"_s, u"cell"_s);
            try {
                if (withFailing(n, [&] { return harness.getModel(); }))
                    break;
            } catch (const std::bad_alloc &) {
                continue; // there was not even room to note the view cell
            }
            ++reported;
            QVERIFY(harness.logs(QLatin1String(modelFailed)));
            QCOMPARE(harness.plugin().children(), QObjectList());

            // Until then it is skipped.
            QVERIFY(!harness.request(u"setTimelineBoundary"_s));
            harness.call("setTimelineFocusInfo", u"loc"_s, u"A"_s, u"cell"_s);
            harness.answer(query, bookmarks({record(u"b"_s)}));
            harness.answer(query, bookmarks({record(u"b"_s)})); // its context has ended
            QVERIFY(harness.logs(
                u"Tessaline::HandleQueryBookmarkForTimelineResp, bookmark model is NULL"_s));
            harness.answer(u"AddBookmark"_s, record(u"b"_s), u"A"_s);
            harness.answer(u"DeleteBookmark"_s, u"b"_s, u"A"_s);
            QCOMPARE(harness.emitted->take().join(u' '),
                     u"queryBookmarkForTimelineResponsed(false) addBookmarkResponsed(false) "
                     "deleteBookmarkResponsed(true)"_s);
            QCOMPARE(harness.log.take(), QStringList());
            QVERIFY(harness.getModel());
        }
        QVERIFY(reported >= 2); // the model, its connection
    }

    void keepsTheItemsMadeSoFar()
    {
        ShortOfMemory harness;
        const auto *const model = harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
        const QVariant result = bookmarks({record(u"b1"_s), record(u"b2"_s), record(u"b3"_s)});
        const QStringList all{u"b1"_s, u"b2"_s, u"b3"_s};
        harness.answer(u"AddBookmark"_s, record(u"b"_s), u"A"_s); // makes the texts of its times
        harness.emitted->take();
        QStringList rows;
        QSet<qsizetype> sizes;
        for (int n = 0; rows.size() < 3; ++n) {
            harness.request(u"setTimelineBoundary"_s);
            const standin::SentCommand query = harness.onlySent();
            withFailing(n, [&] { harness.answer(query, result); });
            rows = rowsOf(model, Qt::UserRole + 1);
            sizes.insert(rows.size());
            QCOMPARE(rows, all.first(rows.size()));
            QVERIFY(rows.size() == 3 || harness.logs(QLatin1String(itemFailed)));
            QCOMPARE(harness.emitted->take(),
                     QStringList{u"queryBookmarkForTimelineResponsed(true)"_s});
        }
        QCOMPARE(sizes, (QSet<qsizetype>{0, 1, 2, 3}));
        QCOMPARE(harness.log.take(), QStringList());
    }

    void reportsABookmarkThatIsNotShown()
    {
        ShortOfMemory harness;
        const auto *const model = harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s);
        harness.request(u"addBookmarks"_s);
        const standin::SentCommand batch = harness.onlySent();
        QVERIFY(firstReportedFailure([&] {
            harness.answer(u"AddBookmark"_s, record(u"b"_s), u"A"_s);
            return harness.logs(QLatin1String(itemFailed));
        }));
        QVERIFY(firstReportedFailure([&] {
            harness.answer(batch, QVariantList{record(u"b"_s)});
            return harness.logs(QLatin1String(itemFailed));
        }));
        QCOMPARE(harness.emitted->take(), QStringList({u"addBookmarkResponsed(false)"_s,
                                                       u"addBookmarksResponsed(Camera A1)"_s}));
        QCOMPARE(model->rowCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestAllocation)
#include "tst_allocation.moc"
