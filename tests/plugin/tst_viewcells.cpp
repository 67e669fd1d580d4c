#include "Describe.h"
#include "PluginHarness.h"

#include "PluginBase.h"

#include <QtCore/QAbstractItemModel>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QTest>

#include <limits>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

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
    QAbstractItemModel *open(const QString &cell, const QString &relayPath = u"A"_s)
    {
        focus(cell, relayPath);
        return model(cell);
    }
    QAbstractItemModel *model(const QString &cell)
    {
        auto *const model = qobject_cast<QAbstractItemModel *>(
            call<QObject *>("getBookmarkModelForTimeline", cell));
        if (!model->findChild<QAbstractItemModelTester *>()) {
            new QAbstractItemModelTester(
                model, QAbstractItemModelTester::FailureReportingMode::Fatal, model);
        }
        return model;
    }
    void focus(const QString &cell, const QString &relayPath, const QString &location = u"loc"_s)
    {
        call("setTimelineFocusInfo", location, relayPath, cell);
    }
    void show(const QString &cell, qint64 head, qint64 tail)
    {
        call("setTimelineBoundary", head, tail, cell);
    }
    /// Moves the visible range and gives what is sent for it.
    standin::SentCommand ask(const QString &cell, qint64 head = 1, qint64 tail = 100)
    {
        show(cell, head, tail);
        return onlySent();
    }
    void announce(const QVariant &data, const QString &relayPath = u"A"_s)
    {
        plugin().EventProcessor(u"AddBookmark"_s, 0, 0, 0, data, relayPath);
    }
    /// All signals and log lines since the last call.
    QString heard() { return (emitted->take() + log.takeTexts()).join(u" | "_s); }
};

QString ids(const QAbstractItemModel *model)
{
    return rowsOf(model, Qt::UserRole + 1).join(u' ');
}

const char *const shown = "queryBookmarkForTimelineResponsed(true)";

} // namespace

