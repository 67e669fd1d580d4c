#include "DataTable.h"
#include "MarkLayout.h"
#include "RowChanges.h"
#include "TimeAxis.h"

#include <QtCore/QDateTime>
#include <QtGui/QStandardItemModel>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace workbench;

namespace {

/// A row: a letter as its identity, and a number as its value.
struct Item
{
    QString text;

    bool operator==(const Item &other) const { return text == other.text; }
    bool isSameAs(const Item &other) const { return text.at(0) == other.text.at(0); }
    QList<int> differsIn(const Item &other) const
    {
        return isSameAs(other) ? QList<int>{Qt::UserRole} : QList<int>();
    }
};

class ItemModel : public QAbstractListModel
{
public:
    RowList<Item> rows;

    int rowCount(const QModelIndex &parent = {}) const override
    {
        return parent.isValid() ? 0 : rows.size();
    }
    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::UserRole ? rows.at(index.row()).text : QVariant();
    }
    void show(const QString &texts)
    {
        QList<Item> items;
        for (const QString &text : texts.split(u' ', Qt::SkipEmptyParts))
            items.append({text});
        rows.replace(*this, items);
    }

private:
    friend class RowList<Item>;
};

constexpr qint64 Origin = 2'800'000; ///< time at the left end of the layout
constexpr int PixelMs = 100;

constexpr int StartRole = Qt::UserRole; ///< first role of the source
constexpr int DescriptionRole = StartRole + 2;

/// A timeline model with rows from texts: "10-20:van" in pixels, "10-20:van@d" of camera d.
std::unique_ptr<QStandardItemModel> sourceOf(const QString &marks)
{
    const QByteArrayList names{"startTimestampRole", "endTimestampRole", "descRole",
                               "bookmarkIDRole",     "cameraIDRole",     "relayPathRole"};
    QHash<int, QByteArray> roles;
    for (const QByteArray &name : names)
        roles.insert(StartRole + int(roles.size()), name);
    auto model = std::make_unique<QStandardItemModel>();
    model->setItemRoleNames(roles);
    for (const QString &mark : marks.split(u' ', Qt::SkipEmptyParts)) {
        const QStringList parts = QString(mark).replace(u'@', u':').replace(u'-', u':').split(u':');
        const auto time = [&](int part) { return Origin + PixelMs * parts.at(part).toInt(); };
        auto *item = new QStandardItem;
        int role = StartRole;
        for (const QVariant &value :
             {QVariant(time(0)), QVariant(time(1)), QVariant(parts.at(2)),
              QVariant(u"id-"_s + parts.at(2)), QVariant(parts.value(3, u"c"_s)), QVariant(u"r"_s)})
            item->setData(value, role++);
        model->appendRow(item);
    }
    return model;
}

/// A layout of 600 pixels.
struct Timeline
{
    std::unique_ptr<QStandardItemModel> source;
    VisibleRange range;
    MarkLayout layout;

    explicit Timeline(const QString &marks)
        : source(sourceOf(marks))
    {
        range.show(Origin, Origin + 600 * qint64(PixelMs));
        layout.setRange(&range);
        layout.setWidth(600);
        layout.setLanes(2);
        layout.setCamera({{u"cameraID"_s, u"c"_s}, {u"relayPath"_s, u"r"_s}});
        layout.setSource(source.get());
        layout.update();
    }
};

qint64 timeOf(const QString &text)
{
    return QDateTime::fromString(text, Qt::ISODateWithMs).toMSecsSinceEpoch();
}

} // namespace

