#include "DataTable.h"
#include "FaultsModel.h"
#include "PayloadTree.h"
#include "Protocol.h"
#include "SearchFilter.h"
#include "StationStates.h"
#include "TrafficModel.h"
#include "framework/Framework.h"

#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;
using namespace stations;
using namespace workbench;

namespace {

constexpr int Never = 3'600'000;

QStringList words(const QString &text)
{
    return text.split(u' ', Qt::SkipEmptyParts);
}

/// Shows all entries as rows at once.
void publish(TrafficModel &model)
{
    model.setPaused(true);
    model.setPaused(false);
}

/// Creates traffic from a word with the number of the command: "query1" sends a query of all
/// bookmarks, "reject1" sends one that is rejected, "send1" another command; "ok1" and "fail1"
/// answer.
standin::Traffic trafficOf(const QString &word)
{
    using Kind = standin::Traffic::Kind;
    const quint64 number = word.last(1).toULongLong();
    const QString verb = word.chopped(1);
    const bool isAnswer = verb == u"ok" || verb == u"fail";
    standin::Traffic traffic;
    traffic.kind = isAnswer ? Kind::Answered : Kind::Sent;
    traffic.sequence = number;
    traffic.request = number;
    traffic.name =
        verb == u"query" || verb == u"reject" ? protocol::command::QueryAllBookmarks : u"Other"_s;
    traffic.resultCode = verb == u"ok" ? u"0"_s : u"4"_s;
    traffic.relayPath = u"relay-1"_s;
    traffic.accepted = verb != u"reject";
    return traffic;
}

QString inWords(const standin::Delivery &delivery)
{
    static const QStringList whens =
        words(u"queued delayed immediate held reversed never rejected"_s);
    return whens.at(int(delivery.when)) +
           (delivery.delayMs ? u" %1"_s.arg(delivery.delayMs) : QString()) +
           (delivery.copies > 1 ? u" x%1"_s.arg(delivery.copies) : QString()) +
           (delivery.failureCode ? u' ' + *delivery.failureCode : QString()) +
           (delivery.replacedResult
                ? u' ' + QString::fromLatin1(delivery.replacedResult->typeName())
                : QString());
}

/// Formats a tree as "key = value (type)", with children in braces.
QString shown(const QAbstractItemModel &tree, const QModelIndex &parent = {})
{
    QStringList parts;
    for (int row = 0; row < tree.rowCount(parent); ++row) {
        const auto text = [&](int column) {
            return tree.index(row, column, parent).data().toString();
        };
        const QModelIndex part = tree.index(row, 0, parent);
        parts.append(u"%1 = %2 (%3)"_s.arg(text(0), text(1), text(2)));
        if (tree.hasChildren(part))
            parts.last() += u" {"_s + shown(tree, part) + u'}';
    }
    return parts.join(u"; "_s);
}

} // namespace

