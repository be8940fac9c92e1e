// Groups: the group definition, and the group rows that it puts into the row map.

#include "Zn_Dataset.h"

#include "Zn_StrList.h"
#include "dataset/row_map.h"
#include "dataset/row_values.h"
#include "dataset/text_match.h"
#include "foundation/vector_list.h"
#include "values/variant_types.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <vector>

int Zn_Dataset::SetGroupStr(const Zn_WString& columns)
{
    groupStr_ = columns;
    ParseGroup();
    return RecalcGroup();
}

void Zn_Dataset::ParseGroup()
{
    groupColumns_.Clear();
    Zn_WStrList items;
    items.Parse(groupStr_, u",", 0);
    int level = 1;
    for (int i = items.Count() - 1; i >= 0; --i) {
        const Zn_WString& item = items.GetItemNN(i);
        const int col = GetColIndex(item);
        if (col < 0)
            continue;
        // Callers rely on an item with colons naming, once for each of its parts, the column of the whole item's name.
        Zn_WStrList parts;
        const int times = item.Find(u':') < 0 ? 1 : parts.Parse(item, u":", 0);
        for (int k = 0; k < times; ++k)
            groupColumns_.Add(MapEntry(level, col));
        level = (level + 1) & kMostLevel;
    }
}

// The copy of another table, or what was read, is grouped by the own definition.
void Zn_Dataset::Regroup()
{
    groupColumns_.Clear();
    if (groupStr_.IsEmpty())
        return;
    ParseGroup();
    RecalcGroup();
}

namespace {

bool IsBreak(const Zn_Variant* before, const Zn_Variant* value)
{
    const bool hasBefore = before && !zn::IsAbsent(*before);
    const bool hasValue = value && !zn::IsAbsent(*value);
    if (!hasBefore || !hasValue)
        return hasBefore != hasValue;
    if (before->type == Zn_Variant::String && value->type == Zn_Variant::String)
        return !zn::SameText(*before->GetConstStr(), *value->GetConstStr());
    return before->Compare(*value) != 0;
}

// Which of some rows begin a group, for each of the group columns.
class Breaks {
public:
    static constexpr int kRows = 4096;

    explicit Breaks(std::size_t columns) : rows_(columns) {}

    void Clear()
    {
        std::fill(rows_.begin(), rows_.end(), Rows());
        any_ = Rows();
    }
    void Add(std::size_t column, int row)
    {
        const auto at = static_cast<std::size_t>(row);
        rows_[column][at / 64] |= std::uint64_t{1} << at % 64;
        any_[at / 64] |= std::uint64_t{1} << at % 64;
    }
    bool Has(std::size_t column, int row) const
    {
        const auto at = static_cast<std::size_t>(row);
        return rows_[column][at / 64] >> at % 64 & 1;
    }
    // Calls body(row) for the rows that are one for any column.
    template <class Body>
    void ForEach(Body body) const
    {
        for (std::size_t k = 0; k < any_.size(); ++k) {
            for (std::uint64_t bits = any_[k]; bits != 0; bits &= bits - 1)
                body(static_cast<int>(k) * 64 + std::countr_zero(bits));
        }
    }

private:
    using Rows = std::array<std::uint64_t, kRows / 64>;

    std::vector<Rows> rows_;
    Rows any_{};
};

// A map being copied with entries put into it, at positions that grow.
class MapInserter {
public:
    explicit MapInserter(const Zn_IntList& map) : next_(map.begin()), end_(map.end())
    {
        entries_.reserve(static_cast<std::size_t>(map.Count()));
    }
    // A position past the end means the end.
    void Insert(int position, int entry)
    {
        const auto missing = static_cast<std::ptrdiff_t>(position) - std::ssize(entries_);
        const auto until = next_ + std::clamp<std::ptrdiff_t>(missing, 0, end_ - next_);
        entries_.insert(entries_.end(), next_, until);
        next_ = until;
        entries_.push_back(entry);
    }
    void Append(int entry)
    {
        entries_.insert(entries_.end(), next_, end_);
        next_ = end_;
        entries_.push_back(entry);
    }
    std::vector<std::int32_t> Finish()
    {
        entries_.insert(entries_.end(), next_, end_);
        return std::move(entries_);
    }

private:
    using Entry = decltype(std::declval<const Zn_IntList&>().begin());

    Entry next_;
    Entry end_;
    std::vector<std::int32_t> entries_;
};

} // namespace

