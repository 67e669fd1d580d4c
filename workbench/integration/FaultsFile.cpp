// Reads and writes files of faults: a JSON array of objects with the optional keys "station" and
// "command" (default: all) and with settings, whose keys are the names of their roles.
#include "FaultsModel.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSaveFile>

#include <algorithm>

namespace workbench {

namespace {

const QLatin1String StationKey("station");
const QLatin1String CommandKey("command");

QString inQuotes(const QStringList &texts)
{
    return QLatin1Char('"') + texts.join(QLatin1String("\", \"")) + QLatin1Char('"');
}

/// @return a description of the valid values if @p value is not valid for a role, or an empty text
QString expectedFor(int role, const QJsonValue &value)
{
    switch (role) {
    case FaultsModel::ConnectedRole:
    case FaultsModel::DoubledRole:
        return value.isBool() ? QString() : QStringLiteral("true or false");
    case FaultsModel::DelayRole:
        return value.toInt(-1) >= 0 ? QString() : QStringLiteral("a whole number of milliseconds");
    case FaultsModel::OrderRole:
        return FaultsModel::orders().contains(value.toString()) ? QString()
                                                                : inQuotes(FaultsModel::orders());
    case FaultsModel::PayloadRole:
        return FaultsModel::payloads().contains(value.toString())
                   ? QString()
                   : inQuotes(FaultsModel::payloads());
    default:
        return value.isString() ? QString() : QStringLiteral("a text");
    }
}

} // namespace

QString FaultsModel::save(const QString &path) const
{
    QJsonArray entries;
    for (const Station &station : m_stations.mid(1)) {
        for (auto it = station.settings.cbegin(); it != station.settings.cend(); ++it) {
            QJsonObject entry{{StationKey, station.relayPath}};
            if (!it.key().isEmpty())
                entry.insert(CommandKey, it.key());
            for (auto role = it->cbegin(); role != it->cend(); ++role)
                entry.insert(QString::fromLatin1(roleNames().value(role.key())),
                             QJsonValue::fromVariant(role.value()));
            if (!it->isEmpty())
                entries.append(entry);
        }
    }
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(entries).toJson()) >= 0 &&
        file.commit())
        return {};
    return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
}

QString FaultsModel::load(const QString &path)
{
    QFile file(path);
    QList<Fault> faults;
    const QString problem =
        file.open(QIODevice::ReadOnly) ? read(file.readAll(), &faults) : file.errorString();
    if (!problem.isEmpty())
        return QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(path), problem);
    reset();
    for (const Fault &fault : std::as_const(faults))
        set(fault);
    return {};
}

QString FaultsModel::read(const QByteArray &text, QList<Fault> *faults) const
{
    QJsonParseError error{};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (error.error != QJsonParseError::NoError)
        return QStringLiteral("expected a JSON array; character %1: %2")
            .arg(error.offset)
            .arg(error.errorString());
    if (!document.isArray())
        return QStringLiteral("expected a JSON array, found an object");
    int number = 0;
    const QJsonArray entries = document.array();
    for (const auto &entry : entries) {
        const QString problem = entry.isObject() ? readEntry(entry.toObject(), faults)
                                                 : QStringLiteral("expected an object");
        ++number;
        if (!problem.isEmpty())
            return QStringLiteral("entry %1: %2").arg(number).arg(problem);
    }
    return {};
}

QString FaultsModel::readEntry(const QJsonObject &entry, QList<Fault> *faults) const
{
    for (const QLatin1String key : {StationKey, CommandKey}) {
        if (entry.contains(key) && !entry.value(key).isString())
            return QStringLiteral("expected a text for \"%1\"").arg(key);
    }
    Fault fault;
    fault.command = entry.value(CommandKey).toString();
    if (entry.contains(CommandKey) && !commands().contains(fault.command))
        return QStringLiteral("expected one of the commands %1").arg(inQuotes(commands()));
    if (entry.contains(StationKey)) {
        const QString relayPath = entry.value(StationKey).toString();
        const auto station =
            std::find_if(m_stations.cbegin() + 1, m_stations.cend(),
                         [&](const Station &one) { return one.relayPath == relayPath; });
        if (station == m_stations.cend())
            return QStringLiteral("there is no station \"%1\"").arg(relayPath);
        fault.row = static_cast<int>(station - m_stations.cbegin());
    }
    for (auto it = entry.constBegin(); it != entry.constEnd(); ++it) {
        if (it.key() == StationKey || it.key() == CommandKey)
            continue;
        fault.role = roleNames().key(it.key().toLatin1(), -1);
        if (fault.role < ConnectedRole)
            return QStringLiteral("unknown setting \"%1\"").arg(it.key());
        const QString expected = expectedFor(fault.role, it.value());
        if (!expected.isEmpty())
            return QStringLiteral("expected %1 for \"%2\"").arg(expected, it.key());
        fault.value = it.value().toVariant();
        faults->append(fault);
    }
    return {};
}

} // namespace workbench
