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
constexpr qint64 Minute = 60 * Second;
constexpr qint64 Hour = 60 * Minute;
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
    void showTheTimesOfTheServersZone_data();
    void showTheTimesOfTheServersZone();
    void surviveEveryTimestamp_data();
    void surviveEveryTimestamp();
    void areMadeOfWhateverTheListHolds_data();
    void areMadeOfWhateverTheListHolds();
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
    QTest::addColumn<QString>("relayPath");
    QTest::addColumn<QVariantMap>("directory");
    QTest::addColumn<QVariantMap>("expected");

    const qint64 start = utc(2026, 3, 9, 12, 5, 7);
    const qint64 end = start + 90 * Second;
    const QVariantMap full = serverRecord(u"b1"_s, u"1"_s, u"loc"_s, start, end,
                                          u"Tür \U0001F6AA"_s, u"ann %1"_s, u"doors"_s);
    const QVariantMap shown{
        {u"bookmarkID"_s, u"b1"_s},
        {u"cameraID"_s, u"1"_s},
        {u"relayPath"_s, u"A"_s},
        {u"startTimestamp"_s, start},
        {u"endTimestamp"_s, end},
        {u"description"_s, u"Tür \U0001F6AA"_s},
        {u"creator"_s, u"ann %1"_s},
        {u"group"_s, u"doors"_s},
        {u"cameraName"_s, u"Station A - Camera A1"_s},
        {u"displayDate"_s, local("3/9/26", "09.03.26")},
        {u"displayDateTime"_s, local("3/9/26 1:05 PM", "09.03.26 13:05")},
        {u"locID"_s, u"loc"_s},
        {u"displayTimeRange"_s, u"13:05:07 - 13:06:37"_s},
    };
    const auto changed = [](QVariantMap map, const QVariantMap &changes) {
        map.insert(changes);
        return map;
    };

    QTest::newRow("all fields") << full << u"A"_s << QVariantMap() << shown;
    QTest::newRow("fields that nobody knows")
        << changed(full, {{u"Title"_s, 1}, {u"bookmarkid"_s, u"x"_s}}) << u"A"_s << QVariantMap()
        << shown;
    QTest::newRow("end before start")
        << changed(full, {{u"EndTimestamp"_s, start - 7 * Second}}) << u"A"_s << QVariantMap()
        << changed(shown, {{u"endTimestamp"_s, start - 7 * Second},
                           {u"displayTimeRange"_s, u"13:05:07 - 13:05:00"_s}});
    QTest::newRow("several days") << changed(full, {{u"EndTimestamp"_s, start + 50 * Hour}})
                                  << u"A"_s << QVariantMap()
                                  << changed(shown,
                                             {{u"endTimestamp"_s, start + 50 * Hour},
                                              {u"displayTimeRange"_s, u"13:05:07 - 15:05:07"_s}});

    const QVariantMap nothing{
        {u"bookmarkID"_s, QString()},
        {u"cameraID"_s, QString()},
        {u"relayPath"_s, u"A"_s},
        {u"startTimestamp"_s, qint64(0)},
        {u"endTimestamp"_s, qint64(0)},
        {u"description"_s, QString()},
        {u"creator"_s, QString()},
        {u"group"_s, QString()},
        {u"cameraName"_s, u"Station A - "_s},
        {u"displayDate"_s, local("1/1/70", "01.01.70")},
        {u"displayDateTime"_s, local("1/1/70 1:00 AM", "01.01.70 01:00")},
        {u"locID"_s, QString()},
        {u"displayTimeRange"_s, u"01:00:00 - 01:00:00"_s},
    };
    QTest::newRow("no field") << QVariantMap() << u"A"_s << QVariantMap() << nothing;
    QTest::newRow("values of other types, convertible")
        << QVariantMap{{u"BookmarkID"_s, 12},
                       {u"CameraID"_s, QByteArray("1")},
                       {u"LocationID"_s, true},
                       {u"StartTimestamp"_s, QString::number(start)},
                       {u"EndTimestamp"_s, double(end)},
                       {u"Description"_s, 1.5},
                       {u"Creator"_s, QChar(u'x')},
                       {u"Group"_s, QStringList{u"one"_s}}}
        << u"A"_s << QVariantMap()
        << changed(shown, {{u"bookmarkID"_s, u"12"_s},
                           {u"locID"_s, u"true"_s},
                           {u"description"_s, u"1.5"_s},
                           {u"creator"_s, u"x"_s},
                           {u"group"_s, u"one"_s}});
    const QVariant map = QVariantMap{{u"a"_s, 1}};
    QTest::newRow("values of other types, not convertible")
        << QVariantMap{{u"BookmarkID"_s, map},
                       {u"CameraID"_s, map},
                       {u"LocationID"_s, map},
                       {u"StartTimestamp"_s, map},
                       {u"EndTimestamp"_s, u"soon"_s},
                       {u"Description"_s, QVariantList{1}},
                       {u"Creator"_s, QVariant()},
                       {u"Group"_s, QVariant::fromValue<QObject *>(nullptr)}}
        << u"A"_s << QVariantMap() << nothing;

    struct Name
    {
        const char *title;
        QString relayPath;
        QString cameraID;
        QVariantMap directory;
        QString cameraName;
    };
    const Name names[] = {
        {"unknown camera", u"A"_s, u"9"_s, {}, u"Station A - "_s},
        {"unknown station", u"Z"_s, u"1"_s, {}, u" - "_s},
        {"unknown station of a known camera",
         u"Z"_s,
         u"1"_s,
         {{u"Z/1"_s, u"Gate"_s}},
         u" - Gate"_s},
        {"directly connected",
         QString(),
         u"7"_s,
         {{u"7"_s, u"Gate"_s}, {u"/7"_s, u"wrong"_s}},
         u" - Gate"_s},
        {"directly connected, with a name",
         QString(),
         u"7"_s,
         {{u"7"_s, u"Gate"_s}, {QString(), u"Centre"_s}},
         u"Centre - Gate"_s},
        {"directly connected, unknown", QString(), u"8"_s, {}, u" - "_s},
        {"relay path with placeholders",
         u"%2"_s,
         u"9"_s,
         {{u"%2"_s, u"S"_s}, {u"%2/9"_s, u"Gate"_s}, {u"9/9"_s, u"wrong"_s}},
         u"S - Gate"_s},
        {"camera with placeholders",
         u"%1%99"_s,
         u"%2 %L1"_s,
         {{u"%1%99"_s, u"S"_s}, {u"%1%99/%2 %L1"_s, u"%1"_s}},
         u"S - %1"_s},
        {"slashes",
         u"x/y/"_s,
         u"/1/2"_s,
         {{u"x/y/"_s, u"S"_s}, {u"x/y///1/2"_s, u"Gate"_s}},
         u"S - Gate"_s},
        {"another case", u"a"_s, u"1"_s, {}, u" - "_s},
        {"names that are no texts", u"Z"_s, u"1"_s, {{u"Z"_s, 5}, {u"Z/1"_s, 1.5}}, u"5 - 1.5"_s},
    };
    for (const Name &name : names) {
        QTest::newRow(name.title) << changed(full, {{u"CameraID"_s, name.cameraID}})
                                  << name.relayPath << name.directory
                                  << changed(shown, {{u"cameraID"_s, name.cameraID},
                                                     {u"relayPath"_s, name.relayPath},
                                                     {u"cameraName"_s, name.cameraName}});
    }
}

