#pragma once

#include <QtCore/QMap>
#include <QtCore/QSharedPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>
#include <vector>

class QStandardItem;
class TimeShiftBufferModel;

namespace tessaline {

class AliveGuard;

/// The location that a view cell shows.
struct TimelineFocus
{
    QString locationID;
    QString relayPath;
};

/// Stores the timeline model and the focus of each view cell, by view cell UID.
///
/// Slots on a model's signals may call this class for the same view cell. It therefore removes an
/// entry before it deletes the model, and keeps no reference into its maps while it calls a model.
class Timelines
{
public:
    using Model = QSharedPointer<TimeShiftBufferModel>;

    /// @return true if the view cell has an entry, even one without a model
    bool contains(const QString &viewCellUID) const { return m_models.contains(viewCellUID); }
    /// @return the model of a view cell, null if it has none
    Model model(const QString &viewCellUID) const { return m_models.value(viewCellUID); }
    /// @return the entry of a view cell, made on demand without a model; valid until the next
    /// change
    Model &entry(const QString &viewCellUID) { return m_models[viewCellUID]; }
    void remove(const QString &viewCellUID);

    /// Removes the items of a view cell from its model.
    void clear(const QString &viewCellUID) const;
    /// Removes bookmarks from all models.
    /// @param owner the object that has this member: a slot on a model may delete it
    void removeBookmarks(const QStringList &bookmarkIDs, const AliveGuard &owner) const;

    void setFocus(const QString &viewCellUID, const TimelineFocus &focus)
    {
        m_focus.insert(viewCellUID, focus);
    }
    TimelineFocus focus(const QString &viewCellUID) const { return m_focus.value(viewCellUID); }
    /// Like focus(), but stores an empty focus for a view cell without one. An empty focus shows
    /// bookmarks that have neither location nor relay path.
    TimelineFocus ensureFocus(const QString &viewCellUID) { return m_focus[viewCellUID]; }
    /// @return the view cells with this focus, in ascending order
    QStringList viewCellsShowing(const TimelineFocus &focus) const;

private:
    QMap<QString, Model> m_models;
    QMap<QString, TimelineFocus> m_focus;
};

/// Adds items to a model, which owns them afterwards.
void refill(TimeShiftBufferModel &model, std::vector<std::unique_ptr<QStandardItem>> items);

} // namespace tessaline
