#include "Site.h"
#include "StationTest.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

using namespace workbench;

namespace {

/// Relay paths that must not be taken apart, nor be mistaken for each other.
const char *const relayPaths[] = {"east/%1", "east_%1", "EAST/%1", "../west"};

QList<StationConfig> configs()
{
    QList<StationConfig> list;
    for (const char *relayPath : relayPaths)
        list.append({text(relayPath), text("S"), text("loc"), {{text("cam"), text("C")}}, {}});
    return list;
}

Bookmark bookmark(qint64 start, const char *description)
{
    return {{}, text("cam"), text("loc"), start, start + 10, text(description), {}, {}};
}

QVariantMap bookmarkID(const QString &id)
{
    return {{text("BookmarkID"), id}};
}

} // namespace

class TestSite : public QObject
{
    Q_OBJECT

private:
    void open(const QList<StationConfig> &stations);
    standin::Answer ask(const char *command, const QVariant &payload, const char *relayPath = "");
    QString add(const char *relayPath, const Bookmark &bookmark);
    QStringList descriptions(const char *relayPath);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Site> m_site;

private Q_SLOTS:
    void init();
    void relayPathRoutes();
    void unknownStationFails_data();
    void unknownStationFails();
    void emptyRelayPathCanBeAStation();
    void updateFindsTheStation();
    void failingStationHidesNothing();
    void apiQueryJoinsByStart();
    void recycleSettingsGoEverywhere();
    void factsAreThoseOfTheSite();
    void onlyOtherClientsRaiseEvents();
    void openingNamesWhatIsWrong();
};

void TestSite::init()
{
    QTest::failOnWarning(QRegularExpression(text(".")));
    m_site.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    open(configs());
}

void TestSite::open(const QList<StationConfig> &stations)
{
    m_site.reset();
    QString error;
    m_site = Site::open(m_folder->filePath(text("new/folder")), stations, &error);
    QVERIFY2(m_site, qPrintable(error));
}

standin::Answer TestSite::ask(const char *command, const QVariant &payload, const char *relayPath)
{
    return m_site->execute(text(command), payload, text(relayPath));
}

QString TestSite::add(const char *relayPath, const Bookmark &bookmark)
{
    return ask("AddBookmark", bookmark.toRecord(), relayPath)
        .result.toMap()
        .value(text("BookmarkID"))
        .toString();
}

QStringList TestSite::descriptions(const char *relayPath)
{
    QStringList found;
    const QVariantList records = ask("QueryAllBookmars", QVariantMap(), relayPath)
                                     .result.toMap()
                                     .value(text("Bookmarks"))
                                     .toList();
    for (const QVariant &record : records)
        found.append(record.toMap().value(text("Description")).toString());
    return found;
}

void TestSite::relayPathRoutes()
{
    for (const char *relayPath : relayPaths)
        QVERIFY(!add(relayPath, bookmark(1, relayPath)).isEmpty());
    open(configs());
    for (const char *relayPath : relayPaths)
        QCOMPARE(descriptions(relayPath), QStringList{text(relayPath)});
    const QDir folder(m_folder->filePath(text("new/folder")));
    QSet<QString> names;
    for (const char *relayPath : relayPaths)
        names.insert(Site::fileNameOf(text(relayPath)).toLower());
    QCOMPARE(names.size(), qsizetype(std::size(relayPaths)));
    QVERIFY(folder.exists(Site::fileNameOf(text("../west"))));
    QVERIFY(Site::fileNameOf(QString(5000, QLatin1Char('x'))).size() < 100);
}

void TestSite::unknownStationFails_data()
{
    QTest::addColumn<QString>("relayPath");
    QTest::newRow("unknown") << text("east");
    QTest::newRow("connected server without bookmarks of its own") << QString();
}

void TestSite::unknownStationFails()
{
    QFETCH(QString, relayPath);
    QCOMPARE(m_site->execute(text("AddBookmark"), bookmark(1, "").toRecord(), relayPath).resultCode,
             text("5"));
    const QVariantList ids{bookmarkID(text("a")), bookmarkID(text("b"))};
    const standin::Answer answer = m_site->execute(text("DeleteBookmarks"), ids, relayPath);
    QCOMPARE(answer.resultCode, text("5"));
    QCOMPARE(answer.result, QVariant(QStringList{text("a"), text("b")}));
    QCOMPARE(m_site->execute(text("DeleteBookmarks"), QVariant(), relayPath).resultCode, text("5"));
}

void TestSite::emptyRelayPathCanBeAStation()
{
    open(configs() + QList<StationConfig>{{{}, text("own"), {}, {{text("cam"), {}}}, {}}});
    QVERIFY(!add("", bookmark(1, "own")).isEmpty());
    QCOMPARE(descriptions(""), QStringList{text("own")});
    QCOMPARE(descriptions("east/%1"), QStringList());
}

void TestSite::updateFindsTheStation()
{
    add("east/%1", bookmark(1, "a"));
    QVariantMap change = bookmarkID(add("../west", bookmark(1, "b")));
    change.insert(text("Description"), text("new"));
    QCOMPARE(ask("UpdateBookmark", change).resultCode, text("0"));
    QCOMPARE(descriptions("../west"), QStringList{text("new")});
    QCOMPARE(descriptions("east/%1"), QStringList{text("a")});
    QCOMPARE(ask("UpdateBookmark", change, "east/%1").resultCode, text("2"));
    QCOMPARE(ask("UpdateBookmark", bookmarkID(text("nobody's"))).resultCode, text("2"));
    change.insert(text("Group"), 1);
    QCOMPARE(ask("UpdateBookmark", change).resultCode, text("1"));
}

