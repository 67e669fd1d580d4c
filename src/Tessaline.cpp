// The host's calls, the dispatch of answers, and the timeline models of view cells.

#include "Tessaline.h"

#include "AliveGuard.h"
#include "FrameworkWrapperBase.h"
#include "Log.h"
#include "Names.h"
#include "NoThrow.h"
#include "RequestContexts.h"
#include "TimeShiftBufferModel.h"

#include <QtCore/QPointer>

#include <algorithm>
#include <iterator>
#include <memory>

using namespace tessaline;

// ---- Calls from the host ----

bool Tessaline::InitialPluginBase(QQmlContext *context, void *hostHandle,
                                  FrameworkWrapperBase *framework)
{
    name = identity::PluginName;
    pluginID = identity::PluginID;
    m_hostHandle = hostHandle;
    m_framework = framework;
    return Init(context);
}

bool Tessaline::Init(QQmlContext *)
{
    return noThrow("Tessaline::Init", [&] {
        m_serverTimeZone = QTimeZone(QTimeZone::systemTimeZoneId());
        m_queryAllGeneration = 0;
        m_hasSettingPermission = false;
        return true;
    });
}

void Tessaline::PluginServerConnected()
{
    // The values of the previous connection stay in use until the answers arrive.
    noThrow("Tessaline::PluginServerConnected", [&] {
        const AliveGuard self(this);
        sendCommand(command::QuerySevTimezone, QVariant(), nullptr, QString());
        if (self)
            sendCommand(command::QuerySettingPermission, QVariant(), nullptr, QString());
    });
}

void Tessaline::EventProcessor(QString eventName, qint64, int, int, QVariant data,
                               const QString &relayPath)
{
    noThrow("Tessaline::EventProcessor", [&] {
        if (eventName == event::AddBookmark)
            addBookmarkToTimelineModel(data.toMap(), relayPath);
    });
}

void Tessaline::EventProcessorEx(QString, ConfigBase *, qint64, int, int, QVariant, const QString &)
{
}

// ---- Dispatch of answers ----

/// The row of a command in the table of answers.
struct Tessaline::AnswerRule
{
    /// For commands whose result code the dispatch checks. The other handlers check it themselves
    /// or ignore it.
    struct Failure
    {
        int line = 0; ///< of the row, for the log
        const char *logFormat = nullptr;
        void (Tessaline::*responsed)(bool) = nullptr;
        void (*endContext)(const void *context) = nullptr; ///< for commands that have a context
    };

    const QString &command;
    void (Tessaline::*handle)(const Answer &answer); ///< null: a success only emits the signal
    Failure onFailure = {};
};

/// Returns the rule for a command, or null for a command that the plug-in does not send.
const Tessaline::AnswerRule *Tessaline::answerRule(const QString &command)
{
    static const AnswerRule rules[] = {
        {command::AddBookmark,
         &Tessaline::HandleAddBookmarkResp,
         {__LINE__, "%s, add bookmark failed", &Tessaline::addBookmarkResponsed}},
        {command::AddBookmarks, &Tessaline::HandleAddBookmarksResp},
        {command::DeleteBookmark,
         &Tessaline::HandleDeleteBookmarkResp,
         {__LINE__, "%s, delete bookmark failed", &Tessaline::deleteBookmarkResponsed}},
        {command::DeleteBookmarks, &Tessaline::HandleDeleteBookmarksResp},
        // "%d" receives the code's text. Log readers depend on the line, so the format stays.
        {command::RemoveAllBookmarks,
         nullptr,
         {__LINE__, "%s, remove bookmark failed: %d", &Tessaline::removeAllBookmarksResponsed}},
        {command::UpdateBookmark,
         &Tessaline::HandleUpdateBookmarkResp,
         {__LINE__, "%s, update bookmark failed", &Tessaline::updateBookmarkResponsed}},
        {command::QueryBookmarkForTimeline,
         &Tessaline::HandleQueryBookmarkForTimelineResp,
         {__LINE__, "%s, query bookmarks failed", &Tessaline::queryBookmarkForTimelineResponsed,
          [](const void *context) { requestContexts().timelineQueries.take(context); }}},
        {command::QueryBookmarkForRecent,
         &Tessaline::HandleQueryBookmarkForRecentResp,
         {__LINE__, "%s, query bookmarks failed", &Tessaline::queryBookmarkForRecentResponsed}},
        {command::QueryAllBookmarks, &Tessaline::HandleQueryAllBookmarksResp},
        {command::QuerySevTimezone, &Tessaline::HandleQuerySevTimezoneResp},
        {command::QuerySettingPermission, &Tessaline::HandleQuerySettingPermissionResp},
        {command::GetRecycleSetting, &Tessaline::HandleGetRecycleSettingResp},
        {command::UpdateRecycleSetting, &Tessaline::HandleUpdateRecycleSettingResp},
        {command::QueryBookmarkForApi, &Tessaline::HandleQueryBookmarkForAPIResp},
    };
    const auto rule = std::find_if(std::begin(rules), std::end(rules),
                                   [&](const AnswerRule &r) { return r.command == command; });
    return rule == std::end(rules) ? nullptr : rule;
}

