#include "DataTable.h"
#include "Describe.h"
#include "FailingMemory.h"
#include "ProcessProbe.h"
#include "TestHost.h"

#include <limits>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

QVariantMap record(const QString &id)
{
    return serverRecord(id, u"1"_s, u"l"_s, 5, 6, u"caf\u00e9"_s);
}

QVariantMap bookmarks()
{
    // The third description has no UTF-8 form and is therefore stored in UTF-16.
    QVariantMap odd = record(u"q3"_s);
    odd[u"Description"_s] = u"caf"_s + QChar(0xd800);
    return {{u"Bookmarks"_s, QVariantList{record(u"q1"_s), record(u"q2"_s), odd}}};
}

/// A host with one station.
class SmallHost : public TestHost
{
public:
    SmallHost()
    {
        for (const QString &station : {u"B"_s, u"C"_s})
            topology.remove(station);
    }
};

/// The answer to a query: @p count records on @p days days, at 7 times of the day.
QVariantMap manyBookmarks(int count, int days, const QString &description)
{
    QVariantList records;
    for (int i = 0; i < count; ++i) {
        const qint64 start = i % days * 86'400'000LL + i % 7 * 60'000;
        records.append(serverRecord(QString::number(i), QString::number(i % 5), u"l"_s, start,
                                    start + 1000, description, QString::number(i % 3)));
    }
    return {{u"Bookmarks"_s, records}};
}

} // namespace

/// Failing allocations and exceptions at moments that no check reaches.
class TestAllocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { failingmemory::setLibrary(TESSALINE_PLUGIN_PATH); }

    void failedQueryDoesNotSupersedeTheRunningOne();
    void answerIsStoredCompletelyOrNotAtAll();
    void failedAnswerLeavesNoTextsOfFarTimes();
    void pagesLeaveNoMemoryBehind();
    void answersAndPagesDoNotAllocateForEachBookmark_data();
    void answersAndPagesDoNotAllocateForEachBookmark();
    void bookmarkTakesLessThan300Bytes();
    void modelIsCreatedWhenMemoryIsAvailableAgain();
    void exceptionOfTheHostIsARejection();
};

void TestAllocation::failedQueryDoesNotSupersedeTheRunningOne()
{
    SmallHost host;
    host.call(u"queryAllBookmarks()"_s);
    const standin::SentCommand running = host.framework.sent().constFirst();
    failingmemory::failAt(0);
    QCOMPARE(host.call(u"queryAllBookmarks()"_s), QVariant(false));
    failingmemory::stop();
    host.takeTrace();
    host.answer(running, bookmarks());
    QCOMPARE(host.takeTrace().join(u' '), u"signal queryAllBookmarksResponsed(true)"_s);
    QCOMPARE(host.identifiersIn(u"all"_s), u"A/q1 A/q2 A/q3"_s);
}

void TestAllocation::answerIsStoredCompletelyOrNotAtAll()
{
    // Pages by camera, by text and by group key reach all columns of the list. They are also
    // requested before each answer, because the first request creates some columns.
    const QStringList calls{
        u"getFilteredBookmarkList({'nodeID': 'B/1', 'endTimestamp': 9, 'groupKey': 'creator'})"_s,
        u"getFilteredBookmarkList({'nodeID': 'C/1', 'endTimestamp': 9, 'groupKey': 'creator'})"_s,
        u"getFilteredBookmarkList({'text': 'B - ', 'endTimestamp': 9, 'groupKey': 'cameraName'})"_s,
        u"getFilteredBookmarkList({'text': 'C - ', 'endTimestamp': 9, 'groupKey': 'cameraName'})"_s,
        u"getFilteredBookmarkList({'endTimestamp': 9, 'groupKey': 'relayPath'})"_s};
    struct Outcome
    {
        QString pages;
        bool hasFailed;
    };
    // Answers three commands; the second answer fails by its code or by an allocation.
    const auto outcomeOf = [&](const QString &code, int failing) {
        SmallHost host;
        for (const QString &station : {u"B"_s, u"C"_s}) {
            host.topology.setStation(station, u"Station "_s + station);
            host.topology.setCamera(station + u"/1"_s, u"Camera "_s + station);
        }
        host.call(u"queryAllBookmarks()"_s);
        const QList<standin::SentCommand> queries = host.framework.sent();
        Outcome outcome{{}, false};
        const auto getPages = [&] {
            outcome.pages.clear();
            for (const QString &call : calls)
                outcome.pages += describe(host.call(call));
        };
        for (qsizetype i = 0; i < 3; ++i) {
            if (i == 1 && failing >= 0)
                failingmemory::failAt(failing);
            host.answer(queries[i], bookmarks(), i == 1 ? code : u"0"_s);
            failingmemory::stop();
            outcome.hasFailed |= !host.takeTrace().filter(u"log "_s).isEmpty();
            getPages();
        }
        return outcome;
    };

    const QString all = outcomeOf(u"0"_s, -1).pages, others = outcomeOf(u"-1"_s, -1).pages;
    QVERIFY(all != others);
    int failed = 0;
    for (Outcome outcome{{}, true}; outcome.hasFailed; failed += outcome.hasFailed) {
        outcome = outcomeOf(u"0"_s, failed);
        if (outcome.pages != others)
            QCOMPARE(outcome.pages, all);
    }
    QVERIFY(failed > 10);
}

