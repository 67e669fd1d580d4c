#include "Describe.h"
#include "FailingMemory.h"
#include "PluginHarness.h"

#include <QtTest/QTest>

using namespace Qt::StringLiterals;

namespace {

QVariantMap record(const QString &id)
{
    return serverRecord(id, u"1"_s, u"l"_s, 5, 6, u"caf\u00e9"_s);
}

QVariantMap bookmarks()
{
    // The third has a text that is stored in another way. A far date would be, too, but QDateTime
    // does not survive a lack of memory there.
    QVariantMap odd = record(u"q3"_s);
    odd[u"Description"_s] = u"caf"_s + QChar(0xd800);
    return {{u"Bookmarks"_s, QVariantList{record(u"q1"_s), record(u"q2"_s), odd}}};
}

class ShortOfMemory : public PluginHarness
{
public:
    ShortOfMemory()
    {
        for (const QString &station : {u"B"_s, u"C"_s})
            topology.remove(station);
    }
};

} // namespace

/// Memory runs short at the moments that matter most; the checker goes through all others.
class TestAllocation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { failingmemory::setLibrary(TESSALINE_PLUGIN_PATH); }

    void keepsTheQueryUnderWay();
    void keepsNothingOfAHalfAnswer();
    void questionsKeepNoMemory();
    void makesAModelLater();
};

void TestAllocation::keepsTheQueryUnderWay()
{
    ShortOfMemory harness;
    harness.call<bool>("queryAllBookmarks");
    const standin::SentCommand running = harness.onlySent();
    failingmemory::failAt(0);
    QVERIFY(!harness.call<bool>("queryAllBookmarks"));
    failingmemory::stop();
    harness.answer(running, bookmarks());
    QCOMPARE(harness.emitted->take().join(u' '), u"queryAllBookmarksResponsed(true)"_s);
    QCOMPARE(harness.call<QVariantList>("getBookmarkListByNodeID", QString()).size(), 3);
}

void TestAllocation::keepsNothingOfAHalfAnswer()
{
    // By camera, by text, and by a column of each group key; asked before each answer, too, so that
    // these reach all columns.
    const QStringList questions{
        u"getFilteredBookmarkList({'nodeID': 'B/1', 'endTimestamp': 9, 'groupKey': 'creator'})"_s,
        u"getFilteredBookmarkList({'nodeID': 'C/1', 'endTimestamp': 9, 'groupKey': 'creator'})"_s,
        u"getFilteredBookmarkList({'text': 'B - ', 'endTimestamp': 9, 'groupKey': 'cameraName'})"_s,
        u"getFilteredBookmarkList({'text': 'C - ', 'endTimestamp': 9, 'groupKey': 'cameraName'})"_s,
        u"getFilteredBookmarkList({'endTimestamp': 9, 'groupKey': 'relayPath'})"_s};
    struct Asked
    {
        QString pages;
        bool hasFailed;
    };
    // Of three answers the second fails, by its code or at an allocation.
    const auto askAfter = [&](const QString &code, int failing) {
        ShortOfMemory harness;
        for (const QString &station : {u"B"_s, u"C"_s}) {
            harness.topology.setStation(station, u"Station "_s + station);
            harness.topology.setCamera(station + u"/1"_s, u"Camera "_s + station);
        }
        harness.call<bool>("queryAllBookmarks");
        const QList<standin::SentCommand> queries = harness.sent().mid(harness.sent().size() - 3);
        Asked asked{{}, false};
        const auto ask = [&] {
            asked.pages.clear();
            for (const QString &question : questions)
                asked.pages += describe(harness.run(question));
        };
        for (qsizetype i = 0; i < 3; ++i) {
            if (i == 1 && failing >= 0)
                failingmemory::failAt(failing);
            harness.answer(queries[i], bookmarks(), i == 1 ? code : u"0"_s);
            failingmemory::stop();
            asked.hasFailed |= !harness.log.takeTexts().isEmpty();
            ask();
        }
        return asked;
    };

    const QString all = askAfter(u"0"_s, -1).pages, others = askAfter(u"-1"_s, -1).pages;
    QVERIFY(all != others);
    int failed = 0;
    for (Asked asked{{}, true}; asked.hasFailed; failed += asked.hasFailed) {
        asked = askAfter(u"0"_s, failed);
        if (asked.pages != others)
            QCOMPARE(asked.pages, all);
    }
    QVERIFY(failed > 10);
}

void TestAllocation::questionsKeepNoMemory()
{
    ShortOfMemory harness;
    harness.storeBookmarks({record(u"q1"_s), record(u"q2"_s)});
    const QStringList keys{u"displayDate"_s, u"creator"_s, u"description"_s, u"no key"_s};
    const auto ask = [&](int number) {
        harness.run(u"getFilteredBookmarkList({'text': 'q%1', 'endTimestamp': 9, 'groupKey': "
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

void TestAllocation::makesAModelLater()
{
    const QString failed = u"Tessaline::CreateTimelineModel, "
                           "Create time shift buffer model failed"_s;
    ShortOfMemory harness;
    harness.openViewCell(u"2"_s, u"l"_s, u"A"_s);
    harness.run(u"setTimelineBoundary(0, 9, '2')"_s);
    const standin::SentCommand query = harness.onlySent();
    const auto getModel = [&] {
        return harness.call<QObject *>("getBookmarkModelForTimeline", u"2"_s);
    };
    QStringList lines;
    for (int n = 0; lines != QStringList(failed); ++n) { // at first the view cell has no room
        harness.run(u"removeTimelineModel('2')"_s);
        failingmemory::failAt(n);
        QVERIFY(!getModel());
        failingmemory::stop();
        lines = harness.log.takeTexts();
    }

    // Until it is there it is skipped.
    harness.run(u"setTimelineFocusInfo('l', 'A', '2')"_s);
    harness.run(u"setTimelineBoundary(0, 9, '2')"_s);
    QCOMPARE(harness.takeSent(), QStringList());
    harness.answer(query, bookmarks());
    harness.answer(query, bookmarks()); // its context has ended
    harness.answer(u"AddBookmark"_s, record(u"x"_s), u"A"_s);
    harness.answer(u"DeleteBookmark"_s, u"x"_s, u"A"_s);
    QCOMPARE(harness.log.takeTexts(), QStringList(u"Tessaline::HandleQueryBookmarkForTimelineResp, "
                                                  "bookmark model is NULL"_s));
    QCOMPARE(harness.emitted->take().join(u' '),
             u"queryBookmarkForTimelineResponsed(false) addBookmarkResponsed(false) "
             "deleteBookmarkResponsed(true)"_s);
    QVERIFY(getModel());
}

QTEST_GUILESS_MAIN(TestAllocation)
#include "tst_allocation.moc"
