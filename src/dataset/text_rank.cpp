#include "dataset/text_rank.h"

#include "dataset/radix_sort.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace zn {
namespace {

constexpr std::size_t kFew = 512;
constexpr std::size_t kSample = 1024;

// A table of a few texts, each with the number under which it came in.
class FewTexts {
public:
    // The text's number; kFew when there are too many.
    std::size_t Find(std::u16string_view text)
    {
        for (std::size_t at = HashOf(text) % kSlots;; at = (at + 1) % kSlots) {
            std::uint32_t& slot = slots_[at];
            if (slot == 0) {
                if (texts_.size() == kFew)
                    return kFew;
                texts_.push_back(text);
                slot = static_cast<std::uint32_t>(texts_.size());
            }
            if (texts_[slot - 1] == text)
                return slot - 1;
        }
    }
    const std::vector<std::u16string_view>& Texts() const noexcept { return texts_; }

private:
    static constexpr std::size_t kSlots = 4 * kFew;

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

    std::vector<std::uint32_t> slots_ = std::vector<std::uint32_t>(kSlots);
    std::vector<std::u16string_view> texts_;
};

} // namespace

std::uint64_t TextRanker::Rank(std::vector<std::uint64_t>& ranks)
{
    std::uint64_t rank = 0;
    if (RankFew(ranks, rank))
        return rank;
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

// False when there are many different texts; a sample tells that early.
bool TextRanker::RankFew(std::vector<std::uint64_t>& ranks, std::uint64_t& most) const
{
    FewTexts few;
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        const std::size_t number = few.Find(texts_[rows_[i]]);
        if (number == kFew || (i == kSample && few.Texts().size() > kSample / 4))
            return false;
        ranks[rows_[i]] = number;
    }
    std::vector<std::uint32_t> sorted(few.Texts().size());
    for (std::uint32_t number = 0; number < sorted.size(); ++number)
        sorted[number] = number;
    std::sort(sorted.begin(), sorted.end(),
              [&](std::uint32_t a, std::uint32_t b) { return few.Texts()[a] < few.Texts()[b]; });
    std::vector<std::uint64_t> rankOf(sorted.size());
    for (std::size_t rank = 0; rank < sorted.size(); ++rank)
        rankOf[sorted[rank]] = rank;
    for (const std::uint32_t row : rows_)
        ranks[row] = rankOf[static_cast<std::size_t>(ranks[row])];
    most = sorted.empty() ? 0 : sorted.size() - 1;
    return true;
}

// Reads so many units of each text of a run, packed into its key; false when one does not fit its bits.
template <int Units>
bool TextRanker::ReadHeads(const Run& run)
{
    constexpr int kBits = 64 / Units;
    unsigned all = 0;
    for (std::size_t i = run.first; i < run.end; ++i) {
        Item& item = items_[i];
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
    std::vector<Item> spare;
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
