#include "TimeShiftBufferModel.h"

#include <QtCore/QAbstractItemModel>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtGui/QStandardItem>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QTest>

#include <functional>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qint64 Min = std::numeric_limits<qint64>::min();
constexpr qint64 Max = std::numeric_limits<qint64>::max();
constexpr int DescriptionRole = Qt::UserRole + 16;

using Ranges = QList<std::pair<qint64, qint64>>;
using Action = std::function<void(TimeShiftBufferModel *)>;

QStandardItem *item(const QString &id, qint64 start, const QString &description = {})
{
    auto *made = new QStandardItem;
    made->setData(id, TimeShiftBufferModel::ItemIdRole);
    made->setData(start, TimeShiftBufferModel::StartTimestampRole);
    made->setData(description, DescriptionRole);
    return made;
}

/// Creates items from "id@start id@start:description".
QList<QStandardItem *> items(const QString &words)
{
    QList<QStandardItem *> made;
    const QStringList parts = words.split(u' ', Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        const QString time = part.section(u'@', 1).section(u':', 0, 0);
        made.append(item(part.section(u'@', 0, 0), time.toLongLong(), part.section(u':', 1)));
    }
    return made;
}

/// Returns the rows as "id id:description".
QString content(const QAbstractItemModel *rows)
{
    QStringList texts;
    for (int row = 0; row < rows->rowCount(); ++row) {
        const QModelIndex index = rows->index(row, 0);
        const QString description = index.data(DescriptionRole).toString();
        texts.append(index.data(TimeShiftBufferModel::ItemIdRole).toString() +
                     (description.isEmpty() ? description : u':' + description));
    }
    return texts.join(u' ');
}

} // namespace

class TestTimelineModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { QTest::failOnWarning(QRegularExpression(u"."_s)); }

    void mergesByIdentifierInStartOrder_data();
    void mergesByIdentifierInStartOrder();
    void returnsEveryRole();
    void requestsOnlyUncoveredRanges_data();
    void requestsOnlyUncoveredRanges();
    void slotOnNeedItemsMayMoveTheRangeOrClear();
    void slotMayDeleteTheModel_data();
    void slotMayDeleteTheModel();
};

void TestTimelineModel::mergesByIdentifierInStartOrder_data()
{
    QTest::addColumn<Action>("action");
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("changes");
    const auto add = [](const char *name, const QString &added, const QString &content,
                        const QString &changes) {
        const Action action = [added](auto *model) { model->refillItems(items(added)); };
        QTest::newRow(name) << action << content << changes;
    };
    add("nothing", {}, u"b d"_s, {});
    add("before, between and behind", u"e@50 a@-9223372036854775808 c@30"_s, u"a b c d e"_s,
        u" +2-2 +0-0 +2-2"_s);
    add("same start: by identifier", u"c@20 a@20 B@20"_s, u"B a b c d"_s, u" +1-1 +0-0 +0-0"_s);
    add("known with the same start: in place", u"b@20:new"_s, u"b:new d"_s, u" ~0-0"_s);
    add("known with another start: moved", u"b@60:new"_s, u"d b:new"_s, u" -0-0 +1-1"_s);
    add("twice in one list: the last one counts", u"c@50:1 c@30:2"_s, u"b c:2 d"_s,
        u" +2-2 -2-2 +1-1"_s);
    QTest::newRow("null items") << Action([](auto *model) {
        model->refillItems({nullptr, item(u"a"_s, 1), nullptr});
    }) << u"a b d"_s << u" +0-0"_s;
    QTest::newRow("removing known and unknown ones") << Action([](auto *model) {
        model->removeItems({u"d"_s, u"x"_s, u"b"_s, u"b"_s, {}});
    }) << QString() << u" -1-1 -0-0"_s;
    QTest::newRow("clearing twice, then adding again") << Action([](auto *model) {
        model->clear();
        model->clear();
        model->refillItems(items(u"b@20"_s));
    }) << u"b"_s << u" -0-1 +0-0"_s;
}

