// Rows of a table: row numbers and the row map, types, marks, inserting, deleting and looking up.

#include "Zn_Dataset.h"

#include "dataset/row_map.h"
#include "dataset/text_match.h"

#include <algorithm>

bool Zn_Dataset::IsGroupRow(int row) const noexcept
{
    return rowMapActive_ && MapEntryLevel(rowMap_.GetItem(row)) != 0;
}

int Zn_Dataset::RawRow(int row) const noexcept
{
    return RawRows(Map())(row);
}

const Zn_Record* Zn_Dataset::Record(int row) const noexcept
{
    return rows_.GetItem(RawRow(row));
}

const Zn_Record& Zn_Dataset::operator[](int row) const
{
    return *rows_.GetItemNN(RawRow(row));
}

int Zn_Dataset::GetRowIndex(int row) const noexcept
{
    if (!rowMapActive_)
        return row;
    return row < 0 || row >= rowMap_.Count() ? -1 : MapEntryIndex(rowMap_.GetItem(row));
}

int Zn_Dataset::GetRowIdxNF(int rawRow) const noexcept
{
    if (!rowMapActive_)
        return rawRow >= 0 && rawRow < rows_.Count() ? rawRow : -1;
    if (MapEntryLevel(rawRow) != 0)
        return -1;
    const auto place = std::find(rowMap_.begin(), rowMap_.end(), rawRow);
    return place == rowMap_.end() ? -1 : static_cast<int>(place - rowMap_.begin());
}

int Zn_Dataset::GetUpdateRowCount() const noexcept
{
    return static_cast<int>(std::count_if(rows_.begin(), rows_.end(), [](const Zn_Record& record) {
        return record.GetType() == Zn_Record::Updated || record.GetType() == Zn_Record::Inserted;
    }));
}

int Zn_Dataset::GetRowType(int row) const
{
    return IsGroupRow(row) ? Zn_Record::Group : GetRowTypeNF(RawRow(row));
}

int Zn_Dataset::GetRowTypeNF(int rawRow) const noexcept
{
    const Zn_Record* record = rows_.GetItem(rawRow);
    return record ? record->GetType() : 0;
}

int Zn_Dataset::SetRowType(int row, int type)
{
    return SetRowTypeNF(RawRow(row), type);
}

int Zn_Dataset::SetRowTypeNF(int rawRow, int type)
{
    Zn_Record* record = rows_.GetSafeItem(rawRow);
    if (!record)
        return 0;
    record->SetType(type);
    return 1;
}

// Puts an empty record in front of a stored row; the record's index, -1 when there is no memory.
int Zn_Dataset::InsertRecord(int index, int asInserted)
{
    Zn_Record* record = rows_.NewItem();
    const int place = !record ? -1 : index < rows_.Count() ? rows_.InsertLink(index, record) : rows_.AddNew(record);
    if (place >= 0 && asInserted && updateTracking_) {
        record->SetType(Zn_Record::Inserted);
        ++insertCount_;
    }
    return place;
}

int Zn_Dataset::InsertRow(int row, int asInserted)
{
    if (!rowMapActive_)
        return InsertRecord(std::clamp(row, 0, rows_.Count()), asInserted);
    // Callers rely on the other map entries staying as they are, even those that now mean another row.
    const int rawRow = InsertRecord(std::min(MapEntryIndex(rowMap_.GetItem(row)), rows_.Count()), asInserted);
    return rawRow < 0 ? -1 : rowMap_.Insert(row, rawRow);
}

int Zn_Dataset::AppendRow(int asInserted)
{
    const int rawRow = InsertRecord(rows_.Count(), asInserted);
    return rowMapActive_ && rawRow >= 0 ? rowMap_.Add(rawRow) : rawRow;
}

long Zn_Dataset::DeleteRow(int row)
{
    if (!rowMapActive_)
        return DeleteRawRow(row);
    if (row < 0 || row >= rowMap_.Count())
        return -1;
    const int rawRow = RawRow(row);
    if (rawRow < 0) {
        rowMap_.Delete(row);
        return 0;
    }
    const long result = DeleteRawRow(rawRow);
    if (result >= 0)
        rowMap_.Delete(row);
    return result;
}

int Zn_Dataset::DeleteSelected()
{
    int deleted = 0;
    // Callers rely on a stored row's index being used as a row number here, map or no map.
    for (int i = rows_.Count() - 1; i >= 0; --i) {
        const Zn_Record* record = rows_.GetItem(i);
        if (record && record->GetSelect()) {
            SetSelect(i, 0);
            DeleteRow(i);
            ++deleted;
        }
    }
    if (deleted > 0) {
        ClearSelect();
        if (groupColumns_.Count() > 0)
            RecalcGroup();
    }
    return deleted;
}

int Zn_Dataset::ReverseRow()
{
    for (int first = 0, last = rows_.Count() - 1; first < last; ++first, --last)
        rows_.Exchange(first, last);
    return rows_.Count();
}

template <class Match>
int Zn_Dataset::FindVisibleRow(const Zn_WString& colId, Match match) const
{
    const int col = GetColIndex(colId);
    if (col < 0)
        return -1;
    for (int row = 0, n = GetRowCount(); row < n; ++row) {
        if (Record(row) && zn::TextMatches(GetColumn(row, col), match))
            return row;
    }
    return -1;
}

int Zn_Dataset::LookupDataRow(const Zn_WString& colId, const Zn_WString& value) const
{
    return FindVisibleRow(colId, [&](std::u16string_view text) { return text == value.GetView(); });
}

int Zn_Dataset::LookupDataRowAs(const Zn_WString& colId, const Zn_WString& value) const
{
    return FindVisibleRow(colId, [&](std::u16string_view text) {
        return zn_iequal(text.substr(0, static_cast<std::size_t>(value.GetLength())), value);
    });
}

const Zn_Variant* Zn_Dataset::LookupDataText(const Zn_WString& keyCol, const Zn_WString& keyValue,
                                             const Zn_WString& textCol) const
{
    const int key = GetColIndex(keyCol);
    const int text = GetColIndex(textCol);
    if (key < 0 || text < 0)
        return nullptr;
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        if (zn::TextMatches(GetColumnNF(i, key),
                            [&](std::u16string_view found) { return found == keyValue.GetView(); }))
            return GetColumnNF(i, text);
    }
    return nullptr;
}
