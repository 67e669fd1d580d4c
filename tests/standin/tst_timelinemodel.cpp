#include "TimeShiftBufferModel.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QPointer>
#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>
#include <QtGui/QStandardItem>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>

namespace {

constexpr qint64 Min = std::numeric_limits<qint64>::min();
constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr int DescriptionRole = Qt::UserRole + 16;

struct Bookmark
{
    QString id;
    qint64 start;
    QString description = {};
};

using Bookmarks = QList<Bookmark>;
using Ranges = QList<std::pair<qint64, qint64>>;

QStandardItem *item(const Bookmark &bookmark)
{
    auto *made = new QStandardItem;
    made->setData(bookmark.id, TimeShiftBufferModel::ItemIdRole);
    made->setData(bookmark.start, TimeShiftBufferModel::StartTimestampRole);
    made->setData(bookmark.description, DescriptionRole);
    return made;
}

QList<QStandardItem *> items(const Bookmarks &bookmarks)
{
    QList<QStandardItem *> made;
    for (const Bookmark &bookmark : bookmarks)
        made.append(item(bookmark));
    return made;
}

/// A timeline whose list model is under the eyes of a model tester.
struct Timeline
{
    std::unique_ptr<TimeShiftBufferModel> model =
        std::make_unique<TimeShiftBufferModel>(TimeShiftBufferModel::defaultRoleHash());
    QAbstractItemModel *rows = qobject_cast<QAbstractItemModel *>(model->getModel());
    QAbstractItemModelTester tester{rows, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QStringList log;

    Timeline()
    {
        const auto note = [this](const char *what, int first, int last) {
            log.append(QStringLiteral("%1 %2-%3").arg(QLatin1String(what)).arg(first).arg(last));
        };
        QObject::connect(rows, &QAbstractItemModel::rowsInserted, rows,
                         [note](const QModelIndex &, int f, int l) { note("+", f, l); });
        QObject::connect(rows, &QAbstractItemModel::rowsRemoved, rows,
                         [note](const QModelIndex &, int f, int l) { note("-", f, l); });
        QObject::connect(rows, &QAbstractItemModel::modelReset, rows,
                         [note] { note("reset", 0, 0); });
        QObject::connect(
            rows, &QAbstractItemModel::dataChanged, rows,
            [note](const QModelIndex &f, const QModelIndex &l) { note("~", f.row(), l.row()); });
    }

    /// Identifier and description of every row, as in "a:text b".
    QString content() const
    {
        QStringList texts;
        for (int row = 0; row < rows->rowCount(); ++row) {
            const QModelIndex index = rows->index(row, 0);
            QString text = index.data(TimeShiftBufferModel::ItemIdRole).toString();
            const QString description = index.data(DescriptionRole).toString();
            if (!description.isEmpty())
                text += QLatin1Char(':') + description;
            texts.append(text);
        }
        return texts.join(QLatin1Char(' '));
    }
};

} // namespace

class TestTimelineModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void mergesByIdentifierInStartOrder_data();
    void mergesByIdentifierInStartOrder();
    void removesKnownItems();
    void skipsNullItems();
    void returnsEveryRole();
    void keepsOrderAtTheSizeOfABigTimeline();
    void asksOnlyForWhatIsNotCovered_data();
    void asksOnlyForWhatIsNotCovered();
    void asksAgainAfterClear();
    void slotOnNeedItemsMayMoveTheRange();
    void slotOnNeedItemsMayClear();
    void slotMayDeleteTheModel_data();
    void slotMayDeleteTheModel();
};