void Tessaline::CommandProcessor(QString command, QVariant result, void *context,
                                 QString resultCode, QString, bool, const QString &relayPath)
{
    noThrow("Tessaline::CommandProcessor", [&] {
        const AnswerRule *const rule = answerRule(command);
        if (!rule)
            return;
        const AnswerRule::Failure &failure = rule->onFailure;
        if (!failure.responsed || isSuccess(resultCode)) {
            if (rule->handle)
                (this->*rule->handle)({result, context, resultCode, relayPath});
            else
                Q_EMIT(this->*failure.responsed)(true);
            return;
        }
        LOG_ERROR_AT(failure.line, failure.logFormat, "Tessaline::CommandProcessor",
                     qPrintable(resultCode));
        if (failure.endContext)
            failure.endContext(context);
        Q_EMIT(this->*failure.responsed)(false);
    });
}

void Tessaline::CommandProcessorEx(QString, ConfigBase *, QVariant, void *, QString, QString, bool,
                                   const QString &)
{
}

// ---- Timeline models ----

QSharedPointer<TimeShiftBufferModel> Tessaline::CreateTimelineModel(const QString &viewCellUID)
{
    try {
        QHash<int, QByteArray> roleNames = TimeShiftBufferModel::defaultRoleHash();
        addTimelineRoles(roleNames);

        // The plug-in object is the model's parent as well as its owner, and either may delete the
        // model first; the other must notice.
        auto created = std::make_unique<TimeShiftBufferModel>(roleNames, this);
        const QPointer<TimeShiftBufferModel> guard(created.get());
        QSharedPointer<TimeShiftBufferModel> model(
            created.get(), [guard](TimeShiftBufferModel *) { delete guard.data(); });
        static_cast<void>(created.release());

        connect(model.data(), &TimeShiftBufferModel::needItems, model.data(),
                [this, viewCellUID](qint64 start, qint64 end) {
                    noThrow("Tessaline::queryBookmarkForTimeline", [&] {
                        const TimelineFocus focus = m_timelines.ensureFocus(viewCellUID);
                        queryBookmarkForTimeline(focus.locationID, focus.relayPath, start, end,
                                                 viewCellUID);
                    });
                });
        return model;
    } catch (...) {
        LOG_ERROR("%s, Create time shift buffer model failed", "Tessaline::CreateTimelineModel");
        return {};
    }
}

QObject *Tessaline::getBookmarkModelForTimeline(const QString &viewCellUID)
{
    return noThrow("Tessaline::getBookmarkModelForTimeline", [&] {
        Timelines::Model &model = m_timelines.entry(viewCellUID);
        if (!model)
            model = CreateTimelineModel(viewCellUID);
        return model ? model->getModel() : nullptr;
    });
}

void Tessaline::clearTimelineModel(const QString &viewCellUID)
{
    noThrow("Tessaline::clearTimelineModel", [&] { m_timelines.clear(viewCellUID); });
}

void Tessaline::removeTimelineModel(const QString &viewCellUID)
{
    noThrow("Tessaline::removeTimelineModel", [&] { m_timelines.remove(viewCellUID); });
}

void Tessaline::setTimelineFocusInfo(const QString &locationID, const QString &relayPath,
                                     const QString &viewCellUID)
{
    noThrow("Tessaline::setTimelineFocusInfo", [&] {
        const AliveGuard self(this);
        m_timelines.clear(viewCellUID); // items of the old location must not stay
        if (self)
            m_timelines.setFocus(viewCellUID, {locationID, relayPath});
    });
}

void Tessaline::setTimelineBoundary(qint64 headBoundTs, qint64 tailBoundTs,
                                    const QString &viewCellUID)
{
    noThrow("Tessaline::setTimelineBoundary", [&] {
        if (const auto model = m_timelines.model(viewCellUID))
            model->setBoundary(headBoundTs, tailBoundTs, -1, 0);
    });
}

void Tessaline::queryBookmarkForTimeline(qint64 start, qint64 end, const QString &viewCellUID)
{
    if (const auto model = m_timelines.model(viewCellUID))
        Q_EMIT model->needItems(start, end);
}
