#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

/// The workbench as its user runs it.
class TestWorkbench : public QObject
{
    Q_OBJECT

    struct Run
    {
        int exitCode;
        QString output;
        QString errors;
    };
    static Run run(const QStringList &arguments)
    {
        QProcess process;
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

private Q_SLOTS:
    void initTestCase() { qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path())); }

    void playsTheTour()
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

    void importsAndKeepsTheDataFolder()
    {
        const QString csv = write(u"some.csv"_s, "camera,start,end,description\n"
                                                 "camera-11,1700000000000,1700000001000,kept\n"
                                                 "camera-11,later,2\n");
        const QStringList data{u"--data"_s, m_folder.filePath(u"data"_s), u"--verbose"_s};
        const Run first = run(data + QStringList{u"--import"_s, csv});
        QVERIFY2(first.exitCode == 0, qPrintable(first.output + first.errors));
        QVERIFY2(first.errors.contains(csv + ":3: "_L1), qPrintable(first.errors));
        QVERIFY(first.errors.contains("Imported 1 bookmarks, skipped 1 lines."_L1));

        const Run second = run(data);
        QVERIFY2(second.exitCode == 0, qPrintable(second.output + second.errors));
        QVERIFY(second.output.contains("\"Description\":\"kept\""_L1));
    }

    void refusesToBegin_data()
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
            u"/none.so: expected a Qt plug-in"_s);
        row("no library", {u"--library"_s, text}, text + ": expected a Qt plug-in"_L1);
        row("no plug-in", {u"--library"_s, QStringLiteral(NO_PLUGIN_PATH)},
            u"expected a Qt plug-in"_s);
        row("damaged database", {u"--data"_s, data}, data + "/relay-1"_L1);
        row("no such import", {u"--import"_s, u"/none.csv"_s}, u"/none.csv"_s);
        row("unwritable log", {u"--log"_s, u"/none/log"_s}, u"/none/log: cannot be written"_s);
        row("unknown option", {u"--nonsense"_s}, u"nonsense"_s);
        row("stray argument", {u"stray"_s}, u"Unexpected argument: stray"_s);
    }
    void refusesToBegin()
    {
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, complaint);

        const Run refused = run(arguments);
        QCOMPARE(refused.exitCode, 2);
        QCOMPARE(refused.output, QString());
        QVERIFY2(refused.errors.contains(complaint), qPrintable(refused.errors));
    }
};

QTEST_GUILESS_MAIN(TestWorkbench)
#include "tst_workbench.moc"
