// A table filled from others: a copy of what is there now, and rows appended whole or column by column.

#include "Zn_Dataset.h"

#include "Zn_DatasetList.h"
#include "dataset/original_index.h"

#include <algorithm>
#include <vector>

namespace {

// For each ordinary column of a table the column of the same name in the source, -1 where it has none.
class ColumnMapping {
public:
    ColumnMapping(const Zn_Dataset& target, const Zn_Dataset& source)
    {
        for (const Zn_ColInfo& column : target.GetColumns())
            sources_.push_back(source.GetColIndex(column.id));
    }

    bool IsEmpty() const
    {
        return std::ranges::all_of(sources_, [](int source) { return source < 0; });
    }
    bool KeepsPlaces() const
    {
        int place = 0;
        return std::ranges::all_of(sources_, [&](int source) { return source == place++; });
    }
    // Calls store(k, value) for each value of a source row that is present, the last column first.
    template <class Store>
    void EachValue(const Zn_Dataset& source, int row, Store store) const
    {
        for (int k = static_cast<int>(sources_.size()) - 1; k >= 0; --k) {
            const int from = sources_[static_cast<std::size_t>(k)];
            if (const Zn_Variant* value = from < 0 ? nullptr : source.GetColumn(row, from))
                store(k, value);
        }
    }

private:
    std::vector<int> sources_;
};

} // namespace

// NOLINTNEXTLINE(misc-no-recursion): one level, onto a copy of the table itself
int Zn_Dataset::Copy(const Zn_Dataset* src, unsigned)
{
    if (src == this) {
        const Zn_Dataset before(*src);
        return Copy(&before, 0);
    }
    ClearAll();
    if (!src)
        return 0;
    if (id_.IsEmpty())
        id_ = src->id_;
    constColumns_.Assign(&src->constColumns_);
    columns_.TakePlaces(src->columns_);
    rows_.Assign(&src->rows_);
    // Callers rely on inserted rows staying inserted when the source shows no other change and has no row map.
    const bool settles = src->orgBuffer_.Count() > 0 || src->rowMapActive_;
    constexpr std::uint32_t kMarksKept = 0xF000;
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        Zn_Record* row = rows_.GetSafeItem(i);
        row->SetOrgIdx(-1); // the originals stay behind
        if (settles && (row->GetType() != Zn_Record::Normal || row->GetFilter()))
            row->SetFlags((row->GetFlags() & kMarksKept) | Zn_Record::Normal);
    }
    Regroup();
    return GetRowCount();
}

// Shares the first stored rows of another table. Their links to originals mean the other table's buffer.
void Zn_Dataset::ShareRows(const Zn_RecList& source, int count)
{
    for (int i = 0; i < count; ++i) {
        auto* row = const_cast<Zn_Record*>(source.GetItem(i));
        if (!row || rows_.AddLink(row) < 0)
            continue;
        if (row->GetOrgIdx() >= 0) {
            Zn_OriginalIndex::MakePlain(*row);
            Originals().SetHasPlainLinks();
        }
    }
}

// Shows every stored row, grouped anew.
void Zn_Dataset::ShowAppended()
{
    rowMap_.Clear();
    rowMapActive_ = 0;
    Regroup();
}

int Zn_Dataset::Append(const Zn_Dataset* src, int byName, int)
{
    if (!src)
        return 0;
    const int count = src->GetRowCount();
    if (count < 1)
        return GetRowCount();
    if (columns_.Count() == 0)
        AppendColList(&src->columns_);
    // Callers rely on the number of visible rows being taken of the stored ones.
    const int stored = std::min(count, src->rows_.Count());
    const ColumnMapping mapping(*this, *src);
    if (!byName || (mapping.KeepsPlaces() && rows_.Count() > 0)) {
        ShareRows(src->rows_, stored);
    } else if (mapping.KeepsPlaces() && !mapping.IsEmpty()) {
        rows_.Assign(&src->rows_);
        LinkOriginals();
    } else if (!mapping.IsEmpty()) {
        for (int i = 0; i < count; ++i) {
            AppendRow(1);
            Zn_Record* row = rows_.GetSafeItem(rows_.Count() - 1);
            mapping.EachValue(*src, i, [&](int k, const Zn_Variant* value) { row->SetLink(k, value, 1); });
        }
    }
    ShowAppended();
    return GetRowCount();
}

// Adds the rows of another table by the names of its columns, tracked as any store is.
void Zn_Dataset::AppendByName(const Zn_Dataset& src, int count)
{
    const ColumnMapping mapping(*this, src);
    for (int i = 0; i < count; ++i) {
        const int row = AppendRow(1);
        mapping.EachValue(src, i, [&](int k, const Zn_Variant* value) { SetColumnLink(row, k, value); });
    }
}

int Zn_Dataset::AppendData(const Zn_DatasetList* list)
{
    if (!list)
        return 0;
    const Zn_Dataset* first = list->GetItem(0);
    if (columns_.Count() == 0) {
        if (!first)
            return 0;
        AppendColList(&first->columns_);
    }
    if (first)
        codePage_ = first->codePage_;
    if (columns_.Count() == 0)
        return GetRowCount();
    for (const Zn_Dataset& source : *list) {
        if (!ColumnMapping(*this, source).IsEmpty())
            AppendByName(source, source.GetRowCount());
    }
    ShowAppended();
    return GetRowCount();
}

int Zn_Dataset::Merge(const Zn_Dataset* src)
{
    if (!src)
        return 0;
    // Callers rely on the number of stored rows being taken of the visible ones.
    AppendByName(*src, src->GetRowCountNF());
    ShowAppended();
    return GetRowCount();
}

int Zn_Dataset::Merge(const Zn_DatasetList* list, int)
{
    if (!list)
        return 0;
    for (const Zn_Dataset& source : *list)
        Merge(&source);
    return GetRowCount();
}
