#include "DataTable.h"
#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTimeZone>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 Min = std::numeric_limits<qint64>::min();
constexpr qint64 Max = std::numeric_limits<qint64>::max();

/// The short text for the locale of this run: the program is run once in each.
QString localText(const QDateTime &dateTime)
{
    const bool isGerman = QLocale::system().name() == "de_DE"_L1;
    // Newer locale data has a narrow no-break space there; Windows' own has not.
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0) && !defined(Q_OS_WIN)
    const QString english = u"M/d/yy h:mm\u202fAP"_s;
#else
    const QString english = u"M/d/yy h:mm AP"_s;
#endif
    return QLocale::c().toString(dateTime, isGerman ? u"dd.MM.yy HH:mm"_s : english);
}

void insertDate(QVariantMap &record, const QDateTime &dateTime)
{
    record.insert(u"displayDate"_s, localText(dateTime).section(u' ', 0, 0));
    record.insert(u"displayDateTime"_s, localText(dateTime));
}

/// A missing text may show as null or as empty, QML sees no difference.
QString describeTexts(const QVariant &values)
{
    return describe(values).replace("QString null"_L1, "QString \"\""_L1);
}

/// The timeline item that belongs to a display record: by the number of a role, and for those that
/// the plug-in adds also its name.
QVariantMap itemFor(const QVariantMap &displayRecord)
{
    const QStringList roles =
        u"257=bookmarkID 258=cameraID 261=startTimestamp 264=endTimestamp "
        "269:bookmarkIDRole=bookmarkID 270:cameraIDRole=cameraID 271:relayPathRole=relayPath "
        "272:descRole=description 273:creatorRole=creator 274:groupRole=group "
        "275:cameraNameRole=cameraName 276:dispDateRole=displayDate "
        "277:dispDateTimeRole=displayDateTime 278:locationIDRole=locID "
        "279:dispTimeRangeRole=displayTimeRange"_s.split(u' ');
    QVariantMap item{{u"262"_s, 0}, {u"263"_s, 0}, {u"265"_s, 0}};
    for (const QString &role : roles)
        item.insert(role.section(u'=', 0, 0), displayRecord.value(role.section(u'=', 1)));
    return item;
}

class Records : public PluginHarness
{
public:
    /// The display records made of a server's records.
    QVariantList shown(const QVariantList &records, const QString &relayPath = u"A"_s)
    {
        call<bool>("queryBookmarkForRecent", QString(), relayPath, uchar(1));
        answer(onlySent(), QVariantMap{{u"Bookmarks"_s, records}});
        return call<QVariantList>("getBookmarkListForRecent");
    }
    /// The timeline item made of one.
    QVariantMap item(const QVariantMap &record, const QString &relayPath)
    {
        const QString locationID = record.value(u"LocationID"_s).toString();
        const auto *const model = openViewCell(u"cell"_s, locationID, relayPath);
        plugin().EventProcessor(u"AddBookmark"_s, 0, 0, 0, record, relayPath);
        const QHash<int, QByteArray> names = model->roleNames();
        QVariantMap item;
        for (int role = 0; role < 400; ++role) {
            const QVariant value = model->index(0, 0).data(role);
            const QString name = role < 269 ? QString() : u':' + QString::fromUtf8(names[role]);
            if (value.isValid())
                item.insert(QString::number(role) + name, value);
        }
        return item;
    }
};

} // namespace

/// What is made of a server's bookmark record: the display record and the timeline item.
class TestRecords : public QObject
{
    Q_OBJECT

    /// Compares what is expected of the display record, and its 13 fields with the timeline item.
    static void compareShown(Records &records, const QVariantMap &record,
                             const QVariantMap &expected, const QString &relayPath = u"A"_s)
    {
        const QVariantMap shown = records.shown({record}, relayPath).value(0).toMap();
        QVariantMap complete = shown;
        complete.insert(expected);
        QCOMPARE(shown.size(), 13);
        QCOMPARE(describeTexts(shown), describeTexts(complete));
        QCOMPARE(describeTexts(records.item(record, relayPath)), describeTexts(itemFor(shown)));
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QString locale = QLocale::system().name();
        QVERIFY2(locale == "en_US"_L1 || locale == "de_DE"_L1, qPrintable(locale));
        // The zone by what it does: several go by the same clock.
        const QDateTime summerTime(QDate(2026, 3, 29), QTime(3, 0));
        QCOMPARE(summerTime.toMSecsSinceEpoch(), 1'774'746'000'000);
    }

