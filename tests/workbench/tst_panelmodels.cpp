#include "DataTable.h"
#include "DateRanges.h"
#include "DateTimeTexts.h"
#include "PageModel.h"
#include "RowChanges.h"

#include <QtCore/QLocale>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

using namespace Qt::StringLiterals;
using namespace workbench;

namespace {

/// Creates the record of bookmark 7 at station x from "x7".
QVariantMap recordOf(const QString &word, const QString &text = {})
{
    return {{u"relayPath"_s, word.first(1)}, {u"bookmarkID"_s, word.mid(1)}, {u"text"_s, text}};
}

QVariantList recordsOf(const QString &words)
{
    QVariantList records;
    for (const QString &word : words.split(u' ', Qt::SkipEmptyParts))
        records.append(recordOf(word));
    return records;
}

QString inWords(const QVariantMap &record)
{
    return record.value(u"relayPath"_s).toString() + record.value(u"bookmarkID"_s).toString();
}

QString inWords(const QVariantList &records)
{
    QStringList words;
    for (const QVariant &record : records)
        words.append(inWords(record.toMap()));
    return words.join(u' ');
}

/// Creates a page from a text like "day: x1 x2; other day: y1".
QVariantList groupsOf(const QString &page)
{
    QVariantList groups;
    for (const QString &group : page.split(u"; "_s, Qt::SkipEmptyParts))
        groups.append(QVariantMap{{u"title"_s, group.section(u": "_s, 0, 0)},
                                  {u"bookmarkList"_s, recordsOf(group.section(u": "_s, 1))}});
    return groups;
}

qint64 momentOf(const QString &iso)
{
    return QDateTime::fromString(iso, Qt::ISODate).toMSecsSinceEpoch();
}

} // namespace

