#include "DataTable.h"
#include "Describe.h"
#include "PluginHarness.h"

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QVariantMap record(const QString &id, qint64 start, const QString &cameraID = u"1"_s,
                   const QString &description = {}, const QString &creator = {})
{
    return serverRecord(id, cameraID, u"l"_s, start, start + 2000, description, creator,
                        u"Secret"_s);
}

QVariant bookmarks(const QVariantList &records)
{
    return QVariantMap{{u"Bookmarks"_s, records}};
}

QString idsOf(const QVariantList &records)
{
    QStringList ids;
    for (const QVariant &record : records)
        ids.append(record.toMap().value(u"bookmarkID"_s).toString());
    return ids.join(u' ');
}

/// A filter as QML writes it; where it says nothing else, all times pass and each bookmark is in a
/// group of its own, in ascending order.
QVariantMap filterOf(const QString &json)
{
    QVariantMap filter{{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
                       {u"endTimestamp"_s, std::numeric_limits<qint64>::max()},
                       {u"groupKey"_s, u"bookmarkID"_s},
                       {u"ascending"_s, true}};
    filter.insert(mapOf(json));
    return filter;
}

/// The answer as "4: title[b1 b2] other title[b3] b4"; the last is a group titled like itself.
QString filtered(PluginHarness &harness, const QVariantMap &filter)
{
    const auto page = harness.call<QVariantMap>("getFilteredBookmarkList", filter);
    QStringList parts{page.value(u"totalBookmarkNumber"_s).toString() + u':'};
    const QVariantList groups = page.value(u"bookmarkGroupList"_s).toList();
    for (const QVariant &element : groups) {
        const QVariantMap group = element.toMap();
        const QString title = group.value(u"title"_s).toString();
        const QString ids = idsOf(group.value(u"bookmarkList"_s).toList());
        parts.append(title == ids ? ids : title + u'[' + ids + u']');
    }
    return parts.join(u' ');
}

} // namespace

