#include "Station.h"
#include "StationTest.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUuid>
#include <QtTest/QTest>

#include <functional>
#include <limits>

using namespace stations;

namespace {

constexpr qint64 First = std::numeric_limits<qint64>::min();
constexpr qint64 Last = std::numeric_limits<qint64>::max();

/// The bookmarks of the station, in the order in which they were added.
constexpr char Everything[] = "short last long first moment other";

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

/// A recording server with the cameras "cam-1" and "cam/2" and six bookmarks.
class TestStation : public QObject
{
    Q_OBJECT

private:
    QString path() const { return m_folder->filePath(u"station #1?.sqlite"_s); }
    std::unique_ptr<BookmarkStore> store();
    void open() { open(path()); }
    void open(const QString &path);
    QString ask(const QString &command);
    QVariantList all();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Station> m_station;

private Q_SLOTS:
    void init();
    void commandGivesAnswerAndBookmarks_data();
    void commandGivesAnswerAndBookmarks();
    void storesRecordsUnchanged();
    void badPayloadChangesNothing_data();
    void badPayloadChangesNothing();
    void recyclingDeletesBookmarksThatEndedBefore_data();
    void recyclingDeletesBookmarksThatEndedBefore();
    void reopeningKeepsSettingsAndRecycles();
    void failingDatabaseChangesNothing();
    void unusableFileIsRejectedUnchanged_data();
    void unusableFileIsRejectedUnchanged();
    void crashLosesNoBookmark();
};

void TestStation::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    m_station.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    const auto bookmark = [](const QString &id, qint64 start, qint64 end) {
        return Bookmark{id, u"cam-1"_s, u"loc"_s, start, end, id, {}, {}};
    };
    Bookmark other = bookmark(u"other"_s, 50, 60);
    other.cameraID = u"cam/2"_s;
    other.locationID = u"cam-1"_s;
    QVERIFY(store()->add({bookmark(u"short"_s, 100, 200), bookmark(u"last"_s, Last, Last),
                          bookmark(u"long"_s, 0, 1000), bookmark(u"first"_s, First, First),
                          bookmark(u"moment"_s, 500, 500), other}));
    open();
}

/// Returns a second store on the station's file, to change it without the station.
std::unique_ptr<BookmarkStore> TestStation::store()
{
    QString error;
    std::unique_ptr<BookmarkStore> opened = BookmarkStore::open(path(), &error);
    if (!opened)
        qFatal("%s", qPrintable(error));
    return opened;
}

void TestStation::open(const QString &path)
{
    m_station.reset();
    const QList<Camera> cameras{{u"cam-1"_s, u"Gate"_s}, {u"cam/2"_s, u"Hall"_s}};
    QString error;
    m_station = Station::open({u"north/%1"_s, u"North"_s, u"home"_s, cameras, path}, &error);
    QVERIFY2(m_station, qPrintable(error));
    m_station->setTimeZone("Asia/Tokyo");
    m_station->setSettingPermission(false);
}

/// Executes "Command payload" and returns the answer as text.
QString TestStation::ask(const QString &command)
{
    return inWords(
        m_station->execute(command.section(u' ', 0, 0), payload(command.section(u' ', 1))));
}

QVariantList TestStation::all()
{
    const standin::Answer answer = m_station->execute(u"QueryAllBookmars"_s, QVariantMap());
    return answer.result.toMap().value(u"Bookmarks"_s).toList();
}

