#include "DataTable.h"
#include "PluginHarness.h"

#include "PluginBase.h"
#include "TimeShiftBufferModel.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QRegularExpression>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;

/// How answers and events become signals, log lines and timeline items.
class TestDispatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void judgesTheResultCode_data();
    void judgesTheResultCode();
    void readsValuesOfAnyShape_data();
    void readsValuesOfAnyShape();
    void changesViewCells_data();
    void changesViewCells();
    void readsTheDeletedIdentifier_data();
    void readsTheDeletedIdentifier();
    void survivesEventsOfAnyShape();
};

namespace {

/// Result codes; the first one alone is success.
QStringList resultCodes()
{
    return {u"0"_s, u""_s, QString(), u"0 "_s, u"00"_s, u"-0"_s, u"-999"_s, u"%s%n"_s, u"\u0660"_s};
}

/// One payload of each shape.
QVariantList payloads()
{
    return {{},
            u"text"_s,
            5,
            2.5,
            false,
            QByteArray("bytes"),
            QVariantMap{{u"BookmarkID"_s, QVariantList{1}}, {u"Bookmarks"_s, u"no list"_s}},
            QVariantHash{{u"Bookmarks"_s, QVariantList{1, QVariant(), u"x"_s}}},
            QVariantList{1, QVariantMap(), QVariant()},
            QStringList{u"a"_s, QString()},
            QVariant::fromValue<QObject *>(nullptr),
            QDateTime()};
}

QString shown(const QAbstractItemModel *model)
{
    return rowsOf(model, TimeShiftBufferModel::ItemIdRole).join(u',');
}

QVariantMap recordAt(const QString &bookmarkID, const QString &locationID)
{
    return serverRecord(bookmarkID, u"1"_s, locationID, 1000, 2000);
}

} // namespace

void TestDispatch::judgesTheResultCode_data()
{
    addTable({"signal", "failureLog"}, uR"(
AddBookmark              | addBookmarkResponsed              | add bookmark failed
DeleteBookmark           | deleteBookmarkResponsed           | delete bookmark failed
RemoveAllBookmarks       | removeAllBookmarksResponsed       | remove bookmark failed: NUMBER
UpdateBookmark           | updateBookmarkResponsed           | update bookmark failed
QueryBookmarkForRecent   | queryBookmarkForRecentResponsed   | query bookmarks failed
QueryBookmarkForTimeline | queryBookmarkForTimelineResponsed | query bookmarks failed
QueryBookmarkForApi      | queryBookmarkForApiFinished       |
AddBookmarks             |                                   |
DeleteBookmarks          |                                   |
QuerySevTimezone         |                                   |
QuerySettingPermission   |                                   |
addBookmark              |                                   |
)"_s);
}

void TestDispatch::judgesTheResultCode()
{
    QFETCH(const QString, signal);
    QFETCH(const QString, failureLog);
    const QString command = QString::fromLatin1(QTest::currentDataTag());
    PluginHarness harness;
    harness.startTrace();
    const QStringList codes = resultCodes();
    for (const QString &code : codes) {
        const bool success = code == codes.constFirst();
        // Nobody has asked for a timeline's bookmarks; its failure is told all the same.
        const bool silent = signal.isEmpty() || (success && signal.contains(u"Timeline"));
        QStringList expected;
        if (!success && !failureLog.isEmpty())
            expected += u"src/Tessaline.cpp: Tessaline::CommandProcessor, "_s + failureLog;
        if (!silent)
            expected += signal + (success ? u"(true)"_s : u"(false)"_s);

        const QVariantList results = payloads();
        for (const QVariant &result : results) {
            harness.answer(command, result, u"A"_s, nullptr, code);
            // The code's text is written as if it were a number.
            static const QRegularExpression number(u"(failed: )-?\\d+"_s);
            QStringList trace = harness.takeTrace();
            QCOMPARE(trace.replaceInStrings(number, u"\\1NUMBER"_s), expected);
        }
    }
}