    void haveAllFieldsAndNoOthers_data()
    {
        addTable({"changes", "shownChanges"}, uR"(
        all fields    | {}                                       | {}
        unknown ones  | {"Title": 1, "bookmarkid": "x"}          | {}
        number texts  | {"StartTimestamp": "1773057907000"}      | {}
        text numbers  | {"BookmarkID": 12, "LocationID": true}   | {"bookmarkID": "12", "locID": "true"}
        types of none | {"Creator": {"a": 1}, "Group": [1]}      | {"creator": "", "group": ""}
        )"_s);
    }
    void haveAllFieldsAndNoOthers()
    {
        QFETCH(const QString, changes);
        QFETCH(const QString, shownChanges);

        QVariantMap record = mapOf(uR"({
            "BookmarkID": "b1", "CameraID": "1", "LocationID": "loc", "Creator": "ann %1",
            "StartTimestamp": 1773057907000, "EndTimestamp": 1773057997000,
            "Description": "Tür \uD83D\uDEAA", "Group": "doors"
        })"_s);
        QVariantMap shown = mapOf(uR"({
            "bookmarkID": "b1", "cameraID": "1", "locID": "loc", "creator": "ann %1",
            "startTimestamp": 1773057907000, "endTimestamp": 1773057997000,
            "description": "Tür \uD83D\uDEAA", "group": "doors",
            "relayPath": "A", "cameraName": "Station A - Camera A1",
            "displayTimeRange": "13:05:07 - 13:06:37"
        })"_s);
        record.insert(mapOf(changes));
        insertDate(shown, QDateTime(QDate(2026, 3, 9), QTime(13, 5, 7)));
        shown.insert(mapOf(shownChanges));
        Records records;
        compareShown(records, record, shown);
        QCOMPARE(records.log.take(), QStringList());
    }

    void haveAllFieldsWithoutAny()
    {
        QVariantMap nothing = mapOf(uR"({
            "bookmarkID": "", "cameraID": "", "locID": "", "creator": "", "startTimestamp": 0,
            "endTimestamp": 0, "description": "", "group": "", "relayPath": "A",
            "cameraName": "Station A - ", "displayTimeRange": "01:00:00 - 01:00:00"
        })"_s);
        insertDate(nothing, QDateTime(QDate(1970, 1, 1), QTime(1, 0)));
        Records records;
        compareShown(records, {}, nothing);
    }

    void nameStationAndCamera_data()
    {
        addTable({"relayPath", "cameraID", "directory", "cameraName"}, uR"(
            unknown camera       | A      | 9      |                          | "Station A - "
            unknown station      | Z      | 1      | Z/1=Gate                 | " - Gate"
            another case         | a      | 1      |                          | " - "
            directly connected   |        | 7      | 7=Gate;/7=wrong;=Centre  | Centre - Gate
            directly, no name    |        | 7      | 7=Gate                   | " - Gate"
            placeholder in path  | %2     | 9      | %2=S;%2/9=Gate;9/9=wrong | S - Gate
            placeholders in all  | %1%99  | %2 %L1 | %1%99=%2;%1%99/%2 %L1=%1 | %2 - %1
            slashes              | x/y/   | /1/2   | x/y/=S;x/y///1/2=Gate    | S - Gate
        )"_s);
    }
    void nameStationAndCamera()
    {
        QFETCH(const QString, relayPath);
        QFETCH(const QString, cameraID);
        QFETCH(const QString, directory);
        QFETCH(const QString, cameraName);

        Records records;
        const QStringList nodes = directory.split(u';', Qt::SkipEmptyParts);
        for (const QString &node : nodes)
            records.topology.setCamera(node.section(u'=', 0, 0), node.section(u'=', 1));
        const QVariantMap record = serverRecord(u"b"_s, cameraID, u"loc"_s, 1, 2);
        compareShown(
            records, record,
            {{u"cameraName"_s, cameraName}, {u"cameraID"_s, cameraID}, {u"relayPath"_s, relayPath}},
            relayPath);
    }

    void showTheClockOfTheServersZone_data()
    {
        // Each bookmark lasts one second.
        addTable({"zone", "utc", "clock", "clockAtEnd"}, uR"(
        winter          |                  | 2026-01-15T23:59:50 | 2026-01-16T00:59:50 | 00:59:51
        summer          |                  | 2026-07-15T23:59:50 | 2026-07-16T01:59:50 | 01:59:51
        spring forward  |                  | 2026-03-29T00:59:59 | 2026-03-29T01:59:59 | 03:00:00
        fall back       |                  | 2026-10-25T00:59:59 | 2026-10-25T02:59:59 | 02:00:00
        winter there    | America/New_York | 2026-01-15T23:59:50 | 2026-01-15T18:59:50 | 18:59:51
        summer there    | America/New_York | 2026-07-15T23:59:50 | 2026-07-15T19:59:50 | 19:59:51
        forward there   | America/New_York | 2026-03-08T06:59:59 | 2026-03-08T01:59:59 | 03:00:00
        back there      | America/New_York | 2026-11-01T05:59:59 | 2026-11-01T01:59:59 | 01:00:00
        half an hour    | Australia/Darwin | 2026-01-15T23:59:50 | 2026-01-16T09:29:50 | 09:29:51
        past midnight   | UTC              | 2026-01-15T23:59:59 | 2026-01-15T23:59:59 | 00:00:00
        long ago        | America/New_York | 1899-12-31T17:00:00 | 1899-12-31T12:00:00 | 12:00:01
        )"_s);
    }
    void showTheClockOfTheServersZone()
    {
        QFETCH(const QString, zone);
        QFETCH(const QString, utc);
        QFETCH(const QString, clock);
        QFETCH(const QString, clockAtEnd);

        Records records;
        if (!zone.isEmpty())
            records.setServerTimeZone(zone.toLatin1());
        const qint64 start = QDateTime::fromString(utc + u'Z', Qt::ISODate).toMSecsSinceEpoch();
        const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"loc"_s, start, start + 1000);
        QVariantMap expected{
            {u"displayTimeRange"_s, clock.section(u'T', 1) + " - "_L1 + clockAtEnd}};
        // In UTC, as the clock of any other zone leaves out an hour in spring.
        insertDate(expected, QDateTime::fromString(clock + u'Z', Qt::ISODate));
        compareShown(records, record, expected);
    }

    void keepTheZoneUntilTheNext()
    {
        const QPair<QVariant, const char *> answers[] = {{{}, "01:00:00"}, // the client's own
                                                         {u"America/New_York"_s, "19:00:00"},
                                                         {QByteArray(""), "19:00:00"},
                                                         {QVariant(), "19:00:00"},
                                                         {QVariantMap(), "19:00:00"},
                                                         {QByteArray("\xff\x00%s", 4), ""},
                                                         {QByteArray("UTC"), "00:00:00"},
                                                         {QByteArray("Not/AZone"), ""}};
        Records records;
        for (const auto &[answer, time] : answers) {
            records.answer(u"QuerySevTimezone"_s, answer);
            const QVariantMap shown = records.shown({QVariantMap()}).value(0).toMap();
            QCOMPARE(shown.value(u"displayTimeRange"_s).toString(),
                     QLatin1String(time) + " - "_L1 + QLatin1String(time));
        }
    }

    void showWhatTheCalendarShowsAtAnyTime()
    {
        // The ends of 64 bits, years of five digits, the moment before a clock goes forward and
        // that itself, the last such moments that zones are listed with, and anything from 1779 to
        // 2160.
        constexpr qint64 Forward = 1'774'746'000'000;
        QList<qint64> moments{Min, Min + 3'600'000, Max,     Max - 3'600'000,   253402300800000,
                              -1,  Forward - 1,     Forward, 2'140'045'200'000, 2'140'668'000'000};
        QRandomGenerator random(1);
        while (moments.size() < 300)
            moments.append(qint64(random.bounded(12e12)) - qint64(6e12));
        QVariantList sent;
        for (qsizetype i = 0; i < moments.size(); ++i)
            sent.append(serverRecord({}, {}, {}, moments.at(i), moments.value(i - 1)));

        const QLocale locale = QLocale::system();
        for (const char *zone :
             {"Europe/Berlin", "America/New_York", "Asia/Tokyo", "Pacific/Kiritimati", "UTC"}) {
            Records records;
            records.setServerTimeZone(zone);
            const QVariantList shown = records.shown(sent);
            QCOMPARE(shown.size(), moments.size());
            for (qsizetype i = 0; i < moments.size(); ++i) {
                const qint64 start = moments.at(i), end = moments.value(i - 1);
                const auto from = QDateTime::fromMSecsSinceEpoch(start, QTimeZone(zone));
                const auto to = QDateTime::fromMSecsSinceEpoch(end, QTimeZone(zone));
                QVariantMap expected = shown.at(i).toMap();
                expected.insert(
                    {{u"startTimestamp"_s, start},
                     {u"endTimestamp"_s, end},
                     {u"displayDate"_s, locale.toString(from.date(), QLocale::ShortFormat)},
                     {u"displayDateTime"_s, locale.toString(from, QLocale::ShortFormat)},
                     {u"displayTimeRange"_s,
                      from.toString(u"hh:mm:ss"_s) + " - "_L1 + to.toString(u"hh:mm:ss"_s)}});
                QCOMPARE(describe(shown.at(i)), describe(expected));
            }
        }
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
