// Ranks of texts: equal texts get equal numbers, and the numbers grow as the texts do, unit by unit.
//
// Four units at a time stand beside the row numbers, so that the texts themselves are read once per four units and the
// sorting touches nothing else.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zn {

// TextOf gives the text of a row; the texts must stay.
template <class TextOf>
class TextRanker {
public:
    TextRanker(const std::vector<std::uint32_t>& rows, TextOf textOf) : textOf_(textOf), items_(rows.size())
    {
        for (std::size_t i = 0; i < rows.size(); ++i)
            items_[i].row = rows[i];
    }

    // Stores each row's rank in its place; returns the largest.
    std::uint64_t Rank(std::vector<std::uint64_t>& ranks)
    {
        isFirst_.assign(items_.size(), false);
        waiting_ = {{0, items_.size(), 0}};
        while (!waiting_.empty()) {
            const Run run = waiting_.back();
            waiting_.pop_back();
            SortRun(run);
        }
        std::uint64_t rank = 0;
        for (std::size_t i = 0; i < items_.size(); ++i) {
            rank += i > 0 && isFirst_[i];
            ranks[items_[i].row] = rank;
        }
        return rank;
    }

private:
    static constexpr std::size_t kUnits = 4;

    struct Item {
        std::uint64_t head = 0; // the units from the depth in work on
        std::uint32_t row = 0;
        std::uint32_t units = 0; // how many of them there are, up to kUnits
        bool operator==(const Item& other) const noexcept { return head == other.head && units == other.units; }
        bool operator<(const Item& other) const noexcept
        {
            return head != other.head ? head < other.head : units < other.units;
        }
    };
    // Items that are equal up to a depth.
    struct Run {
        std::size_t first, end, depth;
    };

    void ReadHead(Item& item, std::size_t depth) const
    {
        const std::u16string_view text = textOf_(item.row);
        const std::size_t units = std::min(text.size() - depth, kUnits);
        item.head = 0;
        for (std::size_t k = 0; k < kUnits; ++k)
            item.head = item.head << 16 | (k < units ? text[depth + k] : 0u);
        item.units = static_cast<std::uint32_t>(units);
    }

    void SortRun(const Run& run)
    {
        const auto begin = items_.begin() + static_cast<std::ptrdiff_t>(run.first);
        const auto end = items_.begin() + static_cast<std::ptrdiff_t>(run.end);
        bool allEqual = true;
        for (auto item = begin; item != end; ++item) {
            ReadHead(*item, run.depth);
            allEqual = allEqual && *item == *begin;
        }
        if (!allEqual)
            std::sort(begin, end);
        for (std::size_t first = run.first; first < run.end;) {
            std::size_t next = first + 1;
            while (next < run.end && items_[next] == items_[first])
                ++next;
            isFirst_[first] = true;
            if (next - first > 1 && items_[first].units == kUnits)
                waiting_.push_back({first, next, run.depth + kUnits});
            first = next;
        }
    }

    TextOf textOf_;
    std::vector<Item> items_;
    std::vector<bool> isFirst_; // of equal items
    std::vector<Run> waiting_;
};

} // namespace zn
