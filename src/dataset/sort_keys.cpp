#include "dataset/sort_keys.h"

#include "dataset/text_rank.h"
#include "values/variant_types.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <utility>

namespace zn {
namespace {

constexpr std::uint64_t kTop = std::uint64_t{1} << 63;

std::uint64_t CodeOfInteger(std::int32_t value)
{
    return static_cast<std::uint32_t>(value) ^ 0x80000000u;
}

std::int64_t IntegerOf(std::uint64_t code)
{
    return static_cast<std::int64_t>(code) - 0x80000000;
}

// Both zeros have one code; what is not a number has code 0: it sorts before whatever it is compared with.
std::uint64_t CodeOfDecimal(double value)
{
    if (std::isnan(value))
        return 0;
    const auto bits = std::bit_cast<std::uint64_t>(value == 0 ? 0.0 : value);
    return bits & kTop ? ~bits : bits | kTop;
}

double DecimalOf(std::uint64_t code)
{
    return std::bit_cast<double>(code & kTop ? code & ~kTop : ~code);
}

std::uint64_t CodeOfAmount(const Zn_Currency& amount)
{
    return static_cast<std::uint64_t>(amount.GetRaw()) ^ kTop;
}

std::int64_t RawOf(std::uint64_t code)
{
    return static_cast<std::int64_t>(code ^ kTop);
}

bool IsDifferenceWide(std::uint64_t low, std::uint64_t high)
{
    return high - low >= kTop;
}

template <class T>
int SignOf(T value)
{
    return value < 0 ? -1 : value == 0 ? 0 : 1;
}

int CompareAmounts(std::uint64_t a, std::uint64_t b)
{
    if (a == b)
        return 0;
    if (a > b && !IsDifferenceWide(b, a))
        return 1;
    // Less than a unit below reads as 0.
    return SignOf((Zn_Currency::FromRaw(RawOf(a)) - Zn_Currency::FromRaw(RawOf(b))).ToDouble());
}

// What Zn_Variant::Compare gives for two values of a kind, from their codes.
int CompareCodes(std::uint16_t kind, std::uint64_t a, std::uint64_t b)
{
    switch (kind) {
    case Zn_Variant::Integer:
        return SignOf(static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b)));
    case Zn_Variant::Decimal: {
        const double difference = DecimalOf(a) - DecimalOf(b);
        return difference < 0 ? -1 : difference == 0 ? 0 : 1;
    }
    case Zn_Variant::Currency:
        return CompareAmounts(a, b);
    default:
        return a < b ? -1 : a > b;
    }
}

bool HasCode(std::uint16_t kind)
{
    return kind != Zn_Variant::Date && kind != Zn_Variant::Object;
}

} // namespace

SortKey::SortKey(std::vector<const Zn_Variant*> values, bool descending)
    : values_(std::move(values)), kinds_(values_.size()), codes_(values_.size()), descending_(descending)
{
    ReadPlain();
}

// Reads the kinds, and the codes of what is a number.
void SortKey::ReadPlain()
{
    int seen = -1;
    bool hasTexts = false, hasBytes = false;
    for (std::uint32_t row = 0, count = Count(); row < count; ++row) {
        const Zn_Variant* value = values_[row];
        if (!value)
            continue;
        const std::uint16_t kind = zn::IsAbsent(*value) ? std::uint16_t{Zn_Variant::Empty} : value->type;
        std::uint64_t code = 0;
        switch (kind) {
        case Zn_Variant::Integer:
            code = CodeOfInteger(value->ToInteger());
            break;
        case Zn_Variant::Decimal:
            code = CodeOfDecimal(value->ToDouble());
            break;
        case Zn_Variant::Currency:
            code = CodeOfAmount(*value->GetConstCurrency());
            break;
        case Zn_Variant::String:
            hasTexts = true;
            break;
        case Zn_Variant::Binary:
            hasBytes = true;
            break;
        default:
            break;
        }
        kinds_[row] = kind;
        codes_[row] = code;
        lowest_ = std::min(lowest_, code);
        highest_ = std::max(highest_, code);
        isMixed_ = isMixed_ || (seen >= 0 && seen != kind);
        seen = kind;
    }
    if (hasTexts)
        RankTexts();
    if (hasBytes)
        RankBytes();
}

void SortKey::RankTexts()
{
    std::vector<std::uint32_t> rows;
    for (std::uint32_t row = 0, count = Count(); row < count; ++row) {
        if (values_[row] && kinds_[row] == Zn_Variant::String)
            rows.push_back(row);
    }
    const auto textOf = [this](std::uint32_t row) { return values_[row]->GetConstStr()->GetView(); };
    highest_ = std::max(highest_, TextRanker(rows, textOf).Rank(codes_));
}

