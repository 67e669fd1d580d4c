#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QTimeZone>
#include <QtTest/QTest>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 Second = 1000;
constexpr qint64 Hour = 3600 * Second;
constexpr qint64 Min = std::numeric_limits<qint64>::min();
constexpr qint64 Max = std::numeric_limits<qint64>::max();

qint64 utc(int year, int month, int day, int hour, int minute = 0, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC)
        .toMSecsSinceEpoch();
}

bool isGerman()
{
    return QLocale::system().name() == "de_DE"_L1;
}

/// The text for the locale of this run: the program is run once in each.
QString local(const char *american, const char *german)
{
    return QString::fromUtf8(isGerman() ? german : american);
}

/// Newer locale data has a narrow no-break space before "PM".
QString withPlainSpaces(QString text)
{
    return text.replace(QChar(0x202f), u' ').replace(QChar::Nbsp, u' ');
}

/// A missing text may show as null or as empty, QML sees no difference.
QString describeTexts(const QVariantMap &values)
{
    return describe(values).replace("QString null"_L1, "QString \"\""_L1);
}

QVariantMap withPlainSpaces(QVariantMap values)
{
    for (QVariant &value : values) {
        if (value.typeId() == QMetaType::QString)
            value = withPlainSpaces(value.toString());
    }
    return values;
}

struct RoleRow
{
    int role;
    const char *name;
    const char *displayKey;
};

// The default set's names belong to the model; what matters is what each role holds.
const RoleRow timelineRoles[] = {
    {257, nullptr, "bookmarkID"},
    {258, nullptr, "cameraID"},
    {261, nullptr, "startTimestamp"},
    {264, nullptr, "endTimestamp"},
    {269, "bookmarkIDRole", "bookmarkID"},
    {270, "cameraIDRole", "cameraID"},
    {271, "relayPathRole", "relayPath"},
    {272, "descRole", "description"},
    {273, "creatorRole", "creator"},
    {274, "groupRole", "group"},
    {275, "cameraNameRole", "cameraName"},
    {276, "dispDateRole", "displayDate"},
    {277, "dispDateTimeRole", "displayDateTime"},
    {278, "locationIDRole", "locID"},
    {279, "dispTimeRangeRole", "displayTimeRange"},
};

/// The item that belongs to a display record, by role number.
QVariantMap itemFor(const QVariantMap &displayRecord)
{
    QVariantMap item{{u"262"_s, 0}, {u"263"_s, 0}, {u"265"_s, 0}};
    for (const RoleRow &row : timelineRoles)
        item.insert(QString::number(row.role),
                    displayRecord.value(QString::fromLatin1(row.displayKey)));
    return item;
}

QVariantMap itemAt(const QAbstractItemModel &model, int row)
{
    QVariantMap item;
    for (int role = 0; role < 400; ++role) {
        const QVariant value = model.index(row, 0).data(role);
        if (value.isValid())
            item.insert(QString::number(role), value);
    }
    return item;
}

QVariantMap displayRecordOf(PluginHarness &harness, const QVariant &record,
                            const QString &relayPath)
{
    harness.call<bool>("queryBookmarkForRecent", QString(), relayPath, uchar(1));
    harness.answer(harness.onlySent(), QVariantMap{{u"Bookmarks"_s, QVariantList{record}}});
    const auto records = harness.call<QVariantList>("getBookmarkListForRecent");
    return records.size() == 1 ? withPlainSpaces(records.constFirst().toMap()) : QVariantMap();
}

QVariantMap timelineItemOf(PluginHarness &harness, const QVariant &record, const QString &relayPath)
{
    const QString locationID = record.toMap().value(u"LocationID"_s).toString();
    const auto *const model = harness.openViewCell(u"cell"_s, locationID, relayPath);
    harness.plugin().EventProcessor(u"AddBookmark"_s, 0, 0, 0, record, relayPath);
    return model->rowCount() == 1 ? withPlainSpaces(itemAt(*model, 0)) : QVariantMap();
}

} // namespace

