#include "Checks.h"
#include "Describe.h"
#include "LoggingHost.h"
#include "ReferenceModel.h"

#include <QtCore/QRandomGenerator>

#include <limits>

// Level 4: the bookmark panel's lists, compared with the reference model.

namespace check {

using namespace Qt::StringLiterals;

namespace {

/// Compares a page with the reference model.
void comparePage(CheckContext &context, Host &host, const QVariantList &stored,
                 const QVariantMap &filter)
{
    const QVariantMap page = host.call("getFilteredBookmarkList", {filter}).toMap();
    context.compare(describe(filter), QString(),
                    referencemodel::differenceOf(page, stored, filter));
}

constexpr qint64 Day = 86400000;

/// Answers a query of all with @p count bookmarks for each of three stations, before and after
/// 2000.
/// @return the plug-in's list of all bookmarks
QVariantList fill(Host &host, int count, QRandomGenerator &random)
{
    // Case folding of ASCII, of other letters, of a letter with two small forms, of code points
    // above 16 bits, and of a letter that must not be folded to "ss".
    const QString words[] = {u"ann"_s, u"Z\u00f6e"_s, u"\u039f\u0394\u039f\u03a3"_s,
                             u"\U00010400x"_s, u"Stra\u00dfe"_s};
    host.call(u"queryAllBookmarks()"_s);
    const QList<standin::SentCommand> sent = host.framework.sent();
    for (const standin::SentCommand &query : sent) {
        QVariantList records;
        for (int i = 0; i < count; ++i)
            records.append(serverRecord(
                u"id-"_s + query.relayPath + QString::number(i), QString::number(random.bounded(3)),
                u"place"_s, Day * random.bounded(20000) + random.bounded(1000), Day * 20000,
                u"Text %1 %2"_s.arg(random.bounded(7)).arg(words[random.bounded(5)]),
                words[random.bounded(5)], u"group %1"_s.arg(random.bounded(4))));
        host.answer(query, QVariantMap{{u"Bookmarks"_s, records}});
    }
    return host.call(u"getBookmarkListByNodeID('')"_s).toList();
}

QVariantMap everything()
{
    return {{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
            {u"endTimestamp"_s, std::numeric_limits<qint64>::max()},
            {u"groupKey"_s, u"displayDate"_s},
            {u"ascending"_s, true}};
}

void checkFilters(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    QRandomGenerator random(context.seed());
    const QVariantList stored = fill(*host, 15, random);
    struct Row
    {
        const char *key;
        QVariant value;
    };
    const Row rows[] = {{"text", u"TEXT 3"_s},
                        {"text", u"z\u00d6E"_s},
                        {"text", u"station a - camera"_s},
                        {"text", u":00 - "_s},
                        {"text", u"nowhere"_s},
                        {"text", QString()},
                        {"text", u"A1"_s},
                        {"text", u"\u03bf\u03b4\u03bf\u03c2"_s},
                        {"text", u"\U00010428X"_s},
                        {"text", u"STRA\u1e9eE"_s},
                        {"text", u"strasse"_s},
                        // Across two fields, across the descriptions of two bookmarks, and in
                        // fields that are not searched.
                        {"text", u"1ann"_s},
                        {"text", u"annText"_s},
                        {"text", u"id-"_s},
                        {"text", u"place"_s},
                        {"text", u"group"_s},
                        {"text", u"/"_s},
                        {"text", u" am"_s},
                        {"nodeID", u"A/1"_s},
                        {"nodeID", u"A"_s},
                        {"nodeID", u"1"_s},
                        {"nodeID", u"a/1"_s},
                        {"startTimestamp", Day * 4000},
                        {"endTimestamp", Day * 4000},
                        {"endTimestamp", std::numeric_limits<qint64>::min()},
                        {"ascending", QVariant()},
                        {"groupKey", QVariant()},
                        {"startTimestamp", QVariant()}};
    for (const Row &row : rows) {
        QVariantMap filter = everything();
        filter.insert(QLatin1String(row.key), row.value);
        if (!row.value.isValid())
            filter.remove(QLatin1String(row.key));
        comparePage(context, *host, stored, filter);
    }
    // Both ends belong to the range.
    const QVariant start = stored.value(0).toMap().value(u"startTimestamp"_s);
    QVariantMap exact = everything();
    exact.insert({{u"startTimestamp"_s, start}, {u"endTimestamp"_s, start}});
    comparePage(context, *host, stored, exact);
    comparePage(context, *host, stored, {});
    context.summarize(u"%1 filters on %2 bookmarks"_s.arg(std::size(rows) + 2).arg(stored.size()));
}

void checkSorting(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    QRandomGenerator random(context.seed());
    const QVariantList stored = fill(*host, 16, random);
    for (const char *key : {"displayDate", "displayTimeRange", "startTimestamp", "bookmarkID",
                            "description", "creator", "group", "cameraName", "locID", "nothing"}) {
        for (const bool ascending : {true, false}) {
            QVariantMap filter = everything();
            filter.insert(u"groupKey"_s, QLatin1String(key));
            filter.insert(u"ascending"_s, ascending);
            comparePage(context, *host, stored, filter);
        }
    }
    context.summarize(u"10 keys, ascending and descending"_s);
}

void checkPages(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    QRandomGenerator random(context.seed());
    const QVariantList stored = fill(*host, 40, random);
    // Groups of one bookmark and a few large groups: the page size counts bookmarks, not groups.
    for (const char *key : {"bookmarkID", "creator"}) {
        for (const QVariant &number :
             {QVariant(0), QVariant(1), QVariant(2), QVariant(3), QVariant(1000),
              QVariant(std::numeric_limits<int>::max()), QVariant(-1),
              QVariant(std::numeric_limits<int>::min()), QVariant(u"2"_s), QVariant(u"one"_s)}) {
            QVariantMap filter = everything();
            filter.insert(u"groupKey"_s, QLatin1String(key));
            filter.insert(u"pageNumber"_s, number);
            comparePage(context, *host, stored, filter);
        }
    }
    host->recreateObject();
    comparePage(context, *host, {}, everything());
    context.summarize(u"pages of 120 bookmarks and of none"_s);
}

void checkNodeList(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    host->play(
        u"queryAllBookmarks()\nanswer 1 ok {'Bookmarks': [{'BookmarkID': 'b2', 'CameraID': '1', "
        "'StartTimestamp': 5}, {'BookmarkID': 'b0'}, {'BookmarkID': 'b1', 'CameraID': '1', "
        "'StartTimestamp': 1000}]}\nanswer QueryBookmarkForRecent@ ok {'Bookmarks': ["
        "{'BookmarkID': 'r1000', 'StartTimestamp': 1000}, {'BookmarkID': 'r5', "
        "'StartTimestamp': 5}, {'BookmarkID': 'r999', 'StartTimestamp': 999}]}"_s);
    const auto identifiersOf = [&](const QString &call) {
        QStringList identifiers;
        const QVariantList list = host->call(call).toList();
        for (const QVariant &record : list)
            identifiers.append(record.toMap().value(u"bookmarkID"_s).toString());
        return identifiers.join(u' ');
    };
    const QString recent = u"getBookmarkListForRecent()"_s;
    context.compare(u"recent list before"_s, u"r1000 r5 r999"_s, identifiersOf(recent));
    context.compare(u"list of one camera"_s, u"b2 b1"_s,
                    identifiersOf(u"getBookmarkListByNodeID('A/1')"_s));
    context.compare(u"recent list after, newest first by the text of the start"_s,
                    u"r999 r5 r1000"_s, identifiersOf(recent));
    context.compare(u"list of an unknown camera"_s, QString(),
                    identifiersOf(u"getBookmarkListByNodeID('A')"_s));
    context.compare(u"list of all cameras"_s, u"b2 b0 b1"_s,
                    identifiersOf(u"getBookmarkListByNodeID('')"_s));
    context.summarize(u"the list of one camera, which also sorts the recent list"_s);
}

} // namespace

std::vector<Check> listChecks()
{
    return {
        {"4.filters", "Pages are filtered by time, text and camera", checkFilters},
        {"4.sorting", "Pages are sorted and grouped by every key", checkSorting},
        {"4.pages", "Pages have 50 bookmarks; pages after the last give the first", checkPages},
        {"4.node-list", "The list of one camera also sorts the recent list", checkNodeList},
    };
}

} // namespace check
