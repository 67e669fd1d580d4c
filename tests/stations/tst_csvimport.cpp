#include "CsvImport.h"
#include "CsvReader.h"
#include "StationNetwork.h"
#include "StationTest.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace stations;

/// Imports into the stations "A" with the cameras "1" and "2", and "B" with the camera "3".
class TestCsvImport : public QObject
{
    Q_OBJECT

private:
    void open(const QString &name, const QList<StationConfig> &stations);
    QString path() const { return m_folder->filePath(u"events.csv"_s); }
    CsvImport::Result import(const QByteArray &csv,
                             const CsvImport::ProgressCallback &progress = {});
    QString stored();

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<StationNetwork> m_network;

private Q_SLOTS:
    void init();
    void importsFiles_data();
    void importsFiles();
    void cancelKeepsWholeBatches();
    void failingStationEndsTheImport();
    void unusableFileOrNetworkIsReported();
};

void TestCsvImport::init()
{
    QTest::failOnWarning(QRegularExpression(u"."_s));
    m_network.reset();
    m_folder = std::make_unique<QTemporaryDir>();
    open(u"network"_s, {{u"A"_s, {}, {}, {{u"1"_s, {}}, {u"2"_s, {}}}, {}},
                        {u"B"_s, {}, {}, {{u"3"_s, {}}}, {}}});
}

void TestCsvImport::open(const QString &name, const QList<StationConfig> &stations)
{
    QString error;
    m_network = StationNetwork::open(m_folder->filePath(name), stations, &error);
    QVERIFY2(m_network, qPrintable(error));
}

CsvImport::Result TestCsvImport::import(const QByteArray &csv,
                                        const CsvImport::ProgressCallback &progress)
{
    QFile file(path());
    if (!file.open(QIODevice::WriteOnly) || file.write(csv) != csv.size())
        qFatal("%s can't be written", qPrintable(path()));
    file.close();
    CsvImport import(*m_network, QDate(2024, 1, 1));
    import.setProgressCallback(progress);
    return import.run(path());
}

/// Returns "station camera start end description creator group" of every bookmark.
QString TestCsvImport::stored()
{
    QStringList lines;
    const QList<Station *> stations = m_network->stations();
    for (Station *station : stations) {
        const QVariantList records = station->execute(u"QueryAllBookmars"_s, QVariantMap())
                                         .result.toMap()
                                         .value(u"Bookmarks"_s)
                                         .toList();
        for (const QVariant &record : records) {
            QString line = station->config().relayPath;
            for (const char *key :
                 {"CameraID", "StartTimestamp", "EndTimestamp", "Description", "Creator", "Group"})
                line += u' ' + record.toMap().value(QLatin1String(key)).toString();
            lines.append(line.trimmed());
        }
    }
    return lines.join(u", "_s);
}

