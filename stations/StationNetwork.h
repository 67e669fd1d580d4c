#pragma once

#include "Station.h"

#include <vector>

namespace stations {

/// The stations of a network and the server to which the client is connected.
///
/// A command goes to the station with its relay path. For the empty relay path the connected server
/// answers: it stores time zone and permission, forwards an update to the station that has the
/// bookmark, an API query to all stations and recycle settings to all stations. Any other command
/// goes to the station whose relay path is empty, if it exists.
class StationNetwork : public QObject, public standin::Server
{
    Q_OBJECT

public:
    /// Opens a file for each station in @p folder; creates the folder if necessary. A station whose
    /// file is not usable exists, but rejects every command; see defects().
    /// @param error set on failure to a message with the folder or file
    /// @return null if the folder is not usable or two stations have the same relay path
    static std::unique_ptr<StationNetwork>
    open(const QString &folder, const QList<StationConfig> &configs, QString *error);

    /// @return a message for each station whose file is not usable, with the file
    QStringList defects() const { return m_defects; }
    /// @return a message for each file that was empty and was created again
    QStringList notices() const { return m_notices; }

    /// Returns the file name for a relay path: valid on every file system, unique for each path.
    static QString fileNameOf(const QString &relayPath);

    standin::Answer execute(const QString &command, const QVariant &payload,
                            const QString &relayPath) override;
    standin::Answer failureAnswer(const QString &command, const QVariant &payload,
                                  const QString &resultCode) override
    {
        return failedAnswer(command, payload, resultCode);
    }

    /// @return the station with a relay path, or null; owned by this object
    Station *station(const QString &relayPath) const;
    /// @return all stations in the order of the configuration; owned by this object
    QList<Station *> stations() const;

    /// Stores a bookmark as another client of the network does, and emits
    /// bookmarkAddedByOther().
    /// @return false if the station rejects the bookmark
    bool addByOtherClient(const QString &relayPath, const Bookmark &bookmark);

    /// @param timeZone IANA identifier; sent as it is, even if empty
    void setTimeZone(const QByteArray &timeZone);
    void setSettingPermission(bool permission);

Q_SIGNALS:
    /// Another client has added @p record, a server record, at a station.
    void bookmarkAddedByOther(const QVariantMap &record, const QString &relayPath);

private:
    StationNetwork();

    standin::Answer executeAtConnectedServer(const QString &command, const QVariant &payload);
    standin::Answer updateAnywhere(const QString &command, const QVariant &payload);
    standin::Answer queryEverywhere(const QString &command, const QVariant &payload);
    standin::Answer updateEverywhere(const QString &command, const QVariant &payload);
    standin::Answer askFirst(const QString &command, const QVariant &payload);
    standin::Answer answerTimeZone(const QString &command, const QVariant &payload);
    standin::Answer answerPermission(const QString &command, const QVariant &payload);

    std::vector<std::unique_ptr<Station>> m_stations;
    QStringList m_defects;
    QStringList m_notices;
    QByteArray m_timeZone;
    bool m_settingPermission = true;
};

} // namespace stations
