#include "Tessaline.h"

#include "CameraNames.h"
#include "FrameworkWrapperBase.h"
#include "Guard.h"
#include "Log.h"
#include "Names.h"
#include "RequestContexts.h"
#include "TimeFormatter.h"
#include "TimeShiftBufferModel.h"

#include <QtCore/QPointer>
#include <QtGui/QStandardItem>

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

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
    return guarded("Tessaline::Init", [&] {
        m_serverTimeZone = QTimeZone(QTimeZone::systemTimeZoneId());
        m_queryAllGeneration = 0;
        m_hasSettingPermission = false;
        return true;
    });
}

void Tessaline::PluginServerConnected()
{
    // What the previous connection told stays in force until the answers come.
    guarded("Tessaline::PluginServerConnected", [&] {
        const QPointer<Tessaline> self(this);
        sendCommand(command::QuerySevTimezone, QVariant(), nullptr, QString());
        if (self)
            sendCommand(command::QuerySettingPermission, QVariant(), nullptr, QString());
    });
}

void Tessaline::EventProcessor(QString eventName, qint64, int, int, QVariant data,
                               const QString &relayPath)
{
    guarded("Tessaline::EventProcessor", [&] {
        if (eventName == event::AddBookmark)
            addBookmarkToTimelineModel(data.toMap(), relayPath);
    });
}

void Tessaline::EventProcessorEx(QString, ConfigBase *, qint64, int, int, QVariant, const QString &)
{
}

// ---- Dispatch of answers ----

/// The arguments of CommandProcessor() that handlers read.
struct Tessaline::Answer
{
    const QVariant &result;
    void *context;
    const QString &resultCode;
    const QString &relayPath;
};

/// How the answer to one command is treated.
struct Tessaline::AnswerRule
{
    const QString *command;
    void (*handle)(Tessaline &plugin, const Answer &answer);

    // For commands whose failure is settled by the dispatch; otherwise the handler judges the
    // result code itself, or there is nothing to judge.
    const char *failureFormat = nullptr;
    void (Tessaline::*responsed)(bool) = nullptr;
};

/// The rule for a command, or null for a command that is not ours.
const Tessaline::AnswerRule *Tessaline::answerRule(const QString &command)
{
    static const AnswerRule rules[] = {
        {&command::AddBookmark,
         [](Tessaline &t, const Answer &a) { t.HandleAddBookmarkResp(a.result, a.relayPath); },
         "%s, add bookmark failed", &Tessaline::addBookmarkResponsed},
        {&command::AddBookmarks,
         [](Tessaline &t, const Answer &a) {
             t.HandleAddBookmarksResp(a.result, a.context, a.resultCode, a.relayPath);
         }},
        {&command::DeleteBookmark,
         [](Tessaline &t, const Answer &a) { t.HandleDeleteBookmarkResp(a.result.toString()); },
         "%s, delete bookmark failed", &Tessaline::deleteBookmarkResponsed},
        {&command::DeleteBookmarks,
         [](Tessaline &t, const Answer &a) {
             t.HandleDeleteBookmarksResp(a.result.toStringList(), a.context, a.resultCode,
                                         a.relayPath);
         }},
        // The format asks for a number where it gets the code's text. Log readers know the line so.
        {&command::RemoveAllBookmarks,
         [](Tessaline &t, const Answer &) { Q_EMIT t.removeAllBookmarksResponsed(true); },
         "%s, remove bookmark failed: %d", &Tessaline::removeAllBookmarksResponsed},
        {&command::UpdateBookmark,
         [](Tessaline &t, const Answer &) { t.HandleUpdateBookmarkResp(); },
         "%s, update bookmark failed", &Tessaline::updateBookmarkResponsed},
        {&command::QueryBookmarkForTimeline,
         [](Tessaline &t, const Answer &a) {
             t.HandleQueryBookmarkForTimelineResp(a.result, a.relayPath, a.context);
         },
         "%s, query bookmarks failed", &Tessaline::queryBookmarkForTimelineResponsed},
        {&command::QueryBookmarkForRecent,
         [](Tessaline &t, const Answer &a) {
             t.HandleQueryBookmarkForRecentResp(a.result, a.relayPath);
         },
         "%s, query bookmarks failed", &Tessaline::queryBookmarkForRecentResponsed},
        {&command::QueryAllBookmarks,
         [](Tessaline &t, const Answer &a) {
             t.HandleQueryAllBookmarksResp(a.resultCode, a.result, a.context, a.relayPath);
         }},
        {&command::QuerySevTimezone,
         [](Tessaline &t, const Answer &a) { t.storeServerTimeZone(a.result.toByteArray()); }},
        {&command::QuerySettingPermission,
         [](Tessaline &t, const Answer &a) { t.m_hasSettingPermission = a.result.toBool(); }},
        {&command::GetRecycleSetting,
         [](Tessaline &t, const Answer &a) { t.reportRecycleSetting(a.result.toMap()); }},
        {&command::UpdateRecycleSetting,
         [](Tessaline &t, const Answer &a) {
             Q_EMIT t.updateRecycleSettingResponse(a.result.toBool());
         }},
        {&command::QueryBookmarkForApi,
         [](Tessaline &t, const Answer &a) {
             t.HandleQueryBookmarkForAPIResp(a.result, a.resultCode);
         }},
    };
    const auto rule = std::find_if(std::begin(rules), std::end(rules),
                                   [&](const AnswerRule &r) { return *r.command == command; });
    return rule == std::end(rules) ? nullptr : rule;
}