void TestRecords::haveAllFieldsAndNoOthers()
{
    QFETCH(const QVariantMap, record);
    QFETCH(const QString, relayPath);
    QFETCH(const QVariantMap, directory);
    QFETCH(const QVariantMap, expected);

    PluginHarness harness;
    for (auto node = directory.cbegin(); node != directory.cend(); ++node)
        harness.topology.setNode({node.key(), node->toString(), 2});
    QCOMPARE(describeTexts(displayRecordOf(harness, record, relayPath)), describeTexts(expected));
    QCOMPARE(describeTexts(timelineItemOf(harness, record, relayPath)),
             describeTexts(itemFor(expected)));
    QCOMPARE(harness.log.take(), QStringList());
}

void TestRecords::showTheTimesOfTheServersZone_data()
{
    QTest::addColumn<QVariantList>("zoneAnswers");
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<QString>("date");
    QTest::addColumn<QString>("dateTime");
    QTest::addColumn<QString>("range");

    const QVariantList none;
    const QVariantList newYork{QByteArray("America/New_York")};
    const qint64 winter = utc(2026, 1, 15, 23, 59, 50);
    const qint64 summer = utc(2026, 7, 15, 23, 59, 50);

    QTest::newRow("system zone, winter")
        << none << winter << winter + Minute << local("1/16/26", "16.01.26")
        << local("1/16/26 12:59 AM", "16.01.26 00:59") << u"00:59:50 - 01:00:50"_s;
    QTest::newRow("system zone, summer")
        << none << summer << summer + Minute << local("7/16/26", "16.07.26")
        << local("7/16/26 1:59 AM", "16.07.26 01:59") << u"01:59:50 - 02:00:50"_s;
    QTest::newRow("server's zone, winter")
        << newYork << winter << winter + Minute << local("1/15/26", "15.01.26")
        << local("1/15/26 6:59 PM", "15.01.26 18:59") << u"18:59:50 - 19:00:50"_s;
    QTest::newRow("server's zone, summer")
        << newYork << summer << summer + Minute << local("7/15/26", "15.07.26")
        << local("7/15/26 7:59 PM", "15.07.26 19:59") << u"19:59:50 - 20:00:50"_s;
    QTest::newRow("no daylight saving, past midnight UTC")
        << QVariantList{QByteArray("UTC")} << winter << winter + Minute
        << local("1/15/26", "15.01.26") << local("1/15/26 11:59 PM", "15.01.26 23:59")
        << u"23:59:50 - 00:00:50"_s;
    QTest::newRow("half an hour's offset")
        << QVariantList{QByteArray("Asia/Kolkata")} << winter << winter + Minute
        << local("1/16/26", "16.01.26") << local("1/16/26 5:29 AM", "16.01.26 05:29")
        << u"05:29:50 - 05:30:50"_s;

    const qint64 spring = utc(2026, 3, 29, 1);
    QTest::newRow("clock goes forward, system zone")
        << none << spring - Second << spring << local("3/29/26", "29.03.26")
        << local("3/29/26 1:59 AM", "29.03.26 01:59") << u"01:59:59 - 03:00:00"_s;
    const qint64 autumn = utc(2026, 10, 25, 1);
    QTest::newRow("clock goes back, system zone")
        << none << autumn - Second << autumn << local("10/25/26", "25.10.26")
        << local("10/25/26 2:59 AM", "25.10.26 02:59") << u"02:59:59 - 02:00:00"_s;
    const qint64 americanSpring = utc(2026, 3, 8, 7);
    QTest::newRow("clock goes forward, server's zone")
        << newYork << americanSpring - Second << americanSpring << local("3/8/26", "08.03.26")
        << local("3/8/26 1:59 AM", "08.03.26 01:59") << u"01:59:59 - 03:00:00"_s;
    const qint64 americanAutumn = utc(2026, 11, 1, 6);
    QTest::newRow("clock goes back, server's zone")
        << newYork << americanAutumn - Second << americanAutumn << local("11/1/26", "01.11.26")
        << local("11/1/26 1:59 AM", "01.11.26 01:59") << u"01:59:59 - 01:00:00"_s;

    QTest::newRow("before the epoch")
        << newYork << qint64(-1) << qint64(-Second) << local("12/31/69", "31.12.69")
        << local("12/31/69 6:59 PM", "31.12.69 18:59") << u"18:59:59 - 18:59:59"_s;
    QTest::newRow("another century")
        << newYork << utc(1999, 12, 31, 12) << utc(2126, 1, 1, 12) << local("12/31/99", "31.12.99")
        << local("12/31/99 7:00 AM", "31.12.99 07:00") << u"07:00:00 - 07:00:00"_s;

    const auto summerInNewYork = [&](const char *title, const QVariantList &answers) {
        QTest::newRow(title) << answers << summer << summer + Minute << local("7/15/26", "15.07.26")
                             << local("7/15/26 7:59 PM", "15.07.26 19:59")
                             << u"19:59:50 - 20:00:50"_s;
    };
    summerInNewYork("an empty zone keeps the old", newYork + QVariantList{QByteArray("")});
    summerInNewYork("no zone keeps the old", newYork + QVariantList{QVariant()});
    summerInNewYork("a zone of another type keeps the old",
                    newYork + QVariantList{QVariantMap{{u"zone"_s, 1}}});
    summerInNewYork("a zone as text", {u"America/New_York"_s});
    summerInNewYork("a good zone after an unknown one",
                    QVariantList{QByteArray("Not/AZone")} + newYork);
    QTest::newRow("an unknown zone") << QVariantList{QByteArray("Not/AZone")} << summer
                                     << summer + Minute << QString() << QString() << u" - "_s;
    QTest::newRow("a zone of garbage")
        << newYork + QVariantList{QByteArray("\xff\x00%s", 4)} << summer << summer + Minute
        << QString() << QString() << u" - "_s;
}

