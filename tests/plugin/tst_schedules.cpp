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

/// A simple model of the plug-in: requests to several stations, answers in any order, and one view
/// cell that shows the bookmarks of station A.
class Model
{
public:
    struct Request
    {
        Kind kind = Kind::Add;
        std::vector<int> pending;
        QStringList failed;
        int generation = 0;
        bool isComplete = false;
    };
    std::vector<Request> requests;
    QStringList listed;  ///< the list of all bookmarks, "A/x"
    QStringList shown;   ///< rows of the view cell
    bool isOpen = false; ///< true while the view cell is open
    QStringList trace;   ///< log lines and signals

    /// @param rejecting stations whose commands the host rejects
    /// @return true if at least one command was accepted
    bool send(Kind kind, int stationCount, const std::vector<int> &rejecting)
    {
        Request request{kind, {}, {}, kind == Kind::Query ? ++m_generation : 0};
        if (kind == Kind::Query)
            listed.clear();
        static const char *const lines[] = {"send command failed <Tessaline::addBookmarks>",
                                            "send command failed <Tessaline::deleteBookmarks>",
                                            "SendCommand failed <Tessaline::queryAllBookmarks>"};
        for (int station = 0; station < stationCount; ++station) {
            if (std::count(rejecting.cbegin(), rejecting.cend(), station) > 0)
                trace.append(u"log Tessaline_Req: %s, "_s + QLatin1String(lines[int(kind)]));
            else
                request.pending.push_back(station);
        }
        request.isComplete = request.pending.empty();
        requests.push_back(request);
        return !request.isComplete;
    }

    void answer(std::size_t number, int station, bool succeeds, const QString &id)
    {
        Request &request = requests[number];
        const auto place = std::find(request.pending.begin(), request.pending.end(), station);
        const bool isAwaited = place != request.pending.end();
        if (request.kind == Kind::Query)
            return answerQuery(request, place, station, succeeds, id);
        if (request.isComplete || !isAwaited)
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
        request.isComplete = request.pending.empty();
        if (request.isComplete) {
            trace.append(u"signal %1BookmarksResponsed(%2)"_s.arg(
                request.kind == Kind::Add ? u"add"_s : u"delete"_s, request.failed.join(u',')));
        }
    }

private:
    void answerQuery(Request &request, std::vector<int>::iterator place, int station, bool succeeds,
                     const QString &id)
    {
        const QString line = u"log Tessaline_ReqRespHandler: %s, %1 "
                             "<Tessaline::HandleQueryAllBookmarksResp%2>"_s;
        if (request.isComplete) {
            trace.append(line.arg(u"request response context is NULL"_s, QString()));
            return;
        }
        if (!succeeds)
            trace.append(line.arg(u"query all bookmarks for server (%s) failed"_s,
                                  u", "_s + stationName(station)));
        else if (request.generation == m_generation)
            listed.append(stationName(station) + u'/' + id);
        if (place != request.pending.end())
            request.pending.erase(place);
        request.isComplete = request.pending.empty();
        if (request.generation == m_generation) {
            trace.append(u"signal queryAllBookmarksResponsed(%1)"_s.arg(
                request.isComplete ? u"true"_s : u"false"_s));
        }
    }

    int m_generation = 0;
};