/// The timeline models of the client's view cells.
class TestViewCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void haveOneModelEach()
    {
        ViewCells cells;
        QAbstractItemModel *const first = cells.model(u"one"_s);
        QCOMPARE(cells.model(u"one"_s), first);
        QVERIFY(cells.model(u"ONE"_s) != first);
        QVERIFY(cells.model({}) != first);

        // The focus may come first or last; it empties the model that is there, and no other.
        cells.focus(u"early"_s, u"B"_s);
        QAbstractItemModel *const early = cells.model(u"early"_s);
        for (const bool byFocus : {true, false}) {
            cells.announce(record(u"b"_s), u"B"_s);
            for (const QString &cell : {u"other"_s, u"early"_s}) {
                QCOMPARE(ids(early), u"b"_s);
                if (byFocus)
                    cells.focus(cell, u"B"_s);
                else
                    cells.call("clearTimelineModel", cell);
            }
            QCOMPARE(ids(early), QString());
        }
        QCOMPARE(cells.takeSent(), QStringList());
    }

    void doNothingWhenUnknown()
    {
        ViewCells cells;
        cells.focus(u"focused"_s, u"A"_s);
        for (const QString &cell : {u"cell"_s, u"focused"_s}) {
            cells.call("clearTimelineModel", cell);
            cells.show(cell, 1, 2);
        }
        cells.call("removeTimelineModel", u"cell"_s);
        QCOMPARE(cells.takeSent(), QStringList());
        QCOMPARE(cells.plugin().children(), QObjectList());
        QCOMPARE(cells.heard(), QString());
    }

    void askForWhatTheyShow()
    {
        constexpr qint64 Min = std::numeric_limits<qint64>::min();
        constexpr qint64 Max = std::numeric_limits<qint64>::max();
        const std::tuple<QString, qint64, qint64> asked[] = {
            {u"A"_s, 7, 7}, {u""_s, -9, 0}, {u"%2/%1"_s, Min, Max}};
        for (const auto &[relayPath, head, tail] : asked) {
            ViewCells cells;
            cells.model(u"cell"_s);
            cells.focus(u"cell"_s, relayPath, u"%1 Ü"_s);
            const standin::SentCommand query = cells.ask(u"cell"_s, head, tail);
            QCOMPARE(query.command + u'@' + query.relayPath,
                     u"QueryBookmarkForTimeline@"_s + relayPath);
            QCOMPARE(query.pluginID, PluginHarness::pluginID());
            QVERIFY(query.context && !query.flag);
            QCOMPARE(describe(query.payload), describe(QVariantMap{{u"LocationID"_s, u"%1 Ü"_s},
                                                                   {u"StartTimestamp"_s, head},
                                                                   {u"EndTimestamp"_s, tail}}));
        }
    }

    void showWhatMatchesTheirFocus()
    {
        const QVariant mixed = bookmarks({record(u"b1"_s), record(u"b2"_s, u"LOC"_s), u"no map"_s,
                                          record(u"b3"_s, u"loc "_s), record(u"b0"_s)});
        // What comes from which station, for which focus by then, and what of it is shown.
        const std::tuple<QVariant, QString, QString, QString, QString> answers[] = {
            {mixed, u"A"_s, u"A"_s, u"loc"_s, u"b0 b1"_s},
            {mixed, u"a"_s, u"A"_s, u"loc"_s, {}},
            {mixed, u"A"_s, u"B"_s, u"loc"_s, {}},
            {mixed, u"A"_s, u"A"_s, u"elsewhere"_s, {}},
            {bookmarks({}), u"A"_s, u"A"_s, u"loc"_s, {}},
            {5, u"A"_s, u"A"_s, u"loc"_s, {}}};
        for (const auto &[result, station, relayPath, location, rows] : answers) {
            ViewCells cells;
            const auto *const model = cells.open(u"cell"_s);
            const auto *const other = cells.open(u"other"_s);
            const standin::SentCommand query = cells.ask(u"cell"_s);
            cells.focus(u"cell"_s, relayPath, location);
            cells.answer(query.command, result, station, query.context);
            QCOMPARE(ids(model), rows);
            QCOMPARE(other->rowCount(), 0);
            QCOMPARE(cells.heard(), QLatin1String(shown));
        }
    }

    void ignoreAnswersThatAreNotTheirs()
    {
        ViewCells cells;
        const auto *const model = cells.open(u"cell"_s);
        const QVariant result = bookmarks({record(u"b"_s)});
        const standin::SentCommand query = cells.ask(u"cell"_s);
        QString stranger = u"cell"_s;
        for (void *context : {static_cast<void *>(nullptr), static_cast<void *>(&stranger)})
            cells.answer(query.command, result, u"A"_s, context);
        // A context of one kind is none of another kind.
        cells.answer(u"AddBookmarks"_s, QVariantList{record(u"b"_s)}, u"A"_s, query.context);
        QCOMPARE(model->rowCount(), 0);
        QCOMPARE(cells.heard(), QString());

        cells.answer(query, result);
        QCOMPARE(ids(model), u"b"_s);
        QCOMPARE(cells.heard(), QLatin1String(shown));
        cells.call("clearTimelineModel", u"cell"_s);
        cells.answer(query, result); // once more
        QCOMPARE(model->rowCount(), 0);

        const standin::SentCommand removed = cells.ask(u"cell"_s);
        cells.call("removeTimelineModel", u"cell"_s);
        cells.answer(removed, result);
        QCOMPARE(cells.heard(), QString());
        QCOMPARE(cells.plugin().children(), QObjectList());
    }

    void reportAFailedQuery()
    {
        ViewCells cells;
        const auto *const model = cells.open(u"cell"_s);
        for (const QString &code : {u"1"_s, u""_s, u"00"_s}) {
            const standin::SentCommand query = cells.ask(u"cell"_s);
            cells.answer(query, bookmarks({record(u"b"_s)}), code);
            QCOMPARE(cells.heard(), u"queryBookmarkForTimelineResponsed(false) | "
                                    "Tessaline::CommandProcessor, query bookmarks failed"_s);
            cells.answer(query, bookmarks({record(u"b"_s)})); // its context has ended
            QCOMPARE(model->rowCount(), 0);
            QCOMPARE(cells.heard(), QString());
            cells.call("clearTimelineModel", u"cell"_s);
        }
    }

    void forgetAQueryThatWasNotSent()
    {
        ViewCells cells;
        const auto *const model = cells.open(u"cell"_s);
        cells.framework.rules().setDefault(standin::Delivery::refused());
        cells.answer(cells.ask(u"cell"_s), bookmarks({record(u"b"_s)}));
        QCOMPARE(model->rowCount(), 0);
        cells.plugin().InitialPluginBase(nullptr, nullptr, nullptr);
        cells.show(u"cell"_s, 1000, 2000); // nobody to send it through
        QCOMPARE(cells.takeSent(), QStringList());
        QCOMPARE(cells.heard(), QString());
    }

    void areNewAfterRemoval()
    {
        ViewCells cells;
        const QPointer<QAbstractItemModel> old = cells.open(u"cell"_s);
        const QPointer<QAbstractItemModel> kept = cells.open(u"kept"_s);
        cells.call("removeTimelineModel", u"cell"_s);
        QVERIFY(!old && kept);

        cells.announce(record(u"b"_s));
        QCOMPARE(cells.model(u"cell"_s)->rowCount(), 0);
        const standin::SentCommand query = cells.ask(u"cell"_s);
        QCOMPARE(query.relayPath, QString());
        QCOMPARE(query.payload.toMap().value(u"LocationID"_s).toString(), QString());
    }

    void dieWithThePlugin()
    {
        ViewCells cells;
        const QPointer<QAbstractItemModel> one = cells.open(u"one"_s);
        const QPointer<QAbstractItemModel> two = cells.open(u"two"_s);
        QCOMPARE(cells.plugin().children().size(), 2);
        cells.ask(u"one"_s); // its context outlives the object
        cells.deletePlugin();
        QVERIFY(!one && !two);
    }
};

QTEST_GUILESS_MAIN(TestViewCells)
#include "tst_viewcells.moc"
