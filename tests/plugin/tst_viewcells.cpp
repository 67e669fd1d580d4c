#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>
#include <QtQml/QJSEngine>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int ItemIdRole = 257;
constexpr qint64 Min = std::numeric_limits<qint64>::min();
constexpr qint64 Max = std::numeric_limits<qint64>::max();

QVariantMap record(const QString &id, const QString &locationID = u"loc"_s)
{
    return serverRecord(id, u"1"_s, locationID, 5, 6);
}

QVariant bookmarks(const QVariantList &records)
{
    return QVariantMap{{u"Bookmarks"_s, records}};
}

/// The harness with a model tester on every model.
class ViewCells : public PluginHarness
{
public:
    QAbstractItemModel *open(const QString &cell, const QString &locationID = u"loc"_s,
                             const QString &relayPath = u"A"_s)
    {
        return watched(openViewCell(cell, locationID, relayPath));
    }
    QAbstractItemModel *model(const QString &cell)
    {
        return watched(qobject_cast<QAbstractItemModel *>(
            call<QObject *>("getBookmarkModelForTimeline", cell)));
    }
    void focus(const QString &cell, const QString &locationID, const QString &relayPath)
    {
        call("setTimelineFocusInfo", locationID, relayPath, cell);
    }
    /// Moves the visible range and gives what is sent for it.
    standin::SentCommand ask(const QString &cell, qint64 head = 1, qint64 tail = 100)
    {
        call("setTimelineBoundary", head, tail, cell);
        return onlySent();
    }
    void announce(const QVariant &data, const QString &relayPath = u"A"_s)
    {
        plugin().EventProcessor(u"AddBookmark"_s, 0, 0, 0, data, relayPath);
    }

private:
    static QAbstractItemModel *watched(QAbstractItemModel *model)
    {
        if (!model->findChild<QAbstractItemModelTester *>()) {
            new QAbstractItemModelTester(
                model, QAbstractItemModelTester::FailureReportingMode::Fatal, model);
        }
        return model;
    }
};

QString ids(const QAbstractItemModel *model)
{
    return rowsOf(model, ItemIdRole).join(u' ');
}

QStringList responsed(const char *success)
{
    return {u"queryBookmarkForTimelineResponsed("_s + QLatin1String(success) + u')'};
}

} // namespace

/// The timeline models of the client's view cells.
class TestViewCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void haveOneModelEach();
    void doNothingWhenUnknown();
    void askForWhatTheyShow_data();
    void askForWhatTheyShow();
    void showWhatMatchesTheirFocus_data();
    void showWhatMatchesTheirFocus();
    void ignoreAnswersThatAreNotTheirs();
    void reportAFailedQuery();
    void forgetAQueryThatWasNotSent();
    void areNewAfterRemoval();
    void dieWithThePlugin();
    void surviveTheGarbageCollector();
};

void TestViewCells::haveOneModelEach()
{
    ViewCells cells;
    QAbstractItemModel *const first = cells.model(u"one"_s);
    QVERIFY(first);
    QCOMPARE(cells.model(u"one"_s), first);
    QVERIFY(cells.model(u"ONE"_s) != first);
    QVERIFY(cells.model({}) != first);
    QCOMPARE(cells.takeSent(), QStringList());

    // The focus may come first or last; only a model that is there is emptied by it.
    cells.focus(u"early"_s, u"loc"_s, u"B"_s);
    QAbstractItemModel *const early = cells.model(u"early"_s);
    cells.announce(record(u"b"_s), u"B"_s);
    QCOMPARE(ids(early), u"b"_s);
    cells.call("clearTimelineModel", u"other"_s);
    QCOMPARE(ids(early), u"b"_s);
    cells.focus(u"early"_s, u"loc"_s, u"B"_s);
    QCOMPARE(early->rowCount(), 0);
    cells.announce(record(u"b"_s), u"B"_s);
    cells.call("clearTimelineModel", u"early"_s);
    QCOMPARE(early->rowCount(), 0);
    QCOMPARE(cells.takeSent(), QStringList());
}

void TestViewCells::doNothingWhenUnknown()
{
    ViewCells cells;
    cells.call("clearTimelineModel", u"cell"_s);
    cells.call("removeTimelineModel", u"cell"_s);
    cells.call("setTimelineBoundary", qint64(1), qint64(2), u"cell"_s);
    cells.focus(u"focused"_s, u"loc"_s, u"A"_s);
    cells.call("setTimelineBoundary", qint64(1), qint64(2), u"focused"_s);
    QCOMPARE(cells.takeSent(), QStringList());
    QCOMPARE(cells.plugin().children(), QObjectList());
    QCOMPARE(cells.emitted->take(), QStringList());
    QCOMPARE(cells.log.take(), QStringList());
}

