#include "Station.h"
#include "StationTest.h"

#include <QtCore/QDateTime>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUuid>
#include <QtTest/QTest>

#include <limits>

using namespace workbench;

namespace {

constexpr qint64 First = std::numeric_limits<qint64>::min();
constexpr qint64 Last = std::numeric_limits<qint64>::max();
constexpr qint64 Hour = 3'600'000;

QVariantMap record(const QString &camera, qint64 start, qint64 end,
                   const QString &location = text("loc"))
{
    return {{text("CameraID"), camera},
            {text("LocationID"), location},
            {text("StartTimestamp"), start},
            {text("EndTimestamp"), end},
            {text("Description"), text("a fall")},
            {text("Creator"), text("guard")},
            {text("Group"), text("Abuse")}};
}

QVariantMap with(QVariantMap map, const char *key, const QVariant &value)
{
    map.insert(text(key), value);
    return map;
}

QVariantMap without(QVariantMap map, const char *key)
{
    map.remove(text(key));
    return map;
}

QVariantMap bookmarkID(const QString &id)
{
    return {{text("BookmarkID"), id}};
}

QVariantMap recycling(uint hours, bool enabled)
{
    return {{text("reserveHour"), hours}, {text("enableRecycle"), enabled}};
}

QByteArray contentsOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool overwrite(const QString &path, qint64 position, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::ReadWrite) && file.seek(position) &&
           file.write(bytes) == bytes.size();
}

} // namespace

class TestStation : public QObject
{
    Q_OBJECT

private:
    QString path() const { return m_folder->filePath(text("station #1?.sqlite")); }
    void open();
    standin::Answer ask(const char *command, const QVariant &payload = QVariant());
    QString add(const QVariantMap &bookmark);
    QVariantList all();
    QStringList descriptions(const standin::Answer &answer);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Station> m_station;

private Q_SLOTS:
    void init();
    void addAnswersTheCreatedRecord();
    void batchAddKeepsOrderAndLeavesOutUnknownCameras();
    void deleteAnswersTheIdentifier();
    void batchDeleteIsAllOrNothing();
    void updateChangesWhatIsGiven_data();
    void updateChangesWhatIsGiven();
    void removeAllLeavesNothing();
    void recentAreTheNewestOfLocationOrCamera_data();
    void recentAreTheNewestOfLocationOrCamera();
    void timeRangesOverlapClosed_data();
    void timeRangesOverlapClosed();
    void apiQueryTakesIdentifiersAndKeys_data();
    void apiQueryTakesIdentifiersAndKeys();
    void factsOfTheServer();
    void badPayloadChangesNothing_data();
    void badPayloadChangesNothing();
    void everythingSurvivesReopening();
    void recycleDeletesWhatEndedBefore_data();
    void recycleDeletesWhatEndedBefore();
    void recycleRunsByItself();
    void failedBatchStoresNothing();
    void failingDatabaseChangesNothing();
    void unusableFileIsRefusedUntouched_data();
    void unusableFileIsRefusedUntouched();
    void interruptedCreationIsTakenUp();
    void nothingIsLostInACrash();
};

void TestStation::init()
{
    QTest::failOnWarning(QRegularExpression(text(".")));
    m_station.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    open();
}

void TestStation::open()
{
    m_station.reset();
    QString error;
    m_station = Station::open({text("north/%1"),
                               text("North"),
                               text("loc"),
                               {{text("cam-1"), text("Gate")}, {text("cam/2"), text("Hall")}},
                               path()},
                              &error);
    QVERIFY2(m_station, qPrintable(error));
}

standin::Answer TestStation::ask(const char *command, const QVariant &payload)
{
    return m_station->execute(text(command), payload);
}

QString TestStation::add(const QVariantMap &bookmark)
{
    const standin::Answer answer = ask("AddBookmark", bookmark);
    return answer.resultCode == text("0")
               ? answer.result.toMap().value(text("BookmarkID")).toString()
               : QString();
}

QVariantList TestStation::all()
{
    return ask("QueryAllBookmars", QVariantMap()).result.toMap().value(text("Bookmarks")).toList();
}