int Zn_Dataset::RecalcGroup()
{
    int changed = 0;
    if (rowMapActive_)
        changed = ClearGroup();
    else
        rowMap_.Reset(rows_.Count());
    rowMapActive_ = 1;
    const std::vector<std::int32_t> groups(groupColumns_.begin(), groupColumns_.end());
    if (groups.empty() || rows_.Count() == 0)
        return changed;
    zn::Guarded([&] {
        rowMap_.Take(MapWithGroups(groups));
        changed = 1;
    });
    return changed;
}

// Calls mark(k) for each of the rows from first on, k counting from 0, whose value differs from that of the row before.
template <class Mark>
void Zn_Dataset::FindBreaks(int col, int first, int end, Mark mark) const
{
    if (col >= columns_.Count()) {
        const Zn_Variant* constant = GetConstColumn(col - columns_.Count());
        for (int k = 0; k < end - first && IsBreak(constant, constant); ++k)
            mark(k);
        return;
    }
    const Zn_Variant* before = nullptr;
    const auto compare = [&](int k, const Zn_Record*, const Zn_Variant* value) {
        if (k > 0 && IsBreak(before, value))
            mark(k - 1);
        before = value;
    };
    zn::ForEachValue(rows_, col, first - 1, end, RawRows(), compare);
}

std::vector<std::int32_t> Zn_Dataset::MapWithGroups(const std::vector<std::int32_t>& groups) const
{
    MapInserter map(rowMap_);
    int starts[kMostLevel + 1] = {}; // of each level's group that is open
    int inserted = 0;
    Breaks breaks(groups.size());
    for (int first = 1, count = rows_.Count(); first < count; first += Breaks::kRows) {
        breaks.Clear();
        for (std::size_t k = 0; k < groups.size(); ++k) {
            FindBreaks(MapEntryIndex(groups[k]), first, std::min(first + Breaks::kRows, count),
                       [&](int row) { breaks.Add(k, row); });
        }
        breaks.ForEach([&](int row) {
            for (std::size_t k = 0; k < groups.size(); ++k) {
                if (!breaks.Has(k, row))
                    continue;
                const int level = MapEntryLevel(groups[k]);
                // Callers rely on the position counting stored rows, hidden ones included.
                map.Insert(first + row + inserted, MapEntry(level, starts[level]));
                ++inserted;
                std::fill(starts, starts + level + 1, first + row + inserted);
                // Callers rely on the entry behind those of this level being passed over too.
                while (k < groups.size() && MapEntryLevel(groups[k]) == level)
                    ++k;
            }
        });
    }
    for (std::size_t k = 0; k < groups.size(); ++k) {
        const int level = MapEntryLevel(groups[k]);
        if (k == 0 || level != MapEntryLevel(groups[k - 1]))
            map.Append(MapEntry(level, starts[level]));
    }
    return map.Finish();
}

int Zn_Dataset::ClearGroup()
{
    if (!rowMapActive_)
        return 0;
    std::vector<std::int32_t> rows;
    const bool enough = zn::Guarded([&] {
        std::copy_if(rowMap_.begin(), rowMap_.end(), std::back_inserter(rows),
                     [](int entry) { return MapEntryLevel(entry) == 0; });
    });
    if (!enough || static_cast<int>(rows.size()) == rowMap_.Count())
        return 0;
    rowMap_.Take(std::move(rows));
    return 1;
}

int Zn_Dataset::IsGroupCol(int level, int col) const noexcept
{
    if (!rowMapActive_)
        return 0;
    const auto entry = std::find_if(groupColumns_.begin(), groupColumns_.end(),
                                    [col](int found) { return MapEntryIndex(found) == col; });
    // Callers rely on the entry's level being compared where it stands, in bits 22 to 29.
    return entry != groupColumns_.end() && ((*entry >> 2) & 0x3FC00000) >= level;
}

int Zn_Dataset::GetRowLevel(int row) const noexcept
{
    return rowMapActive_ ? MapEntryLevel(rowMap_.GetItem(row)) : 0;
}

// What GetColumn gives for a group row.
const Zn_Variant* Zn_Dataset::GroupValue(int row, int col) const
{
    const int start = GetRowIndex(row);
    if (!IsGroupCol(GetRowLevel(row), col) && RawRows(Map()).Count(start, row, 2) != 1)
        return nullptr;
    return GetColumnNF(RawRow(start), col);
}
