#include "DataTable.h"
#include "OpenedRecording.h"
#include "Recording.h"
#include "ReplayProcess.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using namespace workbench;

/// A recording that lacks something is never read as a whole one.
class TestRecording : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;

    /// A recording of three entries, a line each.
    QStringList lines()
    {
        const QString path = m_folder.filePath(u"whole.jsonl"_s);
        TrafficEntry entry;
        entry.name = u"removeAllBookmarks"_s;
        QFile file(path);
        if (!Recording::write(path, {}, {entry, entry, entry}).isEmpty() ||
            !file.open(QIODevice::ReadOnly))
            qFatal("the recording can't be written");
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

private Q_SLOTS:
    void missingEntriesAreReported_data()
    {
        addTable({"lines", "end", "header", "problem"}, uR"(
whole                  | 4 | \n          | entries  |
last line break        | 4 |             | entries  |
at the end of a line   | 3 | \n          | entries  | 3: the recording was cut off after this line, 1 of 3 entries are missing
at a line break        | 3 |             | entries  | 3: the recording was cut off after this line, 1 of 3 entries are missing
inside a line          | 3 | \n{'kind':  | entries  | 4: the recording was cut off inside this line, 1 of 3 entries are missing
after the header       | 1 | \n          | entries  | 1: the recording was cut off after this line, 3 of 3 entries are missing
bad line               | 3 | \n{}\n      | entries  | 4: skipped, unknown kind ''
older, end of a line   | 3 | \n          | older    |
older, inside a line   | 3 | \n{'kind':  | older    | 4: the recording was cut off inside this line
more than were counted | 4 | \n{'kind':'connection'}\n | entries | )"_s.replace(u'\'', u'"'));
    }
    void missingEntriesAreReported()
    {
        QFETCH(QString, end);
        QFETCH(const QString, header);
        QFETCH(const QString, problem);
        QStringList kept = lines().mid(0, numberIn("lines"));
        kept.first().replace(u"\"entries\""_s, u'"' + header + u'"');
        QFile file(m_folder.filePath(u"kept.jsonl"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        end.replace(u"\\n"_s, u"\n"_s);
        file.write((kept.join(u'\n') + end).toUtf8());
        file.close();

        QString error;
        const auto recording = Recording::read(file.fileName(), &error);
        QVERIFY2(recording, qPrintable(error));
        QStringList problems;
        for (const Recording::BadLine &bad : recording->badLines)
            problems.append(u"%1: %2"_s.arg(bad.number).arg(bad.reason));
        QCOMPARE(problems.join(u'\n'), problem);
        QCOMPARE(recording->isCutOff, problem.contains(u"cut off"_s));

        OpenedRecording opened;
        QCOMPARE(opened.open(file.fileName()), QString());
        QCOMPARE(opened.save(file.fileName()), QString());
        const auto saved = Recording::read(file.fileName(), &error);
        QVERIFY2(saved->header.complete == problem.isEmpty(), "not mistaken for a whole one");
    }

    void otherFilesAreRejected_data()
    {
        addTable({"text", "error"}, uR"(
empty         |                             | :1: expected the format 'tessaline-recording', version 1, found an empty file
other JSON    | []                          | :1: expected the format 'tessaline-recording', version 1
later version | {'format':'tessaline-recording','formatVersion':2} | :1: expected the format 'tessaline-recording', version 1
no file       | -                           | : No such file or directory
folder        | /                           | : expected a regular file)"_s.replace(u'\'', u'"'));
    }
    void otherFilesAreRejected()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, error);
        QString path = m_folder.filePath(u"other.jsonl"_s);
        QFile::remove(path);
        if (text == u'/') {
            path = m_folder.path();
        } else if (text != u'-') {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write(text.toUtf8()) >= 0);
        }
        QString found;
        QVERIFY(!Recording::read(path, &found));
        QCOMPARE(found, path + error);
    }

    void failedReplayIsReported_data()
    {
        addTable({"program", "error"}, uR"(
no program | -                  | s.jsonl: the replay failed:
other      | echo why >&2       | s.jsonl: the replay failed: why
crash      | kill -SEGV $$      | s.jsonl: the replay crashed)"_s);
    }
    void failedReplayIsReported()
    {
        QFETCH(const QString, program);
        QFETCH(const QString, error);
        QFile script(m_folder.filePath(u"program"_s));
        script.remove();
        if (program != u'-') {
            QVERIFY(script.open(QIODevice::WriteOnly));
            script.write("#!/bin/sh\n" + program.toUtf8());
            script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
            script.close();
        }
        ReplayProcess replay;
        QString found;
        connect(&replay, &ReplayProcess::finished, this,
                [&](const Comparison &comparison) { found = comparison.error; });
        replay.start(script.fileName(), {}, u"s.jsonl"_s);
        QTRY_VERIFY2(found.startsWith(error), qPrintable(found));
        QVERIFY(!replay.isRunning());
    }
};

QTEST_GUILESS_MAIN(TestRecording)
#include "tst_recording.moc"
