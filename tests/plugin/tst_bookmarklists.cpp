#include "Describe.h"
#include "PluginHarness.h"

#include <QtCore/QDateTime>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int IntMin = std::numeric_limits<int>::min();
constexpr int IntMax = std::numeric_limits<int>::max();

QVariantMap everything(const QString &groupKey, bool ascending = true)
{
    return {{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
            {u"endTimestamp"_s, std::numeric_limits<qint64>::max()},
            {u"groupKey"_s, groupKey},
            {u"ascending"_s, ascending}};
}

QString idsOf(const QVariantList &records)
{
    QStringList ids;
    for (const QVariant &record : records)
        ids.append(record.toMap().value(u"bookmarkID"_s).toString());
    return ids.join(u' ');
}

/// The answer as "3: title[b1 b2] other title[b3]".
QString filtered(PluginHarness &harness, const QVariantMap &filter)
{
    const auto page = harness.call<QVariantMap>("getFilteredBookmarkList", filter);
    QStringList parts{page.value(u"totalBookmarkNumber"_s).toString() + u':'};
    const QVariantList groups = page.value(u"bookmarkGroupList"_s).toList();
    for (const QVariant &element : groups) {
        const QVariantMap group = element.toMap();
        parts.append(group.value(u"title"_s).toString() + u'[' +
                     idsOf(group.value(u"bookmarkList"_s).toList()) + u']');
    }
    return parts.join(u' ');
}

qint64 noon(int year, int month, int day)
{
    return QDateTime(QDate(year, month, day), QTime(12, 0), Qt::UTC).toMSecsSinceEpoch();
}

} // namespace

/// The lists that QML reads: filtered, sorted, grouped, a page at a time.
class TestBookmarkLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepWhatPassesTheFilter_data();
    void keepWhatPassesTheFilter();
    void areInOrderAndGrouped_data();
    void areInOrderAndGrouped();
    void showOnePage_data();
    void showOnePage();
    void haveValuesOfTheseTypes();
    void ofOneCameraPutTheRecentInOrder();
};

void TestBookmarkLists::keepWhatPassesTheFilter_data()
{
    QTest::addColumn<QVariantMap>("filter");
    QTest::addColumn<QString>("ids");

    const auto times = [](const char *title, const QVariant &start, const QVariant &end,
                          const QString &ids) {
        QTest::newRow(title) << QVariantMap{{u"startTimestamp"_s, start}, {u"endTimestamp"_s, end}}
                             << ids;
    };
    const auto texts = [](const QString &text, const QString &ids) {
        QTest::addRow("text %s", qPrintable(text)) << QVariantMap{{u"text"_s, text}} << ids;
    };
    const auto nodes = [](const QString &nodeID, const QString &ids) {
        QTest::addRow("node %s", qPrintable(nodeID)) << QVariantMap{{u"nodeID"_s, nodeID}} << ids;
    };

    QTest::newRow("no condition") << QVariantMap() << u"a1 a2 direct odd zero"_s;
    times("both ends belong to it", 1000, 3000, u"a1 direct odd"_s);
    times("a millisecond after one start, another before the next", 1001, 2999, u"odd"_s);
    times("one moment", 2000, 2000, u"odd"_s);
    times("a bookmark runs into it", 4000, 5000, u""_s);
    times("inverted", 3000, 1000, u""_s);
    times("no bounds", {}, {}, u"zero"_s);
    times("no start", {}, 1000, u"direct zero"_s);
    times("no end", -5, {}, u"a2 zero"_s);
    times("bounds as text", u"1000"_s, u"2000"_s, u"direct odd"_s);
    times("bounds that are no numbers", QVariantList{1}, u"late"_s, u"zero"_s);

    texts(u"abc"_s, u"a1"_s); // description
    texts(u"ÖSTEN"_s, u"odd"_s);
    texts(u"zoË"_s, u"odd"_s);      // creator
    texts(u"camera a1"_s, u"a1"_s); // camera name
    texts(u"station A - "_s, u"a1 a2"_s);
    texts(u"01:00:03 -"_s, u"a1"_s); // time range
    texts(u"secret"_s, u""_s);       // group
    texts(u"direct"_s, u""_s);       // identifier
    texts(u"1/1/70"_s, u""_s);       // date
    texts(u"."_s, u""_s);
    texts(u"100 %1"_s, u"odd"_s);
    QTest::newRow("a number as text") << QVariantMap{{u"text"_s, 100}} << u"odd"_s;
    QTest::newRow("a list as text")
        << QVariantMap{{u"text"_s, QVariantList{1}}} << u"a1 a2 direct odd zero"_s;

    nodes(u"A/1"_s, u"a1"_s);
    nodes(u"A/1/2"_s, u"a2"_s);
    nodes(u"a/1"_s, u""_s);
    nodes(u"A"_s, u""_s);
    nodes(u"1"_s, u"direct zero"_s);
    nodes(u"/1"_s, u""_s);
    nodes(u"%1/%2"_s, u"odd"_s);
    nodes(u"%2/%2"_s, u""_s);
    QTest::newRow("a number as node") << QVariantMap{{u"nodeID"_s, 1}} << u"direct zero"_s;

    QTest::newRow("all conditions")
        << QVariantMap{{u"startTimestamp"_s, 0}, {u"text"_s, u" - "_s}, {u"nodeID"_s, u"A/1"_s}}
        << u"a1"_s;
    QTest::newRow("conditions that exclude each other")
        << QVariantMap{{u"text"_s, u"abc"_s}, {u"nodeID"_s, u"1"_s}} << u""_s;
}

