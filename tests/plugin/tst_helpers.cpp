#include "BookmarkIndex.h"
#include "DataTable.h"
#include "DisplayTexts.h"
#include "PageSlice.h"
#include "RequestContexts.h"
#include "ShortestTime.h"
#include "Tessaline.h"

#include "framework/Framework.h"
#include "topology/Topology.h"

#include <limits>
#include <new>
#include <set>
#include <utility>

using namespace Qt::StringLiterals;
using tessaline::ContextRegistry;

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

/// What no caller from outside the library can reach, or only at great length.
class TestHelpers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pageIsCut_data()
    {
        addTable({"size", "pageSize", "pageNumbers", "page"}, uR"(
        first                 | 5 | 2   | 0              | 0 1
        second                | 5 | 2   | 1              | 2 3
        last                  | 5 | 2   | 2              | 4
        beyond the last       | 5 | 2   | 3 4 max        | 0 1
        beyond a full last    | 4 | 2   | 2              | 0 1
        before the first      | 5 | 2   | -1 -2 min      |
        none a page           | 5 | 0   | min -1 0 3 max |
        no records            | 0 | 2   | min -1 0 3 max |
        no records, none      | 0 | 0   | min -1 0 3 max |
        no records, negative  | 0 | -5  | min -1 0 3 max |
        negative takes all    | 5 | -5  | -1 0 3 max     | 0 1 2 3 4
        negative, one before  | 5 | -1  | -5             | 0 1 2 3 4
        negative, far before  | 5 | -1  | -6 min         |
        least                 | 5 | min | 0 3 max        | 0 1 2 3 4
        least, before         | 5 | min | -1 min         |
        greatest              | 5 | max | 0 3 max        | 0 1 2 3 4
        greatest, before      | 5 | max | -1 min         |
        )"_s);
    }
    void pageIsCut()
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
            const auto [first, end] = tessaline::pageSlice(std::size_t(list.size()),
                                                           number(pageSize), number(pageNumber));
            QCOMPARE(list.mid(qsizetype(first), qsizetype(end) - qsizetype(first)).join(u' '),
                     page);
        }
        // More pages than can be counted.
        for (const int bits : {31, 33})
            QCOMPARE(tessaline::pageSlice(std::size_t(1) << bits, 1, 5), tessaline::Slice(5, 6));
    }

    void pageSizeIsWhatWasSet()
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

    void contextAddressIsNotUsedAgainAtOnce()
    {
        ContextRegistry<ReusedContext> contexts;
        QList<const void *> last;
        for (int i = 0; i < 1000; ++i) {
            const void *const address = contexts.create({});
            QVERIFY(address); // not null: old addresses are used again
            QVERIFY(!last.contains(address));
            contexts.take(address);
            last = last.mid(last.size() - 127) + QList<const void *>{address};
        }
    }

    void permissionIsWhatTheServerSaidLast()
    {
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

    void whatWasForgottenIsNotFound()
    {
        const auto described = [](const QString &text) {
            return QVariant(QVariantMap{{u"description"_s, text}});
        };
        QVariantList list{described(u"first"_s)};
        tessaline::BookmarkIndex index;
        for (const QVariant &record :
             list + QVariantList{described(u"forgotten"_s), described(u"forgotten"_s)})
            index.append(record.toMap());
        index.truncate(1);
        list += {described(u"second"_s), described(u"last"_s)};
        for (const QVariant &record : list.mid(1))
            index.append(record.toMap());
        for (const auto &[text, rows] :
             {std::pair{u"first"_s, tessaline::Rows{0}}, std::pair{u"second"_s, tessaline::Rows{1}},
              std::pair{u"last"_s, tessaline::Rows{2}},
              std::pair{u"forgotten"_s, tessaline::Rows{}}}) {
            tessaline::Rows found = index.startingBetween(0, 0);
            QCOMPARE(found.size(), std::size_t(3));
            index.keepText(found, text, list);
            QCOMPARE(found, rows);
        }
    }

    void textsOfTimesAreKept()
    {
        if (!timesTell)
            QSKIP("Times say nothing here.");
        constexpr int Count = 2000;
        constexpr qint64 Begin = 1'770'000'000'000;
        const QLocale locale = QLocale::system();
        for (const char *zone : {"Europe/Berlin", "Asia/Tokyo", "UTC"}) {
            tessaline::DisplayTexts texts{QTimeZone(zone)};
            const qint64 kept = shortestTime([&] {
                for (int i = 0; i < Count; ++i)
                    texts.of(Begin + i * 60'000, Begin + i * 60'000);
            });
            const qint64 made = shortestTime([&] {
                for (int i = 0; i < Count; ++i) {
                    const auto moment =
                        QDateTime::fromMSecsSinceEpoch(Begin + i * 60'000, QTimeZone(zone));
                    locale.toString(moment, QLocale::ShortFormat);
                    locale.toString(moment.date(), QLocale::ShortFormat);
                }
            });
            QVERIFY2(kept * 5 < made, qPrintable(u"%1 ns, %2 anew"_s.arg(kept).arg(made)));
        }
    }

    void rangeIsAskedForOnDemand()
    {
        Host host;
        host.plugin.queryBookmarkForTimeline(1, 2, u"cell"_s);
        QVERIFY(host.framework.sent().isEmpty());
        QVERIFY(host.plugin.children().isEmpty());

        const auto ask = [&] {
            return host.plugin.queryBookmarkForTimeline(u"l"_s, u"A"_s, 1, 2, u"cell"_s);
        };
        QVERIFY(ask());
        host.framework.rules().setDefault(standin::Delivery::refused());
        QVERIFY(!ask());
        host.framework.rules().setDefault(standin::Delivery::held());
        host.framework.clearSent();

        host.plugin.getBookmarkModelForTimeline(u"cell"_s);
        for (int i = 0; i < 2; ++i) // even for what has been asked for before
            host.plugin.queryBookmarkForTimeline(2, 1, u"cell"_s);
        QCOMPARE(host.framework.sent().size(), 2);
        QCOMPARE(
            host.framework.sent().constLast().payload,
            QVariant(mapOf(uR"({"LocationID": "", "StartTimestamp": 2, "EndTimestamp": 1})"_s)));
    }
};

QTEST_GUILESS_MAIN(TestHelpers)
#include "tst_helpers.moc"
