// Walks one column of a list of rows.
//
// A value is reached through its record and the record's memory, and a text through the value: each step is likely to
// miss the caches. The walk takes each step for a batch of rows while it fetches what the next step of the batch before
// reads, so that it waits for the memory's throughput and not for its answers.
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
        for (int first = -3 * kBatch; first < count_; first += kBatch) {
            FindRecords(first + 3 * kBatch, first + 2 * kBatch);
            FindValues(first + kBatch);
            for (int k = first; k < EndOf(first); ++k)
                body(k, records_[At(k)], values_[At(k)]);
        }
    }

private:
    // What is fetched of a text: what stands in front of it, its length among it, in characters, and the first few.
    static constexpr std::size_t kBeforeText = 6, kFetched = 24;
    static constexpr int kBatch = 32;
    static constexpr unsigned kRing = 4 * kBatch;

    static unsigned At(int k) noexcept { return static_cast<unsigned>(k) % kRing; }
    // The end of a batch; of one in front of the first row or behind the last, where it begins.
    int EndOf(int first) const noexcept
    {
        return first < 0 ? first : std::max(first, std::min(first + kBatch, count_));
    }
    // Finds the records of a batch, and fetches what values are reached through in a batch found before.
    void FindRecords(int first, int before)
    {
        for (int k = first; k < EndOf(first); ++k) {
            records_[At(k)] = rows_.GetItem(rawOf_(from_ + k));
            PrefetchAll(records_[At(k)]);
        }
        for (int k = before; k < EndOf(before); ++k) {
            if (const Zn_Record* record = records_[At(k)]) {
                Prefetch(record->LikelyHead(), Zn_PointerSeq::kStripHead);
                PrefetchAll(record->LikelyItem(col_));
            }
        }
    }
    void FindValues(int first)
    {
        for (int k = first; k < EndOf(first); ++k) {
            const Zn_Record* record = records_[At(k)];
            const Zn_Variant* value = record ? record->GetItem(col_) : nullptr;
            values_[At(k)] = value;
            if (value && value->type == Zn_Variant::String)
                Prefetch(value->GetConstStr()->GetText() - kBeforeText, kFetched * sizeof(char16_t));
            else
                PrefetchAll(value);
        }
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
