#include "Checks.h"
#include "Describe.h"
#include "LoggingHost.h"

#include <QtCore/QDateTime>

// Level 4: requests and answers that a scenario file can't describe.

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
    const QString batch = u"addBookmarks([{}], '%1', '%2', 'd', 'c', 'g')"_s;
    // Also with the end before the start: the server, not the plug-in, checks the order.
    const QString leapDay = u"2024/02/29 12:00:00"_s;
    const QString beforeEpoch = u"1969/12/30 23:59:59"_s;
    for (const auto &[first, last] : {std::pair(start, end), std::pair(end, start),
                                      std::pair(end, end), std::pair(beforeEpoch, leapDay)}) {
        context.compare(u"query"_s,
                        u"send QueryBookmarkForApi@ {CameraIDList: [QString \"1\"], EndTimestamp: "
                        "qlonglong %2, StartTimestamp: qlonglong %1}"_s.arg(millisecondsOf(first),
                                                                            millisecondsOf(last)),
                        host->play(query.arg(first, last)));
        context.compare(
            u"batch"_s,
            u"AddBookmarks@ [{CameraID: QString \"\", Creator: QString \"c\", Description: QString \"d\", EndTimestamp: qlonglong %2, Group: QString \"g\", LocationID: QString \"\", StartTimestamp: qlonglong %1}]"_s
                .arg(millisecondsOf(first), millisecondsOf(last)),
            host->play(batch.arg(first, last)).section(u' ', 1).section(u" context"_s, 0, 0));
    }
    for (const char *wrong :
         {"", "2024/13/01 00:00:00", "2024/01/01", "2024-01-01 00:00:00", "2024/1/1 0:0:0",
          "2024/02/30 00:00:00", "2024/01/01 24:00:00", "24/01/01 00:00:00", " 2024/01/01 00:00:00",
          "2024/01/01 00:00:00 ", "now"}) {
        const QString text = QLatin1String(wrong);
        for (const auto &[first, second] : {std::pair(text, end), std::pair(start, text)}) {
            context.compare(u"query from '%1' to '%2'"_s.arg(first, second),
                            u"signal queryBookmarkForApiFinished(false)"_s,
                            host->play(query.arg(first, second)));
            context.compare(u"batch from '%1' to '%2'"_s.arg(first, second), u"= bool false"_s,
                            host->play(batch.arg(first, second)));
        }
    }
    const QString epoch = QDateTime::fromMSecsSinceEpoch(0).toString(u"yyyy/MM/dd hh:mm:ss"_s);
    context.compare(u"the epoch, which counts as a missing time"_s,
                    u"signal queryBookmarkForApiFinished(false)"_s,
                    host->play(query.arg(epoch, end)));
    context.summarize(u"accepts local times as yyyy/MM/dd hh:mm:ss and no other texts"_s);
}

/// A command, and the signal and log line of its answer.
struct AnswerRow
{
    const char *command;
    const char *signal;     ///< null for none
    const char *failureLog; ///< null for none
    bool isSilentOnSuccess = false;
};

constexpr AnswerRow answerRows[] = {
    {"AddBookmark", "addBookmarkResponsed", "add bookmark failed"},
    {"DeleteBookmark", "deleteBookmarkResponsed", "delete bookmark failed"},
    {"RemoveAllBookmarks", "removeAllBookmarksResponsed", "remove bookmark failed: %d"},
    {"UpdateBookmark", "updateBookmarkResponsed", "update bookmark failed"},
    {"QueryBookmarkForRecent", "queryBookmarkForRecentResponsed", "query bookmarks failed"},
    // An unknown context: only a failure is signalled.
    {"QueryBookmarkForTimeline", "queryBookmarkForTimelineResponsed", "query bookmarks failed",
     true},
    {"QueryBookmarkForApi", "queryBookmarkForApiFinished", nullptr},
    {"AddBookmarks", nullptr, nullptr},
    {"DeleteBookmarks", nullptr, nullptr},
};

QString traceOf(const AnswerRow &row, const QString &code)
{
    const bool success = code == u"0";
    QStringList lines;
    if (!success && row.failureLog) {
        const QString log = QLatin1String(row.failureLog);
        lines.append(u"log Tessaline: %s, %1 <Tessaline::CommandProcessor%2>"_s.arg(
            log, log.contains(u"%d"_s) ? u", "_s + code : QString()));
    }
    if (row.signal && !(success && row.isSilentOnSuccess))
        lines.append(
            u"signal %1(%2)"_s.arg(QLatin1String(row.signal), success ? u"true"_s : u"false"_s));
    return lines.join(u'\n');
}

void checkResultCodes(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    for (const AnswerRow &row : answerRows) {
        const QString command = QLatin1String(row.command);
        for (const QString &code : {u"0"_s, u""_s, QString(), u"0 "_s, u" 0"_s, u"00"_s, u"-0"_s,
                                    u"OK"_s, u"-999"_s, u"%s%n"_s, u"\u0660"_s}) {
            host->answer(command, QVariant(), u"A"_s, nullptr, code);
            context.compare(u"%1 with the code '%2'"_s.arg(command, code), traceOf(row, code),
                            host->takeTrace().join(u'\n'));
        }
    }
    context.summarize(u"only the code 0 is a success"_s);
}

void checkTextsUnchanged(CheckContext &context)
{
    LoggingHost host(context);
    if (!host)
        return;
    // Calls the requests with this text as every argument and returns the commands.
    const auto commandsWith = [&](const QString &text) {
        host->recreateObject();
        host->play(u"grant"_s);
        host->call("addBookmark", {text, text, text, 1LL, 2LL, text, text, text});
        host->call("deleteBookmark", {text, text});
        host->call("updateBookmark", {text, text, text});
        host->call("removeAllBookmarks", {text});
        host->call("queryBookmarkForRecent", {text, text, 1});
        host->call("queryBookmarkForAPI", {QVariantList{text}, 1LL, 2LL});
        QStringList lines;
        const QList<standin::SentCommand> sent = host->framework.sent();
        for (const standin::SentCommand &command : sent)
            lines.append(describe(command.payload) + describe(command.relayPath));
        return lines.join(u'\n');
    };
    const QString odd = u"%1 %2 %L1 %99 %s%n%d%p%*s%% /a//b\\c/ \t\r\n \U0001F4F7 e\u0301"_s +
                        QChar(0xd800) + u'x' + QChar(0xdfff) + QString::fromUtf16(u"a\0b\0", 4) +
                        QString(1 << 19, u'x');
    context.compare(u"commands"_s,
                    commandsWith(u"plain"_s).replace(describe(u"plain"_s), describe(odd)),
                    commandsWith(odd));
    context.summarize(
        u"texts with placeholders, control characters, lone surrogates and half a million letters"_s);
}

} // namespace

std::vector<Check> behaviourChecks()
{
    return {
        {"4.result-codes", "Only the result code 0 is a success", checkResultCodes},
        {"4.texts-unchanged", "Texts reach the commands unchanged", checkTextsUnchanged},
        {"4.date-times", "Requests accept times as texts of one format", checkDateTimes},
    };
}

} // namespace check