void TestBookmarkLists::keepWhatPassesTheFilter()
{
    QFETCH(const QVariantMap, filter);
    QFETCH(const QString, ids);

    const QMap<QString, QVariantList> records{
        {QString(),
         {serverRecord(u"zero"_s, u"1"_s, u"l"_s, 0, 0),
          serverRecord(u"direct"_s, u"1"_s, u"l"_s, 1000, 5000)}},
        {u"%1"_s,
         {serverRecord(u"odd"_s, u"%2"_s, u"l"_s, 2000, 2500, u"100 %1 Östen"_s, u"Zoë"_s)}},
        {u"A"_s,
         {serverRecord(u"a1"_s, u"1"_s, u"l"_s, 3000, 4500, u"xABCx"_s, u"ann"_s, u"Secret"_s),
          serverRecord(u"a2"_s, u"1/2"_s, u"l"_s, -5, 0)}},
    };
    PluginHarness harness;
    harness.topology.setStation({}, u"Centre"_s);
    harness.topology.setStation(u"%1"_s, u"Odd"_s);
    harness.call<bool>("queryAllBookmarks");
    const auto queries = harness.sent();
    for (const standin::SentCommand &query : queries)
        harness.answer(query, QVariantMap{{u"Bookmarks"_s, records.value(query.relayPath)}});

    QVariantMap complete = everything(u"relayPath"_s);
    complete.insert(filter);
    const auto page = harness.call<QVariantMap>("getFilteredBookmarkList", complete);
    QStringList kept;
    const QVariantList groups = page.value(u"bookmarkGroupList"_s).toList();
    for (const QVariant &group : groups)
        kept += idsOf(group.toMap().value(u"bookmarkList"_s).toList()).split(u' ');
    kept.sort();
    QCOMPARE(kept.join(u' '), ids);
    QCOMPARE(page.value(u"totalBookmarkNumber"_s).toLongLong(), kept.size());
}