QStringList TestStation::descriptions(const standin::Answer &answer)
{
    const QVariantList records = answer.result.typeId() == QMetaType::QVariantMap
                                     ? answer.result.toMap().value(text("Bookmarks")).toList()
                                     : answer.result.toList();
    QStringList found{answer.resultCode};
    for (const QVariant &element : records)
        found.append(element.toMap().value(text("Description")).toString());
    return found;
}

void TestStation::addAnswersTheCreatedRecord()
{
    QVariantMap sent = record(text("cam-1"), First, Last);
    // A single surrogate, a format sign and a place marker come back as they were sent.
    sent.insert(text("Description"), QString(QChar(0xD800)) + text("%1\u202E\nü"));
    const standin::Answer answer = ask("AddBookmark", with(sent, "BookmarkID", text("mine")));
    QCOMPARE(answer.resultCode, text("0"));
    const QString id = answer.result.toMap().value(text("BookmarkID")).toString();
    QCOMPARE(QUuid(id).toString(QUuid::WithoutBraces), id);

    const QVariantMap expected = with(sent, "BookmarkID", id);
    QCOMPARE(answer.result.toMap(), expected);
    QCOMPARE(all(), QVariantList{expected});
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QCOMPARE(all().constFirst().toMap().value(it.key()).typeId(), it->typeId());

    const QVariantMap placeless = record(text("cam/2"), 1, 1, QString());
    QCOMPARE(ask("AddBookmark", placeless).result.toMap().value(text("LocationID")), text("loc"));
}

void TestStation::batchAddKeepsOrderAndLeavesOutUnknownCameras()
{
    const QStringList cameras{text("cam/2"), text("cam-9"), text("cam-1"), QString()};
    QVariantList batch;
    for (const QString &camera : cameras)
        batch.append(record(camera, 1, 2));
    const standin::Answer answer = ask("AddBookmarks", batch);
    QCOMPARE(answer.resultCode, text("0"));
    const QVariantList created = answer.result.toList();
    QCOMPARE(created.size(), batch.size());
    for (qsizetype i = 0; i < batch.size(); ++i) {
        QCOMPARE(without(created.at(i).toMap(), "BookmarkID"), batch.at(i).toMap());
        QCOMPARE(created.at(i).toMap().contains(text("BookmarkID")), i % 2 == 0);
    }
    QCOMPARE(all(), (QVariantList{created.at(0), created.at(2)}));
    QCOMPARE(ask("AddBookmarks", QVariantList()).resultCode, text("0"));
    QCOMPARE(ask("AddBookmark", record(text("cam-9"), 1, 2)).resultCode, text("6"));
}

void TestStation::deleteAnswersTheIdentifier()
{
    const QString id = add(record(text("cam-1"), 1, 2));
    QCOMPARE(ask("DeleteBookmark", bookmarkID(text("other"))).resultCode, text("2"));
    QCOMPARE(all().size(), 1);
    const standin::Answer answer = ask("DeleteBookmark", bookmarkID(id));
    QCOMPARE(answer.resultCode, text("0"));
    QCOMPARE(answer.result, QVariant(id));
    QVERIFY(all().isEmpty());
    QCOMPARE(ask("DeleteBookmark", bookmarkID(id)).resultCode, text("2"));
}

void TestStation::batchDeleteIsAllOrNothing()
{
    const QString a = add(record(text("cam-1"), 1, 2));
    const QString b = add(record(text("cam-1"), 3, 4));
    const QString c = add(record(text("cam-1"), 5, 6));

    const standin::Answer refused =
        ask("DeleteBookmarks", QVariantList{bookmarkID(a), bookmarkID(text("x")), bookmarkID(b)});
    QCOMPARE(refused.resultCode, text("2"));
    QCOMPARE(refused.result, QVariant(QStringList{a, text("x"), b}));
    QCOMPARE(all().size(), 3);

    const standin::Answer done =
        ask("DeleteBookmarks", QVariantList{bookmarkID(c), bookmarkID(a), bookmarkID(c)});
    QCOMPARE(done.resultCode, text("0"));
    QCOMPARE(done.result, QVariant(QStringList{c, a, c}));
    QCOMPARE(all().size(), 1);
    QCOMPARE(all().constFirst().toMap().value(text("BookmarkID")), b);
}