void TestViewCells::askForWhatTheyShow_data()
{
    QTest::addColumn<bool>("focused");
    QTest::addColumn<QString>("locationID");
    QTest::addColumn<QString>("relayPath");
    QTest::addColumn<qint64>("head");
    QTest::addColumn<qint64>("tail");

    QTest::newRow("a location of a station")
        << true << u"loc"_s << u"A"_s << qint64(7) << qint64(9);
    QTest::newRow("directly connected") << true << u"loc"_s << u""_s << qint64(-9) << qint64(0);
    QTest::newRow("placeholders and signs")
        << true << u"%1 Ü"_s << u"%2/%1"_s << qint64(7) << qint64(7);
    QTest::newRow("all times") << true << u"loc"_s << u"A"_s << Min << Max;
    QTest::newRow("no focus") << false << QString() << QString() << qint64(7) << qint64(9);
}

void TestViewCells::askForWhatTheyShow()
{
    QFETCH(const bool, focused);
    QFETCH(const QString, locationID);
    QFETCH(const QString, relayPath);
    QFETCH(const qint64, head);
    QFETCH(const qint64, tail);

    ViewCells cells;
    cells.model(u"cell"_s);
    if (focused)
        cells.focus(u"cell"_s, locationID, relayPath);
    const standin::SentCommand query = cells.ask(u"cell"_s, head, tail);
    QCOMPARE(query.command, u"QueryBookmarkForTimeline"_s);
    QCOMPARE(query.relayPath, relayPath);
    QCOMPARE(query.pluginID, PluginHarness::pluginID());
    QVERIFY(query.context);
    QVERIFY(!query.flag);
    QCOMPARE(describe(query.payload), describe(QVariantMap{{u"LocationID"_s, locationID},
                                                           {u"StartTimestamp"_s, head},
                                                           {u"EndTimestamp"_s, tail}}));
}

void TestViewCells::showWhatMatchesTheirFocus_data()
{
    QTest::addColumn<QString>("answeringStation");
    QTest::addColumn<QVariant>("result");
    QTest::addColumn<QString>("rows");

    const QVariant mixed = bookmarks({record(u"b1"_s), record(u"b2"_s, u"LOC"_s),
                                      record(u"b3"_s, u"loc "_s), u"no map"_s, record(u"b0"_s)});
    QTest::newRow("records of this location") << u"A"_s << mixed << u"b0 b1"_s;
    QTest::newRow("records of another station") << u"B"_s << mixed << QString();
    QTest::newRow("another case of the station") << u"a"_s << mixed << QString();
    QTest::newRow("no records") << u"A"_s << bookmarks({}) << QString();
    QTest::newRow("no list") << u"A"_s << QVariant(QVariantMap()) << QString();
    QTest::newRow("no map") << u"A"_s << QVariant(5) << QString();
}

void TestViewCells::showWhatMatchesTheirFocus()
{
    QFETCH(const QString, answeringStation);
    QFETCH(const QVariant, result);
    QFETCH(const QString, rows);

    ViewCells cells;
    const auto *const model = cells.open(u"cell"_s);
    const auto *const other = cells.open(u"other"_s);
    const standin::SentCommand query = cells.ask(u"cell"_s);
    cells.answer(query.command, result, answeringStation, query.context);
    QCOMPARE(ids(model), rows);
    QCOMPARE(other->rowCount(), 0);
    QCOMPARE(cells.emitted->take(), responsed("true"));

    // Not asked for any more: the same answer to a focus that has moved.
    for (const QString &elsewhere : {u"loc"_s, u"elsewhere"_s}) {
        const standin::SentCommand late = cells.ask(u"cell"_s, 1000, 2000);
        cells.focus(u"cell"_s, elsewhere, u"B"_s);
        cells.answer(late, result);
        QCOMPARE(model->rowCount(), 0);
        QCOMPARE(cells.emitted->take(), responsed("true"));
    }
    QCOMPARE(cells.log.take(), QStringList());
}

void TestViewCells::ignoreAnswersThatAreNotTheirs()
{
    ViewCells cells;
    const auto *const model = cells.open(u"cell"_s);
    const standin::SentCommand query = cells.ask(u"cell"_s);
    const QVariant result = bookmarks({record(u"b"_s)});
    QString neverHandedOut = u"cell"_s;
    for (void *context : {static_cast<void *>(nullptr), static_cast<void *>(&neverHandedOut)})
        cells.answer(query.command, result, u"A"_s, context);
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(cells.emitted->take(), QStringList());

    cells.answer(query, result);
    QCOMPARE(ids(model), u"b"_s);
    cells.call("clearTimelineModel", u"cell"_s);
    cells.emitted->take();
    cells.answer(query, result); // once more
    QCOMPARE(model->rowCount(), 0);

    // A context of one kind is none of another kind.
    const standin::SentCommand next = cells.ask(u"cell"_s);
    cells.answer(u"AddBookmarks"_s, QVariantList{record(u"b"_s)}, u"A"_s, next.context);
    QCOMPARE(model->rowCount(), 0);

    cells.call("removeTimelineModel", u"cell"_s);
    cells.answer(next, result);
    QCOMPARE(cells.emitted->take(), QStringList());
    QCOMPARE(cells.log.take(), QStringList());
    QCOMPARE(cells.plugin().children(), QObjectList());
}

