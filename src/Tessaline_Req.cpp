#include "Tessaline.h"

#include "FrameworkWrapperBase.h"
#include "Guard.h"
#include "Log.h"
#include "Names.h"
#include "RequestContexts.h"

#include <QtCore/QDateTime>
#include <QtCore/QHashFunctions>
#include <QtCore/QPointer>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

using namespace tessaline;

namespace {

/// Milliseconds since the epoch of a local date and time as QML writes it, or nothing.
std::optional<qint64> parseDateTime(const QString &text)
{
    // Two-digit years can't occur in this format, so the base year does not matter.
    const QDateTime dateTime = QDateTime::fromString(text, QStringLiteral("yyyy/MM/dd hh:mm:ss"));
    if (!dateTime.isValid())
        return std::nullopt;
    return dateTime.toMSecsSinceEpoch();
}

QVariantMap bookmarkPayload(const QString &cameraID, const QString &locationID,
                            qint64 startTimestamp, qint64 endTimestamp, const QString &desc,
                            const QString &creator, const QString &group)
{
    return {{serverKey::CameraID, cameraID},
            {serverKey::LocationID, locationID},
            {serverKey::StartTimestamp, startTimestamp},
            {serverKey::EndTimestamp, endTimestamp},
            {serverKey::Description, desc},
            {serverKey::Creator, creator},
            {serverKey::Group, group}};
}

/// What identifies an entry of a batch.
struct EntryKey
{
    QString relayPath;
    QString id;
    QString locationID; ///< empty when bookmarks are deleted

    bool operator==(const EntryKey &other) const
    {
        return id == other.id && locationID == other.locationID && relayPath == other.relayPath;
    }
};

/// Removes repeated entries; the first of equal ones stays in its place. By sorted hashes: a hash
/// table of a hundred thousand entries spends most of its time on allocations.
void removeDuplicates(std::vector<EntryKey> &entries)
{
    std::vector<std::pair<std::size_t, std::size_t>> hashes; // with the position of the entry
    hashes.reserve(entries.size());
    for (const EntryKey &entry : entries) {
        hashes.emplace_back(
            qHashMulti(QHashSeed::globalSeed(), entry.relayPath, entry.id, entry.locationID),
            hashes.size());
    }
    std::sort(hashes.begin(), hashes.end());

    std::vector<char> isRepeated(entries.size());
    for (auto first = hashes.cbegin(); first != hashes.cend(); ++first) {
        if (isRepeated[first->second]) // or a batch of equal entries would take quadratic time
            continue;
        for (auto next = first + 1; next != hashes.cend() && next->first == first->first; ++next) {
            if (entries[next->second] == entries[first->second])
                isRepeated[next->second] = true;
        }
    }
    std::size_t position = 0;
    entries.erase(std::remove_if(entries.begin(), entries.end(),
                                 [&](const EntryKey &) { return isRepeated[position++] != 0; }),
                  entries.end());
}

} // namespace

bool Tessaline::sendCommand(const QString &command, const QVariant &payload, void *context,
                            const QString &relayPath)
{
    if (!m_framework)
        return false;
    // What the host lets out is a refusal: the caller has its contexts to settle.
    return guarded("Tessaline::sendCommand", [&] {
        const QString sender = pluginID; // outlives this object, should the call delete it
        return m_framework->SendCommand(m_hostHandle, sender, command, payload, context, false,
                                        relayPath);
    });
}

// ---- Single bookmarks ----

bool Tessaline::addBookmark(const QString &cameraID, const QString &locationID,
                            const QString &relayPath, qint64 startTimestamp, qint64 endTimestamp,
                            const QString &desc, const QString &creator, const QString &group)
{
    if (cameraID.isEmpty()) {
        // Speaks of the location though it is the camera that is missing: log readers know it so.
        LOG_ERROR("%s, Location ID is empty", "Tessaline::addBookmark");
        return false;
    }
    return guarded("Tessaline::addBookmark", [&] {
        const QVariantMap payload = bookmarkPayload(cameraID, locationID, startTimestamp,
                                                    endTimestamp, desc, creator, group);
        if (sendCommand(command::AddBookmark, payload, nullptr, relayPath))
            return true;
        LOG_ERROR("%s, send command failed", "Tessaline::addBookmark");
        return false;
    });
}

bool Tessaline::deleteBookmark(const QString &bookmarkID, const QString &relayPath)
{
    if (!m_hasSettingPermission) {
        Q_EMIT deleteBookmarkResponsed(false);
        return false;
    }
    return guarded("Tessaline::deleteBookmark", [&] {
        const QVariantMap payload{{serverKey::BookmarkID, bookmarkID}};
        if (sendCommand(command::DeleteBookmark, payload, nullptr, relayPath))
            return true;
        LOG_ERROR("%s, send command failed", "Tessaline::deleteBookmark");
        return false;
    });
}

