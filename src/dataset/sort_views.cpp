#include "dataset/sort_views.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace zn {
namespace {

// One key as values of one type see it. In rising order absent values have place 1, those of other types place 2 and
// the type's own the places from 3 on; place 0 and the last one are free.
class KeyView {
public:
    // The places that a value takes for equal to its own; none when the last is in front of the first.
    struct Window {
        std::uint64_t first, last;
    };

    KeyView(const SortKey& key, std::uint32_t kind) : key_(key), kind_(kind)
    {
        ReadCodes();
        last_ = kFirstOwn + codes_.size();
        places_.assign(key.Count(), PlaceOf(kOther));
        for (std::uint32_t row = 0; row < key.Count(); ++row) {
            if (key.IsAbsent(row))
                places_[row] = PlaceOf(kAbsent);
            else if (key.KindOf(row) == kind)
                places_[row] = PlaceOf(PlaceFrom(std::lower_bound(codes_.begin(), codes_.end(), key.CodeOf(row))));
        }
    }

    // Whether each value takes for equal what stands next to each other.
    bool CanBeTold() const
    {
        if (codes_.empty())
            return true;
        if (!SortKey::AreOrdered(kind_, codes_.front(), codes_.back()))
            return false;
        return kind_ != Zn_Variant::Currency || std::none_of(codes_.begin(), codes_.end(), [this](std::uint64_t code) {
                   return HasAbove(code, 1, SortKey::kLeastReadAs0 - 1) &&
                          HasAbove(code, SortKey::kLeastReadAs0, SortKey::kMostReadAs0);
               });
    }
    const UnfilledVector<std::uint64_t>& Places() const noexcept { return places_; }
    std::uint64_t LastPlace() const noexcept { return last_; }
    // Of a row whose value is of the type or absent.
    Window WindowOf(std::uint32_t row) const
    {
        if (key_.IsAbsent(row))
            return {places_[row], places_[row]};
        auto [first, last] = key_.EqualCodes(row);
        if (kind_ == Zn_Variant::Currency && HasAbove(first, SortKey::kLeastReadAs0, SortKey::kMostReadAs0))
            last = first + std::min(SortKey::kMostReadAs0, UINT64_MAX - first);
        const std::uint64_t from = PlaceFrom(std::lower_bound(codes_.begin(), codes_.end(), first));
        const std::uint64_t to = PlaceFrom(std::upper_bound(codes_.begin(), codes_.end(), last)) - 1;
        return key_.IsDescending() ? Window{PlaceOf(to), PlaceOf(from)} : Window{from, to};
    }

private:
    static constexpr std::uint64_t kAbsent = 1, kOther = 2, kFirstOwn = 3;

    // Whether there are values at a distance above a code. Codes of one type are less than half of all numbers apart.
    bool HasAbove(std::uint64_t code, std::uint64_t least, std::uint64_t most) const
    {
        const auto next = std::lower_bound(codes_.begin(), codes_.end(), code, [&](std::uint64_t found, std::uint64_t) {
            return found < code || found - code < least;
        });
        return next != codes_.end() && *next - code <= most;
    }
    // The different codes of the type's values in order.
    void ReadCodes()
    {
        for (std::uint32_t row = 0; row < key_.Count(); ++row) {
            if (key_.KindOf(row) == kind_)
                codes_.push_back(key_.CodeOf(row));
        }
        std::sort(codes_.begin(), codes_.end());
        codes_.erase(std::unique(codes_.begin(), codes_.end()), codes_.end());
    }
    std::uint64_t PlaceOf(std::uint64_t rising) const noexcept { return key_.IsDescending() ? last_ - rising : rising; }
    std::uint64_t PlaceFrom(std::vector<std::uint64_t>::const_iterator code) const noexcept
    {
        return kFirstOwn + static_cast<std::uint64_t>(code - codes_.begin());
    }

    const SortKey& key_;
    const std::uint32_t kind_;
    std::vector<std::uint64_t> codes_;
    UnfilledVector<std::uint64_t> places_;
    std::uint64_t last_ = 0;
};

} // namespace