void TestBookmarkLists::areInOrderAndGrouped_data()
{
    QTest::addColumn<QVariantMap>("filter");
    QTest::addColumn<QString>("expected");

    const auto row = [](const char *title, const QVariantMap &filter, const char *expected) {
        QTest::newRow(title) << filter << QString::fromLatin1(expected);
    };
    // "1/2/26" has lost its century and counts as 1926.
    const char *const byDay = "6: 1/2/26[new dawn] 1/1/70[long short] 2/1/99[feb] 10/1/99[oct]";
    const char *const byDayDown = "6: 10/1/99[oct] 2/1/99[feb] 1/1/70[long short] 1/2/26[new dawn]";
    row("by date", everything(u"displayDate"_s), byDay);
    row("by date, descending", everything(u"displayDate"_s, false), byDayDown);
    row("by time range, which is by date", everything(u"displayTimeRange"_s), byDay);
    row("by time range, descending", everything(u"displayTimeRange"_s, false), byDayDown);
    row("by description, capitals first", everything(u"description"_s),
        "6: [new] B[oct] a[feb short] b[long] \xe4[dawn]");
    row("by description, descending", everything(u"description"_s, false),
        "6: \xe4[dawn] b[long] a[feb short] B[oct] [new]");
    row("by start as text", everything(u"startTimestamp"_s),
        "6: 1000[long] 1767322800000[dawn] 1767351600000[new] 917870400000[feb] "
        "938779200000[oct] 999[short]");
    row("by start as text, descending", everything(u"startTimestamp"_s, false),
        "6: 999[short] 938779200000[oct] 917870400000[feb] 1767351600000[new] "
        "1767322800000[dawn] 1000[long]");
    row("by a key that no record has", everything(u"Description"_s),
        "6: [new dawn oct feb long short]");
    row("by no key", everything({}), "6: [new dawn oct feb long short]");
    QVariantMap filter = everything(u"description"_s);
    filter.insert(u"ascending"_s, u"false"_s);
    row("order as text", filter, "6: \xe4[dawn] b[long] a[feb short] B[oct] [new]");
    filter.remove(u"ascending"_s);
    row("no order, which is descending", filter, "6: \xe4[dawn] b[long] a[feb short] B[oct] [new]");
    filter.insert(u"groupKey"_s, QVariantMap());
    row("a key that is no text", filter, "6: [new dawn oct feb long short]");
}