void TestStation::updateChangesWhatIsGiven_data()
{
    QTest::addColumn<QVariantMap>("changes");
    const QVariantMap nothing;
    QTest::newRow("nothing") << nothing;
    QTest::newRow("description") << with(nothing, "Description", text("new"));
    QTest::newRow("group") << with(nothing, "Group", text("new"));
    QTest::newRow("both, one emptied")
        << with(with(nothing, "Description", text("")), "Group", text("new"));
    QTest::newRow("null is stored as empty") << with(nothing, "Group", QString());
}

void TestStation::updateChangesWhatIsGiven()
{
    QFETCH(QVariantMap, changes);
    add(record(text("cam-1"), 1, 2));
    const QVariantList before = all();
    QVariantMap expected = record(text("cam/2"), 3, 4);
    expected.insert(text("BookmarkID"), add(expected));
    expected.insert(changes);
    changes.insert(text("BookmarkID"), expected.value(text("BookmarkID")));
    QCOMPARE(ask("UpdateBookmark", changes).resultCode, text("0"));
    QCOMPARE(all(), before + QVariantList{expected});
    changes.insert(text("BookmarkID"), text("unknown"));
    QCOMPARE(ask("UpdateBookmark", changes).resultCode, text("2"));
}

void TestStation::removeAllLeavesNothing()
{
    add(record(text("cam-1"), 1, 2));
    add(record(text("cam/2"), 1, 2, text("elsewhere")));
    QCOMPARE(ask("RemoveAllBookmarks").resultCode, text("0"));
    QVERIFY(all().isEmpty());
}

void TestStation::recentAreTheNewestOfLocationOrCamera_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("found");
    QTest::newRow("location, fewer than there are") << text("loc-a") << 2 << text("0,d,b");
    QTest::newRow("camera of any location") << text("cam-1") << 255 << text("0,d,c,a");
    QTest::newRow("both location and camera") << text("cam/2") << 3 << text("0,e,b");
    QTest::newRow("none wanted") << text("cam-1") << 0 << text("0");
    QTest::newRow("nothing known") << text("loc") << 9 << text("0");
    QTest::newRow("no identifier") << QString() << 9 << text("0");
}

void TestStation::recentAreTheNewestOfLocationOrCamera()
{
    QFETCH(QString, id);
    QFETCH(int, count);
    QFETCH(QString, found);
    const auto addNamed = [this](const char *name, const char *camera, const char *location,
                                 qint64 start) {
        QVERIFY(
            !add(with(record(text(camera), start, Last, text(location)), "Description", text(name)))
                 .isEmpty());
    };
    addNamed("a", "cam-1", "loc-a", -5);
    addNamed("d", "cam-1", "loc-a", 30);
    addNamed("b", "cam/2", "loc-a", 10);
    addNamed("c", "cam-1", "loc-b", 20);
    addNamed("e", "cam/2", "cam/2", 40);
    const QVariantMap payload{{text("LocationID"), id}, {text("RecentCnt"), count}};
    QCOMPARE(descriptions(ask("QueryBookmarkForRecent", payload)).join(QLatin1Char(',')), found);
}

void TestStation::timeRangesOverlapClosed_data()
{
    QTest::addColumn<qint64>("start");
    QTest::addColumn<qint64>("end");
    QTest::addColumn<QString>("found");
    const auto row = [](const char *name, qint64 start, qint64 end, const char *found) {
        QTest::newRow(name) << start << end << text(found);
    };
    row("everything, in the order of the starts", First, Last, "0,first,long,short,moment,last");
    row("touches an end", 200, 250, "0,long,short");
    row("one after an end", 201, 250, "0,long");
    row("touches a start", 50, 100, "0,long,short");
    row("one before a start", 50, 99, "0,long");
    row("inside a bookmark", 120, 130, "0,long,short");
    row("around a bookmark", 90, 210, "0,long,short");
    row("a single moment", 500, 500, "0,long,moment");
    row("the first moment", First, First, "0,first");
    row("the last moment", Last, Last, "0,last");
    row("end before start", 130, 120, "0");
    row("the ends exchanged", Last, First, "0");
}

