#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QString>

#include <memory>

class QStandardItem;

#if defined(TIMESHIFTBUFFERMODEL_LIBRARY)
#define TIMESHIFTBUFFERMODEL_EXPORT Q_DECL_EXPORT
#else
#define TIMESHIFTBUFFERMODEL_EXPORT Q_DECL_IMPORT
#endif

/// The host's timeline model. Stores the items of one view cell's timeline in a list model and
/// requests missing items when the visible range moves. Times are milliseconds since
/// 1970-01-01T00:00:00 UTC.
/// [gui-thread] [plug-in-owned]
class TIMESHIFTBUFFERMODEL_EXPORT TimeShiftBufferModel : public QObject
{
    Q_OBJECT

public:
    /// Numbers of default roles; defaultRoleHash() has their names and further roles.
    enum DefaultRole {
        ItemIdRole = Qt::UserRole + 1,         ///< QString: identifier for removeItems()
        ChannelIdRole = Qt::UserRole + 2,      ///< QString: identifier of the camera
        StartTimestampRole = Qt::UserRole + 5, ///< qint64: milliseconds since the epoch
        EndTimestampRole = Qt::UserRole + 8,   ///< qint64: milliseconds since the epoch
    };

    /// Creates a model without items and without a range.
    /// [gui-thread] [parent: may be null]
    /// @param roleNames all roles of the list model: defaultRoleHash() and those of the caller
    explicit TimeShiftBufferModel(QHash<int, QByteArray> roleNames, QObject *parent = nullptr);
    ~TimeShiftBufferModel() override;

    /// @return the roles that every timeline has; all are below Qt::UserRole + 13
    /// [any-thread]
    static QHash<int, QByteArray> defaultRoleHash();

    /// @return the list model for QML, deleted with this object
    /// [gui-thread] [result: model-owned, never null]
    QObject *getModel() const;

    /// Sets the visible range [@p head, @p tail] and emits needItems() for each part of it that
    /// has not been requested yet. The third and fourth value have a meaning for the host only;
    /// pass -1 and 0.
    /// [gui-thread]
    void setBoundary(qint64 head, qint64 tail, qint64, qint64);

    /// Removes all items and forgets which ranges were requested.
    /// [gui-thread]
    void clear();

    /// Adds items; an item with a known identifier updates the existing one.
    /// [gui-thread] [items: model-owned afterwards]
    void refillItems(QList<QStandardItem *> items);

    /// Removes and deletes the items with these identifiers; ignores unknown identifiers.
    /// [gui-thread]
    void removeItems(QList<QString> itemIds);

Q_SIGNALS:
    /// Emitted when the model lacks the items between @p start and @p end, both inclusive.
    /// [gui-thread]
    void needItems(qint64 start, qint64 end);

private:
    class Private;
    std::unique_ptr<Private> d;
};
