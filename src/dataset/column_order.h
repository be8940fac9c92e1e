// The columns of a list in the order in which they were defined.
#pragma once

#include "Zn_ColInfo.h"

#include <vector>

namespace zn {

// Place k holds the first column whose orgIdx is k, null when there is none; as many places as columns.
inline std::vector<const Zn_ColInfo*> ColumnsInDefinitionOrder(const Zn_ColList& columns)
{
    std::vector<const Zn_ColInfo*> ordered(static_cast<std::size_t>(columns.Count()));
    for (const Zn_ColInfo& column : columns) {
        const auto place = static_cast<std::size_t>(column.orgIdx);
        if (column.orgIdx >= 0 && place < ordered.size() && !ordered[place])
            ordered[place] = &column;
    }
    return ordered;
}

} // namespace zn
