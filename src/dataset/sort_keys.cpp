#include "dataset/sort_keys.h"

#include "values/variant_types.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace zn {
namespace {

constexpr std::uint64_t kTop = std::uint64_t{1} << 63;

std::int64_t IntegerOf(std::uint64_t code)
{
    return static_cast<std::int64_t>(code) - 0x80000000;
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
    // A difference of 0.01 to 0.0999 below reads as 0.
    return SignOf((Zn_Currency::FromRaw(RawOf(a)) - Zn_Currency::FromRaw(RawOf(b))).ToDouble());
}

// What Zn_Variant::Compare gives for two values of a kind, from their codes.
int CompareCodes(std::uint32_t kind, std::uint64_t a, std::uint64_t b)
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

bool HasCode(std::uint32_t kind)
{
    return kind != Zn_Variant::Date && kind != Zn_Variant::Object;
}

} // namespace

void SortKey::SetAny(std::uint32_t row, const Zn_Variant* value)
{
    const std::uint32_t kind = !value ? kAbsent : zn::IsAbsent(*value) ? std::uint32_t{Zn_Variant::Empty} : value->type;
    if (kind != kind_ || !kinds_.empty())
        SetKind(row, kind);
    if (!value)
        codes_[row] = 0;
    else if (value->type == Zn_Variant::String)
        SetText(row, value->GetConstStr()->GetView());
    else
        Note(row, ReadCode(row, *value));
}

void SortKey::SetKind(std::uint32_t row, std::uint32_t kind)
{
    if (row == 0) {
        kind_ = kind;
    } else if (kinds_.empty()) {
        kinds_.resize(Count());
        std::fill_n(kinds_.begin(), row, kind_);
    }
    if (!kinds_.empty())
        kinds_[row] = kind;
    if (kind == kAbsent)
        hasAbsent_ = true;
    else if (kind_ == kAbsent)
        kind_ = kind;
    else
        isMixed_ = isMixed_ || kind != kind_;
}

// The code of a value that is no text; bytes get theirs when all are known.
std::uint64_t SortKey::ReadCode(std::uint32_t row, const Zn_Variant& value)
{
    switch (value.type) {
    case Zn_Variant::Integer:
        return CodeOfInteger(value.ToInteger());
    case Zn_Variant::Decimal:
        return CodeOfDecimal(value.ToDouble());
    case Zn_Variant::Currency:
        return CodeOfAmount(*value.GetConstCurrency());
    case Zn_Variant::Binary:
    case Zn_Variant::Date:
    case Zn_Variant::Object:
        values_.resize(Count());
        values_[row] = &value;
        return value.type == Zn_Variant::Date ? CodeOfDecimal(zn::DateReadAsAmount(*value.GetConstDateTime())) : 0;
    default:
        return 0;
    }
}

// From a row on there are too many texts for their numbers: those in front of it are looked up.
void SortKey::KeepTexts(std::uint32_t end)
{
    texts_.resize(Count());
    for (std::uint32_t row = 0; row < end; ++row) {
        if (KindOf(row) == Zn_Variant::String)
            texts_[row] = few_.TextOf(static_cast<std::size_t>(codes_[row]));
    }
}

void SortKey::Finish()
{
    RankTexts();
    if (!values_.empty())
        RankBytes();
}

void SortKey::RankTexts()
{
    std::vector<std::uint32_t> rows;
    rows.reserve(texts_.size());
    const std::vector<std::uint64_t> ranks = few_.Ranks();
    for (std::uint32_t row = 0; row < Count() && !ranks.empty(); ++row) {
        if (KindOf(row) != Zn_Variant::String)
            continue;
        if (texts_.empty())
            codes_[row] = ranks[static_cast<std::size_t>(codes_[row])];
        else
            rows.push_back(row);
    }
    if (!rows.empty())
        highest_ = std::max(highest_, TextRanker(texts_, rows).Rank(codes_));
}