/// The list does not store the texts of far times in its columns.
void TestAllocation::failedAnswerLeavesNoTextsOfFarTimes()
{
    const QVariantMap near = record(u"near"_s);
    QVariantMap far = near;
    far[u"StartTimestamp"_s] = std::numeric_limits<qint64>::max();
    QVariantMap last = near;
    last[u"Description"_s] = QString(5000, u'x'); // needs memory when the others are stored
    const QVariant half = QVariantMap{{u"Bookmarks"_s, QVariantList{near, far, last}}};
    const QVariant whole = QVariantMap{{u"Bookmarks"_s, QVariantList{near, near}}};
    SmallHost host;
    const auto query = [&] {
        host.call(u"queryAllBookmarks()"_s);
        return host.framework.sent().constLast();
    };
    const auto list = [&] { return describe(host.call(u"getBookmarkListByNodeID('')"_s)); };
    host.answer(query(), whole);
    const QString expected = list();

    standin::SentCommand sent;
    for (int i = 0; i < 2; ++i) { // once more, because the first answer fills caches
        sent = query();
        failingmemory::watch();
        host.answer(sent, half);
        failingmemory::stop();
    }
    sent = query();
    host.takeTrace();
    failingmemory::failAt(int(failingmemory::allocations()) - 1);
    host.answer(sent, half);
    failingmemory::stop();
    QCOMPARE(host.takeTrace().join(u'\n'),
             u"log Tessaline: %s, malloc memory fail <Tessaline::CommandProcessor>"_s);
    QCOMPARE(list(), u"[]"_s);
    host.answer(sent, whole);
    QCOMPARE(list(), expected);
}

void TestAllocation::pagesLeaveNoMemoryBehind()
{
    SmallHost host;
    host.call(u"queryAllBookmarks()"_s);
    host.answer(host.framework.sent().constFirst(), bookmarks());
    const QStringList keys{u"displayDate"_s, u"creator"_s, u"description"_s, u"no key"_s};
    const auto ask = [&](int number) {
        host.call(u"getFilteredBookmarkList({'text': 'q%1', 'endTimestamp': 9, 'groupKey': "
                  "'%2'})"_s.arg(QString::number(number), keys.at(number % keys.size())));
    };
    failingmemory::watch();
    for (int i = 0; i < 100; ++i)
        ask(i);
    const std::size_t before = failingmemory::blocks();
    for (int i = 100; i < 1000; ++i)
        ask(i);
    failingmemory::stop();
    QCOMPARE(failingmemory::blocks(), before);
}

void TestAllocation::answersAndPagesDoNotAllocateForEachBookmark_data()
{
    // A page is asked for twice: the first call parses each day, and stores it.
    addTable({"description", "days", "page"}, uR"(
    answer         | cafe | 20   |
    search         | café | 4000 | {'text': 'nowhere'}
    time           | café | 4000 | {'text': '23:59'}
    camera         | café | 4000 | {'nodeID': 'A/4', 'groupKey': 'creator'}
    by day         | café | 4000 | {'groupKey': 'displayDate'}
    by creator     | café | 4000 | {'groupKey': 'creator'}
    by camera      | café | 4000 | {'groupKey': 'cameraID'}
    )"_s);
}

