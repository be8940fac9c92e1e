// The partition procedure that gives sorted tables their order, rows with equal keys included.
//
// Readers of these tables elsewhere sort by it, and it is not stable: what it does with equal rows is part of the
// result. Step by step it takes the first row of a segment as the pivot, goes from the left to the first row
// that sorts after the pivot and from the right to the last that sorts before it, exchanges the two, and goes on until
// both meet; then the pivot changes places with the row on the right side's end and both parts are sorted the same way.
//
// Done literally that is quadratic on rows that are sorted, reversed or of few keys. Here the same exchanges are made
// in the same order, but after some uneven partitions the two places are looked up in a tree of summaries (BlockTree),
// so that a partition costs its exchanges, which are no more than its smaller part has rows. Segments wait on a stack
// of logarithmic depth.
//
// Rows is what is sorted:
//     Pivot, Summary             types; a default Summary is that of no rows
//     kIsOrder                   the keys are totally ordered, whatever rows are compared
//     Pivot PivotAt(i)
//     bool IsAfter(pivot, i)     row i sorts after the pivot; IsBefore(pivot, i) before it
//     void Exchange(i, j)
//     void ExchangeAround(pivot, low, high, i, j)
//                                from i and j on, exchanges rows after the pivot with rows before it until they meet
//     bool Finish(low, high)     sorts the segment if there is a way that partitions would not change, else false
//     Summary SummaryOf(first, end), Join(a, b)
//     bool MayBeAfter(pivot, summary), MayBeBefore(pivot, summary)
//                                false when no row that the summary stands for sorts so
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <utility>
#include <vector>

namespace zn {

// Summaries of blocks of rows and of ever larger runs of blocks. What is outside the segment in work may be out of
// date.
template <class Rows>
class BlockTree {
public:
    using Pivot = typename Rows::Pivot;
    using Summary = typename Rows::Summary;

    explicit BlockTree(Rows& rows, int count) : rows_(rows), count_(count) {}

    // Brings the blocks of a segment up to date.
    void Build(int low, int high)
    {
        if (nodes_.empty()) {
            leaves_ = std::bit_ceil(BlockOf(count_) + 1);
            nodes_.resize(2 * leaves_);
        }
        std::size_t first = leaves_ + BlockOf(low);
        std::size_t last = leaves_ + BlockOf(high);
        for (std::size_t node = first; node <= last; ++node)
            nodes_[node] = SummaryOfBlock(node - leaves_);
        for (first /= 2, last /= 2; first > 0; first /= 2, last /= 2) {
            for (std::size_t node = first; node <= last; ++node)
                nodes_[node] = rows_.Join(nodes_[2 * node], nodes_[2 * node + 1]);
        }
    }

    // Another row stands at an index.
    void Update(int index)
    {
        std::size_t node = leaves_ + BlockOf(index);
        Summary summary = SummaryOfBlock(node - leaves_);
        while (!(nodes_[node] == summary)) {
            nodes_[node] = summary;
            node /= 2;
            if (node == 0)
                return;
            summary = rows_.Join(nodes_[2 * node], nodes_[2 * node + 1]);
        }
    }

    // The first index from i on, but at most high, of a row after the pivot; high when there is none before it.
    int NextAfter(const Pivot& pivot, int i, int high) const
    {
        while (i < high) {
            for (const int end = std::min(high, (i / kBlock + 1) * kBlock); i < end; ++i) {
                if (rows_.IsAfter(pivot, i))
                    return i;
            }
            if (i >= high)
                break;
            const std::size_t node =
                NextNode(leaves_ + BlockOf(i), [&](const Summary& s) { return rows_.MayBeAfter(pivot, s); });
            if (node == 0 || node - leaves_ > BlockOf(high))
                break;
            i = static_cast<int>(node - leaves_) * kBlock;
        }
        return high;
    }

    // The last index from j back, but at least low, of a row before the pivot; low when there is none behind it.
    int LastBefore(const Pivot& pivot, int j, int low) const
    {
        while (j > low) {
            for (const int end = std::max(low, j / kBlock * kBlock - 1); j > end; --j) {
                if (rows_.IsBefore(pivot, j))
                    return j;
            }
            if (j <= low)
                break;
            const std::size_t node =
                PreviousNode(leaves_ + BlockOf(j), [&](const Summary& s) { return rows_.MayBeBefore(pivot, s); });
            if (node == 0 || node - leaves_ < BlockOf(low))
                break;
            j = static_cast<int>(node - leaves_) * kBlock + kBlock - 1;
        }
        return low;
    }

private:
    static constexpr int kBlock = 16;

    static std::size_t BlockOf(int index) noexcept { return static_cast<std::size_t>(index / kBlock); }
    Summary SummaryOfBlock(std::size_t block) const
    {
        const int first = static_cast<int>(block) * kBlock;
        return rows_.SummaryOf(first, std::min(first + kBlock, count_));
    }

    // The first leaf from a leaf on that is wanted, 0 for none.
    template <class Wanted>
    std::size_t NextNode(std::size_t node, Wanted wanted) const
    {
        while (!wanted(nodes_[node])) {
            while (node & 1)
                node /= 2;
            if (node == 0)
                return 0;
            ++node;
        }
        while (node < leaves_) {
            node *= 2;
            if (!wanted(nodes_[node]))
                ++node;
        }
        return node;
    }

