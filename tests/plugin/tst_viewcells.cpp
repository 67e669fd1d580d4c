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

constexpr int ItemIdRole = Qt::UserRole + 1;

/// Plays steps like "model c; focus c A loc; show c 1 9; answer A b1 b2/elsewhere", where c is a
/// view cell, A a station and b2/elsewhere a bookmark at another location than "loc".
class ViewCells : public PluginHarness
{
public:
    QString play(const QString &steps)
    {
        const QStringList list = steps.split(u"; "_s);
        for (const QString &step : list) {
            const QStringList words = step.split(u' ');
            play(words.at(0), words.value(1), words.mid(2));
        }
        return (m_sent + emitted->take() + log.takeTexts() + rows()).join(u' ');
    }
    QAbstractItemModel *model(const QString &cell)
    {
        QObject *const model = call<QObject *>("getBookmarkModelForTimeline", cell);
        m_models.insert(cell, qobject_cast<QAbstractItemModel *>(model));
        if (!model->findChild<QAbstractItemModelTester *>()) {
            new QAbstractItemModelTester(
                m_models[cell], QAbstractItemModelTester::FailureReportingMode::Fatal, model);
        }
        return m_models[cell];
    }

private:
    static QVariantMap record(const QString &word)
    {
        const QString location = word.contains(u'/') ? word.section(u'/', 1) : u"loc"_s;
        return serverRecord(word.section(u'/', 0, 0), u"1"_s, location, 5, 6);
    }
    void play(const QString &verb, const QString &name, const QStringList &words)
    {
        QVariantList records{u"no map"_s};
        for (const QString &word : words)
            records.append(record(word));
        const QVariant result = QVariantMap{{u"Bookmarks"_s, records}};

        if (verb == "model"_L1)
            model(name);
        else if (verb == "focus"_L1)
            call("setTimelineFocusInfo", words.value(1), words.value(0), name);
        else if (verb == "show"_L1)
            call("setTimelineBoundary", words.at(0).toLongLong(), words.at(1).toLongLong(), name);
        else if (verb == "clear"_L1)
            call("clearTimelineModel", name);
        else if (verb == "remove"_L1)
            call("removeTimelineModel", name);
        else if (verb == "event"_L1)
            plugin().EventProcessor(u"AddBookmark"_s, 0, 0, 0, records.constLast(), name);
        else if (verb == "answer"_L1)
            answer(m_query.command, result, name, m_query.context);
        else if (verb == "garbage"_L1)
            answer(m_query.command, 5, name, m_query.context);
        else if (verb == "stranger"_L1)
            answer(m_query.command, result, name, this);
        else if (verb == "nobody"_L1)
            answer(m_query.command, result, name, nullptr);
        else if (verb == "batch"_L1)
            answer(u"AddBookmarks"_s, records, name, m_query.context);
        else if (verb == "update"_L1)
            answer(u"UpdateBookmark"_s, {}, name, m_query.context, u"-1"_s);
        else if (verb == "fail"_L1)
            answer(m_query.command, result, name, m_query.context, words.value(0));
        else if (verb == "refuse"_L1)
            framework.rules().setDefault(standin::Delivery::refused());
        else
            qFatal("no such step: %s", qPrintable(verb));

        if (!sent().isEmpty())
            m_query = sent().constLast();
        m_sent += takeSent();
    }
    /// Each view cell with the rows that it shows, as "c[b1 b2]".
    QStringList rows() const
    {
        QStringList rows;
        for (auto it = m_models.cbegin(); it != m_models.cend(); ++it) {
            if (*it)
                rows.append(it.key() + u'[' + rowsOf(*it, ItemIdRole).join(u' ') + u']');
        }
        return rows;
    }

    QMap<QString, QPointer<QAbstractItemModel>> m_models;
    standin::SentCommand m_query;
    QStringList m_sent;
};

} // namespace

