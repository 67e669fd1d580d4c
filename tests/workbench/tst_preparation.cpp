#include "DemoStations.h"
#include "FileImport.h"
#include "Preparation.h"
#include "Protocol.h"
#include "StationNetwork.h"
#include "StationThread.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <future>

using namespace Qt::StringLiterals;
using namespace stations;
using namespace workbench;

/// Tests several starts of the workbench with one data folder.
class TestPreparation : public QObject
{
    Q_OBJECT

    struct Start
    {
        QString error;
        QString messages;
        QString summary;
        qsizetype stored = 0; ///< bookmarks of all stations
    };

    QString write(const QByteArray &csv) const
    {
        QFile file(m_folder->filePath(u"some.csv"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(csv) != csv.size())
            qFatal("%s can't be written", qPrintable(file.fileName()));
        return file.fileName();
    }

    /// Starts with the import of a file with this content.
    Start start(const QByteArray &csv, int bookmarks = 0)
    {
        Preparation::Plan plan{m_folder->filePath(u"data"_s), bookmarks, 1, {}};
        if (!csv.isEmpty())
            plan.importFile = write(csv);
        StationThread stations(demoStations());
        Preparation preparation(stations, plan);
        QSignalSpy finished(&preparation, &Preparation::finished);
        preparation.start();
        if (finished.isEmpty() && !finished.wait(60'000))
            qFatal("the preparation did not end");
        Start result{preparation.outcome().error, preparation.report(), preparation.summary()};
        std::promise<void> counted;
        stations.perform([&](StationNetwork &network) {
            const auto all = network.stations();
            for (Station *const station : all)
                result.stored +=
                    station->execute(protocol::command::QueryAllBookmarks, QVariantMap())
                        .result.toMap()
                        .value(protocol::key::Bookmarks)
                        .toList()
                        .size();
            counted.set_value();
        });
        counted.get_future().wait();
        return result;
    }

    static QByteArray csvOf(const QByteArray &lines) { return "camera,start,end\n" + lines; }

    std::unique_ptr<QTemporaryDir> m_folder;

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void sameContentIsImportedOnce()
    {
        const QByteArray csv = csvOf("camera-11,1,2\ncamera-12,1,2\n");
        QCOMPARE(start(csv).summary, u"Imported 2 bookmarks, skipped 0 lines."_s);
        const Start again = start(csv);
        QVERIFY2(again.messages.contains(u"some.csv was imported on "_s),
                 qPrintable(again.messages));
        QCOMPARE(again.error + again.summary, QString());
        QCOMPARE(again.stored, 2);
        QCOMPARE(start(csv + "camera-11,3,4\n").stored, 5);
        QCOMPARE(start(csv).stored, 5);
        QVERIFY(QFile::remove(m_folder->filePath(u"data/imported.txt"_s)));
        QCOMPARE(start(csv).stored, 7);
    }

    void importWithoutBookmarksIsAnErrorAndRepeated()
    {
        const QByteArray csv =
            csvOf("camera-99,1,2\n" + QByteArray("camera-11,x,2\n").repeated(150));
        for (int attempt = 0; attempt < 2; ++attempt) {
            const Start useless = start(csv);
            QVERIFY2(useless.error.endsWith(
                         u"some.csv: no bookmark was imported; see the messages above."_s),
                     qPrintable(useless.error));
            QCOMPARE(useless.summary, u"Imported 0 bookmarks, skipped 151 lines."_s);
            QVERIFY(useless.messages.endsWith(u"\n... and 51 more lines"_s));
        }
    }

    void unusableLinesDoNotPreventTheRest()
    {
        const QByteArray csv = csvOf("camera-99,1,2\ncamera-11,1,2\n");
        const Start first = start(csv);
        QCOMPARE(first.error, QString());
        QVERIFY(first.messages.endsWith(u":2: unknown camera \"camera-99\""_s));
        QCOMPARE(start(csv).stored, 1);
    }

    void cancelledImportCanBeRepeated()
    {
        const QByteArray csv = csvOf(QByteArray("camera-11,1,2\n").repeated(2500));
        QCOMPARE(start(csvOf("camera-11,1,2\n")).stored, 1);
        const Preparation::Plan plan{m_folder->filePath(u"data"_s), 0, 1, write(csv)};
        Preparation::Outcome outcome;
        QString error;
        const auto network = StationNetwork::open(plan.folder, demoStations(), &error);
        QVERIFY2(network, qPrintable(error));
        importFile(
            *network, plan, [](const QString &, double) { return false; }, outcome);
        QCOMPARE(outcome.error, QString());
        QCOMPARE(outcome.messages,
                 QStringList{u"The import was cancelled; the rest of the file is missing."_s});
        QCOMPARE(start(csv).stored, 1 + 2500);
    }

    void recordingsAreCounted()
    {
        QCOMPARE(start("camera,start_offset_ms,end_offset_ms\none,1,2\ntwo,1,2\none,3,4\n").summary,
                 u"Imported 3 bookmarks, skipped 0 lines. "
                 "2 names are not cameras; they were placed as recordings."_s);
    }

    /// The first bookmarks are complete even if the import fails.
    void firstBookmarksAreCreatedOnce()
    {
        const Start first = start(csvOf("camera-99,1,2\n"), 30);
        QVERIFY(!first.error.isEmpty());
        QCOMPARE(first.stored, 30);
        const Start second = start({}, 40);
        QCOMPARE(second.messages, QString());
        QCOMPARE(second.stored, 30);
    }
};

QTEST_GUILESS_MAIN(TestPreparation)
#include "tst_preparation.moc"
