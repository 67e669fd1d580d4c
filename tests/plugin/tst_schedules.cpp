#include "TestHost.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <random>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

enum class Kind { Add, Delete, Query };

QString stationName(int station)
{
    return QString(QChar(u'A' + station));
}

/// What the plug-in is to do, written for being read: one view cell, which shows what station A
/// adds; requests to several stations; answers in any order.
class Model
{
public:
    struct Request
    {
        Kind kind = Kind::Add;
        std::vector<int> pending;
        QStringList failed;
        int generation = 0;
        bool isOver = false;
    };
    std::vector<Request> requests;
    QStringList listed;  ///< "A/x", the list of all bookmarks
    QStringList shown;   ///< rows of the view cell
    bool isOpen = false; ///< the view cell
    QStringList heard;   ///< log lines and signals

    /// Stations in @p refusing can't be reached.
    bool send(Kind kind, int stationCount, const std::vector<int> &refusing)
    {
        Request request{kind, {}, {}, kind == Kind::Query ? ++m_generation : 0};
        if (kind == Kind::Query)
            listed.clear();
        static const char *const lines[] = {"send command failed <Tessaline::addBookmarks>",
                                            "send command failed <Tessaline::deleteBookmarks>",
                                            "SendCommand failed <Tessaline::queryAllBookmarks>"};
        for (int station = 0; station < stationCount; ++station) {
            if (std::count(refusing.cbegin(), refusing.cend(), station) > 0)
                heard.append(u"log Tessaline_Req: %s, "_s + QLatin1String(lines[int(kind)]));
            else
                request.pending.push_back(station);
        }
        request.isOver = request.pending.empty();
        requests.push_back(request);
        return !request.isOver;
    }

    void answer(std::size_t number, int station, bool succeeds, const QString &id)
    {
        Request &request = requests[number];
        const auto place = std::find(request.pending.begin(), request.pending.end(), station);
        const bool isAwaited = place != request.pending.end();
        if (request.kind == Kind::Query)
            return answerQuery(request, place, station, succeeds, id);
        if (request.isOver || !isAwaited)
            return;
        request.pending.erase(place);
        const QString name =
            request.kind == Kind::Add ? u"Camera %1%2"_s.arg(stationName(station)).arg(1) : id;
        if (!succeeds)
            request.failed.append(name);
        else if (request.kind == Kind::Delete)
            shown.removeAll(id);
        else if (isOpen && station == 0 && !shown.contains(id))
            shown.append(id);
        request.isOver = request.pending.empty();
        if (request.isOver) {
            heard.append(u"signal %1BookmarksResponsed(%2)"_s.arg(
                request.kind == Kind::Add ? u"add"_s : u"delete"_s, request.failed.join(u',')));
        }
    }

private:
    void answerQuery(Request &request, std::vector<int>::iterator place, int station, bool succeeds,
                     const QString &id)
    {
        const QString line = u"log Tessaline_ReqRespHandler: %s, %1 "
                             "<Tessaline::HandleQueryAllBookmarksResp%2>"_s;
        if (request.isOver) {
            heard.append(line.arg(u"request response context is NULL"_s, QString()));
            return;
        }
        if (!succeeds)
            heard.append(line.arg(u"query all bookmarks for server (%s) failed"_s,
                                  u", "_s + stationName(station)));
        else if (request.generation == m_generation)
            listed.append(stationName(station) + u'/' + id);
        if (place != request.pending.end())
            request.pending.erase(place);
        request.isOver = request.pending.empty();
        if (request.generation == m_generation) {
            heard.append(u"signal queryAllBookmarksResponsed(%1)"_s.arg(
                request.isOver ? u"true"_s : u"false"_s));
        }
    }

    int m_generation = 0;
};

/// The plug-in and the model, step by step the same.
class Pair
{
public:
    explicit Pair(int stationCount)
        : m_stationCount(stationCount)
    {
        m_host.play(u"grant"_s);
        m_host.framework.setObserver({}); // commands are compared by their results
        m_host.topology.clear();
        for (int station = 0; station < stationCount; ++station) {
            const QString name = stationName(station);
            m_host.topology.setStation(name, name);
            m_host.topology.setCamera(name + u"/1"_s, u"Camera "_s + name + u'1');
            m_targets.append(QVariantMap{{u"CameraID"_s, u"1"_s},
                                         {u"BookmarkID"_s, u"b"_s},
                                         {u"LocationID"_s, u"l"_s},
                                         {u"relayPath"_s, name}});
        }
    }

