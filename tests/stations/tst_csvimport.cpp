#include "CsvImport.h"
#include "CsvReader.h"
#include "Site.h"
#include "StationTest.h"

#include <QtCore/QBuffer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace workbench;

namespace {

constexpr qint64 Day = 86'400'000;
constexpr qint64 Base = 1'704'096'000'000; // 2024-01-01T08:00:00Z

} // namespace

class TestCsvImport : public QObject
{
    Q_OBJECT

private:
    QString write(const QByteArray &contents);
    CsvImport import() const { return CsvImport(*m_site, QDate(2024, 1, 1)); }
    QStringList stored(const char *relayPath);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<Site> m_site;

private Q_SLOTS:
    void init();
    void readsRecords_data();
    void readsRecords();
    void overlongLineCostsOneLine();
    void recordingsGoRoundTheCameras();
    void columnsAreFoundByName_data();
    void columnsAreFoundByName();
    void badLinesAreNamedAndSkipped_data();
    void badLinesAreNamedAndSkipped();
    void unusableFilesAreRefused_data();
    void unusableFilesAreRefused();
    void messagesAreBounded();
    void cancelKeepsWholeBatches();
    void failingStationEndsTheImport();
    void siteWithoutCamerasTakesNothing();
};

void TestCsvImport::init()
{
    QTest::failOnWarning(QRegularExpression(text(".")));
    m_site.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    QString error;
    m_site = Site::open(m_folder->filePath(text("site")),
                        {{text("A"), {}, {}, {{text("1"), {}}, {text("2"), {}}}, {}},
                         {text("B"), {}, {}, {{text("3"), {}}}, {}}},
                        &error);
    QVERIFY2(m_site, qPrintable(error));
}

QString TestCsvImport::write(const QByteArray &contents)
{
    QFile file(m_folder->filePath(text("events.csv")));
    return file.open(QIODevice::WriteOnly) && file.write(contents) == contents.size()
               ? file.fileName()
               : QString();
}

/// "camera start end description creator group" of every bookmark of a station.
QStringList TestCsvImport::stored(const char *relayPath)
{
    const QVariantList records =
        m_site->execute(text("QueryAllBookmars"), QVariantMap(), text(relayPath))
            .result.toMap()
            .value(text("Bookmarks"))
            .toList();
    QStringList lines;
    for (const QVariant &element : records) {
        const QVariantMap record = element.toMap();
        QStringList values;
        for (const char *key :
             {"CameraID", "StartTimestamp", "EndTimestamp", "Description", "Creator", "Group"})
            values.append(record.value(text(key)).toString());
        lines.append(values.join(QLatin1Char(' ')).trimmed());
    }
    return lines;
}

void TestCsvImport::readsRecords_data()
{
    QTest::addColumn<QByteArray>("csv");
    QTest::addColumn<QString>("read"); // line:field|field, "!" for an error
    const auto row = [](const char *name, const char *csv, const char *read) {
        QTest::newRow(name) << QByteArray(csv) << text(read);
    };
    row("empty file", "", "");
    row("plain", "a,b\nc,d\n", "1:a|b 2:c|d");
    row("CRLF, no last line end", "a,b\r\nc,", "1:a|b 2:c|");
    row("byte order mark",
        "\xEF\xBB\xBF"
        "a\n",
        "1:a");
    row("empty lines", "\n\r\na\n\nb\n\n", "3:a 5:b");
    row("commas and doubled quotes", "\"a,\"\"b\"\"\",\"\"\n", "1:a,\"b\"|");
    row("line breaks in quotes", "\"a\n\r\nb\",c\nd\n", "1:a\n\r\nb|c 4:d");
    row("quote never closed", "a\n\"b,c\nd\ne\n", "1:a 2:! 3:d 4:e");
    row("quote inside a field", "a\"b\nc\n\"d\"\ne\"f\n", "1:! 2:c 3:d 4:!");
    row("text after a quote", "\"a\"b,c\nd\n", "1:! 2:d");
    row("not UTF-8", "a\xFF,b\nc\n", "1:! 2:c");
    row("UTF-8", "\xC3\xBC,\xF0\x9F\x98\x80\n", "1:\xC3\xBC|\xF0\x9F\x98\x80");
}

void TestCsvImport::readsRecords()
{
    QFETCH(QByteArray, csv);
    QFETCH(QString, read);
    QBuffer buffer(&csv);
    QVERIFY(buffer.open(QIODevice::ReadOnly));
    CsvReader reader(&buffer);
    CsvRecord record;
    QStringList found;
    while (reader.next(&record))
        found.append(QString::number(record.line) + QLatin1Char(':') +
                     (record.error.isEmpty() ? record.fields.join(QLatin1Char('|')) : text("!")));
    QCOMPARE(found.join(QLatin1Char(' ')), read);
    QCOMPARE(reader.bytesRead(), csv.size());
    QCOMPARE(reader.linesRead(), csv.count('\n') + (csv.isEmpty() || csv.endsWith('\n') ? 0 : 1));
}