/// The timeline models of the client's view cells.
class TestViewCells : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showTheirBookmarks_data()
    {
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("outcome");

        const auto row = [](const char *title, const char *steps, const char *outcome) {
            QTest::newRow(title) << QString::fromLatin1(steps) << QString::fromLatin1(outcome);
        };
        row("focus first", "focus c A loc; model c; event A b", "c[b]");
        row("focus last", "model c; focus c A loc; event A b", "c[b]");
        row("focus empties", "model c; focus c A loc; event A b; focus c A loc", "c[]");
        row("clear empties", "model c; focus c A loc; event A b; clear c", "c[]");
        row("others do not", "model c; focus c A loc; event A b; focus d A loc; clear d", "c[b]");
        row("unknown cell", "clear c; remove c; show c 1 9", "");
        row("no model", "focus c A loc; show c 1 9; clear c; event A b", "");
        row("no focus", "model c; show c 1 9", "Query@ c[]");
        row("removed", "model c; focus c A loc; remove c; model c; event A b; show c 1 9",
            "Query@ c[]");

        // Of an answer only what matches the focus that the cell has by then is shown.
        const QString ask = u"model c; model d; focus c A loc; focus d A loc; show c 1 9; "_s;
        const auto asked = [&](const char *title, const char *steps, const char *outcome) {
            QTest::newRow(title) << ask + QLatin1String(steps)
                                 << u"Query@A "_s + QLatin1String(outcome);
        };
        asked("records of the location", "answer A b1 b2/LOC b3/ b0",
              "responsed(true) c[b0 b1] d[]");
        asked("another case of the station", "answer a b", "responsed(true) c[] d[]");
        asked("moved to another station", "focus c B loc; answer A b", "responsed(true) c[] d[]");
        asked("moved within the station", "focus c A l; answer A b", "responsed(true) c[] d[]");
        asked("not even a map", "garbage A", "responsed(true) c[] d[]");
        asked("an unknown context", "stranger A b; nobody A b", "c[] d[]");
        asked("a context of another kind", "batch A b", "c[] d[]");
        asked("answered twice", "answer A b; clear c; answer A b", "responsed(true) c[] d[]");
        asked("removed meanwhile", "remove c; answer A b", "d[]");
        asked("a failure of another kind", "update A; answer A b",
              "updateBookmarkResponsed(false) responsed(true) Tessaline::CommandProcessor, update "
              "bookmark failed c[b] d[]");
        const char *const failed = "responsed(false) "
                                   "Tessaline::CommandProcessor, query bookmarks failed c[] d[]";
        asked("failed", "fail A 1; answer A b", failed);
        asked("failed with nearly a success", "fail A 00; answer A b", failed);
        asked("failed without a code", "fail A ; answer A b", failed);
        row("refused", "model c; focus c A loc; refuse; show c 1 9; answer A b", "!Query@A c[]");
    }
    void showTheirBookmarks()
    {
        QFETCH(const QString, steps);
        QFETCH(const QString, outcome);

        ViewCells cells;
        QString actual = cells.play(steps);
        actual.replace("QueryBookmarkForTimeline@"_L1, "Query@"_L1);
        QCOMPARE(actual.replace("queryBookmarkForTimelineResponsed("_L1, "responsed("_L1), outcome);
    }

    void askForWhatTheyShow()
    {
        constexpr qint64 Min = std::numeric_limits<qint64>::min();
        constexpr qint64 Max = std::numeric_limits<qint64>::max();
        for (const auto &[relayPath, head, tail] :
             {std::tuple(u"A"_s, 7LL, 7LL), {u""_s, -9LL, 0LL}, {u"%2/%1"_s, Min, Max}}) {
            ViewCells cells;
            cells.openViewCell(u"cell"_s, u"%1 Ü"_s, relayPath);
            cells.call("setTimelineBoundary", head, tail, u"cell"_s);
            const standin::SentCommand query = cells.onlySent();
            QCOMPARE(query.command, u"QueryBookmarkForTimeline"_s);
            QCOMPARE(query.relayPath, relayPath);
            QCOMPARE(query.pluginID, PluginHarness::pluginID());
            QVERIFY(query.context && !query.flag);
            QCOMPARE(describe(query.payload), describe(QVariantMap{{u"LocationID"_s, u"%1 Ü"_s},
                                                                   {u"StartTimestamp"_s, head},
                                                                   {u"EndTimestamp"_s, tail}}));
        }
    }

    void haveOneModelEachWhichDiesWithIt()
    {
        ViewCells cells;
        const QPointer<QAbstractItemModel> old = cells.model(u"cell"_s);
        const QPointer<QAbstractItemModel> other = cells.model(u"CELL"_s);
        QVERIFY(other != old);
        QCOMPARE(cells.model(u"cell"_s), old);
        cells.call("removeTimelineModel", u"cell"_s);
        QVERIFY(!old && other);
        QCOMPARE(cells.plugin().children().size(), 1);
        cells.play(u"show CELL 1 9"_s);
        cells.deletePlugin(); // before the answer
        QVERIFY(!other);
    }
};

QTEST_GUILESS_MAIN(TestViewCells)
#include "tst_viewcells.moc"