void Tessaline::CommandProcessor(QString command, QVariant result, void *context,
                                 QString resultCode, QString, bool, const QString &relayPath)
{
    guarded("Tessaline::CommandProcessor", [&] {
        const AnswerRule *const rule = answerRule(command);
        if (!rule)
            return;
        if (!rule->failureFormat || isSuccess(resultCode)) {
            rule->handle(*this, {result, context, resultCode, relayPath});
            return;
        }

        LOG_ERROR(rule->failureFormat, "Tessaline::CommandProcessor", qPrintable(resultCode));
        if (rule->command == &command::QueryBookmarkForTimeline)
            requestContexts().timelineQueries.take(context); // no handler will
        Q_EMIT(this->*rule->responsed)(false);
    });
}

void Tessaline::CommandProcessorEx(QString, ConfigBase *, QVariant, void *, QString, QString, bool,
                                   const QString &)
{
}

void Tessaline::storeServerTimeZone(const QByteArray &ianaId)
{
    if (!ianaId.isEmpty())
        m_serverTimeZone = QTimeZone(ianaId);
}

void Tessaline::reportRecycleSetting(const QVariantMap &setting)
{
    Q_EMIT getRecycleSettingResponse(setting.value(recycleKey::ReserveHour).toUInt(),
                                     setting.value(recycleKey::EnableRecycle).toBool());
}

// ---- Timeline models ----

