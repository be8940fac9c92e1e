// Sorting many items by a number each, in time that does not grow with the logarithm of their count.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace zn {

// Items have a number `key` and are ordered by < , which agrees with it: a smaller key comes first. The upper 33 bits
// in which keys differ are sorted by digits; what these leave equal is compared.
template <class Items>
class RadixSort {
public:
    // Items is a vector; the spare one becomes as long as the other.
    RadixSort(Items& items, Items& spare) : items_(items), spare_(spare) {}

    void Run()
    {
        spare_.resize(items_.size());
        if (items_.size() < kWorthIt)
            return std::sort(items_.begin(), items_.end());
        FindBits();
        const int passes = (bits_ + kMostDigit - 1) / kMostDigit;
        digit_ = passes > 0 ? (bits_ + passes - 1) / passes : 0;
        CountDigits(passes);
        for (int pass = 0; pass < passes; ++pass)
            MoveByDigit(pass);
        SortWithinRuns();
    }

private:
    using Item = typename Items::value_type;

    static constexpr int kMostDigit = 11;
    static constexpr int kMostPasses = 3;
    static constexpr std::size_t kWorthIt = 1024;

    void FindBits()
    {
        std::uint64_t different = 0;
        for (const Item& item : items_)
            different |= std::uint64_t{item.key} ^ items_.front().key;
        const auto width = static_cast<int>(std::bit_width(different));
        bits_ = std::min(width, kMostDigit * kMostPasses);
        shift_ = width - bits_;
    }
    std::size_t DigitOf(const Item& item, int pass) const noexcept
    {
        return static_cast<std::size_t>(std::uint64_t{item.key} >> (shift_ + pass * digit_)) & ((1u << digit_) - 1);
    }
    void CountDigits(int passes)
    {
        places_.resize(static_cast<std::size_t>(passes));
        for (const Item& item : items_) {
            for (int pass = 0; pass < passes; ++pass)
                ++places_[static_cast<std::size_t>(pass)][DigitOf(item, pass)];
        }
    }
    void MoveByDigit(int pass)
    {
        auto& places = places_[static_cast<std::size_t>(pass)];
        std::uint32_t place = 0;
        for (std::uint32_t& count : places)
            place += std::exchange(count, place);
        for (const Item& item : items_)
            spare_[places[DigitOf(item, pass)]++] = item;
        items_.swap(spare_);
    }
    void SortWithinRuns()
    {
        if (shift_ == 0)
            return;
        for (auto first = items_.begin(), end = items_.end(); first != end;) {
            auto next = first + 1;
            while (next != end && (next->key ^ first->key) >> shift_ == 0)
                ++next;
            if (next - first > 1)
                std::sort(first, next);
            first = next;
        }
    }

    Items& items_;
    Items& spare_;
    int bits_ = 0;
    int shift_ = 0;
    int digit_ = 0;
    std::vector<std::array<std::uint32_t, 1 << kMostDigit>> places_; // of each pass, by digit
};

} // namespace zn