    // The last leaf from a leaf back that is wanted, 0 for none.
    template <class Wanted>
    std::size_t PreviousNode(std::size_t node, Wanted wanted) const
    {
        while (!wanted(nodes_[node])) {
            while (!(node & 1))
                node /= 2;
            if (node <= 1)
                return 0;
            --node;
        }
        while (node < leaves_) {
            node = 2 * node + 1;
            if (!wanted(nodes_[node]))
                --node;
        }
        return node;
    }

    Rows& rows_;
    const int count_;
    std::size_t leaves_ = 0;
    std::vector<Summary> nodes_; // the root is 1, the children of k are 2k and 2k + 1, the blocks come from leaves_ on
};

// What a partition does row by row: from i up to the first row after the pivot, from j down to the last before it, and
// both are exchanged, until i and j meet. Without such a row they end at the segment's.
template <class Rows>
void ExchangeOneByOne(Rows& rows, const typename Rows::Pivot& pivot, int low, int high, int& i, int& j)
{
    for (;;) {
        while (i < high && !rows.IsAfter(pivot, i))
            ++i;
        while (j > low && !rows.IsBefore(pivot, j))
            --j;
        if (i >= j)
            return;
        rows.Exchange(i, j);
    }
}

template <class Rows>
class PartitionSort {
public:
    PartitionSort(Rows& rows, int count) : rows_(rows), count_(count), tree_(rows, count) {}

    // Sorts all rows.
    void Run()
    {
        std::vector<Segment> waiting;
        Segment now{0, count_ - 1};
        for (;;) {
            while (now.low < now.high && !rows_.Finish(now.low, now.high) && !FinishRun(now)) {
                Segment left, right;
                Partition(now, left, right);
                // The larger part waits, so that few ever do.
                if (left.high - left.low < right.high - right.low)
                    std::swap(left, right);
                if (left.low < left.high)
                    waiting.push_back(left);
                now = right;
            }
            if (waiting.empty())
                return;
            now = waiting.back();
            waiting.pop_back();
        }
    }

private:
    using Pivot = typename Rows::Pivot;

    struct Segment {
        int low = 0;
        int high = -1;
        int uneven = 0;      // so many uneven partitions in a row led to it
        bool inTree = false; // the tree is up to date for it
    };

    // A partition is uneven when one part has less than this share of the rows; so many exchanges are made through the
    // tree before the rest of a partition is scanned.
    static constexpr int kShare = 16;
    static constexpr int kPatience = 4; // uneven partitions in a row, after which the next are made through the tree
    static constexpr int kSmall = 32;

    // Rows that stand in order already stay as they are, and rows in falling order, none equal, are turned around: what
    // the partitions would come to. Looking costs no more than they do.
    bool FinishRun(const Segment& now)
    {
        if (!Rows::kIsOrder || now.inTree)
            return false;
        int i = now.low + 1;
        while (i <= now.high && !rows_.IsBefore(rows_.PivotAt(i - 1), i))
            ++i;
        if (i > now.high)
            return true;
        if (i > now.low + 1)
            return false;
        while (i <= now.high && rows_.IsBefore(rows_.PivotAt(i - 1), i))
            ++i;
        if (i <= now.high)
            return false;
        for (int low = now.low, high = now.high; low < high; ++low, --high)
            rows_.Exchange(low, high);
        return true;
    }

    void Partition(const Segment& now, Segment& left, Segment& right)
    {
        const auto [low, high] = std::pair(now.low, now.high);
        const Pivot pivot = rows_.PivotAt(low);
        int i = low + 1, j = high; // the pivot is never compared with itself
        bool inTree = now.uneven >= kPatience && high - low >= kSmall;
        if (inTree) {
            if (!now.inTree)
                tree_.Build(low, high);
            inTree = ExchangeInTree(pivot, now, i, j);
        }
        if (!inTree)
            rows_.ExchangeAround(pivot, low, high, i, j);
        if (Rows::kIsOrder && i == high && j == low && !rows_.IsAfter(pivot, high))
            return; // all rows are equal
        if (j != low) {
            rows_.Exchange(low, j);
            if (inTree) {
                tree_.Update(low);
                tree_.Update(j);
            }
        }
        const int uneven = std::min(i - low, high - i + 1) < (high - low) / kShare ? now.uneven + 1 : 0;
        left = {low, i - 1, uneven, inTree};
        right = {i, high, uneven, inTree};
    }

    // True when the partition is done, false when it turned out to have many exchanges.
    bool ExchangeInTree(const Pivot& pivot, const Segment& now, int& i, int& j)
    {
        for (int rest = (now.high - now.low) / kShare; rest >= 0; --rest) {
            i = tree_.NextAfter(pivot, i, now.high);
            j = tree_.LastBefore(pivot, j, now.low);
            if (i >= j)
                return true;
            rows_.Exchange(i, j);
            tree_.Update(i);
            tree_.Update(j);
        }
        return false;
    }

    Rows& rows_;
    const int count_;
    BlockTree<Rows> tree_;
};

} // namespace zn
