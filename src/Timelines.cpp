#include "Timelines.h"

#include "AliveGuard.h"
#include "TimeShiftBufferModel.h"

#include <QtGui/QStandardItem>

namespace tessaline {

void Timelines::remove(const QString &viewCellUID)
{
    // Remove the entry first: a slot on destroyed() may request the same view cell again.
    const Model model = m_models.take(viewCellUID);
    m_focus.remove(viewCellUID);
}

void Timelines::clear(const QString &viewCellUID) const
{
    if (const Model cleared = model(viewCellUID))
        cleared->clear();
}

void Timelines::removeBookmarks(const QStringList &bookmarkIDs, const AliveGuard &owner) const
{
    const auto models = m_models; // a slot on the first model may remove the second
    for (const Model &model : models) {
        if (owner && model)
            model->removeItems(bookmarkIDs);
    }
}

QStringList Timelines::viewCellsShowing(const TimelineFocus &focus) const
{
    QStringList viewCells;
    for (auto it = m_focus.cbegin(); it != m_focus.cend(); ++it) {
        if (it->locationID == focus.locationID && it->relayPath == focus.relayPath)
            viewCells.append(it.key());
    }
    return viewCells;
}

void refill(TimeShiftBufferModel &model, std::vector<std::unique_ptr<QStandardItem>> items)
{
    QList<QStandardItem *> list;
    for (const auto &item : items)
        list.append(item.get());
    for (auto &item : items)
        static_cast<void>(item.release()); // after append(), which may throw
    model.refillItems(list);
}

} // namespace tessaline
