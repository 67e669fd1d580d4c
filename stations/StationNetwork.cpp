#include "StationNetwork.h"

#include "Protocol.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimeZone>

#include <algorithm>

namespace stations {

namespace code = protocol::code;
namespace command = protocol::command;
namespace key = protocol::key;

using standin::Answer;

namespace {

bool succeeded(const Answer &answer)
{
    return answer.resultCode == code::Success;
}

QVariantList sortedByStart(const QVariantList &records)
{
    QList<std::pair<qint64, QVariant>> keyed;
    keyed.reserve(records.size());
    for (const QVariant &record : records)
        keyed.append({record.toMap().value(key::StartTimestamp).toLongLong(), record});
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto &left, const auto &right) { return left.first < right.first; });
    QVariantList sorted;
    sorted.reserve(keyed.size());
    for (const auto &[start, record] : std::as_const(keyed))
        sorted.append(record);
    return sorted;
}

} // namespace

std::unique_ptr<StationNetwork>
StationNetwork::open(const QString &folder, const QList<StationConfig> &configs, QString *error)
{
    if (!QDir().mkpath(folder)) {
        *error = QStringLiteral("%1: cannot create the folder; check the path and its permissions")
                     .arg(QDir::toNativeSeparators(folder));
        return nullptr;
    }
    std::unique_ptr<StationNetwork> network(new StationNetwork);
    for (StationConfig config : configs) {
        config.filePath = QDir(folder).filePath(fileNameOf(config.relayPath));
        if (network->station(config.relayPath)) {
            *error = QStringLiteral("%1: two stations have the relay path \"%2\"")
                         .arg(QDir::toNativeSeparators(config.filePath), config.relayPath);
            return nullptr;
        }
        const QString renamed = BookmarkStore::renameEmptied(config.filePath);
        if (!renamed.isEmpty())
            network->m_notices.append(
                QStringLiteral("%1: the file had 0 bytes, its bookmarks are lost. A new file was "
                               "created; the old file was renamed to %2.")
                    .arg(QDir::toNativeSeparators(config.filePath),
                         QDir::toNativeSeparators(renamed)));
        QString defect;
        std::unique_ptr<Station> station = Station::open(config, &defect);
        if (!station) {
            network->m_defects.append(defect);
            station = Station::broken(config, defect);
        }
        network->m_stations.push_back(std::move(station));
    }
    return network;
}

StationNetwork::StationNetwork()
    : m_timeZone(QTimeZone::systemTimeZoneId())
{
}

/// The readable part may be equal for two paths: it is cut, and "A" and "a" are one file on
/// Windows. The hash distinguishes them.
QString StationNetwork::fileNameOf(const QString &relayPath)
{
    static const QRegularExpression unsafe(QStringLiteral("[^A-Za-z0-9_-]"));
    constexpr qsizetype readableLength = 40;
    constexpr qsizetype hashLength = 16;
    const QString readable = relayPath.left(readableLength).replace(unsafe, QStringLiteral("_"));
    const QByteArray hash =
        QCryptographicHash::hash(relayPath.toUtf8(), QCryptographicHash::Sha256).toHex();
    return QStringLiteral("%1-%2.sqlite").arg(readable, QString::fromLatin1(hash.left(hashLength)));
}

Answer StationNetwork::execute(const QString &command, const QVariant &payload,
                               const QString &relayPath)
{
    if (relayPath.isEmpty())
        return executeAtConnectedServer(command, payload);
    Station *target = station(relayPath);
    return target ? target->execute(command, payload)
                  : failedAnswer(command, payload, code::UnknownStation);
}

Station *StationNetwork::station(const QString &relayPath) const
{
    const auto found =
        std::find_if(m_stations.cbegin(), m_stations.cend(),
                     [&](const auto &station) { return station->config().relayPath == relayPath; });
    return found == m_stations.cend() ? nullptr : found->get();
}

