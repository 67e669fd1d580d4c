#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

/// The workbench as its user runs it.
class TestWorkbench : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void playsTheTour_data();
    void playsTheTour();
    void keepsTheDataFolder();
    void refusesToBegin_data();
    void refusesToBegin();
    void namesBadLinesOfAnImport();

private:
    struct Run
    {
        int exitCode;
        QString output;
        QString errors;
    };
    static Run run(const QStringList &arguments);
    static QString write(const QString &path, const QByteArray &content);
};

TestWorkbench::Run TestWorkbench::run(const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(WORKBENCH_PATH), arguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, QString(), process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
            QString::fromUtf8(process.readAllStandardError())};
}

QString TestWorkbench::write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("%s can't be written", qPrintable(path));
    return path;
}

void TestWorkbench::playsTheTour_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("line");

    QTest::newRow("in few words") << QStringList()
                                  << QStringLiteral("send > AddBookmarks to relay-3\n");
    QTest::newRow("with payloads") << QStringList{QStringLiteral("--verbose")}
                                   << QStringLiteral("send > QueryAllBookmars to relay-1: {}\n");
}

void TestWorkbench::playsTheTour()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, line);

    const Run tour = run(arguments);
    QVERIFY2(tour.exitCode == 0, qPrintable(tour.output + tour.errors));
    QVERIFY(tour.output.contains(QLatin1String(" 0 failed.")));
    QVERIFY2(tour.output.contains(line), qPrintable(tour.output));
    QCOMPARE(tour.errors, QString());
}

void TestWorkbench::keepsTheDataFolder()
{
    const QTemporaryDir folder;
    const QString csv = write(folder.filePath(QStringLiteral("bookmarks.csv")),
                              "camera,start,end,description\n"
                              "camera-11,1700000000000,1700000001000,kept\n");
    const QString data = folder.filePath(QStringLiteral("data"));
    const Run first = run({QStringLiteral("--data"), data, QStringLiteral("--import"), csv});
    QVERIFY2(first.exitCode == 0, qPrintable(first.output + first.errors));
    QVERIFY(first.errors.contains(QLatin1String("Imported 1 bookmarks, skipped 0 lines.")));

    const Run second = run({QStringLiteral("--data"), data, QStringLiteral("--verbose")});
    QVERIFY2(second.exitCode == 0, qPrintable(second.output + second.errors));
    QVERIFY(second.output.contains(QLatin1String("\"Description\":\"kept\"")));
}

void TestWorkbench::refusesToBegin_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("complaint");

    static const QTemporaryDir folder;
    const QString text = write(folder.filePath(QStringLiteral("text.so")), "no library");
    const QString data = folder.filePath(QStringLiteral("damaged"));
    run({QStringLiteral("--data"), data, QStringLiteral("--plugin"), text});
    const QStringList databases = QDir(data).entryList({QStringLiteral("*.sqlite")});
    for (const QString &database : databases)
        write(data + QLatin1Char('/') + database, "garbage");

    const QString plugin = QStringLiteral("--plugin");
    QTest::newRow("no such library") << QStringList{plugin, QStringLiteral("/none.so")}
                                     << QStringLiteral("/none.so: expected a Qt plug-in");
    QTest::newRow("no library") << QStringList{plugin, text}
                                << text + QStringLiteral(": expected a Qt plug-in");
    QTest::newRow("a library, but no plug-in")
        << QStringList{plugin, QStringLiteral(NO_PLUGIN_PATH)}
        << QStringLiteral("expected a Qt plug-in");
    QTest::newRow("damaged database")
        << QStringList{QStringLiteral("--data"), data} << data + QStringLiteral("/relay-1");
    QTest::newRow("no such import")
        << QStringList{QStringLiteral("--import"), QStringLiteral("/none.csv")}
        << QStringLiteral("/none.csv");
    QTest::newRow("unwritable log")
        << QStringList{QStringLiteral("--log"), QStringLiteral("/none/log")}
        << QStringLiteral("/none/log: cannot be written");
    QTest::newRow("unknown option")
        << QStringList{QStringLiteral("--nonsense")} << QStringLiteral("nonsense");
    QTest::newRow("stray argument")
        << QStringList{QStringLiteral("stray")} << QStringLiteral("Unexpected argument: stray");
}

void TestWorkbench::refusesToBegin()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, complaint);

    const Run refused = run(arguments);
    QCOMPARE(refused.exitCode, 2);
    QCOMPARE(refused.output, QString());
    QVERIFY2(refused.errors.contains(complaint), qPrintable(refused.errors));
}

void TestWorkbench::namesBadLinesOfAnImport()
{
    const QTemporaryDir folder;
    const QString csv = write(folder.filePath(QStringLiteral("some.csv")), "camera,start,end\n"
                                                                           "camera-11,1,2\n"
                                                                           "camera-11,later,2\n"
                                                                           "camera-12,3,4\n");
    const Run run = this->run({QStringLiteral("--import"), csv});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.errors.contains(csv + QLatin1String(":3: ")), qPrintable(run.errors));
    QVERIFY(run.errors.contains(QLatin1String("Imported 2 bookmarks, skipped 1 lines.")));
}

QTEST_GUILESS_MAIN(TestWorkbench)
#include "tst_workbench.moc"
