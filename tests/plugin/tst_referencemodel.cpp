#include "ReferenceModel.h"
#include "TestHost.h"
#include "topology/CameraKey.h"

#include <QtCore/QTimeZone>
#include <QtTest/QTest>

#include <algorithm>
#include <limits>
#include <random>

using namespace Qt::StringLiterals;

namespace {

/// Generates random records and filters. Equal seeds give equal values.
class Generator
{
public:
    explicit Generator(unsigned seed)
        : m_random(seed)
    {
    }

    int below(int limit) { return int(m_random() % unsigned(limit)); }
    /// @return true once in @p times calls on average
    bool once(int times) { return below(times) == 0; }
    template <typename List>
    auto elementOf(const List &list)
    {
        return list.at(below(int(list.size())));
    }

    /// Returns letters with one, several or no forms in the other case, and code points above 16
    /// bits.
    /// @param malformed true to add lone surrogates at times
    QString text(bool malformed)
    {
        static const QStringList pieces{
            u"a"_s,      u"A"_s, u"b"_s,          u"B"_s,          u"ä"_s,
            u"Ä"_s,      u"ß"_s, u"ẞ"_s,          u"ss"_s,         u"ς"_s,
            u"Σ"_s,      u"σ"_s, u"K"_s,          u"k"_s,          u"\u212A"_s,
            u"\uFFFD"_s, u"İ"_s, u"ı"_s,          u"i"_s,          u"\u01C5"_s,
            u" "_s,      u"-"_s, u"\U00010400"_s, u"\U00010428"_s, QString(QChar(0))};
        QString text;
        for (int i = below(6); i > 0; --i)
            text += elementOf(pieces);
        if (malformed && once(4))
            text += once(2) ? QChar(0xd801) : QChar(0xdc28);
        return text;
    }

    qint64 moment()
    {
        static const QList<qint64> notable{0,
                                           -1,
                                           1'774'745'999'999,
                                           1'774'746'000'000, // summer time begins in Europe
                                           1'792'889'999'999,
                                           1'792'890'000'000, // and ends
                                           std::numeric_limits<qint64>::min(),
                                           std::numeric_limits<qint64>::max()};
        if (once(10))
            return elementOf(notable);
        const qint64 week = below(3'000) - 1'500;
        return 1'770'000'000'000 + (once(2) ? week * 604'800'000 : 0) + below(2'000'000'000);
    }

    QVariantMap record(int number, bool malformed)
    {
        const qint64 start = moment();
        const qint64 end =
            once(10)
                ? moment()
                : std::min(start, std::numeric_limits<qint64>::max() - 100'000) + below(100'000);
        QVariantMap record =
            serverRecord(QString::number(number), QString::number(below(4)), u"l"_s, start, end,
                         text(malformed), text(malformed), text(malformed));
        if (once(20))
            record.remove(elementOf(record.keys()));
        if (once(20))
            record.insert(elementOf(record.keys()), once(2) ? QVariant(below(9)) : QVariant());
        return record;
    }

    QVariantMap filter(const QVariantList &list, bool malformed)
    {
        static const QStringList keys{
            u"displayDate"_s, u"displayTimeRange"_s, u"cameraName"_s, u"group"_s,  u"creator"_s,
            u"description"_s, u"startTimestamp"_s,   u"relayPath"_s,  u"nobody"_s, QString()};
        const QVariantMap some = list.isEmpty() ? QVariantMap() : elementOf(list).toMap();
        const auto field = [&](const QString &key) { return some.value(key).toString(); };
        QVariantMap filter{{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
                           {u"endTimestamp"_s, std::numeric_limits<qint64>::max()},
                           {u"groupKey"_s, elementOf(keys)},
                           {u"ascending"_s, once(2)},
                           {u"pageNumber"_s, below(5) - 1}};
        if (once(3))
            filter[u"startTimestamp"_s] = some.value(u"startTimestamp"_s);
        if (once(3))
            filter[u"endTimestamp"_s] =
                elementOf(QList{some.value(u"startTimestamp"_s), {moment()}});
        if (once(3))
            filter[u"nodeID"_s] =
                once(5) ? u"A"_s : standin::cameraKey(field(u"relayPath"_s), field(u"cameraID"_s));
        if (once(2)) {
            const QString from = field(elementOf(QStringList{
                u"cameraName"_s, u"creator"_s, u"description"_s, u"displayTimeRange"_s}));
            const QString piece = once(3) ? text(malformed) : from.mid(below(4), 1 + below(5));
            filter[u"text"_s] = once(2) ? piece.toUpper() : piece.toLower();
        }
        return filter;
    }

private:
    std::mt19937 m_random;
};

} // namespace

/// Compares the library with the reference model for random records and filters.
class TestReferenceModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pagesAndListsEqualTheReferenceModel();

private:
    static void compareLists(Generator &generate);
};

void TestReferenceModel::pagesAndListsEqualTheReferenceModel()
{
    for (unsigned seed = 1; seed <= SEEDS; ++seed) {
        Generator generate(seed);
        compareLists(generate);
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(u"seed %1"_s.arg(seed)));
    }
}

void TestReferenceModel::compareLists(Generator &generate)
{
    static const QByteArrayList zones{"Europe/Berlin", "America/New_York",    "Asia/Kolkata",
                                      "UTC",           "Australia/Lord_Howe", "Africa/Casablanca",
                                      "nowhere"};
    const bool malformed = generate.once(5);
    TestHost host;
    for (int query = 0; query < 2; ++query) {
        QVariantList expected;
        const QByteArray zone = generate.elementOf(zones);
        host.answer(u"QuerySevTimezone"_s, zone, {});
        host.framework.clearSent();
        host.call(u"queryAllBookmarks()"_s);
        const QList<standin::SentCommand> queries = host.framework.sent();
        for (const standin::SentCommand &sent : queries) {
            QVariantList records;
            for (int i = generate.once(20) ? 0 : generate.below(60); i > 0; --i)
                records.append(generate.record(i, malformed));
            host.answer(sent, QVariantMap{{u"Bookmarks"_s, records}});
            const QVariantMap names =
                host.topology.getValuesFromModel(0, u"idRole"_s, u"nameRole"_s);
            for (const QVariant &record : std::as_const(records)) {
                expected.append(referencemodel::displayRecord(record.toMap(), sent.relayPath, names,
                                                              QTimeZone(zone)));
            }
            // Pages after each answer: columns that the first page has created must grow.
            const QVariantList list = host.call(u"getBookmarkListByNodeID('')"_s).toList();
            QCOMPARE(list, expected);
            for (int i = 0; i < 3; ++i) {
                const QVariantMap filter = generate.filter(list, malformed);
                const QVariantMap page = host.call("getFilteredBookmarkList", {filter}).toMap();
                QCOMPARE(referencemodel::differenceOf(page, list, filter), QString());
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestReferenceModel)
#include "tst_referencemodel.moc"