/// What is made of a server's bookmark record: the display record and the timeline item.
class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void haveAllFieldsAndNoOthers_data();
    void haveAllFieldsAndNoOthers();
    void nameStationAndCamera_data();
    void nameStationAndCamera();
    void showTheTimesOfTheServersZone_data();
    void showTheTimesOfTheServersZone();
    void surviveEveryTimestamp_data();
    void surviveEveryTimestamp();
    void haveRoleNames();
};

void TestRecords::initTestCase()
{
    const QString locale = QLocale::system().name();
    QVERIFY2(locale == "en_US"_L1 || locale == "de_DE"_L1, qPrintable(locale));
    QCOMPARE(QTimeZone::systemTimeZoneId(), QByteArray("Europe/Berlin"));
}

void TestRecords::haveAllFieldsAndNoOthers_data()
{
    QTest::addColumn<QVariantMap>("record");
    QTest::addColumn<QVariantMap>("expected");

    const qint64 start = utc(2026, 3, 9, 12, 5, 7);
    const QVariantMap full = serverRecord(u"b1"_s, u"1"_s, u"loc"_s, start, start + 90 * Second,
                                          u"Tür \U0001F6AA"_s, u"ann %1"_s, u"doors"_s);
    const QVariantMap shown{
        {u"bookmarkID"_s, u"b1"_s},
        {u"cameraID"_s, u"1"_s},
        {u"relayPath"_s, u"A"_s},
        {u"startTimestamp"_s, start},
        {u"endTimestamp"_s, start + 90 * Second},
        {u"description"_s, u"Tür \U0001F6AA"_s},
        {u"creator"_s, u"ann %1"_s},
        {u"group"_s, u"doors"_s},
        {u"cameraName"_s, u"Station A - Camera A1"_s},
        {u"displayDate"_s, local("3/9/26", "09.03.26")},
        {u"displayDateTime"_s, local("3/9/26 1:05 PM", "09.03.26 13:05")},
        {u"locID"_s, u"loc"_s},
        {u"displayTimeRange"_s, u"13:05:07 - 13:06:37"_s},
    };
    QVariantMap nothing{
        {u"relayPath"_s, u"A"_s},
        {u"startTimestamp"_s, qint64(0)},
        {u"endTimestamp"_s, qint64(0)},
        {u"cameraName"_s, u"Station A - "_s},
        {u"displayDate"_s, local("1/1/70", "01.01.70")},
        {u"displayDateTime"_s, local("1/1/70 1:00 AM", "01.01.70 01:00")},
        {u"displayTimeRange"_s, u"01:00:00 - 01:00:00"_s},
    };
    for (auto it = shown.cbegin(); it != shown.cend(); ++it) {
        if (!nothing.contains(it.key()))
            nothing.insert(it.key(), QString());
    }

    const auto row = [&](const char *title, const QVariantMap &changes,
                         const QVariantMap &shownChanges) {
        QVariantMap record = full;
        record.insert(changes);
        QVariantMap expected = shown;
        expected.insert(shownChanges);
        QTest::newRow(title) << record << expected;
    };
    row("all fields", {}, {});
    row("fields that nobody knows", {{u"Title"_s, 1}, {u"bookmarkid"_s, u"x"_s}}, {});
    row("end before start", {{u"EndTimestamp"_s, start - 7 * Second}},
        {{u"endTimestamp"_s, start - 7 * Second},
         {u"displayTimeRange"_s, u"13:05:07 - 13:05:00"_s}});
    row("several days", {{u"EndTimestamp"_s, start + 50 * Hour}},
        {{u"endTimestamp"_s, start + 50 * Hour},
         {u"displayTimeRange"_s, u"13:05:07 - 15:05:07"_s}});
    row("numbers as texts",
        {{u"StartTimestamp"_s, QString::number(start)},
         {u"EndTimestamp"_s, double(start + 90 * Second)}},
        {});
    row("other types that have a text",
        {{u"BookmarkID"_s, 12}, {u"Description"_s, 1.5}, {u"Group"_s, QStringList{u"one"_s}}},
        {{u"bookmarkID"_s, u"12"_s}, {u"description"_s, u"1.5"_s}, {u"group"_s, u"one"_s}});
    row("more types that have a text",
        {{u"CameraID"_s, QByteArray("1")}, {u"LocationID"_s, true}, {u"Creator"_s, QChar(u'x')}},
        {{u"locID"_s, u"true"_s}, {u"creator"_s, u"x"_s}});

    QTest::newRow("no field") << QVariantMap() << nothing;
    QVariantMap useless;
    for (auto it = full.cbegin(); it != full.cend(); ++it)
        useless.insert(it.key(), QVariantMap{{u"a"_s, 1}});
    QTest::newRow("types that have no text") << useless << nothing;
    useless.insert({{u"StartTimestamp"_s, u"soon"_s},
                    {u"Description"_s, QVariantList{1}},
                    {u"Creator"_s, QVariant()},
                    {u"Group"_s, QVariant::fromValue<QObject *>(nullptr)}});
    QTest::newRow("more types that have no text") << useless << nothing;
}

