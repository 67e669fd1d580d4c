#pragma once

#include "framework/Delivery.h"

#include <QtCore/QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace standin {
class Framework;
}

namespace workbench {

class StationStates;

/// What goes wrong at each station, for commands that are sent from now on. The first row stands
/// for all stations: what is set there is set everywhere.
class FaultsModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one list of faults, the bench's")

public:
    enum Role {
        NameRole = Qt::UserRole + 1,
        RelayPathRole,
        ConnectedRole, ///< false: commands are refused, and the station counts as disconnected
        OrderRole,     ///< of answers: "in order", "last first", "lost", or "refused" for commands
        DelayRole,     ///< of answers in order, in milliseconds
        DoubledRole,
        CodeRole,    ///< every command fails with it; empty: none does
        PayloadRole, ///< what arrives instead of results: one of payloads(), empty for the truth
    };
    Q_ENUM(Role)

    /// Both are not owned and must outlive the model.
    FaultsModel(standin::Framework &framework, StationStates &states, QObject *parent = nullptr);

    void addStation(const QString &relayPath, const QString &name);

    Q_INVOKABLE static QStringList orders();
    Q_INVOKABLE static QStringList payloads();
    /// Everything works again.
    Q_INVOKABLE void reset();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QHash<int, QByteArray> roleNames() const override;

private:
    struct Station
    {
        QString relayPath;
        QString name;
        QMap<int, QVariant> settings; ///< by role; what is missing is as it should be
    };

    void apply(const Station &station);

    standin::Framework &m_framework;
    StationStates &m_states;
    QList<Station> m_stations; ///< the first is all
};

} // namespace workbench