void TestDispatch::readsValuesOfAnyShape_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("setting"); // read as hours and switch
    QTest::addColumn<bool>("flag");       // read as one
    const auto row = [](const char *name, const QVariant &result, const char *setting, bool flag) {
        QTest::newRow(name) << result << QString::fromLatin1(setting) << flag;
    };
    const QString hours = u"reserveHour"_s;
    const QString enable = u"enableRecycle"_s;
    row("both", QVariantMap{{hours, 4294967295U}, {enable, true}}, "4294967295,true", false);
    row("no hours", QVariantMap{{enable, true}}, "0,true", false);
    row("no switch", QVariantMap{{hours, 7}}, "7,false", false);
    row("texts", QVariantMap{{hours, u"72"_s}, {enable, u"true"_s}}, "72,true", false);
    row("no values", QVariantMap{{hours, u"many"_s}, {enable, u"False"_s}}, "0,false", false);
    row("fractions", QVariantMap{{hours, 2.6}, {enable, 0.0}}, "3,false", false);
    row("a hash", QVariantHash{{hours, 5}, {enable, 1}}, "5,true", false);
    row("nothing", {}, "0,false", false);
    row("a list", QVariantList{72U, true}, "0,false", false);
    row("true", true, "0,false", true);
    row("false", false, "0,false", false);
    row("minus one", -1, "0,false", true);
    row("the text FALSE", u"FALSE"_s, "0,false", false);
    row("the text 00", u"00"_s, "0,false", true);
    row("an empty text", u""_s, "0,false", false);
    row("the bytes no", QByteArray("no"), "0,false", true);
}

void TestDispatch::readsValuesOfAnyShape()
{
    QFETCH(const QVariant, result);
    QFETCH(const QString, setting);
    QFETCH(const bool, flag);
    const QString flagText = flag ? u"true"_s : u"false"_s;
    PluginHarness harness;
    const QStringList codes = resultCodes();
    for (const QString &code : codes) {
        harness.answer(u"GetRecycleSetting"_s, result, {}, nullptr, code);
        harness.answer(u"UpdateRecycleSetting"_s, result, {}, nullptr, code);
        // From the opposite, so that an ignored answer shows.
        harness.answer(u"QuerySettingPermission"_s, !flag);
        harness.answer(u"QuerySettingPermission"_s, result, {}, nullptr, code);
        QCOMPARE(harness.emitted->take(),
                 QStringList({u"getRecycleSettingResponse(%1)"_s.arg(setting),
                              u"updateRecycleSettingResponse(%1)"_s.arg(flagText)}));
        QCOMPARE(harness.run(u"removeAllBookmarks('A')"_s), true);
        QCOMPARE(harness.emitted->take().isEmpty(), flag);
    }
    QCOMPARE(harness.log.take(), QStringList());
}

void TestDispatch::changesViewCells_data()
{
    addTable({"code", "location", "station", "trace", "rows"}, uR"(
AddBookmark: added                 | 0  | loc  | A | addBookmarkResponsed(true)  | 1:b 4:b
AddBookmark: in another case       | 0  | Loc  | A | addBookmarkResponsed(true)  | 3:b
AddBookmark: to another station    | 0  | loc  | B | addBookmarkResponsed(true)  | 2:b
AddBookmark: nowhere to be seen    | 0  | else | A | addBookmarkResponsed(true)  |
AddBookmark: one cell has no model | 0  | loc  | C | addBookmarkResponsed(false) | 7:b
AddBookmark: failed                | -1 | loc  | A | failed addBookmarkResponsed(false) |
AddBookmarks: without a context    | 0  | loc  | A | |
UpdateBookmark: not looked at      | 0  | loc  | A | updateBookmarkResponsed(true) |
event AddBookmark: here            |    | loc  | A | | 1:b 4:b
event AddBookmark: there           |    | loc  | B | | 2:b
event AddBookmark: no model        |    | loc  | C | | 7:b
event addBookmark: no such event   |    | loc  | A | |
)"_s);
}