void TestRecords::haveAllFieldsAndNoOthers()
{
    QFETCH(const QVariantMap, record);
    QFETCH(const QVariantMap, expected);

    PluginHarness harness;
    QCOMPARE(describeTexts(displayRecordOf(harness, record, u"A"_s)), describeTexts(expected));
    QCOMPARE(describeTexts(timelineItemOf(harness, record, u"A"_s)),
             describeTexts(itemFor(expected)));
    QCOMPARE(harness.log.take(), QStringList());
}

void TestRecords::nameStationAndCamera_data()
{
    QTest::addColumn<QString>("relayPath");
    QTest::addColumn<QString>("cameraID");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("cameraName");

    const auto row = [](const char *title, const char *relayPath, const char *cameraID,
                        const char *directory, const char *cameraName) {
        QTest::newRow(title) << QString::fromLatin1(relayPath) << QString::fromLatin1(cameraID)
                             << QString::fromLatin1(directory) << QString::fromLatin1(cameraName);
    };
    row("known", "A", "1", "", "Station A - Camera A1");
    row("unknown camera", "A", "9", "", "Station A - ");
    row("unknown station", "Z", "1", "", " - ");
    row("unknown station of a known camera", "Z", "1", "Z/1=Gate", " - Gate");
    row("another case", "a", "1", "", " - ");
    row("directly connected", "", "7", "7=Gate;/7=wrong", " - Gate");
    row("directly connected, with a name", "", "7", "7=Gate;=Centre", "Centre - Gate");
    row("directly connected, unknown", "", "8", "", " - ");
    row("relay path with a placeholder", "%2", "9", "%2=S;%2/9=Gate;9/9=wrong", "S - Gate");
    row("placeholders everywhere", "%1%99", "%2 %L1", "%1%99=%2;%1%99/%2 %L1=%1", "%2 - %1");
    row("slashes", "x/y/", "/1/2", "x/y/=S;x/y///1/2=Gate", "S - Gate");
}

void TestRecords::nameStationAndCamera()
{
    QFETCH(const QString, relayPath);
    QFETCH(const QString, cameraID);
    QFETCH(const QString, directory);
    QFETCH(const QString, cameraName);

    PluginHarness harness;
    const QStringList nodes = directory.split(u';', Qt::SkipEmptyParts);
    for (const QString &node : nodes)
        harness.topology.setCamera(node.section(u'=', 0, 0), node.section(u'=', 1));
    const QVariantMap record = serverRecord(u"b"_s, cameraID, u"loc"_s, 1, 2);
    const QVariantMap shown = displayRecordOf(harness, record, relayPath);
    QCOMPARE(shown.value(u"cameraName"_s).toString(), cameraName);
    QCOMPARE(shown.value(u"cameraID"_s).toString(), cameraID);
    QCOMPARE(shown.value(u"relayPath"_s).toString(), relayPath);
    QCOMPARE(describeTexts(timelineItemOf(harness, record, relayPath)),
             describeTexts(itemFor(shown)));
}

