#include "CheckContext.h"
#include "DataTable.h"
#include "LibraryFile.h"
#include "Options.h"
#include "Report.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace Qt::StringLiterals;
using check::Status;

namespace {

check::Result result(const char *name, Status status)
{
    check::Result made;
    made.name = QLatin1String(name);
    made.level = 4;
    made.status = status;
    made.line = u"expected \"a\" & <b>, found \x01"_s;
    made.more = QStringList{u"one more"_s};
    return made;
}

QByteArray contentOf(const QString &name)
{
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Returns the smallest file with a recognised format.
/// @param at offset of the bytes @p machine
QByteArray header(const char *start, int at, QByteArray machine)
{
    QByteArray content(start);
    content.append(QByteArray(at - int(content.size()), '\0')).append(machine);
    return content.append(QByteArray(32, '\0'));
}

} // namespace

/// Options, reports and exit codes of the checker. The planted faults test the checks themselves.
class TestChecker : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

private Q_SLOTS:
    void formatAndProcessorOfFileAreDetected_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("format");
        const QByteArray pe = header("MZ", 0x3c, QByteArray("\x40\0\0\0PE\0\0\x64\x86", 10));
        QTest::newRow("PE") << pe << u"PE for x86-64"_s;
        QTest::newRow("PE cut off") << pe.first(0x40) << u"no library"_s;
        QTest::newRow("ELF") << header("\x7f"
                                       "ELF\x02\x01",
                                       18, QByteArray("\xb7\0", 2))
                             << u"ELF for ARM64"_s;
        QTest::newRow("damaged ELF") << QByteArray("\x7f"
                                                   "ELF")
                                     << u"ELF for another machine (damaged header)"_s;
        QTest::newRow("ELF of 32 bits") << header("\x7f"
                                                  "ELF\x01\x01",
                                                  18, QByteArray("\x3e\0", 2))
                                        << u"ELF for x86-64 (32 bits)"_s;
        QTest::newRow("text") << QByteArray("#!/bin/sh") << u"no library"_s;
        QTest::newRow("empty") << QByteArray() << u"no library"_s;
    }
    void formatAndProcessorOfFileAreDetected()
    {
        QFETCH(const QByteArray, content);
        QTEST(check::formatOf(content), "format");
        check::ElfFile::read(content);
    }

    void damagedLibraryIsReadWithoutCrash()
    {
        const QByteArray content = contentOf(QStringLiteral(TESSALINE_PLUGIN_PATH));
        const auto file = check::ElfFile::read(content);
        if (!file)
            QSKIP("The library of this build is not an ELF file");
        QVERIFY(file->exported.contains("qt_plugin_instance"));
        QVERIFY(file->undefined.size() > 10);
        // Cut the file at many offsets, and invert single bytes of its headers.
        for (qsizetype size = 0; size < content.size(); size += 1 + size / 8)
            check::ElfFile::read(content.first(size));
        for (qsizetype i = 0; i < 2000; i += 37) {
            for (const qsizetype position : {i, content.size() - 1 - i}) {
                QByteArray damaged = content;
                damaged[position] = char(~damaged.at(position));
                check::ElfFile::read(damaged);
            }
        }
    }

    void reportsAreWrittenAsJsonAndJUnit()
    {
        const QTemporaryDir folder;
        const QString json = folder.filePath(u"report.json"_s);
        const QString junit = folder.filePath(u"report.xml"_s);
        const QList<check::Result> results{
            result("4.a", Status::Pass),    result("4.b", Status::Warning),
            result("4.c", Status::Fail),    result("4.d", Status::Crash),
            result("4.e", Status::Timeout), result("4.f", Status::Skipped)};
        const QList<check::LibraryReport> reports{{u"lib"_s, results, 1}, {u"other"_s, {}, 2}};
        QCOMPARE(check::writeJson(json, 7, reports), QString());
        QCOMPARE(check::writeJUnit(junit, reports), QString());

        const auto report = QJsonDocument::fromJson(contentOf(json)).object();
        QCOMPARE(report.value(u"seed"_s).toInt(), 7);
        QCOMPARE(report.value(u"exitCode"_s).toInt(), 2);
        const QJsonArray libraries = report.value(u"libraries"_s).toArray();
        QCOMPARE(libraries.at(1).toObject().value(u"library"_s).toString(), u"other"_s);
        const QJsonArray list = libraries.at(0).toObject().value(u"results"_s).toArray();
        QCOMPARE(list.size(), results.size());
        for (qsizetype i = 0; i < list.size(); ++i) {
            const auto read = check::Result::fromJson(list.at(i).toObject());
            QCOMPARE(check::textOf(read), check::textOf(results.at(i)));
            QCOMPARE(read.status, results.at(i).status);
        }

        QStringList elements;
        QXmlStreamReader xml(contentOf(junit));
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement)
                elements.append(xml.name().toString());
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        QCOMPARE(elements.join(u' '),
                 u"testsuites testsuite testcase system-out testcase system-out testcase failure "
                 "testcase error testcase error testcase skipped testsuite"_s);
        QVERIFY(!check::writeJson(u"/nowhere/report"_s, 7, reports).isEmpty());
    }

    void resultHasStatusAndFirstFinding_data()
    {
        // The steps "fail", "warn" and "skip" have one text, "compare" has two; "/" is a line
        // break.
        addTable({"steps", "result"}, uR"(
no finding         |                         | pass summary
warned             | warn w; warn v          | warning w, v
skipped            | warn w; skip s          | skipped s, w
failed             | warn w; fail a; fail b  | fail a, b, w
failed before      | fail a; skip s          | fail a
equal              | compare a/b a/b         | pass summary
another line       | compare a/b/c a/x/y     | fail subject: expected b, found x
the only line      | compare  a              | fail subject: expected nothing, found a
a line more        | compare a a/b           | fail subject: expected nothing, found b
a line less        | compare a/b a           | fail subject: expected b, found nothing
an empty line more | compare a a/            | fail subject: expected nothing, found an empty line)"_s);
    }
    void resultHasStatusAndFirstFinding()
    {
        QFETCH(const QString, steps);
        check::CheckContext context(u"lib"_s, 1);
        context.summarize(u"summary"_s);
        for (const QString &step : steps.split(u"; "_s)) {
            QStringList words = QString(step).replace(u'/', u'\n').split(u' ');
            if (words.at(0) == u"fail")
                context.fail(words.at(1));
            else if (words.at(0) == u"warn")
                context.warn(words.at(1));
            else if (words.at(0) == u"skip")
                context.skip(words.at(1));
            else if (words.at(0) == u"compare")
                context.compare(u"subject"_s, words.at(1), words.at(2));
        }
        const check::Result found = context.result();
        const QStringList lines = QStringList(found.line) + found.more;
        QTEST(check::wordFor(found.status) + u' ' + lines.join(u", "_s), "result");
    }

    void exitCodeIsOneUnlessCheckPassedAndNoneFailed_data()
    {
        addTable({"statuses", "code", "summary"}, uR"(
none           |                  | 1 | no check ran
some passed    | skipped pass     | 0 | 2 checks: 1 pass, 1 skipped
all skipped    | skipped skipped  | 1 | 2 checks: 2 skipped
failed         | pass fail        | 1 | 2 checks: 1 pass, 1 fail
crashed        | crash pass       | 1 | 2 checks: 1 pass, 1 crash
never ended    | timeout pass     | 1 | 2 checks: 1 pass, 1 timeout)"_s);
    }
    void exitCodeIsOneUnlessCheckPassedAndNoneFailed()
    {
        QFETCH(const QString, statuses);
        QList<check::Result> results;
        for (const QString &word : statuses.split(u' ', Qt::SkipEmptyParts))
            results.append(check::Result::fromJson({{u"status"_s, word}}));
        QTEST(QString::number(check::exitCodeFor(results)), "code");
        QTEST(check::summaryOf(results), "summary");
    }

    void numberOutsideOfRangeIsRejected_data()
    {
        addTable({"arguments", "error"}, uR"(
lowest          | lib --level=1 --seed=0 --timeout=1 |
highest         | lib --level=6 --seed=4294967295 --timeout=86400 |
level below     | lib --level=0          | --level: expected a number from 1 to 6
seed above      | lib --seed=4294967296  | --seed: expected a number from 0 to 4294967295
no time         | lib --timeout=0        | --timeout: expected a number from 1 to 86400
no library      | --timeout=1            | no LIBRARY is named; see --help)"_s);
    }
    void numberOutsideOfRangeIsRejected()
    {
        QFETCH(const QString, arguments);
        QString error;
        const auto options = check::Options::parse((u"check "_s + arguments).split(u' '), error);
        QTEST(error, "error");
        QCOMPARE(options.has_value(), error.isEmpty());
    }