void TestTimelineModel::mergesByIdentifierInStartOrder()
{
    QFETCH(const Action, action);
    TimeShiftBufferModel model(TimeShiftBufferModel::defaultRoleHash());
    auto *rows = qobject_cast<QAbstractItemModel *>(model.getModel());
    model.refillItems(items(u"b@20 d@40"_s));
    const QAbstractItemModelTester tester(rows,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    QString changes;
    const auto note = [&changes](const QString &what, int first, int last) {
        changes += u" %1%2-%3"_s.arg(what).arg(first).arg(last);
    };
    connect(rows, &QAbstractItemModel::rowsInserted, this,
            [note](const QModelIndex &, int first, int last) { note(u"+"_s, first, last); });
    connect(rows, &QAbstractItemModel::rowsRemoved, this,
            [note](const QModelIndex &, int first, int last) { note(u"-"_s, first, last); });
    connect(rows, &QAbstractItemModel::modelReset, this, [note] { note(u"reset"_s, 0, 0); });
    connect(rows, &QAbstractItemModel::dataChanged, this,
            [note](const QModelIndex &first, const QModelIndex &last) {
                note(u"~"_s, first.row(), last.row());
            });
    action(&model);
    QTEST(content(rows), "content");
    QTEST(changes, "changes");
}

void TestTimelineModel::returnsEveryRole()
{
    auto roles = TimeShiftBufferModel::defaultRoleHash();
    QCOMPARE(roles.size(), 12);
    roles.insert(DescriptionRole, "descRole");
    TimeShiftBufferModel model(roles);
    auto *filled = new QStandardItem;
    for (int role = Qt::UserRole + 1; role <= Qt::UserRole + 23; ++role)
        filled->setData(role, role);
    model.refillItems({filled});
    const auto *rows = qobject_cast<QAbstractItemModel *>(model.getModel());
    QCOMPARE(rows->roleNames(), roles);
    QCOMPARE(rows->parent(), &model);
    for (int role = Qt::UserRole + 1; role <= Qt::UserRole + 23; ++role)
        QCOMPARE(rows->index(0, 0).data(role), QVariant(role));
}

void TestTimelineModel::requestsOnlyUncoveredRanges_data()
{
    QTest::addColumn<Ranges>("before");
    QTest::addColumn<qint64>("head");
    QTest::addColumn<qint64>("tail");
    QTest::addColumn<Ranges>("asked");
    const auto row = [](const char *name, const Ranges &before, qint64 head, qint64 tail,
                        const Ranges &asked) {
        QTest::newRow(name) << before << head << tail << asked;
    };
    const Ranges islands{{10, 19}, {30, 39}, {50, 59}};
    row("one instant", {}, 7, 7, {{7, 7}});
    row("head behind tail", {}, 8, 7, {});
    row("touching in front", islands, 5, 9, {{5, 9}});
    row("over all", islands, 0, 70, {{0, 9}, {20, 29}, {40, 49}, {60, 70}});
    row("from inside to inside", islands, 15, 55, {{20, 29}, {40, 49}});
    row("touching ranges are one", {{10, 19}, {30, 39}, {20, 29}}, 5, 45, {{5, 9}, {40, 45}});
    row("all of 64 bits", islands, Min, Max, {{Min, 9}, {20, 29}, {40, 49}, {60, Max}});
    row("both ends known", {{Min, Min}, {Max, Max}}, Min, Max, {{Min + 1, Max - 1}});
    row("everything known", {{Min, Max}}, Max, Max, {});
    row("upwards from the lowest", {{Min, Min}}, Min + 1, Min + 1, {{Min + 1, Min + 1}});
}

void TestTimelineModel::requestsOnlyUncoveredRanges()
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

void TestTimelineModel::slotOnNeedItemsMayMoveTheRangeOrClear()
{
    TimeShiftBufferModel model({});
    model.setBoundary(10, 19, -1, 0);
    Ranges asked;
    std::function<void()> reaction = [&model] { model.setBoundary(0, 35, -1, 0); };
    connect(&model, &TimeShiftBufferModel::needItems, this, [&](qint64 first, qint64 last) {
        asked.append({first, last});
        if (const auto once = std::exchange(reaction, {}))
            once();
    });
    model.setBoundary(0, 30, -1, 0);
    QCOMPARE(asked, (Ranges{{0, 9}, {31, 35}, {20, 30}}));

    asked.clear();
    reaction = [&model] { model.clear(); };
    model.setBoundary(-9, 50, -1, 0);
    QCOMPARE(asked, (Ranges{{-9, -1}}));
    model.setBoundary(-9, 50, -1, 0);
    QCOMPARE(asked, (Ranges{{-9, -1}, {-9, 50}}));
}

void TestTimelineModel::slotMayDeleteTheModel_data()
{
    QTest::addColumn<Action>("action");
    const auto row = [](const char *name, const Action &action) { QTest::newRow(name) << action; };
    row("asking", [](auto *model) { model->setBoundary(0, 99, -1, 0); });
    row("inserting", [](auto *model) { model->refillItems(items(u"c@30 d@40"_s)); });
    row("replacing", [](auto *model) { model->refillItems(items(u"a@99 b@20"_s)); });
    row("removing", [](auto *model) { model->removeItems({u"a"_s, u"b"_s}); });
    row("clearing", [](auto *model) { model->clear(); });
}

// The address and leak sanitizers report most of the faults that this test provokes.
void TestTimelineModel::slotMayDeleteTheModel()
{
    QFETCH(const Action, action);
    const QPointer<TimeShiftBufferModel> model = new TimeShiftBufferModel({});
    auto *rows = qobject_cast<QAbstractItemModel *>(model->getModel());
    model->setBoundary(10, 19, -1, 0);
    model->refillItems(items(u"a@10 b@20"_s));
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