void TestStation::commandGivesAnswerAndBookmarks_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("left");
    const auto row = [](const char *name, const QByteArray &command, const QByteArray &answer,
                        const QByteArray &left = Everything) {
        QTest::addRow("%s: %s", command.left(command.indexOf(' ')).constData(), name)
            << QString::fromUtf8(command) << QString::fromUtf8(answer) << QString::fromUtf8(left);
    };
    const QByteArray all = Everything;
    row("own camera", "AddBookmark a@cam-1", "0 a", all + " a");
    row("other camera", "AddBookmark a@cam-9", "6 -");
    row("some other cameras", "AddBookmarks a@cam/2 | b@cam-9 | c@cam-1 | d@", "0 [a b? c d?]",
        all + " a c");
    row("nothing", "UpdateBookmark BookmarkID=long", "0 long");
    row("description", "UpdateBookmark BookmarkID=long Description=new", "0 new",
        "short last new first moment other");
    row("both, one emptied", "UpdateBookmark BookmarkID=long Description= Group=g", "0 :g",
        "short last :g first moment other");
    row("unknown", "UpdateBookmark BookmarkID=x", "2 -");
    row("unknown", "DeleteBookmark BookmarkID=x", "2 -");
    row("known", "DeleteBookmark BookmarkID=long", "0 QString long",
        "short last first moment other");
    row("one unknown", "DeleteBookmarks BookmarkID=long | BookmarkID=x | BookmarkID=short",
        "2 QStringList long x short");
    row("one twice", "DeleteBookmarks BookmarkID=other | BookmarkID=long | BookmarkID=other",
        "0 QStringList other long other", "short last first moment");
    row("all", "RemoveAllBookmarks", "0 -", "");
    row("in the order of adding", "QueryAllBookmars {}", "0 {Bookmarks: [" + all + "]}");

    const auto recent = [&](const char *name, const QByteArray &words, const QByteArray &found) {
        row(name, "QueryBookmarkForRecent " + words, "0 {Bookmarks: [" + found + "]}");
    };
    recent("newest of a location", "LocationID=loc RecentCnt=2", "last moment");
    recent("a location is named as a camera", "LocationID=cam-1 RecentCnt=255",
           "last moment short other long first");
    recent("both together are limited", "LocationID=cam-1 RecentCnt=4", "last moment short other");
    recent("none wanted", "LocationID=loc RecentCnt=0", "");
    recent("no identifier", "LocationID= RecentCnt=9", "");

    const auto times = [&](const char *name, qint64 start, qint64 end, const QByteArray &found) {
        const QByteArray range = " StartTimestamp=" + QByteArray::number(start) +
                                 " EndTimestamp=" + QByteArray::number(end);
        row(name, "QueryBookmarkForTimeline LocationID=loc" + range,
            "0 {Bookmarks: [" + found + "]}");
        row(name, "QueryBookmarkForApi CameraIDList=cam-1" + range, "0 [" + found + ']');
    };
    times("everything, by start", First, Last, "first long short moment last");
    times("touches an end", 200, 250, "long short");
    times("one after an end", 201, 250, "long");
    times("touches a start", 50, 100, "long short");
    times("one before a start", 50, 99, "long");
    times("inside a bookmark", 120, 130, "long short");
    times("the first moment", First, First, "first");
    times("the last moment", Last, Last, "last");
    times("end before start", 130, 120, "");
    const auto cameras = [&](const char *name, const QByteArray &list, const QByteArray &answer) {
        row(name, "QueryBookmarkForApi StartTimestamp=0 EndTimestamp=99 CameraIDList=" + list,
            answer);
    };
    cameras("key with slashes", "north/%1/cam/2", "0 [other]");
    cameras("two cameras, one of them twice", "cam/2,north/%1/cam-1,cam-1", "0 [long other]");
    cameras("key of another station", "south/cam-1", "0 []");
    cameras("none", "", "0 []");

    row("default", "GetRecycleSetting", "0 {enableRecycle: bool false, reserveHour: uint 0}");
    row("at once", "UpdateRecycleSetting reserveHour=3 enableRecycle=true", "0 bool true", "last");
    row("zone", "QuerySevTimezone", "0 QByteArray Asia/Tokyo");
    row("permission", "QuerySettingPermission", "0 bool false");
    row("unknown command", "QueryAllBookmarks {}", "3 -");
    row("other case", "addbookmark a@cam-1", "3 -");
}

void TestStation::commandGivesAnswerAndBookmarks()
{
    QFETCH(const QString, command);
    QFETCH(const QString, left);
    QTEST(ask(command), "answer");
    QCOMPARE(inWords(all()), u'[' + left + u']');
}

void TestStation::storesRecordsUnchanged()
{
    // The text has an unpaired surrogate, a format character and a placeholder of arg().
    QVariantMap sent = record(u"\xD800%1\u202E\nü"_s, u"cam-1"_s, First, Last);
    sent.insert(u"BookmarkID"_s, u"mine"_s);
    const QVariantMap answer = m_station->execute(u"AddBookmark"_s, sent).result.toMap();
    const QString id = answer.value(u"BookmarkID"_s).toString();
    QCOMPARE(QUuid(id).toString(QUuid::WithoutBraces), id);
    sent.insert(u"BookmarkID"_s, id);
    QCOMPARE(answer, sent);
    open();
    const QVariantMap kept = all().constLast().toMap();
    QCOMPARE(kept, sent);
    for (auto it = sent.cbegin(); it != sent.cend(); ++it)
        QCOMPARE(kept.value(it.key()).typeId(), it->typeId());

    sent.insert(u"LocationID"_s, QString());
    sent.insert(u"Creator"_s, QString());
    const QVariant placeless = m_station->execute(u"AddBookmark"_s, sent).result;
    QCOMPARE(placeless.toMap().value(u"LocationID"_s), u"home"_s);
}