#ifdef Q_OS_UNIX
    void fileThatIsNoLibraryIsRejected_data();
    void fileThatIsNoLibraryIsRejected();
#endif

    /// Replaces the search folders in a copy of the library by a text of the same length.
    void searchFoldersMustBeginWithOrigin_data()
    {
        addTable({"folders", "found"}, uR"(
as built            | $ORIGIN/../lib |
in braces           | ${ORIGIN}/lib/ |
the folder and another | $ORIGIN:lib/aa | lib/aa
longer word         | $ORIGINAL/libs | $ORIGINAL/libs
other variable      | $ORIGIN:$LIB/x | $LIB/x
absolute            | /opt/build/lib | /opt/build/lib
empty at the end    | $ORIGIN/../li: | an empty folder
empty at the start  | :$ORIGIN/../li | an empty folder)"_s);
    }
    void searchFoldersMustBeginWithOrigin()
    {
        QFETCH(const QString, folders);
        QFETCH(const QString, found);
        const QByteArray built("$ORIGIN/../lib");
        QByteArray library = contentOf(QStringLiteral(TESSALINE_PLUGIN_PATH));
        if (library.count(built) != 1)
            QSKIP("This build has other search folders");
        library.replace(built, folders.toLatin1());
        QFile file(m_folder.filePath(u"folders.so"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(library) == library.size());
        file.close();
        QProcess process;
        process.start(QStringLiteral(CHECKER), {file.fileName(), u"--include=1.build-paths"_s});
        QVERIFY(process.waitForFinished());
        const QString output = QString::fromLocal8Bit(process.readAllStandardOutput());
        const QString failure = u"search folders that begin with $ORIGIN, found "_s;
        QVERIFY2(output.contains(u"1.build-paths"_s), qPrintable(output));
        QVERIFY2(found.isEmpty() || output.contains(failure + found), qPrintable(output));
        QCOMPARE(output.contains(failure), !found.isEmpty());
    }

    void libraryThatDoesNotLoadIsReportedOnce()
    {
        QProcess process;
        process.start(QStringLiteral(CHECKER),
                      {QStringLiteral(CHECKER), u"--include"_s, u"^[2-5]"_s});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitCode(), 1);
        const QByteArray output = process.readAllStandardOutput();
        QVERIFY2(output.startsWith("fail    2.load ") && output.endsWith("\n1 checks: 1 fail\n"),
                 output.constData());
    }

    void onlyFailedChecksArePrintedForEachLibrary()
    {
        const QString good = QStringLiteral(TESSALINE_PLUGIN_PATH);
        const QString bad = QStringLiteral(CHECKER);
        QProcess process;
        process.start(bad,
                      {good, bad, u"--only-failed"_s, u"--include"_s, u"^[23].(load|class)"_s});
        QVERIFY(process.waitForFinished());
        const QString output = QString::fromLocal8Bit(process.readAllStandardOutput());
        QVERIFY2(
            output.startsWith(good + u":\n2 checks: 2 pass\n"_s + bad + u":\nfail    2.load "_s),
            qPrintable(output));
        QCOMPARE(process.exitCode(), 1);
    }

