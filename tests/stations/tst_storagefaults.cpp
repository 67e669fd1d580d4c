#include "Station.h"
#include "StationTest.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <csignal>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace stations;

/// Interrupts a station that writes batches. Every acknowledged batch must be stored, and no batch
/// may be stored in part.
class TestStorageFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder.emplace(); }
    void killLosesNoAcknowledgedStep();
    void fullDiskFailsWholeSteps();
    void lockedFileFailsWholeSteps();
    void truncatedLogLosesWholeSteps();

private:
    QString path() const { return m_folder->filePath(u"station.sqlite"_s); }

    std::optional<QTemporaryDir> m_folder;
};

namespace {

constexpr int BatchSize = 20;

std::unique_ptr<Station> openStation(const QString &path)
{
    QString error;
    auto station = Station::open({u"A"_s, u"s"_s, u"l"_s, {{u"cam"_s, u"c"_s}}, path}, &error);
    if (!station)
        qFatal("%s", qPrintable(error));
    return station;
}

QVariantList stored(Station &station)
{
    return station.execute(u"QueryAllBookmars"_s, QVariantMap())
        .result.toMap()
        .value(u"Bookmarks"_s)
        .toList();
}

/// Runs a step. Steps 0, 1, 3, 4, 6 ... add a batch with the step's number as description; every
/// third step deletes the batch of two steps before.
/// @return true if the station acknowledged the step
bool playStep(Station &station, int step)
{
    QVariantList batch;
    if (step % 3 != 2) {
        for (int i = 0; i < BatchSize; ++i)
            batch.append(record(QString::number(step), u"cam"_s, i, i + 1));
        return station.execute(u"AddBookmarks"_s, batch).resultCode == u"0";
    }
    const QVariantList all = stored(station);
    for (const QVariant &element : all) {
        const QVariantMap bookmark = element.toMap();
        if (bookmark.value(u"Description"_s).toInt() == step - 2)
            batch.append(QVariantMap{{u"BookmarkID"_s, bookmark.value(u"BookmarkID"_s)}});
    }
    return station.execute(u"DeleteBookmarks"_s, batch).resultCode == u"0";
}

/// Returns the expected state after a number of steps: "BATCHxBOOKMARKS" for each batch.
QString stateAfter(int steps)
{
    QStringList state;
    for (int step = 0; step < steps; ++step) {
        if (step % 3 == 1 || (step % 3 == 0 && step + 2 >= steps))
            state.append(u"%1x%2"_s.arg(step).arg(BatchSize));
    }
    return state.join(u' ');
}

QString stateOf(Station &station)
{
    QMap<int, int> counts;
    const QVariantList all = stored(station);
    for (const QVariant &bookmark : all)
        ++counts[bookmark.toMap().value(u"Description"_s).toInt()];
    QStringList state;
    for (auto batch = counts.cbegin(); batch != counts.cend(); ++batch)
        state.append(u"%1x%2"_s.arg(batch.key()).arg(*batch));
    return state.join(u' ');
}

} // namespace

void TestStorageFaults::killLosesNoAcknowledgedStep()
{
    for (int round = 0; round < 25; ++round) {
        init();
        int acknowledged[2];
        QCOMPARE(pipe(acknowledged), 0);
        const pid_t writer = fork();
        if (writer == 0) {
            const auto station = openStation(path());
            for (int step = 0; playStep(*station, step); ++step) {
                if (write(acknowledged[1], "+", 1) != 1)
                    break;
            }
            _exit(1);
        }
        close(acknowledged[1]);
        char byte = 0;
        int steps = 0;
        const int last = QRandomGenerator::global()->bounded(1, 20);
        const auto delay = QRandomGenerator::global()->bounded(2000u); // microseconds
        for (; read(acknowledged[0], &byte, 1) == 1; ++steps) {
            if (steps != last)
                continue;
            usleep(delay);
            kill(writer, SIGKILL);
        }
        close(acknowledged[0]);
        int status = 0;
        waitpid(writer, &status, 0);
        QVERIFY(WIFSIGNALED(status));

        const auto station = openStation(path());
        const QString state = stateOf(*station);
        QVERIFY2(state == stateAfter(steps) || state == stateAfter(steps + 1),
                 qPrintable(u"%1 steps: %2"_s.arg(steps).arg(state)));
    }
}

void TestStorageFaults::fullDiskFailsWholeSteps()
{
    auto station = openStation(path());
    QVERIFY(playStep(*station, 0));
    rlimit limit = {};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{rlim_t(QFileInfo(path() + u"-wal"_s).size() + 60'000), limit.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"failed"_s));
    int steps = 1;
    while (playStep(*station, steps))
        ++steps;
    setrlimit(RLIMIT_FSIZE, &limit);
    QCOMPARE(stateOf(*station), stateAfter(steps));

    // With free space the station continues.
    QVERIFY(playStep(*station, steps));
    station.reset();
    QCOMPARE(stateOf(*openStation(path())), stateAfter(steps + 1));
}

void TestStorageFaults::lockedFileFailsWholeSteps()
{
    const auto station = openStation(path());
    QVERIFY(playStep(*station, 0));
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"other"_s);
        other.setDatabaseName(path());
        QVERIFY(other.open() && QSqlQuery(other).exec(u"BEGIN IMMEDIATE"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"locked"_s));
        QVERIFY(!playStep(*station, 1)); // fails after SQLite's own time-out
        QCOMPARE(stateOf(*station), stateAfter(1));
    }
    QSqlDatabase::removeDatabase(u"other"_s);
    QVERIFY(playStep(*station, 1));
    QCOMPARE(stateOf(*station), stateAfter(2));
}

void TestStorageFaults::truncatedLogLosesWholeSteps()
{
    const auto station = openStation(path());
    const QString log = path() + u"-wal"_s;
    QVERIFY(playStep(*station, 0));
    const qint64 before = QFileInfo(log).size();
    QVERIFY(playStep(*station, 1));
    const qint64 after = QFileInfo(log).size();
    QVERIFY(before > 0 && before < after);
    for (qint64 size = before; size <= after; size += (after - before) / 6) {
        const QString copy = m_folder->filePath(QString::number(size));
        QVERIFY(QFile::copy(path(), copy) && QFile::copy(log, copy + u"-wal"_s));
        QVERIFY(QFile::resize(copy + u"-wal"_s, size));
        const QString state = stateOf(*openStation(copy));
        QVERIFY2(state == stateAfter(1) || state == stateAfter(2), qPrintable(state));
    }
}

QTEST_GUILESS_MAIN(TestStorageFaults)
#include "tst_storagefaults.moc"