void TestCsvImport::importsFiles_data()
{
    QTest::addColumn<QByteArray>("csv");
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("message"); // without the file's name
    const auto good = [](const char *name, const QByteArray &csv, const QString &stored) {
        QTest::newRow(name) << csv << stored << QString();
    };
    good("other order, case and columns", "End,x, CAMERA ,start\n2,?,1,1\n", u"A 1 1 2"_s);
    good("byte order mark, CRLF, UTF-8, no last line end",
         "\xEF\xBB\xBF"
         "\"camera\",start,end,event\r\n1,1,2,\xC3\xBC\r\n2,3,4,\xF0\x9F\x98\x80",
         u"A 1 1 2 ü, A 2 3 4 😀"_s);
    good("quotes", "camera,start,end,event\n1,1,2,\"a,\"\"b\"\"\n\r\nc\"\n2,3,4,\"\"\n",
         u"A 1 1 2 a,\"b\"\n\r\nc, A 2 3 4"_s);
    good("key of a camera", "camera,start,end\nB/3,1,2\nA/2,3,4\n", u"A 2 3 4, B 3 1 2"_s);
    good("station given", "camera,start,end,station\n3,1,2,B\nB/3,3,4,B\n2,5,6,A\n",
         u"A 2 5 6, B 3 1 2, B 3 3 4"_s);
    good("texts", "camera,start,end,event,description,creator,group\n1,1,2,e,d,c,g\n1,3,4,e,,c,\n",
         u"A 1 1 2 d c g, A 1 3 4 e c"_s);
    good("ISO 8601 with and without zone",
         "camera,start,end\n1,1970-01-01T00:00:01,1970-01-01T02:00:02.500+02:00\n"
         "1,1970-01-01,1970-01-01T00:00:00.007Z\n",
         u"A 1 1000 2500, A 1 0 7"_s);
    good("a time of day that is skipped where the machine is",
         "camera,start,end\n1,2026-03-29T02:30:00,2026-03-29T02:30:00.001\n",
         u"A 1 1774751400000 1774751400001"_s);
    good("ends of the range", "camera,start,end\n1,0,9223372036854775807\n",
         u"A 1 0 9223372036854775807"_s);
    // The first round is on 2024-01-01T08:00:00Z, the next one a day earlier.
    good("recordings go round the cameras",
         "camera,event,start_offset_ms,end_offset_ms\n"
         "Abuse028,Abuse,5500,8000\nArson011,Arson,5000,14000\nBurglary021,Burglary,2000,6667\n"
         "Arson011,Arson,22667,42233\nExplosion002,Explosion,50000,70000\n",
         u"A 1 1704096005500 1704096008000 Abuse, A 2 1704096005000 1704096014000 Arson, "
         "A 2 1704096022667 1704096042233 Arson, A 1 1704009650000 1704009670000 Explosion, "
         "B 3 1704096002000 1704096006667 Burglary"_s);

    const auto badLine = [](const char *name, const QByteArray &line, const QString &reason) {
        QTest::newRow(name) << "camera,start,end,station,event\n\r\n1,1,2,,\"two\nlines\"\n\n" +
                                   line + "\n1,3,4,,\n"
                            << u"A 1 1 2 two\nlines, A 1 3 4"_s << u":6: "_s + reason;
    };
    badLine("no camera", " ,1,2,,", u"the camera is missing"_s);
    badLine("unknown camera", "camera-99,1,2,,", u"unknown camera \"camera-99\""_s);
    badLine("camera of another station", "3,1,2,A,", u"unknown camera \"3\""_s);
    badLine("key of an unknown station", "C/3,1,2,,", u"unknown camera \"C/3\""_s);
    QTest::newRow("key of an unknown camera among recordings")
        << QByteArray("camera,start_offset_ms,end_offset_ms\nA/9,1,2\n") << QString()
        << u":2: unknown camera \"A/9\""_s;
    badLine("too few fields", "y,1,2,", u"the line has 4 fields, the header line has 5"_s);
    badLine("no start", "y,,2,,", u"the start is not a time"_s);
    badLine("start below 0", "y,-1,2,,", u"the start is not a time"_s);
    badLine("end beyond 64 bits", "y,1,9223372036854775808,,", u"the end is not a time"_s);
    badLine("end before start", "y,2,1,,", u"the end is before the start"_s);
    badLine("unknown station", "y,1,2,nowhere %1,", u"unknown station \"nowhere %1\""_s);
    badLine("text too long", "y,1,2,," + QByteArray(65'537, 'x'),
            u"the description is longer than 65536 characters"_s);
    badLine("NUL", QByteArray("y,1,2,,a\0", 9), u"the description contains a NUL character"_s);
    badLine("not UTF-8", "y,1,2,,a\xFF", u"the text is not UTF-8"_s);
    badLine("overlong line", QByteArray(CsvReader::MaxRecordSize * 3, 'x'),
            u"the line is longer than 1048576 bytes"_s);
    const QString quote = u"a quote is missing or at the wrong place"_s;
    badLine("quote never closed", "y,1,2,,\"a", quote);
    badLine("quote inside a field", "y,1,2,,a\"b", quote);
    badLine("text after a quote", "y,1,2,,\"a\"b", quote);
    QTest::newRow("beyond 64 bits with the recording's start")
        << QByteArray("camera,start_offset_ms,end_offset_ms\nx,1,9223372036854775807\n")
        << QString() << u":2: the end is not a time"_s;

    const auto unusable = [](const char *name, const QByteArray &csv, const QString &reason) {
        QTest::newRow(name) << csv << QString() << reason;
    };
    const QString times =
        u":1: the header line must have either the columns \"start\" and \"end\" or"
        " \"start_offset_ms\" and \"end_offset_ms\""_s;
    unusable("empty", "", u":1: the file is empty"_s);
    unusable("no column for the camera", "\nstart,end\n",
             u":2: the column \"camera\" is missing; add it to the header line"_s);
    unusable("no column for the end", "camera,start\n", times);
    unusable("two kinds of times", "camera,start,end,start_offset_ms,end_offset_ms\n", times);
    unusable("column twice", "camera,CAMERA,start,end\n",
             u":1: the column \"camera\" occurs twice; remove one"_s);
    unusable("other encoding", "camera,\xE9,start,end\n", u":1: the text is not UTF-8"_s);
    const QString utf16 = u":1: the text is UTF-16; save the file as UTF-8"_s;
    unusable("UTF-16", "\xFF\xFE-", utf16);
    unusable("UTF-16 without a mark", QByteArray("c\0a\0m\0,\0\n", 9), utf16);
    unusable("CR alone", "camera,start,end\r1,1,2\r",
             u":1: lines end in CR alone; save the file with LF or CR LF"_s);
    const QString separated = u":1: the columns are separated by %1; separate them by commas"_s;
    unusable("semicolons", "camera;start;end\n1;1;2\n", separated.arg(u"\";\""_s));
    unusable("tabs", "camera\tstart\tend\n1\t1\t2\n", separated.arg(u"tabs"_s));
}

void TestCsvImport::importsFiles()
{
    QFETCH(const QByteArray, csv);
    QFETCH(const QString, message);
    qint64 bytes = 0;
    const CsvImport::Result result = import(csv, [&bytes](const CsvImport::Progress &progress) {
        bytes = progress.bytes;
        return true;
    });
    QCOMPARE(bytes, result.error.isEmpty() ? csv.size() : 0);
    QTEST(stored(), "stored");
    QCOMPARE(result.error + result.messages.join(u'\n'),
             message.isEmpty() ? message : path() + message);
    QCOMPARE(result.imported, stored().isEmpty() ? 0 : stored().count(u", "_s) + 1);
    QCOMPARE(result.skipped, result.messages.size());
    QCOMPARE(result.recordings, csv.contains("Abuse") ? 4 : 0);
}

void TestCsvImport::cancelKeepsWholeBatches()
{
    QStringList reported;
    const CsvImport::Result result =
        import("camera,start,end\n" + QByteArray("1,1,2\n").repeated(2500),
               [&reported](const CsvImport::Progress &progress) {
                   reported.append(u"%1 lines, %2 of %3 bytes"_s.arg(progress.lines)
                                       .arg(progress.bytes)
                                       .arg(progress.totalBytes));
                   return progress.lines < 2000;
               });
    QVERIFY(result.cancelled);
    QCOMPARE(reported, (QStringList{u"1000 lines, 6011 of 15017 bytes"_s,
                                    u"2000 lines, 12011 of 15017 bytes"_s}));
    QCOMPARE(result.imported, 1000);
    QCOMPARE(stored().count(u"A 1 1 2"_s), 1000);
}

void TestCsvImport::failingStationEndsTheImport()
{
    const QString file = m_network->station(u"A"_s)->config().filePath;
    QVERIFY(runSql(file, u"CREATE TRIGGER full BEFORE INSERT ON bookmark WHEN NEW.start_ms = 7"
                         " BEGIN SELECT RAISE(ABORT, 'disk is full'); END"_s));
    const CsvImport::Result result =
        import("camera,start,end\n" + QByteArray("1,x,2\n").repeated(250) +
               QByteArray("1,1,2\n").repeated(1400) + "1,7,8\n");
    QVERIFY2(result.error.startsWith(file), qPrintable(result.error));
    QVERIFY(result.error.contains(u"disk is full"_s));
    QCOMPARE(result.skipped, 250);
    QCOMPARE(result.messages.size(), CsvImport::MaxMessages);
    QCOMPARE(result.imported, 1000);
    QCOMPARE(stored().count(u"A 1 1 2"_s), 1000);
}

void TestCsvImport::unusableFileOrNetworkIsReported()
{
    for (const QString &file : {m_folder->filePath(u"missing.csv"_s), m_folder->path()})
        QVERIFY(CsvImport(*m_network, {}).run(file).error.startsWith(file + u": "_s));
    open(u"bare"_s, {});
    const CsvImport::Result result = import("camera,start_offset_ms,end_offset_ms\n1,1,2\n");
    QCOMPARE(result.imported, 0);
    QCOMPARE(result.messages, QStringList{path() + u":2: there is no camera for this recording"_s});
}

QTEST_GUILESS_MAIN(TestCsvImport)
#include "tst_csvimport.moc"