QList<Station *> StationNetwork::stations() const
{
    QList<Station *> stations;
    for (const std::unique_ptr<Station> &station : m_stations)
        stations.append(station.get());
    return stations;
}

bool StationNetwork::addByOtherClient(const QString &relayPath, const Bookmark &bookmark)
{
    const Answer answer = execute(command::AddBookmark, bookmark.toRecord(), relayPath);
    if (!succeeded(answer))
        return false;
    Q_EMIT bookmarkAddedByOther(answer.result.toMap(), relayPath);
    return true;
}

void StationNetwork::setTimeZone(const QByteArray &timeZone)
{
    m_timeZone = timeZone;
    for (const std::unique_ptr<Station> &station : m_stations)
        station->setTimeZone(timeZone);
}

void StationNetwork::setSettingPermission(bool permission)
{
    m_settingPermission = permission;
    for (const std::unique_ptr<Station> &station : m_stations)
        station->setSettingPermission(permission);
}

Answer StationNetwork::executeAtConnectedServer(const QString &command, const QVariant &payload)
{
    struct Row
    {
        QLatin1String command;
        Answer (StationNetwork::*handler)(const QString &, const QVariant &);
    };
    static constexpr Row rows[] = {
        {command::UpdateBookmark, &StationNetwork::updateAnywhere},
        {command::QueryBookmarkForApi, &StationNetwork::queryEverywhere},
        {command::GetRecycleSetting, &StationNetwork::askFirst},
        {command::UpdateRecycleSetting, &StationNetwork::updateEverywhere},
        {command::QueryServerTimeZone, &StationNetwork::answerTimeZone},
        {command::QuerySettingPermission, &StationNetwork::answerPermission},
    };
    for (const Row &row : rows) {
        if (row.command == command)
            return (this->*row.handler)(command, payload);
    }
    Station *own = station(QString());
    return own ? own->execute(command, payload)
               : failedAnswer(command, payload, code::UnknownStation);
}

/// Asks the other stations if one fails: another station may have the bookmark.
Answer StationNetwork::updateAnywhere(const QString &command, const QVariant &payload)
{
    Answer answer{QVariant(), code::UnknownBookmark};
    for (const std::unique_ptr<Station> &station : m_stations) {
        Answer next = station->execute(command, payload);
        if (succeeded(next))
            return next;
        if (next.resultCode != code::UnknownBookmark)
            answer = next;
    }
    return answer;
}

/// Fails if one station fails: the client would treat a partial result as complete.
Answer StationNetwork::queryEverywhere(const QString &command, const QVariant &payload)
{
    QVariantList records;
    for (const std::unique_ptr<Station> &station : m_stations) {
        Answer answer = station->execute(command, payload);
        if (!succeeded(answer))
            return answer;
        records.append(answer.result.toList());
    }
    return {sortedByStart(records), code::Success};
}

Answer StationNetwork::updateEverywhere(const QString &command, const QVariant &payload)
{
    Answer answer{false, code::UnknownStation};
    for (const std::unique_ptr<Station> &station : m_stations) {
        answer = station->execute(command, payload);
        if (!succeeded(answer))
            return answer;
    }
    return answer;
}

/// Asks one station: the settings are equal unless a client has changed a single station.
Answer StationNetwork::askFirst(const QString &command, const QVariant &payload)
{
    return m_stations.empty() ? failedAnswer(command, payload, code::UnknownStation)
                              : m_stations.front()->execute(command, payload);
}

Answer StationNetwork::answerTimeZone(const QString & /*command*/, const QVariant &payload)
{
    return payload.isValid() ? Answer{QVariant(), code::BadPayload}
                             : Answer{m_timeZone, code::Success};
}

Answer StationNetwork::answerPermission(const QString & /*command*/, const QVariant &payload)
{
    return payload.isValid() ? Answer{QVariant(), code::BadPayload}
                             : Answer{m_settingPermission, code::Success};
}

} // namespace stations
