#include "Scenario.h"

#include "FrameReport.h"
#include "MarkLayout.h"
#include "PageModel.h"
#include "WindowItems.h"
#include "WorkbenchContext.h"
#include "framework/Framework.h"

#include <QtCore/QEventLoop>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

namespace workbench {

namespace {

// The intervals are not multiples of each other or of the pictures' 100 ms, so that inputs hit
// every phase of a frame.
constexpr int KeyMs = 93;
constexpr int ClickMs = 137;
constexpr int MoveMs = 16;
constexpr int NotchMs = 47;
constexpr int IdleMs = 1'000;

constexpr int RestMs = 300;
constexpr int TimeoutMs = 5'000;

template <typename Inputs>
Inputs operator+(Inputs first, const Inputs &second)
{
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

} // namespace

Scenario::Scenario(QQuickWindow &window, const WorkbenchContext &workbench,
                   standin::Framework &framework)
    : m_window(window)
    , m_workbench(workbench)
    , m_framework(framework)
    , m_meter(window)
    , m_input(window)
    , m_timeline(*qobject_cast<QQuickItem *>(findInWindow(window, QStringLiteral("timelineBar"))))
{
    const auto note = [this] { m_meter.markChange(); };
    m_framework.setCallObserver([this](double time) { m_meter.addAnswerTime(time); });
    QObject::connect(&m_workbench, &WorkbenchContext::passing, &m_meter,
                     [this](const standin::Traffic &traffic) {
                         if (traffic.kind == standin::Traffic::Kind::Answered)
                             m_meter.addStationTime(double(traffic.tookMs));
                     });
    const auto *const page = window.findChild<PageModel *>();
    QObject::connect(page, &PageModel::dataChanged, &m_meter, note);
    QObject::connect(page, &PageModel::rowsInserted, &m_meter, note);
    QObject::connect(page, &PageModel::rowsRemoved, &m_meter, note);
    QObject::connect(m_timeline.property("marks").value<MarkLayout *>(), &MarkLayout::updated,
                     &m_meter, note);
}

Scenario::~Scenario()
{
    m_framework.setCallObserver({});
}

void Scenario::perform(FrameReport &report)
{
    measure(report, QStringLiteral("moving pictures only"), 0, {});
    measure(report, QStringLiteral("search text, by letter"), KeyMs, searches());
    measure(report, QStringLiteral("turn pages"), ClickMs, turnedPages());
    measure(report, QStringLiteral("change group and order"), ClickMs, groupsAndOrders());
    measure(report, QStringLiteral("pan to times not loaded"), MoveMs, drag(-1));
    measure(report, QStringLiteral("pan over loaded times"), MoveMs, drag(1) + drag(-1));
    measure(report, QStringLiteral("zoom"), NotchMs, zooms());
    measure(report, QStringLiteral("query all stations"), 0, clicks("refresh", 1));
}

void Scenario::measure(FrameReport &report, const QString &action, int intervalMs,
                       const Inputs &inputs)
{
    waitForQuiet();
    m_meter.begin();
    double due = m_meter.now();
    for (const auto &input : inputs) {
        waitUntil(due);
        m_meter.addInput(due);
        input();
        due += intervalMs;
    }
    const double deadline = m_meter.now() + TimeoutMs;
    while (m_meter.isWaiting() && m_meter.now() < deadline)
        waitUntil(m_meter.now() + 1);
    if (inputs.empty())
        waitUntil(due + IdleMs);
    report.add(action, m_meter.take());
}

/// Returns at once if the time is over, without running the event loop: a user would not wait
/// either.
void Scenario::waitUntil(double time) const
{
    const double left = time - m_meter.now();
    if (left <= 0)
        return;
    QEventLoop loop;
    QTimer::singleShot(int(left), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

void Scenario::waitForQuiet() const
{
    const double deadline = m_meter.now() + TimeoutMs;
    do
        waitUntil(m_meter.now() + RestMs);
    while (m_workbench.outstanding() > 0 && m_meter.now() < deadline);
}

Scenario::Inputs Scenario::searches()
{
    item("searchField").forceActiveFocus();
    Inputs inputs;
    for (const QString &text : {QStringLiteral("white van p"), QStringLiteral("police inf")}) {
        for (const QChar letter : text)
            inputs.emplace_back([=] { m_input.type(letter.toUpper().unicode(), letter); });
        inputs.emplace_back([=] { m_input.type(Qt::Key_Escape); });
    }
    return inputs;
}

Scenario::Inputs Scenario::turnedPages()
{
    return clicks("nextPage", 12) + clicks("lastPage", 1) + clicks("previousPage", 6) +
           clicks("firstPage", 1);
}

Scenario::Inputs Scenario::groupsAndOrders()
{
    return keys("groupBox", Qt::Key_Down, 3) + clicks("orderButton", 2) +
           keys("groupBox", Qt::Key_Up, 3) + clicks("orderButton", 2);
}

Scenario::Inputs Scenario::drag(int direction)
{
    constexpr int Moves = 60;
    const auto place = [=](int move) {
        const double share = double(move + 1) / (Moves + 2); // the last pixel is outside the item
        return InputSimulator::positionIn(m_timeline, direction < 0 ? share : 1 - share);
    };
    Inputs inputs;
    for (int move = 1; move < Moves; ++move) {
        inputs.emplace_back([=] {
            if (move == 1) {
                m_input.moveTo(place(0));
                m_input.press();
            }
            m_input.moveTo(place(move));
            if (move == Moves - 1)
                m_input.release();
        });
    }
    return inputs;
}

Scenario::Inputs Scenario::zooms()
{
    Inputs inputs;
    for (const auto &[notches, direction] : {std::pair(8, 1), {14, -1}, {6, 1}}) {
        for (int i = 0; i < notches; ++i) {
            inputs.emplace_back([=, direction = direction] {
                m_input.moveTo(InputSimulator::positionIn(m_timeline));
                m_input.turnWheel(direction);
            });
        }
    }
    return inputs;
}

Scenario::Inputs Scenario::clicks(const char *objectName, int count)
{
    return Inputs(size_t(count), [=] {
        m_input.moveTo(InputSimulator::positionIn(item(objectName)));
        m_input.click();
    });
}

Scenario::Inputs Scenario::keys(const char *objectName, int key, int count)
{
    return Inputs(size_t(count), [=] {
        item(objectName).forceActiveFocus();
        m_input.type(key);
    });
}

QQuickItem &Scenario::item(const char *objectName) const
{
    auto *const item =
        qobject_cast<QQuickItem *>(findInWindow(m_window, QString::fromLatin1(objectName)));
    Q_ASSERT(item);
    return *item;
}

} // namespace workbench
