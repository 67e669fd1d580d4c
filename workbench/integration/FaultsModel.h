#pragma once

#include "framework/Delivery.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QMap>
#include <QtQml/qqmlregistration.h>

class QJsonObject;

namespace standin {
class Framework;
}

namespace workbench {

class StationStates;

/// The faults of each station, one row per station, for the commands that follow. A change of the
/// first row changes all stations. The rows show the settings for all commands or for one; a
/// setting for one command has priority.
class FaultsModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Use the property faults of the workbench")
    /// The command whose settings the rows show; empty: all commands.
    Q_PROPERTY(QString command READ command WRITE setCommand NOTIFY commandChanged)

public:
    enum Role {
        NameRole = Qt::UserRole + 1,
        RelayPathRole,
        ConnectedRole, ///< false: commands are rejected, and the station is shown as disconnected
        OrderRole,     ///< one of orders()
        DelayRole,     ///< milliseconds; for answers in order only
        DoubledRole,   ///< each answer comes twice
        CodeRole,      ///< result code of every command; empty: that of the station
        PayloadRole,   ///< replaces the results: one of payloads()
    };
    Q_ENUM(Role)

    /// @param framework,states not owned; must outlive this object
    FaultsModel(standin::Framework &framework, StationStates &states, QObject *parent = nullptr);

    void addStation(const QString &relayPath, const QString &name);

    QString command() const { return m_command; }
    void setCommand(const QString &command);

    /// Writes the faults to a file.
    /// @return an error message with the file, or an empty text
    Q_INVOKABLE QString save(const QString &path) const;
    /// Replaces the faults by those of a file. An unusable file changes nothing.
    /// @return an error message with the file, or an empty text
    Q_INVOKABLE QString load(const QString &path);

    /// @return an empty text for all commands, then the names of the commands
    Q_INVOKABLE static QStringList commands();
    /// @return the orders of answers: "in order", "last first", "lost"; "rejected": the host
    /// rejects the commands
    Q_INVOKABLE static QStringList orders();
    /// @return an empty text for the station's own results, then the names of wrong ones
    Q_INVOKABLE static QStringList payloads();
    /// Removes all faults.
    Q_INVOKABLE void reset();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void commandChanged();

private:
    using Settings = QMap<int, QVariant>; ///< by role; without an entry there is no fault
    struct Station
    {
        QString relayPath;
        QString name;
        QMap<QString, Settings> settings; ///< by command; empty: all commands
    };
    struct Fault
    {
        int row = 0;
        QString command;
        int role = 0;
        QVariant value;
    };

    QString read(const QByteArray &text, QList<Fault> *faults) const;
    QString readEntry(const QJsonObject &entry, QList<Fault> *faults) const;
    void set(const Fault &fault);

    QVariant setting(const Station &station, const QString &command, int role) const;
    standin::Delivery deliveryOf(const Station &station, const QString &command) const;
    void apply(const Station &station);

    standin::Framework &m_framework;
    StationStates &m_states;
    QList<Station> m_stations; ///< the first stands for all
    QString m_command;
};

} // namespace workbench
