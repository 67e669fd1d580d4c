#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"
#include "TimeShiftBufferModel.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace Qt::Literals::StringLiterals;
using standin::Delivery;

/// Requests that are split by station, and the one signal that gathers what became of them.
class TestBatches : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void groupsWhatItAdds_data();
    void groupsWhatItAdds();
    void groupsWhatItDeletes_data();
    void groupsWhatItDeletes();
    void needsPermissionToDelete_data();
    void needsPermissionToDelete();
    void refusesTextsThatAreNoTimes_data();
    void refusesTextsThatAreNoTimes();
    void dropsStationsThatRefuse_data();
    void dropsStationsThatRefuse();
    void namesTheCamerasThatFailed_data();
    void namesTheCamerasThatFailed();
    void namesTheBookmarksThatFailed_data();
    void namesTheBookmarksThatFailed();
    void namesCamerasByTheirKey();
    void namesCamerasWithoutTopology();
    void showsAddedBookmarks();
    void hidesDeletedBookmarks();
    void takesAnswersFromInsideTheCall_data();
    void takesAnswersFromInsideTheCall();
    void ignoresWhatItDoesNotWaitFor_data();
    void ignoresWhatItDoesNotWaitFor();
    void keepsBatchesApart();
};

namespace {

QVariantMap camera(const QString &cameraID, const QString &relayPath)
{
    return {{u"CameraID"_s, cameraID}, {u"LocationID"_s, u"l"_s}, {u"relayPath"_s, relayPath}};
}

QVariantMap bookmark(const QString &bookmarkID, const QString &relayPath)
{
    return {{u"BookmarkID"_s, bookmarkID}, {u"relayPath"_s, relayPath}};
}

bool addTo(PluginHarness &harness, const QVariantList &targets)
{
    return harness.call<bool>("addBookmarks", targets, qint64(1), qint64(2), u"d"_s, u"me"_s,
                              u"g"_s);
}

bool deleteFrom(PluginHarness &harness, const QVariantList &targets)
{
    harness.grantPermission();
    return harness.call<bool>("deleteBookmarks", targets);
}

/// A batch for the given stations, one entry each.
bool sendTo(PluginHarness &harness, const QString &command, const QStringList &stations)
{
    const bool adds = command == u"AddBookmarks";
    QVariantList targets;
    for (const QString &station : stations)
        targets.append(adds ? camera(u"1"_s, station) : bookmark(u"b"_s + station, station));
    return adds ? addTo(harness, targets) : deleteFrom(harness, targets);
}

/// Each command sent as "target: payload", after checking what all commands of a batch share.
QStringList sentGroups(PluginHarness &harness, const QString &command)
{
    QStringList groups;
    const QList<standin::SentCommand> sent = harness.sent();
    for (const standin::SentCommand &group : sent) {
        if (group.command != command || group.flag || !group.context ||
            group.context != sent.constFirst().context ||
            group.hostHandle != static_cast<void *>(&harness) ||
            group.pluginID != PluginHarness::pluginID())
            return {u"a command of another kind: "_s + group.command};
        groups.append(group.relayPath + u": "_s + describe(group.payload));
    }
    harness.framework.clearSent();
    return groups;
}

/// One entry of a batch of additions, as sent.
QString added(const QString &cameraID, const QString &locationID = u"l"_s)
{
    return uR"({CameraID: QString %1, Creator: QString "me", Description: QString "d", )"
           uR"(EndTimestamp: qlonglong 2, Group: QString "g", LocationID: QString %2, )"
           uR"(StartTimestamp: qlonglong 1})"_s.arg(
               cameraID.isNull() ? u"null"_s : u'"' + cameraID + u'"',
               locationID.isNull() ? u"null"_s : u'"' + locationID + u'"');
}

QVariantList records(const QStringList &cameraIDs, const QString &locationID = u"l"_s)
{
    QVariantList list;
    for (const QString &cameraID : cameraIDs)
        list.append(serverRecord(u"b"_s + cameraID, cameraID, locationID, 1, 2));
    return list;
}

/// Answers batches as a station does that does all or nothing of them.
class ScriptedServer : public standin::Server
{
public:
    QMap<QString, QString> codes; ///< by station; success for others

