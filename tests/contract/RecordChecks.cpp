#include "Checks.h"
#include "Describe.h"
#include "LoggingHost.h"
#include "TimeShiftBufferModel.h"
#include "WatchedTopology.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QTimeZone>

// Level 4: what each answer and event does.

namespace check {

using namespace driver;
using namespace Qt::StringLiterals;

namespace {

/// A moment as the panels show it, in the server's zone and the machine's language.
struct ShownTime
{
    ShownTime(qint64 milliseconds, const QTimeZone &zone)
        : dateTime(QDateTime::fromMSecsSinceEpoch(milliseconds, zone))
    {
    }
    QString date() const
    {
        return QLocale::system().toString(dateTime.date(), QLocale::ShortFormat);
    }
    QString full() const { return QLocale::system().toString(dateTime, QLocale::ShortFormat); }
    QString time() const { return dateTime.toString(u"hh:mm:ss"_s); }

    QDateTime dateTime;
};

QString timeRange(const QVariantMap &record, const QTimeZone &zone)
{
    return ShownTime(record.value(u"StartTimestamp"_s).toLongLong(), zone).time() + u" - "_s +
           ShownTime(record.value(u"EndTimestamp"_s).toLongLong(), zone).time();
}

QVariantMap displayRecord(const QVariantMap &record, const QString &relayPath,
                          const QString &cameraName, const QTimeZone &zone)
{
    const qint64 start = record.value(u"StartTimestamp"_s).toLongLong();
    return {{u"bookmarkID"_s, record.value(u"BookmarkID"_s).toString()},
            {u"cameraID"_s, record.value(u"CameraID"_s).toString()},
            {u"relayPath"_s, relayPath},
            {u"startTimestamp"_s, start},
            {u"endTimestamp"_s, record.value(u"EndTimestamp"_s).toLongLong()},
            {u"description"_s, record.value(u"Description"_s).toString()},
            {u"creator"_s, record.value(u"Creator"_s).toString()},
            {u"group"_s, record.value(u"Group"_s).toString()},
            {u"cameraName"_s, cameraName},
            {u"displayDate"_s, ShownTime(start, zone).date()},
            {u"displayDateTime"_s, ShownTime(start, zone).full()},
            {u"locID"_s, record.value(u"LocationID"_s).toString()},
            {u"displayTimeRange"_s, timeRange(record, zone)}};
}

/// The same with null texts as empty ones.
QString textOf(const QVariant &value)
{
    return describe(value).replace(u"QString null"_s, u"QString \"\""_s);
}

/// Records worth showing: around midnight and the change of clocks, far times, nothing at all.
QList<QVariantMap> recordsToShow()
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
    for (int day = 0; day < 20; ++day)
        records.append(serverRecord(QString::number(day), u"1"_s, u"l"_s, 86399999LL * day * 17,
                                    86400000LL * day * 17));
    return records;
}

QString cameraNameOf(const QVariantMap &record, const QString &relayPath,
                     standin::Topology &topology)
{
    const QVariantMap names = topology.getValuesFromModel(0, u"idRole"_s, u"nameRole"_s);
    const QString cameraID = record.value(u"CameraID"_s).toString();
    return names.value(relayPath).toString() + u" - "_s +
           names.value(relayPath.isEmpty() ? cameraID : relayPath + u'/' + cameraID).toString();
}

void checkDisplayRecords(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const char *camera : {"1", "A/1/2", "%2/1", "A/ 1 "})
        host->topology.setCamera(QLatin1String(camera), u"Camera "_s + QLatin1String(camera));
    host->topology.setStation(u"%2"_s, u"Placeholder"_s);
    QVariantList answer;
    const QList<QVariantMap> records = recordsToShow();
    for (const QVariantMap &record : records)
        answer.append(record);
    for (const char *id : {"", "Asia/Kathmandu", "America/New_York", "Europe/Berlin"}) {
        host->answer(u"QuerySevTimezone"_s, QByteArray(id), {});
        const QTimeZone zone{*id ? QByteArray(id) : QTimeZone::systemTimeZoneId()};
        for (const QString &relayPath : {u"A"_s, u"%2"_s, QString()}) {
            host->call(u"queryBookmarkForRecent('', '', 1)"_s);
            host->answer(u"QueryBookmarkForRecent"_s, QVariantMap{{u"Bookmarks"_s, answer}},
                         relayPath);
            const QVariantList shown = host->call(u"getBookmarkListForRecent()"_s).toList();
            context.expect(shown.size() == records.size(), QString::number(records.size()),
                           QString::number(shown.size()));
            for (qsizetype i = 0; i < records.size(); ++i) {
                context.compare(u"record %1 in the zone '%2'"_s.arg(i).arg(QLatin1String(id)),
                                textOf(displayRecord(
                                    records.at(i), relayPath,
                                    cameraNameOf(records.at(i), relayPath, host->topology), zone)),
                                textOf(shown.value(i)));
            }
        }
    }
    context.summarize(u"%1 records in four time zones"_s.arg(records.size()));
}

