#pragma once

#include "TimeShiftBufferModel.h"

#include <QtCore/QString>

#include <functional>

/// Shows what the users of timeline models do with them. For the thread of the user interface only.
namespace standin::timeline {

/// Calls @p observer with every operation on any model before it is carried out, as one line:
/// "setBoundary(1, 2, -1, 0)", "refillItems(b1 b2)". An empty observer ends it.
TIMESHIFTBUFFERMODEL_EXPORT void
observe(std::function<void(const TimeShiftBufferModel *model, const QString &operation)> observer);

} // namespace standin::timeline
