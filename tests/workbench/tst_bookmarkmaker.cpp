#include "BookmarkMaker.h"
#include "DemoStations.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QSet>
#include <QtTest/QTest>

using namespace stations;
using namespace workbench;

class TestBookmarkMaker : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bookmarksDependOnSeedAndTime()
    {
        constexpr qint64 Day = 86'400'000;
        constexpr qint64 Now = 1'774'750'000'000; // on a day that is an hour short
        const StationConfig station = demoStations().constFirst();
        QStringList made[3];
        QSet<QString> cameras;
        static const QRegularExpression sentence(QStringLiteral(
            "^(?!Two )[A-Z][a-z ]* (is [a-z]|(passes|waits|turns|stops|drives|comes|blocks|enters|"
            "asks|leaves|falls)\\b)"));
        for (int i = 0; i < 3; ++i) {
            const auto bookmarks = BookmarkMaker(station, i < 2 ? 1 : 2, Now).make(2'000);
            for (const Bookmark &bookmark : bookmarks) {
                QVERIFY(bookmark.start >= Now - 28 * Day && bookmark.start <= bookmark.end &&
                        bookmark.end <= Now);
                cameras.insert(bookmark.cameraID);
                QVERIFY2(sentence.match(bookmark.description).hasMatch(),
                         qPrintable(bookmark.description));
                made[i].append(QString::number(bookmark.start) + bookmark.description);
            }
            QCOMPARE(made[i].size(), 2'000);
        }
        QCOMPARE(cameras.size(), station.cameras.size());
        QCOMPARE(made[1], made[0]);
        QVERIFY(made[2] != made[0]);
    }
};

QTEST_GUILESS_MAIN(TestBookmarkMaker)
#include "tst_bookmarkmaker.moc"
