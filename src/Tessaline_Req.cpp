// Requests: their payloads and contexts, and the send calls.

#include "Tessaline.h"

#include "AliveGuard.h"
#include "FrameworkWrapperBase.h"
#include "Log.h"
#include "Names.h"
#include "NoThrow.h"
#include "RequestContexts.h"

#include <QtCore/QDateTime>
#include <QtCore/QHashFunctions>

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>
#include <vector>

using namespace tessaline;

/// The payload for each station.
using StationPayloads = std::vector<std::pair<QString, QVariant>>;

/// A command for several stations with one request context.
struct Tessaline::StationCommand
{
    const QString &command;
    const StationPayloads &payloads;
    // The log line for a rejected command.
    int line;
    const char *logFormat;
    const char *scope;
};

namespace {

constexpr char BatchFailure[] = "%s, send command failed";

/// Returns a local date and time in milliseconds since the epoch, or nullopt for a malformed text.
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

/// Identifies an entry of a batch.
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

/// Removes repeated entries; of equal ones the first stays in its place. Sorts the hashes, because
/// a hash table of a hundred thousand entries spends most of its time on allocations.
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
        if (isRepeated[first->second]) // avoids quadratic time for a batch of equal entries
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
    // An exception from the host counts as a rejection, so that the caller can end its context.
    return noThrow("Tessaline::sendCommand", [&] {
        const QString sender = pluginID; // outlives this object, should the call delete it
        return m_framework->SendCommand(m_hostHandle, sender, command, payload, context, false,
                                        relayPath);
    });
}

bool Tessaline::sendSingle(const char *scope, const QString &command, const QVariant &payload,
                           const QString &relayPath, int line)
{
    if (sendCommand(command, payload, nullptr, relayPath))
        return true;
    LOG_ERROR_AT(line, "%s, send command failed", scope);
    return false;
}

template <typename Context, typename Finish>
bool Tessaline::sendToStations(const StationCommand &request, NewContext<Context> created,
                               Finish finish)
{
    const AliveGuard self(this);
    ContextRegistry<Context> &contexts = *created.get_deleter().registry;
    void *const context = created.release();
    bool isAccepted = false;
    for (auto it = request.payloads.cbegin(); self && it != request.payloads.cend(); ++it) {
        const auto &[relayPath, payload] = *it;
        if (sendCommand(request.command, payload, context, relayPath)) {
            isAccepted = true;
            continue;
        }
        if (Context *const open = contexts.find(context))
            open->removePending(relayPath);
        LOG_ERROR_AT(request.line, request.logFormat, request.scope);
    }

    // The host may have answered inside the calls. Then the answers have ended the context, or only
    // stations whose command was rejected are still pending.
    const Context *const open = contexts.find(context);
    if (!open || (self && !open->isComplete()))
        return isAccepted;
    const auto finished = contexts.take(context);
    if (self && isAccepted)
        finish(*finished);
    return isAccepted;
}

// ---- Single bookmarks ----

bool Tessaline::addBookmark(const QString &cameraID, const QString &locationID,
                            const QString &relayPath, qint64 startTimestamp, qint64 endTimestamp,
                            const QString &desc, const QString &creator, const QString &group)
{
    if (cameraID.isEmpty()) {
        // Names the location although the camera is missing: log readers depend on this text.
        LOG_ERROR("%s, Location ID is empty", "Tessaline::addBookmark");
        return false;
    }
    return noThrow("Tessaline::addBookmark", [&] {
        const QVariantMap payload = bookmarkPayload(cameraID, locationID, startTimestamp,
                                                    endTimestamp, desc, creator, group);
        return sendSingle("Tessaline::addBookmark", command::AddBookmark, payload, relayPath);
    });
}

bool Tessaline::deleteBookmark(const QString &bookmarkID, const QString &relayPath)
{
    if (!m_hasSettingPermission) {
        Q_EMIT deleteBookmarkResponsed(false);
        return false;
    }
    return noThrow("Tessaline::deleteBookmark", [&] {
        const QVariantMap payload{{serverKey::BookmarkID, bookmarkID}};
        return sendSingle("Tessaline::deleteBookmark", command::DeleteBookmark, payload, relayPath);
    });
}

bool Tessaline::updateBookmark(const QString &bookmarkID, const QString &desc, const QString &group)
{
    return noThrow("Tessaline::updateBookmark", [&] {
        QVariantMap payload{{serverKey::BookmarkID, bookmarkID}};
        if (!desc.isNull())
            payload.insert(serverKey::Description, desc);
        if (!group.isNull())
            payload.insert(serverKey::Group, group);
        return sendSingle("Tessaline::updateBookmark", command::UpdateBookmark, payload, QString());
    });
}

bool Tessaline::removeAllBookmarks(const QString &relayPath)
{
    if (!m_hasSettingPermission) {
        Q_EMIT removeAllBookmarksResponsed(false);
        return true; // unlike deleteBookmark(): the panel evaluates only the signal
    }
    return sendSingle("Tessaline::removeAllBookmarks", command::RemoveAllBookmarks, QVariant(),
                      relayPath);
}