void TestTimelineModel::mergesByIdentifierInStartOrder_data()
{
    QTest::addColumn<Bookmarks>("present");
    QTest::addColumn<Bookmarks>("added");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("changes");
    const Bookmarks two{{QStringLiteral("b"), 20}, {QStringLiteral("d"), 40}};

    const auto row = [&two](const char *name, const Bookmarks &added, const char *content,
                            const char *changes) {
        QTest::newRow(name) << two << added << QString::fromLatin1(content)
                            << QString::fromLatin1(changes);
    };
    row("nothing", {}, "b d", "");
    row("before, between and behind",
        {{QStringLiteral("e"), 50}, {QStringLiteral("a"), Min}, {QStringLiteral("c"), 30}},
        "a b c d e", "+ 2-2,+ 0-0,+ 2-2");
    row("same start: by identifier",
        {{QStringLiteral("c"), 20}, {QStringLiteral("a"), 20}, {QStringLiteral("B"), 20}},
        "B a b c d", "+ 1-1,+ 0-0,+ 0-0");
    row("known with the same start: in place", {{QStringLiteral("b"), 20, QStringLiteral("new")}},
        "b:new d", "~ 0-0");
    row("known with another start: moved", {{QStringLiteral("b"), 60, QStringLiteral("new")}},
        "d b:new", "- 0-0,+ 1-1");
    row("twice in one list: the last one counts",
        {{QStringLiteral("c"), 50, QStringLiteral("1")},
         {QStringLiteral("c"), 30, QStringLiteral("2")}},
        "b c:2 d", "+ 2-2,- 2-2,+ 1-1");
}

void TestTimelineModel::mergesByIdentifierInStartOrder()
{
    QFETCH(const Bookmarks, present);
    QFETCH(const Bookmarks, added);
    Timeline timeline;
    timeline.model->refillItems(items(present));
    timeline.log.clear();

    timeline.model->refillItems(items(added));

    QTEST(timeline.content(), "content");
    QTEST(timeline.log.join(QLatin1Char(',')), "changes");
}

void TestTimelineModel::removesKnownItems()
{
    Timeline timeline;
    timeline.model->refillItems(
        items({{QStringLiteral("a"), 1}, {QStringLiteral("b"), 1}, {QStringLiteral("c"), 3}}));
    timeline.log.clear();

    timeline.model->removeItems({QStringLiteral("c"), QStringLiteral("x"), QStringLiteral("a"),
                                 QStringLiteral("a"), QString()});

    QCOMPARE(timeline.content(), QStringLiteral("b"));
    QCOMPARE(timeline.log.join(QLatin1Char(',')), QStringLiteral("- 2-2,- 0-0"));
}

void TestTimelineModel::skipsNullItems()
{
    Timeline timeline;
    timeline.model->refillItems({nullptr, item({QStringLiteral("a"), 1}), nullptr});
    QCOMPARE(timeline.content(), QStringLiteral("a"));
}

void TestTimelineModel::returnsEveryRole()
{
    auto roles = TimeShiftBufferModel::defaultRoleHash();
    QCOMPARE(roles.size(), 12);
    roles.insert(DescriptionRole, "descRole");
    TimeShiftBufferModel model(roles);
    const auto *rows = qobject_cast<QAbstractItemModel *>(model.getModel());
    QVERIFY(rows);
    QCOMPARE(rows->roleNames(), roles);
    QCOMPARE(rows->parent(), &model);

    auto *filled = new QStandardItem;
    for (int role = Qt::UserRole + 1; role <= Qt::UserRole + 23; ++role)
        filled->setData(role, role);
    model.refillItems({filled});
    for (int role = Qt::UserRole + 1; role <= Qt::UserRole + 23; ++role)
        QCOMPARE(rows->index(0, 0).data(role), QVariant(role));
}

