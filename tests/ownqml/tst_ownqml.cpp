#include "OwnQml.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using workbench::OwnQml;

namespace {

/// A developer's folder of QML files.
class Folder
{
public:
    QString write(const QString &name, const QByteArray &content)
    {
        QFile file(m_folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("%s can't be written", qPrintable(name));
        return file.fileName();
    }

private:
    QTemporaryDir m_folder;
};

struct Run
{
    int exitCode;
    QString errors;
};

Run run(const QString &file, const QStringList &arguments)
{
    QProcess process;
    process.start(QStringLiteral(WORKBENCH_PATH),
                  QStringList{u"--qml"_s, file, u"--bookmarks"_s, u"300"_s} + arguments);
    if (!process.waitForFinished(60'000) || process.exitStatus() != QProcess::NormalExit)
        return {-1, process.errorString()};
    return {process.exitCode(), QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

/// Tests developers' QML files in the workbench.
class TestOwnQml : public QObject
{
    Q_OBJECT

    static int value(const OwnQml &own) { return own.item()->property("value").toInt(); }

private Q_SLOTS:
    void examplesPrintExpectedOutput_data()
    {
        const QString failingStation = QStringLiteral(EXAMPLES "/failing-station.json");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("output");
        QTest::newRow("call") << u"01-call"_s << QStringList{u"addBookmarkResponsed"_s}
                              << u"The bookmark is stored\\."_s;
        QTest::newRow("call to a failing station")
            << u"01-call"_s << QStringList{u"addBookmarkResponsed"_s, u"--faults"_s, failingStation}
            << u"did not store the bookmark"_s;
        QTest::newRow("page") << u"02-page"_s << QStringList{u"queryAllBookmarksResponsed"_s}
                              << u"Found [1-9]\\d* with van"_s;
        QTest::newRow("timeline") << u"03-timeline"_s
                                  << QStringList{u"queryBookmarkForTimelineResponsed"_s}
                                  << u"Shown [1-9]"_s;
        QTest::newRow("batch") << u"04-batch"_s << QStringList{u"addBookmarksResponsed"_s}
                               << u"Failed: \\[\\]"_s;
        QTest::newRow("batch with a failure")
            << u"04-batch"_s
            << QStringList{u"addBookmarksResponsed"_s, u"--faults"_s, failingStation}
            << u"Failed: \\[\"[^\"]+\"\\]"_s;
        QTest::newRow("queries") << u"05-queries"_s << QStringList{u"getRecycleSettingResponse"_s}
                                 << u"All: true(.|\n)*Recent: 6"_s;
    }
    void examplesPrintExpectedOutput()
    {
        QFETCH(const QString, file);
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, output);
        const Run example = run(QStringLiteral(EXAMPLES "/%1.qml").arg(file),
                                QStringList{u"--until"_s} + arguments);
        QRegularExpression expected;
        expected.setPattern(output);
        QVERIFY2(example.errors.contains(expected), qPrintable(example.errors));
        QCOMPARE(example.exitCode, 0);
    }

    void programExitsWithDocumentedCode_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("until");
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("message");
        QTest::newRow("own code") << QByteArray("Component.onCompleted: Qt.exit(7)") << u"60"_s << 7
                                  << QString();
        QTest::newRow("quit") << QByteArray("Component.onCompleted: Qt.quit()") << u"60"_s << 0
                              << QString();
        QTest::newRow("own code before the signal's")
            << QByteArray("Component.onCompleted: bookmarks.getRecycleSetting()\n"
                          "Connections { target: bookmarks\n"
                          "function onGetRecycleSettingResponse() { Qt.exit(5) } }")
            << u"getRecycleSettingResponse"_s << 5 << QString();
        QTest::newRow("time is over") << QByteArray() << u"0.01"_s << 3 << u"did not end"_s;
        QTest::newRow("error while it runs")
            << QByteArray(
                   "Component.onCompleted: {\n missing(); }\nTimer { running: true; interval: "
                   "1; onTriggered: Qt.exit(0) }")
            << u"60"_s << 1 << u":4:"_s;
        QTest::newRow("error that prevents loading")
            << QByteArray("Missing { }") << u"60"_s << 2 << u":3:1: Missing"_s;
        QTest::newRow("unknown signal")
            << QByteArray() << u"noSignal"_s << 2 << u"addBookmarkResponsed"_s;
    }
    void programExitsWithDocumentedCode()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const QString, until);
        QFETCH(const int, code);
        QFETCH(const QString, message);
        Folder folder;
        const QString file =
            folder.write(u"Own.qml"_s, "import QtQuick\nItem {\n" + body + "\n}\n");
        const Run own = run(file, {u"--until"_s, until});
        QVERIFY2(own.exitCode == code, qPrintable(own.errors));
        QVERIFY2(own.errors.contains(message), qPrintable(own.errors));
    }

    void savedFilesAreLoadedAgain()
    {
        Folder folder;
        const QString file = folder.write(u"Own.qml"_s, R"(import QtQuick
import "values.mjs" as Values
Part { value: Values.value })");
        folder.write(u"Part.qml"_s, "import QtQuick\nItem { property int value }");
        folder.write(u"values.mjs"_s, "export const value = 1;");
        OwnQml own(file, {}, {});
        QVERIFY(own.load());
        QCOMPARE(value(own), 1);

        folder.write(u"values.mjs"_s, "export const value = 20;");
        QTRY_COMPARE(value(own), 20);
        folder.write(u"Part.qml"_s, "import QtQuick\nItem { property int value; x: nothing }");
        QTRY_COMPARE(own.errors().size(), 1);
        QVERIFY(own.errors().constFirst().contains(u"Part.qml:2:"_s));
        folder.write(u"Own.qml"_s, "import QtQuick\nNew { value: 300 }");
        QTRY_VERIFY(!own.item());
        folder.write(u"New.qml"_s, "import QtQuick\nItem { property int value }");
        QTRY_VERIFY(own.item());
        QCOMPARE(value(own), 300);
        QCOMPARE(own.errors(), QStringList());
    }
};

QTEST_MAIN(TestOwnQml)
#include "tst_ownqml.moc"
