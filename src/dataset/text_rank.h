// Ranks of texts: equal texts get equal numbers, and the numbers grow as the texts do, unit by unit.
//
// Few different texts are numbered as they come in (FewTexts). Of many (TextRanker), up to eight units at a time stand
// beside the row numbers, so that the texts themselves are read once per eight units and the sorting touches nothing
// else.
#pragma once

#include "dataset/text_match.h"
#include "foundation/unfilled.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

namespace zn {

// A table of a few texts, each with the number under which it came in.
class FewTexts {
public:
    static constexpr std::size_t kMost = 512;

    // The text's number; kMost when there are too many, or too many of those that came first. Texts must stay.
    std::size_t Find(std::u16string_view text)
    {
        if (slots_.empty())
            slots_.resize(kSlots);
        for (std::size_t at = HashOf(text) % kSlots;; at = (at + 1) % kSlots) {
            const std::uint32_t slot = slots_[at];
            if (slot == 0)
                return Add(at, text);
            if (SameText(texts_[slot - 1], text))
                return slot - 1;
        }
    }
    std::u16string_view TextOf(std::size_t number) const noexcept { return texts_[number]; }
    // The rank of each number.
    std::vector<std::uint64_t> Ranks() const;

private:
    static constexpr std::size_t kSlots = 4 * kMost;

    static std::size_t HashOf(std::u16string_view text) noexcept
    {
        constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15u;
        std::uint64_t hash = text.size();
        for (; text.size() >= 4; text.remove_prefix(4)) {
            std::uint64_t units;
            std::memcpy(&units, text.data(), sizeof units);
            hash = std::rotl((hash ^ units) * kFactor, 29);
        }
        for (const char16_t unit : text)
            hash = std::rotl((hash ^ unit) * kFactor, 29);
        return static_cast<std::size_t>((hash * kFactor) >> 40);
    }
    std::size_t Add(std::size_t slot, std::u16string_view text);

    std::vector<std::uint32_t> slots_;
    std::vector<std::u16string_view> texts_;
};

class TextRanker {
public:
    // Ranks the texts of some rows; both must stay.
    TextRanker(const std::vector<std::u16string_view>& texts, const std::vector<std::uint32_t>& rows)
        : texts_(texts), rows_(rows)
    {
    }

    // Stores each row's rank in its place; returns the largest.
    std::uint64_t Rank(UnfilledVector<std::uint64_t>& ranks);

private:
    struct Item {
        std::uint64_t key; // the units from the depth in work on
        std::uint32_t row;
        std::uint32_t units; // how many of them there are in the key
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

    template <int Units>
    bool ReadHeads(const Run& run);
    void SortRun(const Run& run);

    const std::vector<std::u16string_view>& texts_;
    const std::vector<std::uint32_t>& rows_;
    UnfilledVector<Item> items_;
    std::vector<bool> isFirst_; // of equal items
    std::vector<Run> waiting_;
};

} // namespace zn
