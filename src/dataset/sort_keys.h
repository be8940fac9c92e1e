// The keys of a sort in numbers, read from the rows once, so that comparing two rows does not touch their values.
//
// Where every key is totally ordered by the variants' compare, all of them become one number per row (MakeRanks).
// That compare is no order where a column mixes types (1 both ways), holds amounts that are 0.01 to 0.0999 apart (whose
// difference reads as 0 one way), dates, integers more than 2^31 - 1 apart (whose difference wraps), or what is not a
// number: then rows sort by the places at which others see them (ViewedRows), and where that can't be said, KeyedRows
// compares key by key, as the variants would.
#pragma once

#include "Zn_Variant.h"
#include "dataset/sort_partition.h"
#include "dataset/sort_ranks.h"
#include "dataset/text_rank.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace zn {

// What one column holds in every row: Set for each row once, then Finish.
class SortKey {
public:
    SortKey(std::uint32_t rows, bool descending) : codes_(rows), descending_(descending) {}

    // A null value is an absent one. Values must stay while the key is used.
    void Set(std::uint32_t row, const Zn_Variant* value)
    {
        if (value && value->type == kind_ && kinds_.empty()) {
            if (kind_ == Zn_Variant::Integer)
                return Note(row, CodeOfInteger(value->ToInteger()));
            if (kind_ == Zn_Variant::Decimal)
                return Note(row, CodeOfDecimal(value->ToDouble()));
            if (kind_ == Zn_Variant::String)
                return SetText(row, value->GetConstStr()->GetView());
        }
        SetAny(row, value);
    }
    void Finish();

    std::uint32_t Count() const noexcept { return static_cast<std::uint32_t>(codes_.size()); }
    bool IsDescending() const noexcept { return descending_; }
    bool HasAbsent() const noexcept { return hasAbsent_; }
    bool IsAbsent(std::uint32_t row) const noexcept { return KindOf(row) == kAbsent; }
    // The type code of a value, Zn_Variant::Empty for null too; kAbsent for none.
    std::uint32_t KindOf(std::uint32_t row) const noexcept { return kinds_.empty() ? kind_ : kinds_[row]; }
    static constexpr std::uint32_t kAbsent = 0x10000;
    // A number that grows with the value, among values of one kind.
    std::uint64_t CodeOf(std::uint32_t row) const noexcept { return codes_[row]; }
    // All of them; the key is of no use any more.
    UnfilledVector<std::uint64_t> TakeCodes() noexcept { return std::move(codes_); }
    std::uint64_t LowestCode() const noexcept { return lowest_; }
    // Below the lowest when no row has a value.
    std::uint64_t HighestCode() const noexcept { return highest_; }
    // The types of the values, in the order of their first ones and no more than one above a limit; Empty when there
    // are no values.
    std::vector<std::uint32_t> Kinds(std::size_t most) const;
    // Whether the compare of variants is a total order on what the column holds. Where that would need to look at
    // amounts in pairs it is false.
    bool IsOrder() const;
    // An amount's code is in ten-thousandths. The difference to one that is so much above reads as 0, so both seem
    // equal.
    static constexpr std::uint64_t kLeastReadAs0 = 100, kMostReadAs0 = 999;
    // Whether values of one type with codes in a range compare by their codes, as EqualCodes says.
    static bool AreOrdered(std::uint32_t kind, std::uint64_t low, std::uint64_t high);
    // Among values of its type, a row's value is equal to those with codes from the first to the second, after those
    // below and before those above. None are equal when the second is below the first. What holds for amounts besides
    // is left out.
    std::pair<std::uint64_t, std::uint64_t> EqualCodes(std::uint32_t row) const;

    // What the compare procedure says of one row's value and another's, direction included: below, equal to or above 0.
    int Compare(std::uint32_t a, std::uint32_t b) const;

