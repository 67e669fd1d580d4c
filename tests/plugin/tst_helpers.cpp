#include "PageSlice.h"
#include "RequestContexts.h"
#include "Tessaline.h"

#include "framework/Framework.h"
#include "topology/Topology.h"

#include <QtTest/QTest>

#include <limits>
#include <set>

using namespace Qt::StringLiterals;
using tessaline::ContextRegistry;

namespace {

constexpr int IntMin = std::numeric_limits<int>::min();
constexpr int IntMax = std::numeric_limits<int>::max();

QString textOf(const QVariantList &numbers)
{
    QStringList texts;
    for (const QVariant &number : numbers)
        texts.append(number.toString());
    return texts.join(u' ');
}

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
    void pageIsCut_data();
    void pageIsCut();
    void contextIsFoundWhileOutstanding();
    void contextAddressIsNotUsedAgainAtOnce();
    void permissionIsWhatTheServerSaidLast();
    void pageSizeIsWhatWasSet_data();
    void pageSizeIsWhatWasSet();
    void rangeIsAskedForOnDemand();
};

void TestHelpers::pageIsCut_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("pageSize");
    QTest::addColumn<int>("pageNumber");
    QTest::addColumn<QString>("page");

    const auto row = [](int size, int pageSize, int pageNumber, const char *page) {
        QTest::addRow("page %d of %d by %d", pageNumber, size, pageSize)
            << size << pageSize << pageNumber << QString::fromLatin1(page);
    };
    const char *const all = "0 1 2 3 4";
    row(5, 2, 0, "0 1");
    row(5, 2, 1, "2 3");
    row(5, 2, 2, "4");
    for (const int beyond : {3, 4, IntMax})
        row(5, 2, beyond, "0 1");
    for (const int before : {-1, -2, IntMin})
        row(5, 2, before, "");
    row(4, 2, 2, "0 1");
    for (const int number : {IntMin, -1, 0, 3, IntMax}) {
        row(5, 0, number, "");
        row(0, 2, number, "");
        row(0, 0, number, "");
        row(0, -5, number, "");
        row(5, 1, number, number == 3 ? "3" : number < 0 ? "" : "0");
        // From page 0 on, a negative size takes the rest of the list.
        row(5, -5, number, number == IntMin ? "" : all);
        row(5, IntMin, number, number < 0 ? "" : all);
        row(5, IntMax, number, number < 0 ? "" : all);
    }
    row(5, -5, -2, "");
    row(5, -1, -5, all);
    row(5, -1, -6, "");
}

void TestHelpers::pageIsCut()
{
    QFETCH(const int, size);
    QFETCH(const int, pageSize);
    QFETCH(const int, pageNumber);
    QFETCH(const QString, page);

    QVariantList list;
    for (int i = 0; i < size; ++i)
        list.append(i);
    const auto [first, end] =
        tessaline::pageSlice(static_cast<std::size_t>(size), pageSize, pageNumber);
    QCOMPARE(textOf(list.mid(qsizetype(first), qsizetype(end) - qsizetype(first))), page);
}

void TestHelpers::contextIsFoundWhileOutstanding()
{
    ContextRegistry<QString> contexts;
    QString *const first = contexts.create();
    QString *const second = contexts.create();
    QVERIFY(first && second && first != second);
    *first = u"first"_s;
    const QString stranger;
    for (const void *unknown :
         {static_cast<const void *>(nullptr), static_cast<const void *>(&stranger),
          static_cast<const void *>(first + 1)}) {
        QVERIFY(!contexts.find(unknown));
        QVERIFY(!contexts.take(unknown));
    }
    QCOMPARE(contexts.find(first), first);
    const auto taken = contexts.take(first);
    QCOMPARE(taken.get(), first);
    QCOMPARE(*taken, u"first"_s);
    QVERIFY(!contexts.find(first));
    QVERIFY(!contexts.take(first));
    QCOMPARE(contexts.find(second), second); // left to the registry
}

void TestHelpers::contextAddressIsNotUsedAgainAtOnce()
{
    ContextRegistry<QString> contexts;
    std::set<const void *> addresses;
    for (int i = 0; i < 100; ++i) {
        const void *const address = contexts.create();
        contexts.take(address);
        QVERIFY(addresses.insert(address).second);
    }
#if !defined(__SANITIZE_ADDRESS__) // which itself keeps freed memory apart
    // Not for ever, or the list of them would grow with every request.
    for (int i = 0; i < 1000; ++i) {
        const void *const address = contexts.create();
        contexts.take(address);
        addresses.insert(address);
    }
    QVERIFY(addresses.size() < 500);
#endif
}