    standin::Answer execute(const QString &command, const QVariant &,
                            const QString &relayPath) override
    {
        const QString code = codes.value(relayPath, u"0"_s);
        return {command == u"DeleteBookmarks" ? QStringList{relayPath} : QStringList(), code};
    }
};

QString signalName(const QString &command)
{
    return command == u"AddBookmarks" ? u"addBookmarksResponsed"_s : u"deleteBookmarksResponsed"_s;
}

} // namespace

void TestBatches::groupsWhatItAdds_data()
{
    QTest::addColumn<QVariantList>("targets");
    QTest::addColumn<QStringList>("groups");

    QTest::newRow("by station in ascending order, within it as given")
        << QVariantList{camera(u"3"_s, u"B"_s), camera(u"2"_s, u"A"_s), camera(u"1"_s, u"A"_s)}
        << QStringList{u"A: [%1, %2]"_s.arg(added(u"2"_s), added(u"1"_s)),
                       u"B: [%1]"_s.arg(added(u"3"_s))};
    QTest::newRow("capitals and the empty station first")
        << QVariantList{camera(u"1"_s, u"a"_s), camera(u"1"_s, u"Z"_s), camera(u"1"_s, u""_s)}
        << QStringList{u": [%1]"_s.arg(added(u"1"_s)), u"Z: [%1]"_s.arg(added(u"1"_s)),
                       u"a: [%1]"_s.arg(added(u"1"_s))};
    QVariantMap otherLocation = camera(u"1"_s, u"A"_s);
    otherLocation[u"LocationID"_s] = u"m"_s;
    QTest::newRow("duplicates but once, unless the location differs")
        << QVariantList{camera(u"1"_s, u"A"_s), camera(u"2"_s, u"A"_s), camera(u"1"_s, u"A"_s),
                        otherLocation}
        << QStringList{
               u"A: [%1, %2, %3]"_s.arg(added(u"1"_s), added(u"2"_s), added(u"1"_s, u"m"_s))};
    QVariantMap withMore = camera(u"1"_s, u"A"_s);
    withMore[u"Creator"_s] = u"someone else"_s;
    QTest::newRow("other keys do not count") << QVariantList{withMore, camera(u"1"_s, u"A"_s)}
                                             << QStringList{u"A: [%1]"_s.arg(added(u"1"_s))};
    QTest::newRow("missing keys and what is no map, once, to the connected server")
        << QVariantList{QVariantMap(), QVariant(), 5, u"A"_s, QVariantList{camera(u"1"_s, u"A"_s)}}
        << QStringList{u": [%1]"_s.arg(added(QString(), QString()))};
    QTest::newRow("keys in the wrong case")
        << QVariantList{QVariantMap{{u"cameraID"_s, u"1"_s}, {u"RelayPath"_s, u"A"_s}}}
        << QStringList{u": [%1]"_s.arg(added(QString(), QString()))};
    QTest::newRow("values of other types")
        << QVariantList{QVariantMap{
               {u"CameraID"_s, 5}, {u"LocationID"_s, QByteArray("l")}, {u"relayPath"_s, 7}}}
        << QStringList{u"7: [%1]"_s.arg(added(u"5"_s))};
}

void TestBatches::groupsWhatItAdds()
{
    QFETCH(QVariantList, targets);
    PluginHarness harness;
    QVERIFY(addTo(harness, targets));
    QTEST(sentGroups(harness, u"AddBookmarks"_s), "groups");

    const QString start = u"1970/01/01 01:00:00"_s; // the epoch in the zone of the tests
    QVERIFY(harness.call<bool>("addBookmarks", targets, start, start, QString(), u""_s, u"x"_s));
    const QVariantMap entry = harness.sent().constFirst().payload.toList().constFirst().toMap();
    QCOMPARE(describe(entry.value(u"StartTimestamp"_s)), u"qlonglong 0"_s);
    QCOMPARE(describe(entry.value(u"Description"_s)), u"QString null"_s);
    QCOMPARE(describe(entry.value(u"Creator"_s)), u"QString \"\""_s);
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
}

