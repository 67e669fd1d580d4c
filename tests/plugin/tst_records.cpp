#include "DataTable.h"
#include "Describe.h"
#include "TestHost.h"

#include <QtCore/QDateTime>
#include <QtCore/QLocale>

using namespace Qt::StringLiterals;

namespace {

bool isGerman()
{
    return QLocale::system().name() == "de_DE"_L1;
}

/// Returns the short text in the locale of this run. CMake runs the program in two locales.
QString localText(const QDateTime &dateTime)
{
    // Newer locale data has a narrow no-break space before AM and PM, except on Windows.
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0) && !defined(Q_OS_WIN)
    const QString english = u"M/d/yy h:mm\u202fAP"_s;
#else
    const QString english = u"M/d/yy h:mm AP"_s;
#endif
    return QLocale::c().toString(dateTime, isGerman() ? u"dd.MM.yy HH:mm"_s : english);
}

void insertDate(QVariantMap &record, const QDateTime &dateTime)
{
    record.insert(u"displayDate"_s, localText(dateTime).section(u' ', 0, 0));
    record.insert(u"displayDateTime"_s, localText(dateTime));
}

/// Returns the plug-in's display record for a server record.
QVariantMap displayRecord(TestHost &host, const QVariantMap &record)
{
    host.call(u"queryBookmarkForRecent('', 'A', 1)"_s);
    host.answer(u"QueryBookmarkForRecent"_s, QVariantMap{{u"Bookmarks"_s, QVariantList{record}}},
                u"A"_s);
    return host.call(u"getBookmarkListForRecent()"_s).toList().value(0).toMap();
}

} // namespace

/// Display records and groups by day in two locales, compared with literal texts.
class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        const QString locale = QLocale::system().name();
        QVERIFY2(locale == "en_US"_L1 || locale == "de_DE"_L1, qPrintable(locale));
        // Check the time zone by its offset, because several names mean the same zone.
        const QDateTime summerTime(QDate(2026, 3, 29), QTime(3, 0));
        QCOMPARE(summerTime.toMSecsSinceEpoch(), 1'774'746'000'000);
    }

    void recordHasAllFieldsAndNoOthers()
    {
        QVariantMap expected = mapOf(uR"({
            "bookmarkID": "b1", "cameraID": "1", "locID": "loc", "creator": "ann %1",
            "startTimestamp": 1773057907000, "endTimestamp": 1773057997000,
            "description": "T\u00fcr \uD83D\uDEAA", "group": "doors",
            "relayPath": "A", "cameraName": "Station A - Camera A1",
            "displayTimeRange": "13:05:07 - 13:06:37"
        })"_s);
        insertDate(expected, QDateTime(QDate(2026, 3, 9), QTime(13, 5, 7)));
        TestHost host;
        const QVariantMap record =
            serverRecord(u"b1"_s, u"1"_s, u"loc"_s, 1773057907000, 1773057997000,
                         u"T\u00fcr \U0001F6AA"_s, u"ann %1"_s, u"doors"_s);
        QCOMPARE(describe(displayRecord(host, record)), describe(expected));
    }

    void timesAreInTheServersZone_data()
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
    void timesAreInTheServersZone()
    {
        QFETCH(const QString, zone);
        QFETCH(const QString, utc);
        QFETCH(const QString, clock);
        QFETCH(const QString, clockAtEnd);

        TestHost host;
        if (!zone.isEmpty())
            host.answer(u"QuerySevTimezone"_s, zone, {});
        const qint64 start = QDateTime::fromString(utc + u'Z', Qt::ISODate).toMSecsSinceEpoch();
        const QVariantMap found =
            displayRecord(host, serverRecord(u"b"_s, u"1"_s, u"loc"_s, start, start + 1000));
        QVariantMap expected = found;
        expected.insert(u"displayTimeRange"_s, clock.section(u'T', 1) + " - "_L1 + clockAtEnd);
        // Parsed as UTC, because local times of other zones skip an hour in spring.
        insertDate(expected, QDateTime::fromString(clock + u'Z', Qt::ISODate));
        QCOMPARE(found, expected);
    }

    void twoDigitYearsAreSortedAs20thCentury()
    {
        // A text with the year 26 counts as 1926. Bookmarks of one day are ordered by the text of
        // their start, descending.
        TestHost host;
        QVariantList records;
        for (const auto &[id, start] : {std::pair(u"f"_s, 917870400000LL),
                                        {u"l"_s, 1000LL},
                                        {u"n"_s, 1767351600000LL},
                                        {u"s"_s, 999LL},
                                        {u"o"_s, 938779200000LL},
                                        {u"d"_s, 1767322800000LL}})
            records.append(serverRecord(id, u"1"_s, u"l"_s, start, start));
        host.call(u"queryAllBookmarks()"_s);
        host.answer(host.framework.sent().constFirst(), QVariantMap{{u"Bookmarks"_s, records}});
        const QStringList days = isGerman() ? u"02.01.26 01.01.70 01.02.99 01.10.99"_s.split(u' ')
                                            : u"1/2/26 1/1/70 2/1/99 10/1/99"_s.split(u' ');
        for (const QString &key : {u"displayDate"_s, u"displayTimeRange"_s}) {
            const QString page = u"page {'groupKey': '%1', 'ascending': %2}"_s;
            QCOMPARE(
                host.play(page.arg(key, u"true"_s)),
                u"page 6: %1[n d] %2[l s] %3[f] %4[o]"_s.arg(days[0], days[1], days[2], days[3]));
            QCOMPARE(
                host.play(page.arg(key, u"false"_s)),
                u"page 6: %4[o] %3[f] %2[l s] %1[n d]"_s.arg(days[0], days[1], days[2], days[3]));
        }
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
