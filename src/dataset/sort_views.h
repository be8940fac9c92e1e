// Rows under sort by keys of which some are no order.
//
// Where a column mixes types, a value takes all values of other types for smaller ones; amounts take others that are
// 0.01 to 0.0999 above for equal; a date is compared with other dates' bits read as amounts. A row is then seen at
// different places by different rows, but each row sees all rows in some order: the view of its values' types. In it
// the rows that it takes for equal have places next to each other. So rows have a place in each view, and a pivot
// compares by numbers.
//
// What does not fit stays with the compare of variants, row by row (KeyedRows): objects; integers more than 2^31 - 1
// apart and amounts more than 2^63 - 1, whose differences wrap; amounts 0.01 to 0.0999 apart in a column that others
// follow, or that are less than 0.01 apart from others besides; more than kMostViews combinations of types; places that
// 64 bits can't tell apart.
#pragma once

#include "dataset/sort_keys.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace zn {

class ViewedRows {
public:
    // Nothing when the rows of these keys can't be seen so.
    static std::optional<ViewedRows> Make(const std::vector<SortKey>& keys);

    static constexpr std::size_t kMostViews = 8;
    static constexpr bool kIsOrder = false;

    // Rows at places below `first` in the view sort before a pivot, those above `last` after it.
    struct Pivot {
        std::size_t view = 0;
        std::uint64_t first = 0;
        std::uint64_t last = 0;
    };
    struct Range {
        std::uint64_t low = UINT64_MAX;
        std::uint64_t high = 0;
        bool operator==(const Range&) const = default;
    };
    using Summary = std::array<Range, kMostViews>;

    // All rows see the same order, and for equal only what is at their place.
    bool IsOrder() const noexcept { return views_.size() == 1 && !hasWindows_; }
    const Ranks& Order() const noexcept { return views_.front(); }

    const std::vector<std::uint32_t>& Rows() const noexcept { return rows_; }

    const Pivot& PivotAt(int i) const noexcept { return pivots_[Row(i)]; }
    bool IsAfter(const Pivot& pivot, int i) const noexcept { return views_[pivot.view].of[Row(i)] > pivot.last; }
    bool IsBefore(const Pivot& pivot, int i) const noexcept { return views_[pivot.view].of[Row(i)] < pivot.first; }
    void Exchange(int i, int j) noexcept;
    static bool Finish(int, int) noexcept { return false; }
    void ExchangeAround(const Pivot& pivot, int low, int high, int& i, int& j)
    {
        ExchangeOneByOne(*this, pivot, low, high, i, j);
    }
    Summary SummaryOf(int first, int end) const noexcept;
    static Summary Join(const Summary& a, const Summary& b) noexcept;
    static bool MayBeAfter(const Pivot& pivot, const Summary& summary) noexcept
    {
        return summary[pivot.view].high > pivot.last;
    }
    static bool MayBeBefore(const Pivot& pivot, const Summary& summary) noexcept
    {
        return summary[pivot.view].low < pivot.first;
    }

private:
    explicit ViewedRows(std::uint32_t rows);
    bool Append(const SortKey& key, bool isLast);
    bool MakeRoom(std::uint64_t lastPlace);
    std::size_t Row(int i) const noexcept { return rows_[static_cast<std::size_t>(i)]; }

    std::vector<std::uint32_t> rows_;
    std::vector<Pivot> pivots_; // what each row is as a pivot
    std::vector<Ranks> views_;
    bool hasWindows_ = false;
};

} // namespace zn
