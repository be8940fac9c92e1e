#include "dataset/text_rank.h"

#include "dataset/radix_sort.h"
#include "foundation/prefetch.h"

#include <algorithm>
#include <numeric>

namespace zn {

std::size_t FewTexts::Add(std::size_t slot, std::u16string_view text)
{
    if (texts_.size() == kMost)
        return kMost;
    texts_.push_back(text);
    slots_[slot] = static_cast<std::uint32_t>(texts_.size());
    return texts_.size() - 1;
}

std::vector<std::uint64_t> FewTexts::Ranks() const
{
    std::vector<std::size_t> sorted(texts_.size());
    std::iota(sorted.begin(), sorted.end(), std::size_t{0});
    std::sort(sorted.begin(), sorted.end(), [this](std::size_t a, std::size_t b) { return texts_[a] < texts_[b]; });
    std::vector<std::uint64_t> ranks(sorted.size());
    for (std::size_t rank = 0; rank < sorted.size(); ++rank)
        ranks[sorted[rank]] = rank;
    return ranks;
}

std::uint64_t TextRanker::Rank(UnfilledVector<std::uint64_t>& ranks)
{
    std::uint64_t rank = 0;
    items_.resize(rows_.size());
    for (std::size_t i = 0; i < rows_.size(); ++i)
        items_[i].row = rows_[i];
    isFirst_.assign(items_.size(), false);
    waiting_ = {{0, items_.size(), 0}};
    while (!waiting_.empty()) {
        const Run run = waiting_.back();
        waiting_.pop_back();
        SortRun(run);
    }
    for (std::size_t i = 0; i < items_.size(); ++i) {
        rank += i > 0 && isFirst_[i];
        ranks[items_[i].row] = rank;
    }
    return rank;
}

// Reads so many units of each text of a run, packed into its key; false when one does not fit its bits.
template <int Units>
bool TextRanker::ReadHeads(const Run& run)
{
    constexpr int kBits = 64 / Units;
    constexpr std::size_t kAhead = 32; // texts that are fetched before they are read
    unsigned all = 0;
    for (std::size_t i = run.first; i < run.end; ++i) {
        Item& item = items_[i];
        Prefetch(texts_[items_[std::min(i + kAhead, run.end - 1)].row].data());
        const std::u16string_view text = texts_[item.row].substr(run.depth, Units);
        item.units = static_cast<std::uint32_t>(text.size());
        item.key = 0;
        for (const char16_t unit : text) {
            item.key = item.key << kBits | unit;
            all |= unit;
        }
        if (item.units < Units && item.units > 0)
            item.key <<= kBits * (Units - static_cast<int>(item.units));
        if (all >> kBits != 0)
            return false;
    }
    return true;
}

void TextRanker::SortRun(const Run& run)
{
    const std::size_t units = ReadHeads<8>(run) ? 8 : 4;
    if (units == 4)
        ReadHeads<4>(run);
    UnfilledVector<Item> spare;
    const auto begin = items_.begin() + static_cast<std::ptrdiff_t>(run.first);
    const auto end = items_.begin() + static_cast<std::ptrdiff_t>(run.end);
    if (!std::is_sorted(begin, end)) {
        if (run.end - run.first == items_.size())
            RadixSort(items_, spare).Run();
        else
            std::sort(begin, end);
    }
    for (std::size_t first = run.first; first < run.end;) {
        std::size_t next = first + 1;
        while (next < run.end && items_[next] == items_[first])
            ++next;
        isFirst_[first] = true;
        if (next - first > 1 && items_[first].units == units)
            waiting_.push_back({first, next, run.depth + units});
        first = next;
    }
}

} // namespace zn