/// Tests the models of the integrators' drawer: states, traffic, payload, faults.
class TestDrawerModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void trafficDeterminesStates_data()
    {
        // "late" makes every answer slow, "soon" makes no answer slow.
        addTable({"script", "state", "missing"}, uR"(
doubled         | query1 ok1 late ok1                  | connected    |
failed query    | query1 fail1                         | failing      | A
works again     | query1 fail1 query2 ok2              | connected    |
rejected        | reject1                              | failing      | A
overdue         | query1 late                          | slow         | A
slow answer     | query1 late ok1                      | slow         |
quick again     | query1 late ok1 soon send2 ok2       | connected    |
lost            | query1 send2 late ok2 soon send3 ok3 | connected    | A
late after all  | query1 send2 late ok2 soon ok1       | slow         |
not yet lost    | send1 send2 ok2                      | connected    |
of an old query | query1 query2 ok1                    | connected    | A
old one fails   | query1 query2 ok2 fail1              | failing      |
new one fails   | query1 query2 fail2 ok1              | connected    | A
disconnected    | query1 fail1 gone                    | disconnected | A
connected       | gone back                            | connected    |)"_s);
    }
    void trafficDeterminesStates()
    {
        QFETCH(const QString, script);
        StationStates states;
        states.addStation(u"relay-1"_s, u"A"_s);
        states.addStation(u"relay-2"_s, u"B"_s);
        states.setSlowAfter(Never);
        const QSignalSpy changed(&states, &StationStates::changed);
        for (const QString &word : words(script)) {
            if (word == u"late" || word == u"soon")
                states.setSlowAfter(word == u"late" ? 0 : Never);
            else if (word == u"gone" || word == u"back")
                states.setDisconnected(u"relay-1"_s, word == u"gone");
            else
                states.noteTraffic(trafficOf(word));
        }
        states.setDisconnected(u"relay-2"_s, false);
        QCOMPARE(changed.count(), 0);
        QTest::qWait(1);

        QTEST(states.states().value(u"relay-1"_s).toString(), "state");
        QTEST(states.failedStations().join(u' '), "missing");
    }
    void stationBecomesSlowWithoutTraffic()
    {
        StationStates states;
        states.addStation(u"relay-1"_s, u"A"_s);
        states.setSlowAfter(20);
        states.noteTraffic(trafficOf(u"query1"_s));
        QTRY_COMPARE(states.states().value(u"relay-1"_s), u"slow"_s);
    }

    /// The time of this program or of another station does not make a station slow.
    void slownessExcludesTimeOfOthers()
    {
        constexpr int SlowAfter = 200;
        StationStates states;
        states.addStation(u"relay-1"_s, u"A"_s);
        states.setSlowAfter(SlowAfter);
        for (int round = 0; round < 2; ++round) {
            states.noteTraffic(trafficOf(u"query2"_s));
            for (const char *const before : {"query1", "ok1"}) {
                states.noteTraffic(trafficOf(QLatin1String(before)));
                QThread::msleep(SlowAfter);
                QCoreApplication::processEvents();
                QCOMPARE(states.states().value(u"relay-1"_s), u"connected"_s);
            }
            standin::Traffic answer = trafficOf(u"ok2"_s);
            answer.tookMs = round * SlowAfter;
            states.noteTraffic(answer);
            QTRY_COMPARE(states.states().value(u"relay-1"_s), round ? u"slow"_s : u"connected"_s);
        }
    }

    void timeRestartsAfterAnEarlierCommand_data()
    {
        addTable({"first", "state"}, uR"(
same station     | relay-1 | connected
other station    | relay-2 | connected
not answered     |         | slow)"_s);
    }
    void timeRestartsAfterAnEarlierCommand()
    {
        QFETCH(const QString, first);
        StationStates states;
        states.addStation(u"relay-1"_s, u"A"_s);
        states.addStation(u"relay-2"_s, u"B"_s);
        states.setSlowAfter(40);
        standin::Traffic traffic = trafficOf(u"query1"_s);
        traffic.relayPath = first;
        states.noteTraffic(traffic);
        states.noteTraffic(trafficOf(u"query2"_s));
        QTRY_COMPARE(states.states().value(u"relay-1"_s), u"slow"_s);
        states.setSlowAfter(Never); // as if the time since then were short
        traffic.kind = standin::Traffic::Kind::Answered;
        traffic.resultCode = u"0"_s;
        states.noteTraffic(traffic);
        states.setSlowAfter(40);
        states.setDisconnected(u"relay-1"_s, false);
        QCoreApplication::processEvents();
        QTEST(states.states().value(u"relay-1"_s).toString(), "state");
    }

    /// Otherwise busy stations would hide one that has stopped answering.
    void laterAnswersDoNotHideAnOverdueOne()
    {
        StationStates states;
        states.addStation(u"relay-1"_s, u"A"_s);
        states.addStation(u"relay-2"_s, u"B"_s);
        states.setSlowAfter(300);
        states.noteTraffic(trafficOf(u"query1"_s));
        const auto isSlow = [&] {
            for (const char *const word : {"send2", "ok2"}) {
                standin::Traffic traffic = trafficOf(QLatin1String(word));
                traffic.relayPath = u"relay-2"_s;
                states.noteTraffic(traffic);
            }
            return states.states().value(u"relay-1"_s) == u"slow"_s;
        };
        QTRY_VERIFY(isSlow());
        QCOMPARE(states.states().value(u"relay-2"_s), u"connected"_s);
    }

    void oldestEntriesAreDroppedAtTheLimits_data()
    {
        // An entry counts two values; a call with a result of two elements counts four.
        addTable({"entryLimit", "valueLimit", "appended", "dropped"}, uR"(
a twentieth more    | 100  | 1000  | 101  | 6
values for long     | 1000 | 400   | 2000 | 1900)"_s);
    }
    void oldestEntriesAreDroppedAtTheLimits()
    {
        const auto number = [](const char *column) {
            return static_cast<QString *>(QTest::qData(column, QMetaType::QString))->toInt();
        };
        const int appended = number("appended");
        const int dropped = number("dropped");
        TrafficModel model;
        SearchFilter filter;
        filter.setSource(&model);
        filter.setText(u"element"_s);
        const QAbstractItemModelTester modelTester(&model);
        const QAbstractItemModelTester filterTester(&filter);
        model.setLimits(number("entryLimit"), number("valueLimit"));
        for (int i = 0; i < appended; ++i) {
            model.setResult(model.append({}), QVariantList{1, u"element"_s});
            publish(model);
        }
        model.setResult(0, 7); // of a dropped entry
        QCOMPARE(model.count(), appended - dropped);
        QCOMPARE(filter.count(), model.count());
        if (model.count() > 0)
            QCOMPARE(model.index(0).data(TrafficModel::SequenceRole).toInt(), dropped + 1);
    }
    /// The row of a payload that is too large shows a note.
    void payloadAboveTheLimitIsOmitted()
    {
        const QVariantList large{1, 2, 3, 4, 5};
        TrafficEntry answer;
        answer.value = large;
        TrafficModel model;
        model.setLimits(10, 6);
        model.append({});
        QVERIFY(model.isComplete());
        model.setResult(1, large);
        model.append(answer);
        publish(model);
        QCOMPARE(model.count(), 2);
        for (int row = 0; row < 2; ++row) {
            const QString note = model.index(row).data(TrafficModel::SummaryRole).toString();
            QVERIFY2(note.startsWith(u"(7 values"_s), qPrintable(note));
            QCOMPARE(model.payloadAt(row), note);
        }
        QVERIFY(!model.isComplete());
    }
    void searchFindsMatchingRows_data()
    {
        addTable({"text", "hidden", "found"}, uR"(
name             | BOOKMARK      |                    | 1 3 4
relay path       | relay-2       |                    | 3 4
code             | 27            |                    | 4
key              | descr         |                    | 3
text             | White VAN     |                    | 3
number in a list | 12345         |                    | 5
late result      | outcome       |                    | 1
kinds            |               | send answer signal | 1 2 5
nowhere          | white vans    |                    |
phrase           | "'white van'" |                    | 3
one of two words | white or done |                    | 3 6
all but one      | not bookmark  |                    | 2 5 6
first and        | done or kind:send name:add |       | 3 6
brackets         | (done or kind:send) and not name:add | | 6
quoted value     | text:'e van'  |                    | 3
station          | station:Relay-2 | send             | 4
code of answers  | code:27       |                    | 4
failed           | failed        |                    | 4
unanswered       | unanswered    |                    |
not too slow     | kind:answer not slower:10000 |     | 4
commands of it   | call:3        |                    | 3 4
operator as text | text:or       |                    |
spaces           | "  done  "    |                    | 6)"_s.replace(u'\'', u'"'));
    }
    void searchFindsMatchingRows()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, hidden);
        using Kind = TrafficEntry::Kind;
        const QVariantMap van{{u"Description"_s, u"A white van"_s}};
        const QVariantList list{QStringList{u"a"_s}, 1234567LL};
        const QString add = u"AddBookmark"_s;
        const QString relay = u"relay-2"_s;
        TrafficModel model;
        for (const TrafficEntry &entry : {
                 TrafficEntry{Kind::Call, 0, 0, u"addBookmark"_s, {}, 0, 0, {}, true, 0, {}, {}},
                 TrafficEntry{Kind::Connection, 0, 0, {}, {}, 0, 0, {}, true, 0, {}, {}},
                 TrafficEntry{Kind::Sent, 0, 0, add, relay, 9, 0, {}, true, 0, van, {}},
                 TrafficEntry{Kind::Answered, 0, 0, add, relay, 9, 0, u"27"_s, true, 0, {}, {}},
                 TrafficEntry{Kind::Event, 0, 0, u"Other"_s, {}, 0, 0, {}, true, 0, list, {}},
                 TrafficEntry{Kind::Signal, 0, 0, u"done"_s, {}, 0, 0, {}, true, 0, {}, {}},
             })
            model.append(entry);
        publish(model);

        SearchFilter filter;
        filter.setSource(&model);
        filter.setText(text);
        filter.setHiddenKinds(words(hidden));
        model.setResult(1, QVariantMap{{u"list"_s, QVariantList{u"outcome"_s}}});
        QStringList found;
        for (int row = 0; row < filter.count(); ++row)
            found.append(QString::number(filter.sourceRow(row) + 1));
        QTEST(found.join(u' '), "found");
    }

    void errorNamesThePositionInTheExpression_data()
    {
        addTable({"text", "error"}, uR"(
unknown field  | a or knd:send   | character 6: unknown condition 'knd:'
unknown kind   | kind:sned       | character 1: expected call, connection, send
no number      | slower:soon     | character 1: expected a whole number
no value       | not kind:       | character 5: expected call
open bracket   | a (b or c       | character 3: this bracket is not closed
closed bracket | a or b) c       | character 7: this bracket was not opened
open quotation | a 'b c          | character 3: this quotation mark is not closed
nothing        | a or            | character 5: expected a condition
nothing inside | ()              | character 2: expected a condition
two operators  | a and or b      | character 7: expected a condition
colon alone    | :a              | character 1: expected a condition)"_s.replace(u'\'', u'"'));
    }
    void errorNamesThePositionInTheExpression()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, error);
        TrafficModel model;
        model.append({});
        publish(model);
        SearchFilter filter;
        filter.setSource(&model);
        filter.setText(u"not kind:call"_s);
        QCOMPARE(filter.count(), 0);
        filter.setText(text);
        QVERIFY2(filter.error().startsWith(error), qPrintable(filter.error()));
        QCOMPARE(filter.count(), 0); // the rows before the error
        filter.setText(QString(1'000'000, u'('));
        QVERIFY(!filter.error().isEmpty());
        filter.setText(QString());
        QCOMPARE(filter.error(), QString());
        QCOMPARE(filter.count(), 1);
    }

    void expressionsAreCompleted()
    {
        TrafficModel model;
        TrafficEntry entry;
        entry.relayPath = u"relay-7"_s;
        model.append(entry);
        QCOMPARE(model.completions(u"a and (stat"_s), QStringList{u"a and (station:"_s});
        QCOMPARE(model.completions(u"not station:r"_s), QStringList{u"not station:relay-7"_s});
        QCOMPARE(model.completions(u"kind:s"_s), (QStringList{u"kind:send"_s, u"kind:signal"_s}));
        QCOMPARE(model.completions(u"a "_s), QStringList());
    }

    /// Created from QML, which would change the types of the values.
    void payloadTreeShowsTypes()
    {
        TrafficModel model;
        TrafficEntry entry;
        entry.kind = TrafficEntry::Kind::Answered;
        model.append(entry);
        entry.value =
            QVariantList{5,
                         5LL,
                         std::numeric_limits<quint64>::max(),
                         5.0,
                         QByteArray("x"),
                         QVariant(),
                         QVariantHash{{u"e"_s, QVariantMap()}, {u"k"_s, QStringList{u"s"_s}}}};
        model.append(entry);
        publish(model);

        QQmlEngine engine;
        engine.addImportPath(u"qrc:/tessaline"_s);
        QQmlComponent component(&engine);
        component.setData("import Integration\nPayloadTree { row: 1 }", QUrl());
        const std::unique_ptr<QObject> object(
            component.createWithInitialProperties({{u"traffic"_s, QVariant::fromValue(&model)}}));
        auto *const tree = qobject_cast<PayloadTree *>(object.get());
        QVERIFY2(tree, qPrintable(component.errorString()));
        const QAbstractItemModelTester tester(tree);
        QCOMPARE(shown(*tree), u"[0] = 5 (int); [1] = 5 (qlonglong); "
                               "[2] = 18446744073709551615 (qulonglong); [3] = 5 (double); "
                               "[4] = x (QByteArray); [5] = - (invalid); "
                               "[6] = 2 keys (QVariantHash) {e = {} (QVariantMap); "
                               "k = 1 elements (QStringList) {[0] = \"s\" (QString)}}"_s);

        const QSignalSpy shownAnew(tree, &PayloadTree::payloadChanged);
        model.setLimits(1, 1000);
        publish(model);
        tree->setRow(0); // the same entry after the first one was dropped
        QCOMPARE(shownAnew.count(), 0);
        tree->setRow(-1);
        QCOMPARE(tree->rowCount(), 0);
    }

    void faultOfOneCommandHasPriorityAndIsSaved()
    {
        standin::Framework framework;
        StationStates states;
        FaultsModel faults(framework, states);
        faults.addStation(u"A"_s, u"A"_s);
        const auto told = [&](const char *command) {
            return inWords(framework.rules().find(u"A"_s, QLatin1String(command)));
        };
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"faults.json"_s);
        faults.setData(faults.index(2), 30, FaultsModel::DelayRole);
        faults.setCommand(u"AddBookmark"_s);
        faults.setData(faults.index(2), u"27"_s, FaultsModel::CodeRole);
        QCOMPARE(faults.index(2).data(FaultsModel::DelayRole), 30);
        QCOMPARE(faults.save(path), QString());
        faults.setCommand({});
        faults.setData(faults.index(2), 0, FaultsModel::DelayRole);
        QCOMPARE(told("AddBookmark"), u"queued 27"_s);
        QCOMPARE(told("DeleteBookmark"), u"queued"_s);
        faults.reset();
        QCOMPARE(told("AddBookmark"), u"queued"_s);
        QCOMPARE(faults.load(path), QString());
        QCOMPARE(told("AddBookmark"), u"delayed 30 27"_s);
        QCOMPARE(told("DeleteBookmark"), u"delayed 30"_s);
    }

    void invalidFaultsFileChangesNothing_data()
    {
        addTable({"text", "error"}, uR"(
no array        | {}                             | expected a JSON array
no JSON         | [1,                            | expected a JSON array; character 3:
no object       | [{},1]                         | entry 2: expected an object
station's type  | [{'station':1}]                | entry 1: expected a text for 'station'
command's type  | [{'command':1}]                | entry 1: expected a text for 'command'
unknown station | [{'code':'4'},{'station':'B'}] | entry 2: there is no station 'B'
unknown command | [{'command':'Add'}]            | entry 1: expected one of the commands '', 'AddBookmark',
unknown setting | [{'speed':1}]                  | entry 1: unknown setting 'speed'
read-only role  | [{'name':'x'}]                 | entry 1: unknown setting 'name'
wrong type      | [{'delay':'1'}]                | entry 1: expected a whole number of milliseconds for 'delay'
wrong word      | [{'order':'none'}]             | entry 1: expected 'in order', 'last first',)"_s
                                        .replace(u'\'', u'"'));
    }
    void invalidFaultsFileChangesNothing()
    {
        QFETCH(const QString, text);
        QFETCH(const QString, error);
        standin::Framework framework;
        StationStates states;
        FaultsModel faults(framework, states);
        faults.addStation(u"A"_s, u"A"_s);
        faults.setData(faults.index(2), u"27"_s, FaultsModel::CodeRole);
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"faults.json"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text.toUtf8());
        file.close();
        const QString problem = faults.load(file.fileName());
        QVERIFY2(problem.startsWith(file.fileName() + u": "_s + error), qPrintable(problem));
        QVERIFY2(!problem.contains(u"no error"_s), qPrintable(problem));
        QCOMPARE(inWords(framework.rules().find(u"A"_s, u"AddBookmark"_s)), u"queued 27"_s);
    }

    void faultsSetDeliveries_data()
    {
        // Faults as "row role=value"; row 0 is all stations, 1 the connected server, 2 and 3 are A
        // and B.
        addTable({"settings", "a", "b", "state"}, uR"(
lost         | 3:order=lost                  | queued         | never     | connected
disconnected | 2:connected=                  | rejected       | queued    | disconnected
all, but one | 0:order=lost;3:order=in order | never          | queued    | connected
delay        | 2:delay=30                    | delayed 30     | queued    | connected
code         | 0:code=27                     | queued 27      | queued 27 | connected
text         | 2:payload=text                | queued QString | queued    | connected
several        | 2:doubled=1;2:order=last first;2:code=7 | reversed x2 7 | queued | connected)"_s);
    }
    void faultsSetDeliveries()
    {
        QFETCH(const QString, settings);
        standin::Framework framework;
        StationStates states;
        FaultsModel faults(framework, states);
        const QAbstractItemModelTester tester(&faults);
        for (const QString &name : {u"A"_s, u"B"_s}) {
            faults.addStation(name, name);
            states.addStation(name, name);
        }
        const QStringList list = settings.split(u';', Qt::SkipEmptyParts);
        for (const QString &setting : list) {
            const int role =
                faults.roleNames().key(setting.section(u':', 1).section(u'=', 0, 0).toLatin1());
            QVERIFY(faults.setData(faults.index(setting.first(1).toInt()), setting.section(u'=', 1),
                                   role));
        }

        const auto told = [&](const QString &station) {
            return inWords(framework.rules().find(station, u"Any"_s));
        };
        QTest::qWait(1);
        QTEST(told(u"A"_s), "a");
        QTEST(told(u"B"_s), "b");
        QTEST(states.states().value(u"A"_s).toString(), "state");
        faults.reset();
        QCOMPARE(told(u"A"_s) + told(u"B"_s), u"queuedqueued"_s);
        QTRY_COMPARE(states.states().value(u"A"_s), u"connected"_s);
    }
};

QTEST_MAIN(TestDrawerModels)
#include "tst_drawermodels.moc"