#ifdef SLOW_START
    void waitingForTheProcessorDoesNotTimeOut()
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"LD_PRELOAD"_s, QStringLiteral(SLOW_START));
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(CHECKER), {QStringLiteral(TESSALINE_PLUGIN_PATH),
                                                u"--timeout=1"_s, u"--include=1.exports"_s});
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.readAllStandardOutput().left(13), QByteArray("pass    1.exp"));
    }
#endif

    void exitCodeDependsOnArguments_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<int>("code");
        const QString library = QStringLiteral(TESSALINE_PLUGIN_PATH);
        QTest::newRow("list") << QStringList{u"--list"_s} << 0;
        QTest::newRow("passed") << QStringList{library, u"--include"_s, u"1.exports"_s} << 0;
        QTest::newRow("one in this process")
            << QStringList{library, u"--in-process"_s, u"--include"_s, u"3.class"_s} << 0;
        QTest::newRow("several in this process") << QStringList{library, u"--in-process"_s} << 2;
        QTest::newRow("nothing ran") << QStringList{library, u"--include"_s, u"none"_s} << 1;
        QTest::newRow("several libraries")
            << QStringList{library, library, u"--include"_s, u"1.exports"_s} << 0;
        QTest::newRow("one of several is none")
            << QStringList{library, u"/none.so"_s, library, u"--include"_s, u"1.exports"_s} << 2;
        QTest::newRow("several libraries in this process")
            << QStringList{library, library, u"--in-process"_s, u"--include"_s, u"3.class"_s} << 2;
        QTest::newRow("not of this level")
            << QStringList{library, u"--level"_s, u"2"_s, u"--include"_s, u"3.class"_s} << 1;
        QTest::newRow("no argument") << QStringList{} << 2;
        QTest::newRow("bad level") << QStringList{library, u"--level"_s, u"7"_s} << 2;
        QTest::newRow("bad pattern") << QStringList{library, u"--include"_s, u"("_s} << 2;
    }
    void exitCodeDependsOnArguments()
    {
        QFETCH(const QStringList, arguments);
        QProcess process;
        process.start(QStringLiteral(CHECKER), arguments);
        QVERIFY(process.waitForFinished());
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QTEST(process.exitCode(), "code");
    }
};