    const std::vector<Model::Request> &requests() const { return m_model.requests; }
    /// The first difference; empty when there was none.
    QString fault() const { return m_fault; }

    void send(Kind kind, const std::vector<int> &refusing = {})
    {
        note(u"send %1"_s.arg(int(kind)));
        auto &rules = m_host.framework.rules();
        rules.reset();
        rules.setDefault(standin::Delivery::never());
        for (const int station : refusing)
            rules.setForStation(stationName(station), standin::Delivery::refused());
        const bool sent =
            kind == Kind::Add
                ? m_host.call("addBookmarks", {m_targets, 1LL, 2LL, u""_s, u""_s, u""_s}).toBool()
            : kind == Kind::Delete ? m_host.call("deleteBookmarks", {QVariant(m_targets)}).toBool()
                                   : m_host.call("queryAllBookmarks", {}).toBool();
        m_sent.push_back(m_host.framework.sent().value(0));
        m_host.framework.clearSent();
        const bool expected = m_model.send(kind, m_stationCount, refusing);
        compare(u"sent"_s, QVariant(sent).toString(), QVariant(expected).toString());
        compareState();
    }

    void answer(std::size_t number, int station, bool succeeds)
    {
        note(u"answer %1%2 %3"_s.arg(number).arg(stationName(station)).arg(int(succeeds)));
        const QString id = QString::number(m_model.shown.size() % 3);
        const standin::SentCommand &command = m_sent[number];
        const Kind kind = requests()[number].kind;
        const QVariantMap record{
            {u"BookmarkID"_s, id}, {u"CameraID"_s, u"1"_s}, {u"LocationID"_s, u"l"_s}};
        const QVariant result = kind == Kind::Add      ? QVariant(QVariantList{record})
                                : kind == Kind::Delete ? QVariant(QStringList{id})
                                                       : queryAnswer({id});
        m_host.answer(command.command, result, stationName(station), command.context,
                      succeeds ? u"0"_s : u"-1"_s);
        m_model.answer(number, station, succeeds, id);
        compareState();
    }

    void openOrClose()
    {
        note(u"open or close"_s);
        m_model.isOpen = !m_model.isOpen;
        m_model.shown.clear();
        if (m_model.isOpen) {
            m_host.showCell(u"1"_s, u"l"_s, u"A"_s);
        } else {
            m_host.call("removeTimelineModel", {u"1"_s});
        }
        compareState();
    }

    /// Everything that is lost arrives late.
    void settle()
    {
        for (std::size_t number = 0; number < requests().size(); ++number) {
            while (!requests()[number].isOver)
                answer(number, requests()[number].pending.front(), true);
        }
        m_model.requests.clear();
        m_sent.clear();
        m_steps.clear();
    }

private:
    void note(const QString &step) { m_steps.append(step); }

    void compare(const QString &what, const QString &actual, const QString &expected)
    {
        if (m_fault.isEmpty() && actual != expected) {
            m_fault = u"%1: \"%2\" instead of \"%3\" after %4"_s.arg(what, actual, expected,
                                                                     m_steps.join(u", "_s));
        }
    }

    void compareState()
    {
        QStringList trace = m_host.takeTrace();
        trace.removeIf([](const QString &line) { return line.startsWith(u"timeline "_s); });
        compare(u"heard"_s, trace.join(u'\n'), std::exchange(m_model.heard, {}).join(u'\n'));
        compare(u"listed"_s, m_host.identifiersIn(u"all"_s), m_model.listed.join(u' '));
        QStringList rows;
        if (m_model.isOpen)
            rows = m_host.rowsIn(u"1"_s).split(u' ', Qt::SkipEmptyParts);
        rows.sort();
        m_model.shown.sort();
        compare(u"shown"_s, rows.join(u' '), m_model.shown.join(u' '));
    }

    int m_stationCount;
    TestHost m_host;
    Model m_model;
    QVariantList m_targets;
    std::vector<standin::SentCommand> m_sent; ///< the first command of each request
    QStringList m_steps;
    QString m_fault;
};

#if defined(NDEBUG)
constexpr int MostStations = 5;
constexpr int ManyStations = 5;
constexpr int RandomSchedules = 10'000;
#else // a build for finding faults is ten times slower
constexpr int MostStations = 4;
constexpr int ManyStations = 4;
constexpr int RandomSchedules = 1'000;
#endif

