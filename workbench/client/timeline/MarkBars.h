#pragma once

#include "CameraMarks.h"

#include <QtCore/QVarLengthArray>

namespace workbench {

/// What is drawn for one bookmark, or for several that can't be told apart.
struct MarkBar
{
    qint64 left; ///< drawn from here to right; a short bookmark is drawn wider than it is
    qint64 right;
    qint64 start; ///< of the earliest bookmark
    qint64 end;   ///< of the latest one
    int lane;
    int count;
    bool narrow;
    bool over; ///< found no lane, and is drawn over the bars before it in the last one
    QVarLengthArray<int, 5> first; ///< indexes of the first few bookmarks
};

/// Puts bookmarks, which come in order of start, into bars: overlapping ones one above the other in
/// @p lanes lanes. Those that find no lane lie over the last one, where they start later than what
/// they cover, or end earlier. Very short ones that touch are one bar, and so are those of which
/// one would hide the other. The same bookmarks get the same bars wherever the timeline is panned
/// to; only the scale matters.
std::vector<MarkBar> arrangeMarks(const std::vector<Mark> &marks, double msPerPixel, int lanes);

} // namespace workbench