void TestStation::badPayloadChangesNothing_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QVariant>("payload");
    const auto row = [](const QString &command, const QString &name, const QVariant &bad) {
        QTest::addRow("%s: %s", qPrintable(command), qPrintable(name)) << command << bad;
    };
    // A payload that is bad alone is also bad in the middle of a batch.
    const auto rows = [&](const QString &command, const QVariantMap &good, const QString &name,
                          const QVariant &bad) {
        row(command, name, bad);
        if (command == u"AddBookmark" || command == u"DeleteBookmark")
            row(command + u's', name, QVariantList{good, bad, good});
    };
    const auto bad = [&](const QString &command, const QString &words,
                         const QVariantMap &badValues) {
        const QVariantMap good = payload(words).toMap();
        for (const QVariant &value :
             {QVariant(), QVariant(1), QVariant(words), QVariant(QVariantHash())})
            rows(command, good, u"no map but "_s + inWords(value), value);
        for (auto it = good.cbegin(); it != good.cend(); ++it) {
            QVariantMap changed = good;
            // QVariant could convert a floating-point number into any of these types.
            changed.insert(it.key(), 5.0);
            rows(command, good, it.key() + u" of another type"_s, changed);
            changed.remove(it.key());
            rows(command, good, u"no "_s + it.key(), changed);
        }
        for (auto it = badValues.cbegin(); it != badValues.cend(); ++it) {
            QVariantMap changed = good;
            changed.insert(it.key(), *it);
            rows(command, good, u"bad "_s + it.key(), changed);
        }
    };
    const QString tooLong(65'537, u'x');
    bad(u"AddBookmark"_s, u"a@cam-1"_s,
        {{u"EndTimestamp"_s, qint64(0)},
         {u"Description"_s, tooLong},
         {u"Creator"_s, QString(1'001, u'x')},
         {u"Group"_s, u"a\0b"_s}});
    bad(u"DeleteBookmark"_s, u"BookmarkID=long"_s, {});
    bad(u"UpdateBookmark"_s, u"BookmarkID=long"_s, {{u"Description"_s, tooLong}, {u"Group"_s, 1}});
    bad(u"QueryAllBookmars"_s, u"{}"_s, {});
    const QString recent = u"QueryBookmarkForRecent"_s;
    bad(recent, u"LocationID=loc RecentCnt=5"_s, {{u"RecentCnt"_s, -1}});
    row(recent, u"count above 255"_s, payload(u"LocationID=loc RecentCnt=256"_s));
    bad(u"QueryBookmarkForTimeline"_s, u"LocationID=loc StartTimestamp=1 EndTimestamp=2"_s, {});
    bad(u"QueryBookmarkForApi"_s, u"CameraIDList=cam-1 StartTimestamp=1 EndTimestamp=2"_s,
        {{u"CameraIDList"_s, QVariantList{1}}});
    bad(u"UpdateRecycleSetting"_s, u"reserveHour=1 enableRecycle=true"_s, {});
    for (const QString &command : {u"AddBookmarks"_s, u"DeleteBookmarks"_s}) {
        row(command, u"nothing"_s, {});
        row(command, u"map"_s, payload(u"BookmarkID=long"_s));
        row(command, u"texts"_s, QStringList{u"long"_s});
    }
    for (const QString &command : {u"RemoveAllBookmarks"_s, u"GetRecycleSetting"_s,
                                   u"QuerySevTimezone"_s, u"QuerySettingPermission"_s})
        row(command, u"map"_s, QVariantMap());
}

void TestStation::badPayloadChangesNothing()
{
    QFETCH(const QString, command);
    QFETCH(const QVariant, payload);
    const QVariantList before = all();
    const QString answer = inWords(m_station->execute(command, payload));
    QCOMPARE(answer, command == u"UpdateRecycleSetting" ? u"1 bool false"_s : u"1 -"_s);
    QCOMPARE(all(), before);
    QVERIFY(!store()->recycleSetting()->enabled);
}

void TestStation::recyclingDeletesBookmarksThatEndedBefore_data()
{
    QTest::addColumn<RecycleSetting>("setting");
    QTest::addColumn<qint64>("now");
    QTest::addColumn<QString>("left");
    constexpr uint longest = std::numeric_limits<uint>::max();
    constexpr qint64 twoHours = 7'200'000;
    using Setting = RecycleSetting;
    QTest::newRow("switched off") << Setting{0, false} << Last << QString::fromLatin1(Everything);
    QTest::newRow("at the limit") << Setting{2, true} << twoHours + 500 << u"last long moment"_s;
    QTest::newRow("end of time") << Setting{0, true} << Last << u"last"_s;
    QTest::newRow("beginning of time")
        << Setting{longest, true} << First << QString::fromLatin1(Everything);
    QTest::newRow("longest reserve")
        << Setting{longest, true} << qint64(0) << u"short last long moment other"_s;
}

void TestStation::recyclingDeletesBookmarksThatEndedBefore()
{
    QFETCH(const RecycleSetting, setting);
    QFETCH(const qint64, now);
    QFETCH(const QString, left);
    // Bypass the station, which would recycle at once.
    QVERIFY(store()->setRecycleSetting(setting));
    QVERIFY(m_station->recycle(now));
    QCOMPARE(inWords(all()), u'[' + left + u']');
}

void TestStation::reopeningKeepsSettingsAndRecycles()
{
    ask(u"UpdateRecycleSetting reserveHour=72 enableRecycle=true"_s);
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    constexpr qint64 hour = 3'600'000;
    QVERIFY(store()->add({{u"a"_s, {}, {}, 0, now - 73 * hour, u"old"_s, {}, {}},
                          {u"b"_s, {}, {}, 0, now - 71 * hour, u"new"_s, {}, {}}}));
    open();
    QCOMPARE(ask(u"GetRecycleSetting"_s), u"0 {enableRecycle: bool true, reserveHour: uint 72}"_s);
    QCOMPARE(inWords(all()), u"[last new]"_s);
}

void TestStation::failingDatabaseChangesNothing()
{
    QVERIFY(runSql(path(), u"CREATE TRIGGER full BEFORE INSERT ON bookmark"
                           " WHEN NEW.description = 'b' BEGIN SELECT RAISE(ABORT, 'full'); END"_s));
    QVERIFY(runSql(path(), u"CREATE TRIGGER kept BEFORE DELETE ON bookmark"
                           " WHEN OLD.id = 'last' BEGIN SELECT RAISE(ABORT, 'full'); END"_s));
    for (int i = 0; i < 4; ++i)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"station #1.*full"_s));
    QCOMPARE(ask(u"AddBookmark b@cam-1"_s), u"4 -"_s);
    QCOMPARE(ask(u"AddBookmarks a@cam-1 | b@cam-1"_s), u"4 -"_s);
    QCOMPARE(ask(u"DeleteBookmarks BookmarkID=short | BookmarkID=last"_s),
             u"4 QStringList short last"_s);
    QCOMPARE(ask(u"RemoveAllBookmarks"_s), u"4 -"_s);
    QCOMPARE(inWords(all()), u'[' + QString::fromLatin1(Everything) + u']');
}

