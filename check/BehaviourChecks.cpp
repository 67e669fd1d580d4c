#include "Checks.h"
#include "LoggingHost.h"

#include <QtCore/QDateTime>

// Level 4: what each request sends, says and returns.

namespace check {

using namespace Qt::StringLiterals;

namespace {

QString millisecondsOf(const QString &localTime)
{
    return QString::number(
        QDateTime::fromString(localTime, u"yyyy/MM/dd hh:mm:ss"_s).toMSecsSinceEpoch());
}

void checkDateTimes(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    const QString start = u"2024/01/01 00:00:00"_s;
    const QString end = u"2024/07/01 01:02:03"_s;
    const QString query = u"queryBookmarkForAPI(['1'], '%1', '%2')"_s;
    const QString batch = u"addBookmarks([{}], '%1', '%2', '', '', '')"_s;
    // Forwards, backwards and for a moment: the order is the server's business.
    for (const auto &[first, last] :
         {std::pair(start, end), std::pair(end, start), std::pair(end, end)}) {
        context.compare(u"query"_s,
                        u"send QueryBookmarkForApi@ {CameraIDList: [QString \"1\"], EndTimestamp: "
                        "qlonglong %2, StartTimestamp: qlonglong %1}"_s.arg(millisecondsOf(first),
                                                                            millisecondsOf(last)),
                        host->play(query.arg(first, last)));
        context.compare(
            u"batch"_s,
            u"AddBookmarks@ [{CameraID: QString \"\", Creator: QString \"\", Description: QString \"\", EndTimestamp: qlonglong %2, Group: QString \"\", LocationID: QString \"\", StartTimestamp: qlonglong %1}]"_s
                .arg(millisecondsOf(first), millisecondsOf(last)),
            host->play(batch.arg(first, last)).section(u' ', 1).section(u" context"_s, 0, 0));
    }
    for (const char *wrong : {"", "2024/13/01 00:00:00", "2024/01/01", "2024-01-01 00:00:00",
                              "2024/1/1 0:0:0", "2024/02/30 00:00:00", "2024/01/01 24:00:00",
                              "24/01/01 00:00:00", " 2024/01/01 00:00:00", "now"}) {
        const QString text = QLatin1String(wrong);
        for (const auto &[first, second] : {std::pair(text, end), std::pair(start, text)}) {
            context.compare(u"query from '%1' to '%2'"_s.arg(first, second),
                            u"signal queryBookmarkForApiFinished(false)"_s,
                            host->play(query.arg(first, second)));
            context.compare(u"batch from '%1' to '%2'"_s.arg(first, second), u"= bool false"_s,
                            host->play(batch.arg(first, second)));
        }
    }
    context.summarize(u"local times as yyyy/MM/dd hh:mm:ss, and nothing else"_s);
}

} // namespace

std::vector<Check> behaviourChecks()
{
    return {
        {"4.date-times", "Times given as text", checkDateTimes},
    };
}

} // namespace check
