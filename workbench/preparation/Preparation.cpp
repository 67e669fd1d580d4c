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

bool holdsStations(const QString &folder)
{
    return !QDir(folder).entryList({QStringLiteral("*.sqlite")}, QDir::Files).isEmpty();
}

/// A file in the data folder for as long as the first bookmarks are not complete.
QString markOfUnfinished(const QString &folder)
{
    return QDir(folder).filePath(QStringLiteral("first-bookmarks.unfinished"));
}

/// Removes the bookmarks that an interrupted start has made. No user has changed them yet.
void removeUnfinished(const Site &site, Preparation::Outcome &outcome)
{
    const QList<Station *> stations = site.stations();
    for (Station *const station : stations)
        station->execute(protocol::command::RemoveAllBookmarks, QVariant());
    outcome.messages.append(Preparation::tr(
        "Making the first bookmarks was interrupted last time. They were made again."));
}

void makeSeedData(Site &site, const Preparation::Plan &plan, const Preparation::Report &report,
                  Preparation::Outcome &outcome)
{
    const SeedData data(site, plan.seed, QDateTime::currentMSecsSinceEpoch());
    const SeedData::Result result = data.fill(plan.bookmarks, [&](int made, int total) {
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
    const QString mark = markOfUnfinished(m_plan.folder);
    const bool interrupted = QFile::exists(mark);
    const bool isNew = interrupted || !holdsStations(m_plan.folder);
    if (isNew && m_plan.bookmarks > 0 && QDir().mkpath(m_plan.folder))
        QFile(mark).open(QIODevice::WriteOnly);
    m_stations.open(m_plan.folder, [=, mailbox = m_mailbox, cancelled = m_cancelled,
                                    plan = m_plan](Site *site, const QString &error) {
        Outcome outcome;
        outcome.error = error;
        if (site) {
            outcome.defects = site->defects();
            outcome.messages = site->notices();
            if (interrupted)
                removeUnfinished(*site, outcome);
            if (isNew && plan.bookmarks > 0)
                makeSeedData(*site, plan, report, outcome);
            QFile::remove(mark); // before an import that may fail
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
