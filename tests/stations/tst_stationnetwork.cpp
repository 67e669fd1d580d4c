#include "StationNetwork.h"
#include "StationTest.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

using namespace stations;

namespace {

/// Relay paths that fail if a station splits, formats or mixes them up.
QStringList relayPaths()
{
    return {u"east/%1"_s, u"east_%1"_s, u"EAST/%1"_s, u"../west"_s};
}

QList<StationConfig> configs(const QStringList &paths = relayPaths())
{
    QList<StationConfig> list;
    for (const QString &relayPath : paths)
        list.append({relayPath, u"S"_s, u"loc"_s, {{u"cam"_s, u"C"_s}}, {}});
    return list;
}

} // namespace

/// Four stations, three of them with bookmarks "a" to "d" in the order of their starts.
class TestStationNetwork : public QObject
{
    Q_OBJECT

private:
    void open(const QStringList &paths = relayPaths());
    QString ask(const QString &command);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StationNetwork> m_network;

private Q_SLOTS:
    void init();
    void commandGivesAnswerAndBookmarks_data();
    void commandGivesAnswerAndBookmarks();
    void allStationsShareSettingZoneAndPermission();
    void failingStationHidesNoBookmark();
    void onlyOtherClientsCauseEvents();
    void openReportsUnusableFiles();
    void emptiedFileIsReportedAndKept();
};

void TestStationNetwork::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    m_network.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    const auto add = [this](const QString &relayPath, const QStringList &ids) {
        QString error;
        QList<Bookmark> bookmarks;
        for (const QString &id : ids)
            bookmarks.append({id, u"cam"_s, u"loc"_s, id.at(0).unicode(), 200, id, {}, {}});
        const auto store =
            BookmarkStore::open(m_folder->filePath(StationNetwork::fileNameOf(relayPath)), &error);
        QVERIFY2(store && store->add(bookmarks), qPrintable(error));
    };
    add(u"east/%1"_s, {u"c"_s, u"a"_s});
    add(u"../west"_s, {u"d"_s});
    add(u"EAST/%1"_s, {u"b"_s});
    open(relayPaths());
}

void TestStationNetwork::open(const QStringList &paths)
{
    m_network.reset();
    QString error;
    m_network = StationNetwork::open(m_folder->path(), configs(paths), &error);
    QVERIFY2(m_network, qPrintable(error));
}

/// Executes "Command@relayPath payload" and returns the answer as text.
QString TestStationNetwork::ask(const QString &command)
{
    const QString target = command.section(u' ', 0, 0);
    return inWords(m_network->execute(target.section(u'@', 0, 0), payload(command.section(u' ', 1)),
                                      target.section(u'@', 1)));
}

void TestStationNetwork::commandGivesAnswerAndBookmarks_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("left");
    const auto row = [](const char *name, const char *command, const char *answer,
                        const char *left = "a b c d") {
        QTest::newRow(name) << QString::fromLatin1(command) << QString::fromLatin1(answer)
                            << QString::fromLatin1(left);
    };
    row("to one", "QueryAllBookmars@east/%1 {}", "0 {Bookmarks: [c a]}");
    row("to one with nothing", "QueryAllBookmars@east_%1 {}", "0 {Bookmarks: []}");
    row("to a part of a relay path", "QueryAllBookmars@east {}", "5 -");
    row("to the connected server, no station", "QueryAllBookmars@ {}", "5 -");
    row("delete from none", "DeleteBookmarks@east BookmarkID=a | BookmarkID=b",
        "5 QStringList a b");
    row("delete from the connected server", "DeleteBookmarks@ BookmarkID=a | BookmarkID=b",
        "5 QStringList a b");
    row("delete nonsense from none", "DeleteBookmarks@east a", "5 -");

    row("update anywhere", "UpdateBookmark@ BookmarkID=b Description=new", "0 new", "a new c d");
    row("update at the wrong one", "UpdateBookmark@../west BookmarkID=b Description=new", "2 -");
    row("update an unknown bookmark", "UpdateBookmark@ BookmarkID=x", "2 -");
    row("update without identifier", "UpdateBookmark@ Description=new", "1 -");

    row("query by camera keys",
        "QueryBookmarkForApi@ CameraIDList=../west/cam,east/%1/cam StartTimestamp=0 "
        "EndTimestamp=999",
        "0 [a c d]");
    row("query without cameras", "QueryBookmarkForApi@ StartTimestamp=0 EndTimestamp=999", "1 -");
}

void TestStationNetwork::commandGivesAnswerAndBookmarks()
{
    QFETCH(const QString, command);
    QFETCH(const QString, left);
    QTEST(ask(command), "answer");
    QCOMPARE(ask(u"QueryBookmarkForApi@ CameraIDList=cam StartTimestamp=0 EndTimestamp=999"_s),
             u"0 ["_s + left + u']');
}

void TestStationNetwork::allStationsShareSettingZoneAndPermission()
{
    const QString update = u"UpdateRecycleSetting@ reserveHour=72 enableRecycle=true"_s;
    QCOMPARE(ask(update), u"0 bool true"_s);
    QCOMPARE(ask(u"UpdateRecycleSetting@ {}"_s), u"1 bool false"_s);
    m_network->setTimeZone("Asia/Tokyo");
    m_network->setSettingPermission(false);
    const QStringList paths = relayPaths() + QStringList{QString()};
    for (const QString &path : paths) {
        QCOMPARE(ask(u"GetRecycleSetting@"_s + path),
                 u"0 {enableRecycle: bool true, reserveHour: uint 72}"_s);
        QCOMPARE(ask(u"QuerySevTimezone@"_s + path), u"0 QByteArray Asia/Tokyo"_s);
        QCOMPARE(ask(u"QuerySettingPermission@"_s + path), u"0 bool false"_s);
        QCOMPARE(ask(u"QuerySevTimezone@"_s + path + u" {}"_s), u"1 -"_s);
    }
    open({});
    QCOMPARE(ask(u"GetRecycleSetting@"_s), u"5 -"_s);
    QCOMPARE(ask(update), u"5 bool false"_s);
    open({QString()});
    QCOMPARE(ask(u"QueryAllBookmars@ {}"_s), u"0 {Bookmarks: []}"_s);
}