void TestRecords::showTheTimesOfTheServersZone()
{
    QFETCH(const QVariantList, zoneAnswers);
    QFETCH(const qint64, start);
    QFETCH(const qint64, end);
    QFETCH(const QString, date);
    QFETCH(const QString, dateTime);
    QFETCH(const QString, range);

    PluginHarness harness;
    for (const QVariant &zone : zoneAnswers)
        harness.answer(u"QuerySevTimezone"_s, zone);
    const QVariantMap record = serverRecord(u"b"_s, u"1"_s, u"loc"_s, start, end);
    const QVariantMap shown = displayRecordOf(harness, record, u"A"_s);
    QCOMPARE(shown.value(u"displayDate"_s).toString(), date);
    QCOMPARE(shown.value(u"displayDateTime"_s).toString(), dateTime);
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

void TestRecords::areMadeOfWhateverTheListHolds_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::addColumn<QStringList>("bookmarkIDs");

    const QVariant good = serverRecord(u"good"_s, u"1"_s, u"loc"_s, 1, 2);
    const auto bookmarks = [](const QVariant &value) {
        return QVariant(QVariantMap{{u"Bookmarks"_s, value}});
    };
    QTest::newRow("nothing") << QVariant() << QStringList();
    QTest::newRow("a list without a map") << QVariant(QVariantList{good}) << QStringList();
    QTest::newRow("no list") << bookmarks({}) << QStringList();
    QTest::newRow("one record instead of a list") << bookmarks(good) << QStringList();
    QTest::newRow("a number instead of a list") << bookmarks(5) << QStringList();
    QTest::newRow("a key of another case")
        << QVariant(QVariantMap{{u"bookmarks"_s, QVariantList{good}}}) << QStringList();
    QTest::newRow("records among others")
        << bookmarks(QVariantList{5, good, QVariant(), u"text"_s, good})
        << QStringList{QString(), u"good"_s, QString(), QString(), u"good"_s};
    QTest::newRow("a list of texts") << bookmarks(QStringList{u"b"_s}) << QStringList{QString()};
    QTest::newRow("a hash as record")
        << bookmarks(QVariantList{QVariantHash{{u"BookmarkID"_s, u"hashed"_s}}})
        << QStringList{u"hashed"_s};
}

void TestRecords::areMadeOfWhateverTheListHolds()
{
    QFETCH(const QVariant, answer);
    QFETCH(const QStringList, bookmarkIDs);

    PluginHarness harness;
    harness.answer(u"QueryBookmarkForRecent"_s, answer, u"A"_s);
    QCOMPARE(harness.emitted->take(), QStringList{u"queryBookmarkForRecentResponsed(true)"_s});
    QStringList actual;
    const auto records = harness.call<QVariantList>("getBookmarkListForRecent");
    for (const QVariant &record : records) {
        QCOMPARE(record.toMap().size(), 13);
        actual.append(record.toMap().value(u"bookmarkID"_s).toString());
    }
    QCOMPARE(actual, bookmarkIDs);
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