/// An allocation for each bookmark means that a cache or a shortcut has no effect.
void TestAllocation::answersAndPagesDoNotAllocateForEachBookmark()
{
    QFETCH(const QString, description);
    QFETCH(const QString, page);
    const auto allocations = [&](int count) {
        SmallHost host;
        host.call(u"queryAllBookmarks()"_s);
        const QVariantMap answer = manyBookmarks(count, int(numberIn("days")), description);
        if (page.isEmpty())
            failingmemory::watch();
        host.answer(host.framework.sent().constFirst(), answer);
        for (int i = 0; i < 2 && !page.isEmpty(); ++i) {
            failingmemory::watch();
            host.play(u"page "_s + page);
        }
        failingmemory::stop();
        return qint64(failingmemory::allocations());
    };
    const qint64 few = allocations(500);
    QVERIFY(few > 0);
    QCOMPARE_LT(allocations(4000), few + 100);
}

void TestAllocation::bookmarkTakesLessThan300Bytes()
{
    constexpr int Answers = 200;
    constexpr int Count = 50; // in each answer
    SmallHost host;
    host.call(u"queryAllBookmarks()"_s);
    standin::SentCommand query = host.framework.sent().constFirst();
    query.relayPath = u"other"_s; // for any number of answers
    const QVariantMap answer =
        manyBookmarks(Count, 10, u"the door of the caf\u00e9 at the corner of the street"_s);
    const auto before = driver::allocatedBytes();
    for (int i = 0; i < Answers; ++i)
        host.answer(query, answer);
    for (int i = 0; i < 10; ++i)
        host.play(u"page {'text': '23:59'}"_s);
    const auto after = driver::allocatedBytes();
    if (!before || !after)
        QSKIP("This platform does not report allocated memory.");
    QCOMPARE_LT((*after - *before) / (Answers * Count), 300);
}

void TestAllocation::modelIsCreatedWhenMemoryIsAvailableAgain()
{
    SmallHost host;
    host.showCell(u"2"_s, u"l"_s, u"A"_s);
    host.call(u"setTimelineBoundary(0, 9, '2')"_s);
    const standin::SentCommand query = host.framework.sent().constFirst();
    const auto getModel = [&] {
        return host.call(u"getBookmarkModelForTimeline('2')"_s).value<QObject *>();
    };
    QString lines;
    for (int n = 0; !lines.contains(u"Create time shift"_s);
         ++n) { // the first allocations create the view cell
        host.call(u"removeTimelineModel('2')"_s);
        host.takeTrace();
        failingmemory::failAt(n);
        QVERIFY(!getModel());
        failingmemory::stop();
        lines = host.takeTrace().join(u'\n');
    }
    QCOMPARE(lines, u"log Tessaline: %s, Create time shift buffer model failed "
                    "<Tessaline::CreateTimelineModel>"_s);

    // A view cell without a model is skipped. The first answer ends the context of the query.
    const QString record = u"{'BookmarkID': 'x', 'LocationID': 'l'}"_s;
    QCOMPARE(host.play(u"setTimelineFocusInfo('l', 'A', '2')\nsetTimelineBoundary(0, 9, '2')"_s),
             QString());
    host.answer(query, bookmarks());
    host.answer(query, bookmarks());
    QCOMPARE(host.takeTrace().join(u'\n'),
             u"log Tessaline_ReqRespHandler: %s, bookmark model is NULL "
             "<Tessaline::HandleQueryBookmarkForTimelineResp>\n"
             "signal queryBookmarkForTimelineResponsed(false)"_s);
    QCOMPARE(
        host.play(u"answer AddBookmark@A ok "_s + record + u"\nanswer DeleteBookmark@A ok 'x'"_s),
        u"signal addBookmarkResponsed(false)\nsignal deleteBookmarkResponsed(true)"_s);
    QVERIFY(getModel());
}

void TestAllocation::exceptionOfTheHostIsARejection()
{
    for (const char *text : {"no route", ""}) {
        SmallHost host;
        host.onLine = [=](const QString &line) {
            if (!line.startsWith(u"send "_s))
                return;
            if (*text)
                throw std::runtime_error(text);
            throw line;
        };
        const QString failure =
            *text ? u": %s <Tessaline::sendCommand, no route>"_s : u" <Tessaline::sendCommand>"_s;
        QCOMPARE(host.play(u"updateBookmark('b')"_s),
                 u"send UpdateBookmark@ {BookmarkID: QString \"b\"}\n"
                 "log Tessaline_Req: %s, unexpected exception"_s +
                     failure +
                     u"\n"
                     "log Tessaline_Req: %s, send command failed <Tessaline::updateBookmark>\n"
                     "= bool false"_s);
    }
}

QTEST_GUILESS_MAIN(TestAllocation)
#include "tst_allocation.moc"