/// The lists that QML reads: filtered, sorted, grouped, a page at a time.
class TestBookmarkLists : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepWhatPassesTheFilter_data()
    {
        addTable({"filter", "answer"}, uR"(
        no condition   | {}                                              | 5: a1 a2 direct odd zero
        both ends      | {"startTimestamp": 1000, "endTimestamp": 3000}  | 3: a1 direct odd
        between starts | {"startTimestamp": 1001, "endTimestamp": 2999}  | 1: odd
        running into   | {"startTimestamp": 4000, "endTimestamp": 5000}  | 0:
        inverted       | {"startTimestamp": 3000, "endTimestamp": 1000}  | 0:
        no bounds      | {"startTimestamp": null, "endTimestamp": null}  | 1: zero
        bounds as text | {"startTimestamp": "-5", "endTimestamp": "0"}   | 2: a2 zero
        no numbers     | {"startTimestamp": [1], "endTimestamp": "late"} | 1: zero
        description    | {"text": "abcz"}                                | 1: a1
        beyond ASCII   | {"text": "ÖSTEN"}                               | 1: odd
        creator        | {"text": "zoË"}                                 | 1: odd
        camera name    | {"text": "camera a1"}                           | 1: a1
        station name   | {"text": "station A - "}                        | 2: a1 a2
        time range     | {"text": "01:00:03 -"}                          | 1: a1
        group          | {"text": "secret"}                              | 0:
        identifier     | {"text": "direct"}                              | 0:
        date           | {"text": "1/1/70"}                              | 0:
        across fields  | {"text": "camera a1ann"}                        | 0:
        no pattern     | {"text": "."}                                   | 0:
        a mark         | {"text": "?"}                                   | 0:
        half a letter  | {"text": "\u0080\u0080"}                      | 0:
        a replacement  | {"text": "\uFFFD"}                              | 0:
        number as text | {"text": 100}                                   | 1: odd
        list as text   | {"text": [1]}                                   | 5: a1 a2 direct odd zero
        node           | {"nodeID": "A/1"}                               | 1: a1
        slashes        | {"nodeID": "A/1/2"}                             | 1: a2
        another case   | {"nodeID": "a/1"}                               | 0:
        station only   | {"nodeID": "A"}                                 | 0:
        connected      | {"nodeID": "1"}                                 | 2: direct zero
        empty path     | {"nodeID": "/1"}                                | 0:
        placeholders   | {"nodeID": "%1/%2"}                             | 1: odd
        number as node | {"nodeID": 1}                                   | 2: direct zero
        all            | {"endTimestamp": 9999, "text": "x", "nodeID": "A/1"} | 1: a1
        contradiction  | {"text": "abc", "nodeID": "1"}                  | 0:
        )"_s);
    }
    void keepWhatPassesTheFilter()
    {
        QFETCH(const QString, filter);
        QFETCH(const QString, answer);

        // Once more with a text that has no UTF-8 form, which is searched in another way.
        for (const QString &note : {QString(), QString(QChar(0xd800))}) {
            const QMap<QString, QVariantList> records{
                {QString(), {record(u"zero"_s, 0, u"1"_s, note), record(u"direct"_s, 1000)}},
                {u"%1"_s, {record(u"odd"_s, 2000, u"%2"_s, u"100 %1 Östen \u1000"_s, u"Zoë"_s)}},
                {u"A"_s,
                 {record(u"a1"_s, 3000, u"1"_s, u"xABCZx"_s, u"ann"_s),
                  record(u"a2"_s, -5, u"1/2"_s)}}};
            PluginHarness harness;
            harness.topology.setStation({}, u"Centre"_s);
            harness.topology.setStation(u"%1"_s, u"Odd"_s);
            harness.call<bool>("queryAllBookmarks");
            const auto queries = harness.sent();
            for (const standin::SentCommand &query : queries)
                harness.answer(query, bookmarks(records.value(query.relayPath)));
            QCOMPARE(filtered(harness, filterOf(filter)), answer);
        }
    }

    void areInOrderAndGrouped_data()
    {
        // "1/2/26" has lost its century and counts as 1926. Those of equal rank keep the order of
        // the first sort: by the text of their start, descending.
        addTable({"key", "ascending", "answer"}, uR"(
        date        | displayDate      | true  | 6: 1/2/26[n d] 1/1/70[l s] 2/1/99[f] 10/1/99[o]
        descending  | displayDate      | false | 6: 10/1/99[o] 2/1/99[f] 1/1/70[l s] 1/2/26[n d]
        range       | displayTimeRange | true  | 6: 1/2/26[n d] 1/1/70[l s] 2/1/99[f] 10/1/99[o]
        range down  | displayTimeRange | false | 6: 10/1/99[o] 2/1/99[f] 1/1/70[l s] 1/2/26[n d]
        text        | description      | true  | 6: [n] B[o] a[f s] b[l] ä[d]
        text down   | description      | false | 6: ä[d] b[l] a[f s] B[o] [n]
        as text     | description      | "0"   | 6: ä[d] b[l] a[f s] B[o] [n]
        no order    | description      | null  | 6: ä[d] b[l] a[f s] B[o] [n]
        unknown key | Description      | true  | 6: [n d o f l s]
        no key      |                  | true  | 6: [n d o f l s]
        )"_s);
    }
    void areInOrderAndGrouped()
    {
        QFETCH(const QString, key);
        QFETCH(const QString, ascending);
        QFETCH(const QString, answer);

        PluginHarness harness;
        harness.storeBookmarks({record(u"f"_s, 917870400000, u"1"_s, u"a"_s), // 1999-02-01
                                record(u"l"_s, 1000, u"1"_s, u"b"_s),
                                record(u"n"_s, 1767351600000, u"1"_s, u""_s), // 2026-01-02
                                record(u"s"_s, 999, u"1"_s, u"a"_s),
                                record(u"o"_s, 938779200000, u"1"_s, u"B"_s), // 1999-10-01
                                record(u"d"_s, 1767322800000, u"1"_s, u"ä"_s)});
        QVariantMap filter = filterOf(u"{\"ascending\": %1}"_s.arg(ascending));
        filter.insert(u"groupKey"_s, key);
        QCOMPARE(filtered(harness, filter), answer);
    }

    void showOnePage()
    {
        QVariantList records;
        QStringList ids;
        for (int i = 0; i < 120; ++i) {
            ids.append(u"b%1"_s.arg(i, 3, 10, QLatin1Char('0')));
            records.prepend(record(ids.constLast(), 5));
        }
        records.append(record(u"b000"_s, 7)); // counts neither for the total nor for a page

        PluginHarness harness;
        harness.storeBookmarks(records);
        const auto page = [&](const char *number) {
            const QString json = u"{\"endTimestamp\": 6, \"pageNumber\": %1}"_s;
            return filtered(harness, filterOf(json.arg(QLatin1String(number))));
        };
        const auto slice = [&](int first, int count) {
            return (QStringList{u"120:"_s} + ids.mid(first, count)).join(u' ');
        };
        for (const char *first : {"0", "null", "\"one\"", "3", "2147483647"})
            QCOMPARE(page(first), slice(0, 50));
        for (const char *last : {"2", "\"2\""})
            QCOMPARE(page(last), slice(100, 20));
        for (const char *none : {"-1", "-2147483648"})
            QCOMPARE(page(none), slice(0, 0));
    }

    void haveValuesOfTheseTypes()
    {
        PluginHarness harness;
        const auto page = [&] {
            return describe(
                harness.call<QVariantMap>("getFilteredBookmarkList", filterOf(u"{}"_s)));
        };
        QCOMPARE(page(), u"{bookmarkGroupList: [], totalBookmarkNumber: qlonglong 0}"_s);
        harness.storeBookmarks({record(u"b"_s, 0)});
        const auto stored = harness.call<QVariantList>("getBookmarkListByNodeID", QString());
        QCOMPARE(stored.size(), 1);
        const QVariantMap group{{u"title"_s, u"b"_s}, {u"bookmarkList"_s, stored}};
        QCOMPARE(page(), describe(QVariantMap{{u"totalBookmarkNumber"_s, qint64(1)},
                                              {u"bookmarkGroupList"_s, QVariantList{group}}}));
    }

    void recordKeepsTheTextsOfItsAnswer()
    {
        PluginHarness harness;
        const auto query = [&] {
            harness.call<bool>("queryAllBookmarks");
            const auto queries = harness.sent();
            harness.framework.clearSent();
            return queries.constFirst();
        };
        const auto shown = [&](const QString &key) {
            QStringList texts;
            const auto list = harness.call<QVariantList>("getBookmarkListByNodeID", QString());
            for (const QVariant &each : list)
                texts.append(each.toMap().value(key).toString());
            return texts.join(u", "_s);
        };
        // Between two answers to one query the zone changes and a camera is renamed.
        const standin::SentCommand running = query();
        harness.setServerTimeZone("UTC");
        harness.answer(running, bookmarks({record(u"b1"_s, 0)}));
        harness.setServerTimeZone("Asia/Tokyo");
        harness.topology.setCamera(running.relayPath + u"/1"_s, u"Renamed"_s);
        harness.answer(running, bookmarks({record(u"b2"_s, 0)}));
        harness.setServerTimeZone("America/New_York");
        QCOMPARE(shown(u"displayTimeRange"_s), u"00:00:00 - 00:00:02, 09:00:00 - 09:00:02"_s);
        QCOMPARE(shown(u"displayDate"_s), u"1/1/70, 1/1/70"_s);
        for (const auto &[text, found] : {std::pair{u"09:00"_s, u"1: b2"_s},
                                          {u"00:00:00 -"_s, u"1: b1"_s},
                                          {u"renamed"_s, u"1: b2"_s},
                                          {u":00:0"_s, u"2: b1 b2"_s},
                                          {u"19:00"_s, u"0:"_s}})
            QCOMPARE(filtered(harness, filterOf(u"{\"text\": \"%1\"}"_s.arg(text))), found);
    }

    void ofOneCameraPutTheRecentInOrder()
    {
        PluginHarness harness;
        harness.storeBookmarks(
            {record(u"b2"_s, 5), record(u"b0"_s, 5, u"2"_s), record(u"b1"_s, 1000)});
        harness.answer(
            u"QueryBookmarkForRecent"_s,
            bookmarks({record(u"r1000"_s, 1000), record(u"r5"_s, 5), record(u"r999"_s, 999)}));
        const auto recent = [&] {
            return idsOf(harness.call<QVariantList>("getBookmarkListForRecent"));
        };
        const auto ofCamera = [&](const QString &nodeID) {
            return idsOf(harness.call<QVariantList>("getBookmarkListByNodeID", nodeID));
        };
        QCOMPARE(filtered(harness, filterOf(u"{\"groupKey\": \"startTimestamp\"}"_s)),
                 u"3: 1000[b1] 5[b2 b0]"_s); // as texts, and leaves the recent alone
        QCOMPARE(recent(), u"r1000 r5 r999"_s);
        QCOMPARE(ofCamera(u"A/1"_s), u"b2 b1"_s);
        QCOMPARE(recent(), u"r999 r5 r1000"_s);
        QCOMPARE(ofCamera(u"1"_s), QString());
        QCOMPARE(ofCamera({}), u"b2 b0 b1"_s);
    }
};

QTEST_GUILESS_MAIN(TestBookmarkLists)
#include "tst_bookmarklists.moc"