void TestStation::timeRangesOverlapClosed()
{
    QFETCH(qint64, start);
    QFETCH(qint64, end);
    QFETCH(QString, found);
    const auto addNamed = [this](const char *name, qint64 from, qint64 to) {
        const QVariantMap bookmark = record(text("cam-1"), from, to);
        QVERIFY(!add(with(bookmark, "Description", text(name))).isEmpty());
    };
    addNamed("short", 100, 200);
    addNamed("last", Last, Last);
    addNamed("long", 0, 1000);
    addNamed("first", First, First);
    addNamed("moment", 500, 500);
    add(record(text("cam/2"), First, Last, text("elsewhere")));

    QVariantMap payload{{text("LocationID"), text("loc")},
                        {text("StartTimestamp"), start},
                        {text("EndTimestamp"), end}};
    QCOMPARE(descriptions(ask("QueryBookmarkForTimeline", payload)).join(QLatin1Char(',')), found);
    payload.insert(text("CameraIDList"), QVariantList{text("cam-1")});
    QCOMPARE(descriptions(ask("QueryBookmarkForApi", payload)).join(QLatin1Char(',')), found);
}

void TestStation::apiQueryTakesIdentifiersAndKeys_data()
{
    QTest::addColumn<QVariantList>("cameras");
    QTest::addColumn<QString>("found");
    QTest::newRow("identifier") << QVariantList{text("cam-1")} << text("0,one,three");
    QTest::newRow("key with slashes") << QVariantList{text("north/%1/cam/2")} << text("0,two");
    QTest::newRow("several, one of them twice")
        << QVariantList{text("cam/2"), text("north/%1/cam-1"), text("cam-1")}
        << text("0,one,two,three");
    QTest::newRow("key of another station") << QVariantList{text("south/cam-1")} << text("0");
    QTest::newRow("no camera") << QVariantList() << text("0");
}

void TestStation::apiQueryTakesIdentifiersAndKeys()
{
    QFETCH(QVariantList, cameras);
    QFETCH(QString, found);
    add(with(record(text("cam-1"), 3, 9), "Description", text("three")));
    add(with(record(text("cam/2"), 2, 9), "Description", text("two")));
    add(with(record(text("cam-1"), 1, 9), "Description", text("one")));
    const QVariantMap payload{{text("CameraIDList"), cameras},
                              {text("StartTimestamp"), qint64(0)},
                              {text("EndTimestamp"), qint64(99)}};
    QCOMPARE(descriptions(ask("QueryBookmarkForApi", payload)).join(QLatin1Char(',')), found);
}

void TestStation::factsOfTheServer()
{
    m_station->setTimeZone(QByteArrayLiteral("Asia/Tokyo"));
    m_station->setSettingPermission(false);
    QCOMPARE(ask("QuerySevTimezone").result, QVariant(QByteArrayLiteral("Asia/Tokyo")));
    QCOMPARE(ask("QuerySettingPermission").result, QVariant(false));
    QCOMPARE(ask("GetRecycleSetting").result, QVariant(recycling(0, false)));
    const standin::Answer updated = ask("UpdateRecycleSetting", recycling(4294967295U, true));
    QCOMPARE(updated.resultCode, text("0"));
    QCOMPARE(updated.result, QVariant(true));
    QCOMPARE(ask("GetRecycleSetting").result, QVariant(recycling(4294967295U, true)));
    QCOMPARE(ask("QueryAllBookmarks", QVariantMap()).resultCode, text("3"));
    QCOMPARE(ask("addbookmark", record(text("cam-1"), 1, 2)).resultCode, text("3"));
}

