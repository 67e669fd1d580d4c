#include "DataTable.h"
#include "Describe.h"
#include "PluginHarness.h"
#include "StationScript.h"

#include "PluginBase.h"
#include "TimeShiftBufferModel.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

/// Requests that are split by station, and the one signal that gathers what became of them.
class TestBatches : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void groupsByStation_data();
    void groupsByStation();
    void gathersFailures_data();
    void gathersFailures();
    void namesCamerasByTheirKey();
    void readsDeletions_data();
    void readsDeletions();
    void showsAddedBookmarks();
    void ignoresForeignContexts();
};

namespace {

/// Elements of a batch, fit for adding and for deleting: "3@B 2@A".
QVariantList targets(const QString &text)
{
    QVariantList list;
    const QStringList words = text.split(u' ');
    for (const QString &word : words) {
        const QString id = word.section(u'@', 0, 0);
        list.append(QVariantMap{{u"CameraID"_s, id},
                                {u"BookmarkID"_s, id},
                                {u"LocationID"_s, u"l"_s},
                                {u"relayPath"_s, word.section(u'@', 1)}});
    }
    return list;
}

bool add(PluginHarness &harness, const QVariantList &list)
{
    return harness.call<bool>("addBookmarks", list, qint64(1), qint64(2), u"d"_s, u"me"_s, u"g"_s);
}

bool remove(PluginHarness &harness, const QVariantList &list)
{
    harness.grantPermission();
    return harness.call<bool>("deleteBookmarks", list);
}

QVariantMap record(const QString &cameraID, const QString &locationID = u"l"_s)
{
    return serverRecord(u"b"_s + cameraID, cameraID, locationID, 1, 2);
}

QString shown(const QAbstractItemModel *model)
{
    return rowsOf(model, TimeShiftBufferModel::ItemIdRole).join(u' ');
}

/// The trace with "A" for a command to A, "done" for the method's signal and without "Camera ".
QString shortened(QString trace, bool adds)
{
    const QString method = adds ? u"addBookmarks"_s : u"deleteBookmarks"_s;
    trace.remove(adds ? u"AddBookmarks@"_s : u"DeleteBookmarks@"_s).remove(u"Camera "_s);
    trace.replace(method + u"Responsed"_s, u"done"_s);
    return trace.replace(u"src/Tessaline_Req.cpp: Tessaline::"_s + method +
                             u", send command failed"_s,
                         u"refused"_s);
}

} // namespace

void TestBatches::groupsByStation_data()
{
    QTest::addColumn<bool>("adds");
    QTest::addColumn<QVariantList>("list");
    QTest::addColumn<QString>("groups"); // what differs between the entries

    const auto row = [](const char *name, bool adds, const QVariantList &list, const char *groups) {
        QTest::newRow(name) << adds << list << QString::fromLatin1(groups).replace(u'\'', u'"');
    };
    row("by station in ascending order, within it as given", true, targets(u"3@B 2@A 1@A"_s),
        "A ['2' 'l', '1' 'l'] 1; B ['3' 'l'] 1");
    row("capitals and the empty station first", true, targets(u"1@a 1@Z 1@"_s),
        " ['1' 'l'] 1; Z ['1' 'l'] 1; a ['1' 'l'] 1");
    QVariantMap other{{u"CameraID"_s, u"1"_s}, {u"relayPath"_s, u"A"_s}, {u"Creator"_s, u"c"_s}};
    row("duplicates but once, unless the location differs", true,
        targets(u"1@A 2@A 1@A"_s) << other << other, "A ['1' 'l', '2' 'l', '1' null] 1");
    row("missing keys and what is no map, once, to the connected server", true,
        {QVariantMap(), 5, targets(u"1@A"_s), QVariantMap{{u"cameraID"_s, 1}}}, " [null null] 1");
    row("values of other types", true,
        {QVariantMap{{u"CameraID"_s, 5}, {u"LocationID"_s, QByteArray("l")}, {u"relayPath"_s, 7}}},
        "7 ['5' 'l'] 1");
    row("deletions, likewise", false, targets(u"3@B 2@A 1@A 2@A"_s), "A ['2', '1'] 1; B ['3'] 1");
    row("deletions with missing keys and of what is no map", false,
        {5, QVariantMap{{u"bookmarkID"_s, u"1"_s}}, QVariantMap{{u"BookmarkID"_s, 9}}},
        " [null, '9'] 1");
}