    // What may come out when a row is compared with rows whose values, all of one kind, have codes from low to high:
    // a set of the signs kLess, kSame and kMore, before the direction.
    unsigned SignsAgainst(std::uint32_t row, std::uint64_t low, std::uint64_t high) const;
    static constexpr unsigned kLess = 1, kSame = 2, kMore = 4, kAnySign = 7;

private:
    static std::uint64_t CodeOfInteger(std::int32_t value) noexcept
    {
        return static_cast<std::uint32_t>(value) ^ 0x80000000u;
    }
    // Both zeros have one code; what is not a number has code 0: it sorts before whatever it is compared with.
    static std::uint64_t CodeOfDecimal(double value) noexcept
    {
        constexpr std::uint64_t kTop = std::uint64_t{1} << 63;
        const auto bits = std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value);
        return value != value ? 0 : bits & kTop ? ~bits : bits | kTop;
    }
    // A text's number while there are few, and else the text itself.
    void SetText(std::uint32_t row, std::u16string_view text)
    {
        if (texts_.empty()) {
            const std::size_t number = few_.Find(text);
            if (number < FewTexts::kMost)
                return Note(row, number);
            KeepTexts(row);
        }
        texts_[row] = text;
    }
    void Note(std::uint32_t row, std::uint64_t code) noexcept
    {
        codes_[row] = code;
        lowest_ = std::min(lowest_, code);
        highest_ = std::max(highest_, code);
    }
    void SetAny(std::uint32_t row, const Zn_Variant* value);
    void SetKind(std::uint32_t row, std::uint32_t kind);
    std::uint64_t ReadCode(std::uint32_t row, const Zn_Variant& value);
    void KeepTexts(std::uint32_t end);
    void RankTexts();
    void RankBytes();
    int CompareValues(std::uint32_t a, std::uint32_t b) const;

    UnfilledVector<std::uint64_t> codes_;
    std::uint32_t kind_ = kNone;       // of the values so far
    std::vector<std::uint32_t> kinds_; // of each row, once rows differ
    FewTexts few_;
    std::vector<std::u16string_view> texts_; // when they are not few
    std::vector<const Zn_Variant*> values_;  // of bytes and of what has no code
    std::uint64_t lowest_ = UINT64_MAX;
    std::uint64_t highest_ = 0;
    bool hasAbsent_ = false;
    bool isMixed_ = false; // in kinds of values
    bool descending_;
    static constexpr std::uint32_t kNone = 0x10001;
};

// Numbers that order the rows as the keys do, all of which must be orders.
Ranks MakeRanks(std::vector<SortKey> keys);

// Rows under sort that are compared key by key.
class KeyedRows {
public:
    using Pivot = std::uint32_t;
    static constexpr bool kIsOrder = false;

    // What the first keys of some rows hold; of the others anything is possible.
    struct Range {
        std::uint32_t kind = Zn_Variant::Empty; // of those that are neither absent nor empty
        bool hasAbsent = false;
        bool hasEmpty = false;
        bool isMixed = false;
        std::uint64_t low = UINT64_MAX;
        std::uint64_t high = 0;
        bool operator==(const Range&) const = default;
    };
    static constexpr std::size_t kRanges = 4;
    using Summary = std::array<Range, kRanges>;

    explicit KeyedRows(const std::vector<SortKey>& keys);

    const std::vector<std::uint32_t>& Rows() const noexcept { return rows_; }

    Pivot PivotAt(int i) const noexcept { return rows_[static_cast<std::size_t>(i)]; }
    bool IsAfter(Pivot pivot, int i) const { return Compare(pivot, PivotAt(i)) < 0; }
    bool IsBefore(Pivot pivot, int i) const { return Compare(pivot, PivotAt(i)) > 0; }
    void Exchange(int i, int j) noexcept;
    static bool Finish(int, int) noexcept { return false; }
    void ExchangeAround(Pivot pivot, int low, int high, int& i, int& j)
    {
        ExchangeOneByOne(*this, pivot, low, high, i, j);
    }
    Summary SummaryOf(int first, int end) const;
    static Summary Join(const Summary& a, const Summary& b) noexcept;
    bool MayBeAfter(Pivot pivot, const Summary& summary) const { return MayBe(SortKey::kLess, pivot, summary); }
    bool MayBeBefore(Pivot pivot, const Summary& summary) const { return MayBe(SortKey::kMore, pivot, summary); }

private:
    int Compare(std::uint32_t a, std::uint32_t b) const;
    bool MayBe(unsigned sign, Pivot pivot, const Summary& summary) const;
    static Range Join(const Range& a, const Range& b) noexcept;
    static unsigned SignsOf(const SortKey& key, Pivot pivot, const Range& range);

    const std::vector<SortKey>& keys_;
    std::vector<std::uint32_t> rows_;
};

} // namespace zn
