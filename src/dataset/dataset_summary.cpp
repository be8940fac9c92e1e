// Summaries of ranges of rows: one walk each.

#include "Zn_Dataset.h"

#include "Zn_VariantOp.h"
#include "dataset/row_map.h"
#include "dataset/row_values.h"
#include "values/variant_types.h"

#include <algorithm>

namespace {

int CountBetween(int from, int to)
{
    return static_cast<int>(std::clamp<std::int64_t>(std::int64_t{to} - from, 0, INT32_MAX));
}

bool HasValue(const Zn_Variant* value)
{
    return value && !zn::IsAbsent(*value);
}

double Average(const Zn_Variant& sum, int count)
{
    return count > 0 ? sum.ToDouble() / count : 0.0;
}

} // namespace

// The rows of data from `from` up to `to`, counted up to a number that is enough.
int Zn_Dataset::CountUpTo(int from, int to, int most) const noexcept
{
    to = std::min(to, GetRowCount());
    if (from >= to)
        return 0;
    if (!rowMapActive_)
        return std::min(CountBetween(from, to), most);
    int count = 0;
    for (auto entry = rowMap_.begin() + std::max(from, 0), end = rowMap_.begin() + to; entry != end && count < most;
         ++entry)
        count += MapEntryLevel(*entry) == 0;
    return count;
}

int Zn_Dataset::GetCount(int from, int to) const noexcept
{
    return CountUpTo(from, to, INT32_MAX);
}

// Sums up a range of `count` rows of data, rawOf giving the stored row of a row, -1 for a group row.
template <class RawOf>
void Zn_Dataset::SumOf(int col, int from, int to, int count, RawOf rawOf, Zn_Variant& out) const
{
    if (col < 0 || col >= columns_.Count()) {
        const Zn_Variant* constant = col < 0 ? nullptr : GetConstColumn(col - columns_.Count());
        out = constant && to > from ? constant->ToDouble() * count : 0.0;
        return;
    }
    const auto forEach = [&](auto add) {
        zn::ForEachValue(rows_, col, std::max(from, 0), to, rawOf, [add](int, const Zn_Variant* value) {
            if (value)
                add(*value);
        });
    };
    const Zn_Variant* first = GetColumnNF(rawOf(from), col);
    if (first && first->type == Zn_Variant::Integer) {
        std::uint32_t sum = 0;
        forEach([&sum](const Zn_Variant& value) { sum += static_cast<std::uint32_t>(value.ToInteger()); });
        out = static_cast<std::int32_t>(sum);
    } else {
        double sum = 0;
        forEach([&sum](const Zn_Variant& value) { sum += value.ToDouble(); });
        out = sum;
    }
}

template <class RawOf>
void Zn_Dataset::ExtremeOf(int col, int from, int to, short op, RawOf rawOf, Zn_Variant& out) const
{
    if (col < 0)
        return;
    const Zn_Variant* best = &out;
    const auto take = [&](int, const Zn_Variant* value) {
        if (HasValue(value) && (zn::IsAbsent(*best) || !Var_Cmp(*best, *value, op)))
            best = value;
    };
    if (const Zn_Variant* constant = col < columns_.Count() ? nullptr : GetConstColumn(col - columns_.Count())) {
        for (int row = std::max(from, 0); row < to; ++row)
            take(row, rawOf(row) < 0 ? nullptr : constant);
    } else {
        zn::ForEachValue(rows_, col, std::max(from, 0), to, rawOf, take);
    }
    if (best != &out)
        out = *best;
}

void Zn_Dataset::GetSum(int col, int from, int to, Zn_Variant& out) const
{
    to = std::min(to, GetRowCount());
    SumOf(
        col, from, to, GetCount(from, to), [this](int row) { return RawRow(row); }, out);
}

void Zn_Dataset::GetMax(int col, int from, int to, Zn_Variant& out) const
{
    to = std::min(to, GetRowCount());
    ExtremeOf(
        col, from, to, ZN_OP_GREATER_EQUAL, [this](int row) { return RawRow(row); }, out);
}

void Zn_Dataset::GetMin(int col, int from, int to, Zn_Variant& out) const
{
    to = std::min(to, GetRowCount());
    ExtremeOf(
        col, from, to, ZN_OP_LESS_EQUAL, [this](int row) { return RawRow(row); }, out);
}

double Zn_Dataset::GetAvg(int col, int from, int to) const
{
    Zn_Variant sum;
    GetSum(col, from, to, sum);
    return Average(sum, GetCount(from, to));
}

void Zn_Dataset::GetSumNF(int col, int from, int to, Zn_Variant& out) const
{
    to = std::min(to, rows_.Count());
    SumOf(
        col, from, to, CountBetween(from, to), [](int row) { return row; }, out);
}

void Zn_Dataset::GetMaxNF(int col, int from, int to, Zn_Variant& out) const
{
    to = std::min(to, rows_.Count());
    ExtremeOf(
        col, from, to, ZN_OP_GREATER_EQUAL, [](int row) { return row; }, out);
}

void Zn_Dataset::GetMinNF(int col, int from, int to, Zn_Variant& out) const
{
    to = std::min(to, rows_.Count());
    ExtremeOf(
        col, from, to, ZN_OP_LESS_EQUAL, [](int row) { return row; }, out);
}

double Zn_Dataset::GetAvgNF(int col, int from, int to) const
{
    Zn_Variant sum;
    GetSumNF(col, from, to, sum);
    return Average(sum, CountBetween(from, std::min(to, rows_.Count())));
}
