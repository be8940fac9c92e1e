// Which rows are seen and which are marked: hiding, selecting, and types through the row map.

#include "Zn_Dataset.h"

#include "Zn_StrList.h"
#include "dataset/row_map.h"
#include "dataset/row_values.h"
#include "dataset/text_match.h"
#include "foundation/vector_list.h"

#include <vector>

int Zn_Dataset::GetType(int row) const noexcept
{
    return GetRowTypeNF(GetRowIndex(row));
}

void Zn_Dataset::SetType(int row, int type)
{
    SetRowTypeNF(RawRow(row), type);
}

long Zn_Dataset::Filter(int row)
{
    if (!rowMapActive_) {
        if (Zn_Record* record = rows_.GetSafeItem(row)) {
            record->SetFilter(1);
            rowMap_.Reset(rows_.Count());
            rowMap_.Delete(row);
            rowMapActive_ = 1;
        }
    } else if (row >= 0 && row < rowMap_.Count() && !IsGroupRow(row)) {
        if (Zn_Record* record = rows_.GetSafeItem(RawRow(row)))
            record->SetFilter(1);
        rowMap_.Delete(row);
    }
    return 0;
}

long Zn_Dataset::Filter(const char16_t* expr)
{
    Zn_WStrList parts;
    if (parts.Parse(expr, u"=", u'\\') == 0 || GetColIndex(parts.GetItemNN(0)) < 0)
        return -1;
    const Zn_WString& hidden = parts.GetItemNN(1);
    UnFilter();
    for (int row = 0, n = rows_.Count(); row < n; ++row) {
        Zn_Record* record = rows_.GetSafeItem(row);
        // Callers rely on the row's own number being the place that is compared, whatever column is named, and on the
        // map being in force without being built.
        if (record && zn::TextMatches(record->GetItem(row),
                                      [&](std::u16string_view text) { return zn::SameText(text, hidden.GetView()); })) {
            record->SetFilter(1);
            rowMapActive_ = 1;
        }
    }
    return 0;
}

int Zn_Dataset::ShowOnly(Zn_NameArg id, std::u16string_view value)
{
    const int col = GetColIndex(id);
    if (col < 0)
        return -1;
    std::vector<std::int32_t> shown;
    const int count = GetRowCount();
    if (!zn::Guarded([&] { shown.reserve(static_cast<std::size_t>(count)); }))
        return -1;
    const RawRows rawOf(Map());
    const auto take = [&](int row, const Zn_Record* record, const Zn_Variant* found) {
        const int rawRow = rawOf(row);
        if (rawRow >= 0 && zn::TextMatches(found, [&](std::u16string_view text) { return zn::SameText(text, value); }))
            shown.push_back(rawRow);
        else if (record)
            rows_.GetSafeItem(rawRow)->SetFilter(1);
    };
    if (const Zn_Variant* constant = col < columns_.Count() ? nullptr : GetConstColumn(col - columns_.Count())) {
        for (int row = 0; row < count; ++row)
            take(row, Record(row), constant);
    } else {
        zn::ForEachValue(rows_, col, 0, count, rawOf, take);
    }
    rowMap_.Take(std::move(shown));
    rowMapActive_ = 1;
    return rowMap_.Count();
}

// Makes the map anew: every row without the filter mark, in the order of the stored rows.
void Zn_Dataset::ShowUnhidden()
{
    zn::Guarded([&] {
        std::vector<std::int32_t> shown;
        for (int rawRow = 0, n = rows_.Count(); rawRow < n; ++rawRow) {
            if (!rows_.GetItemNN(rawRow)->GetFilter())
                shown.push_back(rawRow);
        }
        rowMap_.Take(std::move(shown));
    });
}

long Zn_Dataset::UnFilter()
{
    if (!rowMapActive_)
        return 0;
    rowMapActive_ = 0;
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        if (Zn_Record* record = rows_.GetSafeItem(i))
            record->SetFilter(0);
    }
    rowMap_.Clear();
    return 0;
}

int Zn_Dataset::GetSelect(int row) const
{
    const Zn_Record* record = Record(row);
    return record && record->GetSelect() ? 1 : 0;
}

void Zn_Dataset::SetSelect(int row, int on)
{
    if (Zn_Record* record = rows_.GetSafeItem(RawRow(row)))
        record->SetSelect(on);
}

int Zn_Dataset::ClearSelect()
{
    int changed = 0;
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        Zn_Record* record = rows_.GetSafeItem(i);
        if (record->GetSelect()) {
            record->SetSelect(0);
            ++changed;
        }
    }
    return changed;
}