void TestStation::badPayloadChangesNothing_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QVariant>("payload");
    const auto row = [](const char *name, const char *command, const QVariant &payload) {
        QTest::addRow("%s: %s", command, name) << text(command) << payload;
    };
    const QVariantMap good = record(text("cam-1"), 1, 2);
    const QStringList recordKeys = good.keys();
    for (const QString &key : recordKeys) {
        row(qPrintable(text("no ") + key), "AddBookmark", without(good, qPrintable(key)));
        row(qPrintable(text("a number of another type as ") + key), "AddBookmark",
            with(good, qPrintable(key), 5));
    }
    const QVariantMap bad[] = {
        with(good, "StartTimestamp", qQNaN()),
        with(good, "EndTimestamp", text("2")),
        with(good, "EndTimestamp", qint64(0)),
        with(good, "Description", QString(65'537, QLatin1Char('x'))),
        with(good, "Description", QString(4 << 20, QLatin1Char('x'))),
        with(good, "Creator", QString(1'001, QLatin1Char('x'))),
        with(good, "Group", text("a") + QChar(QChar::Null) + text("b")),
        with(good, "CameraID", QVariantList{text("cam-1")}),
    };
    int number = 0;
    for (const QVariantMap &element : bad) {
        const QByteArray name = "bad value " + QByteArray::number(++number);
        row(name.constData(), "AddBookmark", element);
        row(name.constData(), "AddBookmarks", QVariantList{good, element, good});
    }
    const QVariant notMaps[] = {QVariant(), 1, text("map"), QVariantList{good}, QVariantHash()};
    const char *const takesMap[] = {
        "AddBookmark",         "DeleteBookmark",         "UpdateBookmark",
        "QueryAllBookmars",    "QueryBookmarkForRecent", "QueryBookmarkForTimeline",
        "QueryBookmarkForApi", "UpdateRecycleSetting"};
    for (const char *command : takesMap) {
        for (const QVariant &payload : notMaps)
            row(payload.typeName() ? payload.typeName() : "nothing", command, payload);
        if (qstrcmp(command, "QueryAllBookmars") != 0)
            row("empty map", command, QVariantMap());
    }
    const char *const takesList[] = {"AddBookmarks", "DeleteBookmarks"};
    for (const char *command : takesList) {
        row("nothing", command, QVariant());
        row("map", command, good);
        row("list of texts", command, QVariantList{text("a")});
        row("map with keys missing", command, QVariantList{QVariantMap()});
        row("texts", command, QStringList{text("a")});
    }
    const char *const takesNothing[] = {"RemoveAllBookmarks", "GetRecycleSetting",
                                        "QuerySevTimezone", "QuerySettingPermission"};
    for (const char *command : takesNothing)
        row("empty map", command, QVariantMap());

    row("identifier is a number", "DeleteBookmark", with({}, "BookmarkID", 1));
    row("one identifier is a number", "DeleteBookmarks",
        QVariantList{bookmarkID(text("a")), with({}, "BookmarkID", 1)});
    row("description too long", "UpdateBookmark",
        with(bookmarkID(text("a")), "Description", QString(65'537, QLatin1Char('x'))));
    row("group is no text", "UpdateBookmark", with(bookmarkID(text("a")), "Group", 1));
    const QVariantMap recent{{text("LocationID"), text("loc")}, {text("RecentCnt"), 5}};
    row("count below 0", "QueryBookmarkForRecent", with(recent, "RecentCnt", -1));
    row("count above 255", "QueryBookmarkForRecent", with(recent, "RecentCnt", 256));
    row("count is a text", "QueryBookmarkForRecent", with(recent, "RecentCnt", text("5")));
    const QVariantMap api{{text("CameraIDList"), QVariantList{text("cam-1")}},
                          {text("StartTimestamp"), qint64(1)},
                          {text("EndTimestamp"), qint64(2)}};
    row("camera is a map", "QueryBookmarkForApi",
        with(api, "CameraIDList", QVariantList{QVariantMap()}));
    row("start is not a number", "QueryBookmarkForApi", with(api, "StartTimestamp", qQNaN()));
    row("no end", "QueryBookmarkForApi", without(api, "EndTimestamp"));
    row("hours below 0", "UpdateRecycleSetting", with(recycling(1, true), "reserveHour", -1));
    row("switch is a number", "UpdateRecycleSetting", with(recycling(1, true), "enableRecycle", 1));
}

void TestStation::badPayloadChangesNothing()
{
    QFETCH(QString, command);
    QFETCH(QVariant, payload);
    add(record(text("cam-1"), 1, 2));
    const QVariantList bookmarks = all();
    const standin::Answer answer = m_station->execute(command, payload);
    QCOMPARE(answer.resultCode, text("1"));
    QVERIFY(!answer.result.toBool());
    QCOMPARE(all(), bookmarks);
    QCOMPARE(ask("GetRecycleSetting").result, QVariant(recycling(0, false)));
}

void TestStation::everythingSurvivesReopening()
{
    const qint64 future = QDateTime::currentMSecsSinceEpoch() + 1000 * Hour;
    add(record(text("cam-1"), First, future));
    add(record(text("cam/2"), future, Last));
    ask("UpdateRecycleSetting", recycling(72, true));
    const QVariantList before = all();
    open();
    QCOMPARE(all(), before);
    QCOMPARE(before.size(), 2);
    QCOMPARE(ask("GetRecycleSetting").result, QVariant(recycling(72, true)));
}

void TestStation::recycleDeletesWhatEndedBefore_data()
{
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<uint>("hours");
    QTest::addColumn<qint64>("now");
    QTest::addColumn<qsizetype>("left");
    QTest::newRow("switched off") << false << 0U << Last << qsizetype(3);
    QTest::newRow("ends at the limit stay") << true << 2U << 5 * Hour << qsizetype(3);
    QTest::newRow("one after the limit") << true << 2U << 5 * Hour + 1 << qsizetype(2);
    QTest::newRow("no reserve") << true << 0U << 4 * Hour + 1 << qsizetype(1);
    QTest::newRow("longest reserve") << true << 4294967295U << 5 * Hour << qsizetype(3);
    QTest::newRow("end of time") << true << 0U << Last << qsizetype(1);
    QTest::newRow("beginning of time") << true << 4294967295U << First << qsizetype(3);
}

void TestStation::recycleDeletesWhatEndedBefore()
{
    QFETCH(bool, enabled);
    QFETCH(uint, hours);
    QFETCH(qint64, now);
    QFETCH(qsizetype, left);
    ask("UpdateRecycleSetting", recycling(hours, enabled));
    // Not through the station, whose own recycling would meet them at once.
    const auto created = m_station->insert({{{}, text("cam-1"), {}, First, 3 * Hour, {}, {}, {}},
                                            {{}, text("cam-1"), {}, 0, 4 * Hour, {}, {}, {}},
                                            {{}, text("cam-1"), {}, 0, Last, {}, {}, {}}});
    QVERIFY(created.has_value());
    QVERIFY(m_station->recycle(now));
    QCOMPARE(all().size(), left);
}

void TestStation::recycleRunsByItself()
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    add(record(text("cam-1"), 0, now - 5 * Hour));
    add(record(text("cam-1"), 0, now - Hour));
    ask("UpdateRecycleSetting", recycling(3, true));
    QCOMPARE(all().size(), 1);
    add(record(text("cam-1"), 0, now - 5 * Hour));
    open();
    QCOMPARE(all().size(), 1);
}

void TestStation::failedBatchStoresNothing()
{
    QString error;
    const QString file = m_folder->filePath(text("batch.sqlite"));
    const auto store = BookmarkStore::open(file, &error);
    QVERIFY2(store, qPrintable(error));
    const Bookmark one{text("1"), text("c"), text("l"), 1, 2, {}, {}, {}};
    const Bookmark two{text("2"), text("c"), text("l"), 1, 2, {}, {}, {}};
    QVERIFY(!store->add({one, two, one}));
    QVERIFY(store->lastError().contains(text("batch.sqlite")));
    QCOMPARE(store->all()->size(), 0);
    QVERIFY(store->add({one, two}));
    QCOMPARE(store->all()->size(), 2);
}

void TestStation::failingDatabaseChangesNothing()
{
    const QString id = add(record(text("cam-1"), 1, 2));
    const QVariantList before = all();
    QVERIFY(runSql(path(), "CREATE TRIGGER full BEFORE INSERT ON bookmark"
                           " BEGIN SELECT RAISE(ABORT, 'disk is full'); END"));
    QVERIFY(runSql(path(), "CREATE TRIGGER kept BEFORE DELETE ON bookmark"
                           " BEGIN SELECT RAISE(ABORT, 'disk is full'); END"));
    const QRegularExpression warning(text("station #1.*disk is full"));
    for (int i = 0; i < 3; ++i)
        QTest::ignoreMessage(QtWarningMsg, warning);
    QCOMPARE(ask("AddBookmark", record(text("cam-1"), 1, 2)).resultCode, text("4"));
    const standin::Answer batch = ask("DeleteBookmarks", QVariantList{bookmarkID(id)});
    QCOMPARE(batch.resultCode, text("4"));
    QCOMPARE(batch.result, QVariant(QStringList{id}));
    QCOMPARE(ask("RemoveAllBookmarks").resultCode, text("4"));
    QCOMPARE(all(), before);
}

void TestStation::unusableFileIsRefusedUntouched_data()
{
    QTest::addColumn<QString>("spoil");
    QTest::addColumn<QString>("reason");
    QTest::newRow("no database") << text("text") << text("not a SQLite database");
    QTest::newRow("shorter than a header") << text("short") << text("not a SQLite database");
    QTest::newRow("of another application") << text("foreign") << text("another application");
    QTest::newRow("of a newer version") << text("newer") << text("newer version");
    QTest::newRow("cut off") << text("cut") << text("is damaged");
    QTest::newRow("a page overwritten") << text("page") << text("is damaged");
    QTest::newRow("a folder") << text("folder") << text("directory");
}

void TestStation::unusableFileIsRefusedUntouched()
{
    QFETCH(QString, spoil);
    QFETCH(QString, reason);
    add(record(text("cam-1"), 1, 2));
    m_station.reset();
    QFile file(path());
    if (spoil == text("text") || spoil == text("short")) {
        QVERIFY(file.resize(0));
        QVERIFY(overwrite(path(), 0, QByteArray(spoil == text("text") ? 5000 : 20, 'x')));
    } else if (spoil == text("foreign")) {
        QVERIFY(file.remove());
        QVERIFY(runSql(path(), "CREATE TABLE note (words)"));
    } else if (spoil == text("newer")) {
        QVERIFY(runSql(path(), "PRAGMA user_version = 99"));
    } else if (spoil == text("cut")) {
        QVERIFY(file.resize(file.size() / 2));
    } else if (spoil == text("page")) {
        QVERIFY(overwrite(path(), 4096, QByteArray(4096, 'x')));
    } else {
        QVERIFY(file.remove());
        QVERIFY(QDir().mkpath(path()));
    }
    const QByteArray bytes = contentsOf(path());
    const QStringList files = QDir(m_folder->path()).entryList();

    QString error;
    QVERIFY(!Station::open({{}, {}, {}, {}, path()}, &error));
    QVERIFY2(error.contains(text("station #1?.sqlite: ")), qPrintable(error));
    QVERIFY2(error.contains(reason), qPrintable(error));
    QCOMPARE(contentsOf(path()), bytes);
    QCOMPARE(QDir(m_folder->path()).entryList(), files);
}

void TestStation::interruptedCreationIsTakenUp()
{
    m_station.reset();
    QVERIFY(QFile(path()).resize(0));
    open();
    QVERIFY(!add(record(text("cam-1"), 1, 2)).isEmpty());
}

void TestStation::nothingIsLostInACrash()
{
    add(record(text("cam-1"), 1, 2));
    // What a killed process leaves: the newest bookmarks stand in the log only.
    const QString left = m_folder->filePath(text("left.sqlite"));
    QVERIFY(QFile::copy(path(), left));
    QVERIFY(QFile::copy(path() + text("-wal"), left + text("-wal")));
    // An interrupted checkpoint may have left anything of a page that the log still has.
    QVERIFY(overwrite(left, 4096, QByteArray(4096, 'x')));
    QString error;
    const auto station = Station::open({{}, {}, {}, {}, left}, &error);
    QVERIFY2(station, qPrintable(error));
    QCOMPARE(station->execute(text("QueryAllBookmars"), QVariantMap()).result,
             ask("QueryAllBookmars", QVariantMap()).result);
    QCOMPARE(all().size(), 1);
}

QTEST_GUILESS_MAIN(TestStation)
#include "tst_station.moc"
