#pragma once

#include "Recording.h"

#include <vector>

namespace workbench {

/// A recorded line with the entries inside it, in their order.
struct EntryNode
{
    const Recording::Line *line = nullptr;
    std::vector<EntryNode> inner;

    const TrafficEntry &entry() const { return line->entry; }
};

using EntryTree = std::vector<EntryNode>;

/// @param lines must outlive the tree
EntryTree treeOf(const QList<Recording::Line> &lines);

} // namespace workbench
