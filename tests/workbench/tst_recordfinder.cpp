#include "DataTable.h"
#include "RecordFinder.h"

#include <QtCore/QDateTime>
#include <QtTest/QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace workbench;

namespace {

constexpr qsizetype PageSize = 50;

qint64 momentOf(const QString &iso)
{
    return QDateTime::fromString(iso, Qt::ISODateWithMs).toMSecsSinceEpoch();
}

/// Creates a display record from "creator@2026-03-29T01:30Z text", with the UTC day as its date.
QVariantMap recordOf(const QString &word)
{
    const qint64 start = momentOf(word.section(u'@', 1).section(u' ', 0, 0));
    return {{u"bookmarkID"_s, word},
            {u"startTimestamp"_s, start},
            {u"creator"_s, word.section(u'@', 0, 0)},
            {u"displayDate"_s,
             QDateTime::fromMSecsSinceEpoch(start).toUTC().date().toString(u"dd.MM.yyyy")},
            {u"description"_s, word}};
}

/// Formats a page as "title: word word; title: word".
QString inWords(const QVariantMap &page)
{
    QStringList groups;
    const QVariantList list = page.value(u"bookmarkGroupList"_s).toList();
    for (const QVariant &group : list) {
        QString words = group.toMap().value(u"title"_s).toString() + u':';
        const QVariantList records = group.toMap().value(u"bookmarkList"_s).toList();
        for (const QVariant &record : records)
            words += u' ' + record.toMap().value(u"bookmarkID"_s).toString();
        groups.append(words);
    }
    return groups.join(u"; "_s);
}

/// Returns a filter for all days.
QVariantMap filterOf(const QString &timeOfDay)
{
    return {{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
            {u"endTimestamp"_s, std::numeric_limits<qint64>::max() - 1023},
            {u"timeOfDay"_s, timeOfDay}};
}

} // namespace

/// Returns a list of all bookmarks, and the filter itself for a page.
class FakePlugin : public QObject
{
    Q_OBJECT

public:
    QVariantList stored;

    Q_INVOKABLE QVariantList getBookmarkListByNodeID(const QString & /*key*/) const
    {
        return stored;
    }
    Q_INVOKABLE QVariantMap getFilteredBookmarkList(const QVariantMap &filter) const
    {
        return filter;
    }
};

/// Tests the search for bookmarks by time of day.
class TestRecordFinder : public QObject
{
    Q_OBJECT

private:
    FakePlugin m_plugin;
    std::unique_ptr<RecordFinder> m_finder;

private Q_SLOTS:
    void init()
    {
        m_plugin.stored.clear();
        m_finder = std::make_unique<RecordFinder>();
        m_finder->setProperty("plugin", QVariant::fromValue<QObject *>(&m_plugin));
    }

    void isTimeOfDayAcceptsValidTexts_data()
    {
        addTable({"text", "valid"}, uR"(
any            |                 | yes
plain          | 22:00-06:00     | yes
in words       | 6:00 to 22:30   | yes
spaces         | "  7:05 - 7:06 " | yes
the whole day  | 00:00-00:00     | yes
no end         | 22:00           |
hour 24        | 22:00-24:00     |
minute 60      | 21:60-22:00     |
seconds        | 22:00:00-23:00:00 |
hours alone    | 22-6            |
three times    | 1:00-2:00-3:00  |
something more | 22:00-06:00 UTC |)"_s);
    }
    void isTimeOfDayAcceptsValidTexts()
    {
        QFETCH(const QString, text);
        QTEST(RecordFinder::isTimeOfDay(text) ? u"yes"_s : QString(), "valid");
    }

