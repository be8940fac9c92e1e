// Walks one column of a list of rows.
//
// A value is reached through its record and the record's memory, and a text through the value: each step is likely to
// miss the caches. So each row is taken a step at a time, well behind the row that is a step further back: what a step
// reads was fetched some rows ago, and the walk waits for the memory's throughput and not for its answers. One row
// after the other, since fetches that come in bursts are lost when the processor has too many under way.
#pragma once

#include "Zn_Record.h"
#include "foundation/prefetch.h"

#include <algorithm>

namespace zn {

template <class RawOf>
class ValueWalk {
public:
    // The rows are rawOf(from) ... rawOf(to - 1); rawOf gives the index of a record, or one that there is none at.
    ValueWalk(const Zn_RecList& rows, int col, int from, int to, RawOf rawOf)
        : rows_(rows), col_(col), from_(from), count_(std::max(to - from, 0)), rawOf_(rawOf)
    {
    }

    template <class Body>
    void Run(Body body)
    {
        for (int k = -3 * kAhead; k < count_; ++k) {
            if (const int next = k + 3 * kAhead; next < count_)
                FindRecord(next);
            if (const int next = k + 2 * kAhead; next >= 0 && next < count_)
                FetchValue(next);
            if (const int next = k + kAhead; next >= 0 && next < count_)
                FindValue(next);
            if (k >= 0)
                body(k, records_[At(k)], values_[At(k)]);
        }
    }

private:
    // What is fetched of a text: what stands in front of it, its length among it, in characters, and the first few.
    static constexpr std::size_t kBeforeText = 6, kFetched = 24;
    static constexpr int kAhead = 32; // rows between one step and the next
    static constexpr unsigned kRing = 4 * kAhead;

    static unsigned At(int k) noexcept { return static_cast<unsigned>(k) % kRing; }
    void FindRecord(int k)
    {
        const Zn_Record* record = rows_.GetItem(rawOf_(from_ + k));
        records_[At(k)] = record;
        PrefetchAll(record);
    }
    void FetchValue(int k) const
    {
        if (const Zn_Record* record = records_[At(k)]) {
            Prefetch(record->LikelyHead());
            Prefetch(record->LikelyItem(col_));
        }
    }
    void FindValue(int k)
    {
        const Zn_Record* record = records_[At(k)];
        const Zn_Variant* value = record ? record->GetItem(col_) : nullptr;
        values_[At(k)] = value;
        if (value && value->type == Zn_Variant::String)
            Prefetch(value->GetConstStr()->GetText() - kBeforeText, kFetched * sizeof(char16_t));
    }

    const Zn_RecList& rows_;
    const int col_;
    const int from_;
    const int count_;
    RawOf rawOf_;
    const Zn_Record* records_[kRing];
    const Zn_Variant* values_[kRing];
};

// Calls body(k, record, value) for the rows rawOf(from), rawOf(from + 1) ..., k counting from 0. Record and value are
// null where there is none.
template <class RawOf, class Body>
void ForEachValue(const Zn_RecList& rows, int col, int from, int to, RawOf rawOf, Body body)
{
    ValueWalk(rows, col, from, to, rawOf).Run(body);
}

} // namespace zn
