#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QVariant>

#include <functional>
#include <memory>

/// The measured operations. Each job is a request of an operator or a delivery of the host.
enum class Job {
    PanelByDate,   ///< open the panel: all bookmarks, by day, newest first, a page of 50
    PanelByCamera, ///< the same by camera name
    NextPage,      ///< the second page by date
    TextOfFew,     ///< a text that 8 % of the bookmarks have
    TextOfAll,     ///< a text that all bookmarks have
    OneMoreLetter, ///< the first letters of a word
    OneCamera,     ///< a page of the bookmarks of one camera
    ListOfCamera,  ///< all bookmarks of one camera, as a list
    ListOfAll,     ///< all bookmarks, as a list
    ForgetAll,     ///< remove the bookmarks of the previous query
    StoreAnswer,   ///< store the answer to a query of all bookmarks
    ManyAnswers,   ///< store the same bookmarks from one answer for each
    EmptyAnswers,  ///< handle as many answers without a bookmark, the cost of an answer itself
    GroupBatch,    ///< split a batch by station and remove repeated entries
    TimelineItems, ///< fill a view cell's timeline
};

constexpr Job allJobs[] = {
    Job::PanelByDate,   Job::PanelByCamera, Job::NextPage,     Job::TextOfFew,  Job::TextOfAll,
    Job::OneMoreLetter, Job::OneCamera,     Job::ListOfCamera, Job::ListOfAll,  Job::ForgetAll,
    Job::StoreAnswer,   Job::ManyAnswers,   Job::EmptyAnswers, Job::GroupBatch, Job::TimelineItems};

const char *nameOf(Job job);

/// Returns true if prepare() is called before each repetition of the work.
bool isPreparedEachTime(Job job);

/// Returns the argument of getFilteredBookmarkList() for a job about the panel.
QVariantMap filterOf(Job job);

/// One implementation of the jobs, with a number of bookmarks.
class Implementation
{
public:
    virtual ~Implementation() = default;

    virtual const char *name() const = 0;

    /// Returns the work of a job; it may be called repeatedly. Empty for a job that the
    /// implementation does not support or for which it needs too much time.
    virtual std::function<void()> work(Job job) = 0;

    /// Prepares the work of a job: stores all bookmarks, or removes them if the job stores them.
    /// Its time is not measured.
    virtual void prepare(Job /*job*/) {}
};

/// Measurements of the library that have no counterpart in the other implementations.
struct PluginFigures
{
    double bytesPerBookmark = 0; ///< heap that it allocates for a bookmark of an answer
    /// By group key: time of the first page with that key, divided by the time of the second.
    QMap<QString, double> firstUse;
};

PluginFigures measurePlugin(int count);

/// Sets the library that makePlugin() and measurePlugin() load; by default the built one.
void setLibrary(const QString &path);

std::unique_ptr<Implementation> makePlugin(int count);         ///< the loaded library
std::unique_ptr<Implementation> makeReferenceModel(int count); ///< ReferenceModel.h
std::unique_ptr<Implementation> makeSqlite(int count);         ///< in memory, indexed, with LIKE
std::unique_ptr<Implementation> makeSqliteFullText(int count); ///< trigram index, only for texts
std::unique_ptr<Implementation> makeProxyModel(int count);     ///< QSortFilterProxyModel
std::unique_ptr<Implementation> makeLowerBound(int count); ///< the minimal work for the same size
