// Summaries of ranges of rows: one walk each.

#include "Zn_Dataset.h"

#include "Zn_VariantOp.h"
#include "dataset/row_map.h"
#include "dataset/row_values.h"
#include "values/variant_types.h"

#include <algorithm>

namespace {

// Integral where the first value is an INTEGER, and then wrapping; all others are converted.
class Sum {
public:
    explicit Sum(bool isIntegral) : isIntegral_(isIntegral) {}

    void Take(const Zn_Variant& value)
    {
        if (isIntegral_)
            whole_ += static_cast<std::uint32_t>(value.ToInteger());
        else
            decimal_ += value.ToDouble();
    }
    void TakeConstant(const Zn_Variant& constant, int times) { decimal_ = constant.ToDouble() * times; }
    Zn_Variant Value() const
    {
        return isIntegral_ ? Zn_Variant(static_cast<std::int32_t>(whole_)) : Zn_Variant(decimal_);
    }

private:
    const bool isIntegral_;
    std::uint32_t whole_ = 0;
    double decimal_ = 0;
};

// The first of the largest values, or of the smallest, and of what was there before.
template <short Op>
class Extreme {
public:
    explicit Extreme(Zn_Variant& out) : out_(out), best_(&out) {}

    void Take(const Zn_Variant& value)
    {
        if (!zn::IsAbsent(value) && (zn::IsAbsent(*best_) || IsBeyond(value)))
            best_ = &value;
    }
    void TakeConstant(const Zn_Variant& constant, int times)
    {
        if (times > 0)
            Take(constant);
    }
    void Store() const
    {
        if (best_ != &out_)
            out_ = *best_;
    }

private:
    // Two decimals as Var_Cmp has them, by their difference, without a call.
    bool IsBeyond(const Zn_Variant& value) const
    {
        if (best_->type != Zn_Variant::Decimal || value.type != Zn_Variant::Decimal)
            return !Var_Cmp(*best_, value, Op);
        const double difference = best_->ToDouble() - value.ToDouble();
        return Op == ZN_OP_GREATER_EQUAL ? difference < 0 : !(difference <= 0);
    }

    Zn_Variant& out_;
    const Zn_Variant* best_;
};

double Average(const Zn_Variant& sum, int count)
{
    return count > 0 ? sum.ToDouble() / count : 0.0;
}

using Most = Extreme<ZN_OP_GREATER_EQUAL>;
using Least = Extreme<ZN_OP_LESS_EQUAL>;

} // namespace

int Zn_Dataset::GetCount(int from, int to) const noexcept
{
    return RawRows(Map()).Count(from, std::min(to, GetRowCount()));
}

// Gives the values of a range of rows to each of the figures, rawOf giving the stored row of a row, -1 for a group row.
template <class... Figures>
void Zn_Dataset::TakeInto(int col, int from, int to, RawRows rawOf, Figures&... figures) const
{
    if (col < 0)
        return;
    if (col < columns_.Count()) {
        const auto take = [&figures...](int, const Zn_Record*, const Zn_Variant* value) {
            if (value)
                (figures.Take(*value), ...);
        };
        zn::ForEachValue(rows_, col, std::max(from, 0), to, rawOf, take);
    } else if (const Zn_Variant* constant = GetConstColumn(col - columns_.Count())) {
        const int times = rawOf.Count(from, to);
        (figures.TakeConstant(*constant, times), ...);
    }
}

// Whether a sum that starts at a row is integral.
bool Zn_Dataset::IsSumIntegral(int col, int rawRow) const
{
    const Zn_Variant* first = col < columns_.Count() ? GetColumnNF(rawRow, col) : nullptr;
    return first && first->type == Zn_Variant::Integer;
}

Zn_Variant Zn_Dataset::SumOf(int col, int from, int to, RawRows rawOf) const
{
    Sum sum(IsSumIntegral(col, rawOf(from)));
    TakeInto(col, from, to, rawOf, sum);
    return sum.Value();
}

Zn_ColSummary Zn_Dataset::SummaryOf(int col, int from, int to, RawRows rawOf) const
{
    Zn_ColSummary summary;
    Sum sum(IsSumIntegral(col, rawOf(from)));
    Least least(summary.least);
    Most most(summary.most);
    TakeInto(col, from, to, rawOf, sum, least, most);
    least.Store();
    most.Store();
    summary.count = rawOf.Count(from, to);
    summary.sum = sum.Value();
    summary.average = Average(summary.sum, summary.count);
    return summary;
}

void Zn_Dataset::GetSum(int col, int from, int to, Zn_Variant& out) const
{
    out = SumOf(col, from, std::min(to, GetRowCount()), RawRows(Map()));
}

void Zn_Dataset::GetMax(int col, int from, int to, Zn_Variant& out) const
{
    Most most(out);
    TakeInto(col, from, std::min(to, GetRowCount()), RawRows(Map()), most);
    most.Store();
}

void Zn_Dataset::GetMin(int col, int from, int to, Zn_Variant& out) const
{
    Least least(out);
    TakeInto(col, from, std::min(to, GetRowCount()), RawRows(Map()), least);
    least.Store();
}

double Zn_Dataset::GetAvg(int col, int from, int to) const
{
    to = std::min(to, GetRowCount());
    return Average(SumOf(col, from, to, RawRows(Map())), RawRows(Map()).Count(from, to));
}

Zn_ColSummary Zn_Dataset::Summarize(int col, int from, int to) const
{
    return SummaryOf(col, from, std::min(to, GetRowCount()), RawRows(Map()));
}

void Zn_Dataset::GetSumNF(int col, int from, int to, Zn_Variant& out) const
{
    out = SumOf(col, from, std::min(to, rows_.Count()), RawRows());
}

void Zn_Dataset::GetMaxNF(int col, int from, int to, Zn_Variant& out) const
{
    Most most(out);
    TakeInto(col, from, std::min(to, rows_.Count()), RawRows(), most);
    most.Store();
}

void Zn_Dataset::GetMinNF(int col, int from, int to, Zn_Variant& out) const
{
    Least least(out);
    TakeInto(col, from, std::min(to, rows_.Count()), RawRows(), least);
    least.Store();
}

double Zn_Dataset::GetAvgNF(int col, int from, int to) const
{
    to = std::min(to, rows_.Count());
    return Average(SumOf(col, from, to, RawRows()), RawRows().Count(from, to));
}

Zn_ColSummary Zn_Dataset::SummarizeNF(int col, int from, int to) const
{
    return SummaryOf(col, from, std::min(to, rows_.Count()), RawRows());
}
