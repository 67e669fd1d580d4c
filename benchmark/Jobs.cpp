#include "Implementations.h"

#include <QtCore/QVariant>

#include <limits>

using namespace Qt::StringLiterals;

const char *nameOf(Job job)
{
    switch (job) {
    case Job::PanelByDate:
        return "panel by date";
    case Job::PanelByCamera:
        return "panel by camera";
    case Job::NextPage:
        return "next page";
    case Job::TextOfFew:
        return "text of 8 %";
    case Job::TextOfAll:
        return "text of all";
    case Job::OneMoreLetter:
        return "two letters";
    case Job::OneCamera:
        return "one camera";
    case Job::ListOfCamera:
        return "list of one camera";
    case Job::ListOfAll:
        return "list of all";
    case Job::ForgetAll:
        return "forget all";
    case Job::StoreAnswer:
        return "store an answer";
    case Job::ManyAnswers:
        return "store it in pieces";
    case Job::EmptyAnswers:
        return "empty answers";
    case Job::GroupBatch:
        return "group a batch";
    case Job::TimelineItems:
        return "timeline items";
    }
    return "";
}

bool isPreparedEachTime(Job job)
{
    return job == Job::ForgetAll || job == Job::StoreAnswer || job == Job::ListOfCamera ||
           job == Job::ListOfAll;
}

QVariantMap filterOf(Job job)
{
    QVariantMap filter{{u"startTimestamp"_s, std::numeric_limits<qint64>::min()},
                       {u"endTimestamp"_s, std::numeric_limits<qint64>::max()},
                       {u"groupKey"_s, u"displayDate"_s},
                       {u"ascending"_s, false},
                       {u"pageNumber"_s, 0}};
    switch (job) {
    case Job::PanelByCamera:
        filter[u"groupKey"_s] = u"cameraName"_s;
        filter[u"ascending"_s] = true;
        break;
    case Job::NextPage:
        filter[u"pageNumber"_s] = 1;
        break;
    case Job::TextOfFew:
        filter[u"text"_s] = u"forklift"_s;
        break;
    case Job::TextOfAll:
        filter[u"text"_s] = u"harbour"_s;
        break;
    case Job::OneMoreLetter:
        filter[u"text"_s] = u"fo"_s;
        break;
    case Job::OneCamera:
    case Job::ListOfCamera:
        filter[u"nodeID"_s] = u"A/camera-7"_s;
        break;
    default:
        break;
    }
    return filter;
}