void TestHelpers::permissionIsWhatTheServerSaidLast()
{
    Host host;
    QVERIFY(!host.plugin.hasSettingPermission());
    for (const bool permitted : {true, false}) {
        host.answer(u"QuerySettingPermission"_s, permitted);
        QCOMPARE(host.plugin.hasSettingPermission(), permitted);
    }
    host.answer(u"QuerySettingPermission"_s, true);
    host.plugin.PluginServerConnected();
    QVERIFY(host.plugin.hasSettingPermission());
    host.plugin.Init(nullptr);
    QVERIFY(!host.plugin.hasSettingPermission());
}

void TestHelpers::pageSizeIsWhatWasSet_data()
{
    QTest::addColumn<int>("pageSize");
    QTest::addColumn<int>("pageNumber");
    QTest::addColumn<int>("count");

    QTest::newRow("three") << 3 << 0 << 3;
    QTest::newRow("three, last page") << 3 << 3 << 1;
    QTest::newRow("three, beyond") << 3 << 4 << 3;
    QTest::newRow("greatest") << IntMax << 5 << 10;
    QTest::newRow("none") << 0 << 0 << 0;
    QTest::newRow("negative") << -5 << 0 << 10;
    QTest::newRow("least") << IntMin << IntMin << 0;
}

void TestHelpers::pageSizeIsWhatWasSet()
{
    QFETCH(const int, pageSize);
    QFETCH(const int, pageNumber);
    QFETCH(const int, count);

    Host host;
    QVERIFY(host.plugin.queryAllBookmarks());
    const standin::SentCommand query = host.framework.sent().constFirst();
    host.answer(query.command,
                QVariantMap{{u"Bookmarks"_s, QVariantList(10, QVariant(QVariantMap()))}},
                query.context);
    const QVariantList stored = host.plugin.getBookmarkList();
    QCOMPARE(stored.size(), 10);

    host.plugin.setBookmarkNumberPerPage(pageSize);
    const QVariantMap page = host.plugin.getFilteredBookmarkList({{u"pageNumber"_s, pageNumber}});
    QCOMPARE(page.value(u"totalBookmarkNumber"_s).toInt(), 10);
    const QVariantList groups = page.value(u"bookmarkGroupList"_s).toList();
    QCOMPARE(groups.size(), count ? 1 : 0);
    QCOMPARE(groups.value(0).toMap().value(u"bookmarkList"_s).toList().size(), count);

    QVERIFY(host.plugin.queryAllBookmarks());
    QVERIFY(host.plugin.getBookmarkList().isEmpty());
    QCOMPARE(stored.size(), 10);
}

void TestHelpers::rangeIsAskedForOnDemand()
{
    Host host;
    host.plugin.queryBookmarkForTimeline(1, 2, u"cell"_s);
    QVERIFY(host.framework.sent().isEmpty());
    QVERIFY(host.plugin.children().isEmpty());

    host.plugin.getBookmarkModelForTimeline(u"cell"_s);
    host.plugin.setTimelineFocusInfo(u"loc"_s, u"A"_s, u"cell"_s);
    for (int i = 0; i < 2; ++i) // even for what has been asked for before
        host.plugin.queryBookmarkForTimeline(1, 2, u"cell"_s);
    host.plugin.queryBookmarkForTimeline(2, 1, u"cell"_s);
    const QList<standin::SentCommand> sent = host.framework.sent();
    QCOMPARE(sent.size(), 3);
    QCOMPARE(sent.at(1).payload, QVariant(QVariantMap{{u"LocationID"_s, u"loc"_s},
                                                      {u"StartTimestamp"_s, 1LL},
                                                      {u"EndTimestamp"_s, 2LL}}));
    QCOMPARE(sent.at(1).relayPath, u"A"_s);
    QCOMPARE(sent.at(2).payload.toMap().value(u"EndTimestamp"_s).toInt(), 1);
}

QTEST_GUILESS_MAIN(TestHelpers)
#include "tst_helpers.moc"
