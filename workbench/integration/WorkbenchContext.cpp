#include "WorkbenchContext.h"

#include "PluginBase.h"
#include "Protocol.h"
#include "StationThread.h"
#include "framework/Framework.h"
#include "topology/CameraKey.h"

#include <QtCore/QDateTime>
#include <QtCore/QMetaMethod>

#include <algorithm>
#include <utility>

namespace workbench {

namespace {

QVariantMap describe(const stations::StationConfig &station)
{
    QVariantList cameras;
    for (const stations::Camera &camera : station.cameras) {
        cameras.append(QVariantMap{
            {QStringLiteral("cameraID"), camera.cameraID},
            {QStringLiteral("name"), camera.name},
            {QStringLiteral("key"), standin::cameraKey(station.relayPath, camera.cameraID)},
            {QStringLiteral("locationID"), station.locationID},
            {QStringLiteral("relayPath"), station.relayPath},
            {QStringLiteral("stationName"), station.name}});
    }
    return {{QStringLiteral("relayPath"), station.relayPath},
            {QStringLiteral("name"), station.name},
            {QStringLiteral("locationID"), station.locationID},
            {QStringLiteral("cameras"), cameras}};
}

} // namespace

WorkbenchContext::WorkbenchContext(PluginBase &plugin, standin::Framework &framework,
                                   stations::StationThread &stations, QObject *parent)
    : QObject(parent)
    , m_plugin(plugin)
    , m_framework(framework)
    , m_stations(stations)
    , m_now(QDateTime::currentMSecsSinceEpoch())
    , m_recorder(plugin, framework, m_traffic)
    , m_faults(framework, m_stationStates)
{
    connect(&m_stations, &stations::StationThread::bookmarkAddedByOther, this,
            [this](const QVariantMap &record, const QString &relayPath) {
                m_framework.sendEvent(stations::protocol::event::BookmarkAdded, record, relayPath);
            });
    connect(&m_stationStates, &StationStates::changed, this,
            &WorkbenchContext::stationStatesChanged);
    connect(&m_stations, &stations::StationThread::addByOtherClientFailed, this,
            &WorkbenchContext::addByOtherClientFailed);
    const auto configs = m_stations.stations();
    for (const stations::StationConfig &station : configs) {
        m_stationStates.addStation(station.relayPath, station.name);
        m_faults.addStation(station.relayPath, station.name);
    }
}

void WorkbenchContext::noteTraffic(const standin::Traffic &traffic)
{
    m_recorder.noteTraffic(traffic);
    m_stationStates.noteTraffic(traffic);
    using Kind = standin::Traffic::Kind;
    Q_EMIT passing(traffic);
    if (traffic.kind == Kind::Sent && traffic.accepted) {
        m_outstanding.insert(traffic.sequence);
        m_hasSentCommand = true;
        if (m_asked)
            (*m_asked)[traffic.name].append(traffic.relayPath);
    } else if (traffic.kind == Kind::Answered) {
        m_outstanding.remove(traffic.request);
        noteAnswer(traffic);
    }
    // Queued: the observer runs before the plug-in gets the traffic, the signal comes after it.
    QMetaObject::invokeMethod(this, &WorkbenchContext::trafficPassed, Qt::QueuedConnection);
}

void WorkbenchContext::noteAnswer(const standin::Traffic &answer)
{
    if (answer.resultCode != stations::protocol::code::Success)
        return;
    if (answer.name == stations::protocol::command::QueryServerTimeZone)
        noteClientTimeZone(answer.value.toString());
    if (answer.name != stations::protocol::command::QuerySettingPermission)
        return;
    const bool permission = answer.value.toBool();
    if (permission != std::exchange(m_settingPermission, permission))
        Q_EMIT settingPermissionChanged();
}

void WorkbenchContext::noteClientTimeZone(const QString &ianaId)
{
    // The plug-in ignores an empty zone.
    if (ianaId.isEmpty() || ianaId == m_clientTimeZone)
        return;
    m_clientTimeZone = ianaId;
    QMetaObject::invokeMethod(this, &WorkbenchContext::clientTimeZoneChanged, Qt::QueuedConnection);
}

QVariantList WorkbenchContext::stations() const
{
    QVariantList list;
    const auto stations = m_stations.stations();
    for (const stations::StationConfig &station : stations)
        list.append(describe(station));
    return list;
}

void WorkbenchContext::setServerTimeZone(const QString &ianaId)
{
    m_serverTimeZone = ianaId;
    m_stations.setTimeZone(ianaId.toUtf8());
    Q_EMIT serverTimeZoneChanged();
    if (m_clientTimeZone.isEmpty())
        Q_EMIT clientTimeZoneChanged();
}

void WorkbenchContext::connectToServer()
{
    const quint64 call = m_recorder.beginConnection();
    m_plugin.PluginServerConnected();
    m_recorder.end(call, {});
}

void WorkbenchContext::allowSettings(bool allowed)
{
    m_stations.setSettingPermission(allowed);
}

void WorkbenchContext::failStation(const QString &relayPath, bool fails)
{
    m_framework.rules().setForStation(
        relayPath, fails ? standin::Delivery::failed(stations::protocol::code::DatabaseError)
                         : standin::Delivery::queued());
}

bool WorkbenchContext::addByOtherClient(const QString &relayPath, const QString &cameraID,
                                        qint64 start, qint64 end, const QString &description,
                                        const QString &group)
{
    const auto stations = m_stations.stations();
    const auto station = std::find_if(
        stations.cbegin(), stations.cend(),
        [&](const stations::StationConfig &candidate) { return candidate.relayPath == relayPath; });
    if (station == stations.cend())
        return false;
    stations::Bookmark bookmark;
    bookmark.cameraID = cameraID;
    bookmark.locationID = station->locationID;
    bookmark.start = start;
    bookmark.end = end;
    bookmark.description = description;
    bookmark.creator = QStringLiteral("another client");
    bookmark.group = group;
    m_stations.addByOtherClient(relayPath, bookmark);
    return true;
}

QStringList WorkbenchContext::stationsAsked(const QString &command) const
{
    return m_asked ? m_asked->value(command) : QStringList();
}

QStringList WorkbenchContext::signalNames() const
{
    QStringList names;
    const QMetaObject *const metaObject = m_plugin.metaObject();
    for (int i = metaObject->methodOffset(); i < metaObject->methodCount(); ++i) {
        const QMetaMethod method = metaObject->method(i);
        if (method.methodType() == QMetaMethod::Signal)
            names.append(QString::fromLatin1(method.name()));
    }
    return names;
}

} // namespace workbench
