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

/// The host's timeline model: keeps the items of one view cell's timeline in a list model and
/// asks for more when the visible range moves. Everything happens on the GUI thread; times are
/// milliseconds since 1970-01-01T00:00:00 UTC.
class TIMESHIFTBUFFERMODEL_EXPORT TimeShiftBufferModel : public QObject
{
    Q_OBJECT

public:
    /// Roles of the default set that are known to their users by number.
    enum DefaultRole {
        ItemIdRole = Qt::UserRole + 1,         ///< QString; what removeItems() takes
        ChannelIdRole = Qt::UserRole + 2,      ///< QString; the camera
        StartTimestampRole = Qt::UserRole + 5, ///< qint64
        EndTimestampRole = Qt::UserRole + 8,   ///< qint64
    };

    /// @param roleNames the roles of the list model, defaultRoleHash() and the user's own
    explicit TimeShiftBufferModel(QHash<int, QByteArray> roleNames, QObject *parent = nullptr);
    ~TimeShiftBufferModel() override;

    /// The roles that every timeline has; below Qt::UserRole + 13.
    static QHash<int, QByteArray> defaultRoleHash();

    /// The list model to which QML binds. Owned by this object and as old as it.
    QObject *getModel() const;

    /// Sets the visible range [@p head, @p tail] and emits needItems() for what of it has not
    /// been asked for yet. The third and fourth value are the host's own; -1 and 0 by default.
    void setBoundary(qint64 head, qint64 tail, qint64, qint64);

    /// Drops all items, and what is known of the ranges asked for.
    void clear();

    /// Merges items into the model, by their identifier. Takes ownership of the items.
    void refillItems(QList<QStandardItem *> items);

    /// Takes the items with these identifiers out; unknown identifiers are ignored.
    void removeItems(QList<QString> itemIds);

Q_SIGNALS:
    /// The model lacks the items between @p start and @p end, both inclusive.
    void needItems(qint64 start, qint64 end);

private:
    class Private;
    std::unique_ptr<Private> d;
};