void TestStation::unusableFileIsRejectedUnchanged_data()
{
    using Path = QString;
    using Spoil = std::function<bool(const Path &)>;
    QTest::addColumn<Spoil>("spoil");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QString &reason, const Spoil &spoil) {
        QTest::newRow(name) << spoil << reason;
    };
    const QByteArray page(4096, 'x');
    row("no database", u"not a SQLite database"_s,
        [page](const Path &path) { return overwrite(path, 0, page); });
    row("of another application", u"another application"_s, [](const Path &path) {
        return QFile::remove(path) && runSql(path, u"CREATE TABLE note (words)"_s);
    });
    row("of a newer version", u"newer version"_s,
        [](const Path &path) { return runSql(path, u"PRAGMA user_version = 99"_s); });
    row("cut off", u"is damaged"_s, [](const Path &path) { return QFile::resize(path, 8192); });
    row("a page overwritten", u"is damaged"_s,
        [page](const Path &path) { return overwrite(path, 4096, page); });
    row("a folder", u"directory"_s,
        [](const Path &path) { return QFile::remove(path) && QDir().mkpath(path); });
}

void TestStation::unusableFileIsRejectedUnchanged()
{
    QFETCH(const std::function<bool(const QString &)>, spoil);
    QFETCH(const QString, reason);
    m_station.reset();
    QVERIFY(spoil(path()));
    const QByteArray bytes = contentsOf(path());
    const QStringList files = QDir(m_folder->path()).entryList();

    QString error;
    QVERIFY(!Station::open({{}, {}, {}, {}, path()}, &error));
    QVERIFY2(error.startsWith(path() + u": "_s) && error.contains(reason), qPrintable(error));
    QCOMPARE(contentsOf(path()), bytes);
    QCOMPARE(QDir(m_folder->path()).entryList(), files);
}

void TestStation::crashLosesNoBookmark()
{
    ask(u"AddBookmark new@cam-1"_s);
    // Simulate a killed process: only the log has the newest bookmark, and an interrupted
    // checkpoint may have written a part of a page.
    const QString file = path();
    const QString left = m_folder->filePath(u"left.sqlite"_s);
    QVERIFY(QFile::copy(file, left) && QFile::copy(file + u"-wal"_s, left + u"-wal"_s));
    QVERIFY(overwrite(left, 4096, QByteArray(4096, 'x')));
    const QVariantList before = all();
    open(left);
    QCOMPARE(before.size(), 7);
    QCOMPARE(all(), before);

    // A process that is killed while it creates the file leaves an empty one.
    m_station.reset();
    QVERIFY(QFile::resize(file, 0));
    open(file);
    QCOMPARE(inWords(all()), u"[]"_s);
}

QTEST_GUILESS_MAIN(TestStation)
#include "tst_station.moc"