void TestBatches::groupsWhatItDeletes_data()
{
    QTest::addColumn<QVariantList>("targets");
    QTest::addColumn<QStringList>("groups");

    QTest::newRow("by station in ascending order, within it as given, duplicates once")
        << QVariantList{bookmark(u"3"_s, u"B"_s), bookmark(u"2"_s, u"A"_s),
                        bookmark(u"1"_s, u"A"_s), bookmark(u"2"_s, u"A"_s)}
        << QStringList{uR"(A: [{BookmarkID: QString "2"}, {BookmarkID: QString "1"}])"_s,
                       uR"(B: [{BookmarkID: QString "3"}])"_s};
    QTest::newRow("missing keys and what is no map")
        << QVariantList{5, QVariantMap{{u"bookmarkID"_s, u"1"_s}},
                        QVariantMap{{u"BookmarkID"_s, 9}}}
        << QStringList{uR"(: [{BookmarkID: QString null}, {BookmarkID: QString "9"}])"_s};
}

void TestBatches::groupsWhatItDeletes()
{
    QFETCH(QVariantList, targets);
    PluginHarness harness;
    QVERIFY(deleteFrom(harness, targets));
    QTEST(sentGroups(harness, u"DeleteBookmarks"_s), "groups");
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
}

void TestBatches::needsPermissionToDelete_data()
{
    QTest::addColumn<QVariantList>("targets");
    QTest::addColumn<QString>("signal");
    QTest::newRow("as it would have sent them")
        << QVariantList{bookmark(u"2"_s, u"B"_s), bookmark(u"1"_s, u"A"_s),
                        bookmark(u"1"_s, u"A"_s), bookmark(u"1"_s, u"B"_s)}
        << u"deleteBookmarksResponsed(1,2,1)"_s;
    QTest::newRow("without identifiers")
        << QVariantList{5, bookmark(u""_s, u"A"_s)} << u"deleteBookmarksResponsed(,)"_s;
    QTest::newRow("none") << QVariantList() << u"deleteBookmarksResponsed()"_s;
}