void SortKey::RankBytes()
{
    std::vector<std::uint32_t> rows;
    for (std::uint32_t row = 0; row < Count(); ++row) {
        if (KindOf(row) == Zn_Variant::Binary)
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

std::vector<std::uint32_t> SortKey::Kinds(std::size_t most) const
{
    std::vector<std::uint32_t> found;
    for (std::uint32_t row = 0; row < Count() && found.size() <= most; ++row) {
        if (!IsAbsent(row) && std::find(found.begin(), found.end(), KindOf(row)) == found.end())
            found.push_back(KindOf(row));
        if (kinds_.empty())
            break;
    }
    if (found.empty())
        found.push_back(Zn_Variant::Empty);
    return found;
}

bool SortKey::IsOrder() const
{
    if (isMixed_ || !AreOrdered(kind_, lowest_, highest_))
        return false;
    switch (kind_) {
    case Zn_Variant::Decimal:
        return std::isfinite(DecimalOf(lowest_)) && std::isfinite(DecimalOf(highest_));
    case Zn_Variant::Currency:
        for (std::uint32_t row = 0; row < Count(); ++row) {
            if (!IsAbsent(row) && (codes_[row] - lowest_) % (kMostReadAs0 + 1) != 0)
                return false;
        }
        return true;
    default:
        return HasCode(kind_);
    }
}

bool SortKey::AreOrdered(std::uint32_t kind, std::uint64_t low, std::uint64_t high)
{
    switch (kind) {
    case Zn_Variant::Integer:
        return high - low <= INT32_MAX;
    case Zn_Variant::Currency:
        return !IsDifferenceWide(low, high);
    default:
        return kind != Zn_Variant::Object;
    }
}

std::pair<std::uint64_t, std::uint64_t> SortKey::EqualCodes(std::uint32_t row) const
{
    const std::uint64_t code = codes_[row];
    switch (KindOf(row)) {
    case Zn_Variant::Decimal: {
        // The difference from an infinity of the same sign, and to what is not a number, counts as above.
        const double value = DecimalOf(code);
        if (code == 0 || value > std::numeric_limits<double>::max())
            return {UINT64_MAX, UINT64_MAX - 1};
        return {std::isfinite(value) ? code : code + 1, code};
    }
    case Zn_Variant::Date: {
        const std::uint64_t days = CodeOfDecimal(values_[row]->GetConstDateTime()->ToDouble());
        return {days, days};
    }
    default:
        return {code, code};
    }
}

int SortKey::CompareValues(std::uint32_t a, std::uint32_t b) const
{
    const std::uint32_t kind = KindOf(a);
    if (kind != KindOf(b))
        return 1;
    return HasCode(kind) ? CompareCodes(kind, codes_[a], codes_[b]) : values_[a]->Compare(*values_[b]);
}

int SortKey::Compare(std::uint32_t a, std::uint32_t b) const
{
    const bool hasA = !IsAbsent(a), hasB = !IsAbsent(b);
    const int order = hasA && hasB ? CompareValues(a, b) : hasA - hasB;
    return descending_ ? -SignOf(order) : order;
}

unsigned SortKey::SignsAgainst(std::uint32_t row, std::uint64_t low, std::uint64_t high) const
{
    const std::uint32_t kind = KindOf(row);
    const std::uint64_t code = codes_[row];
    if (kind == Zn_Variant::Object)
        return kAnySign;
    if (kind == Zn_Variant::Integer) {
        // Differences wrap: from half the range on, above is below.
        const std::int64_t own = IntegerOf(code), first = IntegerOf(low), last = IntegerOf(high);
        constexpr std::int64_t kHalf = 0x80000000;
        const bool less = (last > own && first <= own + kHalf) || first <= own - kHalf;
        const bool more = (first < own && last > own - kHalf) || last > own + kHalf;
        return (less ? kLess : 0) | (more ? kMore : 0) | (first <= own && own <= last ? kSame : 0);
    }
    if (kind == Zn_Variant::Currency) {
        if (IsDifferenceWide(std::min(low, code), std::max(high, code)))
            return kAnySign;
        const bool same = high >= code && (low <= code || low - code <= kMostReadAs0);
        return (high > code ? kLess : 0) | (low < code ? kMore : 0) | (same ? kSame : 0);
    }
    const auto [first, last] = EqualCodes(row);
    return (high > last ? kLess : 0) | (low < first ? kMore : 0) | (low <= last && high >= first ? kSame : 0);
}

namespace {

// The places of a key's values among its possible ones, an absent one first.
Ranks PlacesOf(SortKey& key)
{
    Ranks places;
    const std::uint64_t lowest = key.LowestCode(), first = key.HasAbsent() ? 1 : 0;
    if (key.HighestCode() < lowest) { // all are absent
        places.of.assign(key.Count(), 0);
        return places;
    }
    places.most = key.HighestCode() - lowest + first;
    places.of = key.TakeCodes();
    for (std::uint32_t row = 0; row < places.of.size(); ++row) {
        const std::uint64_t place = first && key.IsAbsent(row) ? 0 : places.of[row] - lowest + first;
        places.of[row] = key.IsDescending() ? places.most - place : place;
    }
    return places;
}

} // namespace

Ranks MakeRanks(std::vector<SortKey> keys)
{
    Ranks ranks = PlacesOf(keys.front());
    for (std::size_t k = 1; k < keys.size(); ++k) {
        Ranks places = PlacesOf(keys[k]);
        if (!ranks.HasRoomFor(places.most))
            ranks.Condense();
        if (!ranks.HasRoomFor(places.most))
            places.Condense();
        ranks.Append(places.of, places.most);
    }
    return ranks;
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
            } else if (const std::uint32_t kind = keys_[k].KindOf(row); kind == Zn_Variant::Empty) {
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
        const std::uint32_t kind = key.KindOf(pivot);
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
