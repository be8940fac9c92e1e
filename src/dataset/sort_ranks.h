// Rows under sort whose keys are one number each: the usual case.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

namespace zn {

// Rank is an unsigned type; row numbers are carried along.
template <class Rank>
class RankedRows {
public:
    struct Item {
        Rank rank;
        std::uint32_t row;
    };
    using Pivot = Rank;
    struct Summary {
        Rank low = std::numeric_limits<Rank>::max();
        Rank high = 0;
        bool operator==(const Summary&) const = default;
    };
    static constexpr bool kIsOrder = true;

    explicit RankedRows(const std::vector<std::uint64_t>& ranks) : items_(ranks.size())
    {
        for (std::size_t i = 0; i < ranks.size(); ++i)
            items_[i] = {static_cast<Rank>(ranks[i]), static_cast<std::uint32_t>(i)};
    }

    const std::vector<Item>& Items() const noexcept { return items_; }

    Pivot PivotAt(int i) const noexcept { return At(i).rank; }
    bool IsAfter(Pivot pivot, int i) const noexcept { return At(i).rank > pivot; }
    bool IsBefore(Pivot pivot, int i) const noexcept { return At(i).rank < pivot; }
    void Exchange(int i, int j) noexcept
    {
        std::swap(items_[static_cast<std::size_t>(i)], items_[static_cast<std::size_t>(j)]);
    }
    Summary SummaryOf(int first, int end) const noexcept
    {
        Summary summary;
        for (int i = first; i < end; ++i) {
            summary.low = std::min(summary.low, At(i).rank);
            summary.high = std::max(summary.high, At(i).rank);
        }
        return summary;
    }
    static Summary Join(const Summary& a, const Summary& b) noexcept
    {
        return {std::min(a.low, b.low), std::max(a.high, b.high)};
    }
    static bool MayBeAfter(Pivot pivot, const Summary& summary) noexcept { return summary.high > pivot; }
    static bool MayBeBefore(Pivot pivot, const Summary& summary) noexcept { return summary.low < pivot; }

private:
    const Item& At(int i) const noexcept { return items_[static_cast<std::size_t>(i)]; }

    std::vector<Item> items_;
};

} // namespace zn
