#include "dataset/sort_ranks.h"

#include "dataset/radix_sort.h"

#include <algorithm>
#include <bit>

namespace zn {
namespace {

struct LongItem {
    std::uint64_t key;
    std::uint32_t row;
    bool operator<(const LongItem& other) const noexcept { return key < other.key; }
};

// Puts the rows with their numbers into items, in order; the spare ones become as many.
template <class Items>
void SortInto(Items& items, Items& spare, const UnfilledVector<std::uint64_t>& numbers)
{
    items.resize(numbers.size());
    for (std::size_t row = 0; row < numbers.size(); ++row) {
        items[row].key = static_cast<decltype(items[row].key)>(numbers[row]);
        items[row].row = static_cast<std::uint32_t>(row);
    }
    RadixSort(items, spare).Run();
}

// Numbers that are few enough to be counted one by one.
bool AreCountable(const Ranks& ranks)
{
    return ranks.most / 2 < ranks.of.size();
}

// How many rows have a lower number, for each number.
std::vector<std::uint32_t> StartsOf(const Ranks& ranks)
{
    std::vector<std::uint32_t> starts(static_cast<std::size_t>(ranks.most) + 2);
    for (const std::uint64_t number : ranks.of)
        ++starts[static_cast<std::size_t>(number) + 1];
    for (std::size_t k = 1; k < starts.size(); ++k)
        starts[k] += starts[k - 1];
    return starts;
}

// Places of some rows in a stretch, by their distance from its end, in the order in which they were taken.
class Collected {
public:
    static constexpr int kMost = 256;

    int from = 0;