void TestStationNetwork::failingStationHidesNoBookmark()
{
    QVERIFY(runSql(m_network->station(u"east_%1"_s)->config().filePath, u"DROP TABLE bookmark"_s));
    for (int i = 0; i < 3; ++i)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no such table"_s));
    QCOMPARE(ask(u"UpdateBookmark@ BookmarkID=d"_s), u"0 d"_s);
    QCOMPARE(ask(u"UpdateBookmark@ BookmarkID=x"_s), u"4 -"_s);
    QCOMPARE(ask(u"QueryBookmarkForApi@ CameraIDList=cam StartTimestamp=0 EndTimestamp=1"_s),
             u"4 -"_s);
}

void TestStationNetwork::onlyOtherClientsCauseEvents()
{
    const auto add = [this](const QString &relayPath, const QString &camera) {
        const Bookmark bookmark{{}, camera, u"loc"_s, 2, 3, u"theirs"_s, {}, {}};
        return m_network->addByOtherClient(relayPath, bookmark);
    };
    const QSignalSpy spy(m_network.get(), &StationNetwork::bookmarkAddedByOther);
    ask(u"AddBookmark@east_%1 ours@cam"_s);
    QVERIFY(!add(u"nowhere"_s, u"cam"_s));
    QVERIFY(!add(u"east_%1"_s, u"unknown"_s));
    QVERIFY(spy.isEmpty());
    QVERIFY(add(u"east_%1"_s, u"cam"_s));
    QCOMPARE(inWords(QVariant(spy.value(0))), u"[theirs QString east_%1]"_s);
    QCOMPARE(spy.value(0).value(0).toMap().size(), 8);
    QCOMPARE(ask(u"QueryAllBookmars@east_%1 {}"_s), u"0 {Bookmarks: [ours theirs]}"_s);
}

void TestStationNetwork::openReportsUnusableFiles()
{
    const auto errorOfOpening = [](const QString &folder, const QStringList &paths) {
        QString error;
        return StationNetwork::open(folder, configs(paths), &error) ? u"none"_s : error;
    };
    // For file systems that ignore the case.
    QVERIFY(StationNetwork::fileNameOf(u"A"_s).toLower() !=
            StationNetwork::fileNameOf(u"a"_s).toLower());
    const QString twice = errorOfOpening(m_folder->path(), {u"../west"_s, u"../west"_s});
    QVERIFY2(twice.contains(u"two stations have the relay path \"../west\""_s), qPrintable(twice));

    const QString file = m_folder->filePath(StationNetwork::fileNameOf(u"damaged"_s));
    QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), file));
    open({u"north"_s, u"damaged"_s});
    QCOMPARE(m_network->defects().size(), 1);
    const QString damaged = m_network->defects().constFirst();
    QVERIFY2(damaged.startsWith(file + u": is not"_s), qPrintable(damaged));
    QCOMPARE(ask(u"AddBookmark@north a@cam"_s).left(2), u"0 "_s);
    for (const auto &[command, answer] : {std::pair(u"AddBookmark@damaged a@cam"_s, u"4 -"_s),
                                          std::pair(u"DeleteBookmarks@damaged BookmarkID=a | "
                                                    "BookmarkID=b"_s,
                                                    u"4 QStringList a b"_s),
                                          std::pair(u"QueryAllBookmars@damaged {}"_s, u"4 -"_s)})
        QCOMPARE(ask(command), answer);
    const QString noFolder = errorOfOpening(file, {});
    QVERIFY2(noFolder.startsWith(file + u": cannot"_s), qPrintable(noFolder));
    QCOMPARE(errorOfOpening(m_folder->filePath(u"new/folder"_s), {u"x"_s.repeated(5000)}),
             u"none"_s);
}

void TestStationNetwork::emptiedFileIsReportedAndKept()
{
    m_network.reset();
    const QString path = m_folder->filePath(StationNetwork::fileNameOf(u"../west"_s));
    QFile log(path + u"-wal"_s);
    QVERIFY(log.open(QIODevice::WriteOnly) && log.write("log") == 3);
    log.close();
    for (const QString &kept : {path + u".emptied"_s, path + u".emptied-2"_s}) {
        QVERIFY(QFile::resize(path, 0));
        open();
        QCOMPARE(m_network->notices().size(), 1);
        const QString notice = m_network->notices().constFirst();
        QVERIFY2(notice.startsWith(path + u": "_s) && notice.endsWith(u' ' + kept + u'.'),
                 qPrintable(notice));
        QVERIFY(QFile::exists(kept));
        QCOMPARE(ask(u"QueryAllBookmars@../west {}"_s), u"0 {Bookmarks: []}"_s);
        m_network.reset();
    }
    QCOMPARE(QFileInfo(path + u".emptied-wal"_s).size(), 3);
    open();
    QCOMPARE(m_network->notices(), QStringList());
}

QTEST_GUILESS_MAIN(TestStationNetwork)
#include "tst_stationnetwork.moc"
