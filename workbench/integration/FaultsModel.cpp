#include "FaultsModel.h"

#include "Protocol.h"
#include "StationStates.h"
#include "framework/Framework.h"

namespace workbench {

namespace {

using standin::Delivery;

QVariant defaultOf(int role)
{
    switch (role) {
    case FaultsModel::ConnectedRole:
        return true;
    case FaultsModel::OrderRole:
        return FaultsModel::orders().constFirst();
    case FaultsModel::DelayRole:
        return 0;
    case FaultsModel::DoubledRole:
        return false;
    default:
        return QString();
    }
}

QVariant hugePayload()
{
    constexpr int count = 100'000;
    QVariantList records;
    records.reserve(count);
    for (int i = 0; i < count; ++i)
        records.append(QVariantMap{{stations::protocol::key::BookmarkID, QString::number(i)}});
    return QVariantMap{{stations::protocol::key::Bookmarks, records}};
}

/// @param index of payloads()
QVariant wrongPayload(qsizetype index)
{
    switch (index) {
    case 1:
        return QStringLiteral("a text");
    case 2:
        return QVariantMap();
    case 3:
        return QVariantList{1, 2, 3};
    default:
        return hugePayload();
    }
}

} // namespace

FaultsModel::FaultsModel(standin::Framework &framework, StationStates &states, QObject *parent)
    : QAbstractListModel(parent)
    , m_framework(framework)
    , m_states(states)
    , m_stations({{QString(), tr("All"), {}}, {QString(), tr("Connected server"), {}}})
{
}

void FaultsModel::addStation(const QString &relayPath, const QString &name)
{
    m_stations.append({relayPath, name, {}});
}

void FaultsModel::setCommand(const QString &command)
{
    if (command == m_command)
        return;
    m_command = command;
    Q_EMIT commandChanged();
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

QStringList FaultsModel::commands()
{
    using namespace stations::protocol::command;
    return {QString(),
            AddBookmark,
            AddBookmarks,
            DeleteBookmark,
            DeleteBookmarks,
            UpdateBookmark,
            RemoveAllBookmarks,
            QueryAllBookmarks,
            QueryBookmarkForRecent,
            QueryBookmarkForTimeline,
            QueryBookmarkForApi,
            GetRecycleSetting,
            UpdateRecycleSetting,
            QueryServerTimeZone,
            QuerySettingPermission};
}

QStringList FaultsModel::orders()
{
    return {QStringLiteral("in order"), QStringLiteral("last first"), QStringLiteral("lost"),
            QStringLiteral("rejected")};
}

QStringList FaultsModel::payloads()
{
    return {QString(), QStringLiteral("text"), QStringLiteral("empty map"),
            QStringLiteral("list of numbers"), QStringLiteral("huge")};
}

void FaultsModel::reset()
{
    for (Station &station : m_stations) {
        for (Settings &settings : station.settings)
            settings.clear(); // keep the entry, so that apply() updates the rule of its command
        apply(station);
    }
    Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

int FaultsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_stations.size());
}

QVariant FaultsModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Station &station = m_stations.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case NameRole:
        return station.name;
    case RelayPathRole:
        return station.relayPath;
    default:
        return role < ConnectedRole ? QVariant() : setting(station, m_command, role);
    }
}

bool FaultsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role < ConnectedRole)
        return false;
    set({index.row(), m_command, role, value});
    return true;
}

void FaultsModel::set(const Fault &fault)
{
    const int last = fault.row == 0 ? rowCount() - 1 : fault.row;
    for (int row = fault.row; row <= last; ++row) {
        m_stations[row].settings[fault.command].insert(fault.role, fault.value);
        apply(m_stations.at(row));
    }
    Q_EMIT dataChanged(index(fault.row), index(last), {fault.role});
}

QHash<int, QByteArray> FaultsModel::roleNames() const
{
    return {{NameRole, "name"},   {RelayPathRole, "relayPath"}, {ConnectedRole, "connected"},
            {OrderRole, "order"}, {DelayRole, "delay"},         {DoubledRole, "doubled"},
            {CodeRole, "code"},   {PayloadRole, "payload"}};
}

QVariant FaultsModel::setting(const Station &station, const QString &command, int role) const
{
    const QVariant forAll = station.settings.value(QString()).value(role, defaultOf(role));
    return station.settings.value(command).value(role, forAll);
}

Delivery FaultsModel::deliveryOf(const Station &station, const QString &command) const
{
    const qsizetype order = orders().indexOf(setting(station, command, OrderRole).toString());
    const int delay = setting(station, command, DelayRole).toInt();
    Delivery delivery = delay > 0 ? Delivery::delayed(delay) : Delivery::queued();
    if (!setting(station, command, ConnectedRole).toBool() || order == 3)
        delivery = Delivery::rejected();
    else if (order == 2)
        delivery = Delivery::never();
    else if (order == 1)
        delivery = Delivery::reversed();
    if (setting(station, command, DoubledRole).toBool())
        delivery = delivery.times(2);
    const QString code = setting(station, command, CodeRole).toString();
    if (!code.isEmpty())
        delivery = delivery.failing(code);
    const qsizetype payload = payloads().indexOf(setting(station, command, PayloadRole).toString());
    if (payload > 0)
        delivery = delivery.replacing(wrongPayload(payload));
    return delivery;
}

void FaultsModel::apply(const Station &station)
{
    if (&station == &m_stations.constFirst())
        return;
    standin::DeliveryRules &rules = m_framework.rules();
    rules.setForStation(station.relayPath, deliveryOf(station, QString()));
    for (auto it = station.settings.cbegin(); it != station.settings.cend(); ++it) {
        if (!it.key().isEmpty())
            rules.setFor(station.relayPath, it.key(), deliveryOf(station, it.key()));
    }
    m_states.setDisconnected(station.relayPath,
                             !setting(station, QString(), ConnectedRole).toBool());
}

} // namespace workbench