bool Tessaline::updateBookmark(const QString &bookmarkID, const QString &desc, const QString &group)
{
    return guarded("Tessaline::updateBookmark", [&] {
        QVariantMap payload{{serverKey::BookmarkID, bookmarkID}};
        if (!desc.isNull())
            payload.insert(serverKey::Description, desc);
        if (!group.isNull())
            payload.insert(serverKey::Group, group);
        if (sendCommand(command::UpdateBookmark, payload, nullptr, QString()))
            return true;
        LOG_ERROR("%s, send command failed", "Tessaline::updateBookmark");
        return false;
    });
}

bool Tessaline::removeAllBookmarks(const QString &relayPath)
{
    if (!m_hasSettingPermission) {
        Q_EMIT removeAllBookmarksResponsed(false);
        return true; // unlike deleteBookmark(): the panel waits for the signal alone
    }
    if (sendCommand(command::RemoveAllBookmarks, QVariant(), nullptr, relayPath))
        return true;
    LOG_ERROR("%s, send command failed", "Tessaline::removeAllBookmarks");
    return false;
}

// ---- Batches ----

/// What adding and deleting in batches have in common.
struct Tessaline::BatchRequest
{
    const QString &command;
    const char *scope;
    ContextRegistry<BatchRequestContext> &contexts;
    void (Tessaline::*responsed)(QStringList);
};

bool Tessaline::addBookmarks(const QVariantList &targetList, qint64 startTimestamp,
                             qint64 endTimestamp, const QString &desc, const QString &creator,
                             const QString &group)
{
    return guarded("Tessaline::addBookmarks", [&] {
        std::vector<EntryKey> entries;
        entries.reserve(static_cast<std::size_t>(targetList.size()));
        for (const QVariant &element : targetList) {
            const QVariantMap target = element.toMap();
            entries.push_back({target.value(displayKey::RelayPath).toString(),
                               target.value(serverKey::CameraID).toString(),
                               target.value(serverKey::LocationID).toString()});
        }
        removeDuplicates(entries);

        BatchRequestContext batch;
        const QVariantMap common =
            bookmarkPayload({}, {}, startTimestamp, endTimestamp, desc, creator, group);
        for (const EntryKey &entry : entries) {
            QVariantMap payload = common; // copying a map is cheaper than making one
            payload[serverKey::CameraID] = entry.id;
            payload[serverKey::LocationID] = entry.locationID;
            batch.pendingByTarget[entry.relayPath].append(payload);
        }
        return sendBatch({command::AddBookmarks, "Tessaline::addBookmarks",
                          requestContexts().addBatches, &Tessaline::addBookmarksResponsed},
                         std::move(batch));
    });
}

bool Tessaline::addBookmarks(const QVariantList &targetList, const QString &startDateTime,
                             const QString &endDateTime, const QString &desc,
                             const QString &creator, const QString &group)
{
    return guarded("Tessaline::addBookmarks", [&] {
        const auto start = parseDateTime(startDateTime);
        const auto end = parseDateTime(endDateTime);
        return start && end && addBookmarks(targetList, *start, *end, desc, creator, group);
    });
}

bool Tessaline::deleteBookmarks(const QVariantList &deleteList)
{
    return guarded("Tessaline::deleteBookmarks", [&] {
        std::vector<EntryKey> entries;
        for (const QVariant &element : deleteList) {
            const QVariantMap target = element.toMap();
            entries.push_back({target.value(displayKey::RelayPath).toString(),
                               target.value(serverKey::BookmarkID).toString(), QString()});
        }
        removeDuplicates(entries);

        BatchRequestContext batch;
        for (const EntryKey &entry : entries) {
            batch.pendingByTarget[entry.relayPath].append(
                QVariantMap{{serverKey::BookmarkID, entry.id}});
        }
        if (m_hasSettingPermission) {
            return sendBatch({command::DeleteBookmarks, "Tessaline::deleteBookmarks",
                              requestContexts().deleteBatches,
                              &Tessaline::deleteBookmarksResponsed},
                             std::move(batch));
        }

        QStringList refused;
        for (const auto &[relayPath, payloads] : batch.pendingByTarget) {
            for (const QVariant &payload : payloads)
                refused.append(payload.toMap().value(serverKey::BookmarkID).toString());
        }
        Q_EMIT deleteBookmarksResponsed(refused);
        return true;
    });
}

bool Tessaline::sendBatch(const BatchRequest &request, BatchRequestContext content)
{
    const QPointer<Tessaline> self(this);
    const std::vector<std::pair<QString, QVariant>> groups(content.pendingByTarget.cbegin(),
                                                           content.pendingByTarget.cend());
    BatchRequestContext *const context = request.contexts.create(std::move(content));
    if (!context) {
        LOG_ERROR("%s, malloc memory fail", request.scope);
        return false;
    }
    bool handedOn = false;
    for (auto group = groups.cbegin(); self && group != groups.cend(); ++group) {
        const auto &[relayPath, entries] = *group;
        if (sendCommand(request.command, entries, context, relayPath)) {
            handedOn = true;
            continue;
        }
        LOG_ERROR("%s, send command failed", request.scope);
        if (BatchRequestContext *const batch = request.contexts.find(context))
            batch->pendingByTarget.erase(relayPath);
    }

    // The host may have answered from inside the calls. Then the batch is over by now, or only a
    // station that could not be reached has kept it from being so.
    const BatchRequestContext *const batch = request.contexts.find(context);
    if (!batch || (self && !batch->pendingByTarget.empty()))
        return handedOn;
    const auto finished = request.contexts.take(context);
    if (self && handedOn)
        Q_EMIT(this->*request.responsed)(finished->failedList);
    return handedOn;
}

