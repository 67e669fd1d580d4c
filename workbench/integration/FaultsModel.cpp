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
        records.append(QVariantMap{{protocol::key::BookmarkID, QString::number(i)}});
    return QVariantMap{{protocol::key::Bookmarks, records}};
}

/// In the order of payloads().
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

QStringList FaultsModel::orders()
{
    return {QStringLiteral("in order"), QStringLiteral("last first"), QStringLiteral("lost"),
            QStringLiteral("refused")};
}

QStringList FaultsModel::payloads()
{
    return {QString(), QStringLiteral("text"), QStringLiteral("empty map"),
            QStringLiteral("list of numbers"), QStringLiteral("huge")};
}

void FaultsModel::reset()
{
    for (Station &station : m_stations) {
        station.settings.clear();
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
        return role < ConnectedRole ? QVariant() : station.settings.value(role, defaultOf(role));
    }
}

bool FaultsModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role < ConnectedRole)
        return false;
    const int first = index.row();
    const int last = first == 0 ? rowCount() - 1 : first;
    for (int row = first; row <= last; ++row) {
        m_stations[row].settings.insert(role, value);
        apply(m_stations.at(row));
    }
    Q_EMIT dataChanged(this->index(first), this->index(last), {role});
    return true;
}

QHash<int, QByteArray> FaultsModel::roleNames() const
{
    return {{NameRole, "name"},   {RelayPathRole, "relayPath"}, {ConnectedRole, "connected"},
            {OrderRole, "order"}, {DelayRole, "delay"},         {DoubledRole, "doubled"},
            {CodeRole, "code"},   {PayloadRole, "payload"}};
}

void FaultsModel::apply(const Station &station)
{
    if (&station == &m_stations.constFirst())
        return;
    const auto setting = [&](int role) { return station.settings.value(role, defaultOf(role)); };
    const qsizetype order = orders().indexOf(setting(OrderRole).toString());
    const int delay = setting(DelayRole).toInt();
    const bool connected = setting(ConnectedRole).toBool();

    Delivery delivery = delay > 0 ? Delivery::delayed(delay) : Delivery::queued();
    if (!connected || order == 3)
        delivery = Delivery::refused();
    else if (order == 2)
        delivery = Delivery::never();
    else if (order == 1)
        delivery = Delivery::reversed();
    if (setting(DoubledRole).toBool())
        delivery = delivery.times(2);
    const QString code = setting(CodeRole).toString();
    if (!code.isEmpty())
        delivery = delivery.failing(code);
    const qsizetype payload = payloads().indexOf(setting(PayloadRole).toString());
    if (payload > 0)
        delivery = delivery.replacing(wrongPayload(payload));

    m_framework.rules().setForStation(station.relayPath, delivery);
    m_states.setDisconnected(station.relayPath, !connected);
}

} // namespace workbench
