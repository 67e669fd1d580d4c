#include "Checks.h"
#include "Describe.h"
#include "LoggingHost.h"
#include "ReferenceModel.h"
#include "TimeShiftBufferModel.h"
#include "WatchedTopology.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QTimeZone>

#include <limits>

// Level 4: records in lists and timelines, compared with the reference model; the topology plug-in.

namespace check {

using namespace driver;
using namespace Qt::StringLiterals;

namespace {

/// Describes a value with its type. Null texts look like empty ones.
QString textOf(const QVariant &value)
{
    return describe(value).replace(u"QString null"_s, u"QString \"\""_s);
}

/// Returns records with times around midnight and daylight saving changes, with extreme times,
/// without keys and with values of other types.
QList<QVariantMap> testRecords()
{
    QList<QVariantMap> records{
        serverRecord(u"b1"_s, u"1"_s, u"l"_s, 1704067199000, 1704070800000, u"d"_s, u"me"_s,
                     u"g"_s),
        serverRecord(u"b2"_s, u"2"_s, u""_s, 1711846800000, 1711843200000),
        serverRecord(u"b3"_s, u"1/2"_s, u"\u00d6\u4e2d"_s, -1, 4102444800000, u"a\nb"_s),
        serverRecord(u" b "_s, u" 1 "_s, u" l "_s, 1, 2, u" d "_s, u" me "_s, u" g "_s),
        QVariantMap(),
        QVariantMap{{u"BookmarkID"_s, 5},
                    {u"StartTimestamp"_s, u"1704067200000"_s},
                    {u"EndTimestamp"_s, 1.5e12},
                    {u"Description"_s, true},
                    {u"Other"_s, 1}},
    };
    // Extreme times, a year of five digits, the start of daylight saving time, the last change of
    // clocks in the zone's file and a summer after it.
    constexpr qint64 Min = std::numeric_limits<qint64>::min();
    constexpr qint64 Max = std::numeric_limits<qint64>::max();
    for (const qint64 moment : {Min, Max, 253402300800000LL, 1774745999999LL, 1774746000000LL,
                                2140045200000LL, 2161598400000LL})
        records.append(serverRecord(u"m"_s, u"1"_s, u"l"_s, moment, -1));
    for (int day = 0; day < 20; ++day)
        records.append(serverRecord(QString::number(day), u"1"_s, u"l"_s, 86399999LL * day * 17,
                                    86400000LL * day * 17));
    return records;
}

/// Returns the names of stations and cameras in the topology.
QVariantMap namesOf(Host &host)
{
    return host.topology.getValuesFromModel(0, u"idRole"_s, u"nameRole"_s);
}

void compareRecords(CheckContext &context, const QString &title, const QVariantList &expected,
                    const QVariantList &found)
{
    context.expect(found.size() == expected.size(), QString::number(expected.size()),
                   QString::number(found.size()));
    for (qsizetype i = 0; i < expected.size(); ++i)
        context.compare(u"%1, record %2"_s.arg(title).arg(i), textOf(expected.at(i)),
                        textOf(found.value(i)));
}

void checkDisplayRecords(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const char *camera : {"1", "A/1/2", "%2/1", "A/ 1 ", "Z/1", "x/y//1/2"})
        host->topology.setCamera(QLatin1String(camera), u"Camera "_s + QLatin1String(camera));
    for (const char *station : {"%2", "x/y/", ""})
        host->topology.setStation(QLatin1String(station), u"%1 "_s + QLatin1String(station));
    const QList<QVariantMap> records = testRecords();
    const QVariantMap answer{
        {u"Bookmarks"_s, QVariantList(records.constBegin(), records.constEnd())}};
    for (const char *id : {"", "Asia/Kathmandu", "America/New_York", "Europe/Berlin"}) {
        host->answer(u"QuerySevTimezone"_s, QByteArray(id), {});
        const QTimeZone zone{*id ? QByteArray(id) : QTimeZone::systemTimeZoneId()};
        for (const QString &relayPath : {u"A"_s, u"a"_s, u"%2"_s, QString(), u"Z"_s, u"x/y/"_s}) {
            QVariantList expected;
            for (const QVariantMap &record : records)
                expected.append(
                    referencemodel::displayRecord(record, relayPath, namesOf(*host), zone));
            const QString title = u"station '%1', zone '%2'"_s.arg(relayPath, QLatin1String(id));
            host->framework.clearSent();
            host->play(u"queryBookmarkForRecent('', '', 1)\nqueryAllBookmarks()"_s);
            host->answer(u"QueryBookmarkForRecent"_s, answer, relayPath);
            compareRecords(context, title, expected,
                           host->call(u"getBookmarkListForRecent()"_s).toList());
            standin::SentCommand query = host->framework.sent().value(1);
            query.relayPath = relayPath;
            host->answer(query, answer);
            compareRecords(context, title + u", all"_s, expected,
                           host->call(u"getBookmarkListByNodeID('')"_s).toList());
        }
    }
    context.summarize(u"%1 records in four time zones"_s.arg(records.size()));
}

/// Describes an item, one role on each line.
QString itemText(const QMap<int, QVariant> &item)
{
    QStringList lines;
    for (auto role = item.cbegin(); role != item.cend(); ++role)
        lines.append(u"role %1: %2"_s.arg(QString::number(role.key()), textOf(*role)));
    return lines.join(u'\n');
}

void checkTimelineItems(CheckContext &context)
{
    constexpr int MaxRole = 400;
    constexpr int FirstOwnRole = 269;
    const QStringList ownRoles =
        u"bookmarkIDRole cameraIDRole relayPathRole descRole creatorRole groupRole cameraNameRole "
        "dispDateRole dispDateTimeRole locationIDRole dispTimeRangeRole"_s.split(u' ');
    LoggingHost host(context);
    if (!host)
        return;
    const QTimeZone zone("Asia/Kathmandu");
    host->answer(u"QuerySevTimezone"_s, QByteArray("Asia/Kathmandu"), {});
    const QList<QVariantMap> records = testRecords();
    for (const QVariantMap &record : records) {
        const QString location = record.value(u"LocationID"_s).toString();
        host->call(u"removeTimelineModel('cell')"_s);
        const QAbstractItemModel *const model = host->showCell(u"cell"_s, location, u"A"_s);
        if (!context.expect(model, u"a list model"_s, u"none"_s))
            return;
        host->framework.sendEvent(u"AddBookmark"_s, record, u"A"_s);
        QMap<int, QVariant> item;
        for (int role = 0; role < MaxRole; ++role) {
            if (const QVariant value = model->index(0, 0).data(role); value.isValid())
                item.insert(role, value);
        }
        context.compare(
            u"item"_s, itemText(referencemodel::timelineItem(record, u"A"_s, namesOf(*host), zone)),
            itemText(item));
        QHash<int, QByteArray> names = TimeShiftBufferModel::defaultRoleHash();
        for (int i = 0; i < ownRoles.size(); ++i)
            names.insert(FirstOwnRole + i, ownRoles.at(i).toLatin1());
        for (auto name = names.cbegin(); name != names.cend(); ++name)
            context.compare(u"name of role %1"_s.arg(name.key()), QString::fromLatin1(*name),
                            QString::fromLatin1(model->roleNames().value(name.key())));
    }
    context.summarize(u"18 roles of %1 items"_s.arg(records.size()));
}

/// Returns the expected text of a record's time range.
QString timeRange(const QVariantMap &record, const QTimeZone &zone)
{
    const QVariantMap shown = referencemodel::displayRecord(record, {}, {}, zone);
    return shown[u"displayTimeRange"_s].toString();
}

void checkTimeZone(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"l"_s, 1704067200000, 1704067200000);
    const QByteArray system = QTimeZone::systemTimeZoneId();
    struct Row
    {
        QVariant answer;
        QByteArray zone;
    };
    const Row rows[] = {{QVariant(), system},
                        {QByteArray("Pacific/Chatham"), "Pacific/Chatham"},
                        {QByteArray(), "Pacific/Chatham"},
                        {u"America/Caracas"_s, "America/Caracas"},
                        {QVariantMap(), "America/Caracas"},
                        {QByteArray(""), "America/Caracas"},
                        {u""_s, "America/Caracas"},
                        {QByteArray(" Asia/Tokyo "), " Asia/Tokyo "},
                        {QByteArray("Asia/Tokyo"), "Asia/Tokyo"},
                        {QByteArray("Nowhere/City"), "Nowhere/City"}};
    for (const Row &row : rows) {
        host->call(u"queryBookmarkForRecent('', '', 1)"_s);
        host->answer(u"QuerySevTimezone"_s, row.answer, {}, nullptr, u"-1"_s);
        host->answer(u"QueryBookmarkForRecent"_s,
                     QVariantMap{{u"Bookmarks"_s, QVariantList{record}}}, {});
        const auto list = host->call(u"getBookmarkListForRecent()"_s).toList();
        context.compare(u"after the answer "_s + describe(row.answer),
                        timeRange(record, QTimeZone(row.zone)),
                        list.value(0).toMap().value(u"displayTimeRange"_s).toString());
    }
    context.summarize(u"the server's zone when it is known, before that the system's"_s);
}

