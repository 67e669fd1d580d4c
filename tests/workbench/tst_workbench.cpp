#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>
#include <QtSql/QSqlDatabase>
#include <QtSql/QSqlQuery>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

/// Tests the workbench program by its command line.
class TestWorkbench : public QObject
{
    Q_OBJECT

    struct Run
    {
        int exitCode;
        QString output;
        QString errors;
    };
    static Run
    run(const QStringList &arguments, const QString &folder = {},
        const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(folder);
        process.start(QStringLiteral(WORKBENCH_PATH), arguments);
        if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
            return {-1, QString(), process.errorString()};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    QTemporaryDir m_folder;

    QString write(const QString &name, const QByteArray &content)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s can't be written", qPrintable(name));
        return file.fileName();
    }

    QByteArray databaseOfAnotherProgram()
    {
        QFile file(m_folder.filePath(u"notes.sqlite"_s));
        {
            QSqlDatabase notes = QSqlDatabase::addDatabase(u"QSQLITE"_s, u"notes"_s);
            notes.setDatabaseName(file.fileName());
            if (!notes.open() || !QSqlQuery(notes).exec(u"CREATE TABLE note (words)"_s))
                qFatal("%s can't be made", qPrintable(file.fileName()));
        }
        QSqlDatabase::removeDatabase(u"notes"_s);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    /// Returns the number of bookmarks of all stations.
    static int storedIn(const QString &folder)
    {
        int stored = 0;
        const QFileInfoList files = QDir(folder).entryInfoList({u"*.sqlite"_s});
        for (const QFileInfo &file : files) {
            QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s);
            database.setDatabaseName(file.filePath());
            if (!database.open())
                qFatal("%s can't be opened", qPrintable(file.filePath()));
            QSqlQuery query(u"SELECT count(*) FROM bookmark"_s, database);
            stored += query.next() ? query.value(0).toInt() : 0;
        }
        return stored;
    }

private Q_SLOTS:
    void initTestCase() { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path())); }

    void tourPasses()
    {
        for (const auto &[arguments, line] : QList<QPair<QStringList, QString>>{
                 {{}, u"send > AddBookmarks to relay-3\n"_s},
                 {{u"--verbose"_s}, u"send > QueryAllBookmars to relay-1: {}\n"_s}}) {
            const Run tour = run(arguments);
            QVERIFY2(tour.exitCode == 0, qPrintable(tour.output + tour.errors));
            QVERIFY(tour.output.contains(" 0 failed."_L1));
            QVERIFY2(tour.output.contains(line), qPrintable(tour.output));
            QCOMPARE(tour.errors, QString());
        }
    }

    void tourNeedsNoDisplay()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY"})
            environment.remove(QLatin1String(name));
        environment.insert(u"DISPLAY"_s, QString());
        const QFileInfo plugin(QStringLiteral(PLUGIN_PATH));
        const Run tour = run({u"--library"_s, plugin.fileName()}, plugin.path(), environment);
        QVERIFY2(tour.exitCode == 0, qPrintable(tour.errors));
        QVERIFY(tour.output.contains(" 0 failed."_L1));
    }

    void missingDisplayIsNamed()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : {"QT_QPA_PLATFORM", "WAYLAND_DISPLAY"})
            environment.remove(QLatin1String(name));
        environment.insert(u"DISPLAY"_s, u":no-such-display"_s);
        const Run window = run({}, {}, environment);
        QCOMPARE(window.exitCode, 2);
        QVERIFY2(window.errors.contains("\":no-such-display\""_L1), qPrintable(window.errors));
        QVERIFY2(window.errors.contains("--headless"_L1), qPrintable(window.errors));
    }

    void importStoresBookmarksInTheDataFolder()
    {
        const QString csv = write(u"some.csv"_s, "camera,start,end,description\n"
                                                 "camera-11,1700000000000,1700000001000,kept\n"
                                                 "camera-11,later,2\n");
        const QStringList data{u"--data"_s, m_folder.filePath(u"data"_s), u"--verbose"_s};
        const Run first = run(data + QStringList{u"--import"_s, csv});
        QVERIFY2(first.exitCode == 0, qPrintable(first.output + first.errors));
        QVERIFY2(first.errors.contains(csv + ":3: "_L1), qPrintable(first.errors));
        QVERIFY(first.errors.contains("Imported 1 bookmarks, skipped 1 lines."_L1));

        const Run second = run(data + QStringList{u"--import"_s, csv});
        QVERIFY(second.errors.contains(csv + " was imported on "_L1));
        QVERIFY2(second.exitCode == 0, qPrintable(second.output + second.errors));
        QCOMPARE(second.output.count("\"Description\":\"kept\""_L1),
                 first.output.count("\"Description\":\"kept\""_L1));

        const QFileInfoList databases = QDir(data.at(1)).entryInfoList({u"relay-1*.sqlite"_s});
        QVERIFY(QFile::resize(databases.constFirst().filePath(), 0));
        const Run third = run(data);
        QCOMPARE(third.exitCode, 0);
        QVERIFY2(third.errors.contains("had 0 bytes"_L1), qPrintable(third.errors));
    }

    void interruptedFirstBookmarksAreCreatedAgain()
    {
        const QString data = m_folder.filePath(u"interrupted"_s);
        const QStringList arguments{u"--data"_s, data, u"--screenshot"_s,
                                    m_folder.filePath(u"b.png"_s)};
        QProcess process;
        process.start(QStringLiteral(WORKBENCH_PATH),
                      arguments + QStringList{u"--bookmarks=1000000"_s});
        process.setReadChannel(QProcess::StandardError);
        QTRY_VERIFY_WITH_TIMEOUT(process.peek(1000).contains("Creating the first bookmarks"),
                                 60'000);
        process.kill();
        QVERIFY(process.waitForFinished());

        for (const bool first : {true, false}) {
            const Run again = run(arguments + QStringList{u"--bookmarks=30"_s});
            QVERIFY2(again.exitCode == 0, qPrintable(again.errors));
            QCOMPARE(again.errors.contains("interrupted"_L1), first);
            QCOMPARE(storedIn(data), 30);
        }
    }

    void unusableOptionsAreRejected_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("complaint");

        const QString text = write(u"text.so"_s, "no library");
        const QString data = m_folder.filePath(u"damaged"_s);
        run({u"--data"_s, data, u"--library"_s, text});
        const QStringList databases = QDir(data).entryList({u"*.sqlite"_s});
        for (const QString &database : databases)
            write(u"damaged/"_s + database, "garbage");

        const auto row = [](const char *title, const QStringList &arguments,
                            const QString &complaint) {
            QTest::newRow(title) << arguments << complaint;
        };
        row("no such library", {u"--library"_s, u"/none.so"_s},
            u"/none.so: there is no such file"_s);
        row("a folder", {u"--library"_s, u"/tmp"_s}, u"/tmp: expected a file that can be read"_s);
        row("no library", {u"--library"_s, text}, text + ": expected a Qt plug-in"_L1);
        row("no plug-in", {u"--library"_s, QStringLiteral(NO_PLUGIN_PATH)},
            u"expected a Qt plug-in"_s);
        row("damaged database", {u"--data"_s, data}, data + "/relay-1"_L1);
        row("unwritable log", {u"--log"_s, u"/none/log"_s}, u"/none/log: can't be written"_s);
        const auto values = [&](const QString &option, const QStringList &bad,
                                const QString &expected) {
            for (const QString &value : bad)
                row(qPrintable(option + u' ' + value), {u"%1=%2"_s.arg(option, value)},
                    u"%1 %2: expected %3"_s.arg(option, value, expected));
        };
        values(u"--stations"_s, {u"0"_s, u"101"_s, u""_s, u"3.5"_s},
               u"a whole number from 1 to 100"_s);
        values(u"--bookmarks"_s, {u"-1"_s, u"1000001"_s, u"1e3"_s},
               u"a whole number from 0 to 1000000"_s);
        values(u"--seed"_s, {u"-1"_s, u"4294967296"_s}, u"a whole number from 0 to 4294967295"_s);
        for (const QString &option : {u"--import"_s, u"--replay"_s})
            values(option, {u"/none"_s, u"/"_s, u"/dev/zero"_s}, u"a file that can be read"_s);
        const QString useless = write(u"useless.csv"_s, "camera,start,end\ncamera-99,1,2\n");
        row("nothing imported", {u"--import"_s, useless},
            useless + ": no bookmark was imported"_L1);

        const auto patched = [&](const char *name, const QByteArray &before,
                                 const QByteArray &after, const QString &complaint) {
            QFile plugin(QStringLiteral(PLUGIN_PATH));
            if (!plugin.open(QIODevice::ReadOnly))
                qFatal("the plug-in can't be read");
            const QString file =
                write(QLatin1String(name), plugin.readAll().replace(before, after));
            row(name, {u"--library"_s, file}, u"%1: %2"_s.arg(file, complaint));
        };
        const QByteArray qt6("qt-project!\0\1\6", 14);
        patched(
            "newer Qt", qt6 + char(QT_VERSION_MINOR), qt6 + char(99),
            u"it was built with Qt 6.99; a program with Qt %1"_s.arg(QLatin1String(qVersion())));
        patched("key", "ClientOnly\xf4", "ClientOnly\x07",
                u"expected the key \"ClientOnly\" with true or false, found \"7\""_s);
        patched("missing library", "libTimeShiftBufferModel.so", "libTimeShiftBufferModel.xy",
                u"it can't be loaded: "_s);
        row("unknown option", {u"--nonsense"_s}, u"nonsense"_s);
        row("stray argument", {u"stray"_s}, u"Unexpected argument: stray"_s);
        const QString qml = write(u"Own.qml"_s, "import QtQuick\nItem { }");
        row("compared with nothing", {u"--compare"_s, useless}, u"--compare needs --replay"_s);
        row("report of nothing", {u"--report"_s, u"r.json"_s}, u"--report needs --replay"_s);
        row("two programs", {u"--qml"_s, qml, u"--screenshot"_s, u"a.png"_s},
            u"--qml and --screenshot exclude each other"_s);
        row("faults without a window", {u"--tour"_s, u"--faults"_s, write(u"f.json"_s, "[]")},
            u"--tour and --faults exclude each other"_s);
        row("unwritable pictures", {u"--pictures"_s, qml + u"/out"_s},
            qml + "/out: can't be written"_L1);
    }
    void unusableOptionsAreRejected()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, complaint);

        const Run rejected = run(arguments);
        QCOMPARE(rejected.exitCode, 2);
        QCOMPARE(rejected.output, QString());
        QVERIFY2(rejected.errors.contains(complaint), qPrintable(rejected.errors));
    }

    void helpListsEveryOption()
    {
        const Run help = run({u"--help"_s});
        QCOMPARE(help.exitCode, 0);
        for (const char *option :
             {"stations",    "cameras", "bookmarks", "seed",     "data",    "import",
              "screenshot",  "tour",    "replay",    "pictures", "library", "log",
              "verbose",     "qml",     "until",     "faults",   "report",  "headless",
              "frame-times", "rounds",  "compare",   "help",     "version"})
            QVERIFY2(help.output.contains("--"_L1 + QLatin1String(option)), option);
    }

    void replayReportsByExitCode()
    {
        const QByteArray session = "{\"format\":\"tessaline-recording\",\"formatVersion\":1}\n"
                                   "{\"kind\":\"call\",\"name\":\"removeAllBookmarks\","
                                   "\"value\":[\"\"],\"result\":1}\n";
        const QString file = write(u"s.jsonl"_s, session);
        const Run other = run({u"--replay"_s, file});
        QCOMPARE(other.exitCode, 1);
        QVERIFY2(other.output.contains(file + ":2: expected"_L1), qPrintable(other.output));
        write(u"s.jsonl"_s, session.left(session.indexOf('\n') + 1));
        const Run empty = run({u"--replay"_s, file});
        QCOMPARE(empty.exitCode, 1);
        QVERIFY2(empty.output.contains("nothing was compared"_L1), qPrintable(empty.output));
    }

    void recordingsAreComparedWithoutAPlugin()
    {
        const QByteArray header = "{\"format\":\"tessaline-recording\",\"formatVersion\":1";
        const QByteArray call = "{\"kind\":\"call\",\"name\":\"add\",\"value\":[1]}\n";
        const QString file = write(u"a.jsonl"_s, header + "}\n" + call);
        const auto compared = [&](const QByteArray &other) {
            return run({u"--replay"_s, file, u"--compare"_s, write(u"b.jsonl"_s, other),
                        u"--library"_s, u"/none"_s});
        };
        QCOMPARE(compared(header + "}\n" + call).exitCode, 0);
        const Run different = compared(header + "}\n" + QByteArray(call).replace('1', '2'));
        QCOMPARE(different.exitCode, 1);
        QVERIFY2(different.output.contains(file + ":2: expected arguments[0] is 1, found 2 in"_L1),
                 qPrintable(different.output));
        const Run cut = compared(header + ",\"entries\":2}\n" + call);
        QCOMPARE(cut.exitCode, 1);
        QVERIFY2(cut.output.contains("b.jsonl:2: the recording was cut off after this line"_L1),
                 qPrintable(cut.output));
        const Run unread = compared("");
        QCOMPARE(unread.exitCode, 2);
        QVERIFY2(unread.errors.contains("b.jsonl:1: expected"_L1), qPrintable(unread.errors));
    }

    void replayWritesItsReportWithoutADisplay()
    {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"QT_QPA_PLATFORM"_s);
        environment.insert(u"DISPLAY"_s, u":no-such-display"_s);
        const QString file =
            write(u"s.jsonl"_s, "{\"format\":\"tessaline-recording\",\"formatVersion\":1}\n"
                                "{\"kind\":\"call\",\"name\":\"addBookmark\",\"value\":[],"
                                "\"result\":\"<\\u0001&\"}\n{\"kind\":\"call\",");
        const auto report = [&](const QString &name) {
            const QString path = m_folder.filePath(name);
            const Run replay =
                run({u"--replay"_s, file, u"--headless"_s, u"--report"_s, path}, {}, environment);
            QFile written(path);
            return replay.exitCode == 1 && written.open(QIODevice::ReadOnly) ? written.readAll()
                                                                             : QByteArray();
        };
        const QJsonObject json = QJsonDocument::fromJson(report(u"r.json"_s)).object();
        QCOMPARE(json.value("inputs"_L1), 1);
        QCOMPARE(json.value("differences"_L1).toArray().size(), 1);
        const QJsonObject bad = json.value("badLines"_L1).toArray().at(0).toObject();
        QCOMPARE(bad.value("line"_L1), 3);
        QVERIFY(bad.value("reason"_L1).toString().contains("cut off"_L1));

        QXmlStreamReader xml(report(u"r.xml"_s));
        QStringList elements;
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement)
                elements.append(xml.name().toString());
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(elements.join(u' '), u"testsuite testcase error testcase failure"_s);

        const Run unwritten =
            run({u"--replay"_s, file, u"--report"_s, m_folder.filePath(u"none/r.xml"_s)});
        QCOMPARE(unwritten.exitCode, 2);
        QVERIFY2(unwritten.errors.contains("r.xml: "_L1), qPrintable(unwritten.errors));
    }

    /// Every input must change the scene, and a frame must show it.
    void frameTimesHaveEveryInput()
    {
        const QString folder = m_folder.filePath(u"figures"_s);
        const Run measured = run(
            {u"--frame-times"_s, u"--rounds=1"_s, u"--bookmarks=3000"_s, u"--pictures"_s, folder});
        QVERIFY2(measured.exitCode == 0, qPrintable(measured.errors));
        QFile file(folder + u"/frame-times.json"_s);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QJsonObject figures = QJsonDocument::fromJson(file.readAll()).object();
        QCOMPARE(figures.value("bookmarks"_L1), 3000);

        QList<QPair<QString, int>> inputs;
        const QJsonArray rows = figures.value("rows"_L1).toArray();
        for (const QJsonValue &row : rows) {
            const QString action = row["action"_L1].toString();
            inputs.append({action, row["inputToFrame"_L1]["count"_L1].toInt()});
            QCOMPARE(row["inputsWithoutFrame"_L1], 0);
            QVERIFY(row["frameWork"_L1]["median"_L1].toDouble() > 0);
            QVERIFY2(measured.output.contains(u"| %1 | "_s.arg(action)), qPrintable(action));
        }
        const QList<QPair<QString, int>> expected{{u"moving pictures only"_s, 0},
                                                  {u"search text, by letter"_s, 23},
                                                  {u"turn pages"_s, 20},
                                                  {u"change group and order"_s, 10},
                                                  {u"pan to times not loaded"_s, 59},
                                                  {u"pan over loaded times"_s, 118},
                                                  {u"zoom"_s, 28},
                                                  {u"query all stations"_s, 1}};
        QCOMPARE(inputs, expected);
    }

    /// The first bookmarks are created only in an empty folder; unusable files are not changed.
    void picturesAreTakenOfUsableStations()
    {
        const QString data = m_folder.filePath(u"pictured"_s);
        const QString picture = m_folder.filePath(u"a.png"_s);
        const QStringList arguments{u"--data"_s, data, u"--bookmarks=30"_s, u"--screenshot"_s,
                                    picture};
        for (const QByteArray &damage :
             {QByteArray(), QByteArray("garbage"),
              QByteArray("SQLite format 3\0", 16).append(84, 'x'), databaseOfAnotherProgram()}) {
            const QStringList databases = QDir(data).entryList({u"relay-1*.sqlite"_s});
            if (!damage.isEmpty())
                write(u"pictured/"_s + databases.constFirst(), damage);
            QFile::remove(picture);
            const Run window = run(arguments);
            QVERIFY2(window.exitCode == 0, qPrintable(window.errors));
            QFile png(picture);
            QVERIFY(png.open(QIODevice::ReadOnly) && png.readAll().startsWith("\x89PNG"));
            QCOMPARE(window.errors.contains("Creating the first bookmarks"_L1), damage.isEmpty());
            if (damage.isEmpty())
                continue;
            QVERIFY2(window.errors.contains(databases.constFirst()), qPrintable(window.errors));
            QFile file(data + u'/' + databases.constFirst());
            QVERIFY(file.open(QIODevice::ReadOnly));
            QCOMPARE(file.readAll(), damage);
        }
    }
};

QTEST_GUILESS_MAIN(TestWorkbench)
#include "tst_workbench.moc"