void TestBatches::groupsByStation()
{
    QFETCH(const bool, adds);
    QFETCH(const QVariantList, list);
    PluginHarness harness;
    QVERIFY(adds ? add(harness, list) : remove(harness, list));
    QString text = shortened(harness.describeSent().join(u"; "), adds);
    text.replace(QRegularExpression(uR"(\{BookmarkID: QString (\S+)\})"_s), u"\\1"_s);
    text.replace(QRegularExpression(uR"(\{CameraID: QString (\S+), Creator: QString "me", )"
                                    uR"(Description: QString "d", EndTimestamp: qlonglong 2, )"
                                    uR"(Group: QString "g", LocationID: QString (\S+), )"
                                    uR"(StartTimestamp: qlonglong 1\})"_s),
                 u"\\1 \\2"_s);
    QTEST(text, "groups");
    QCOMPARE(harness.emitted->take() + harness.log.take(), QStringList());
}

void TestBatches::gathersFailures_data()
{
    // Each batch has two entries for A, then one for B and C. Rows go on in indented lines.
    addTable({"script", "trace"}, uR"(
inside, nothing      | A inside, B inside, C inside, send | A B C done() true
inside, one          | A inside, B fails inside, C inside, send | A B C done(B1) true
inside, the first    | A fails inside, send, 1C, 1B | A B C true done(A2,A1)
inside, the last     | C fails inside, send, 1A, 1B | A B C true done(C1)
refused, the first   | A refuses, B fails inside, C inside, send | !A refused B C done(B1) true
refused, the second  | B refuses, send, 1B, 1A, 1B, 1C | A !B refused C true done()
refused, the last    | A fails inside, B inside, C refuses, send | A B !C refused done(A2,A1) true
refused, the last two | A fails inside, B refuses, C refuses, send
  | A !B refused !C refused done(A2,A1) true
refused, all         | A refuses, B refuses, C refuses, send
  | !A refused !B refused !C refused false
one of each          | A fails inside, C refuses, send, 1B | A B !C refused true done(A2,A1)
no station asked     | send, 1D fails, 1a fails, 1 fails, 1A, 1B, 1C | A B C true done()
answered when over   | send, 1A, 1B, 1C, send, 1A fails, 1B fails, 1C fails, 2A, 2B, 2C
  | A B C true done() A B C true done()
two at once          | send, send, 2A fails, 2B, 1A, 1B fails, 2C, 1C
  | A B C true A B C true done(A2,A1) done(B1)
)"_s.replace(u"\n  "_s, u" "_s));
}

void TestBatches::gathersFailures()
{
    QFETCH(const QString, script);
    for (const bool adds : {true, false}) {
        PluginHarness harness;
        harness.topology.setCamera(u"A/2"_s, u"Camera A2"_s);
        StationScript stations;
        stations.send = [&](PluginHarness &h) {
            const QVariantList list = targets(u"1@C 2@A 1@B 1@A"_s);
            return adds ? add(h, list) : remove(h, list);
        };
        stations.result = [&](const QString &station, const QStringList &) -> QVariant {
            if (adds) // what a failed answer carries is not looked at
                return QVariantList{record(u"9"_s)};
            return station == u"A" ? QStringList{u"A2"_s, u"A1"_s} : QStringList{station + u'1'};
        };
        QTEST(shortened(stations.play(harness, script), adds), "trace");
    }
}

void TestBatches::namesCamerasByTheirKey()
{
    PluginHarness harness;
    harness.topology.setCamera(u"%2/%1/%1"_s, u"Odd"_s);
    harness.topology.setCamera(u"7"_s, u"Connected"_s);
    const auto failAll = [&] {
        harness.framework.clearSent();
        add(harness, targets(u"7@ %1@%2/%1 unknown@%2/%1"_s));
        const QList<standin::SentCommand> sent = harness.sent();
        for (const standin::SentCommand &command : sent)
            harness.answer(command, {}, u"-1"_s);
        return harness.emitted->take().join(u' ');
    };
    QCOMPARE(failAll(), u"addBookmarksResponsed(Connected,Odd,)"_s);
    QCOMPARE(harness.log.take(), QStringList());

    harness.framework.removePlugin(standin::Topology::pluginID());
    QCOMPARE(failAll(), u"addBookmarksResponsed(,,)"_s);
    const QString line =
        u"src/Tessaline_Local.cpp: Tessaline::GetAllCamNames, get TopologyPlugin failed"_s;
    QCOMPARE(harness.log.take(), QStringList({line, line}));
}

