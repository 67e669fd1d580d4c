#pragma once

#include "Station.h"

#include <vector>

namespace workbench {

/// All stations of one installation behind the server to which the client is connected.
///
/// A relay path routes a command to its station. The empty one is the connected server: it
/// answers for time zone and permission itself, finds the station of a bookmark to be updated,
/// asks all stations for an API query and gives recycle settings to all of them; anything else
/// goes to the station whose relay path is empty, if there is one.
class Site : public QObject, public standin::Server
{
    Q_OBJECT

public:
    /// Opens one file a station in @p folder, which is created when missing. Null with @p error
    /// when the folder can't be used or two stations share a relay path. A station whose file
    /// can't be used is there all the same, but fails; see defects().
    static std::unique_ptr<Site> open(const QString &folder, const QList<StationConfig> &configs,
                                      QString *error);

    /// What is wrong with the files of the stations that always fail; each names its file.
    QStringList defects() const { return m_defects; }
    /// Files that were found empty and made anew, a line each.
    QStringList notices() const { return m_notices; }

    /// Name of the file for a relay path: fit for every file system, different for each path.
    static QString fileNameOf(const QString &relayPath);

    standin::Answer execute(const QString &command, const QVariant &payload,
                            const QString &relayPath) override;
    standin::Answer refuse(const QString &command, const QVariant &payload,
                           const QString &resultCode) override
    {
        return refusal(command, payload, resultCode);
    }
    /// What any site answers; needs none of its stations.
    static standin::Answer refusal(const QString &command, const QVariant &payload,
                                   const QString &resultCode);

    /// The station of that relay path, or null. Owned by the site, as those of stations().
    Station *station(const QString &relayPath) const;
    /// In the order of the configuration.
    QList<Station *> stations() const;

    /// Stores a bookmark as another client of the installation does, and tells everybody. False
    /// when the station refuses it.
    bool addByOtherClient(const QString &relayPath, const Bookmark &bookmark);

    /// IANA identifier; an empty one is answered as such.
    void setTimeZone(const QByteArray &timeZone);
    void setSettingPermission(bool permission);

Q_SIGNALS:
    /// A client other than ours has added @p record (a server record) at a station.
    void bookmarkAddedByOther(const QVariantMap &record, const QString &relayPath);

private:
    Site();

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

} // namespace workbench
