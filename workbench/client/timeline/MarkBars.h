#pragma once

#include "CameraMarks.h"

#include <QtCore/QVarLengthArray>

namespace workbench {

/// A bar of the timeline: one bookmark, or several that can't be distinguished.
struct MarkBar
{
    qint64 left; ///< drawn from left to right; a short bookmark is drawn wider
    qint64 right;
    qint64 start; ///< of the earliest bookmark
    qint64 end;   ///< of the latest one
    int lane;
    int count;
    bool narrow;
    bool over;                     ///< found no free lane; drawn over earlier bars of the last lane
    QVarLengthArray<int, 5> first; ///< indexes of the first few bookmarks
};

/// Arranges bookmarks as bars. Overlapping bookmarks get different lanes; a bookmark without a free
/// lane is drawn over the last one. Joins very short bookmarks that touch, and bookmarks of which
/// one would hide the other. The result depends on the scale, not on the visible range.
/// @param marks sorted by start
/// @param lanes number of lanes
std::vector<MarkBar> arrangeMarks(const std::vector<Mark> &marks, double msPerPixel, int lanes);

} // namespace workbench