void TestBatches::readsDeletions_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QString>("left"); // of b1 b2 b3, in each view cell
    const auto row = [](const char *name, const QVariant &result, const char *signal,
                        const char *left = nullptr) {
        QTest::newRow(name) << (left ? u"0"_s : u"-1"_s) << result << QString::fromLatin1(signal)
                            << QString::fromLatin1(left ? left : "b1 b2 b3");
    };
    row("failed", QStringList{u"b2"_s, u"b1"_s}, "done(b2,b1)");
    row("failed, a list of variants", QVariantList{u"b1"_s, 5}, "done(b1,5)");
    row("failed, one text", u"b1"_s, "done(b1)");
    row("failed, nothing", {}, "done()");
    row("failed, a map", QVariantMap{{u"x"_s, 1}}, "done()");
    row("done", QStringList{u"b1"_s, u"b2"_s, u"b9"_s}, "done()", "b3");
    row("done, nothing", {}, "done()", "b1 b2 b3");
}

void TestBatches::readsDeletions()
{
    QFETCH(const QString, code);
    QFETCH(const QVariant, result);
    PluginHarness harness;
    const auto *const one = harness.openViewCell(u"1"_s, u"l"_s, u"A"_s);
    const auto *const two = harness.openViewCell(u"3"_s, u"l"_s, u"B"_s);
    harness.call("setTimelineFocusInfo", u"l"_s, u"C"_s, u"2"_s); // has no model
    for (const QString &station : {u"A"_s, u"B"_s}) {
        for (const QString &id : {u"1"_s, u"2"_s, u"3"_s})
            harness.answer(u"AddBookmark"_s, record(id), station);
    }
    harness.emitted->take();
    remove(harness, targets(u"b1@A"_s));
    harness.answer(harness.onlySent(), result, code);
    QTEST(shortened(harness.emitted->take().join(u' '), false), "signal");
    QTEST(shown(one), "left");
    QTEST(shown(two), "left");
}

void TestBatches::showsAddedBookmarks()
{
    PluginHarness harness;
    harness.topology.setCamera(u"A/2"_s, u"Camera A2"_s);
    harness.topology.setCamera(u"A/3"_s, u"Camera A3"_s);
    const auto *const cell = harness.openViewCell(u"2"_s, u"l"_s, u"A"_s);
    const auto *const elsewhere = harness.openViewCell(u"3"_s, u"l"_s, u"B"_s);
    harness.call("setTimelineFocusInfo", u"l"_s, u"A"_s, u"1"_s); // has no model

    add(harness, targets(u"1@A"_s));
    QVariantMap refused = record(u"2"_s);
    refused.remove(u"BookmarkID"_s);
    QVariantMap invalidID = record(u"4"_s, u"nowhere"_s);
    invalidID[u"BookmarkID"_s] = QVariant(); // the key decides, not the value
    harness.answer(harness.onlySent(),
                   QVariantList{record(u"1"_s), record(u"unseen"_s, u"another location"_s), refused,
                                refused, u"no map"_s, record(u"3"_s), invalidID});
    QCOMPARE(shortened(harness.emitted->take().join(u' '), true), u"done(A1,A2,A2,,A3)"_s);
    QCOMPARE(shown(cell), u"b1 b3"_s);
    QCOMPARE(shown(elsewhere), QString());
    QCOMPARE(harness.log.take(), QStringList());
}

void TestBatches::ignoresForeignContexts()
{
    PluginHarness harness;
    const auto *const cell = harness.openViewCell(u"1"_s, u"l"_s, u"A"_s);
    harness.answer(u"AddBookmark"_s, record(u"old"_s), u"A"_s);
    harness.emitted->take();
    add(harness, targets(u"1@A"_s));
    const standin::SentCommand addition = harness.onlySent();
    remove(harness, targets(u"b@A"_s));
    const standin::SentCommand deletion = harness.onlySent();

    int dummy = 0;
    for (const QString &code : {u"0"_s, u"-1"_s}) {
        const auto answer = [&](const QString &command, const QVariant &result, void *other) {
            for (void *context : {static_cast<void *>(nullptr), static_cast<void *>(&dummy), other})
                harness.answer(command, result, u"A"_s, context, code);
        };
        answer(u"AddBookmarks"_s, QVariantList{record(u"new"_s)}, deletion.context);
        answer(u"DeleteBookmarks"_s, QStringList{u"bold"_s}, addition.context);
    }
    QCOMPARE(harness.emitted->take() + harness.log.take(), QStringList());
    QCOMPARE(shown(cell), u"bold"_s);
    harness.answer(addition, {});
    harness.answer(deletion, {});
    QCOMPARE(harness.emitted->take(),
             QStringList({u"addBookmarksResponsed()"_s, u"deleteBookmarksResponsed()"_s}));
}

QTEST_GUILESS_MAIN(TestBatches)
#include "tst_batches.moc"
