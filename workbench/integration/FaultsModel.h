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

/// What goes wrong at each station, for commands that are sent from now on. The first row stands
/// for all stations and sets all of them. The rows are for all commands or for one;
/// a setting for one command goes before that for all.
class FaultsModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one list of faults, the bench's")
    /// To which the rows apply; empty: all.
    Q_PROPERTY(QString command READ command WRITE setCommand NOTIFY commandChanged)

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

    QString command() const { return m_command; }
    void setCommand(const QString &command);

    /// Writes the faults to a file. @return what went wrong, or an empty text
    Q_INVOKABLE QString save(const QString &path) const;
    /// Replaces the faults by those of a file.
    /// @return an empty text, or an error, and the faults are unchanged
    Q_INVOKABLE QString load(const QString &path);

    /// An empty text for all, then the names.
    Q_INVOKABLE static QStringList commands();
    Q_INVOKABLE static QStringList orders();
    Q_INVOKABLE static QStringList payloads();
    /// Everything works again.
    Q_INVOKABLE void reset();

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void commandChanged();

private:
    using Settings = QMap<int, QVariant>; ///< by role; what is missing is as it should be
    struct Station
    {
        QString relayPath;
        QString name;
        QMap<QString, Settings> settings; ///< by command, empty for all
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
    QList<Station> m_stations; ///< the first is all
    QString m_command;
};

} // namespace workbench