    void bookmarksAreFoundByTimeOfDay_data()
    {
        // Starts of bookmarks in UTC; those in brackets match.
        addTable({"zone", "time", "range", "begins"}, uR"(
start counts, end not | UTC | 06:00-22:00 | | 2026-07-01T05:59:59.999Z [2026-07-01T06:00:00Z 2026-07-01T21:59:59.999Z] 2026-07-01T22:00:00Z
over midnight         | UTC | 22:00-06:00 | | [2026-07-01T05:59:59.999Z] 2026-07-01T06:00:00Z 2026-07-01T21:59:59.999Z [2026-07-01T22:00:00Z 2026-07-02T00:00:00Z]
of the server's zone  | Asia/Tokyo | 22:00-06:00 | | 2026-07-01T12:59:59Z [2026-07-01T13:00:00Z 2026-07-01T20:59:59Z] 2026-07-01T21:00:00Z
night before the day  | UTC | 22:00-06:00 | 2026-07-02T00:00:00Z 2026-07-02T23:59:59.999Z | 2026-07-01T23:59:59.999Z [2026-07-02T00:00:00Z 2026-07-02T05:00:00Z] 2026-07-02T12:00:00Z [2026-07-02T23:59:59.999Z] 2026-07-03T00:00:00Z
equal ends: any time  | Europe/Berlin | 02:30-02:30 | | [2026-03-28T10:00:00Z 2026-03-29T00:45:00Z 2026-03-29T01:00:00Z 2026-10-25T00:15:00Z 2026-10-25T00:45:00Z 2026-10-25T01:45:00Z]
night of 7 hours      | Europe/Berlin | 22:00-06:00 | | 2026-03-28T20:59:59Z [2026-03-28T21:00:00Z 2026-03-29T00:59:59Z 2026-03-29T01:00:00Z 2026-03-29T03:59:59Z] 2026-03-29T04:00:00Z
night of 9 hours      | Europe/Berlin | 22:00-06:00 | | 2026-10-24T19:59:59Z [2026-10-24T20:00:00Z 2026-10-25T04:59:59Z] 2026-10-25T05:00:00Z
hour that is skipped  | Europe/Berlin | 02:00-03:00 | | [2026-03-28T01:30:00Z] 2026-03-29T00:30:00Z 2026-03-29T01:00:00Z 2026-03-29T01:30:00Z [2026-03-30T00:30:00Z]
begins in that hour   | Europe/Berlin | 02:30-03:30 | | 2026-03-29T00:45:00Z [2026-03-29T01:00:00Z 2026-03-29T01:29:59Z] 2026-03-29T01:30:00Z
ends in that hour     | Europe/Berlin | 01:30-02:30 | | 2026-03-29T00:29:59Z [2026-03-29T00:30:00Z 2026-03-29T00:59:59Z] 2026-03-29T01:00:00Z
hour that repeats     | Europe/Berlin | 02:00-03:00 | | 2026-10-24T23:59:59Z [2026-10-25T00:00:00Z 2026-10-25T01:59:59Z] 2026-10-25T02:00:00Z
part of that hour     | Europe/Berlin | 02:15-02:30 | | 2026-10-25T00:14:59Z [2026-10-25T00:15:00Z 2026-10-25T00:29:59Z] 2026-10-25T00:30:00Z [2026-10-25T01:15:00Z] 2026-10-25T01:30:00Z
begins where it repeats | Europe/Berlin | 02:30-03:30 | | 2026-10-25T00:29:59Z [2026-10-25T00:30:00Z] 2026-10-25T01:15:00Z [2026-10-25T01:30:00Z 2026-10-25T02:29:59Z] 2026-10-25T02:30:00Z
day without midnight  | America/Santiago | 00:00-01:30 | | 2026-09-06T03:59:59Z [2026-09-06T04:00:00Z 2026-09-06T04:29:59Z] 2026-09-06T04:30:00Z
years apart           | UTC | 10:00-11:00 | | [2001-01-01T10:30:00Z] 2013-05-05T09:00:00Z [2026-07-01T10:30:00Z]
far in the future     | UTC | 10:00-11:00 | | [2026-07-01T10:30:00Z 9999-12-31T10:30:00Z]
none stored           | UTC | 10:00-11:00 | |)"_s);
    }
    void bookmarksAreFoundByTimeOfDay()
    {
        QFETCH(const QString, zone);
        QFETCH(const QString, time);
        QFETCH(const QString, range);
        QFETCH(const QString, begins);
        QStringList expected;
        bool matches = false;
        const QStringList words = begins.split(u' ', Qt::SkipEmptyParts);
        for (const QString &word : words) {
            matches = matches || word.startsWith(u'[');
            const QString moment = QString(word).remove(u'[').remove(u']');
            m_plugin.stored.append(recordOf(u'@' + moment));
            if (matches)
                expected.append(moment);
            matches = matches && !word.endsWith(u']');
        }
        m_finder->setTimeZone(zone);
        QVariantMap filter = filterOf(time);
        if (!range.isEmpty()) {
            filter.insert(u"startTimestamp"_s, momentOf(range.section(u' ', 0, 0)));
            filter.insert(u"endTimestamp"_s, momentOf(range.section(u' ', 1)));
        }
        QStringList found;
        const QVariantList records = m_finder->records(filter);
        for (const QVariant &record : records)
            found.append(record.toMap().value(u"bookmarkID"_s).toString().mid(1));
        found.sort();
        QCOMPARE(found, expected);
    }