void TestRecords::showTheTimesOfTheServersZone_data()
{
    QTest::addColumn<QVariantList>("zoneAnswers");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<QString>("dateTime");
    QTest::addColumn<QString>("range");

    const auto row = [](const char *title, const QVariantList &zoneAnswers, qint64 start,
                        qint64 end, const char *american, const char *german, const char *range) {
        QTest::newRow(title) << zoneAnswers << start << end << local(american, german)
                             << QString::fromLatin1(range);
    };
    const QVariantList none;
    const QVariantList newYork{QByteArray("America/New_York")};
    const QVariantList unknown{QByteArray("Not/AZone")};
    const qint64 winter = utc(2026, 1, 15, 23, 59, 50);
    const qint64 summer = utc(2026, 7, 15, 23, 59, 50);
    const qint64 minute = 60 * Second;

    row("system zone, winter", none, winter, winter + minute, "1/16/26 12:59 AM", "16.01.26 00:59",
        "00:59:50 - 01:00:50");
    row("system zone, summer", none, summer, summer + minute, "7/16/26 1:59 AM", "16.07.26 01:59",
        "01:59:50 - 02:00:50");
    row("server's zone, winter", newYork, winter, winter + minute, "1/15/26 6:59 PM",
        "15.01.26 18:59", "18:59:50 - 19:00:50");
    row("server's zone, summer", newYork, summer, summer + minute, "7/15/26 7:59 PM",
        "15.07.26 19:59", "19:59:50 - 20:00:50");
    row("no daylight saving, past midnight", {QByteArray("UTC")}, winter, winter + minute,
        "1/15/26 11:59 PM", "15.01.26 23:59", "23:59:50 - 00:00:50");
    row("half an hour's offset", {QByteArray("Asia/Kolkata")}, winter, winter + minute,
        "1/16/26 5:29 AM", "16.01.26 05:29", "05:29:50 - 05:30:50");

    const qint64 spring = utc(2026, 3, 29, 1);
    row("clock goes forward, system zone", none, spring - Second, spring, "3/29/26 1:59 AM",
        "29.03.26 01:59", "01:59:59 - 03:00:00");
    const qint64 autumn = utc(2026, 10, 25, 1);
    row("clock goes back, system zone", none, autumn - Second, autumn, "10/25/26 2:59 AM",
        "25.10.26 02:59", "02:59:59 - 02:00:00");
    const qint64 americanSpring = utc(2026, 3, 8, 7);
    row("clock goes forward, server's zone", newYork, americanSpring - Second, americanSpring,
        "3/8/26 1:59 AM", "08.03.26 01:59", "01:59:59 - 03:00:00");
    const qint64 americanAutumn = utc(2026, 11, 1, 6);
    row("clock goes back, server's zone", newYork, americanAutumn - Second, americanAutumn,
        "11/1/26 1:59 AM", "01.11.26 01:59", "01:59:59 - 01:00:00");

    row("before the epoch", newYork, -1, -Second, "12/31/69 6:59 PM", "31.12.69 18:59",
        "18:59:59 - 18:59:59");
    row("other centuries", newYork, utc(1899, 12, 31, 17), utc(2126, 1, 1, 12), "12/31/99 12:00 PM",
        "31.12.99 12:00", "12:00:00 - 07:00:00");

    const auto rowInNewYork = [&](const char *title, const QVariantList &zoneAnswers) {
        row(title, zoneAnswers, summer, summer, "7/15/26 7:59 PM", "15.07.26 19:59",
            "19:59:50 - 19:59:50");
    };
    rowInNewYork("an empty zone keeps the old", newYork + QVariantList{QByteArray("")});
    rowInNewYork("no zone keeps the old", newYork + QVariantList{QVariant()});
    rowInNewYork("another type keeps the old", newYork + QVariantList{QVariantMap()});
    rowInNewYork("a zone as text", {u"America/New_York"_s});
    rowInNewYork("a good zone after an unknown one", unknown + newYork);
    row("an unknown zone", unknown, summer, summer, "", "", " - ");
    row("a zone of garbage", newYork + QVariantList{QByteArray("\xff\x00%s", 4)}, summer, summer,
        "", "", " - ");
}

