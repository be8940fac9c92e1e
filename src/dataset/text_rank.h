// Ranks of texts: equal texts get equal numbers, and the numbers grow as the texts do, unit by unit.
//
// Few different texts are found by a table of them. Of many, up to eight units at a time stand beside the row numbers,
// so that the texts themselves are read once per eight units and the sorting touches nothing else.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace zn {

class TextRanker {
public:
    // Ranks the texts of some rows; both must stay.
    TextRanker(const std::vector<std::u16string_view>& texts, const std::vector<std::uint32_t>& rows)
        : texts_(texts), rows_(rows)
    {
    }

    // Stores each row's rank in its place; returns the largest.
    std::uint64_t Rank(std::vector<std::uint64_t>& ranks);

private:
    struct Item {
        std::uint64_t key = 0; // the units from the depth in work on
        std::uint32_t row = 0;
        std::uint32_t units = 0; // how many of them there are in the key
        bool operator==(const Item& other) const noexcept { return key == other.key && units == other.units; }
        bool operator<(const Item& other) const noexcept
        {
            return key != other.key ? key < other.key : units < other.units;
        }
    };
    // Items that are equal up to a depth.
    struct Run {
        std::size_t first, end, depth;
    };

    bool RankFew(std::vector<std::uint64_t>& ranks, std::uint64_t& most) const;
    template <int Units>
    bool ReadHeads(const Run& run);
    void SortRun(const Run& run);

    const std::vector<std::u16string_view>& texts_;
    const std::vector<std::uint32_t>& rows_;
    std::vector<Item> items_;
    std::vector<bool> isFirst_; // of equal items
    std::vector<Run> waiting_;
};

} // namespace zn