/// Tests the classes of the timeline: visible range, bars and ticks.
class TestTimelines : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void actionsChangeTheVisibleRange_data()
    {
        addTable({"steps", "range", "changes"}, uR"(
too short           | show 1000000 1059999                          | 999999+60000    | 1
too long            | show 0 700000000                              | 8800000+691200000 | 1
turned round        | show 2000000 1000000                          | 940000+60000    | 1
before all          | show -500000 30000                            | 0+60000         | 1
after all           | show 253402300000000 999999999999999          | 253402300000000+799999 | 1
the same once more  | show 0 86400000; move 0; reveal 5; zoom 7 1   | 0+86400000      | 0
moved too far back  | move 9; move -10                              | 0+86400000      | 2
moved too far       | move 9223372036854775807                      | 253402214399999+86400000 | 1
out about a middle  | show 1000000 1100000; zoom 1050000 2          | 950000+200000   | 2
in about an end     | show 1000000 1100000; zoom 1100000 0.8        | 1020000+80000   | 2
in as far as it goes| show 1000000 1100000; zoom 1025000 0.1        | 1010000+60000   | 2
out at the start    | show 50000 150000; zoom 150000 2              | 0+200000        | 2
first is seen       | show 1000000 1100000; reveal 1000000          | 1000000+100000  | 1
last is seen        | show 1000000 1100000; reveal 1100000          | 1000000+100000  | 1
one before is not   | show 1000000 1100000; reveal 999999           | 949999+100000   | 2
one after is not    | show 1000000 1100000; reveal 1100001          | 1050001+100000  | 2
before time         | show 1000000 1100000; reveal -7               | 0+100000        | 2
runs out            | show 1000000 1100000; follow 1100000 1100001  | 1005001+100000  | 2
up to the end       | show 1000000 1100000; follow 1000000 1100000  | 1000000+100000  | 1
ran elsewhere       | show 1000000 1100000; follow 1100001 1200000  | 1000000+100000  | 1)"_s);
    }
    void actionsChangeTheVisibleRange()
    {
        QFETCH(const QString, steps);
        VisibleRange range;
        const QSignalSpy changed(&range, &VisibleRange::changed);
        for (const QString &step : steps.split(u"; "_s)) {
            const QStringList words = step.split(u' ');
            const qint64 first = words.at(1).toLongLong();
            const qint64 second = words.value(2).toLongLong();
            if (words.at(0) == u"show")
                range.show(first, second);
            else if (words.at(0) == u"move")
                range.moveBy(first);
            else if (words.at(0) == u"zoom")
                range.zoomAbout(first, words.at(2).toDouble());
            else if (words.at(0) == u"reveal")
                range.reveal(first);
            else
                range.follow(first, second);
        }
        QTEST(u"%1+%2"_s.arg(qint64(range.from())).arg(qint64(range.span())), "range");
        QCOMPARE(range.to(), range.from() + range.span());
        QTEST(QString::number(changed.count()), "changes");
    }

    void requestedRangeHasWholeSteps_data()
    {
        // A step is a quarter of what is visible.
        addTable({"from", "asked"}, uR"(
on a step       | 1000000 | 975000-1150000
just before one | 1024999 | 975000-1150000
on the next     | 1025000 | 1000000-1175000
at the start    | 0       | 0-150000)"_s);
    }
    void requestedRangeHasWholeSteps()
    {
        const qint64 from = numberIn("from");
        VisibleRange range;
        range.show(from, from + 100'000);
        QTEST(u"%1-%2"_s.arg(qint64(range.requestedFrom())).arg(qint64(range.requestedTo())),
              "asked");
    }

    void rowsAreInsertedAndRemovedAtTheEnds_data()
    {
        addTable({"before", "after", "changes"}, uR"(
the same        | a1 b1    | a1 b1    |
from nothing    |          | a1 b1    | +0-1
to nothing      | a1 b1    |          | -0-1
one way         | a1 b1 c1 | b1 c1 d1 | -0-0 +2-2
the other way   | b1 c1 d1 | a1 b1 c1 | +0-0 -3-3
both ends       | b1 c1    | a1 b1 c1 d1 | +0-0 +3-3
changed         | a1 b1 c1 | a1 b2 c1 | ~1-1/1
way and changed | a1 b1 c1 | b2 c1    | -0-0 ~0-0/1
out of a middle | a1 b1 c1 | a1 c1    | -2-2 ~1-1
others          | a1 b1    | x1 y1 z1 | ~0-0 ~1-1 +2-2)"_s);
    }
    void rowsAreInsertedAndRemovedAtTheEnds()
    {
        QFETCH(const QString, before);
        QFETCH(const QString, after);
        ItemModel model;
        const QAbstractItemModelTester tester(&model);
        model.show(before);
        RowChanges changes(model);
        model.show(after);
        QTEST(changes.take(), "changes");
        QStringList shown;
        for (const Item &item : model.rows)
            shown.append(item.text);
        QCOMPARE(shown.join(u' '), after);
    }

    void bookmarksAreArrangedAsBars_data()
    {
        // Times in milliseconds, 100 per pixel. Bars as "left+width/lane*count".
        addTable({"lanes", "marks", "bars"}, uR"(
a gap between       | 2 | 0..1000 1100..2100             | 0+1000/0*1 1100+1000/0*1
less than a gap     | 2 | 0..1000 1099..2099             | 0+1000/0*1 1099+1000/1*1
just not narrow     | 2 | 0..800 750..1500               | 0+800/0*1 750+750/1*1
narrow              | 2 | 0..799 750..1500               | 0+2700/0*2
narrow ones touch   | 2 | 0..0 500..500                  | 0+2700/0*2
narrow ones do not  | 2 | 0..0 501..501                  | 0+400/0*1 501+400/0*1
at a bucket's end   | 2 | 2750..2750 2800..2800          | 2300+400/0*1 2800+400/0*1
no lanes are one    | 0 | 0..1000 500..2000              | 0+1000/0*1 500+1500/0*1
the same twice      | 1 | 0..1000 0..1000                | 0+1000/0*2
the end of time     | 2 | 0..9223372036854775807 5000..6000 | 0+far/0*1 5000+1000/1*1
all of time         | 2 | -9223372036854775808..9223372036854775807 5000..6000 | far+far/0*1 5000+1000/1*1
the last moment     | 2 | 9223372036854775807..9223372036854775807 | far+400/0*1)"_s);
    }
    void bookmarksAreArrangedAsBars()
    {
        QFETCH(const QString, marks);
        std::vector<Mark> list;
        for (const QString &mark : marks.split(u' '))
            list.push_back({mark.section(u".."_s, 0, 0).toLongLong(),
                            mark.section(u".."_s, 1).toLongLong(), int(list.size())});
        const auto pixels = [](qint64 ms) {
            return std::abs(ms) > 1LL << 60 ? u"far"_s : QString::number(ms);
        };
        QStringList bars;
        for (const MarkBar &bar : arrangeMarks(list, PixelMs, int(numberIn("lanes"))))
            bars.append(u"%1+%2/%3*%4"_s.arg(pixels(bar.left), pixels(bar.right - bar.left))
                            .arg(bar.lane)
                            .arg(bar.count));
        QTEST(bars.join(u' '), "bars");
    }

    void barHasTextAndTimes_data()
    {
        addTable({"marks", "told"}, uR"(
one               | 0-20:a                     | id-a 0..20 a
of several        | 0-1:a 2-5:b 3-4:c          | id-a 0..5 a/b/c
the first five    | 0-1:a 1-1:b 2-2:c 3-3:d 4-4:e | id-a 0..4 a/b/c/d/e
more than five    | 0-1:a 1-1:b 2-2:c 3-3:d 4-4:e 5-5:f | id-a 0..5 a/b/c/d/e/…
not in order      | 4-5:b 2-6:a                | id-a 2..6 a/b
of other cameras  | 0-1:x@d 2-3:a 2-3:y@d      | id-a 2..3 a
end before start  | 30-10:a                    | id-a 30..30 a)"_s);
    }
    void barHasTextAndTimes()
    {
        QFETCH(const QString, marks);
        const Timeline timeline(marks);
        QCOMPARE(timeline.layout.rowCount(), 1);
        const QVariantMap row = timeline.layout.row(0);
        const auto pixel = [&](const char *key) {
            return (row.value(QLatin1String(key)).toLongLong() - Origin) / PixelMs;
        };
        QTEST(u"%1 %2..%3 %4"_s.arg(row.value(u"bookmarkID"_s).toString())
                  .arg(pixel("start"))
                  .arg(pixel("end"))
                  .arg(row.value(u"text"_s).toString().replace(u'\n', u'/')),
              "told");
    }

    void nextAndPreviousStartAreFound()
    {
        Timeline timeline(u"30-40:d 10-15:a 20-90:b 20-25:c 12-13:x@d"_s);
        const auto pixels = [](qint64 time) { return time < 0 ? time : (time - Origin) / PixelMs; };
        QList<qint64> after;
        QList<qint64> before;
        for (const int x : {9, 10, 15, 20, 30, 31}) {
            after.append(pixels(timeline.layout.startAfter(Origin + x * PixelMs)));
            before.append(pixels(timeline.layout.startBefore(Origin + x * PixelMs)));
        }
        QCOMPARE(after, (QList<qint64>{10, 20, 20, 30, -1, -1}));
        QCOMPARE(before, (QList<qint64>{-1, -1, 10, 10, 20, 30}));
    }

    /// Otherwise each frame of a pan would update all roles of all delegates.
    void panningChangesOnlyPositions()
    {
        Timeline timeline(u"20-40:a 60-90:b"_s);
        RowChanges changes(timeline.layout);
        timeline.range.moveBy(PixelMs);
        timeline.layout.update();
        QCOMPARE(changes.take(), u"~0-0/2 ~1-1/2"_s);
        QCOMPARE(timeline.layout.row(1).value(u"barX"_s).toDouble(), 59.0);
        timeline.source->item(1)->setData(u"c"_s, DescriptionRole);
        timeline.layout.update();
        QCOMPARE(changes.take(), u"~1-1"_s);
        timeline.layout.update();
        QCOMPARE(changes.take(), QString());
    }

    void onlyRelevantChangesOutdateTheLayout()
    {
        VisibleRange next;
        const auto other = sourceOf(u"1-2:b"_s);
        Timeline timeline(u"20-40:a"_s);
        TimeAxis axis;
        axis.setRange(&timeline.range);
        axis.setWidth(600);
        QStringList outdated;
        const auto note = [&](const QString &what) {
            return [&outdated, what] { outdated.append(what); };
        };
        connect(&timeline.layout, &MarkLayout::outdated, this, note(u"marks"_s));
        connect(&axis, &TimeAxis::outdated, this, note(u"axis"_s));
        timeline.range.moveBy(5);
        timeline.source->item(0)->setData(u"c"_s, DescriptionRole);
        QCOMPARE(outdated.join(u' '), u"marks axis marks"_s);

        timeline.layout.setSource(other.get());
        timeline.layout.setRange(&next);
        axis.setRange(&next);
        outdated.clear();
        timeline.source->clear();
        timeline.range.moveBy(5);
        QCOMPARE(outdated, QStringList());
        next.moveBy(5);
        other->clear();
        QCOMPARE(outdated.join(u' '), u"marks axis marks"_s);
    }

    void ticksFollowTheRange_data()
    {
        // A label needs 62 pixels.
        addTable({"zone", "from", "seconds", "width", "ticks", "time"}, uR"(
room for each     | UTC | 2026-07-01T12:00:00Z     | 60    | 745 | 13: 12:00:00@0 12:01:00@745 | Wed 1 Jul 2026 12:00:00
too little room   | UTC | 2026-07-01T12:00:00Z     | 60    | 743 | 7: 12:00:00@0 12:01:00@743 | Wed 1 Jul 2026 12:00:00
one just before   | UTC | 2026-07-01T12:00:00.001Z | 60    | 745 | 12: 12:00:05@62 12:01:00@745 | Wed 1 Jul 2026 12:00:00
the first day     | UTC | 1970-01-01T00:00:00Z     | 3600  | 130 | 3: Thu 1 Jan@0 01:00@130 | Thu 1 Jan 1970 00:00:00
the last minute   | UTC | 9999-12-31T23:58:59.999Z | 60    | 745 | 12: 23:59:00@0 23:59:55@683 | Fri 31 Dec 9999 23:58:59
an hour twice, in minutes | Europe/Berlin | 2026-10-25T00:55:00Z | 600 | 130 | 3: 02:55@0 02:05@130 | Sun 25 Oct 2026 02:55:00
a skipped hour, in minutes | Europe/Berlin | 2026-03-29T00:55:00Z | 600 | 130 | 3: 01:55@0 03:05@130 | Sun 29 Mar 2026 01:55:00)"_s);
    }
    void ticksFollowTheRange()
    {
        QFETCH(const QString, zone);
        QFETCH(const QString, from);
        TimeAxis axis;
        const QAbstractItemModelTester tester(&axis);
        axis.setTimeZone(zone);
        axis.setWidth(double(numberIn("width")));
        {
            VisibleRange range;
            range.show(timeOf(from), timeOf(from) + 1000 * numberIn("seconds"));
            axis.setRange(&range);
            axis.update();
            const auto tick = [&](int row) {
                return axis.index(row).data(TimeAxis::LabelRole).toString() + u'@' +
                       QString::number(qRound(axis.index(row).data(TimeAxis::XRole).toDouble()));
            };
            QTEST(u"%1: %2 %3"_s.arg(axis.rowCount()).arg(tick(0), tick(axis.rowCount() - 1)),
                  "ticks");
        }
        QTEST(axis.timeText(timeOf(from)), "time");
        axis.update(); // the range is gone
        QCOMPARE(axis.rowCount(), 0);
    }
};

QTEST_GUILESS_MAIN(TestTimelines)
#include "tst_timelines.moc"
