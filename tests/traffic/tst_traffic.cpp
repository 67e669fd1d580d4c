#include "DataTable.h"
#include "DemoStations.h"
#include "Describe.h"
#include "HostShell.h"
#include "PluginBase.h"
#include "RecordedValue.h"
#include "Replay.h"
#include "StationNetwork.h"
#include "StationThread.h"
#include "WorkbenchContext.h"

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QRegularExpression>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimeZone>
#include <QtQml/QQmlEngine>
#include <QtTest/QTest>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;
using namespace stations;
using namespace workbench;

/// Tests that a replay of a recording finds every change of behaviour and nothing else.
class TestTraffic : public QObject
{
    Q_OBJECT

    QTemporaryDir m_folder;
    QStringList m_lines; ///< of a recorded session

    QString write(const QStringList &lines)
    {
        QFile file(m_folder.filePath(u"changed.jsonl"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(lines.join(u'\n').toUtf8()) < 0)
            qFatal("the recording can't be written");
        return file.fileName();
    }
    static Comparison replayed(const QString &file)
    {
        PluginHost host;
        Comparison unloaded;
        PluginBase *const plugin =
            host.load(QStringLiteral(TESSALINE_PLUGIN_PATH), &unloaded.error);
        return plugin ? replay::run(file, *plugin) : unloaded;
    }
    /// Returns the index of the first line from @p from on that contains all texts.
    qsizetype lineWith(const QStringList &texts, qsizetype from = 0) const
    {
        for (qsizetype i = from; i < m_lines.size(); ++i) {
            if (std::all_of(texts.cbegin(), texts.cend(),
                            [&](const QString &text) { return m_lines.at(i).contains(text); }))
                return i;
        }
        qFatal("no line with %s", qPrintable(texts.join(u' ')));
    }

    void saveFilteredEntries(WorkbenchContext &workbench)
    {
        SearchFilter filter;
        filter.setSource(workbench.traffic());
        filter.setText(u"kind:signal"_s);
        QTRY_COMPARE(workbench.traffic()->count(), int(m_lines.size()) - 1);
        const QString path = m_folder.filePath(u"shown.jsonl"_s);
        QCOMPARE(workbench.recorder()->saveShown(path, &filter), QString());
        QString error;
        const auto recording = Recording::read(path, &error);
        QVERIFY2(recording, qPrintable(error));
        QVERIFY(!recording->header.complete);
        QCOMPARE(recording->lines.size(), m_lines.filter(u"\"kind\":\"signal\""_s).size());
        for (const Recording::Line &line : recording->lines)
            QCOMPARE(int(line.entry.kind), int(TrafficEntry::Kind::Signal));
    }

private Q_SLOTS:
    void valuesKeepTheirTypes_data()
    {
        QTest::addColumn<QVariant>("value");
        const QDateTime zoned(QDate(2026, 3, 29), QTime(1, 30, 0, 5), QTimeZone("Asia/Tokyo"));
        const QString broken = QChar(0xd800) + u"a"_s;
        QTest::newRow("nothing") << QVariant(
            QVariantList{QVariant(), QVariant::fromValue(nullptr)});
        QTest::newRow("texts") << QVariant(QVariantList{QString(), u""_s, u"\u00e4\0\n"_s, broken});
        QTest::newRow("integers") << QVariant(QVariantList{
            5, 5U, 5LL, 5ULL, std::numeric_limits<qint64>::min(),
            std::numeric_limits<quint64>::max(), (1LL << 53) + 1, QVariant::fromValue(uchar(200))});
        QTest::newRow("doubles") << QVariant(
            QVariantList{5.0, 0.1, 1e300, -0.0, 1774743000000.0, std::nan(""), -HUGE_VAL});
        QTest::newRow("bytes") << QVariant(
            QVariantList{QByteArray(), QByteArray(""), QByteArray("\0\xff", 2)});
        QTest::newRow("keys") << QVariant(QVariantMap{{u"$type"_s, u"int"_s}, {u"b"_s, 2}});
        QTest::newRow("broken key") << QVariant(QVariantMap{{broken, QVariantMap()}});
        QTest::newRow("others") << QVariant(
            QVariantList{QStringList{u"a"_s}, QVariantHash{{u"a"_s, true}}, QVariantList(), zoned});
    }
    void valuesKeepTheirTypes()
    {
        QFETCH(const QVariant, value);
        const QByteArray text = QJsonDocument(QJsonArray{recordedvalue::toJson(value)}).toJson();
        const QJsonValue json = QJsonDocument::fromJson(text).array().at(0);
        QCOMPARE(describe(recordedvalue::fromJson(json).value()), describe(value));
    }

    void recordSession()
    {
        QString error;
        const std::unique_ptr<StationNetwork> network =
            StationNetwork::open(m_folder.path(), demoStations(), &error);
        QVERIFY2(network, qPrintable(error));
        StationThread notOpened(demoStations());
        HostShell shell(notOpened);
        QVERIFY2(shell.load(QStringLiteral(TESSALINE_PLUGIN_PATH), &error), qPrintable(error));
        // Stations without a thread can answer inside the send call.
        shell.framework().setAsyncServer(nullptr);
        shell.framework().setServer(&*network);
        WorkbenchContext &workbench = shell.workbench();
        QQmlEngine engine;
        shell.initialise(engine);
        const auto inEngine = [&](QObject *object) {
            QJSEngine::setObjectOwnership(object, QJSEngine::CppOwnership);
            return engine.newQObject(object);
        };
        engine.globalObject().setProperty(u"bookmarks"_s, inEngine(&shell.recordedPlugin()));
        workbench.connectToServer();
        // One station answers inside the send call, another one fails.
        auto &rules = shell.framework().rules();
        rules.setForStation(u"relay-1"_s, standin::Delivery::immediate());
        rules.setForStation(u"relay-3"_s, standin::Delivery::failed(u"4"_s));
        const QStringList steps{
            u"bookmarks.queryAllBookmarksResponsed.connect(() => page = bookmarks"
            ".getFilteredBookmarkList({ startTimestamp: 0, endTimestamp: 9e12, text: ' '.trim() }))"_s,
            u"bookmarks.addBookmark('camera-11', 'location-1', 'relay-1', 1e12, 1e12 + 5, 'van',"
            "'me', '')"_s,
            u"bookmarks.addBookmarks([1, 2, 3].map(n => ({ CameraID: `camera-${n}2`,"
            "LocationID: `location-${n}`, relayPath: `relay-${n}` })),"
            "'2026/03/01 08:00:00', '2026/03/01 08:05:00', 'Alarm', 'me', 'night')"_s,
            u"bookmarks.queryAllBookmarks()"_s,
            u"bookmarks.updateBookmark(page.bookmarkGroupList[0].bookmarkList[0].bookmarkID, '',"
            "' '.trim())"_s,
            u"bookmarks.setTimelineFocusInfo('location-2', 'relay-2', 'cell')"_s,
            u"bookmarks.getBookmarkModelForTimeline('cell')"_s,
            u"bookmarks.setTimelineBoundary(0, 2e12, 'cell')"_s,
            u"try { bookmarks.deleteBookmark() } catch (e) {}"_s,
            u"bookmarks.removeAllBookmarks('relay-2')"_s,
        };
        for (const QString &step : steps) {
            const QJSValue result = engine.evaluate(step);
            QVERIFY2(!result.isError(), qPrintable(step + result.toString()));
            QTRY_COMPARE(workbench.outstanding(), 0);
        }
        shell.framework().sendEvent(u"AddBookmark"_s, QVariantMap(), u"relay-2"_s);

        const QString path = m_folder.filePath(u"session.jsonl"_s);
        QCOMPARE(workbench.recorder()->save(path), QString());
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        saveFilteredEntries(workbench);
    }

    void replayWithoutChangesFindsNoDifference()
    {
        const Comparison result = replayed(m_folder.filePath(u"session.jsonl"_s));
        QCOMPARE(result.report(),
                 QStringList{u"%1 inputs given, %2 outputs compared: 0 differences, 0 bad lines."_s
                                 .arg(result.inputs)
                                 .arg(result.outputs)});
        QCOMPARE(result.exitCode(), 0);
        QCOMPARE(result.inputs + result.outputs, int(m_lines.size()) - 1);
    }

    void typesOfNumbersInResultsAreIgnored()
    {
        QStringList lines = m_lines;
        const QString number = u"\"totalBookmarkNumber\":"_s;
        lines[lineWith({number})].replace(number + u'2',
                                          number + u"{\"$type\":\"int\",\"value\":2}"_s);
        QVERIFY(lines != m_lines);
        QCOMPARE(replayed(write(lines)).exitCode(), 0);
    }

    void replayFindsDifferences_data()
    {
        // With single quotes, because moc can't parse double quotes in raw strings.
        addTable({"line", "before", "after", "expected", "found"}, QString(uR"(
payload   | send',AddBookmark'    | van          | car            | payload.Description is 'car'       | ''van''
type      | send',AddBookmark'    | 1000000000005 | {'$type':'int','value':7} | payload.EndTimestamp is {'$type':'int','value':7} | 1000000000005
arguments | addBookmarkResponsed  | [true]       | [false]        | arguments[0] is false              | true
result    | call',queryAll        | result':true | result':false  | result is false                    | true
nested    | getFiltered           | Number':2    | Number':9      | result.totalBookmarkNumber is 9    | 2
station   | send',RemoveAll       | relay-2      | relay-4        | send RemoveAllBookmarks to relay-4 | nothing
shared    | send',AddBookmarks,y-2 | context':1  | context':9     | a context of its own               | that of an earlier command
context   | send',AddBookmarks,y-1 | context':1  | context':0     | no context                         | a context
surplus   | send',QuerySett       | send         | sent           | nothing else after this line       | send QuerySettingPermission
method    | call',addBookmarks    | addBookmarks | noSuchMethod   | result is true                     | ''there is no such method''
unsent    | answer',RemoveAll     | request':    | request':9     | answer RemoveAllBookmarks from relay-2 | nothing)"_s)
                                                                       .replace(u'\'', u'"'));
    }
    void replayFindsDifferences()
    {
        QFETCH(const QString, line);
        QFETCH(const QString, before);
        QFETCH(const QString, after);
        QFETCH(const QString, expected);
        QFETCH(const QString, found);

        const qsizetype index = lineWith(line.split(u',') + QStringList(before));
        QStringList lines = m_lines;
        lines[index].replace(lines[index].indexOf(before), before.size(), after);
        const Comparison result = replayed(write(lines));
        QCOMPARE(result.exitCode(), 1);
        // An additional entry is reported with the line before it.
        const qsizetype reported = result.badLines.isEmpty() ? index : index - 1;
        const QString report =
            u":%1: expected %2, found %3"_s.arg(reported + 1).arg(expected, found);
        QVERIFY2(result.report().join(u'\n').contains(report),
                 qPrintable(result.report().join(u'\n')));
    }

    void badLinesAreReported()
    {
        const QStringList lines =
            m_lines.mid(0, 3) +
            QStringList{u"{\"kind\":"_s,
                        u"7"_s,
                        u""_s,
                        u"{\"kind\":\"dream\"}"_s,
                        u"{\"kind\":\"signal\",\"value\":{\"$type\":\"x\"}}"_s,
                        u"{\"kind\":\"connection\",\"depth\":-1}"_s,
                        u"{\"kind\":\"connection\",\"depth\":501}"_s} +
            m_lines.mid(3);
        const Comparison result = replayed(write(lines));
        QList<int> numbers;
        for (const Recording::BadLine &bad : result.badLines)
            numbers.append(bad.number);
        QCOMPARE(numbers, (QList<int>{4, 5, 7, 8, 9, 10}));
        QVERIFY(result.differences.isEmpty());
        QCOMPARE(result.exitCode(), 1);
    }

    void deeplyNestedCallsAreReplayedUpToALimit()
    {
        // Each call sends a command, inside which the next call is made.
        const qsizetype call = lineWith({u"call"_s, u"addBookmark\""_s});
        QStringList lines{m_lines.constFirst()};
        for (int depth = 0; depth < 20'000; ++depth) {
            lines.append(m_lines.at(call + depth % 2));
            lines.last().replace(QRegularExpression(u"\"depth\":\\d+"_s),
                                 u"\"depth\":%1"_s.arg(depth));
        }
        const Comparison result = replayed(write(lines));
        QCOMPARE(result.inputs + result.outputs, Recording::MaxDepth + 1);
        QCOMPARE(result.badLines.size(), 20'000 - (Recording::MaxDepth + 1));
    }

    void otherFilesAreRejected()
    {
        const QString longLine = QString(17 * 1024 * 1024, u' ') + m_lines.constFirst();
        for (const QString &header : {QString(), u"{}"_s, longLine}) {
            const QString file = header.isEmpty() ? m_folder.filePath(u"none"_s) : write({header});
            const Comparison result = replayed(file);
            QVERIFY2(result.error.startsWith(file), qPrintable(result.error));
            QCOMPARE(result.exitCode(), 2);
        }
    }
};

QTEST_MAIN(TestTraffic)
#include "tst_traffic.moc"