std::optional<ViewedRows> ViewedRows::Make(const std::vector<SortKey>& keys)
{
    ViewedRows rows(keys.front().Count());
    for (const SortKey& key : keys) {
        if (!rows.Append(key, &key == &keys.back()))
            return std::nullopt;
    }
    return rows;
}

ViewedRows::ViewedRows(std::uint32_t rows)
    : rows_(rows), pivots_(rows), views_{Ranks{UnfilledVector<std::uint64_t>(rows, 0), 0}}
{
    std::iota(rows_.begin(), rows_.end(), 0u);
}

// Takes one more key into account, for rows that are equal so far; false when it can't.
bool ViewedRows::Append(const SortKey& key, bool isLast)
{
    const std::vector<std::uint32_t> kinds = key.Kinds(kMostViews);
    if (views_.size() * kinds.size() > kMostViews)
        return false;
    std::vector<KeyView> seen;
    std::uint64_t lastPlace = 0;
    for (const std::uint32_t kind : kinds) {
        seen.emplace_back(key, kind);
        if (!seen.back().CanBeTold())
            return false;
        lastPlace = std::max(lastPlace, seen.back().LastPlace());
    }
    if (!MakeRoom(lastPlace))
        return false;
    std::vector<Ranks> views;
    for (const Ranks& before : views_) {
        for (const KeyView& view : seen)
            views.emplace_back(before).Append(view.Places(), lastPlace);
    }
    views_ = std::move(views);
    for (std::uint32_t row = 0; row < key.Count(); ++row) {
        const auto kind = std::find(kinds.begin(), kinds.end(), key.KindOf(row));
        const auto view = static_cast<std::size_t>(kind == kinds.end() ? 0 : kind - kinds.begin());
        const auto [first, last] = seen[view].WindowOf(row);
        Pivot& pivot = pivots_[row];
        const bool isPlace = pivot.first == pivot.last;
        if (isPlace && last > first && !isLast)
            return false;
        pivot.view = pivot.view * kinds.size() + view;
        pivot.first = pivot.first * (lastPlace + 1) + (isPlace ? first : 0);
        pivot.last = pivot.last * (lastPlace + 1) + (isPlace ? last : lastPlace);
        const std::uint64_t own = views_[pivot.view].of[row];
        hasWindows_ = hasWindows_ || pivot.first != own || pivot.last != own;
    }
    return true;
}

// Sees to it that one more key with places up to a last one fits behind those that there are.
bool ViewedRows::MakeRoom(std::uint64_t lastPlace)
{
    const auto fits = [&] {
        return std::all_of(views_.begin(), views_.end(), [&](const Ranks& view) { return view.HasRoomFor(lastPlace); });
    };
    if (!fits() && IsOrder()) {
        views_.front().Condense();
        for (std::size_t row = 0; row < pivots_.size(); ++row)
            pivots_[row].first = pivots_[row].last = views_.front().of[row];
    }
    return fits();
}

void ViewedRows::Exchange(int i, int j) noexcept
{
    std::swap(rows_[static_cast<std::size_t>(i)], rows_[static_cast<std::size_t>(j)]);
}

ViewedRows::Summary ViewedRows::SummaryOf(int first, int end) const noexcept
{
    Summary summary;
    for (std::size_t k = 0; k < views_.size(); ++k) {
        for (int i = first; i < end; ++i) {
            const std::uint64_t place = views_[k].of[Row(i)];
            summary[k] = {std::min(summary[k].low, place), std::max(summary[k].high, place)};
        }
    }
    return summary;
}

ViewedRows::Summary ViewedRows::Join(const Summary& a, const Summary& b) noexcept
{
    Summary joined;
    for (std::size_t k = 0; k < kMostViews; ++k)
        joined[k] = {std::min(a[k].low, b[k].low), std::max(a[k].high, b[k].high)};
    return joined;
}

} // namespace zn