void TestBatches::needsPermissionToDelete()
{
    QFETCH(QVariantList, targets);
    PluginHarness harness;
    QCOMPARE(harness.call<bool>("deleteBookmarks", targets), true);
    QTEST(harness.emitted->take().join(u'\n'), "signal");
    QCOMPARE(harness.takeSent(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
}

void TestBatches::refusesTextsThatAreNoTimes_data()
{
    QTest::addColumn<QString>("start");
    QTest::addColumn<QString>("end");
    const QString good = u"2024/01/01 00:00:00"_s;
    QTest::newRow("a month 13 at the start") << u"2024/13/01 00:00:00"_s << good;
    QTest::newRow("a month 13 at the end") << good << u"2024/13/01 00:00:00"_s;
    QTest::newRow("an hour 24") << good << u"2024/01/01 24:00:00"_s;
    QTest::newRow("nothing") << QString() << QString();
}

void TestBatches::refusesTextsThatAreNoTimes()
{
    QFETCH(QString, start);
    QFETCH(QString, end);
    PluginHarness harness;
    QCOMPARE(harness.call<bool>("addBookmarks", QVariantList{camera(u"1"_s, u"A"_s)}, start, end,
                                u"d"_s, u"c"_s, u"g"_s),
             false);
    QCOMPARE(harness.takeSent(), QStringList());
    QCOMPARE(harness.emitted->take(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
}

void TestBatches::dropsStationsThatRefuse_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("scope");
    QTest::newRow("add") << u"AddBookmarks"_s << u"Tessaline::addBookmarks"_s;
    QTest::newRow("delete") << u"DeleteBookmarks"_s << u"Tessaline::deleteBookmarks"_s;
}

void TestBatches::dropsStationsThatRefuse()
{
    QFETCH(QString, command);
    QFETCH(QString, scope);
    const QString line = u"src/Tessaline_Req.cpp: "_s + scope + u", send command failed"_s;
    const QString done = signalName(command) + u"()"_s;
    PluginHarness harness;
    harness.framework.rules().setForStation(u"B"_s, Delivery::refused());

    QCOMPARE(sendTo(harness, command, {u"A"_s, u"B"_s, u"C"_s}), true);
    const QList<standin::SentCommand> sent = harness.sent();
    QCOMPARE(harness.takeSent(),
             QStringList({command + u"@A"_s, u'!' + command + u"@B"_s, command + u"@C"_s}));
    QCOMPARE(harness.log.take(), QStringList(line));
    harness.answer(sent.at(0), QVariant());
    harness.answer(sent.at(1), QVariant()); // nobody waits for that one
    QCOMPARE(harness.emitted->take(), QStringList());
    harness.answer(sent.at(2), QVariant());
    QCOMPARE(harness.emitted->take(), QStringList(done));

    harness.framework.rules().setDefault(Delivery::refused());
    QCOMPARE(sendTo(harness, command, {u"C"_s, u"A"_s}), false);
    QCOMPARE(harness.takeSent(), QStringList({u'!' + command + u"@A"_s, u'!' + command + u"@C"_s}));
    QCOMPARE(harness.log.take(), QStringList({line, line}));
    QCOMPARE(sendTo(harness, command, {}), false);
    QCOMPARE(harness.takeSent(), QStringList());
    QCOMPARE(harness.log.take(), QStringList());
    QCOMPARE(harness.emitted->take(), QStringList());

    harness.plugin().InitialPluginBase(nullptr, nullptr, nullptr);
    QCOMPARE(sendTo(harness, command, {u"A"_s}), false);
    QCOMPARE(harness.log.take(), QStringList(line));
    QCOMPARE(harness.emitted->take(), QStringList());
}

void TestBatches::namesTheCamerasThatFailed_data()
{
    QTest::addColumn<QList<int>>("order");  // of the answers of A, B and C
    QTest::addColumn<QStringList>("codes"); // of A, B and C
    QTest::addColumn<QString>("signal");
    const QString ok = u"0"_s;
    const QString bad = u"-1"_s;
    const auto row = [](const char *name, const QList<int> &order, const QStringList &codes,
                        const char *names) {
        QTest::newRow(name) << order << codes
                            << u"addBookmarksResponsed(%1)"_s.arg(QLatin1String(names));
    };
    row("nothing", {0, 1, 2}, {ok, ok, ok}, "");
    row("one station, in the order sent", {0, 1, 2}, {bad, ok, ok}, "Camera A2,Camera A1,");
    row("the last station to answer", {2, 1, 0}, {bad, ok, ok}, "Camera A2,Camera A1,");
    row("all, in the order of the answers", {1, 0, 2}, {bad, bad, bad},
        "Camera B1,Camera A2,Camera A1,,Camera C1");
    row("a code that is almost success", {2, 0, 1}, {ok, u"0 "_s, QString()},
        "Camera C1,Camera B1");
}

void TestBatches::namesTheCamerasThatFailed()
{
    QFETCH(QList<int>, order);
    QFETCH(QStringList, codes);
    PluginHarness harness;
    harness.topology.setCamera(u"A/2"_s, u"Camera A2"_s);
    QVERIFY(addTo(harness, {camera(u"1"_s, u"C"_s), camera(u"2"_s, u"A"_s), camera(u"1"_s, u"B"_s),
                            camera(u"1"_s, u"A"_s), camera(u"unknown"_s, u"A"_s)}));
    const QList<standin::SentCommand> sent = harness.sent();
    for (const int position : std::as_const(order)) {
        QCOMPARE(harness.emitted->take(), QStringList());
        // What a failed answer carries is not looked at.
        harness.answer(sent.at(position), records({u"1"_s}), codes.at(position));
    }
    QTEST(harness.emitted->take().join(u'\n'), "signal");
    QCOMPARE(harness.log.take(), QStringList());
}

void TestBatches::namesTheBookmarksThatFailed_data()
{
    QTest::addColumn<QVariant>("result"); // of A, the first to answer
    QTest::addColumn<QString>("names");
    QTest::newRow("a list of texts") << QVariant(QStringList{u"y"_s, u"x"_s}) << u"y,x"_s;
    QTest::newRow("a list of variants") << QVariant(QVariantList{u"y"_s, 5}) << u"y,5"_s;
    QTest::newRow("one text") << QVariant(u"x"_s) << u"x"_s;
    QTest::newRow("nothing") << QVariant() << u""_s;
    QTest::newRow("a map") << QVariant(QVariantMap{{u"x"_s, 1}}) << u""_s;
}

void TestBatches::namesTheBookmarksThatFailed()
{
    QFETCH(QVariant, result);
    QFETCH(QString, names);
    PluginHarness harness;
    QVERIFY(sendTo(harness, u"DeleteBookmarks"_s, {u"A"_s, u"B"_s}));
    const QList<standin::SentCommand> sent = harness.sent();
    harness.answer(sent.at(0), result, u"-1"_s);
    QCOMPARE(harness.emitted->take(), QStringList());
    harness.answer(sent.at(1), QStringList{u"deleted"_s});
    QCOMPARE(harness.emitted->take(), QStringList(u"deleteBookmarksResponsed("_s + names + u')'));

    QVERIFY(sendTo(harness, u"DeleteBookmarks"_s, {u"A"_s}));
    harness.answer(harness.sent().constLast(), result);
    QCOMPARE(harness.emitted->take(), QStringList(u"deleteBookmarksResponsed()"_s));
    QCOMPARE(harness.log.take(), QStringList());
}

void TestBatches::namesCamerasByTheirKey()
{
    PluginHarness harness;
    const QString odd = u"%2/%1"_s;
    harness.topology.setCamera(odd + u"/%1"_s, u"Odd"_s);
    harness.topology.setCamera(u"7"_s, u"Connected"_s);
    QVERIFY(addTo(harness, {camera(u"7"_s, u""_s), camera(u"%1"_s, odd)}));
    const QList<standin::SentCommand> sent = harness.sent();
    for (const standin::SentCommand &command : sent)
        harness.answer(command, {}, u"-1"_s);
    QCOMPARE(harness.emitted->take(), QStringList(u"addBookmarksResponsed(Connected,Odd)"_s));
}

void TestBatches::namesCamerasWithoutTopology()
{
    PluginHarness harness;
    harness.framework.removePlugin(standin::Topology::pluginID());
    QVERIFY(addTo(harness, {camera(u"1"_s, u"A"_s), camera(u"2"_s, u"A"_s)}));
    harness.answer(harness.onlySent(), {}, u"-1"_s);
    QCOMPARE(harness.emitted->take(), QStringList(u"addBookmarksResponsed(,)"_s));
    QCOMPARE(harness.log.take(), QStringList(u"src/Tessaline_Local.cpp: Tessaline::GetAllCamNames, "
                                             "get TopologyPlugin failed"_s));
}

void TestBatches::showsAddedBookmarks()
{
    PluginHarness harness;
    harness.topology.setCamera(u"A/2"_s, u"Camera A2"_s);
    harness.topology.setCamera(u"A/3"_s, u"Camera A3"_s);
    const auto *const shown = harness.openViewCell(u"2"_s, u"l"_s, u"A"_s);
    const auto *const elsewhere = harness.openViewCell(u"3"_s, u"l"_s, u"B"_s);
    harness.call("setTimelineFocusInfo", u"l"_s, u"A"_s, u"1"_s); // has no model

    QVERIFY(addTo(harness, {camera(u"1"_s, u"A"_s), camera(u"2"_s, u"A"_s)}));
    QVariantList created = records({u"1"_s});
    created += records({u"unseen"_s}, u"another location"_s);
    QVariantMap refused = records({u"2"_s}).constFirst().toMap();
    refused.remove(u"BookmarkID"_s);
    created += QVariantList{refused, refused, u"no map"_s};
    created += records({u"3"_s});
    QVariantMap invalidID = records({u"4"_s}).constFirst().toMap();
    invalidID[u"BookmarkID"_s] = QVariant(); // the key decides, not the value
    invalidID[u"LocationID"_s] = u"nowhere"_s;
    created += invalidID;

    harness.answer(harness.onlySent(), created);
    QCOMPARE(harness.emitted->take(), QStringList(u"addBookmarksResponsed("
                                                  "Camera A1,Camera A2,Camera A2,,Camera A3)"_s));
    QCOMPARE(rowsOf(shown, TimeShiftBufferModel::ItemIdRole), QStringList({u"b1"_s, u"b3"_s}));
    QCOMPARE(elsewhere->rowCount(), 0);
    QCOMPARE(harness.log.take(), QStringList());
}

void TestBatches::hidesDeletedBookmarks()
{
    PluginHarness harness;
    const auto *const shown = harness.openViewCell(u"1"_s, u"l"_s, u"A"_s);
    const auto *const elsewhere = harness.openViewCell(u"3"_s, u"l"_s, u"B"_s);
    harness.call("setTimelineFocusInfo", u"l"_s, u"A"_s, u"2"_s); // has no model
    QVERIFY(addTo(harness, {camera(u"1"_s, u"A"_s), camera(u"1"_s, u"B"_s)}));
    const QList<standin::SentCommand> sent = harness.sent();
    harness.answer(sent.at(0), records({u"1"_s, u"2"_s, u"3"_s}));
    harness.answer(sent.at(1), records({u"1"_s, u"3"_s}));

    const auto deleteOne = [&](const QVariant &result, const QString &code) {
        deleteFrom(harness, {bookmark(u"b1"_s, u"A"_s)});
        harness.answer(harness.sent().constLast(), result, code);
        return rowsOf(shown, TimeShiftBufferModel::ItemIdRole).join(u',') + u'|' +
               rowsOf(elsewhere, TimeShiftBufferModel::ItemIdRole).join(u',');
    };
    QCOMPARE(deleteOne(QStringList{u"b1"_s}, u"-1"_s), u"b1,b2,b3|b1,b3"_s);
    QCOMPARE(deleteOne(QStringList{u"b1"_s, u"b2"_s, u"b9"_s}, u"0"_s), u"b3|b3"_s);
    QCOMPARE(deleteOne(QVariant(), u"0"_s), u"b3|b3"_s);
}

void TestBatches::takesAnswersFromInsideTheCall_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("delivery"); // of A, B and C: inside, failing inside, later, refused
    QTest::addColumn<QStringList>("failed");
    for (const auto &command : {u"AddBookmarks"_s, u"DeleteBookmarks"_s}) {
        const auto row = [&](const char *name, const char *delivery, const QStringList &failed) {
            QTest::addRow("%s, %s", qPrintable(command), name)
                << command << QString::fromLatin1(delivery) << failed;
        };
        row("all inside", "iii", {});
        row("all inside, one failing", "ifi", {u"B"_s});
        row("all failing inside", "fff", {u"A"_s, u"B"_s, u"C"_s});
        row("the first inside", "fll", {u"A"_s});
        row("the last inside", "llf", {u"C"_s});
        row("the last refused", "fir", {u"A"_s});
        row("the last two refused", "frr", {u"A"_s});
        row("the first refused", "rfi", {u"B"_s});
        row("one inside, one later, one refused", "flr", {u"A"_s});
        row("all refused", "rrr", {});
    }
}

void TestBatches::takesAnswersFromInsideTheCall()
{
    QFETCH(QString, command);
    QFETCH(QString, delivery);
    QFETCH(QStringList, failed);
    const QStringList stations = {u"A"_s, u"B"_s, u"C"_s};
    PluginHarness harness;
    ScriptedServer server;
    harness.framework.setServer(&server);
    for (qsizetype i = 0; i < stations.size(); ++i) {
        const QChar how = delivery.at(i);
        server.codes[stations.at(i)] = how == u'f' ? u"-1"_s : u"0"_s;
        harness.framework.rules().setForStation(stations.at(i), how == u'l' ? Delivery::held()
                                                                : how == u'r'
                                                                    ? Delivery::refused()
                                                                    : Delivery::immediate());
    }

    const bool handedOn = delivery != u"rrr";
    QCOMPARE(sendTo(harness, command, stations), handedOn);
    QCOMPARE(harness.takeSent().size(), 3);
    QCOMPARE(harness.log.take().size(), delivery.count(u'r'));

    if (command == u"AddBookmarks")
        failed.replaceInStrings(QRegularExpression(u"(.)"_s), u"Camera \\11"_s);
    const QStringList signal(signalName(command) + u'(' + failed.join(u',') + u')');
    QCOMPARE(harness.emitted->take(),
             handedOn && !delivery.contains(u'l') ? signal : QStringList());
    const auto later = harness.framework.held();
    for (qsizetype i = 0; i < later.size(); ++i) {
        QCOMPARE(harness.emitted->take(), QStringList());
        harness.framework.release(0);
    }
    QCOMPARE(harness.emitted->take(), later.isEmpty() ? QStringList() : signal);
}

void TestBatches::ignoresWhatItDoesNotWaitFor_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("other");
    QTest::newRow("add") << u"AddBookmarks"_s << u"DeleteBookmarks"_s;
    QTest::newRow("delete") << u"DeleteBookmarks"_s << u"AddBookmarks"_s;
}

void TestBatches::ignoresWhatItDoesNotWaitFor()
{
    QFETCH(QString, command);
    QFETCH(QString, other);
    const QVariant result =
        command == u"AddBookmarks" ? QVariant(records({u"1"_s})) : QVariant(QStringList{u"old"_s});
    PluginHarness harness;
    const auto *const shown = harness.openViewCell(u"1"_s, u"l"_s, u"B"_s);
    harness.answer(u"AddBookmark"_s, serverRecord(u"old"_s, u"1"_s, u"l"_s, 1, 2), u"B"_s);
    harness.emitted->take();
    const auto nothingHappened = [&] {
        return harness.emitted->take().isEmpty() && harness.log.take().isEmpty() &&
               rowsOf(shown, TimeShiftBufferModel::ItemIdRole) == QStringList(u"old"_s);
    };

    QVERIFY(sendTo(harness, command, {u"A"_s, u"B"_s}));
    const QList<standin::SentCommand> sent = harness.sent();
    void *const context = sent.at(0).context;
    int dummy = 0;
    const QStringList codes = {u"0"_s, u"-1"_s};
    for (const QString &code : codes) {
        harness.answer(command, result, u"A"_s, nullptr, code);
        harness.answer(command, result, u"A"_s, &dummy, code);
        harness.answer(other, result, u"A"_s, context, code);
        for (const auto &station : {u"C"_s, u"a"_s, u""_s})
            harness.answer(command, result, station, context, code);
        QVERIFY(nothingHappened());
    }
    harness.answer(sent.at(1), QStringList(), u"-1"_s);
    harness.answer(sent.at(1), result, u"-1"_s); // doubled
    harness.answer(sent.at(1), result);
    QVERIFY(nothingHappened());

    harness.answer(sent.at(0), QStringList());
    QCOMPARE(harness.emitted->take(),
             QStringList(signalName(command) +
                         (command == u"AddBookmarks" ? u"(Camera B1)"_s : u"()"_s)));
    for (const QString &code : codes) {
        harness.answer(sent.at(0), result, code);
        harness.answer(sent.at(1), result, code);
    }
    QVERIFY(nothingHappened());
}

void TestBatches::keepsBatchesApart()
{
    PluginHarness harness;
    const auto send = [&](const QString &cameraID) {
        addTo(harness, {camera(cameraID, u"A"_s)});
        return harness.onlySent();
    };

    // Two under way, answered the wrong way round.
    const auto first = send(u"first"_s);
    const auto second = send(u"1"_s);
    QVERIFY(first.context != second.context);
    harness.answer(second, {}, u"-1"_s);
    harness.answer(first, {}, u"-1"_s);
    QCOMPARE(harness.emitted->take(),
             QStringList({u"addBookmarksResponsed(Camera A1)"_s, u"addBookmarksResponsed()"_s}));

    // Answers come again when the next ones, some of them perhaps at the same addresses, are under
    // way.
    constexpr int Count = 50;
    QList<standin::SentCommand> settled;
    for (int i = 0; i < Count; ++i)
        settled.append(send(u"old"_s));
    for (const standin::SentCommand &command : std::as_const(settled))
        harness.answer(command, {});
    QCOMPARE(harness.emitted->take().size(), Count);
    QList<standin::SentCommand> next;
    for (int i = 0; i < Count; ++i)
        next.append(send(u"1"_s));
    for (const standin::SentCommand &command : std::as_const(settled))
        harness.answer(command, {}, u"-1"_s);
    QCOMPARE(harness.emitted->take(), QStringList());
    for (const standin::SentCommand &command : std::as_const(next))
        harness.answer(command, {}, u"-1"_s);
    QCOMPARE(harness.emitted->take(), QStringList(Count, u"addBookmarksResponsed(Camera A1)"_s));
}

QTEST_GUILESS_MAIN(TestBatches)
#include "tst_batches.moc"