void SortKey::RankBytes()
{
    std::vector<std::uint32_t> rows;
    for (std::uint32_t row = 0, count = Count(); row < count; ++row) {
        if (values_[row] && kinds_[row] == Zn_Variant::Binary)
            rows.push_back(row);
    }
    const auto compare = [this](std::uint32_t a, std::uint32_t b) { return values_[a]->Compare(*values_[b]); };
    std::sort(rows.begin(), rows.end(), [&](std::uint32_t a, std::uint32_t b) { return compare(a, b) < 0; });
    std::uint64_t rank = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i > 0 && compare(rows[i - 1], rows[i]) != 0)
            ++rank;
        codes_[rows[i]] = rank;
    }
    highest_ = std::max(highest_, rank);
}

bool SortKey::IsOrder() const
{
    const auto first = std::find_if(values_.begin(), values_.end(), [](const Zn_Variant* value) { return value; });
    if (isMixed_ || first == values_.end())
        return !isMixed_;
    switch (kinds_[static_cast<std::size_t>(first - values_.begin())]) {
    case Zn_Variant::Integer:
        return highest_ - lowest_ <= INT32_MAX;
    case Zn_Variant::Decimal:
        return std::isfinite(DecimalOf(lowest_)) && std::isfinite(DecimalOf(highest_));
    case Zn_Variant::Currency: {
        const std::int64_t unit = Zn_Currency(1).GetRaw();
        const std::int64_t fraction = RawOf(lowest_) % unit;
        return !IsDifferenceWide(lowest_, highest_) &&
               std::all_of(values_.begin(), values_.end(), [&](const Zn_Variant* value) {
                   return !value || (value->GetConstCurrency()->GetRaw() - fraction) % unit == 0;
               });
    }
    case Zn_Variant::Date:
    case Zn_Variant::Object:
        return false;
    default:
        return true;
    }
}

int SortKey::CompareValues(std::uint32_t a, std::uint32_t b) const
{
    if (kinds_[a] != kinds_[b])
        return 1;
    return HasCode(kinds_[a]) ? CompareCodes(kinds_[a], codes_[a], codes_[b]) : values_[a]->Compare(*values_[b]);
}

int SortKey::Compare(std::uint32_t a, std::uint32_t b) const
{
    const bool hasA = values_[a], hasB = values_[b];
    const int order = hasA && hasB ? CompareValues(a, b) : hasA - hasB;
    return descending_ ? -SignOf(order) : order;
}

unsigned SortKey::SignsAgainst(std::uint32_t row, std::uint64_t low, std::uint64_t high) const
{
    const std::uint16_t kind = kinds_[row];
    const std::uint64_t code = codes_[row];
    if (!HasCode(kind))
        return kAnySign;
    if (kind == Zn_Variant::Integer) {
        // Differences wrap: from half the range on, above is below.
        const std::int64_t own = IntegerOf(code), first = IntegerOf(low), last = IntegerOf(high);
        constexpr std::int64_t kHalf = 0x80000000;
        const bool less = (last > own && first <= own + kHalf) || first <= own - kHalf;
        const bool more = (first < own && last > own - kHalf) || last > own + kHalf;
        return (less ? kLess : 0) | (more ? kMore : 0) | (first <= own && own <= last ? kSame : 0);
    }
    if (kind == Zn_Variant::Currency && IsDifferenceWide(std::min(low, code), std::max(high, code)))
        return kAnySign;
    const int most = CompareCodes(kind, code, low);
    const int least = CompareCodes(kind, code, high);
    return (least < 0 ? kLess : 0) | (most > 0 ? kMore : 0) | (least <= 0 && most >= 0 ? kSame : 0);
}

namespace {

// Replaces numbers by their ranks among themselves; returns the largest.
std::uint64_t MakeDense(std::vector<std::uint64_t>& numbers)
{
    std::vector<std::pair<std::uint64_t, std::uint32_t>> sorted(numbers.size());
    for (std::size_t i = 0; i < numbers.size(); ++i)
        sorted[i] = {numbers[i], static_cast<std::uint32_t>(i)};
    std::sort(sorted.begin(), sorted.end());
    std::uint64_t rank = 0;
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        if (i > 0 && sorted[i].first != sorted[i - 1].first)
            ++rank;
        numbers[sorted[i].second] = rank;
    }
    return rank;
}

// The places of a key's values among its possible ones: 0 for absent; returns the largest.
std::uint64_t ReadPlaces(const SortKey& key, std::vector<std::uint64_t>& places)
{
    const std::uint64_t lowest = key.LowestCode();
    const std::uint64_t most = key.HighestCode() < lowest ? 0 : key.HighestCode() - lowest + 1;
    for (std::uint32_t row = 0; row < places.size(); ++row) {
        const std::uint64_t place = key.IsAbsent(row) ? 0 : key.CodeOf(row) - lowest + 1;
        places[row] = key.IsDescending() ? most - place : place;
    }
    return most;
}

