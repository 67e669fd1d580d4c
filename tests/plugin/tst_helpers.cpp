#include "BookmarkList.h"
#include "CameraNames.h"
#include "DataTable.h"
#include "RequestContexts.h"
#include "Tessaline.h"
#include "TimeFormatter.h"

#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtCore/QLocale>

#include <limits>
#include <new>
#include <set>
#include <utility>

using namespace Qt::StringLiterals;
using tessaline::ContextRegistry;

#ifndef Q_OS_WIN
static const char *s_language = "en_US";
/// Takes the place of Qt's function in this program: on Unix a process can't change its language.
QLocale QLocale::system()
{
    return QLocale(QLatin1String(s_language));
}
#endif

namespace {

/// A context from an allocator that always returns its lowest free address.
struct ReusedContext
{
    static std::set<void *> &freeSlots()
    {
        static char storage[200];
        static std::set<void *> free = [] {
            std::set<void *> all;
            for (char &slot : storage)
                all.insert(&slot);
            return all;
        }();
        return free;
    }
    static void *operator new(std::size_t, const std::nothrow_t &) noexcept
    {
        std::set<void *> &free = freeSlots();
        return free.empty() ? nullptr : free.extract(free.begin()).value();
    }
    static void operator delete(void *slot) { freeSlots().insert(slot); }
};

/// A plug-in object made without its library, in a host with one station.
struct Host
{
    Host()
    {
        topology.setStation(u"A"_s, u"Station"_s);
        framework.addPlugin(standin::Topology::pluginID(), &topology);
        plugin.InitialPluginBase(nullptr, nullptr, &framework);
    }
    void answer(const QString &command, const QVariant &result, void *context = nullptr)
    {
        plugin.CommandProcessor(command, result, context, u"0"_s, {}, false, u"A"_s);
    }

    standin::Framework framework;
    standin::Topology topology;
    Tessaline plugin;
};

} // namespace

