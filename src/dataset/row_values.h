// Walks one column of a list of rows.
//
// A value is reached through three pointers, each of which is likely to miss the caches. The walk goes through a batch
// of rows a pointer at a time, so that the misses of a batch overlap.
#pragma once

#include "Zn_Record.h"

#include <algorithm>

namespace zn {

// Calls body(k, value) with the values, null where there is none, of the rows rawOf(from), rawOf(from + 1) ..., k
// counting from 0. rawOf gives the index of a record, or one that there is none at.
template <class RawOf, class Body>
void ForEachValue(const Zn_RecList& rows, int col, int from, int to, RawOf rawOf, Body body)
{
    constexpr int kBatch = 64;
    const Zn_Record* records[kBatch];
    const Zn_Variant* values[kBatch];
    for (int done = 0, count = to - from; done < count; done += kBatch) {
        const int batch = std::min(count - done, kBatch);
        for (int k = 0; k < batch; ++k)
            records[k] = rows.GetItem(rawOf(from + done + k));
        for (int k = 0; k < batch; ++k)
            values[k] = records[k] ? records[k]->GetItem(col) : nullptr;
        for (int k = 0; k < batch; ++k)
            body(done + k, values[k]);
    }
}

} // namespace zn
