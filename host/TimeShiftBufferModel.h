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
///
/// [gui-thread]
class TIMESHIFTBUFFERMODEL_EXPORT TimeShiftBufferModel : public QObject
{
    Q_OBJECT

public:
    /// Roles of the default set that callers use by number.
    enum DefaultRole {
        ItemIdRole = Qt::UserRole + 1,         ///< QString; the identifier for removeItems()
        ChannelIdRole = Qt::UserRole + 2,      ///< QString; the camera
        StartTimestampRole = Qt::UserRole + 5, ///< qint64
        EndTimestampRole = Qt::UserRole + 8,   ///< qint64
    };

    /// @param roleNames the roles of the list model: defaultRoleHash() and the caller's own
    explicit TimeShiftBufferModel(QHash<int, QByteArray> roleNames, QObject *parent = nullptr);
    ~TimeShiftBufferModel() override;

    /// @return the roles that every timeline has; all are below Qt::UserRole + 13
    static QHash<int, QByteArray> defaultRoleHash();

    /// @return the list model to which QML binds; owned by this object, valid as long as it, never
    /// null
    QObject *getModel() const;

    /// Sets the visible range [@p head, @p tail] and emits needItems() for each part of it that
    /// has not been requested yet. The third and fourth value have a meaning for the host only;
    /// pass -1 and 0.
    void setBoundary(qint64 head, qint64 tail, qint64, qint64);

    /// Removes all items and forgets which ranges were requested.
    void clear();

    /// Merges items into the model by their identifier. The model owns the items afterwards.
    void refillItems(QList<QStandardItem *> items);

    /// Removes and deletes the items with these identifiers; ignores unknown identifiers.
    void removeItems(QList<QString> itemIds);

Q_SIGNALS:
    /// The model lacks the items between @p start and @p end, both inclusive.
    void needItems(qint64 start, qint64 end);

private:
    class Private;
    std::unique_ptr<Private> d;
};
