#include "Alignment.h"

#include <algorithm>

namespace workbench::alignment {

namespace {

/// Maximum number of elements to skip for the next pair. The time grows with its square.
constexpr size_t MaxSkipped = 2000;

struct Range
{
    size_t begin = 0;
    size_t end = 0;

    size_t size() const { return end - begin; }
    void skip(size_t count) { begin += std::min(count, size()); }
};

/// Skips elements up to two equal ones: as few as possible, and of one list rather than of both.
bool skipToEqual(const Ids &leftIds, Range &left, const Ids &rightIds, Range &right)
{
    const size_t most = std::min(MaxSkipped, left.size() + right.size());
    for (size_t skipped = 0; skipped <= most; ++skipped) {
        for (size_t i = 0; i <= skipped; ++i) {
            const size_t ofLeft = i % 2 == 0 ? skipped - i / 2 : i / 2;
            const size_t ofRight = skipped - ofLeft;
            if (ofLeft < left.size() && ofRight < right.size() &&
                leftIds[left.begin + ofLeft] == rightIds[right.begin + ofRight]) {
                left.skip(ofLeft);
                right.skip(ofRight);
                return true;
            }
        }
    }
    return false;
}

/// Calls @p pair for each pair of equal elements, and @p between for the ranges before each pair.
template <typename BetweenFunction, typename PairFunction>
void walk(const Ids &leftIds, Range left, const Ids &rightIds, Range right,
          const BetweenFunction &between, const PairFunction &pair)
{
    Range leftRest = left;
    Range rightRest = right;
    while (leftRest.size() > 0 && rightRest.size() > 0) {
        if (!skipToEqual(leftIds, leftRest, rightIds, rightRest)) {
            leftRest.skip(MaxSkipped / 2);
            rightRest.skip(MaxSkipped / 2);
            continue;
        }
        between(Range{left.begin, leftRest.begin}, Range{right.begin, rightRest.begin});
        pair(leftRest.begin, rightRest.begin);
        leftRest.skip(1);
        rightRest.skip(1);
        left.begin = leftRest.begin;
        right.begin = rightRest.begin;
    }
    between(left, right);
}

} // namespace

std::vector<Pair> align(const Ids &leftThings, const Ids &leftContents, const Ids &rightThings,
                        const Ids &rightContents)
{
    std::vector<Pair> pairs;
    const auto addPair = [&](size_t left, size_t right) { pairs.push_back({left, right}); };
    const auto addSingles = [&](Range left, Range right) {
        for (size_t i = left.begin; i < left.end; ++i)
            pairs.push_back({i, std::nullopt});
        for (size_t i = right.begin; i < right.end; ++i)
            pairs.push_back({std::nullopt, i});
    };
    const auto pairThings = [&](Range left, Range right) {
        walk(leftThings, left, rightThings, right, addSingles, addPair);
    };
    walk(leftContents, {0, leftContents.size()}, rightContents, {0, rightContents.size()},
         pairThings, addPair);
    return pairs;
}

} // namespace workbench::alignment