/// The roles of a timeline's item and what they hold.
QMap<int, QVariant> itemData(const QVariantMap &record, const QString &relayPath,
                             const QString &cameraName, const QTimeZone &zone)
{
    const QVariantMap shown = displayRecord(record, relayPath, cameraName, zone);
    return {{257, shown.value(u"bookmarkID"_s)},
            {258, shown.value(u"cameraID"_s)},
            {261, shown.value(u"startTimestamp"_s)},
            {262, 0},
            {263, 0},
            {264, shown.value(u"endTimestamp"_s)},
            {265, 0},
            {269, shown.value(u"bookmarkID"_s)},
            {270, shown.value(u"cameraID"_s)},
            {271, shown.value(u"relayPath"_s)},
            {272, shown.value(u"description"_s)},
            {273, shown.value(u"creator"_s)},
            {274, shown.value(u"group"_s)},
            {275, shown.value(u"cameraName"_s)},
            {276, shown.value(u"displayDate"_s)},
            {277, shown.value(u"displayDateTime"_s)},
            {278, shown.value(u"locID"_s)},
            {279, shown.value(u"displayTimeRange"_s)}};
}

void checkTimelineItems(CheckContext &context)
{
    static const char *const ownRoles[] = {"bookmarkIDRole", "cameraIDRole",     "relayPathRole",
                                           "descRole",       "creatorRole",      "groupRole",
                                           "cameraNameRole", "dispDateRole",     "dispDateTimeRole",
                                           "locationIDRole", "dispTimeRangeRole"};
    LoggingHost host(context);
    if (!host)
        return;
    const QTimeZone zone("Asia/Kathmandu");
    host->answer(u"QuerySevTimezone"_s, QByteArray("Asia/Kathmandu"), {});
    const QList<QVariantMap> records = recordsToShow();
    for (const QVariantMap &record : records) {
        const QString location = record.value(u"LocationID"_s).toString();
        host->call(u"removeTimelineModel('cell')"_s);
        const QAbstractItemModel *const model = host->showCell(u"cell"_s, location, u"A"_s);
        if (!context.expect(model, u"a list model"_s, u"none"_s))
            return;
        host->framework.sendEvent(u"AddBookmark"_s, record, u"A"_s);
        const auto data =
            itemData(record, u"A"_s, cameraNameOf(record, u"A"_s, host->topology), zone);
        for (auto entry = data.cbegin(); entry != data.cend(); ++entry)
            context.compare(u"role %1"_s.arg(entry.key()), textOf(*entry),
                            textOf(model->index(0, 0).data(entry.key())));
        for (int i = 0; i < 11; ++i)
            context.compare(u"name of role %1"_s.arg(269 + i), QLatin1String(ownRoles[i]),
                            QString::fromLatin1(model->roleNames().value(269 + i)));
        const auto roles = TimeShiftBufferModel::defaultRoleHash();
        for (auto role = roles.cbegin(); role != roles.cend(); ++role)
            context.compare(u"name of the model's own role %1"_s.arg(role.key()),
                            QString::fromLatin1(*role),
                            QString::fromLatin1(model->roleNames().value(role.key())));
    }
    context.summarize(u"18 roles of %1 items"_s.arg(records.size()));
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
    context.summarize(u"the server's zone once it is known, the system's before"_s);
}

void checkDirectory(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    // A walk over the whole tree for each call: so one for each answer, not one for each record.
    const auto callsOf = [&](const char *steps) {
        const int before = host->topology.callCount();
        host->play(QLatin1String(steps));
        return QString::number(host->topology.callCount() - before);
    };
    host->play(u"show cell l A\nshow other l A"_s);
    context.compare(u"questions of a query of all"_s, u"1"_s, callsOf("queryAllBookmarks()"));
    context.compare(u"questions of its answers"_s, u"3"_s,
                    callsOf("answer 1 ok {'Bookmarks': [{}, {}, {}]}\n"
                            "answer 2 ok {'Bookmarks': [{}, {}]}\nanswer 3 ok {}"));
    context.compare(u"questions of an event"_s, u"1"_s,
                    callsOf("event AddBookmark@A {'LocationID': 'l'}"));

    // Renamed between two answers.
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
    host->topology.remove(u"B"_s);
    host->framework.clearSent();
    host->play(u"queryAllBookmarks()"_s);
    QStringList stations;
    const QList<standin::SentCommand> sent = host->framework.sent();
    for (const standin::SentCommand &command : sent)
        stations.append(command.relayPath);
    context.compare(u"stations"_s, u" G ,A,C,D"_s, stations.join(u','));

    WatchedTopology watched(host->topology);
    host->framework.addPlugin(standin::Topology::pluginID(), &watched);
    host->play(u"queryAllBookmarks()\n"_s + QLatin1String(answer));
    context.compare(u"roles asked for"_s, u"0 nodeIDRole nodeTypeRole,0 idRole nameRole"_s,
                    watched.asked.join(u','));
    context.summarize(u"stations by their type, names once for each answer"_s);
}

} // namespace

std::vector<Check> recordChecks()
{
    return {
        {"4.display-records", "Records as QML gets them, values and types", checkDisplayRecords},
        {"4.timeline-items", "Items of timelines, all roles", checkTimelineItems},
        {"4.time-zone", "Which zone times are shown in", checkTimeZone},
        {"4.directory", "Stations and names come from the topology plug-in", checkDirectory},
    };
}

} // namespace check