void TestRecords::showTheTimesOfTheServersZone()
{
    QFETCH(const QVariantList, zoneAnswers);
    QFETCH(const qint64, start);
    QFETCH(const qint64, end);
    QFETCH(const QString, dateTime);
    QFETCH(const QString, range);

    PluginHarness harness;
    for (const QVariant &zone : zoneAnswers)
        harness.answer(u"QuerySevTimezone"_s, zone);
    const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"loc"_s, start, end);
    const QVariantMap shown = displayRecordOf(harness, record, u"A"_s);
    QCOMPARE(shown.value(u"displayDateTime"_s).toString(), dateTime);
    QCOMPARE(shown.value(u"displayDate"_s).toString(), dateTime.section(u' ', 0, 0));
    QCOMPARE(shown.value(u"displayTimeRange"_s).toString(), range);
    QCOMPARE(shown.value(u"startTimestamp"_s), QVariant(start));
    QCOMPARE(shown.value(u"endTimestamp"_s), QVariant(end));
    QCOMPARE(describe(timelineItemOf(harness, record, u"A"_s)), describe(itemFor(shown)));
}

void TestRecords::surviveEveryTimestamp_data()
{
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");

    QTest::newRow("least") << Min << Min;
    QTest::newRow("greatest") << Max << Max;
    QTest::newRow("everything") << Min << Max;
    QTest::newRow("backwards") << Max << Min;
    QTest::newRow("near the ends") << Min + Hour << Max - Hour;
    QTest::newRow("beyond year 9999") << qint64(253402300800000) << qint64(8640000000000000);
}

void TestRecords::surviveEveryTimestamp()
{
    QFETCH(const qint64, start);
    QFETCH(const qint64, end);

    for (const char *zone : {"", "UTC", "America/New_York", "Pacific/Kiritimati", "Not/AZone"}) {
        PluginHarness harness;
        harness.setServerTimeZone(zone);
        const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"loc"_s, start, end);
        const QVariantMap shown = displayRecordOf(harness, record, u"A"_s);
        QCOMPARE(shown.size(), 13);
        QCOMPARE(describe(shown.value(u"startTimestamp"_s)), describe(start));
        QCOMPARE(describe(shown.value(u"endTimestamp"_s)), describe(end));
        QVERIFY(shown.value(u"displayTimeRange"_s).toString().contains(" - "_L1));
        QCOMPARE(describe(timelineItemOf(harness, record, u"A"_s)), describe(itemFor(shown)));
    }
}

void TestRecords::haveRoleNames()
{
    PluginHarness harness;
    const QHash<int, QByteArray> names =
        harness.openViewCell(u"cell"_s, u"loc"_s, u"A"_s)->roleNames();
    for (const RoleRow &row : timelineRoles) {
        if (row.name)
            QCOMPARE(names.value(row.role), QByteArray(row.name));
        else
            QVERIFY(!names.value(row.role).isEmpty());
    }
    const QList<int> roles = names.keys();
    QCOMPARE(std::count_if(roles.cbegin(), roles.cend(), [](int role) { return role >= 269; }), 11);
}

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
