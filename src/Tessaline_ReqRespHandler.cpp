// The handlers of answers, one for each command. They change lists and timelines and emit signals.

#include "Tessaline.h"

#include "AliveGuard.h"
#include "CameraNames.h"
#include "Log.h"
#include "Names.h"
#include "RequestContexts.h"
#include "TimeFormatter.h"
#include "TimeShiftBufferModel.h"

#include <QtGui/QStandardItem>

#include <memory>
#include <utility>
#include <vector>

using namespace tessaline;

/// Returns the records of a query's answer.
QVariantList Tessaline::bookmarksOf(const Answer &answer)
{
    return answer.result.toMap().value(serverKey::Bookmarks).toList();
}

// Fill lists with append(): it throws when memory is short, whereas the constructors and detach()
// of QList write to a null pointer.
//
// Emit last. A slot may send again, remove a view cell or delete this object, and so may a slot on
// a timeline model or the host inside a call. After each such call, check `self` and look up
// contexts and models again.

// ---- Changes ----

void Tessaline::HandleAddBookmarkResp(const Answer &answer)
{
    const AliveGuard self(this);
    const bool isAdded = addBookmarkToTimelineModel(answer.result.toMap(), answer.relayPath);
    if (self)
        Q_EMIT addBookmarkResponsed(isAdded);
}

bool Tessaline::addBookmarkToTimelineModel(const QVariantMap &record, const QString &relayPath)
{
    const AliveGuard self(this);
    const QStringList viewCells =
        m_timelines.viewCellsShowing({record.value(serverKey::LocationID).toString(), relayPath});
    CameraNames camNames(GetAllCamNames(), relayPath);
    return self && showInViewCells(record, viewCells, camNames) == 0;
}

/// Returns the number of view cells that have no model or for which no item could be created.
int Tessaline::showInViewCells(const QVariantMap &record, const QStringList &viewCells,
                               CameraNames &camNames)
{
    const AliveGuard self(this);
    const auto formatter = timeFormatter();
    int failures = 0;
    for (const QString &viewCellUID : viewCells) {
        if (!self)
            break;
        const auto model = m_timelines.model(viewCellUID);
        std::vector<std::unique_ptr<QStandardItem>> items;
        if (model)
            items.push_back(CreateBookmarkModelItem(record, camNames, *formatter));
        if (items.empty() || !items.back())
            ++failures;
        else
            refill(*model, std::move(items));
    }
    return failures;
}

void Tessaline::HandleAddBookmarksResp(const Answer &answer)
{
    auto &contexts = requestContexts().addBatches;
    const BatchRequestContext *const batch = contexts.find(answer.context);
    if (!batch || batch->pendingByTarget.count(answer.relayPath) == 0)
        return;
    const QVariantList sent = batch->pendingByTarget.at(answer.relayPath);

    const AliveGuard self(this);
    CameraNames camNames(GetAllCamNames(), answer.relayPath);
    if (!self)
        return;
    QStringList failed;
    if (isSuccess(answer.resultCode)) {
        failed = placeAddedBookmarks(answer.result.toList(), camNames);
    } else {
        for (const QVariant &record : sent)
            failed.append(
                camNames.camera(record.toMap().value(serverKey::CameraID).toString()).name);
    }

    const auto failures = completeStation(contexts, answer.context, answer.relayPath, failed);
    if (failures && self)
        Q_EMIT addBookmarksResponsed(*failures);
}

/// Adds the created bookmarks to the view cells that show them.
/// @return the camera's name for each bookmark that was not created, and for each view cell that
///         could not show a created one
QStringList Tessaline::placeAddedBookmarks(const QVariantList &records, CameraNames &camNames)
{
    const AliveGuard self(this);
    QStringList failed;
    for (const QVariant &element : records) {
        if (!self)
            break;
        const QVariantMap record = element.toMap();
        const QString camera = camNames.camera(record.value(serverKey::CameraID).toString()).name;
        int failures = 1;
        if (record.contains(serverKey::BookmarkID)) {
            const QStringList viewCells = m_timelines.viewCellsShowing(
                {record.value(serverKey::LocationID).toString(), camNames.relayPath()});
            failures = showInViewCells(record, viewCells, camNames);
        }
        while (failures-- > 0)
            failed.append(camera);
    }
    return failed;
}

void Tessaline::HandleDeleteBookmarkResp(const Answer &answer)
{
    const AliveGuard self(this);
    QStringList bookmarkIDs;
    bookmarkIDs.append(answer.result.toString());
    m_timelines.removeBookmarks(bookmarkIDs, self);
    if (self)
        Q_EMIT deleteBookmarkResponsed(true);
}

void Tessaline::HandleDeleteBookmarksResp(const Answer &answer)
{
    auto &contexts = requestContexts().deleteBatches;
    const BatchRequestContext *const batch = contexts.find(answer.context);
    if (!batch || batch->pendingByTarget.count(answer.relayPath) == 0)
        return;

    const AliveGuard self(this);
    const QStringList bookmarkIDs = answer.result.toStringList();
    const bool isDeleted = isSuccess(answer.resultCode);
    if (isDeleted)
        m_timelines.removeBookmarks(bookmarkIDs, self);

    const auto failures = completeStation(contexts, answer.context, answer.relayPath,
                                          isDeleted ? QStringList() : bookmarkIDs);
    if (failures && self)
        Q_EMIT deleteBookmarksResponsed(*failures);
}

