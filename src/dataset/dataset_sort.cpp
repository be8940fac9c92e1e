// Sorting the stored rows.

#include "Zn_Dataset.h"

#include "Zn_StrList.h"
#include "dataset/sort_keys.h"
#include "dataset/sort_partition.h"
#include "dataset/sort_ranks.h"
#include "foundation/vector_list.h"

#include <algorithm>
#include <vector>

namespace {

constexpr int kMostKeys = 64;

// Direction named by the character behind the colon.
int DirectionOf(char16_t letter, int otherwise)
{
    switch (letter) {
    case u'D':
    case u'd':
        return -1;
    case u'A':
    case u'a':
        return 1;
    default:
        return otherwise;
    }
}

template <class Rank>
std::vector<std::int32_t> OrderOfRanks(const std::vector<std::uint64_t>& ranks)
{
    zn::RankedRows<Rank> rows(ranks);
    const int count = static_cast<int>(ranks.size());
    zn::PartitionSort(rows, count).Run();
    std::vector<std::int32_t> order(ranks.size());
    std::transform(rows.Items().begin(), rows.Items().end(), order.begin(),
                   [](const auto& item) { return static_cast<std::int32_t>(item.row); });
    return order;
}

// The rows' numbers in their new order.
std::vector<std::int32_t> SortedOrder(const std::vector<zn::SortKey>& keys)
{
    if (std::all_of(keys.begin(), keys.end(), [](const zn::SortKey& key) { return key.IsOrder(); })) {
        std::vector<std::uint64_t> ranks;
        const std::uint64_t most = zn::MakeRanks(keys, ranks);
        return most <= UINT32_MAX ? OrderOfRanks<std::uint32_t>(ranks) : OrderOfRanks<std::uint64_t>(ranks);
    }
    zn::KeyedRows rows(keys);
    zn::PartitionSort(rows, static_cast<int>(rows.Rows().size())).Run();
    return {rows.Rows().begin(), rows.Rows().end()};
}

} // namespace

long Zn_Dataset::Sort(const char16_t* spec, int ascending)
{
    Zn_WStrList items;
    if (items.Parse(spec, u",", u'\\') == 0)
        return -1;
    const int direction = ascending == 1 ? 1 : -1;
    int keys[kMostKeys];
    int dirs[kMostKeys];
    const int count = std::min(items.Count(), kMostKeys);
    for (int k = 0; k < count; ++k) {
        const std::u16string_view item = items.GetItemNN(k).GetView();
        const std::size_t colon = item.find(u':');
        const bool hasDirection = colon != item.npos && colon > 0;
        keys[k] = GetColIndex(hasDirection ? item.substr(0, colon) : item);
        dirs[k] = hasDirection && colon + 1 < item.size() ? DirectionOf(item[colon + 1], direction) : direction;
    }
    if (_qsort(keys, count, 0, rows_.Count() - 1, dirs) < 0)
        return -1;
    if (rowMapActive_)
        ShowUnhidden();
    return 0;
}

int Zn_Dataset::_CompareRecord(int keys[], int nkeys, int a, int b, int dirs[]) const
{
    if (a >= b)
        return 0;
    for (int k = 0; k < nkeys; ++k) {
        if (keys[k] == -1)
            continue;
        const Zn_Variant* left = GetColumnNF(a, keys[k]);
        const Zn_Variant* right = GetColumnNF(b, keys[k]);
        const int order = left && right ? left->Compare(*right) : (left != nullptr) - (right != nullptr);
        if (order != 0)
            return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{dirs[k]} * order, INT32_MIN, INT32_MAX));
    }
    return 0;
}

std::vector<const Zn_Variant*> Zn_Dataset::ColumnValues(int col, int first, int end) const
{
    std::vector<const Zn_Variant*> values(static_cast<std::size_t>(end - first));
    for (int row = first; row < end; ++row)
        values[static_cast<std::size_t>(row - first)] = GetColumnNF(row, col);
    return values;
}

long Zn_Dataset::_qsort(int keys[], int nkeys, int lo, int hi, int dirs[])
{
    lo = std::max(lo, 0);
    hi = std::min(hi, rows_.Count() - 1);
    bool done = lo >= hi;
    const bool enough = done || zn::Guarded([&] {
                            std::vector<zn::SortKey> read;
                            for (int k = 0; k < nkeys; ++k) {
                                if (keys[k] != -1)
                                    read.emplace_back(ColumnValues(keys[k], lo, hi + 1), dirs[k] < 0);
                            }
                            done = read.empty() || rows_.Arrange(lo, SortedOrder(read));
                        });
    return enough && done ? 0 : -1;
}
