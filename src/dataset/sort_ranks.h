// Rows under sort whose keys are one number each: the usual case.
//
// What has no equal goes where it belongs in any procedure; where equal rows end up is what the partitions tell. So the
// rows are ranked first, each rank being the first place that its rows get, and a segment is partitioned only as long
// as it has equal rows and others.
#pragma once

#include "foundation/unfilled.h"

#include <cstdint>
#include <utility>
#include <vector>

namespace zn {

// A number per row that orders the rows, and the largest that there may be.
struct Ranks {
    UnfilledVector<std::uint64_t> of;
    std::uint64_t most = 0;

    // Makes the numbers those of a row's place among the different ones: 0, 1, 2 ...
    void Condense();
    // Whether numbers up to another largest one fit behind these.
    bool HasRoomFor(std::uint64_t mostBehind) const noexcept
    {
        return mostBehind == UINT64_MAX ? most == 0 : most < UINT64_MAX / (mostBehind + 1);
    }
    // Orders rows that are equal so far by other numbers, which fit.
    void Append(const UnfilledVector<std::uint64_t>& behind, std::uint64_t mostBehind) noexcept;
};

class RankedRows {
public:
    struct Item {
        std::uint32_t key; // the rank, once it is known
        std::uint32_t row;
        bool operator<(const Item& other) const noexcept { return key < other.key; }
    };
    using Pivot = std::uint32_t;
    struct Summary {
        std::uint32_t low = UINT32_MAX;
        std::uint32_t high = 0;
        bool operator==(const Summary&) const = default;
    };
    static constexpr bool kIsOrder = true;

    explicit RankedRows(const Ranks& ranks);

    // Whether any rows are equal; without, all are sorted already.
    bool HasEqual() const noexcept { return hasEqual_; }
    // The rows' numbers as they stand.
    UnfilledVector<std::int32_t> Order() const;

    Pivot PivotAt(int i) const noexcept { return At(i).key; }
    bool IsAfter(Pivot pivot, int i) const noexcept { return At(i).key > pivot; }
    bool IsBefore(Pivot pivot, int i) const noexcept { return At(i).key < pivot; }
    void Exchange(int i, int j) noexcept { std::swap(At(i), At(j)); }
    bool Finish(int low, int high);
    void ExchangeAround(Pivot pivot, int low, int high, int& i, int& j) { ExchangeRows(pivot, pivot, low, high, i, j); }
    Summary SummaryOf(int first, int end) const noexcept;
    static Summary Join(const Summary& a, const Summary& b) noexcept
    {
        return {a.low < b.low ? a.low : b.low, a.high > b.high ? a.high : b.high};
    }
    static bool MayBeAfter(Pivot pivot, const Summary& summary) noexcept { return summary.high > pivot; }
    static bool MayBeBefore(Pivot pivot, const Summary& summary) noexcept { return summary.low < pivot; }

private:
    Item& At(int i) noexcept { return items_[static_cast<std::size_t>(i)]; }
    const Item& At(int i) const noexcept { return items_[static_cast<std::size_t>(i)]; }
    void RankByCounting(const Ranks& ranks);
    void RankBySorting(const Ranks& ranks);
    template <class Items>
    void RankSorted(const Items& sorted);
    void MarkEqual(std::size_t first, std::size_t end);
    void CountEqual();
    void ExchangeRows(Pivot notAfter, Pivot notBefore, int low, int high, int& i, int& j);
    int EqualBefore(int place) const noexcept;

    // A bit for each of 64 places: the row that gets it is equal to the next one's.
    struct EqualPlaces {
        std::uint64_t bits = 0;
        std::uint32_t before = 0; // how many there are before these
    };

    UnfilledVector<Item> items_;
    UnfilledVector<Item> moved_; // items of a segment that is finished
    std::vector<EqualPlaces> equal_;
    bool hasEqual_ = false;
};

} // namespace zn