void TestCsvImport::overlongLineCostsOneLine()
{
    const QByteArray tooLong(CsvReader::MaxRecordSize * 3, 'x');
    const QString path = write("camera,start,end\n1,1,2\n" + tooLong + ",1,2\n1,3,4\n");
    const CsvImport::Result result = import().run(path);
    QCOMPARE(result.error, QString());
    QCOMPARE(stored("A"), (QStringList{text("1 1 2"), text("1 3 4")}));
    QCOMPARE(result.messages.size(), 1);
    QVERIFY(result.messages.constFirst().contains(text("events.csv:3: ")));
}

void TestCsvImport::recordingsGoRoundTheCameras()
{
    const QString path = write("camera,event,start_offset_ms,end_offset_ms\n"
                               "Abuse028,Abuse,5500,8000\n"
                               "Arson011,Arson,5000,14000\n"
                               "Burglary021,Burglary,2000,6667\n"
                               "Arson011,Arson,22667,42233\n"
                               "Explosion002,Explosion,50000,70000\n");
    const CsvImport::Result result = import().run(path);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.imported, 5);
    QCOMPARE(result.skipped, 0);
    const auto line = [](const char *camera, qint64 start, qint64 end, const char *event) {
        return text("%1 %2 %3 %4").arg(text(camera)).arg(start).arg(end).arg(text(event));
    };
    const QStringList atA{line("1", Base + 5500, Base + 8000, "Abuse"),
                          line("2", Base + 5000, Base + 14000, "Arson"),
                          line("2", Base + 22667, Base + 42233, "Arson"),
                          line("1", Base - Day + 50000, Base - Day + 70000, "Explosion")};
    QCOMPARE(stored("A"), atA);
    QCOMPARE(stored("B"), QStringList{line("3", Base + 2000, Base + 6667, "Burglary")});
    QCOMPARE(import().run(path).imported, 5);
    QCOMPARE(stored("A"), atA + atA);
}

void TestCsvImport::columnsAreFoundByName_data()
{
    QTest::addColumn<QByteArray>("csv");
    QTest::addColumn<QString>("atA");
    QTest::addColumn<QString>("atB");
    const auto row = [](const char *name, const char *csv, const char *atA, const char *atB) {
        QTest::newRow(name) << QByteArray(csv) << text(atA) << text(atB);
    };
    row("other order, case and columns", "End,x, CAMERA ,start\n2,?,1,1\n", "1 1 2", "");
    row("key of a camera", "camera,start,end\nB/3,1,2\nA/2,3,4\n", "2 3 4", "3 1 2");
    row("station given", "camera,start,end,station\nx,1,2,B\ny,3,4,B\n2,5,6,A\n", "2 5 6",
        "3 1 2;3 3 4");
    row("texts", "camera,start,end,event,description,creator,group\n1,1,2,e,d,c,g\n1,3,4,e,,c,\n",
        "1 1 2 d c g;1 3 4 e c", "");
    row("ISO 8601 with and without zone",
        "camera,start,end\n1,1970-01-01T00:00:01,1970-01-01T02:00:02.500+02:00\n", "1 1000 2500",
        "");
    row("ends of the range", "camera,start,end\n1,0,9223372036854775807\n",
        "1 0 9223372036854775807", "");
}

void TestCsvImport::columnsAreFoundByName()
{
    QFETCH(QByteArray, csv);
    QFETCH(QString, atA);
    QFETCH(QString, atB);
    QCOMPARE(import().run(write(csv)).error, QString());
    QCOMPARE(stored("A").join(QLatin1Char(';')), atA);
    QCOMPARE(stored("B").join(QLatin1Char(';')), atB);
}

