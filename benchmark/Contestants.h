#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <functional>
#include <memory>

/// What is measured. Each job is one question of an operator, or one delivery of the host.
enum class Job {
    PanelByDate,   ///< open the panel: all bookmarks, by day, newest first, a page of 50
    PanelByCamera, ///< the same by camera name
    NextPage,      ///< the second page by date
    TextOfFew,     ///< a text that eight in a hundred have
    TextOfAll,     ///< a text that all have
    OneMoreLetter, ///< the first letters of a word, as it is typed
    OneCamera,     ///< a page of the bookmarks of one camera
    ListOfCamera,  ///< all bookmarks of one camera, as a list
    ListOfAll,     ///< all bookmarks, as a list
    ForgetAll,     ///< drop the bookmarks of the query before
    StoreAnswer,   ///< take in the answer to a query of all
    ManyAnswers,   ///< take in as many answers of one bookmark each
    EmptyAnswers,  ///< take in as many answers without a bookmark: what each costs by itself
    GroupBatch,    ///< split a batch by station, every entry once
    TimelineItems, ///< fill a view cell's timeline
};

constexpr Job allJobs[] = {
    Job::PanelByDate,   Job::PanelByCamera, Job::NextPage,     Job::TextOfFew,  Job::TextOfAll,
    Job::OneMoreLetter, Job::OneCamera,     Job::ListOfCamera, Job::ListOfAll,  Job::ForgetAll,
    Job::StoreAnswer,   Job::ManyAnswers,   Job::EmptyAnswers, Job::GroupBatch, Job::TimelineItems};

const char *nameOf(Job job);

/// Whether prepare() is called again before each repetition of the work.
bool isPreparedEachTime(Job job);

/// The question behind a job about the panel, as QML asks it.
QVariantMap questionOf(Job job);

/// One way to do the jobs, with a number of bookmarks at hand.
class Contestant
{
public:
    virtual ~Contestant() = default;

    virtual const char *name() const = 0;

    /// The work of a job, to be called any number of times; empty for a job that is not its own,
    /// or that it would take too long for.
    virtual std::function<void()> work(Job job) = 0;

    /// Makes ready for the work of a job, which is not measured: all bookmarks are there,
    /// or none where they are to be stored.
    virtual void prepare(Job /*job*/) {}
};

/// What is measured of the library alone.
struct PluginFigures
{
    double bytesPerBookmark = 0; ///< heap that it allocates to store an answer
    QMap<QString, double>
        firstUse; ///< by group key: time of its first use, divided by the second's
};

PluginFigures measurePlugin(int count);

/// The library that makePlugin() and measurePlugin() load; the built one by default.
void setLibrary(const QString &path);

std::unique_ptr<Contestant> makePlugin(int count);         ///< the loaded library
std::unique_ptr<Contestant> makeReferenceModel(int count); ///< ReferenceModel.h
std::unique_ptr<Contestant> makeSqlite(int count);         ///< in memory, indexed, with LIKE
std::unique_ptr<Contestant> makeSqliteFullText(int count); ///< its trigram index, for texts alone
std::unique_ptr<Contestant> makeProxyModel(int count);     ///< QSortFilterProxyModel
std::unique_ptr<Contestant> makeFloor(int count);          ///< the least that has to be done