void TestSite::failingStationHidesNothing()
{
    const QVariantMap known = bookmarkID(add("../west", bookmark(1, "b")));
    QVERIFY(runSql(m_site->station(text("east_%1"))->config().filePath, "DROP TABLE bookmark"));
    static const QRegularExpression warning(text("no such table"));
    for (int i = 0; i < 3; ++i)
        QTest::ignoreMessage(QtWarningMsg, warning);
    QCOMPARE(ask("UpdateBookmark", known).resultCode, text("0"));
    QCOMPARE(ask("UpdateBookmark", bookmarkID(text("nobody's"))).resultCode, text("4"));
    const QVariantMap all{{text("CameraIDList"), QVariantList{text("cam")}},
                          {text("StartTimestamp"), qint64(0)},
                          {text("EndTimestamp"), qint64(99)}};
    QCOMPARE(ask("QueryBookmarkForApi", all).resultCode, text("4"));
}

void TestSite::apiQueryJoinsByStart()
{
    add("east/%1", bookmark(30, "c"));
    add("east/%1", bookmark(-10, "a"));
    add("../west", bookmark(40, "d"));
    add("EAST/%1", bookmark(20, "b"));
    const auto query = [this](const QVariantList &cameras) {
        const standin::Answer answer =
            ask("QueryBookmarkForApi", QVariantMap{{text("CameraIDList"), cameras},
                                                   {text("StartTimestamp"), qint64(-99)},
                                                   {text("EndTimestamp"), qint64(99)}});
        QString found = answer.resultCode;
        const QVariantList records = answer.result.toList();
        for (const QVariant &record : records)
            found += record.toMap().value(text("Description")).toString();
        return found;
    };
    QCOMPARE(query({text("cam")}), text("0abcd"));
    QCOMPARE(query({text("../west/cam"), text("east/%1/cam")}), text("0acd"));
    QCOMPARE(query({text("east/cam")}), text("0"));
    QCOMPARE(query({1}), text("1"));
}

void TestSite::recycleSettingsGoEverywhere()
{
    const QVariantMap setting{{text("reserveHour"), 72U}, {text("enableRecycle"), true}};
    const standin::Answer answer = ask("UpdateRecycleSetting", setting);
    QCOMPARE(answer.resultCode, text("0"));
    QCOMPARE(answer.result, QVariant(true));
    QCOMPARE(ask("GetRecycleSetting", {}).result, QVariant(setting));
    for (const char *relayPath : relayPaths)
        QCOMPARE(ask("GetRecycleSetting", {}, relayPath).result, QVariant(setting));
    QCOMPARE(ask("UpdateRecycleSetting", 1).resultCode, text("1"));
    QCOMPARE(ask("GetRecycleSetting", {}, "../west").result, QVariant(setting));
    open({});
    QCOMPARE(ask("GetRecycleSetting", {}).resultCode, text("5"));
    QCOMPARE(ask("UpdateRecycleSetting", setting).resultCode, text("5"));
}

void TestSite::factsAreThoseOfTheSite()
{
    m_site->setTimeZone(QByteArrayLiteral("Europe/Berlin"));
    m_site->setSettingPermission(false);
    const char *const askedOf[] = {"", "../west"};
    for (const char *relayPath : askedOf) {
        QCOMPARE(ask("QuerySevTimezone", {}, relayPath).result,
                 QVariant(QByteArrayLiteral("Europe/Berlin")));
        QCOMPARE(ask("QuerySettingPermission", {}, relayPath).result, QVariant(false));
        QCOMPARE(ask("QuerySevTimezone", 1, relayPath).resultCode, text("1"));
    }
}

void TestSite::onlyOtherClientsRaiseEvents()
{
    QSignalSpy spy(m_site.get(), &Site::bookmarkAddedByOther);
    add("../west", bookmark(1, "ours"));
    QVERIFY(spy.isEmpty());
    QVERIFY(!m_site->addByOtherClient(text("nowhere"), bookmark(1, "")));
    QVERIFY(!m_site->addByOtherClient(text("../west"), Bookmark()));
    QVERIFY(spy.isEmpty());
    QVERIFY(m_site->addByOtherClient(text("../west"), bookmark(2, "theirs")));
    QCOMPARE(spy.size(), 1);
    QCOMPARE(spy.at(0).at(1), text("../west"));
    const QVariantMap record = spy.at(0).at(0).toMap();
    QCOMPARE(record.size(), 8);
    QCOMPARE(record.value(text("Description")), text("theirs"));
    QCOMPARE(descriptions("../west"), (QStringList{text("ours"), text("theirs")}));
}

void TestSite::openingNamesWhatIsWrong()
{
    QString error;
    QVERIFY(!Site::open(m_folder->path(), configs() + configs().mid(3), &error));
    QVERIFY2(error.contains(text("../west")), qPrintable(error));

    QFile file(m_folder->filePath(Site::fileNameOf(text("east_%1"))));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("not a database");
    file.close();
    QVERIFY(!Site::open(m_folder->path(), configs(), &error));
    QVERIFY2(error.contains(Site::fileNameOf(text("east_%1"))), qPrintable(error));
    QVERIFY(!Site::open(file.fileName(), configs(), &error));
    QVERIFY2(error.contains(Site::fileNameOf(text("east_%1"))), qPrintable(error));
}

QTEST_GUILESS_MAIN(TestSite)
#include "tst_site.moc"