void Tessaline::HandleUpdateBookmarkResp(const Answer &)
{
    Q_EMIT updateBookmarkResponsed(true);
}

// ---- Queries ----

void Tessaline::HandleQueryBookmarkForTimelineResp(const Answer &answer)
{
    const auto viewCellUID = requestContexts().timelineQueries.take(answer.context);
    if (!viewCellUID || !m_timelines.contains(*viewCellUID))
        return;
    const auto model = m_timelines.model(*viewCellUID);
    if (!model) {
        LOG_ERROR("%s, bookmark model is NULL", "Tessaline::HandleQueryBookmarkForTimelineResp");
        Q_EMIT queryBookmarkForTimelineResponsed(false);
        return;
    }

    const AliveGuard self(this);
    const TimelineFocus focus = m_timelines.focus(*viewCellUID);
    CameraNames camNames(GetAllCamNames(), answer.relayPath);
    if (!self)
        return;
    const auto formatter = timeFormatter();

    // The focus may have changed since the query was sent: only bookmarks of the new one are shown.
    std::vector<std::unique_ptr<QStandardItem>> items;
    const QVariantList records = bookmarksOf(answer);
    for (const QVariant &element : records) {
        const QVariantMap record = element.toMap();
        if (answer.relayPath != focus.relayPath ||
            record.value(serverKey::LocationID).toString() != focus.locationID)
            continue;
        auto item = CreateBookmarkModelItem(record, camNames, *formatter);
        if (!item)
            break;
        items.push_back(std::move(item));
    }
    refill(*model, std::move(items));
    if (self)
        Q_EMIT queryBookmarkForTimelineResponsed(true);
}

void Tessaline::HandleQueryAllBookmarksResp(const Answer &answer)
{
    const QueryAllRequestContext *const query = requestContexts().allQueries.find(answer.context);
    if (!query) {
        LOG_ERROR("%s, request response context is NULL", "Tessaline::HandleQueryAllBookmarksResp");
        return;
    }

    const AliveGuard self(this);
    if (!isSuccess(answer.resultCode)) {
        LOG_ERROR("%s, query all bookmarks for server (%s) failed",
                  "Tessaline::HandleQueryAllBookmarksResp", qPrintable(answer.relayPath));
    } else if (query->generation >= m_queryAllGeneration) {
        const quint64 generation = m_queryAllGeneration;
        CameraNames camNames(GetAllCamNames(), answer.relayPath);
        if (self && generation == m_queryAllGeneration)
            m_allBookmarks.append(bookmarksOf(answer), camNames, timeFormatter());
    }
    if (self)
        finishQueryAnswer(answer);
}

/// Emits the signal unless the query is superseded. The last answer ends the context in either
/// case.
void Tessaline::finishQueryAnswer(const Answer &answer)
{
    auto &contexts = requestContexts().allQueries;
    QueryAllRequestContext *const query = contexts.find(answer.context);
    if (!query)
        return;
    query->removePending(answer.relayPath);
    const bool isSuperseded = query->generation < m_queryAllGeneration;
    const bool done = query->isComplete();
    if (done)
        contexts.take(answer.context);
    if (!isSuperseded)
        Q_EMIT queryAllBookmarksResponsed(done);
}

void Tessaline::HandleQueryBookmarkForRecentResp(const Answer &answer)
{
    const AliveGuard self(this);
    CameraNames camNames(GetAllCamNames(), answer.relayPath);
    if (!self)
        return;
    const auto formatter = timeFormatter();
    const QVariantList records = bookmarksOf(answer);
    QVariantList items;
    for (const QVariant &record : records)
        items.append(CreateBookmarkItem(record.toMap(), camNames, *formatter));
    m_recentBookmarks.append(items);
    Q_EMIT queryBookmarkForRecentResponsed(true);
}

void Tessaline::HandleQueryBookmarkForAPIResp(const Answer &answer)
{
    const bool success = isSuccess(answer.resultCode);
    if (success)
        m_apiQueryResult = answer.result.toList();
    Q_EMIT queryBookmarkForApiFinished(success);
}

// ---- Server ----

void Tessaline::HandleQuerySevTimezoneResp(const Answer &answer)
{
    const QByteArray ianaId = answer.result.toByteArray();
    if (!ianaId.isEmpty())
        m_serverTimeZone = QTimeZone(ianaId);
}

void Tessaline::HandleQuerySettingPermissionResp(const Answer &answer)
{
    m_hasSettingPermission = answer.result.toBool();
}

void Tessaline::HandleGetRecycleSettingResp(const Answer &answer)
{
    const QVariantMap setting = answer.result.toMap();
    Q_EMIT getRecycleSettingResponse(setting.value(recycleKey::ReserveHour).toUInt(),
                                     setting.value(recycleKey::EnableRecycle).toBool());
}

void Tessaline::HandleUpdateRecycleSettingResp(const Answer &answer)
{
    Q_EMIT updateRecycleSettingResponse(answer.result.toBool());
}