void checkTopology(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    // Each call walks over the whole topology, so the plug-in must make one for each answer, not
    // for each record.
    const auto callsOf = [&](const char *steps) {
        const int before = host->topology.callCount();
        host->play(QLatin1String(steps));
        return QString::number(host->topology.callCount() - before);
    };
    host->play(u"show cell l A\nshow other l A"_s);
    context.compare(u"topology calls of a query of all"_s, u"1"_s, callsOf("queryAllBookmarks()"));
    context.compare(u"topology calls of its answers"_s, u"3"_s,
                    callsOf("answer 1 ok {'Bookmarks': [{}, {}, {}]}\n"
                            "answer 2 ok {'Bookmarks': [{}, {}]}\nanswer 3 ok {}"));
    context.compare(u"topology calls of an event"_s, u"1"_s,
                    callsOf("event AddBookmark@A {'LocationID': 'l'}"));

    // A camera is renamed between two answers.
    const char *const answer =
        "answer QueryBookmarkForRecent@A ok {'Bookmarks': [{'CameraID': '1'}]}";
    host->play(QLatin1String(answer));
    host->topology.rename(u"A/1"_s, u"Renamed"_s);
    host->play(QLatin1String(answer));
    QStringList names;
    for (const QVariant &record : host->call(u"getBookmarkListForRecent()"_s).toList())
        names.append(record.toMap().value(u"cameraName"_s).toString());
    context.compare(u"names of a renamed camera"_s, u"Station A - Camera A1,Station A - Renamed"_s,
                    names.join(u','));

    host->topology.setNode({u"D"_s, u"Text"_s, u"1"_s});
    host->topology.setNode({u"E"_s, u"Other"_s, u"one"_s});
    host->topology.setNode({u"F"_s, u"Other"_s, 3});
    host->topology.setStation(u" G "_s, u"Blanks"_s);
    const QVariant noStations[] = {0, 2, -1, u"x"_s, QVariant(), QVariantMap()};
    for (const QVariant &type : noStations)
        host->topology.setNode({u"no "_s + describe(type), {}, type});
    host->topology.remove(u"B"_s);
    host->framework.clearSent();
    host->play(u"queryAllBookmarks()"_s);
    QStringList stations;
    const QList<standin::SentCommand> sent = host->framework.sent();
    for (const standin::SentCommand &command : sent)
        stations.append(command.relayPath);
    context.compare(u"stations"_s, u" G ,A,C,D"_s, stations.join(u','));

    // Texts with placeholders and characters outside of ASCII reach the log unchanged.
    const QString odd = u"S\u00fcd %1 %s%n"_s;
    standin::SentCommand query = sent.constFirst();
    query.relayPath = odd;
    host->takeTrace();
    host->answer(query, {}, u"-1"_s);
    context.compare(u"the log of a failed query"_s,
                    u"log Tessaline_ReqRespHandler: %s, query all bookmarks for server (%s) failed "
                    "<Tessaline::HandleQueryAllBookmarksResp, "_s +
                        odd +
                        u">\n"
                        "signal queryAllBookmarksResponsed(false)"_s,
                    host->takeTrace().join(u'\n'));

    WatchedTopology watched(host->topology);
    host->framework.addPlugin(standin::Topology::pluginID(), &watched);
    host->play(u"queryAllBookmarks()\n"_s + QLatin1String(answer));
    context.compare(u"arguments of the topology calls"_s,
                    u"0 nodeIDRole nodeTypeRole,0 idRole nameRole"_s, watched.calls.join(u','));
    context.summarize(u"stations by their type; one topology call for each answer"_s);
}

} // namespace

std::vector<Check> recordChecks()
{
    return {
        {"4.display-records", "Display records have the expected values and types",
         checkDisplayRecords},
        {"4.timeline-items", "Timeline items have the expected values of all roles",
         checkTimelineItems},
        {"4.time-zone", "Times are shown in the server's time zone", checkTimeZone},
        {"4.topology", "Stations and names come from the topology plug-in", checkTopology},
    };
}

} // namespace check
