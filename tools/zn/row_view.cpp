#include "row_view.h"

#include "cell_text.h"
#include "failure.h"

#include "Zn_StrList.h"
#include "Zn_VariantOp.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unordered_map>

namespace zntool {
namespace {

int Column(const Zn_Dataset& table, const std::string& name)
{
    return table.GetColIndex(Zn_WString::FromUtf8(name).GetView());
}

// The parts of what --sort or --filter was given, as the library splits them.
std::vector<std::string> Split(const std::string& text, const char* separator)
{
    Zn_AStrList parts;
    parts.Parse(text.c_str(), separator, '\\');
    std::vector<std::string> split;
    for (const Zn_AString& part : parts)
        split.emplace_back(part.GetText(), static_cast<std::size_t>(part.GetLength()));
    return split;
}

// A sum that keeps what the numbers of a column are exact in: amounts to the ten-thousandth, whole numbers in 64 bits,
// decimals with the rounding of each addition made good.
class Total {
public:
    void Add(const Zn_Variant& value)
    {
        ++count_;
        if (value.type == Zn_Variant::Integer)
            whole_ += value.ToInteger();
        else if (value.type == Zn_Variant::Currency)
            amount_ = amount_ + *value.GetConstCurrency();
        else
            AddDecimal(value.ToDouble());
        kind_ = std::max(kind_, value.type == Zn_Variant::Integer    ? Kind::Whole
                                : value.type == Zn_Variant::Currency ? Kind::Amount
                                                                     : Kind::Decimal);
    }
    int Count() const { return count_; }
    std::u16string Sum() const
    {
        if (kind_ == Kind::Decimal)
            return DecimalText(Value());
        if (kind_ == Kind::Amount && whole_ == 0) {
            const Zn_Variant amount(amount_);
            return TextOf(&amount);
        }
        const std::string digits = std::to_string(whole_);
        return kind_ == Kind::Amount ? DecimalText(Value()) : std::u16string(digits.begin(), digits.end());
    }
    std::u16string Average() const { return DecimalText(Value() / count_); }

private:
    enum class Kind { Whole, Amount, Decimal };

    void AddDecimal(double addend)
    {
        const double sum = decimal_ + addend;
        lost_ += std::abs(decimal_) >= std::abs(addend) ? decimal_ - sum + addend : addend - sum + decimal_;
        decimal_ = sum;
    }
    double Value() const
    {
        return decimal_ + lost_ + static_cast<double>(whole_) + static_cast<double>(amount_.GetRaw()) / 10000;
    }
    // 15 digits, which hides what binary fractions add.
    static std::u16string DecimalText(double value)
    {
        char digits[32];
        const int length = std::snprintf(digits, sizeof digits, "%.15g", value);
        return {digits, digits + length};
    }

