#include "Tessaline.h"

#include "CameraNames.h"
#include "Log.h"
#include "Names.h"
#include "RequestContexts.h"
#include "TimeFormatter.h"
#include "TimeShiftBufferModel.h"

#include <QtCore/QPointer>
#include <QtGui/QStandardItem>

#include <memory>
#include <utility>
#include <vector>

using namespace tessaline;

// Lists are filled by append(): when memory is short it throws, whereas a QList that is made of
// given elements, or detached, writes to a null pointer.
//
// Every handler emits last. A slot may send again, remove a view cell or delete this object, and so
// may whoever watches a timeline model, or the host from inside a call; what a handler still needs
// afterwards it looks up anew.

// ---- Changes ----

void Tessaline::HandleAddBookmarkResp(const QVariant &data, const QString &relayPath)
{
    const QPointer<Tessaline> self(this);
    const bool added = addBookmarkToTimelineModel(data.toMap(), relayPath);
    if (self)
        Q_EMIT addBookmarkResponsed(added);
}

void Tessaline::HandleAddBookmarksResp(const QVariant &data, void *context,
                                       const QString &resultCode, const QString &relayPath)
{
    auto &contexts = requestContexts().addBatches;
    const BatchRequestContext *const batch = contexts.find(context);
    if (!batch || batch->pendingByTarget.count(relayPath) == 0)
        return;
    const QVariantList sent = batch->pendingByTarget.at(relayPath);

    const QPointer<Tessaline> self(this);
    CameraNames camNames(GetAllCamNames(), relayPath);
    if (!self)
        return;
    QStringList failed;
    if (isSuccess(resultCode)) {
        failed = placeAddedBookmarks(data.toList(), camNames);
    } else {
        for (const QVariant &record : sent)
            failed.append(
                camNames.camera(record.toMap().value(serverKey::CameraID).toString()).name);
    }

    const auto failures = settleBatch(contexts, context, relayPath, failed);
    if (failures && self)
        Q_EMIT addBookmarksResponsed(*failures);
}

/// Puts the created bookmarks into the view cells that show them. Returns the cameras' names of
/// those that were not created, and once more for each view cell that could not take one.
QStringList Tessaline::placeAddedBookmarks(const QVariantList &records, CameraNames &camNames)
{
    const QPointer<Tessaline> self(this);
    const auto formatter = timeFormatter();
    QStringList failed;
    for (const QVariant &element : records) {
        if (!self)
            break;
        const QVariantMap record = element.toMap();
        const QString camera = camNames.camera(record.value(serverKey::CameraID).toString()).name;
        if (!record.contains(serverKey::BookmarkID)) {
            failed.append(camera);
            continue;
        }
        const QStringList viewCells =
            viewCellsShowing(record.value(serverKey::LocationID).toString(), camNames.relayPath());
        for (const QString &viewCellUID : viewCells) {
            if (self && !addBookmarkToViewCell(viewCellUID, record, camNames, *formatter))
                failed.append(camera);
        }
    }
    return failed;
}

void Tessaline::HandleDeleteBookmarkResp(const QString &bookmarkID)
{
    const QPointer<Tessaline> self(this);
    QStringList bookmarkIDs;
    bookmarkIDs.append(bookmarkID);
    removeBookmarksFromTimelineModels(bookmarkIDs);
    if (self)
        Q_EMIT deleteBookmarkResponsed(true);
}

void Tessaline::HandleDeleteBookmarksResp(const QList<QString> &bookmarkIDs, void *context,
                                          const QString &resultCode, const QString &relayPath)
{
    auto &contexts = requestContexts().deleteBatches;
    const BatchRequestContext *const batch = contexts.find(context);
    if (!batch || batch->pendingByTarget.count(relayPath) == 0)
        return;

    const QPointer<Tessaline> self(this);
    const bool deleted = isSuccess(resultCode);
    if (deleted)
        removeBookmarksFromTimelineModels(bookmarkIDs);

    const auto failures =
        settleBatch(contexts, context, relayPath, deleted ? QList<QString>() : bookmarkIDs);
    if (failures && self)
        Q_EMIT deleteBookmarksResponsed(*failures);
}

