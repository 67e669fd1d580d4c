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

/// Random stores and questions, the same in every run with the same seed.
class Chance
{
public:
    explicit Chance(unsigned seed)
        : m_random(seed)
    {
    }

    int below(int limit) { return int(m_random() % unsigned(limit)); }
    bool once(int times) { return below(times) == 0; }
    template <typename List>
    auto of(const List &list)
    {
        return list.at(below(int(list.size())));
    }

    /// Letters that differ in case only, that have no other case or several, that need two units.
    QString text(bool broken)
    {
        static const QStringList pieces{
            u"a"_s,      u"A"_s, u"b"_s,          u"B"_s,          u"ä"_s,
            u"Ä"_s,      u"ß"_s, u"ẞ"_s,          u"ss"_s,         u"ς"_s,
            u"Σ"_s,      u"σ"_s, u"K"_s,          u"k"_s,          u"\u212A"_s,
            u"\uFFFD"_s, u"İ"_s, u"ı"_s,          u"i"_s,          u"\u01C5"_s,
            u" "_s,      u"-"_s, u"\U00010400"_s, u"\U00010428"_s, QString(QChar(0))};
        QString text;
        for (int i = below(6); i > 0; --i)
            text += of(pieces);
        if (broken && once(4))
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
            return of(notable);
        const qint64 week = below(3'000) - 1'500;
        return 1'770'000'000'000 + (once(2) ? week * 604'800'000 : 0) + below(2'000'000'000);
    }

    QVariantMap record(int number, bool broken)
    {
        const qint64 start = moment();
        const qint64 end =
            once(10)
                ? moment()
                : std::min(start, std::numeric_limits<qint64>::max() - 100'000) + below(100'000);
        QVariantMap record =
            serverRecord(QString::number(number), QString::number(below(4)), u"l"_s, start, end,
                         text(broken), text(broken), text(broken));
        if (once(20))
            record.remove(of(record.keys()));
        if (once(20))
            record.insert(of(record.keys()), once(2) ? QVariant(below(9)) : QVariant());
        return record;
    }

    QVariantMap question(const QVariantList &list, bool broken)
    {
        static const QStringList keys{
            u"displayDate"_s, u"displayTimeRange"_s, u"cameraName"_s, u"group"_s,  u"creator"_s,
            u"description"_s, u"startTimestamp"_s,   u"relayPath"_s,  u"nobody"_s, QString()};
        const QVariantMap some = list.isEmpty() ? QVariantMap() : of(list).toMap();
        const auto field = [&](const QString &key) { return some.value(key).toString(); };
        QVariantMap question{{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
                             {u"endTimestamp"_s, std::numeric_limits<qint64>::max()},
                             {u"groupKey"_s, of(keys)},
                             {u"ascending"_s, once(2)},
                             {u"pageNumber"_s, below(5) - 1}};
        if (once(3))
            question[u"startTimestamp"_s] = some.value(u"startTimestamp"_s);
        if (once(3))
            question[u"endTimestamp"_s] = of(QList{some.value(u"startTimestamp"_s), {moment()}});
        if (once(3))
            question[u"nodeID"_s] =
                once(5) ? u"A"_s : standin::cameraKey(field(u"relayPath"_s), field(u"cameraID"_s));
        if (once(2)) {
            const QString from = field(of(QStringList{u"cameraName"_s, u"creator"_s,
                                                      u"description"_s, u"displayTimeRange"_s}));
            const QString piece = once(3) ? text(broken) : from.mid(below(4), 1 + below(5));
            question[u"text"_s] = once(2) ? piece.toUpper() : piece.toLower();
        }
        return question;
    }

private:
    std::mt19937 m_random;
};

} // namespace

/// The library gives the same results as the reference model, whatever the store and the question.
class TestReferenceModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesTheSameResultsAsTheLibrary();

private:
    static void compareStores(Chance &chance);
};

void TestReferenceModel::givesTheSameResultsAsTheLibrary()
{
    for (unsigned seed = 1; seed <= SEEDS; ++seed) {
        Chance chance(seed);
        compareStores(chance);
        QVERIFY2(!QTest::currentTestFailed(), qPrintable(u"seed %1"_s.arg(seed)));
    }
}

void TestReferenceModel::compareStores(Chance &chance)
{
    static const QByteArrayList zones{"Europe/Berlin", "America/New_York",    "Asia/Kolkata",
                                      "UTC",           "Australia/Lord_Howe", "Africa/Casablanca",
                                      "nowhere"};
    const bool broken = chance.once(5);
    TestHost host;
    for (int query = 0; query < 2; ++query) {
        QVariantList expected;
        const QByteArray zone = chance.of(zones);
        host.answer(u"QuerySevTimezone"_s, zone, {});
        host.framework.clearSent();
        host.call(u"queryAllBookmarks()"_s);
        const QList<standin::SentCommand> queries = host.framework.sent();
        for (const standin::SentCommand &sent : queries) {
            QVariantList records;
            for (int i = chance.once(20) ? 0 : chance.below(60); i > 0; --i)
                records.append(chance.record(i, broken));
            host.answer(sent, QVariantMap{{u"Bookmarks"_s, records}});
            const QVariantMap names =
                host.topology.getValuesFromModel(0, u"idRole"_s, u"nameRole"_s);
            for (const QVariant &record : std::as_const(records)) {
                expected.append(referencemodel::displayRecord(record.toMap(), sent.relayPath, names,
                                                              QTimeZone(zone)));
            }
            // Asked while the query goes on, too: columns that a question has made must grow.
            const QVariantList list = host.call(u"getBookmarkListByNodeID('')"_s).toList();
            QCOMPARE(list, expected);
            for (int i = 0; i < 3; ++i) {
                const QVariantMap question = chance.question(list, broken);
                const QVariantMap page = host.call("getFilteredBookmarkList", {question}).toMap();
                QCOMPARE(referencemodel::differenceOf(page, list, question), QString());
            }
        }
    }
}

QTEST_GUILESS_MAIN(TestReferenceModel)
#include "tst_referencemodel.moc"
