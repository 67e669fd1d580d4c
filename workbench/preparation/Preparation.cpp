#include "Preparation.h"

#include "FileImport.h"
#include "Protocol.h"
#include "SeedData.h"
#include "StationThread.h"

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QLocale>

namespace workbench {

namespace {

bool hasStations(const QString &folder)
{
    return !QDir(folder).entryList({QStringLiteral("*.sqlite")}, QDir::Files).isEmpty();
}

/// Returns the path of a file that exists while the first bookmarks are incomplete.
QString unfinishedMarker(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral("first-bookmarks.unfinished"));
}

/// Removes the bookmarks of an interrupted start. No user has seen them.
void removeUnfinished(const stations::StationNetwork &network, Preparation::Outcome &outcome)
{
    const QList<stations::Station *> stations = network.stations();
    for (stations::Station *const station : stations)
        station->execute(stations::protocol::command::RemoveAllBookmarks, QVariant());
    outcome.messages.append(Preparation::tr(
        "The last start was interrupted while it created bookmarks. They were created again."));
}

void makeSeedData(stations::StationNetwork &network, const Preparation::Plan &plan,
                  const Preparation::Report &report, Preparation::Outcome &outcome)
{
    const SeedData data(network, plan.seed, QDateTime::currentMSecsSinceEpoch());
    const SeedData::Result result = data.fill(plan.bookmarks, [&](int made, int total) {
        return report(Preparation::tr("Creating the first bookmarks"), double(made) / total);
    });
    if (!result.error.isEmpty())
        outcome.messages.append(result.error);
    if (result.made < plan.bookmarks) {
        const QLocale locale;
        outcome.messages.append(
            Preparation::tr(
                "%1 of %2 bookmarks were created. To get all of them, delete the folder "
                "%3 and start again.")
                .arg(locale.toString(result.made), locale.toString(plan.bookmarks),
                     QDir::toNativeSeparators(plan.folder)));
    }
}

} // namespace

Preparation::Preparation(stations::StationThread &stations, const Plan &plan, QObject *parent)
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

    // Capture copies: the stations' thread may still run the job when this object is gone.
    const Report report = [this, mailbox = m_mailbox, cancelled = m_cancelled](const QString &text,
                                                                               double progress) {
        mailbox->post([=] { show(text, progress); });
        return !*cancelled;
    };
    const QString mark = unfinishedMarker(m_plan.folder);
    const bool interrupted = QFile::exists(mark);
    const bool isNew = interrupted || !hasStations(m_plan.folder);
    if (isNew && m_plan.bookmarks > 0 && QDir().mkpath(m_plan.folder))
        QFile(mark).open(QIODevice::WriteOnly);
    m_stations.open(m_plan.folder, [=, mailbox = m_mailbox, cancelled = m_cancelled, plan = m_plan](
                                       stations::StationNetwork *network, const QString &error) {
        Outcome outcome;
        outcome.error = error;
        if (network) {
            outcome.defects = network->defects();
            outcome.messages = network->notices();
            if (interrupted)
                removeUnfinished(*network, outcome);
            if (isNew && plan.bookmarks > 0)
                makeSeedData(*network, plan, report, outcome);
            QFile::remove(mark); // a failed import leaves the first bookmarks complete
            if (!plan.importFile.isEmpty() && !*cancelled)
                importFile(*network, plan, report, outcome);
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