/// Methods and classes of the plug-in that callers outside of the library can't reach.
class TestHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pageRangeDependsOnSizeAndNumber_data()
    {
        addTable({"size", "pageSize", "pageNumbers", "page"}, uR"(
        first                 | 5 | 2   | 0              | 0 1
        second                | 5 | 2   | 1              | 2 3
        last                  | 5 | 2   | 2              | 4
        beyond the last       | 5 | 2   | 3 4 max        | 0 1
        beyond a full last    | 4 | 2   | 2              | 0 1
        before the first      | 5 | 2   | -1 -2 min      |
        page size 0           | 5 | 0   | min -1 0 3 max |
        no records            | 0 | 2   | min -1 0 3 max |
        no records, size 0    | 0 | 0   | min -1 0 3 max |
        no records, negative  | 0 | -5  | min -1 0 3 max |
        negative size         | 5 | -5  | -1 0 3 max     | 0 1 2 3 4
        negative, last before | 5 | -1  | -5             | 0 1 2 3 4
        negative, far before  | 5 | -1  | -6 min         |
        minimal size          | 5 | min | 0 3 max        | 0 1 2 3 4
        minimal, before       | 5 | min | -1 min         |
        maximal size          | 5 | max | 0 3 max        | 0 1 2 3 4
        maximal, before       | 5 | max | -1 min         |
        )"_s);
    }
    void pageRangeDependsOnSizeAndNumber()
    {
        QFETCH(const QString, size);
        QFETCH(const QString, pageSize);
        QFETCH(const QString, pageNumbers);
        QFETCH(const QString, page);

        const auto number = [](const QString &text) {
            return text == "min"_L1   ? std::numeric_limits<int>::min()
                   : text == "max"_L1 ? std::numeric_limits<int>::max()
                                      : text.toInt();
        };
        const QStringList list = u"0 1 2 3 4"_s.split(u' ').first(number(size));
        const QStringList numbers = pageNumbers.split(u' ');
        for (const QString &pageNumber : numbers) {
            const auto [first, end] = tessaline::pageRange(std::size_t(list.size()),
                                                           number(pageSize), number(pageNumber));
            QCOMPARE(list.mid(qsizetype(first), qsizetype(end) - qsizetype(first)).join(u' '),
                     page);
        }
        // More pages than an int can count.
        for (const int bits : {31, 33})
            QCOMPARE(tessaline::pageRange(std::size_t(1) << bits, 1, 5).first, std::size_t(5));
    }

    void pageHasTheSizeThatWasSet()
    {
        Host host;
        QVERIFY(host.plugin.queryAllBookmarks());
        const standin::SentCommand query = host.framework.sent().constFirst();
        const QVariantList records(10, QVariant(QVariantMap()));
        host.answer(query.command, QVariantMap{{u"Bookmarks"_s, records}}, query.context);
        QCOMPARE(host.plugin.getBookmarkList().size(), 10);
        for (const auto &[pageSize, count] : {std::pair(3, 1), {0, 0}, {-5, 10}}) {
            host.plugin.setBookmarkNumberPerPage(pageSize);
            const QVariantMap page = host.plugin.getFilteredBookmarkList({{u"pageNumber"_s, 3}});
            QCOMPARE(page.value(u"totalBookmarkNumber"_s).toInt(), 10);
            const QVariantList groups = page.value(u"bookmarkGroupList"_s).toList();
            QCOMPARE(groups.value(0).toMap().value(u"bookmarkList"_s).toList().size(), count);
        }
    }

    void contextAddressIsNotReusedSoon()
    {
        ContextRegistry<ReusedContext> contexts;
        QList<const void *> last;
        for (int i = 0; i < 1000; ++i) {
            const void *const address = contexts.create({}).release();
            QVERIFY(address); // null if old addresses were never reused
            QVERIFY(!last.contains(address));
            contexts.take(address);
            last = last.mid(last.size() - 127) + QList<const void *>{address};
        }
    }

    void lastAnswerDecidesPermission()
    {
        QVERIFY(!Tessaline().hasSettingPermission()); // before the host has called Init()
        Host host;
        QVERIFY(!host.plugin.hasSettingPermission());
        for (const bool permitted : {true, false, true}) {
            host.answer(u"QuerySettingPermission"_s, permitted);
            QCOMPARE(host.plugin.hasSettingPermission(), permitted);
        }
        host.plugin.PluginServerConnected();
        QVERIFY(host.plugin.hasSettingPermission());
        host.plugin.Init(nullptr);
        QVERIFY(!host.plugin.hasSettingPermission());
    }

    void recordsKeepTheTextsOfTheServer()
    {
        const QStringList texts{QString(),
                                u""_s,
                                u"Gate"_s,
                                u"gate"_s,
                                u"\u00c4\u4e2d\U0001F600"_s,
                                QString(QChar(0)),
                                QString(QChar(0xd800)), // a lone surrogate
                                u"a"_s + QChar(0xdc00) + u"b"_s,
                                QString(QChar(0xfeff)) + u"x"_s, // a byte order mark
                                u"\u00ff\uffff"_s};
        QVariantList records;
        for (const QString &text : texts) {
            records.append(QVariantMap{{u"BookmarkID"_s, text},
                                       {u"CameraID"_s, text},
                                       {u"Creator"_s, text},
                                       {u"Description"_s, text},
                                       {u"Group"_s, text},
                                       {u"LocationID"_s, text}});
        }
        tessaline::BookmarkList list;
        tessaline::CameraNames names({}, u"A"_s);
        const auto formatter = std::make_shared<tessaline::TimeFormatter>(QTimeZone::utc());
        for (int i = 0; i < 2; ++i) // the second time all texts are in the dictionaries
            list.append(records, names, formatter);
        QCOMPARE(list.size(), 2 * std::size_t(texts.size()));
        for (quint32 row = 0; row < list.size(); ++row) {
            const QString &sent = texts.at(row % texts.size());
            const tessaline::BookmarkRecord record = list.record(row);
            for (const QString &text : {record.bookmarkID, record.cameraID, record.creator,
                                        record.description, record.group, record.locationID}) {
                QCOMPARE(text, sent);
                QCOMPARE(text.isNull(), sent.isNull());
                // QString::utf16() needs the terminator.
                QVERIFY(text.constData()[text.size()].isNull());
            }
        }
    }

    void searchIsLimitedToTheGivenRows()
    {
        tessaline::BookmarkList list;
        tessaline::CameraNames names({}, u"A"_s);
        const auto formatter = std::make_shared<tessaline::TimeFormatter>(QTimeZone::utc());
        QVariantList records;
        for (const QString &text : {u"one gate"_s, u""_s, u"GATE"_s, u"no"_s, u"gate"_s})
            records.append(QVariantMap{{u"Description"_s, text}});
        list.append(records, names, formatter);
        for (const auto &[rows, found] :
             {std::pair{tessaline::Rows{0, 1, 2, 3, 4}, tessaline::Rows{0, 2, 4}},
              {{1, 2, 3}, {2}},
              {{1, 3}, {}},
              {{3, 4}, {4}},
              {{}, {}}}) {
            tessaline::Rows kept = rows;
            list.filterByText(kept, u"Gate"_s);
            QCOMPARE(kept, found);
        }
        list.clear();
        QCOMPARE(list.size(), std::size_t(0));
        QCOMPARE(list.rowsInRange(0, 0), tessaline::Rows{});
    }