// ---- Batches ----

bool Tessaline::addBookmarks(const QVariantList &targetList, qint64 startTimestamp,
                             qint64 endTimestamp, const QString &desc, const QString &creator,
                             const QString &group)
{
    return noThrow("Tessaline::addBookmarks", [&] {
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
            QVariantMap payload = common; // copying a map is cheaper than filling a new one
            payload[serverKey::CameraID] = entry.id;
            payload[serverKey::LocationID] = entry.locationID;
            batch.pendingByTarget[entry.relayPath].append(payload);
        }
        const StationPayloads payloads(batch.pendingByTarget.cbegin(),
                                       batch.pendingByTarget.cend());
        auto context = requestContexts().addBatches.create(std::move(batch));
        if (!context) {
            LOG_ERROR("%s, malloc memory fail", "Tessaline::addBookmarks");
            return false;
        }
        return sendToStations(
            {command::AddBookmarks, payloads, __LINE__, BatchFailure, "Tessaline::addBookmarks"},
            std::move(context), [this](const BatchRequestContext &finished) {
                Q_EMIT addBookmarksResponsed(finished.failedList);
            });
    });
}

bool Tessaline::addBookmarks(const QVariantList &targetList, const QString &startDateTime,
                             const QString &endDateTime, const QString &desc,
                             const QString &creator, const QString &group)
{
    return noThrow("Tessaline::addBookmarks", [&] {
        const auto start = parseDateTime(startDateTime);
        const auto end = parseDateTime(endDateTime);
        return start && end && addBookmarks(targetList, *start, *end, desc, creator, group);
    });
}

bool Tessaline::deleteBookmarks(const QVariantList &deleteList)
{
    return noThrow("Tessaline::deleteBookmarks", [&] {
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
        const StationPayloads payloads(batch.pendingByTarget.cbegin(),
                                       batch.pendingByTarget.cend());
        auto context = requestContexts().deleteBatches.create(std::move(batch));
        if (!context) {
            LOG_ERROR("%s, malloc memory fail", "Tessaline::deleteBookmarks");
            return false;
        }
        if (!m_hasSettingPermission) {
            context.reset();
            QStringList bookmarkIDs;
            for (const auto &[relayPath, targets] : payloads) {
                const QVariantList list = targets.toList();
                for (const QVariant &target : list)
                    bookmarkIDs.append(target.toMap().value(serverKey::BookmarkID).toString());
            }
            Q_EMIT deleteBookmarksResponsed(bookmarkIDs);
            return true;
        }
        return sendToStations({command::DeleteBookmarks, payloads, __LINE__, BatchFailure,
                               "Tessaline::deleteBookmarks"},
                              std::move(context), [this](const BatchRequestContext &finished) {
                                  Q_EMIT deleteBookmarksResponsed(finished.failedList);
                              });
    });
}

// ---- Queries ----

bool Tessaline::queryAllBookmarks()
{
    return noThrow("Tessaline::queryAllBookmarks", [&] {
        m_allBookmarks.clear();

        auto context = requestContexts().allQueries.create({{}, m_queryAllGeneration + 1});
        if (!context) {
            LOG_ERROR("%s, new request context list failed", "Tessaline::queryAllBookmarks");
            return false;
        }
        const AliveGuard self(this);
        ++m_queryAllGeneration; // before the topology call, which may start a newer query
        const std::vector<QString> stations = GetAllSubStations();
        if (!self)
            return false;
        StationPayloads payloads;
        for (const QString &station : stations)
            payloads.emplace_back(station, QVariantMap());
        context->pendingStations = stations;
        return sendToStations({command::QueryAllBookmarks, payloads, __LINE__,
                               "%s, SendCommand failed", "Tessaline::queryAllBookmarks"},
                              std::move(context), [this](const QueryAllRequestContext &finished) {
                                  if (finished.generation >= m_queryAllGeneration)
                                      Q_EMIT queryAllBookmarksResponsed(true);
                              });
    });
}

void Tessaline::queryBookmarkForAPI(const QVariantList &camIdList, const QString &startDateTime,
                                    const QString &endDateTime)
{
    noThrow("Tessaline::queryBookmarkForAPI", [&] {
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
    // A failed send is not reported: the method returns nothing, and the signal reports an answer.
    noThrow("Tessaline::queryBookmarkForAPI", [&] {
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
    return noThrow("Tessaline::queryBookmarkForRecent", [&] {
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
    auto context = requestContexts().timelineQueries.create(viewCellUID);
    if (!context ||
        !sendCommand(command::QueryBookmarkForTimeline, payload, context.get(), relayPath))
        return false;
    static_cast<void>(context.release());
    return true;
}

// ---- Getters ----

QVariantList Tessaline::getBookmarkList()
{
    return noThrow("Tessaline::getBookmarkList", [&] { return bookmarksOfCamera(QString()); });
}

QVariantList Tessaline::getBookmarkListForRecent()
{
    return m_recentBookmarks;
}

QVariantList Tessaline::getQueryBookmarkResult() const
{
    return m_apiQueryResult;
}