bool FitTogether(std::uint64_t most, std::uint64_t mostBehind)
{
    return mostBehind == UINT64_MAX ? most == 0 : most < UINT64_MAX / (mostBehind + 1);
}

} // namespace

std::uint64_t MakeRanks(const std::vector<SortKey>& keys, std::vector<std::uint64_t>& ranks)
{
    ranks.assign(keys.front().Count(), 0);
    std::uint64_t most = ReadPlaces(keys.front(), ranks);
    std::vector<std::uint64_t> places(keys.size() > 1 ? ranks.size() : 0);
    for (std::size_t k = 1; k < keys.size(); ++k) {
        std::uint64_t mostHere = ReadPlaces(keys[k], places);
        if (!FitTogether(most, mostHere))
            most = MakeDense(ranks);
        if (!FitTogether(most, mostHere))
            mostHere = MakeDense(places);
        for (std::size_t row = 0; row < ranks.size(); ++row)
            ranks[row] = ranks[row] * (mostHere + 1) + places[row];
        most = most * (mostHere + 1) + mostHere;
    }
    return most;
}

KeyedRows::KeyedRows(const std::vector<SortKey>& keys) : keys_(keys), rows_(keys.front().Count())
{
    std::iota(rows_.begin(), rows_.end(), 0u);
}

void KeyedRows::Exchange(int i, int j) noexcept
{
    std::swap(rows_[static_cast<std::size_t>(i)], rows_[static_cast<std::size_t>(j)]);
}

int KeyedRows::Compare(std::uint32_t a, std::uint32_t b) const
{
    for (const SortKey& key : keys_) {
        if (const int order = key.Compare(a, b))
            return order;
    }
    return 0;
}

KeyedRows::Summary KeyedRows::SummaryOf(int first, int end) const
{
    Summary summary;
    for (std::size_t k = 0; k < std::min(keys_.size(), kRanges); ++k) {
        Range& range = summary[k];
        for (int i = first; i < end; ++i) {
            const std::uint32_t row = PivotAt(i);
            if (keys_[k].IsAbsent(row)) {
                range.hasAbsent = true;
            } else if (const std::uint16_t kind = keys_[k].KindOf(row); kind == Zn_Variant::Empty) {
                range.hasEmpty = true;
            } else {
                const std::uint64_t code = keys_[k].CodeOf(row);
                range = Join(range, {kind, false, false, false, code, code});
            }
        }
    }
    return summary;
}

KeyedRows::Range KeyedRows::Join(const Range& a, const Range& b) noexcept
{
    const bool hasA = a.kind != Zn_Variant::Empty, hasB = b.kind != Zn_Variant::Empty;
    return {hasA ? a.kind : b.kind,   a.hasAbsent || b.hasAbsent,
            a.hasEmpty || b.hasEmpty, a.isMixed || b.isMixed || (hasA && hasB && a.kind != b.kind),
            std::min(a.low, b.low),   std::max(a.high, b.high)};
}

KeyedRows::Summary KeyedRows::Join(const Summary& a, const Summary& b) noexcept
{
    Summary joined;
    for (std::size_t k = 0; k < kRanges; ++k)
        joined[k] = Join(a[k], b[k]);
    return joined;
}

// What may come out when the pivot is compared by one key with rows of a range, direction included.
unsigned KeyedRows::SignsOf(const SortKey& key, Pivot pivot, const Range& range)
{
    const bool hasValues = range.kind != Zn_Variant::Empty;
    unsigned signs = 0;
    if (key.IsAbsent(pivot)) {
        signs = (range.hasAbsent ? SortKey::kSame : 0) | (range.hasEmpty || hasValues ? SortKey::kLess : 0);
    } else {
        const std::uint16_t kind = key.KindOf(pivot);
        if (range.hasAbsent)
            signs |= SortKey::kMore;
        if (range.hasEmpty)
            signs |= kind == Zn_Variant::Empty ? SortKey::kSame : SortKey::kMore;
        if (range.isMixed)
            signs |= SortKey::kAnySign;
        else if (hasValues)
            signs |= kind == range.kind ? key.SignsAgainst(pivot, range.low, range.high) : SortKey::kMore;
    }
    if (key.IsDescending())
        signs = (signs & SortKey::kSame) | (signs & SortKey::kLess ? SortKey::kMore : 0) |
                (signs & SortKey::kMore ? SortKey::kLess : 0);
    return signs;
}

bool KeyedRows::MayBe(unsigned sign, Pivot pivot, const Summary& summary) const
{
    for (std::size_t k = 0; k < std::min(keys_.size(), kRanges); ++k) {
        const unsigned signs = SignsOf(keys_[k], pivot, summary[k]);
        if (signs & sign)
            return true;
        if (!(signs & SortKey::kSame))
            return false;
    }
    return keys_.size() > kRanges;
}

} // namespace zn