#ifndef Q_OS_WIN
    void daysAreParsedInThePresentLanguage()
    {
        tessaline::BookmarkList list;
        tessaline::CameraNames names({}, u"A"_s);
        const auto formatter = std::make_shared<tessaline::TimeFormatter>(QTimeZone::utc());
        list.append(
            {QVariantMap{{u"StartTimestamp"_s, 0}}, QVariantMap{{u"StartTimestamp"_s, 86'400'000}}},
            names, formatter);
        // Days in another language can't be parsed, so they are equal, and the latest comes first.
        for (const auto &[language, sorted] :
             {std::pair{"en_US", tessaline::Rows{0, 1}}, {"de_DE", {1, 0}}, {"en_US", {0, 1}}}) {
            s_language = language;
            tessaline::Rows rows{0, 1};
            list.sort(rows, u"displayDate"_s, true, {0, 2});
            QCOMPARE(rows, sorted);
            QCOMPARE(formatter->isValidFor(QTimeZone::utc()),
                     QLatin1String(language) == "en_US"_L1);
        }
    }
#endif

    void timelineQueryNeedsViewCellAndAcceptance()
    {
        Host host;
        host.plugin.queryBookmarkForTimeline(1, 2, u"cell"_s);
        QVERIFY(host.framework.sent().isEmpty());
        QVERIFY(host.plugin.children().isEmpty());

        const auto ask = [&] {
            return host.plugin.queryBookmarkForTimeline(u"l"_s, u"A"_s, 1, 2, u"cell"_s);
        };
        QVERIFY(ask());
        host.framework.rules().setDefault(standin::Delivery::rejected());
        QVERIFY(!ask());
        host.framework.rules().setDefault(standin::Delivery::held());
        host.framework.clearSent();

        host.plugin.getBookmarkModelForTimeline(u"cell"_s);
        for (int i = 0; i < 2; ++i) // the same range may be queried again
            host.plugin.queryBookmarkForTimeline(2, 1, u"cell"_s);
        QCOMPARE(host.framework.sent().size(), 2);
        QCOMPARE(
            host.framework.sent().constLast().payload,
            QVariant(mapOf(uR"({"LocationID": "", "StartTimestamp": 2, "EndTimestamp": 1})"_s)));
    }
};

QTEST_GUILESS_MAIN(TestHelpers)
#include "tst_helpers.moc"
