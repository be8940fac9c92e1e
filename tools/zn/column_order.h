// The columns of a table in the order they were defined in, which is the order in which people know them.
#pragma once

#include "Zn_Dataset.h"

#include <algorithm>
#include <numeric>
#include <vector>

namespace zntool {

// Positions of the ordinary columns.
inline std::vector<int> DefinitionOrder(const Zn_Dataset& table)
{
    std::vector<int> order(static_cast<std::size_t>(table.GetNormalCount()));
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(),
                     [&](int a, int b) { return table.GetColInfo(a)->GetOrgIdx() < table.GetColInfo(b)->GetOrgIdx(); });
    return order;
}

} // namespace zntool