void TestViewCells::reportAFailedQuery()
{
    ViewCells cells;
    const auto *const model = cells.open(u"cell"_s);
    const QVariant result = bookmarks({record(u"b"_s)});
    for (const QString &code : {u"1"_s, u""_s, u"00"_s, u"-999"_s}) {
        const standin::SentCommand query = cells.ask(u"cell"_s);
        cells.answer(query, result, code);
        QCOMPARE(cells.log.takeTexts(),
                 QStringList{u"Tessaline::CommandProcessor, query bookmarks failed"_s});
        QCOMPARE(cells.emitted->take(), responsed("false"));
        // The context has ended with it.
        cells.answer(query, result);
        QCOMPARE(cells.emitted->take(), QStringList());
        QCOMPARE(model->rowCount(), 0);
        cells.call("clearTimelineModel", u"cell"_s);
    }
}

void TestViewCells::forgetAQueryThatWasNotSent()
{
    ViewCells cells;
    const auto *const model = cells.open(u"cell"_s);
    cells.framework.rules().setDefault(standin::Delivery::refused());
    const standin::SentCommand query = cells.ask(u"cell"_s);
    QVERIFY(!query.accepted);
    cells.answer(query, bookmarks({record(u"b"_s)}));
    QCOMPARE(model->rowCount(), 0);
    QCOMPARE(cells.emitted->take(), QStringList());
    QCOMPARE(cells.log.take(), QStringList());

    // Nobody to send it through.
    cells.plugin().InitialPluginBase(nullptr, nullptr, nullptr);
    cells.call("setTimelineBoundary", qint64(1000), qint64(2000), u"cell"_s);
    QCOMPARE(cells.takeSent(), QStringList());
}

void TestViewCells::areNewAfterRemoval()
{
    ViewCells cells;
    const QPointer<QAbstractItemModel> old = cells.open(u"cell"_s);
    const QPointer<QAbstractItemModel> kept = cells.open(u"kept"_s);
    cells.call("removeTimelineModel", u"cell"_s);
    QVERIFY(!old);
    QVERIFY(kept);

    cells.announce(record(u"b"_s));
    cells.answer(u"AddBookmark"_s, record(u"b"_s), u"A"_s);
    QCOMPARE(cells.emitted->take(), QStringList{u"addBookmarkResponsed(true)"_s});
    QCOMPARE(cells.model(u"cell"_s)->rowCount(), 0);
    const standin::SentCommand query = cells.ask(u"cell"_s);
    QCOMPARE(query.relayPath, QString());
    QCOMPARE(query.payload.toMap().value(u"LocationID"_s).toString(), QString());
    cells.answer(query, {});
}

void TestViewCells::dieWithThePlugin()
{
    ViewCells cells;
    QList<QObject *> deaths;
    QList<QPointer<QObject>> models;
    for (const QString &cell : {u"one"_s, u"two"_s}) {
        models.append(cells.open(cell));
        connect(models.constLast(), &QObject::destroyed, this,
                [&](QObject *model) { deaths.append(model); });
    }
    QCOMPARE(cells.plugin().children().size(), 2);
    cells.ask(u"one"_s); // its context outlives the object
    cells.deletePlugin();
    QCOMPARE(deaths.size(), 2);
    QVERIFY(!models.at(0) && !models.at(1));
}

void TestViewCells::surviveTheGarbageCollector()
{
    ViewCells cells;
    QJSEngine engine;
    const QPointer<QAbstractItemModel> model = cells.open(u"cell"_s);
    engine.globalObject().setProperty(u"plugin"_s, engine.newQObject(&cells.plugin()));
    QJSEngine::setObjectOwnership(&cells.plugin(), QJSEngine::CppOwnership);
    const QJSValue rows = engine.evaluate(
        u"(function () { return plugin.getBookmarkModelForTimeline('cell').rowCount(); })()"_s);
    QVERIFY2(!rows.isError(), qPrintable(rows.toString()));
    engine.collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(model);
    cells.announce(record(u"b"_s));
    QCOMPARE(ids(model), u"b"_s);
}

QTEST_GUILESS_MAIN(TestViewCells)
#include "tst_viewcells.moc"