    int count_ = 0;
    Kind kind_ = Kind::Whole;
    std::int64_t whole_ = 0;
    Zn_Currency amount_;
    double decimal_ = 0;
    double lost_ = 0;
};

// Numbers by their size, where the library's compare has its own ways with them.
bool IsLess(const Zn_Variant& a, const Zn_Variant& b)
{
    if (a.type == Zn_Variant::Integer && b.type == Zn_Variant::Integer)
        return a.ToInteger() < b.ToInteger();
    if (a.type == Zn_Variant::Currency && b.type == Zn_Variant::Currency)
        return *a.GetConstCurrency() < *b.GetConstCurrency();
    return Var_Cmp(a, b, ZN_OP_LESS);
}

// The first of the smallest values of a run of rows, or of the largest; null when there is none.
const Zn_Variant* Extreme(const Zn_Dataset& table, int col, int from, int to, bool largest)
{
    const Zn_Variant* best = nullptr;
    for (int row = from; row < to; ++row) {
        const Zn_Variant* value = table.GetColumnNF(row, col);
        if (!IsNothing(value) && (!best || (largest ? IsLess(*best, *value) : IsLess(*value, *best))))
            best = value;
    }
    return best;
}

Total TotalOf(const Zn_Dataset& table, int col, int from, int to)
{
    Total total;
    for (int row = from; row < to; ++row) {
        if (const Zn_Variant* value = table.GetColumnNF(row, col); !IsNothing(value))
            total.Add(*value);
    }
    return total;
}

bool HasNumbers(const Zn_ColInfo& info)
{
    return info.type == Zn_ColInfo::Int || info.type == Zn_ColInfo::Decimal || info.type == Zn_ColInfo::Currency;
}

} // namespace

std::vector<std::string> ViewOptions::Columns() const
{
    std::vector<std::string> columns;
    for (const std::string& item : Split(sort, ",")) {
        const std::size_t colon = item.find(':');
        columns.push_back(colon == 0 ? item : item.substr(0, colon));
    }
    for (const std::string& filter : filters)
        columns.push_back(filter.substr(0, filter.find('=')));
    for (const auto* named : {&groups, &sums, &averages, &least, &most})
        columns.insert(columns.end(), named->begin(), named->end());
    return columns;
}

const std::u16string* SummaryLine::Find(int col) const
{
    const auto cell = std::find_if(cells.begin(), cells.end(), [col](const auto& found) { return found.first == col; });
    return cell == cells.end() ? nullptr : &cell->second;
}

RowView::RowView(Zn_Dataset& table, const ViewOptions& options) : table_(table), options_(options)
{
    ReadFilters();
    for (const std::string& name : options.groups) {
        if (const int col = Column(table, name); col >= 0)
            groups_.push_back(col);
    }
    for (const auto* summed : {&options.sums, &options.averages}) {
        for (const std::string& name : *summed) {
            if (const Zn_ColInfo* info = table.GetColInfo(Column(table, name)); info && !HasNumbers(*info))
                throw Failure(BadUsage, "column '" + name + "' has no numbers to be summed up");
        }
    }
    FilterAndSort();
    ListRows();
}

void RowView::ReadFilters()
{
    for (const std::string& filter : options_.filters) {
        const std::size_t equals = filter.find('=');
        if (equals == 0 || equals == std::string::npos)
            throw Failure(BadUsage, "--filter " + filter + ": give COLUMN=VALUE");
        Zn_WString value;
        if (!FromUtf8(std::string_view(filter).substr(equals + 1), value))
            throw Failure(BadUsage, "--filter " + filter + ": not UTF-8");
        conditions_.push_back({Column(table_, filter.substr(0, equals)), std::u16string(value.GetView())});
    }
}

template <class ValueOf>
bool RowView::Passes(ValueOf valueOf) const
{
    return std::all_of(conditions_.begin(), conditions_.end(), [&](const Condition& condition) {
        return condition.col >= 0 && TextOf(valueOf(condition.col)) == condition.value;
    });
}

bool RowView::ShowsDeleted(int n) const
{
    return Passes([&](int col) { return table_.GetDelColumn(n, col); });
}

// Rows are known again by their records, which stay where they are when rows change places.
void RowView::FilterAndSort()
{
    std::unordered_map<const Zn_Record*, int> numberOf;
    for (int row = 0; row < table_.GetRowCountNF(); ++row)
        numberOf.emplace(&table_[row], row);
    table_.SetUpdate(0);
    for (int row = table_.GetRowCountNF() - 1; row >= 0 && !conditions_.empty(); --row) {
        if (!Passes([&](int col) { return table_.GetColumnNF(row, col); }))
            table_.DeleteRow(row);
    }
    std::string spec = options_.sort;
    if (spec.empty()) {
        for (const std::string& name : options_.groups)
            spec += (spec.empty() ? "" : ",") + name;
    }
    if (!spec.empty() && table_.Sort(Zn_WString::FromUtf8(spec), 1) < 0)
        throw Failure(BadUsage, "--sort " + spec + ": there is no column in it");
    for (int row = 0; row < table_.GetRowCountNF(); ++row)
        numbers_.push_back(numberOf[&table_[row]]);
}

// The place, among the group columns, of the outermost whose value is another in the row before; past them for none.
int RowView::OutermostBreak(int row) const
{
    std::size_t k = 0;
    while (k < groups_.size() && SaysSame(table_.GetColumnNF(row - 1, groups_[k]), table_.GetColumnNF(row, groups_[k])))
        ++k;
    return static_cast<int>(k);
}

void RowView::ListRows()
{
    std::vector<int> starts(groups_.size());
    const auto close = [&](int from, int row) {
        for (int k = static_cast<int>(groups_.size()) - 1; k >= from; --k) {
            Summarize(starts[static_cast<std::size_t>(k)], row, static_cast<std::size_t>(k) + 1);
            starts[static_cast<std::size_t>(k)] = row;
        }
    };
    const int count = table_.GetRowCountNF();
    for (int row = 0; row < count; ++row) {
        if (row > 0)
            close(OutermostBreak(row), row);
        lines_.push_back({row, numbers_[static_cast<std::size_t>(row)]});
    }
    if (count > 0)
        close(0, count);
    if (options_.HasSummaries())
        Summarize(0, count, 0);
}

std::vector<std::pair<int, std::u16string>> RowView::GroupCells(int from, std::size_t groups) const
{
    std::vector<std::pair<int, std::u16string>> cells;
    for (std::size_t k = 0; k < groups; ++k)
        cells.emplace_back(groups_[k], TextOf(table_.GetColumnNF(from, groups_[k])));
    return cells;
}

void RowView::AddSummary(SummaryLine line)
{
    lines_.push_back({-1, static_cast<int>(summaries_.size())});
    summaries_.push_back(std::move(line));
}

// The summaries of a run of rows that share the values of the first group columns; of all rows when there are none.
void RowView::Summarize(int from, int to, std::size_t groups)
{
    const std::u16string all = groups == 0 && !groups_.empty() ? u" in all" : u"";
    if (options_.count || !options_.HasSummaries()) {
        const std::string number = std::to_string(to - from);
        const std::u16string kind = (to - from == 1 ? u"row" : u"rows") + all;
        AddSummary({{number.begin(), number.end()}, kind, GroupCells(from, groups)});
    }
    const auto figure = [&](const char16_t* kind, const std::vector<std::string>& columns, auto textOf) {
        SummaryLine line{u"", kind + all, GroupCells(from, groups)};
        const std::size_t before = line.cells.size();
        for (const std::string& name : columns) {
            if (const int col = Column(table_, name); table_.GetColInfo(col))
                line.cells.emplace_back(col, textOf(col));
        }
        if (line.cells.size() > before)
            AddSummary(std::move(line));
    };
    figure(u"sum", options_.sums, [&](int col) { return TotalOf(table_, col, from, to).Sum(); });
    figure(u"average", options_.averages, [&](int col) {
        const Total total = TotalOf(table_, col, from, to);
        return total.Count() > 0 ? total.Average() : std::u16string();
    });
    figure(u"smallest", options_.least, [&](int col) { return TextOf(Extreme(table_, col, from, to, false)); });
    figure(u"largest", options_.most, [&](int col) { return TextOf(Extreme(table_, col, from, to, true)); });
}

} // namespace zntool