void TestTimelineModel::keepsOrderAtTheSizeOfABigTimeline()
{
    // Without the tester, which looks at every row on every change.
    TimeShiftBufferModel model(TimeShiftBufferModel::defaultRoleHash());
    const auto *rows = qobject_cast<QAbstractItemModel *>(model.getModel());
    QRandomGenerator random(7);
    constexpr int Count = 30000;
    QList<qint64> starts;
    QList<QStandardItem *> made;
    for (int i = 0; i < Count; ++i) {
        starts.append(random.bounded(1000000));
        made.append(item({QString::number(i), starts.constLast()}));
    }
    model.refillItems(made);

    std::sort(starts.begin(), starts.end());
    QList<qint64> found;
    for (int row = 0; row < rows->rowCount(); ++row)
        found.append(
            rows->index(row, 0).data(TimeShiftBufferModel::StartTimestampRole).toLongLong());
    QCOMPARE(found, starts);

    QStringList ids;
    for (int i = 0; i < Count; ++i)
        ids.append(QString::number(i));
    model.removeItems(ids);
    QCOMPARE(rows->rowCount(), 0);
}

void TestTimelineModel::asksOnlyForWhatIsNotCovered_data()
{
    QTest::addColumn<Ranges>("before");
    QTest::addColumn<qint64>("head");
    QTest::addColumn<qint64>("tail");
    QTest::addColumn<Ranges>("asked");
    const Ranges islands{{10, 19}, {30, 39}, {50, 59}};

    QTest::newRow("first range") << Ranges{} << qint64(10) << qint64(20) << Ranges{{10, 20}};
    QTest::newRow("one instant") << Ranges{} << qint64(7) << qint64(7) << Ranges{{7, 7}};
    QTest::newRow("head behind tail") << Ranges{} << qint64(8) << qint64(7) << Ranges{};
    QTest::newRow("again") << islands << qint64(30) << qint64(39) << Ranges{};
    QTest::newRow("inside") << islands << qint64(31) << qint64(38) << Ranges{};
    QTest::newRow("touching in front") << islands << qint64(5) << qint64(9) << Ranges{{5, 9}};
    QTest::newRow("just the gap") << islands << qint64(20) << qint64(29) << Ranges{{20, 29}};
    QTest::newRow("over all") << islands << qint64(0) << qint64(70)
                              << Ranges{{0, 9}, {20, 29}, {40, 49}, {60, 70}};
    QTest::newRow("from inside to inside")
        << islands << qint64(15) << qint64(55) << Ranges{{20, 29}, {40, 49}};
    QTest::newRow("touching ranges are one") << Ranges{{10, 19}, {30, 39}, {20, 29}} << qint64(5)
                                             << qint64(45) << Ranges{{5, 9}, {40, 45}};
    QTest::newRow("all of 64 bits")
        << islands << Min << Max << Ranges{{Min, 9}, {20, 29}, {40, 49}, {60, Max}};
    QTest::newRow("both ends known")
        << Ranges{{Min, Min}, {Max, Max}} << Min << Max << Ranges{{Min + 1, Max - 1}};
    QTest::newRow("everything known") << Ranges{{Min, Max}} << Max << Max << Ranges{};
    QTest::newRow("upwards from the lowest")
        << Ranges{{Min, Min}} << Min + 1 << Min + 1 << Ranges{{Min + 1, Min + 1}};
}

void TestTimelineModel::asksOnlyForWhatIsNotCovered()
{
    QFETCH(const Ranges, before);
    QFETCH(const qint64, head);
    QFETCH(const qint64, tail);
    TimeShiftBufferModel model({});
    for (const auto &[first, last] : before)
        model.setBoundary(first, last, -1, 0);
    Ranges asked;
    connect(&model, &TimeShiftBufferModel::needItems, this, [&asked](qint64 first, qint64 last) {
        asked.append({first, last});
    });

    model.setBoundary(head, tail, -1, 0);
    QTEST(asked, "asked");

    asked.clear();
    model.setBoundary(head, tail, -1, 0);
    QCOMPARE(asked, Ranges());
}