void TestBookmarkLists::areInOrderAndGrouped()
{
    QFETCH(const QVariantMap, filter);
    QFETCH(const QString, expected);

    // Equal ones stay as the first sort has left them: by the text of their start, descending.
    const auto record = [](const QString &id, qint64 start, const QString &description) {
        return serverRecord(id, u"1"_s, u"l"_s, start, start, description);
    };
    PluginHarness harness;
    harness.storeBookmarks(
        {record(u"feb"_s, noon(1999, 2, 1), u"a"_s), record(u"long"_s, 1000, u"b"_s),
         record(u"new"_s, noon(2026, 1, 2) - 1 * 3600'000LL, u""_s),
         record(u"short"_s, 999, u"a"_s), record(u"oct"_s, noon(1999, 10, 1), u"B"_s),
         record(u"dawn"_s, noon(2026, 1, 2) - 9 * 3600'000LL, u"ä"_s)});
    QCOMPARE(filtered(harness, filter), expected);
}

void TestBookmarkLists::showOnePage_data()
{
    QTest::addColumn<QVariant>("pageNumber");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("count");

    QTest::newRow("first") << QVariant(0) << 0 << 50;
    QTest::newRow("second") << QVariant(1) << 50 << 50;
    QTest::newRow("last") << QVariant(2) << 100 << 20;
    QTest::newRow("beyond the last") << QVariant(3) << 0 << 50;
    QTest::newRow("greatest number") << QVariant(IntMax) << 0 << 50;
    QTest::newRow("before the first") << QVariant(-1) << 0 << 0;
    QTest::newRow("least number") << QVariant(IntMin) << 0 << 0;
    QTest::newRow("none") << QVariant() << 0 << 50;
    QTest::newRow("as text") << QVariant(u"2"_s) << 100 << 20;
    QTest::newRow("no number") << QVariant(u"two"_s) << 0 << 50;
}

void TestBookmarkLists::showOnePage()
{
    QFETCH(const QVariant, pageNumber);
    QFETCH(const int, first);
    QFETCH(const int, count);

    QVariantList records;
    QStringList ids;
    for (int i = 0; i < 120; ++i) {
        ids.append(u"b%1"_s.arg(i, 3, 10, QLatin1Char('0')));
        records.prepend(serverRecord(ids.constLast(), u"1"_s, u"l"_s, 5, 6));
    }
    // One more that does not pass counts neither for the total nor for a page.
    records.append(serverRecord(u"b000"_s, u"1"_s, u"other"_s, 7, 8));

    PluginHarness harness;
    harness.storeBookmarks(records);
    QVariantMap filter = everything(u"bookmarkID"_s);
    filter.insert({{u"endTimestamp"_s, 6}, {u"pageNumber"_s, pageNumber}});
    QStringList expected{u"120:"_s};
    for (const QString &id : ids.mid(first, count))
        expected.append(id + u'[' + id + u']');
    QCOMPARE(filtered(harness, filter), expected.join(u' '));
}

void TestBookmarkLists::haveValuesOfTheseTypes()
{
    PluginHarness harness;
    for (const QVariantMap &filter : {QVariantMap(), everything(u"displayDate"_s)}) {
        QCOMPARE(describe(harness.call<QVariantMap>("getFilteredBookmarkList", filter)),
                 u"{bookmarkGroupList: [], totalBookmarkNumber: qlonglong 0}"_s);
    }
    harness.storeBookmarks({serverRecord(u"b"_s, u"1"_s, u"l"_s, 0, 0)});
    const auto stored = harness.call<QVariantList>("getBookmarkListByNodeID", QString());
    QCOMPARE(stored.size(), 1);
    const QVariantMap group{{u"title"_s, u"b"_s}, {u"bookmarkList"_s, stored}};
    const QVariantMap page{{u"totalBookmarkNumber"_s, qint64(1)},
                           {u"bookmarkGroupList"_s, QVariantList{group}}};
    QCOMPARE(
        describe(harness.call<QVariantMap>("getFilteredBookmarkList", everything(u"bookmarkID"_s))),
        describe(page));
}

void TestBookmarkLists::ofOneCameraPutTheRecentInOrder()
{
    const auto record = [](const QString &id, const QString &cameraID, qint64 start) {
        return serverRecord(id, cameraID, u"l"_s, start, start);
    };
    PluginHarness harness;
    harness.storeBookmarks(
        {record(u"b2"_s, u"1"_s, 5), record(u"b0"_s, u"2"_s, 5), record(u"b1"_s, u"1"_s, 999)});
    harness.answer(u"QueryBookmarkForRecent"_s,
                   QVariantMap{{u"Bookmarks"_s, QVariantList{record(u"r1000"_s, u"1"_s, 1000),
                                                             record(u"r5"_s, u"1"_s, 5),
                                                             record(u"r999"_s, u"9"_s, 999)}}},
                   u"A"_s);
    const auto recent = [&] {
        return idsOf(harness.call<QVariantList>("getBookmarkListForRecent"));
    };
    const auto ofCamera = [&](const QString &nodeID) {
        return idsOf(harness.call<QVariantList>("getBookmarkListByNodeID", nodeID));
    };

    filtered(harness, everything(u"startTimestamp"_s));
    QCOMPARE(recent(), u"r1000 r5 r999"_s);
    QCOMPARE(ofCamera(u"A/1"_s), u"b2 b1"_s);
    QCOMPARE(recent(), u"r999 r5 r1000"_s);
    QCOMPARE(ofCamera(u"1"_s), QString());
    QCOMPARE(ofCamera({}), u"b2 b0 b1"_s);
}

QTEST_GUILESS_MAIN(TestBookmarkLists)
#include "tst_bookmarklists.moc"