/// Runs each step on the plug-in and the model and compares their states.
class Comparison
{
public:
    explicit Comparison(int stationCount)
        : m_stationCount(stationCount)
    {
        m_host.play(u"grant"_s);
        m_host.framework.setObserver({}); // only the results of the commands are compared
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
    /// @return the first difference; empty if there is none
    QString fault() const { return m_fault; }

    void send(Kind kind, const std::vector<int> &rejecting = {})
    {
        note(u"send %1"_s.arg(int(kind)));
        auto &rules = m_host.framework.rules();
        rules.reset();
        rules.setDefault(standin::Delivery::never());
        for (const int station : rejecting)
            rules.setForStation(stationName(station), standin::Delivery::rejected());
        const bool sent =
            kind == Kind::Add
                ? m_host.call("addBookmarks", {m_targets, 1LL, 2LL, u""_s, u""_s, u""_s}).toBool()
            : kind == Kind::Delete ? m_host.call("deleteBookmarks", {QVariant(m_targets)}).toBool()
                                   : m_host.call("queryAllBookmarks", {}).toBool();
        m_sent.push_back(m_host.framework.sent().value(0));
        m_host.framework.clearSent();
        const bool expected = m_model.send(kind, m_stationCount, rejecting);
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

    /// Delivers the answers that are still missing and removes all requests.
    void answerAll()
    {
        for (std::size_t number = 0; number < requests().size(); ++number) {
            while (!requests()[number].isComplete)
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
        compare(u"trace"_s, trace.join(u'\n'), std::exchange(m_model.trace, {}).join(u'\n'));
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
constexpr int MaxStations = 5;
constexpr int ManyStations = 5;
constexpr int RandomSchedules = 10'000;
#else // a debug build is ten times slower
constexpr int MaxStations = 4;
constexpr int ManyStations = 4;
constexpr int RandomSchedules = 1'000;
#endif

enum Outcome { Answered, Failed, Lost, Repeated, OutcomeCount };

/// Plays one schedule.
/// @param order stations in the order of their answers
/// @param outcomes outcome of each station's answer
/// @param between called before the answer at @p place in the order
void play(Comparison &comparison, Kind kind, const std::vector<int> &order,
          const std::vector<int> &outcomes, std::size_t place, const std::function<void()> &between)
{
    comparison.send(kind);
    for (std::size_t i = 0; i <= order.size(); ++i) {
        if (i == place)
            between();
        if (i == order.size())
            break;
        const int station = order[i];
        const int outcome = outcomes[std::size_t(station)];
        if (outcome != Lost)
            comparison.answer(0, station, outcome != Failed);
        if (outcome == Repeated)
            comparison.answer(0, station, true);
    }
    comparison.answerAll();
}

int fromEnvironment(const char *name, int otherwise)
{
    return qEnvironmentVariableIsSet(name) ? qEnvironmentVariableIntValue(name) : otherwise;
}

} // namespace

/// Requests to several stations with every order of answers, compared with a model after each step.
class TestSchedules : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyOrderEqualsTheModel_data();
    void everyOrderEqualsTheModel();
    void randomSchedulesEqualTheModel();
};

void TestSchedules::everyOrderEqualsTheModel_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("stations");
    const char *const names[] = {"add", "delete", "query"};
    for (int kind = 0; kind < 3; ++kind) {
        for (int stations = 1; stations <= MaxStations; ++stations)
            QTest::addRow("%s, %d", names[kind], stations) << kind << stations;
    }
}

void TestSchedules::everyOrderEqualsTheModel()
{
    QFETCH(const int, kind);
    QFETCH(const int, stations);
    Comparison comparison(stations);
    comparison.openOrClose();
    const std::function<void()> betweens[] = {[&] { comparison.send(Kind(kind)); },
                                              [&] { comparison.openOrClose(); }};
    // With many stations at most one has another outcome than an answer; otherwise try all
    // combinations.
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
                    play(comparison, Kind(kind), order, outcomes, place, between);
                    ++played;
                }
                QVERIFY2(comparison.fault().isEmpty(), qPrintable(comparison.fault()));
            }
            more = false; // increment the outcomes like the digits of a number
            for (std::size_t i = 0; i < outcomes.size() && !more; ++i) {
                outcomes[i] = (outcomes[i] + 1) % OutcomeCount;
                more = outcomes[i] != 0;
            }
        }
    } while (std::next_permutation(order.begin(), order.end()));
    qInfo("%d schedules", played);
}

/// TESSALINE_SCHEDULES sets the number of schedules, TESSALINE_SEED the seed.
void TestSchedules::randomSchedulesEqualTheModel()
{
    const auto seed =
        fromEnvironment("TESSALINE_SEED", int(QRandomGenerator::system()->bounded(1 << 30)));
    const int count = fromEnvironment("TESSALINE_SCHEDULES", RandomSchedules);
    qInfo("%d schedules from seed %d", count, seed);
    std::minstd_rand random{unsigned(seed)};
    const auto below = [&](std::size_t limit) { return std::size_t(random() >> 8) % limit; };

    std::optional<Comparison> comparison;
    for (int schedule = 0; schedule < count; ++schedule) {
        const int stations = 1 + schedule / 100 % 5;
        if (schedule % 100 == 0)
            comparison.emplace(stations);
        for (std::size_t steps = 5 + below(20); steps > 0; --steps) {
            const std::size_t requests = comparison->requests().size();
            const std::size_t choice = below(12);
            if (requests == 0 || choice == 0) {
                std::vector<int> rejecting;
                for (int station = 0; station < stations; ++station) {
                    if (below(8) == 0)
                        rejecting.push_back(station);
                }
                comparison->send(Kind(below(3)), rejecting);
            } else if (choice == 1) {
                comparison->openOrClose();
            } else {
                comparison->answer(below(requests), int(below(std::size_t(stations))),
                                   below(3) > 0);
            }
        }
        comparison->answerAll();
        QVERIFY2(comparison->fault().isEmpty(), qPrintable(comparison->fault()));
    }
}

QTEST_GUILESS_MAIN(TestSchedules)
#include "tst_schedules.moc"