void TestTimelineModel::asksAgainAfterClear()
{
    Timeline timeline;
    timeline.model->setBoundary(1, 9, -1, 0);
    timeline.model->refillItems(items({{QStringLiteral("a"), 1}, {QStringLiteral("b"), 2}}));
    timeline.log.clear();
    timeline.model->clear();
    timeline.model->clear();
    QCOMPARE(timeline.log.join(QLatin1Char(',')), QStringLiteral("- 0-1"));

    const QSignalSpy spy(timeline.model.get(), &TimeShiftBufferModel::needItems);
    timeline.model->setBoundary(1, 9, -1, 0);
    QCOMPARE(spy, (QList<QVariantList>{{qint64(1), qint64(9)}}));
    timeline.model->refillItems(items({{QStringLiteral("a"), 3}}));
    QCOMPARE(timeline.content(), QStringLiteral("a"));
}

void TestTimelineModel::slotOnNeedItemsMayMoveTheRange()
{
    TimeShiftBufferModel model({});
    model.setBoundary(10, 19, -1, 0);
    Ranges asked;
    connect(&model, &TimeShiftBufferModel::needItems, this, [&](qint64 first, qint64 last) {
        asked.append({first, last});
        model.setBoundary(0, 35, -1, 0);
    });
    model.setBoundary(0, 30, -1, 0);
    std::sort(asked.begin(), asked.end());
    QCOMPARE(asked, (Ranges{{0, 9}, {20, 30}, {31, 35}}));
}

void TestTimelineModel::slotOnNeedItemsMayClear()
{
    TimeShiftBufferModel model({});
    model.setBoundary(10, 19, -1, 0);
    Ranges asked;
    connect(&model, &TimeShiftBufferModel::needItems, this, [&](qint64 first, qint64 last) {
        asked.append({first, last});
        if (asked.size() == 1)
            model.clear();
    });
    model.setBoundary(0, 30, -1, 0);
    QCOMPARE(asked, (Ranges{{0, 9}}));
    model.setBoundary(0, 30, -1, 0);
    QCOMPARE(asked, (Ranges{{0, 9}, {0, 30}}));
}

void TestTimelineModel::slotMayDeleteTheModel_data()
{
    using Action = std::function<void(TimeShiftBufferModel *)>;
    QTest::addColumn<Action>("action");
    const auto row = [](const char *name, const Action &action) { QTest::newRow(name) << action; };
    const Bookmarks more{{QStringLiteral("c"), 30}, {QStringLiteral("d"), 40}};
    const Bookmarks again{{QStringLiteral("a"), 99}, {QStringLiteral("b"), 20}};
    row("asking", [](auto *model) { model->setBoundary(0, 99, -1, 0); });
    row("inserting", [more](auto *model) { model->refillItems(items(more)); });
    row("replacing", [again](auto *model) { model->refillItems(items(again)); });
    row("removing", [](auto *model) {
        model->removeItems({QStringLiteral("a"), QStringLiteral("b")});
    });
    row("clearing", [](auto *model) { model->clear(); });
}

// Its worth shows under the address and leak sanitizers.
void TestTimelineModel::slotMayDeleteTheModel()
{
    QFETCH(const std::function<void(TimeShiftBufferModel *)>, action);
    const QPointer<TimeShiftBufferModel> model = new TimeShiftBufferModel({});
    auto *rows = qobject_cast<QAbstractItemModel *>(model->getModel());
    model->setBoundary(10, 19, -1, 0);
    model->refillItems(items({{QStringLiteral("a"), 10}, {QStringLiteral("b"), 20}}));
    const auto destroy = [&model] { delete model; };
    connect(model, &TimeShiftBufferModel::needItems, this, destroy);
    connect(rows, &QAbstractItemModel::rowsInserted, this, destroy);
    connect(rows, &QAbstractItemModel::rowsRemoved, this, destroy);
    connect(rows, &QAbstractItemModel::dataChanged, this, destroy);

    action(model);

    QVERIFY(model.isNull());
}

QTEST_GUILESS_MAIN(TestTimelineModel)
#include "tst_timelinemodel.moc"