    void textIsSearchedInThePluginsFields_data()
    {
        addTable({"field", "text", "found"}, uR"(
part of a word   | description      | RKLI        | 1
station          | cameraName       | harbour - g | 1
creator          | creator          | zoË         | 1
time range       | displayTimeRange | 10:00 -     | 1
group            | group            | Forklift    | 0
identifier       | bookmarkID       | Forklift    | 0
another text     | description      | forklifts   | 0
no text          | description      |             | 1)"_s);
    }
    void textIsSearchedInThePluginsFields()
    {
        QFETCH(const QString, field);
        QFETCH(const QString, text);
        QFETCH(const QString, found);
        static const QVariantMap values{
            {u"description"_s, u"Forklift"_s}, {u"cameraName"_s, u"Harbour - Gate"_s},
            {u"creator"_s, u"Zo\u00eb"_s},     {u"displayTimeRange"_s, u"10:10:00 - 10:11:00"_s},
            {u"group"_s, u"Forklift"_s},       {u"bookmarkID"_s, u"Forklift"_s}};
        m_plugin.stored.append(QVariantMap{{field, values.value(field)}});
        QVariantMap filter = filterOf(QString());
        filter.insert(u"text"_s, text);
        QCOMPARE(QString::number(m_finder->records(filter).size()), found);
        QCOMPARE(m_finder->page(filter), filter); // the plug-in's own page
    }

    void recordsAreSortedAndGrouped_data()
    {
        // Days sort by date, not by their texts.
        addTable({"groupKey", "ascending", "page"}, uR"(
latest day     | displayDate      |     | 02.07.2026: b2 a2; 30.06.2026: a1
first day      | displayDate      | yes | 30.06.2026: a1; 02.07.2026: b2 a2
first time     | displayTimeRange | yes | 30.06.2026: a1; 02.07.2026: b2 a2
last creator   | creator          |     | b: b2; a: a2 a1
first creator  | creator          | yes | a: a2 a1; b: b2)"_s);
    }
    void recordsAreSortedAndGrouped()
    {
        QFETCH(const QString, groupKey);
        QFETCH(const QString, ascending);
        for (const auto &[name, moment] : {std::pair(u"a1"_s, u"a@2026-06-30T10:00:00Z"_s),
                                           {u"a2"_s, u"a@2026-07-02T10:00:00Z"_s},
                                           {u"b2"_s, u"b@2026-07-02T11:00:00Z"_s}}) {
            QVariantMap record = recordOf(moment);
            record.insert(u"bookmarkID"_s, name);
            m_plugin.stored.append(record);
        }
        QVariantMap filter = filterOf(u"09:00-12:00"_s);
        filter.insert(u"groupKey"_s, groupKey);
        filter.insert(u"ascending"_s, !ascending.isEmpty());
        QTEST(inWords(m_finder->page(filter)), "page");
    }

    void resultHasSeveralPages()
    {
        const qint64 start = momentOf(u"2026-07-01T10:00:00Z"_s);
        for (int i = 0; i < 2 * PageSize + 1; ++i)
            m_plugin.stored.append(recordOf(u"@%1 %2"_s.arg(
                QDateTime::fromMSecsSinceEpoch(start + i).toUTC().toString(Qt::ISODateWithMs),
                i % 2 ? u"odd"_s : u"even"_s)));
        for (const auto &[text, time, total] : {std::tuple(u""_s, u"10:00-11:00"_s, 101),
                                                {u"even"_s, u"10:00-11:00"_s, 51},
                                                {u"even"_s, u""_s, 51},
                                                {u""_s, u""_s, 101},
                                                {u"odd"_s, u"11:00-12:00"_s, 0}}) {
            QVariantMap filter = filterOf(time);
            filter.insert(u"text"_s, text);
            QCOMPARE(m_finder->records(filter).size(), total);
            if (time.isEmpty())
                continue;
            filter.insert(u"groupKey"_s, u"creator"_s);
            const QVariantMap first = m_finder->page(filter);
            QCOMPARE(first.value(u"totalBookmarkNumber"_s), total);
            QCOMPARE(inWords(first).count(u'@'), qMin(PageSize, total));
            filter.insert(u"pageNumber"_s, (total - 1) / PageSize);
            QCOMPARE(inWords(m_finder->page(filter)).count(u'@'), total ? 1 : 0);
            filter.insert(u"pageNumber"_s, 9); // the first page, as in the plug-in
            QCOMPARE(m_finder->page(filter), first);
        }
    }
};

QTEST_GUILESS_MAIN(TestRecordFinder)
#include "tst_recordfinder.moc"