void Tessaline::HandleUpdateBookmarkResp()
{
    Q_EMIT updateBookmarkResponsed(true);
}

// ---- Queries ----

void Tessaline::HandleQueryBookmarkForTimelineResp(const QVariant &data, const QString &relayPath,
                                                   void *context)
{
    const auto viewCellUID = requestContexts().timelineQueries.take(context);
    if (!viewCellUID || !m_timelineModels.contains(*viewCellUID))
        return;
    const auto model = m_timelineModels.value(*viewCellUID);
    if (!model) {
        LOG_ERROR("%s, bookmark model is NULL", "Tessaline::HandleQueryBookmarkForTimelineResp");
        Q_EMIT queryBookmarkForTimelineResponsed(false);
        return;
    }

    const QPointer<Tessaline> self(this);
    const TimelineFocus focus = m_timelineFocusInfo.value(*viewCellUID);
    CameraNames camNames(GetAllCamNames(), relayPath);
    if (!self)
        return;
    const auto formatter = timeFormatter();

    // The focus may have moved since the question was asked: only what still matches is shown.
    std::vector<std::unique_ptr<QStandardItem>> items;
    const QVariantList records = data.toMap().value(serverKey::Bookmarks).toList();
    for (const QVariant &element : records) {
        const QVariantMap record = element.toMap();
        if (relayPath != focus.relayPath ||
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

void Tessaline::HandleQueryAllBookmarksResp(const QString &resultCode, const QVariant &data,
                                            void *context, const QString &relayPath)
{
    const QueryAllRequestContext *const query = requestContexts().allQueries.find(context);
    if (!query) {
        LOG_ERROR("%s, request response context is NULL", "Tessaline::HandleQueryAllBookmarksResp");
        return;
    }

    const QPointer<Tessaline> self(this);
    if (!isSuccess(resultCode)) {
        LOG_ERROR("%s, query all bookmarks for server (%s) failed",
                  "Tessaline::HandleQueryAllBookmarksResp", qPrintable(relayPath));
    } else if (query->generation >= m_queryAllGeneration) {
        const quint64 generation = m_queryAllGeneration;
        CameraNames camNames(GetAllCamNames(), relayPath);
        if (self && generation == m_queryAllGeneration)
            m_allBookmarks.append(data.toMap().value(serverKey::Bookmarks).toList(), camNames,
                                  timeFormatter());
    }
    if (self)
        settleQueryAllAnswer(context, relayPath);
}

/// Notes that a station has answered, and tells QML unless a newer query has been made. The
/// context ends with its last answer, superseded or not.
void Tessaline::settleQueryAllAnswer(void *context, const QString &relayPath)
{
    auto &contexts = requestContexts().allQueries;
    QueryAllRequestContext *const query = contexts.find(context);
    if (!query)
        return;
    query->noteAnswer(relayPath);
    const bool superseded = query->generation < m_queryAllGeneration;
    const bool done = query->pendingStations.empty();
    if (done)
        contexts.take(context);
    if (!superseded)
        Q_EMIT queryAllBookmarksResponsed(done);
}

void Tessaline::HandleQueryBookmarkForRecentResp(const QVariant &data, const QString &relayPath)
{
    const QPointer<Tessaline> self(this);
    CameraNames camNames(GetAllCamNames(), relayPath);
    if (!self)
        return;
    const auto formatter = timeFormatter();
    const QVariantList records = data.toMap().value(serverKey::Bookmarks).toList();
    QVariantList items;
    for (const QVariant &record : records)
        items.append(CreateBookmarkItem(record.toMap(), camNames, *formatter));
    m_recentBookmarks.append(items);
    Q_EMIT queryBookmarkForRecentResponsed(true);
}

void Tessaline::HandleQueryBookmarkForAPIResp(const QVariant &data, const QString &resultCode)
{
    const bool success = isSuccess(resultCode);
    if (success)
        m_apiQueryResult = data.toList();
    Q_EMIT queryBookmarkForApiFinished(success);
}