QSharedPointer<TimeShiftBufferModel> Tessaline::CreateTimelineModel(const QString &viewCellUID)
{
    try {
        QHash<int, QByteArray> roleNames = TimeShiftBufferModel::defaultRoleHash();
        for (const auto &[role, roleName] : std::as_const(timelineRoleNames))
            roleNames.insert(role, roleName);

        // The plug-in object is the model's parent as well as its owner: whichever deletes it
        // first, the other must notice.
        auto created = std::make_unique<TimeShiftBufferModel>(roleNames, this);
        const QPointer<TimeShiftBufferModel> guard(created.get());
        QSharedPointer<TimeShiftBufferModel> model(
            created.get(), [guard](TimeShiftBufferModel *) { delete guard.data(); });
        static_cast<void>(created.release());

        connect(model.data(), &TimeShiftBufferModel::needItems, model.data(),
                [this, viewCellUID](qint64 start, qint64 end) {
                    guarded("Tessaline::queryBookmarkForTimeline", [&] {
                        const TimelineFocus focus = m_timelineFocusInfo[viewCellUID];
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
    return guarded("Tessaline::getBookmarkModelForTimeline", [&] {
        QSharedPointer<TimeShiftBufferModel> &model = m_timelineModels[viewCellUID];
        if (!model)
            model = CreateTimelineModel(viewCellUID);
        return model ? model->getModel() : nullptr;
    });
}

void Tessaline::clearTimelineModel(const QString &viewCellUID)
{
    guarded("Tessaline::clearTimelineModel", [&] {
        if (const auto model = m_timelineModels.value(viewCellUID))
            model->clear();
    });
}

void Tessaline::removeTimelineModel(const QString &viewCellUID)
{
    // Out of the maps first: whoever watches the model die may ask for the view cell again.
    guarded("Tessaline::removeTimelineModel", [&] {
        const auto model = m_timelineModels.take(viewCellUID);
        m_timelineFocusInfo.remove(viewCellUID);
    });
}

void Tessaline::setTimelineFocusInfo(const QString &locationID, const QString &relayPath,
                                     const QString &viewCellUID)
{
    guarded("Tessaline::setTimelineFocusInfo", [&] {
        const QPointer<Tessaline> self(this);
        clearTimelineModel(viewCellUID); // items of the old location must not stay
        if (self)
            m_timelineFocusInfo.insert(viewCellUID, {locationID, relayPath});
    });
}

void Tessaline::setTimelineBoundary(qint64 headBoundTs, qint64 tailBoundTs,
                                    const QString &viewCellUID)
{
    guarded("Tessaline::setTimelineBoundary", [&] {
        if (const auto model = m_timelineModels.value(viewCellUID))
            model->setBoundary(headBoundTs, tailBoundTs, -1, 0);
    });
}

void Tessaline::queryBookmarkForTimeline(qint64 start, qint64 end, const QString &viewCellUID)
{
    if (const auto model = m_timelineModels.value(viewCellUID))
        Q_EMIT model->needItems(start, end);
}

bool Tessaline::addBookmarkToTimelineModel(const QVariantMap &record, const QString &relayPath)
{
    const QPointer<Tessaline> self(this);
    const QString locationID = record.value(serverKey::LocationID).toString();
    const QStringList viewCells = viewCellsShowing(locationID, relayPath);
    CameraNames camNames(GetAllCamNames(), relayPath);
    if (!self)
        return false;
    const auto formatter = timeFormatter();
    bool added = true;
    for (const QString &viewCellUID : viewCells) {
        if (self && !addBookmarkToViewCell(viewCellUID, record, camNames, *formatter))
            added = false;
    }
    return added;
}

bool Tessaline::addBookmarkToViewCell(const QString &viewCellUID, const QVariantMap &record,
                                      CameraNames &camNames, TimeFormatter &formatter)
{
    const auto model = m_timelineModels.value(viewCellUID);
    if (!model)
        return false;
    std::vector<std::unique_ptr<QStandardItem>> items;
    items.push_back(CreateBookmarkModelItem(record, camNames, formatter));
    if (!items.back())
        return false;
    refill(*model, std::move(items));
    return true;
}

/// Hands items over to a model, which owns them from then on.
void Tessaline::refill(TimeShiftBufferModel &model,
                       std::vector<std::unique_ptr<QStandardItem>> items)
{
    QList<QStandardItem *> list;
    for (const auto &item : items)
        list.append(item.get());
    for (auto &item : items)
        static_cast<void>(item.release()); // only now, as the list may have thrown
    model.refillItems(list);
}

void Tessaline::removeBookmarksFromTimelineModels(const QList<QString> &bookmarkIDs)
{
    const QPointer<Tessaline> self(this);
    const auto models = m_timelineModels; // a watcher of the first may remove the second
    for (const auto &model : models) {
        if (self && model)
            model->removeItems(bookmarkIDs);
    }
}

QStringList Tessaline::viewCellsShowing(const QString &locationID, const QString &relayPath) const
{
    QStringList viewCells;
    for (auto it = m_timelineFocusInfo.cbegin(); it != m_timelineFocusInfo.cend(); ++it) {
        if (it->locationID == locationID && it->relayPath == relayPath)
            viewCells.append(it.key());
    }
    return viewCells;
}