#ifdef Q_OS_UNIX
/// The checker prints one line and returns exit code 2.
void TestChecker::fileThatIsNoLibraryIsRejected_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("problem");
    const QByteArray whole = contentOf(QStringLiteral(TESSALINE_PLUGIN_PATH));
    const auto file = [&](const char *title, const QByteArray &content, const QString &problem) {
        const QString path = m_folder.filePath(QLatin1String(title));
        QFile written(path);
        if (!written.open(QIODevice::WriteOnly) || written.write(content) != content.size())
            qFatal("%s can't be written", qPrintable(path));
        QTest::newRow(title) << path << problem;
    };
    const auto patched = [&](const char *title, qsizetype at, char byte, const QString &found) {
        file(title, QByteArray(whole).replace(at, 1, &byte, 1),
             u"expected ELF for x86-64, found "_s + found);
    };
    patched("32 bits", 4, 1, u"ELF for x86-64 (32 bits)"_s);
    patched("other byte order", 5, 2, u"ELF for x86-64 (big-endian)"_s);
    patched("no ELF", 0, 'E', u"no library"_s);
    for (const qsizetype size : {qsizetype(64), whole.size() / 2, whole.size() - 1})
        file(qPrintable(QString::number(size)), whole.first(size),
             u"the file is cut off after %1 bytes"_s.arg(size));
    file("empty", {}, u"the file is empty"_s);
    file("large", whole, u"the file is larger than 1 GiB"_s);
    QFile::resize(m_folder.filePath(u"large"_s), (qint64(1) << 30) + 1);
    const QString pipe = m_folder.filePath(u"pipe"_s);
    mkfifo(qPrintable(pipe), 0600);
    for (const QString &other : {pipe, u"/dev/zero"_s, u"/"_s})
        QTest::newRow(qPrintable(other)) << other << u"expected a regular file"_s;
    QTest::newRow("missing") << u"/none.so"_s << u"the file does not exist"_s;
}
void TestChecker::fileThatIsNoLibraryIsRejected()
{
    QFETCH(const QString, path);
    QFETCH(const QString, problem);
    QProcess process;
    process.start(QStringLiteral(CHECKER), {path});
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.readAllStandardError(),
             u"tessaline-check: %1: %2\n"_s.arg(path, problem).toLocal8Bit());
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    QCOMPARE(process.exitCode(), 2);
}
#endif

QTEST_GUILESS_MAIN(TestChecker)
#include "tst_checker.moc"
