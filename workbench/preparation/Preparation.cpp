#include "Preparation.h"

#include "FileImport.h"
#include "FirstData.h"
#include "StationThread.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QLocale>

namespace workbench {

namespace {

bool holdsStations(const QString &folder)
{
    return !QDir(folder).entryList({QStringLiteral("*.sqlite")}, QDir::Files).isEmpty();
}

void makeFirstData(Site &site, const Preparation::Plan &plan, const Preparation::Report &report,
                   Preparation::Outcome &outcome)
{
    const FirstData data(site, plan.seed, QDateTime::currentMSecsSinceEpoch());
    const FirstData::Result result = data.fill(plan.bookmarks, [&](int made, int total) {
        return report(Preparation::tr("Making the first bookmarks"), double(made) / total);
    });
    if (!result.error.isEmpty())
        outcome.messages.append(result.error);
    if (result.made < plan.bookmarks) {
        const QLocale locale;
        outcome.messages.append(
            Preparation::tr("%1 of %2 bookmarks were made. To have all of them, delete the folder "
                            "%3 and start again.")
                .arg(locale.toString(result.made), locale.toString(plan.bookmarks),
                     QDir::toNativeSeparators(plan.folder)));
    }
}

} // namespace

Preparation::Preparation(StationThread &stations, const Plan &plan, QObject *parent)
    : QObject(parent)
    , m_stations(stations)
    , m_plan(plan)
{
}

Preparation::~Preparation()
{
    m_mailbox->close();
    cancel();
}

void Preparation::start()
{
    m_running = true;
    Q_EMIT runningChanged();
    show(tr("Opening the stations"), 0);

    // What the thread needs goes along with the job, which may outlive this object.
    const Report report = [this, mailbox = m_mailbox, cancelled = m_cancelled](const QString &text,
                                                                               double progress) {
        mailbox->post([=] { show(text, progress); });
        return !*cancelled;
    };
    const bool isNew = !holdsStations(m_plan.folder);
    m_stations.open(m_plan.folder, [=, mailbox = m_mailbox, cancelled = m_cancelled,
                                    plan = m_plan](Site *site, const QString &error) {
        Outcome outcome;
        outcome.error = error;
        if (site) {
            outcome.defects = site->defects();
            if (isNew && plan.bookmarks > 0)
                makeFirstData(*site, plan, report, outcome);
            if (!plan.importFile.isEmpty() && !*cancelled)
                importFile(*site, plan, report, outcome);
        }
        mailbox->post([=] { finish(outcome); });
    });
}

void Preparation::show(const QString &activity, double progress)
{
    m_activity = activity;
    m_progress = progress;
    Q_EMIT progressed();
}

void Preparation::finish(const Outcome &outcome)
{
    m_outcome = outcome;
    m_running = false;
    Q_EMIT runningChanged();
    Q_EMIT finished();
}

} // namespace workbench
