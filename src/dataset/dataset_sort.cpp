// Sorting the stored rows.

#include "Zn_Dataset.h"

#include "Zn_StrList.h"
#include "dataset/row_map.h"
#include "dataset/row_values.h"
#include "dataset/sort_keys.h"
#include "dataset/sort_partition.h"
#include "dataset/sort_ranks.h"
#include "dataset/sort_views.h"
#include "foundation/unfilled.h"
#include "foundation/vector_list.h"

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
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

using Order = zn::UnfilledVector<std::int32_t>;

// The numbers of rows in the order that their ranks give them; none when they stand so already.
Order OrderOf(const zn::Ranks& ranks)
{
    const auto& of = ranks.of;
    if (std::is_sorted(of.begin(), of.end()))
        return {};
    if (std::adjacent_find(of.begin(), of.end(), std::less_equal()) == of.end()) {
        Order order(of.size());
        std::iota(order.rbegin(), order.rend(), 0);
        return order;
    }
    zn::RankedRows rows(ranks);
    if (rows.HasEqual())
        zn::PartitionSort(rows, static_cast<int>(of.size())).Run();
    return rows.Order();
}

template <class Rows>
Order OrderByPartitions(Rows& rows)
{
    zn::PartitionSort(rows, static_cast<int>(rows.Rows().size())).Run();
    return {rows.Rows().begin(), rows.Rows().end()};
}

// The rows' numbers in their new order.
Order SortedOrder(std::vector<zn::SortKey> keys)
{
    if (std::all_of(keys.begin(), keys.end(), [](const zn::SortKey& key) { return key.IsOrder(); }))
        return OrderOf(zn::MakeRanks(std::move(keys)));
    if (std::optional<zn::ViewedRows> viewed = zn::ViewedRows::Make(keys))
        return viewed->IsOrder() ? OrderOf(viewed->Order()) : OrderByPartitions(*viewed);
    zn::KeyedRows keyed(keys);
    return OrderByPartitions(keyed);
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
        const bool hasDirection = colon != std::u16string_view::npos && colon > 0;
        keys[k] = GetColIndex(hasDirection ? item.substr(0, colon) : item);
        dirs[k] = hasDirection && colon + 1 < item.size() ? DirectionOf(item[colon + 1], direction) : direction;
    }
    if (_qsort(keys, count, 0, rows_.Count() - 1, dirs) < 0)
        return -1;
    if (rowMapActive_)
        ShowUnhidden();
    return 0;
}

int Zn_Dataset::_CompareRecord(const int keys[], int nkeys, int a, int b, const int dirs[]) const
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

zn::SortKey Zn_Dataset::ReadKey(int col, bool descending, int lo, int hi) const
{
    zn::SortKey key(static_cast<std::uint32_t>(hi - lo + 1), descending);
    const auto set = [&key](int k, const Zn_Variant* value) { key.Set(static_cast<std::uint32_t>(k), value); };
    if (col < columns_.Count()) {
        zn::ForEachValue(rows_, col, lo, hi + 1, RawRows(),
                         [&](int k, const Zn_Record*, const Zn_Variant* value) { set(k, value); });
    } else {
        for (int row = lo; row <= hi; ++row)
            set(row - lo, GetColumnNF(row, col));
    }
    key.Finish();
    return key;
}

long Zn_Dataset::_qsort(const int keys[], int nkeys, int lo, int hi, const int dirs[])
{
    lo = std::max(lo, 0);
    hi = std::min(hi, rows_.Count() - 1);
    bool done = lo >= hi;
    const bool enough = done || zn::Guarded([&] {
                            std::vector<zn::SortKey> read;
                            for (int k = 0; k < nkeys; ++k) {
                                if (keys[k] != -1)
                                    read.push_back(ReadKey(keys[k], dirs[k] < 0, lo, hi));
                            }
                            done = read.empty() || rows_.Arrange(lo, SortedOrder(std::move(read)));
                        });
    return enough && done ? 0 : -1;
}
