#include "Station.h"

#include "Payload.h"
#include "Protocol.h"
#include "topology/CameraKey.h"

#include <QtCore/QDateTime>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTimeZone>
#include <QtCore/QUuid>

#include <algorithm>
#include <chrono>
#include <limits>

namespace stations {

namespace code = protocol::code;
namespace command = protocol::command;
namespace key = protocol::key;

using standin::Answer;

namespace {

// Debug lines, one for each command, need QT_LOGGING_RULES="tessaline.station=true".
Q_LOGGING_CATEGORY(logStation, "tessaline.station", QtInfoMsg)

// Far more than a user can select; few enough not to block the client for seconds.
constexpr qsizetype MaxBatchSize = 100'000;
constexpr int MaxRecentCount = 255;
constexpr qint64 MsPerHour = 3'600'000;

Answer success(const QVariant &result = QVariant())
{
    return {result, code::Success};
}

Answer failure(QLatin1String resultCode, const QVariant &result = QVariant())
{
    return {result, resultCode};
}

QVariantList recordsOf(const QList<Bookmark> &bookmarks)
{
    QVariantList records;
    records.reserve(bookmarks.size());
    for (const Bookmark &bookmark : bookmarks)
        records.append(bookmark.toRecord());
    return records;
}

/// Returns the bookmarks of a batch, or nullopt if one of them is malformed.
std::optional<QList<Bookmark>> bookmarksOf(const QVariant &payload)
{
    const std::optional<QVariantList> elements = payload::toList(payload);
    if (!elements || elements->size() > MaxBatchSize)
        return std::nullopt;
    QList<Bookmark> bookmarks;
    bookmarks.reserve(elements->size());
    for (const QVariant &element : *elements) {
        const std::optional<QVariantMap> record = payload::toMap(element);
        const std::optional<Bookmark> bookmark =
            record ? Bookmark::fromRecord(*record) : std::nullopt;
        if (!bookmark)
            return std::nullopt;
        bookmarks.append(*bookmark);
    }
    return bookmarks;
}

std::optional<TimeRange> timeRangeOf(const QVariantMap &map)
{
    const std::optional<qint64> start = payload::int64(map, key::StartTimestamp);
    const std::optional<qint64> end = payload::int64(map, key::EndTimestamp);
    if (!start || !end)
        return std::nullopt;
    return TimeRange{*start, *end};
}

/// Returns the identifiers in a "DeleteBookmarks" payload, or nullopt if it is malformed.
std::optional<QStringList> bookmarkIDsOf(const QVariant &payload)
{
    const std::optional<QVariantList> elements = payload::toList(payload);
    if (!elements || elements->size() > MaxBatchSize)
        return std::nullopt;
    QStringList bookmarkIDs;
    for (const QVariant &element : *elements) {
        const std::optional<QVariantMap> map = payload::toMap(element);
        const std::optional<QString> bookmarkID =
            map ? payload::text(*map, key::BookmarkID) : std::nullopt;
        if (!bookmarkID)
            return std::nullopt;
        bookmarkIDs.append(*bookmarkID);
    }
    return bookmarkIDs;
}

} // namespace

Answer failedAnswer(const QString &command, const QVariant &payload, const QString &resultCode)
{
    if (command != command::DeleteBookmarks)
        return {QVariant(), resultCode};
    const std::optional<QStringList> bookmarkIDs = bookmarkIDsOf(payload);
    return {bookmarkIDs ? QVariant(*bookmarkIDs) : QVariant(), resultCode};
}

std::unique_ptr<Station> Station::open(const StationConfig &config, QString *error)
{
    std::unique_ptr<BookmarkStore> store = BookmarkStore::open(config.filePath, error);
    if (!store)
        return nullptr;
    std::unique_ptr<Station> station(new Station(config, std::move(store)));
    if (!station->recycle(QDateTime::currentMSecsSinceEpoch())) {
        *error = station->lastError();
        return nullptr;
    }
    return station;
}

std::unique_ptr<Station> Station::broken(const StationConfig &config, const QString &defect)
{
    std::unique_ptr<Station> station(new Station(config, nullptr));
    station->m_defect = defect;
    return station;
}

Station::Station(const StationConfig &config, std::unique_ptr<BookmarkStore> store)
    : m_config(config)
    , m_store(std::move(store))
    , m_timeZone(QTimeZone::systemTimeZoneId())
{
    m_recycleTimer.setInterval(std::chrono::hours(1));
    connect(&m_recycleTimer, &QTimer::timeout, this, [this] {
        if (!recycle(QDateTime::currentMSecsSinceEpoch()))
            qCWarning(logStation) << "station" << m_config.name
                                  << "can't delete old bookmarks; it tries again in an hour:"
                                  << lastError();
    });
    m_recycleTimer.start();
}

bool Station::hasCamera(const QString &cameraID) const
{
    return std::any_of(m_config.cameras.cbegin(), m_config.cameras.cend(),
                       [&](const Camera &camera) { return camera.cameraID == cameraID; });
}

Answer Station::execute(const QString &command, const QVariant &payload)
{
    struct Row
    {
        QLatin1String command;
        Answer (Station::*handler)(const QVariant &);
    };
    static constexpr Row rows[] = {
        {command::AddBookmark, &Station::addBookmark},
        {command::AddBookmarks, &Station::addBookmarks},
        {command::DeleteBookmark, &Station::deleteBookmark},
        {command::DeleteBookmarks, &Station::deleteBookmarks},
        {command::UpdateBookmark, &Station::updateBookmark},
        {command::RemoveAllBookmarks, &Station::removeAllBookmarks},
        {command::QueryAllBookmarks, &Station::queryAllBookmarks},
        {command::QueryBookmarkForRecent, &Station::queryBookmarkForRecent},
        {command::QueryBookmarkForTimeline, &Station::queryBookmarkForTimeline},
        {command::QueryBookmarkForApi, &Station::queryBookmarkForApi},
        {command::GetRecycleSetting, &Station::recycleSetting},
        {command::UpdateRecycleSetting, &Station::updateRecycleSetting},
        {command::QueryServerTimeZone, &Station::timeZone},
        {command::QuerySettingPermission, &Station::settingPermission},
    };
    const auto *row = std::find_if(std::cbegin(rows), std::cend(rows), [&](const Row &candidate) {
        return candidate.command == command;
    });
    if (row == std::cend(rows))
        return failure(code::UnknownCommand);
    // Without a log line: StationNetwork::defects() has reported the broken station.
    if (!m_store)
        return failedAnswer(command, payload, code::DatabaseError);
    Answer answer = (this->*row->handler)(payload);
    qCDebug(logStation) << m_config.relayPath << command << answer.resultCode;
    return answer;
}

std::optional<QList<Bookmark>> Station::insert(const QList<Bookmark> &bookmarks)
{
    QList<Bookmark> created = bookmarks;
    for (Bookmark &bookmark : created) {
        bookmark.bookmarkID = QUuid::createUuid().toString(QUuid::WithoutBraces);
        if (bookmark.locationID.isEmpty())
            bookmark.locationID = m_config.locationID;
    }
    if (!m_store || !m_store->add(created))
        return std::nullopt;
    return created;
}

bool Station::recycle(qint64 now)
{
    if (!m_store)
        return true;
    const std::optional<RecycleSetting> setting = m_store->recycleSetting();
    if (!setting)
        return false;
    const qint64 reserve = setting->reserveHour * MsPerHour;
    // Otherwise the subtraction would overflow; no bookmark can have ended so early.
    if (!setting->enabled || now < std::numeric_limits<qint64>::min() + reserve)
        return true;
    return m_store->removeEndedBefore(now - reserve).has_value();
}

Answer Station::addBookmark(const QVariant &payload)
{
    const std::optional<QVariantMap> record = payload::toMap(payload);
    const std::optional<Bookmark> bookmark = record ? Bookmark::fromRecord(*record) : std::nullopt;
    if (!bookmark)
        return failure(code::BadPayload);
    if (!hasCamera(bookmark->cameraID))
        return failure(code::UnknownCamera);
    const auto created = insert({*bookmark});
    return created ? success(created->constFirst().toRecord()) : databaseFailure();
}

/// Returns an element for a camera of another station without an identifier: it was not created.
Answer Station::addBookmarks(const QVariant &payload)
{
    const std::optional<QList<Bookmark>> requested = bookmarksOf(payload);
    if (!requested)
        return failure(code::BadPayload);
    const auto isOwn = [this](const Bookmark &bookmark) { return hasCamera(bookmark.cameraID); };
    QList<Bookmark> own;
    std::copy_if(requested->cbegin(), requested->cend(), std::back_inserter(own), isOwn);
    const std::optional<QList<Bookmark>> created = insert(own);
    if (!created)
        return databaseFailure();

    QList<Bookmark> answered = *requested;
    auto next = created->cbegin();
    for (Bookmark &bookmark : answered) {
        if (isOwn(bookmark))
            bookmark = *next++;
    }
    return success(recordsOf(answered));
}

Answer Station::deleteBookmark(const QVariant &payload)
{
    const std::optional<QVariantMap> map = payload::toMap(payload);
    const std::optional<QString> bookmarkID =
        map ? payload::text(*map, key::BookmarkID) : std::nullopt;
    if (!bookmarkID)
        return failure(code::BadPayload);
    switch (m_store->remove({*bookmarkID})) {
    case BookmarkStore::Outcome::Done:
        return success(*bookmarkID);
    case BookmarkStore::Outcome::Unknown:
        return failure(code::UnknownBookmark);
    case BookmarkStore::Outcome::Failed:
        break;
    }
    return databaseFailure();
}

Answer Station::deleteBookmarks(const QVariant &payload)
{
    const std::optional<QStringList> bookmarkIDs = bookmarkIDsOf(payload);
    if (!bookmarkIDs)
        return failure(code::BadPayload);
    switch (m_store->remove(*bookmarkIDs)) {
    case BookmarkStore::Outcome::Done:
        return success(*bookmarkIDs);
    case BookmarkStore::Outcome::Unknown:
        return failure(code::UnknownBookmark, *bookmarkIDs);
    case BookmarkStore::Outcome::Failed:
        break;
    }
    return databaseFailure(*bookmarkIDs);
}

Answer Station::updateBookmark(const QVariant &payload)
{
    const std::optional<QVariantMap> map = payload::toMap(payload);
    const std::optional<QString> bookmarkID =
        map ? payload::text(*map, key::BookmarkID) : std::nullopt;
    if (!bookmarkID)
        return failure(code::BadPayload);
    const std::optional<QList<Bookmark>> found = m_store->find(*bookmarkID);
    if (!found)
        return databaseFailure();

    // Check the payload even if the bookmark is unknown: every station must reject a bad one.
    Bookmark bookmark = found->value(0);
    if (!payload::replaceText(*map, key::Description, &bookmark.description) ||
        !payload::replaceText(*map, key::Group, &bookmark.group) || !bookmark.defect().isEmpty())
        return failure(code::BadPayload);
    if (found->isEmpty())
        return failure(code::UnknownBookmark);
    return m_store->update(bookmark) == BookmarkStore::Outcome::Done ? success(bookmark.toRecord())
                                                                     : databaseFailure();
}

Answer Station::removeAllBookmarks(const QVariant &payload)
{
    // The command has no payload; a client that sends one means another command.
    if (payload.isValid())
        return failure(code::BadPayload);
    return m_store->removeAll() ? success() : databaseFailure();
}

Answer Station::queryAllBookmarks(const QVariant &payload)
{
    return payload::toMap(payload) ? bookmarkMap(m_store->all()) : failure(code::BadPayload);
}

Answer Station::queryBookmarkForRecent(const QVariant &payload)
{
    const QVariantMap map = payload::toMap(payload).value_or(QVariantMap());
    // The client sends a camera under this key, so search for both.
    const std::optional<QString> locationOrCamera = payload::text(map, key::LocationID);
    const std::optional<int> count = payload::integer(map, key::RecentCount);
    if (!locationOrCamera || !count || *count < 0 || *count > MaxRecentCount)
        return failure(code::BadPayload);
    return bookmarkMap(m_store->newest(*locationOrCamera, *count));
}

Answer Station::queryBookmarkForTimeline(const QVariant &payload)
{
    const QVariantMap map = payload::toMap(payload).value_or(QVariantMap());
    const std::optional<QString> locationID = payload::text(map, key::LocationID);
    const std::optional<TimeRange> range = timeRangeOf(map);
    if (!locationID || !range)
        return failure(code::BadPayload);
    return bookmarkMap(m_store->ofLocation(*locationID, *range));
}

Answer Station::queryBookmarkForApi(const QVariant &payload)
{
    const QVariantMap map = payload::toMap(payload).value_or(QVariantMap());
    const std::optional<QStringList> cameraKeys = payload::textList(map, key::CameraIDList);
    const std::optional<TimeRange> range = timeRangeOf(map);
    if (!cameraKeys || !range || cameraKeys->size() > MaxBatchSize)
        return failure(code::BadPayload);
    const auto bookmarks = m_store->ofCameras(ownCameraIDs(*cameraKeys), *range);
    return bookmarks ? success(recordsOf(*bookmarks)) : databaseFailure();
}

Answer Station::recycleSetting(const QVariant &payload)
{
    if (payload.isValid())
        return failure(code::BadPayload);
    const std::optional<RecycleSetting> setting = m_store->recycleSetting();
    if (!setting)
        return databaseFailure();
    return success(QVariantMap{{key::ReserveHour, setting->reserveHour},
                               {key::EnableRecycle, setting->enabled}});
}

Answer Station::updateRecycleSetting(const QVariant &payload)
{
    const QVariantMap map = payload::toMap(payload).value_or(QVariantMap());
    const std::optional<uint> reserveHour = payload::unsignedInteger(map, key::ReserveHour);
    const std::optional<bool> enabled = payload::boolean(map, key::EnableRecycle);
    if (!reserveHour || !enabled)
        return failure(code::BadPayload, false);
    if (!m_store->setRecycleSetting({*reserveHour, *enabled}))
        return databaseFailure(false);
    // The setting is stored; the hourly deletion tries again.
    if (!recycle(QDateTime::currentMSecsSinceEpoch()))
        qCWarning(logStation) << "station" << m_config.name
                              << "can't delete old bookmarks; it tries again in an hour:"
                              << lastError();
    return success(true);
}

Answer Station::timeZone(const QVariant &payload)
{
    return payload.isValid() ? failure(code::BadPayload) : success(m_timeZone);
}

Answer Station::settingPermission(const QVariant &payload)
{
    return payload.isValid() ? failure(code::BadPayload) : success(m_settingPermission);
}

Answer Station::databaseFailure(const QVariant &result) const
{
    qCWarning(logStation) << "station" << m_config.name << "failed:" << lastError();
    return failure(code::DatabaseError, result);
}

Answer Station::bookmarkMap(const std::optional<QList<Bookmark>> &bookmarks) const
{
    if (!bookmarks)
        return databaseFailure();
    return success(QVariantMap{{key::Bookmarks, recordsOf(*bookmarks)}});
}

/// Returns the identifiers of own cameras among camera identifiers and camera keys. Both may
/// contain slashes, so a text is compared with both and never split.
QStringList Station::ownCameraIDs(const QStringList &cameraKeys) const
{
    const QString prefix = standin::cameraKey(m_config.relayPath, {});
    QStringList cameraIDs = cameraKeys;
    for (const QString &cameraKey : cameraKeys) {
        if (!prefix.isEmpty() && cameraKey.startsWith(prefix))
            cameraIDs.append(cameraKey.mid(prefix.size()));
    }
    return cameraIDs;
}

} // namespace stations