enum Outcome { Answered, Failed, Lost, Doubled, OutcomeCount };

/// One schedule: a request, its answers in an order, something else in between.
void play(Pair &pair, Kind kind, const std::vector<int> &order, const std::vector<int> &outcomes,
          std::size_t place, const std::function<void()> &between)
{
    pair.send(kind);
    for (std::size_t i = 0; i <= order.size(); ++i) {
        if (i == place)
            between();
        if (i == order.size())
            break;
        const int station = order[i];
        const int outcome = outcomes[std::size_t(station)];
        if (outcome != Lost)
            pair.answer(0, station, outcome != Failed);
        if (outcome == Doubled)
            pair.answer(0, station, true);
    }
    pair.settle();
}

int fromEnvironment(const char *name, int otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : otherwise;
}

} // namespace

/// Requests to several stations under every order of answers, compared step by step with a model.
class TestSchedules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyOrder_data();
    void everyOrder();
    void atRandom();
};

void TestSchedules::everyOrder_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("stations");
    const char *const names[] = {"add", "delete", "query"};
    for (int kind = 0; kind < 3; ++kind) {
        for (int stations = 1; stations <= MostStations; ++stations)
            QTest::addRow("%s, %d", names[kind], stations) << kind << stations;
    }
}

void TestSchedules::everyOrder()
{
    QFETCH(const int, kind);
    QFETCH(const int, stations);
    Pair pair(stations);
    pair.openOrClose();
    const std::function<void()> betweens[] = {[&] { pair.send(Kind(kind)); },
                                              [&] { pair.openOrClose(); }};
    // Of many stations all but one answer; otherwise every one has every fate.
    const auto isTried = [&](const std::vector<int> &outcomes) {
        return stations < ManyStations ||
               std::count(outcomes.cbegin(), outcomes.cend(), Answered) >= stations - 1;
    };
    int played = 0;
    std::vector<int> order(std::size_t(stations), 0);
    std::iota(order.begin(), order.end(), 0);
    do {
        std::vector<int> outcomes(std::size_t(stations), 0);
        for (bool more = true; more;) {
            for (std::size_t place = 0; isTried(outcomes) && place <= order.size(); ++place) {
                for (const auto &between : betweens) {
                    play(pair, Kind(kind), order, outcomes, place, between);
                    ++played;
                }
                QVERIFY2(pair.fault().isEmpty(), qPrintable(pair.fault()));
            }
            more = false; // counts through the outcomes
            for (std::size_t i = 0; i < outcomes.size() && !more; ++i) {
                outcomes[i] = (outcomes[i] + 1) % OutcomeCount;
                more = outcomes[i] != 0;
            }
        }
    } while (std::next_permutation(order.begin(), order.end()));
    qInfo("%d schedules", played);
}

/// TESSALINE_SCHEDULES tells how many, TESSALINE_SEED which.
void TestSchedules::atRandom()
{
    const auto seed =
        fromEnvironment("TESSALINE_SEED", int(QRandomGenerator::system()->bounded(1 << 30)));
    const int count = fromEnvironment("TESSALINE_SCHEDULES", RandomSchedules);
    qInfo("%d schedules from seed %d", count, seed);
    std::minstd_rand random{unsigned(seed)};
    const auto below = [&](std::size_t limit) { return std::size_t(random() >> 8) % limit; };

    std::optional<Pair> pair;
    for (int schedule = 0; schedule < count; ++schedule) {
        const int stations = 1 + schedule / 100 % 5;
        if (schedule % 100 == 0)
            pair.emplace(stations);
        for (std::size_t steps = 5 + below(20); steps > 0; --steps) {
            const std::size_t requests = pair->requests().size();
            const std::size_t choice = below(12);
            if (requests == 0 || choice == 0) {
                std::vector<int> refusing;
                for (int station = 0; station < stations; ++station) {
                    if (below(8) == 0)
                        refusing.push_back(station);
                }
                pair->send(Kind(below(3)), refusing);
            } else if (choice == 1) {
                pair->openOrClose();
            } else {
                pair->answer(below(requests), int(below(std::size_t(stations))), below(3) > 0);
            }
        }
        pair->settle();
        QVERIFY2(pair->fault().isEmpty(), qPrintable(pair->fault()));
    }
}

QTEST_GUILESS_MAIN(TestSchedules)
#include "tst_schedules.moc"
