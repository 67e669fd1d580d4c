#pragma once

#include "TimeShiftBufferModel.h"

#include <QtCore/QString>

#include <functional>

/// Observes the operations on timeline models. Call from the GUI thread only.
namespace standin::timeline {

/// Calls @p observer before every operation on any model, with one line of text:
/// "setBoundary(1, 2, -1, 0)", "refillItems(b1 b2)". An empty observer removes the last one.
TIMESHIFTBUFFERMODEL_EXPORT void
observe(std::function<void(const TimeShiftBufferModel *model, const QString &operation)> observer);

} // namespace standin::timeline