// ---- Queries ----

bool Tessaline::queryAllBookmarks()
{
    return guarded("Tessaline::queryAllBookmarks", [&] {
        m_allBookmarks.clear();

        auto &contexts = requestContexts().allQueries;
        QueryAllRequestContext *const context = contexts.create({{}, m_queryAllGeneration + 1});
        if (!context) {
            LOG_ERROR("%s, new request context list failed", "Tessaline::queryAllBookmarks");
            return false;
        }
        const QPointer<Tessaline> self(this);
        ++m_queryAllGeneration; // before the stations are asked for: that may make a query of its
                                // own
        std::vector<QString> stations;
        try {
            stations = GetAllSubStations();
            context->pendingStations = stations;
        } catch (...) {
            contexts.take(context);
            throw;
        }

        const QVariant noParameters = QVariantMap();
        bool handedOn = false;
        for (auto station = stations.cbegin(); self && station != stations.cend(); ++station) {
            if (sendCommand(command::QueryAllBookmarks, noParameters, context, *station)) {
                handedOn = true;
                continue;
            }
            if (QueryAllRequestContext *const query = contexts.find(context))
                query->noteAnswer(*station);
            LOG_ERROR("%s, SendCommand failed", "Tessaline::queryAllBookmarks");
        }

        // As for batches: the host may have answered from inside the calls.
        const QueryAllRequestContext *const query = contexts.find(context);
        if (!query || (self && !query->pendingStations.empty()))
            return handedOn;
        const auto finished = contexts.take(context);
        if (self && handedOn && finished->generation >= m_queryAllGeneration)
            Q_EMIT queryAllBookmarksResponsed(true);
        return handedOn;
    });
}

void Tessaline::queryBookmarkForAPI(const QVariantList &camIdList, const QString &startDateTime,
                                    const QString &endDateTime)
{
    guarded("Tessaline::queryBookmarkForAPI", [&] {
        const auto start = parseDateTime(startDateTime);
        const auto end = parseDateTime(endDateTime);
        if (start && end)
            queryBookmarkForAPI(camIdList, *start, *end);
        else
            Q_EMIT queryBookmarkForApiFinished(false);
    });
}

void Tessaline::queryBookmarkForAPI(const QVariantList &camIdList, qint64 startTimestamp,
                                    qint64 endTimestamp)
{
    if (camIdList.isEmpty() || startTimestamp == 0 || endTimestamp == 0) {
        Q_EMIT queryBookmarkForApiFinished(false);
        return;
    }
    // A failed send is silent: QML learns of this query by its answer alone.
    guarded("Tessaline::queryBookmarkForAPI", [&] {
        sendCommand(command::QueryBookmarkForApi,
                    QVariantMap{{serverKey::CameraIDList, camIdList},
                                {serverKey::StartTimestamp, startTimestamp},
                                {serverKey::EndTimestamp, endTimestamp}},
                    nullptr, QString());
    });
}

bool Tessaline::queryBookmarkForRecent(const QString &cameraID, const QString &relayPath,
                                       uchar recentCnt)
{
    m_recentBookmarks = {};
    return guarded("Tessaline::queryBookmarkForRecent", [&] {
        return sendCommand(command::QueryBookmarkForRecent,
                           QVariantMap{{serverKey::LocationID, cameraID},
                                       {serverKey::RecentCnt, static_cast<int>(recentCnt)}},
                           nullptr, relayPath);
    });
}

bool Tessaline::queryBookmarkForTimeline(const QString &locationID, const QString &relayPath,
                                         qint64 startTimestamp, qint64 endTimestamp,
                                         const QString &viewCellUID)
{
    const QVariantMap payload{{serverKey::LocationID, locationID},
                              {serverKey::StartTimestamp, startTimestamp},
                              {serverKey::EndTimestamp, endTimestamp}};
    auto &contexts = requestContexts().timelineQueries;
    QString *const context = contexts.create(viewCellUID);
    if (!context)
        return false;
    if (sendCommand(command::QueryBookmarkForTimeline, payload, context, relayPath))
        return true;
    contexts.take(context);
    return false;
}

// ---- Getters ----

QVariantList Tessaline::getBookmarkList()
{
    return guarded("Tessaline::getBookmarkList", [&] { return bookmarksOfCamera(QString()); });
}

QVariantList Tessaline::getBookmarkListForRecent()
{
    return m_recentBookmarks;
}

QVariantList Tessaline::getQueryBookmarkResult() const
{
    return m_apiQueryResult;
}
