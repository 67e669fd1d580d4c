#include "EntryTree.h"

#include <utility>

namespace workbench {

namespace {

/// Reads the lines from @p position on that happened at @p depth or deeper.
EntryTree treeFrom(const QList<Recording::Line> &lines, qsizetype &position, int depth)
{
    EntryTree tree;
    while (position < lines.size() && lines.at(position).entry.depth >= depth) {
        EntryNode node{&lines.at(position++), {}};
        if (!node.entry().isOutput())
            node.inner = treeFrom(lines, position, node.entry().depth + 1);
        tree.push_back(std::move(node));
    }
    return tree;
}

} // namespace

EntryTree treeOf(const QList<Recording::Line> &lines)
{
    qsizetype position = 0;
    return treeFrom(lines, position, 0);
}

} // namespace workbench