void TestCsvImport::badLinesAreNamedAndSkipped_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &line, const char *reason) {
        QTest::newRow(name) << line << text(reason);
    };
    row("no camera", " ,1,2,,", "no camera");
    row("too few fields", "x,1,2,", "4 fields instead of 5");
    row("too many fields", "x,1,2,,,", "6 fields instead of 5");
    row("no start", "x,,2,,", "the start is no time");
    row("start is a word", "x,soon,2,,", "the start is no time");
    row("start below 0", "x,-1,2,,", "the start is no time");
    row("broken start", "x,1.5,2,,", "the start is no time");
    row("end beyond 64 bits", "x,1,9223372036854775808,,", "the end is no time");
    row("end beyond 64 bits with the recording's start", "x,1,9223372036854775807,,",
        "the end is no time");
    row("end before start", "x,2,1,,", "the end is before the start");
    row("unknown station", "x,1,2,nowhere %1,", "unknown station \"nowhere %1\"");
    row("text too long", "x,1,2,," + QByteArray(65'537, 'x'),
        "the description is longer than 65536 characters");
    row("camera too long", QByteArray(1'001, 'x') + ",1,2,,",
        "the camera is longer than 1000 characters");
    row("NUL in a text", QByteArray("x,1,2,,a\0b", 10), "the description holds a NUL character");
    row("bad quote", "x,1,2,,a\"b", "a quote is missing or at the wrong place");
}

void TestCsvImport::badLinesAreNamedAndSkipped()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, reason);
    const QString path = write("camera,start_offset_ms,end_offset_ms,station,event\n"
                               "first,1,2,,\"two\nlines\"\n" +
                               line + "\nsecond,3,4,,\n");
    const CsvImport::Result result = import().run(path);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.imported, 2);
    QCOMPARE(result.skipped, 1);
    QCOMPARE(result.messages, QStringList{path + text(":4: ") + reason});
}

void TestCsvImport::unusableFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("csv");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const char *csv, const char *error) {
        QTest::newRow(name) << QByteArray(csv) << text(error);
    };
    row("empty", "", ":1: the file is empty");
    row("no camera", "\nstart,end\n", ":2: there is no column \"camera\"");
    row("no times", "camera,start\n", ":1: there must be either");
    row("both kinds of times", "camera,start,end,start_offset_ms,end_offset_ms\n",
        ":1: there must");
    row("column twice", "camera,Camera,start,end\n", ":1: the column \"camera\" is there twice");
    row("other encoding",
        "\xFF\xFE"
        "c",
        ":1: the text is not UTF-8");
}

void TestCsvImport::unusableFilesAreRefused()
{
    QFETCH(QByteArray, csv);
    QFETCH(QString, error);
    const QString path = write(csv);
    QVERIFY2(import().run(path).error.startsWith(path + error),
             qPrintable(import().run(path).error));
    const QString missing = m_folder->filePath(text("missing.csv"));
    QVERIFY(import().run(missing).error.startsWith(missing + text(": ")));
    QVERIFY(import().run(m_folder->path()).error.startsWith(m_folder->path()));
}

void TestCsvImport::messagesAreBounded()
{
    QByteArray csv("camera,start,end\n");
    for (int i = 0; i < 250; ++i)
        csv += "1,x,2\n";
    const CsvImport::Result result = import().run(write(csv + "1,1,2\n"));
    QCOMPARE(result.skipped, 250);
    QCOMPARE(result.messages.size(), CsvImport::MaxMessages);
    QCOMPARE(result.imported, 1);
}

void TestCsvImport::cancelKeepsWholeBatches()
{
    QByteArray csv("camera,start,end\n");
    for (int i = 0; i < 2500; ++i)
        csv += "1,1,2\n";
    const QString path = write(csv);
    CsvImport import = this->import();
    QList<qint64> reported;
    import.setProgressCallback([&](const CsvImport::Progress &progress) {
        reported.append(progress.lines);
    return progress.totalBytes == csv.size() && progress.bytes <= progress.totalBytes &&
           progress.lines < 2000;
});
const CsvImport::Result result = import.run(path);
QVERIFY(result.cancelled);
QCOMPARE(reported, (QList<qint64>{1000, 2000}));
QCOMPARE(result.imported, 1000);
QCOMPARE(stored("A").size(), 1000);
}

void TestCsvImport::failingStationEndsTheImport()
{
    const QString file = m_site->station(text("A"))->config().filePath;
    QVERIFY(runSql(file, "CREATE TRIGGER full BEFORE INSERT ON bookmark WHEN NEW.start_ms = 7"
                         " BEGIN SELECT RAISE(ABORT, 'disk is full'); END"));
    QByteArray csv("camera,start,end\n");
    for (int i = 0; i < 1500; ++i)
        csv += i == 1400 ? "1,7,8\n" : "1,1,2\n";
    const CsvImport::Result result = import().run(write(csv));
    QVERIFY2(result.error.startsWith(file), qPrintable(result.error));
    QVERIFY(result.error.contains(text("disk is full")));
    QCOMPARE(result.imported, 1000);
    QCOMPARE(stored("A").size(), 1000);
}

void TestCsvImport::siteWithoutCamerasTakesNothing()
{
    QString error;
    m_site = Site::open(m_folder->filePath(text("bare")), {}, &error);
    const QString path = write("camera,start,end\n1,1,2\n");
    const CsvImport::Result result = import().run(path);
    QCOMPARE(result.imported, 0);
    QCOMPARE(result.messages,
             QStringList{path + text(":2: there is no camera for this recording")});
}

QTEST_GUILESS_MAIN(TestCsvImport)
#include "tst_csvimport.moc"