    void Begin(int at) noexcept
    {
        from = at;
        count_ = done_ = 0;
    }
    void Take(int distance, bool taken) noexcept
    {
        distances_[count_] = static_cast<std::uint8_t>(distance);
        count_ += taken;
    }
    bool IsDone() const noexcept { return done_ == count_; }
    int Next() noexcept { return distances_[done_++]; }

private:
    std::uint8_t distances_[kMost]; // NOLINT(cppcoreguidelines-pro-type-member-init): read where written
    unsigned count_ = 0;
    unsigned done_ = 0;
};

constexpr int kBlock = Collected::kMost / 2;

} // namespace

void Ranks::Condense()
{
    if (of.empty())
        return;
    std::uint64_t rank = 0;
    if (AreCountable(*this)) {
        std::vector<std::uint32_t> numbers = StartsOf(*this);
        for (std::size_t k = 0; k + 1 < numbers.size(); ++k) {
            const bool isThere = numbers[k] != numbers[k + 1];
            numbers[k] = static_cast<std::uint32_t>(rank);
            rank += isThere;
        }
        for (std::uint64_t& number : of)
            number = numbers[static_cast<std::size_t>(number)];
        most = rank - 1;
        return;
    }
    UnfilledVector<LongItem> sorted, spare;
    SortInto(sorted, spare, of);
    for (std::size_t i = 0; i < sorted.size(); ++i) {
        rank += i > 0 && sorted[i].key != sorted[i - 1].key;
        of[sorted[i].row] = rank;
    }
    most = rank;
}

void Ranks::Append(const UnfilledVector<std::uint64_t>& behind, std::uint64_t mostBehind) noexcept
{
    for (std::size_t row = 0; row < of.size(); ++row)
        of[row] = of[row] * (mostBehind + 1) + behind[row];
    most = most * (mostBehind + 1) + mostBehind;
}

RankedRows::RankedRows(const Ranks& ranks) : equal_(ranks.of.size() / 64 + 1)
{
    if (AreCountable(ranks))
        RankByCounting(ranks);
    else
        RankBySorting(ranks);
}

void RankedRows::RankByCounting(const Ranks& ranks)
{
    items_.resize(ranks.of.size());
    const std::vector<std::uint32_t> starts = StartsOf(ranks);
    for (std::size_t k = 0; k + 1 < starts.size(); ++k)
        MarkEqual(starts[k], starts[k + 1]);
    CountEqual();
    for (std::size_t row = 0; row < items_.size(); ++row) {
        const std::uint32_t rank = starts[static_cast<std::size_t>(ranks.of[row])];
        items_[hasEqual_ ? row : rank] = {rank, static_cast<std::uint32_t>(row)};
    }
}

void RankedRows::RankBySorting(const Ranks& ranks)
{
    if (ranks.most <= UINT32_MAX) {
        SortInto(moved_, items_, ranks.of);
        RankSorted(moved_);
    } else {
        UnfilledVector<LongItem> sorted, spare;
        SortInto(sorted, spare, ranks.of);
        items_.resize(sorted.size());
        RankSorted(sorted);
    }
}

template <class Items>
void RankedRows::RankSorted(const Items& sorted)
{
    for (std::size_t first = 0; first < sorted.size();) {
        std::size_t end = first + 1;
        while (end < sorted.size() && sorted[end].key == sorted[first].key)
            ++end;
        MarkEqual(first, end);
        first = end;
    }
    CountEqual();
    for (std::size_t i = 0, first = 0; i < sorted.size(); ++i) {
        if (sorted[i].key != sorted[first].key)
            first = i;
        items_[hasEqual_ ? sorted[i].row : i] = {static_cast<std::uint32_t>(first), sorted[i].row};
    }
}

// Notes that the rows which get the places from first up to end are equal.
void RankedRows::MarkEqual(std::size_t first, std::size_t end)
{
    for (std::size_t place = first; place + 1 < end; ++place)
        equal_[place / 64].bits |= std::uint64_t{1} << place % 64;
}

void RankedRows::CountEqual()
{
    std::uint32_t before = 0;
    for (EqualPlaces& places : equal_) {
        places.before = before;
        before += static_cast<std::uint32_t>(std::popcount(places.bits));
    }
    hasEqual_ = before > 0;
}

UnfilledVector<std::int32_t> RankedRows::Order() const
{
    UnfilledVector<std::int32_t> order(items_.size());
    std::transform(items_.begin(), items_.end(), order.begin(),
                   [](const Item& item) { return static_cast<std::int32_t>(item.row); });
    return order;
}

// How many places in front of one have rows that are equal to the next.
int RankedRows::EqualBefore(int place) const noexcept
{
    const auto at = static_cast<std::size_t>(place);
    const EqualPlaces& places = equal_[at / 64];
    return static_cast<int>(places.before) + std::popcount(places.bits & ((std::uint64_t{1} << at % 64) - 1));
}

// Sorts a segment whose rows are all different and leaves one alone whose rows are all equal. Of two kinds of rows, a
// partition around a lower one cuts those off that stand in front, and one around an upper one exchanges it with the
// last lower one and cuts off a row at the end: in all, both kinds are exchanged from the outside in.
bool RankedRows::Finish(int low, int high)
{
    const int equal = EqualBefore(high) - EqualBefore(low);
    if (equal == high - low)
        return true;
    if (equal == 0) {
        const auto first = items_.begin() + low;
        moved_.assign(first, first + (high - low + 1));
        // Rows of one rank may be on both sides of a segment's end.
        for (const Item& item : moved_)
            At(std::max(static_cast<int>(item.key), low)) = item;
        return true;
    }
    if (equal == high - low - 1) {
        int other = low + 1;
        while (At(other).key == At(low).key)
            ++other;
        const Pivot lower = std::min(At(low).key, At(other).key);
        int i = low, j = high;
        ExchangeRows(lower, lower + 1, low, high, i, j);
        return true;
    }
    return false;
}

// As ExchangeAround, with rows above one rank going to the right and those below another to the left. Places are
// collected by the block, since a jump for each row would be guessed wrong half of the time.
void RankedRows::ExchangeRows(Pivot notAfter, Pivot notBefore, int low, int high, int& i, int& j)
{
    int left = i, right = j; // no row from the one to the other has been looked at
    Collected after, before; // places from `after.from` up and from `before.from` down
    for (;;) {
        if (after.IsDone()) {
            if (right - left + 1 < kBlock)
                break;
            after.Begin(left);
            for (int k = 0; k < kBlock; ++k)
                after.Take(k, IsAfter(notAfter, left + k));
            left += kBlock;
        }
        if (before.IsDone()) {
            if (right - left + 1 < kBlock)
                break;
            before.Begin(right);
            for (int k = 0; k < kBlock; ++k)
                before.Take(k, IsBefore(notBefore, right - k));
            right -= kBlock;
        }
        while (!after.IsDone() && !before.IsDone())
            Exchange(after.from + after.Next(), before.from - before.Next());
    }
    // What is left begins at the first row that still has to go to the right, if any is known, and ends at the last
    // that has to go to the left.
    left = after.IsDone() ? left : after.from + after.Next();
    right = before.IsDone() ? right : before.from - before.Next();
    after.Begin(left);
    before.Begin(right);
    for (int k = 0; k <= right - left; ++k) {
        after.Take(k, IsAfter(notAfter, left + k));
        before.Take(k, IsBefore(notBefore, right - k));
    }
    i = left, j = right;
    while (!after.IsDone() && !before.IsDone()) {
        const int from = after.from + after.Next(), to = before.from - before.Next();
        if (from >= to)
            break;
        Exchange(from, to);
        i = from, j = to;
    }
    while (i < high && !IsAfter(notAfter, i))
        ++i;
    while (j > low && !IsBefore(notBefore, j))
        --j;
}

RankedRows::Summary RankedRows::SummaryOf(int first, int end) const noexcept
{
    Summary summary;
    for (int i = first; i < end; ++i)
        summary = Join(summary, {At(i).key, At(i).key});
    return summary;
}

} // namespace zn