void TestDispatch::changesViewCells()
{
    QFETCH(const QString, code);
    QFETCH(const QString, location);
    QFETCH(const QString, station);
    const QString name = QString::fromLatin1(QTest::currentDataTag()).section(u':', 0, 0);
    PluginHarness harness;
    QMap<QString, QAbstractItemModel *> cells;
    for (const QString &cell : {u"1locA"_s, u"2locB"_s, u"3LocA"_s, u"4locA"_s, u"7locC"_s})
        cells[cell.left(1)] = harness.openViewCell(cell, cell.mid(1, 3), cell.right(1));
    for (const QString &cell : {u"5"_s, u"8"_s}) // have no model
        harness.call("setTimelineFocusInfo", u"loc"_s, u"C"_s, cell);

    const QVariantMap record = recordAt(u"b"_s, location);
    harness.startTrace();
    if (name.startsWith(u"event"))
        harness.framework.sendEvent(name.section(u' ', 1), record, station);
    else
        harness.answer(name, record, station, nullptr, code);
    const QString failed = u"src/Tessaline.cpp: Tessaline::CommandProcessor, add bookmark failed"_s;
    QTEST(harness.takeTrace().join(u' ').replace(failed, u"failed"_s), "trace");

    QStringList rows;
    for (auto cell = cells.cbegin(); cell != cells.cend(); ++cell) {
        if ((*cell)->rowCount() > 0)
            rows.append(cell.key() + u':' + shown(*cell));
    }
    QTEST(rows.join(u' '), "rows");
}

void TestDispatch::readsTheDeletedIdentifier_data()
{
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("left");
    const auto row = [](const char *name, const QVariant &result, const char *left) {
        QTest::newRow(name) << result << QString::fromLatin1(left);
    };
    row("a number", 5, ",7");
    row("bytes", QByteArray("5"), ",7");
    row("an unknown one", u"6"_s, ",5,7");
    row("nothing, which is the empty text", {}, "5,7");
    row("a map, likewise", QVariantMap(), "5,7");
}

void TestDispatch::readsTheDeletedIdentifier()
{
    QFETCH(const QVariant, result);
    PluginHarness harness;
    const auto *const one = harness.openViewCell(u"1"_s, u"loc"_s, u"A"_s);
    const auto *const two = harness.openViewCell(u"2"_s, u"loc"_s, u"B"_s);
    for (const QString &station : {u"A"_s, u"B"_s}) {
        for (const QString &id : {u""_s, u"5"_s, u"7"_s})
            harness.answer(u"AddBookmark"_s, recordAt(id, u"loc"_s), station);
    }
    harness.answer(u"DeleteBookmark"_s, u"7"_s, u"A"_s, nullptr, u"-1"_s);
    harness.answer(u"RemoveAllBookmarks"_s, {}, u"A"_s);
    harness.emitted->take();

    // Identifiers are looked for everywhere, whatever station answers.
    harness.answer(u"DeleteBookmark"_s, result, u"C"_s);
    QCOMPARE(harness.emitted->take(), QStringList(u"deleteBookmarkResponsed(true)"_s));
    QTEST(shown(one), "left");
    QTEST(shown(two), "left");
}

void TestDispatch::survivesEventsOfAnyShape()
{
    PluginHarness harness;
    const auto *const cell = harness.openViewCell(u"1"_s, u"loc"_s, u"A"_s);
    harness.startTrace();
    const QVariantList shapes = payloads();
    for (const QVariant &data : shapes)
        harness.framework.sendEvent(u"AddBookmark"_s, data, u"A"_s);
    QCOMPARE(shown(cell), QString());
    QCOMPARE(cell->rowCount(), 0);
    QCOMPARE(harness.takeTrace(), QStringList());

    // Without a location an event belongs to the view cell that shows none.
    const auto *const idle = harness.openViewCell(u"2"_s, QString(), u"A"_s);
    harness.framework.sendEvent(u"AddBookmark"_s, u"no map"_s, u"A"_s);
    QCOMPARE(idle->rowCount(), 1);

    harness.framework.removePlugin(standin::Topology::pluginID());
    harness.framework.sendEvent(u"AddBookmark"_s, recordAt(u"b"_s, u"loc"_s), u"A"_s);
    QCOMPARE(shown(cell), u"b"_s);
    QCOMPARE(harness.takeTrace(), QStringList(u"src/Tessaline_Local.cpp: "
                                              "Tessaline::GetAllCamNames, "
                                              "get TopologyPlugin failed"_s));
}

QTEST_GUILESS_MAIN(TestDispatch)
#include "tst_dispatch.moc"