/// Tests the classes of the bookmark panel: days, moments, page and selection.
class TestPanelModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { QLocale::setDefault(QLocale(u"en_US"_s)); }

    void weekBeginsOnTheDayOfTheLocale_data()
    {
        // 2026-07-05 is a Sunday.
        addTable({"locale", "now", "first", "last"}, uR"(
Monday, last day    | de_DE | 2026-07-05T21:59:59Z | 2026-06-29 | 2026-07-05
Monday, first day   | de_DE | 2026-07-05T22:00:00Z | 2026-07-06 | 2026-07-12
Sunday, first day   | en_US | 2026-07-04T22:00:00Z | 2026-07-05 | 2026-07-11
Sunday, last day    | en_US | 2026-07-04T21:59:59Z | 2026-06-28 | 2026-07-04
Saturday, third day | ar_EG | 2026-07-06T10:00:00Z | 2026-07-04 | 2026-07-10)"_s);
    }
    void weekBeginsOnTheDayOfTheLocale()
    {
        QFETCH(const QString, locale);
        QFETCH(const QString, now);
        QLocale::setDefault(QLocale(locale));
        DateRanges ranges;
        ranges.setTimeZone(u"Europe/Berlin"_s);
        const QVariantMap week = ranges.range(DateRanges::ThisWeek, momentOf(now));
        const qint64 start = week.value(u"startTimestamp"_s).toLongLong();
        const qint64 end = week.value(u"endTimestamp"_s).toLongLong();
        QTEST(ranges.dayOf(start), "first");
        QTEST(ranges.dayOf(end), "last");
        // One millisecond earlier or later is another day.
        QCOMPARE(end + 1 - start, 7 * 86'400'000LL);
        QVERIFY(ranges.dayOf(start - 1) < ranges.dayOf(start));
    }

    void dayLaterAddsDaysAndMonths_data()
    {
        addTable({"day", "days", "months", "later"}, uR"(
over a leap day   | 2024-02-28 | 2  | 0   | 2024-03-01
back over a year  | 2026-01-01 | -1 | 0   | 2025-12-31
to a short month  | 2026-01-31 | 0  | 1   | 2026-02-28
back to one       | 2024-03-31 | 0  | -1  | 2024-02-29
month comes first | 2026-01-30 | 1  | 1   | 2026-03-01
over a year       | 2026-11-30 | 0  | 3   | 2027-02-28
no day            | 2026-02-30 | 1  | 0   |)"_s);
    }
    void dayLaterAddsDaysAndMonths()
    {
        QFETCH(const QString, day);
        QTEST(DateRanges::dayLater(day, int(numberIn("days")), int(numberIn("months"))), "later");
    }

    void typedTextsGiveMoments_data()
    {
        addTable({"zone", "text", "moment", "shown", "remark"}, uR"(
whole             | Asia/Tokyo    | 2026-07-01 08:30:15 | 2026-06-30T23:30:15Z | 2026-07-01 08:30:15 |
without seconds   | Asia/Tokyo    | 2026-07-01 08:30    | 2026-06-30T23:30:00Z | 2026-07-01 08:30:00 |
before the jump   | Europe/Berlin | 2026-03-29 01:59:59 | 2026-03-29T00:59:59Z | 2026-03-29 01:59:59 |
first skipped     | Europe/Berlin | 2026-03-29 02:00:00 |                      | | 02:00 does not occur
last skipped      | Europe/Berlin | 2026-03-29 02:59:59 |                      | | 02:59 does not occur
after the jump    | Europe/Berlin | 2026-03-29 03:00:00 | 2026-03-29T01:00:00Z | 2026-03-29 03:00:00 |
before it repeats | Europe/Berlin | 2026-10-25 01:59:59 | 2026-10-24T23:59:59Z | 2026-10-25 01:59:59 |
first repeated    | Europe/Berlin | 2026-10-25 02:00    | 2026-10-25T00:00:00Z | 2026-10-25 02:00:00 | 02:00 occurs twice; the one in summer time
last repeated     | Europe/Berlin | 2026-10-25 02:59:59 | 2026-10-25T00:59:59Z | 2026-10-25 02:59:59 | 02:59 occurs twice; the one in summer time
after that        | Europe/Berlin | 2026-10-25 03:00    | 2026-10-25T02:00:00Z | 2026-10-25 03:00:00 |
a day left out    | Pacific/Apia  | 2011-12-30 12:00    |                      | | 12:00 does not occur
not skipped there | no zone       | 2026-03-29 02:30:00 | 2026-03-29T02:30:00Z | 2026-03-29 02:30:00 |
before 1970       | no zone       | 1969-12-31 23:59:59 | 1969-12-31T23:59:59Z | 1969-12-31 23:59:59 |
no leap year      | no zone       | 2026-02-29 10:00:00 |                      | | The calendar has no day 2026-02-29
something behind  | no zone       | 2026-07-01 08:30:15Z |                     | | This is not a time
nothing           | no zone       |                     |                      | | This is not a time)"_s);
    }
    void typedTextsGiveMoments()
    {
        QFETCH(const QString, zone);
        QFETCH(const QString, text);
        QFETCH(const QString, moment);
        DateTimeTexts texts;
        texts.setTimeZone(zone);
        const QVariant found = texts.momentOf(text);
        QCOMPARE(found, moment.isEmpty() ? QVariant() : QVariant(momentOf(moment)));
        QTEST(found.isValid() ? texts.textOf(found.toLongLong()) : QString(), "shown");
        QFETCH(const QString, remark);
        QCOMPARE(texts.remarkOn(text).left(remark.size()), remark);
        QCOMPARE(texts.remarkOn(text).isEmpty(), remark.isEmpty());
    }

    void lengthIsFormatted()
    {
        const qint64 day = 86'400'000;
        QCOMPARE(DateTimeTexts::lengthText(0), u"0 s"_s);
        QCOMPARE(DateTimeTexts::lengthText(day + 3'661'499), u"1 d 1 h 1 min 1 s"_s);
        QCOMPARE(DateTimeTexts::lengthText(2 * day + 59'500), u"2 d 1 min"_s);
    }

    void pageReplacesRows_data()
    {
        // Rows as "record title/count"; the count is 0 except in the first row of a group.
        addTable({"before", "after", "rows", "changes"}, uR"(
first page      |             | a: x1 x2; b: y1 | x1 a/2, x2 a/0, y1 b/1 | +0-2 count
the same        | a: x1 x2    | a: x1 x2  | x1 a/2, x2 a/0 | ~0-1
longer          | a: x1       | a: x1; b: y1 | x1 a/1, y1 b/1 | ~0-0 +1-1 count
shorter         | a: x1 x2 x3 | b: x3     | x3 b/1 | -1-2 ~0-0 count
empty           | a: x1 x2    |           | | -0-1 count
an empty group  |             | a: ; b: x1 | x1 b/1 | +0-0 count
the same title  |             | a: x1; a: x2 | x1 a/1, x2 a/1 | +0-1 count)"_s);
    }
    void pageReplacesRows()
    {
        QFETCH(const QString, before);
        QFETCH(const QString, after);
        RecordSelection selection;
        PageModel page;
        page.setSelection(&selection);
        page.setGroups(groupsOf(before));
        const QAbstractItemModelTester tester(&page);
        RowChanges changes(page);
        const QSignalSpy counted(&page, &PageModel::countChanged);
        page.setGroups(groupsOf(after));
        QTEST(changes.take() + (counted.isEmpty() ? u""_s : u" count"_s), "changes");
        QStringList rows;
        for (int row = 0; row < page.count(); ++row)
            rows.append(
                u"%1 %2/%3"_s.arg(inWords(page.recordAt(row)),
                                  page.index(row).data(PageModel::SectionTitleRole).toString(),
                                  page.index(row).data(PageModel::SectionCountRole).toString()));
        QTEST(rows.join(u", "_s), "rows");
    }

    void rangeOfRowsGivesRecords()
    {
        RecordSelection selection;
        PageModel page;
        page.setSelection(&selection);
        page.setGroups(groupsOf(u"a: x1 x2; b: x3 x4"_s));
        QCOMPARE(inWords(page.recordsBetween(1, 2)), u"x2 x3"_s);
        QCOMPARE(inWords(page.recordsBetween(2, 1)), u"x2 x3"_s);
        QCOMPARE(inWords(page.recordsBetween(3, 3)), u"x4"_s);
        QCOMPARE(inWords(page.recordsBetween(9, -9)), u"x1 x2 x3 x4"_s);
        QCOMPARE(inWords(page.recordsBetween(4, 9)), QString());
        QVERIFY(page.recordAt(-1).isEmpty() && page.recordAt(4).isEmpty());
    }

    void selectionChanges_data()
    {
        addTable({"steps", "selected"}, uR"(
each once           | add x1 x2; add x2                  | x1 x2
at two stations     | add x1 y1; remove x1               | y1
toggled             | add x1; toggle x2; toggle x1       | x2
others instead      | add x1 x2; set x3                  | x3
cleared             | add x1; set                        |
not selected        | add x1; remove x2 y1               | x1)"_s);
    }
    void selectionChanges()
    {
        QFETCH(const QString, steps);
        RecordSelection selection;
        PageModel page;
        page.setSelection(&selection);
        page.setGroups(groupsOf(u"a: x1 x2 x3 y1"_s));
        RowChanges changes(page);
        for (const QString &step : steps.split(u"; "_s)) {
            const QVariantList records = recordsOf(step.section(u' ', 1));
            if (step.startsWith(u"add"))
                selection.add(records);
            else if (step.startsWith(u"remove"))
                selection.remove(records);
            else if (step.startsWith(u"set"))
                selection.setRecords(records);
            else
                selection.toggle(records.constFirst().toMap());
            QCOMPARE(changes.take(), u"~0-3/1"_s);
        }
        QTEST(inWords(selection.records()), "selected");
        QVariantList shown;
        for (int row = 0; row < page.count(); ++row) {
            if (page.index(row).data(PageModel::SelectedRole).toBool())
                shown.append(page.recordAt(row));
        }
        QTEST(inWords(shown), "selected");
    }

    /// Otherwise the user would edit or delete outdated records.
    void selectionHasUpdatedRecords()
    {
        RecordSelection selection;
        PageModel page;
        page.setSelection(&selection);
        selection.add({recordOf(u"x1"_s, u"old"_s), recordOf(u"x2"_s, u"old"_s)});
        page.setGroups({QVariantMap{
            {u"bookmarkList"_s, QVariantList{recordOf(u"x2"_s, u"new"_s), recordOf(u"y2"_s)}}}});
        QStringList texts;
        const QVariantList records = selection.records();
        for (const QVariant &record : records)
            texts.append(record.toMap().value(u"text"_s).toString());
        QCOMPARE(texts, (QStringList{u"old"_s, u"new"_s}));
    }
};

QTEST_GUILESS_MAIN(TestPanelModels)
#include "tst_panelmodels.moc"
