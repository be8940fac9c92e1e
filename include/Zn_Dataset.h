// A table in memory that remembers every change.
//
// A dataset has ordinary columns (one value per row), constant columns (one value for the whole
// table), rows, and a buffer of originals: while tracking is on (SetUpdate) it keeps the values that
// updated rows had before and the rows that were deleted, so that a program can send only what
// changed, undo it (Reset) or accept it (ApplyChange).
//
//     Zn_Dataset cities(u"cities", 0);
//     cities.AddColumn(u"Name", Zn_ColInfo::String, 40);
//     cities.AddColumn(u"People", Zn_ColInfo::Int, 4);
//     cities.SetUpdate(1);
//     int row = cities.AppendRow(1);
//     cities.SetColumn(row, u"Name", u"Seoul");
//     cities.SetColumn(row, u"People", 9668000);
//
// Column indexes: ordinary columns first, in name order, then the constant columns. Row numbers: while
// the row map is in force (filters, groups) they count visible rows; the NF forms always count stored
// rows. NN forms give a shared empty value instead of null. Link forms take over the given value
// instead of copying it. Setters return 1, or 0 for an unknown column, a missing row or a group row;
// look-ups return -1 or null. Pointers and references to values stay good until their row changes.
// One dataset is used by one thread at a time.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_ColInfo.h"
#include "Zn_IntList.h"
#include "Zn_Record.h"
#include "Zn_Variable.h"
#include "Zn_Variant.h"
#include "Zn_WString.h"

#include <vector>

namespace zn {
class SortKey;
}
class RawRows;
class Zn_DatasetList;
class Zn_DatasetXmlReader;
class Zn_DOMElement;
class Zn_NamedStrList;
class Zn_OriginalIndex;

// The figures of a column over a range of rows; see Zn_Dataset::Summarize.
struct Zn_ColSummary {
    int count = 0;    // of rows, with or without a value
    Zn_Variant sum;   // INTEGER or DECIMAL
    Zn_Variant least; // both empty where no row has a value
    Zn_Variant most;
    double average = 0; // sum by count
};

class ZN_API Zn_Dataset {
public:
    // Empty, in the locale's code page, tracking off.
    Zn_Dataset();
    // Code page 0 means the locale's and 1200 is stored as 65001; the option is that of Zn_ColList.
    Zn_Dataset(unsigned codePage, int colListOption);
    Zn_Dataset(const Zn_WString& id, unsigned codePage);
    Zn_Dataset(const char16_t* id, unsigned codePage);
    Zn_Dataset(const Zn_Dataset& other);
    Zn_Dataset& operator=(const Zn_Dataset& other);
    ~Zn_Dataset();

    const Zn_WString& GetId() const noexcept { return id_; }
    void SetId(const Zn_WString& id) { id_ = id; }
    void SetId(const char16_t* id, int length = -1) { id_.Set(id, length); }
    void SetId(const char* id, int length = -1) { id_.Set(id, length, 0); }
    // The code page of the table's 8-bit form. A new one other than 0 clears the whole table first.
    void SetCurrentCodePage(unsigned codePage);
    unsigned GetCurrentCodePage() const noexcept { return codePage_; }
    // Changes the code page and keeps the data; 0 keeps the code page too. Returns the new one.
    unsigned Change2CodePage(unsigned codePage) noexcept;
    // Switches change tracking and returns what it was.
    int SetUpdate(int on) noexcept;
    int GetUpdate() const noexcept { return updateTracking_; }
    // 1 when there are inserted rows or originals, else 0.
    int IsUpdated() const noexcept;

    // ---- Columns

    int GetColCount() const noexcept { return GetNormalCount() + GetConstCount(); }
    int GetNormalCount() const noexcept { return columns_.Count(); }
    int GetConstCount() const noexcept { return constColumns_.Count(); }
    int GetColIndex(Zn_NameArg id) const noexcept;
    const Zn_WString& GetColID(int idx) const noexcept;
    const Zn_ColInfo* GetColInfo(int idx) const noexcept { return columns_.GetItem(idx); }
    Zn_ColInfo* GetSafeColInfo(int idx) noexcept { return columns_.GetSafeItem(idx); }
    const Zn_ColList& GetColumns() const noexcept { return columns_; }
    // Adds an ordinary column and returns its position. An id that any column has adds nothing and returns 0.
    int AddColumn(const char16_t* id, short type = Zn_ColInfo::String, short size = 0, short summ = Zn_ColInfo::None);
    int AddColumn(const Zn_WString& id, short type = Zn_ColInfo::String, short size = 0, short summ = Zn_ColInfo::None);
    int AddColumn(const Zn_ColInfo* column);
    // Adds every column of the list; returns GetColCount().
    int AppendColList(const Zn_ColList* list);

    // Add a constant column, or give an existing one a new value; return its position among the constant ones.
    int AddConstColumn(const Zn_WString& id, const Zn_Variant& value) { return constColumns_.AddVariable(id, value); }
    int AddConstColumn(const Zn_WString& id, const Zn_Variant* value) { return constColumns_.AddVariable(id, value); }
    int AddConstColumn(const char16_t* id, const Zn_Variant& value) { return constColumns_.AddVariable(id, value); }
    int AddConstColumn(const char16_t* id, const Zn_Variant* value) { return constColumns_.AddVariable(id, value); }
    template <Zn_PlainValue T>
    int AddConstColumn(const Zn_WString& id, const T& value)
    {
        return constColumns_.AddVariable(id, value);
    }
    template <Zn_PlainValue T>
    int AddConstColumn(const char16_t* id, const T& value)
    {
        return constColumns_.AddVariable(id, value);
    }
    int AddConstStr(const Zn_WString& id, const Zn_WString& value) { return constColumns_.AddStr(id, value); }
    int AddConstStr(const Zn_WString& id, const char16_t* value, int length = -1)
    {
        return constColumns_.AddStr(id, value, length);
    }
    const Zn_Variant* GetConstColumn(Zn_NameArg id) const noexcept;
    const Zn_Variant* GetConstColumn(int idx) const noexcept;
    int SetConstColumn(int idx, const Zn_Variant* value);
    int SetConstColumn(Zn_NameArg id, const Zn_Variant* value);
    template <Zn_PlainValue T>
    int SetConstColumn(int idx, const T& value)
    {
        const Zn_Variant wrapped(value);
        return SetConstColumn(idx, &wrapped);
    }
    template <Zn_PlainValue T>
    int SetConstColumn(Zn_NameArg id, const T& value)
    {
        const Zn_Variant wrapped(value);
        return SetConstColumn(id, &wrapped);
    }
    int SetConstColumn(int idx, const char16_t* text, int length)
    {
        return SetConstColumn(idx, Zn_WString(text, length));
    }
    int SetConstColumn(Zn_NameArg id, const char16_t* text, int length)
    {
        return SetConstColumn(id, Zn_WString(text, length));
    }
    const Zn_VariableList& GetConstColumns() const noexcept { return constColumns_; }

    // ---- Values. A constant column answers for every row, a negative one included.

    const Zn_Variant* GetColumn(int row, int col) const
    {
        return rowMapActive_ ? MappedColumn(row, col) : GetColumnNF(row, col);
    }
    const Zn_Variant* GetColumn(int row, Zn_NameArg id) const { return GetColumn(row, GetColIndex(id)); }
    void GetColumn(int row, int col, Zn_Variant& out) const { out = GetColumnNN(row, col); }
    void GetColumn(int row, Zn_NameArg id, Zn_Variant& out) const { out = GetColumnNN(row, id); }
    const Zn_Variant* GetColumnNN(int row, int col) const { return NotNull(GetColumn(row, col)); }
    const Zn_Variant* GetColumnNN(int row, Zn_NameArg id) const { return NotNull(GetColumn(row, id)); }
    const Zn_Variant* GetColumnNF(int rawRow, int col) const noexcept;
    const Zn_Variant* GetColumnNF(int rawRow, Zn_NameArg id) const { return GetColumnNF(rawRow, GetColIndex(id)); }
    const Zn_Variant* GetColumnNFNN(int rawRow, int col) const { return NotNull(GetColumnNF(rawRow, col)); }
    const Zn_Variant* GetColumnNFNN(int rawRow, Zn_NameArg id) const { return NotNull(GetColumnNF(rawRow, id)); }

    int SetColumn(int row, int col, const Zn_Variant* value);
    int SetColumn(int row, Zn_NameArg id, const Zn_Variant* value) { return SetColumn(row, GetColIndex(id), value); }
    int SetColumnNF(int rawRow, int col, const Zn_Variant* value);
    int SetColumnNF(int rawRow, Zn_NameArg id, const Zn_Variant* value)
    {
        return SetColumnNF(rawRow, GetColIndex(id), value);
    }
    template <Zn_PlainValue T>
    int SetColumn(int row, int col, const T& value)
    {
        const Zn_Variant wrapped(value);
        return SetColumn(row, col, &wrapped);
    }
    template <Zn_PlainValue T>
    int SetColumn(int row, Zn_NameArg id, const T& value)
    {
        return SetColumn(row, GetColIndex(id), value);
    }
    template <Zn_PlainValue T>
    int SetColumnNF(int rawRow, int col, const T& value)
    {
        const Zn_Variant wrapped(value);
        return SetColumnNF(rawRow, col, &wrapped);
    }
    template <Zn_PlainValue T>
    int SetColumnNF(int rawRow, Zn_NameArg id, const T& value)
    {
        return SetColumnNF(rawRow, GetColIndex(id), value);
    }
    int SetColumn(int row, int col, const char16_t* text, int length)
    {
        return SetColumn(row, col, Zn_WString(text, length));
    }
    int SetColumn(int row, Zn_NameArg id, const char16_t* text, int length)
    {
        return SetColumn(row, id, Zn_WString(text, length));
    }
    int SetColumnNF(int rawRow, int col, const char16_t* text, int length)
    {
        return SetColumnNF(rawRow, col, Zn_WString(text, length));
    }
    int SetColumnNF(int rawRow, Zn_NameArg id, const char16_t* text, int length)
    {
        return SetColumnNF(rawRow, id, Zn_WString(text, length));
    }
    int SetColumnLink(int row, int col, const Zn_Variant* value);
    int SetColumnLink(int row, Zn_NameArg id, const Zn_Variant* value)
    {
        return SetColumnLink(row, GetColIndex(id), value);
    }
    int SetColumnLinkNF(int rawRow, int col, const Zn_Variant* value);
    int SetColumnLinkNF(int rawRow, Zn_NameArg id, const Zn_Variant* value)
    {
        return SetColumnLinkNF(rawRow, GetColIndex(id), value);
    }
    // Where every store ends: converts a copy to the column's type, then stores it by the rules of change
    // tracking (docs/change-tracking.md). The Link form stores the given object where no conversion is needed.
    int UpdateColumn(int rawRow, int col, const Zn_Variant* value);
    int UpdateColumnLink(int rawRow, int col, const Zn_Variant* value);

    // ---- Originals and deleted rows. A row without an original answers with its present value.

    int GetOrgIdx(int row) const;
    int GetOrgIdxNF(int rawRow) const noexcept;
    const Zn_Variant* GetOrgColumn(int row, int col) const;
    const Zn_Variant* GetOrgColumn(int row, Zn_NameArg id) const { return GetOrgColumn(row, GetColIndex(id)); }
    const Zn_Variant* GetOrgColumnNN(int row, int col) const { return NotNull(GetOrgColumn(row, col)); }
    const Zn_Variant* GetOrgColumnNN(int row, Zn_NameArg id) const { return NotNull(GetOrgColumn(row, id)); }
    const Zn_Variant* GetOrgColumnNF(int rawRow, int col) const;
    const Zn_Variant* GetOrgColumnNF(int rawRow, Zn_NameArg id) const
    {
        return GetOrgColumnNF(rawRow, GetColIndex(id));
    }
    const Zn_Variant* GetOrgColumnNFNN(int rawRow, int col) const { return NotNull(GetOrgColumnNF(rawRow, col)); }
    const Zn_Variant* GetOrgColumnNFNN(int rawRow, Zn_NameArg id) const { return NotNull(GetOrgColumnNF(rawRow, id)); }
    int GetOrgBuffCount() const noexcept { return orgBuffer_.Count(); }
    // Row type of an original (4 or 8), 0 when out of range.
    int GetOrgBuffType(int idx) const noexcept;
    const Zn_Variant* GetOrgBuffColumn(int idx, int col) const noexcept;
    const Zn_Variant* GetOrgBuffColumn(int idx, Zn_NameArg id) const { return GetOrgBuffColumn(idx, GetColIndex(id)); }
    const Zn_Variant* GetOrgBuffColumnNN(int idx, int col) const { return NotNull(GetOrgBuffColumn(idx, col)); }
    const Zn_Variant* GetOrgBuffColumnNN(int idx, Zn_NameArg id) const { return NotNull(GetOrgBuffColumn(idx, id)); }
    int GetDelRowCount() const noexcept;
    // Place in the buffer of originals of the n-th deleted row, -1 when there are fewer. Costs the logarithm of their
    // count.
    int GetDelRowIdx(int n) const noexcept;
    const Zn_Variant* GetDelColumn(int n, int col) const;
    const Zn_Variant* GetDelColumn(int n, Zn_NameArg id) const { return GetDelColumn(n, GetColIndex(id)); }
    const Zn_Variant* GetDelColumnNN(int n, int col) const { return NotNull(GetDelColumn(n, col)); }
    const Zn_Variant* GetDelColumnNN(int n, Zn_NameArg id) const { return NotNull(GetDelColumn(n, id)); }

    // ---- Rows

    int GetRowCount() const noexcept { return rowMapActive_ ? rowMap_.Count() : rows_.Count(); }
    int GetRowCountNF() const noexcept { return rows_.Count(); }
    // Rows that are updated or inserted.
    int GetUpdateRowCount() const noexcept;
    // The shared default record for a group row or out of range.
    const Zn_Record& operator[](int row) const;
    // Index among the stored rows of a visible row (of a group row: what its map entry points at).
    int GetRowIndex(int row) const noexcept;
    // Visible row of a stored row, -1 when it is hidden or there is none.
    int GetRowIdxNF(int rawRow) const noexcept;
    // Row type (Zn_Record::Normal ...), Zn_Record::Group for a group row, 0 when out of range.
    int GetRowType(int row) const;
    int GetRowTypeNF(int rawRow) const noexcept;
    int SetRowType(int row, int type);
    int SetRowTypeNF(int rawRow, int type);

    // Insert an empty row before a row, or at the end; with asInserted and tracking on it counts as inserted.
    // Return its row number. The other entries of a row map in force are not renumbered.
    int InsertRow(int row, int asInserted);
    int AppendRow(int asInserted);
    // Returns 1 when the row is gone; 0 for a group row, which only leaves the map; -1 when there is no such row.
    long DeleteRow(int row);
    // Deletes the stored rows that carry the selection mark; returns how many.
    int DeleteSelected();
    // Turns the order of the stored rows around; returns their count.
    int ReverseRow();
    // With tracking on every row is deleted as by DeleteRow; else rows and originals are dropped.
    void DeleteAll();
    // Empties everything but the id, the code page, the tracking switch and the group definition.
    void ClearAll();
    // Undoes every change since tracking began or the last ApplyChange. A row that was updated and then deleted does
    // not come back.
    void Reset();
    // Accepts every change: all rows become normal, originals and deleted rows are forgotten.
    void ApplyChange();

    // First visible row whose value, as text, equals value (case counts), or begins with it (case ignored); -1 when
    // none does.
    int LookupDataRow(const Zn_WString& colId, const Zn_WString& value) const;
    int LookupDataRowAs(const Zn_WString& colId, const Zn_WString& value) const;
    // The textCol value of the first stored row whose keyCol value, as text, equals keyValue; null when there is none.
    const Zn_Variant* LookupDataText(const Zn_WString& keyCol, const Zn_WString& keyValue,
                                     const Zn_WString& textCol) const;

    // Row type of a visible row by its map entry: callers rely on GetType reading, for a group row, the stored row
    // whose index is the number that the entry holds; SetType ignores group rows and rows that are not there.
    int GetType(int row) const noexcept;
    void SetType(int row, int type);

    // ---- Views (docs/views.md). The row map is in force while GetFilterStat is not 0. Hidden rows carry the filter
    // mark of Zn_Record; they stay stored, and the NF forms see them.

    // Puts the stored rows in order. The items of spec, divided by commas, are columns, each with ":d" (down) or ":a"
    // behind it or else the direction of ascending (1: up, anything else: down); a backslash takes the next character
    // as it is. Unknown columns are passed over; 64 items count. Values are compared as Zn_Variant::Compare does;
    // absent ones come first in an ascending key. Rows with equal keys take the order that other implementations of
    // this procedure give them, which is not the order they stood in. A row map in force is made anew of all rows
    // without the filter mark; groups are not recomputed. Returns 0, -1 for a spec without items or when there is no
    // memory.
    long Sort(const char16_t* spec, int ascending = 1);
    // Hides one row by its number among the visible ones; a group row stays. Always 0.
    long Filter(int row);
    // Callers rely on this as it is, "column=text": in row number r not that column but the value in place r is
    // compared, rows that match are the hidden ones, and the map is in force without being built, so no row is visible
    // until Sort or the like. Returns 0, -1 when the first part is no column. To see the rows with a value use
    // ShowOnly.
    long Filter(const char16_t* expr);
    // Hides the visible rows whose value, as text, is not equal to value (case counts), and takes group rows off the
    // map. Returns the count of rows that are left, -1 for an unknown column or when there is no memory.
    int ShowOnly(Zn_NameArg id, std::u16string_view value);
    // Shows every row and switches the map off, group rows included. Always 0.
    long UnFilter();
    int GetFilterStat() const noexcept { return rowMapActive_; }
    // Sets the switch and nothing else.
    void SetFilterStat(int on) noexcept { rowMapActive_ = on; }

    // ---- Selection. A group row ignores the setter and reads 0.

    int GetSelect(int row) const;
    // Callers rely on this taking the row's filter mark away too.
    void SetSelect(int row, int on);
    // Unselects every stored row; returns how many were selected. Their filter marks go too.
    int ClearSelect();

    // ---- Groups. A group row stands behind each run of rows that share the values of the group columns; it has no
    // record. GetColumn gives its first row's value for a group column and, when it stands for one row only, for the
    // other columns too.

    // Columns divided by commas, the outermost first: the last one is level 1. Unknown names are passed over.
    const Zn_WString& GetGroupStr() const noexcept { return groupStr_; }
    // Returns what RecalcGroup does.
    int SetGroupStr(const Zn_WString& columns);
    // Reads the group definition again, as after a change of columns.
    void ParseGroup();
    // Puts the map in force and makes its group rows anew; 1 when there are or were any. Callers rely on two things: a
    // break of one level hides the break of the next level up at the same row, and group rows are placed as if no row
    // were hidden.
    int RecalcGroup();
    // Takes the group rows off the map; 1 when there were any.
    int ClearGroup();
    // 1 when values of that column are shown in group rows. Callers rely on the level counting for nothing unless it
    // is in the millions.
    int IsGroupCol(int level, int col) const noexcept;
    // Group level of a visible row, 0 for a row of data and without a map.
    int GetRowLevel(int row) const noexcept;

    // ---- Summaries of the visible rows from `from` up to, but without, `to`. Group rows do not count, nor do absent
    // and empty values, except in GetCount and GetAvg. The NF forms take stored rows.

    int GetCount(int from, int to) const noexcept;
    // An INTEGER when the value in the first row of the range is one (all others are then converted; the sum wraps at
    // 32 bits), else a DECIMAL; 0.0 for an unknown column.
    void GetSum(int col, int from, int to, Zn_Variant& out) const;
    void GetSum(Zn_NameArg id, int from, int to, Zn_Variant& out) const { GetSum(GetColIndex(id), from, to, out); }
    // The first of the largest, or smallest, values by Var_Cmp. What out holds takes part: clear it first.
    void GetMax(int col, int from, int to, Zn_Variant& out) const;
    void GetMax(Zn_NameArg id, int from, int to, Zn_Variant& out) const { GetMax(GetColIndex(id), from, to, out); }
    void GetMin(int col, int from, int to, Zn_Variant& out) const;
    void GetMin(Zn_NameArg id, int from, int to, Zn_Variant& out) const { GetMin(GetColIndex(id), from, to, out); }
    // The sum divided by the count of rows, with or without a value; 0 without rows.
    double GetAvg(int col, int from, int to) const;
    double GetAvg(Zn_NameArg id, int from, int to) const { return GetAvg(GetColIndex(id), from, to); }
    void GetSumNF(int col, int from, int to, Zn_Variant& out) const;
    void GetSumNF(Zn_NameArg id, int from, int to, Zn_Variant& out) const { GetSumNF(GetColIndex(id), from, to, out); }
    void GetMaxNF(int col, int from, int to, Zn_Variant& out) const;
    void GetMaxNF(Zn_NameArg id, int from, int to, Zn_Variant& out) const { GetMaxNF(GetColIndex(id), from, to, out); }
    void GetMinNF(int col, int from, int to, Zn_Variant& out) const;
    void GetMinNF(Zn_NameArg id, int from, int to, Zn_Variant& out) const { GetMinNF(GetColIndex(id), from, to, out); }
    double GetAvgNF(int col, int from, int to) const;
    double GetAvgNF(Zn_NameArg id, int from, int to) const { return GetAvgNF(GetColIndex(id), from, to); }
    // What GetCount, GetSum, GetMin, GetMax (on an empty variant) and GetAvg give, in one walk.
    Zn_ColSummary Summarize(int col, int from, int to) const;
    Zn_ColSummary Summarize(Zn_NameArg id, int from, int to) const { return Summarize(GetColIndex(id), from, to); }
    Zn_ColSummary SummarizeNF(int col, int from, int to) const;
    Zn_ColSummary SummarizeNF(Zn_NameArg id, int from, int to) const { return SummarizeNF(GetColIndex(id), from, to); }

    // ---- Copies. An own id that is not empty is kept, and so is an own group definition, by which the copy is
    // grouped.

    // Takes over everything of another table but its tracking switch and group definition; returns GetRowCount().
    // Null clears and returns 0; the table itself changes nothing.
    int Assign(const Zn_Dataset* other);
    // The same without the row map: every stored row is visible and the filter marks are gone.
    int AssignNF(const Zn_Dataset* other);
    // Takes over columns, constant columns and rows as they are now, as plain unchanged rows without originals; the own
    // code page stays. Null clears and returns 0.
    int Copy(const Zn_Dataset* src, unsigned reserved = 0);

    // ---- Rows of other tables, added behind the own ones; columns match by id, those that the table lacks are left
    // out. A table without ordinary columns takes the source's. The row map is switched off and groups are made anew.
    // All return GetRowCount(), 0 for null; a table may be added to itself. Rows and values are shared with the source
    // where that is said: what is changed in a shared one is changed in both tables, and either may go first.

    // Adds as many rows as the source shows. byName 0, or the same columns in the same places: shares the stored rows
    // from the first on, types and marks included (with byName, a table without rows copies all of them). Other
    // columns: new rows share the values, each as it is; when no column matches nothing is added.
    int Append(const Zn_Dataset* src, int byName, int reserved = 0);
    // Adds the visible rows of each table of the list, stored as by SetColumnLink: converted to the column's type or
    // else shared, and tracked. Takes the code page of the list's first table.
    int AppendData(const Zn_DatasetList* list);
    // The same for one table, without its code page. Callers rely on a row being added for each stored row of the
    // source, while its values are those of the visible row of that number. The list form merges each table.
    int Merge(const Zn_Dataset* src);
    int Merge(const Zn_DatasetList* list, int reserved = 0);

    // ---- XML form. dataMode 0: all rows as they are now; 1: all rows with their changes; 2: the changes only.

    // Appends the document in a code page; format other than 0 indents it; headMode 1 writes a declaration.
    // Returns the buffer's new length, -1 when it can't be built.
    int SaveDataXml(Zn_Buffer& out, int format, int headMode, int dataMode, unsigned codePage) const;
    // Adds the nodes to an element's children; returns the count of rows plus that of deleted rows written.
    int SaveDataXml(Zn_DOMElement& parent, int headMode, int dataMode) const;
    // Read a document (buffer: in its declared code page) and return the row count, -1 when it does not parse or has no
    // "dataset". With clear the table is emptied first, else rows are added.
    int LoadDataXml(const Zn_Buffer& in, int clear);
    int LoadDataXml(const char16_t* text, int length, int clear);
    // Reads a "dataset" element.
    int LoadDataXml(const Zn_DOMElement& element, int clear);
    // Row type of a record's "type" attribute, by its first letter.
    static int GetXmlTypeValue(const Zn_NamedStrList& attributes);

    // ---- Binary form

    // Appends head, rows and terminator; returns the end offset. mode as dataMode above.
    int Save(Zn_Buffer& out, int mode) const;
    // Empties the table and reads that at offset; returns the offset behind it, -1 for a wrong marker, another negative
    // number for a value that can't be read (the table is then empty). Data cut short gives the buffer's length.
    int Load(const Zn_Buffer& source, int offset);
    // Appends a block of rows without head. Callers rely on it as it is: a positive count limits the number that is
    // announced, while all rows from start on are written.
    int SaveNext(Zn_Buffer& out, int start, int count) const;
    // Reads one block and adds its rows; count becomes the number announced. Returns the offset behind it.
    int LoadNext(const Zn_Buffer& in, int offset, int& count);

    static void InitWithMemory(Zn_Dataset* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_Dataset* item) { Zn_FreeInPlace(item); }
    void Set(const Zn_Dataset& other) { AssignNF(&other); }

protected:
    // Sorts the stored rows from lo to hi by columns (-1: passed over) and directions (1 up, -1 down); 0, -1 when
    // there is no memory.
    long _qsort(const int keys[], int nkeys, int lo, int hi, const int dirs[]);
    // What the sort compares: below, equal to or above 0. Callers rely on a row being equal to itself and to those
    // before it.
    int _CompareRecord(const int keys[], int nkeys, int a, int b, const int dirs[]) const;
    int SaveXmlHead(Zn_DOMElement& parent, int headMode) const;
    int SaveXmlData(Zn_DOMElement& datasetElement, int dataMode) const;
    int SaveXmlDeleteData(Zn_DOMElement& datasetElement) const;
    int SaveHead(Zn_Buffer& out) const;
    int SaveData(Zn_Buffer& out, int mode) const;
    int SaveDeleteData(Zn_Buffer& out) const;
    int LoadHead(const Zn_Buffer& in, int offset);
    int LoadData(const Zn_Buffer& in, int offset, int& count);

private:
    friend class Zn_DatasetAccess; // what the message streams do with a table
    friend class Zn_DatasetXmlReader;

    enum class StoreOutcome { Store, Restore, Unchanged, Refused };

    static const Zn_Variant* NotNull(const Zn_Variant* value) noexcept;
    int DefineColumn(const Zn_ColInfo& column);

    // Row numbers: the stored row behind a visible one, -1 for a group row or none.
    bool IsGroupRow(int row) const noexcept;
    int RawRow(int row) const noexcept;
    const Zn_Variant* MappedColumn(int row, int col) const;
    const Zn_IntList* Map() const noexcept { return rowMapActive_ ? &rowMap_ : nullptr; }
    bool IsStorable(int row) const noexcept;
    const Zn_Record* Record(int row) const noexcept;
    int InsertRecord(int index, int asInserted);
    template <class Match>
    int FindVisibleRow(const Zn_WString& colId, Match match) const;

    // Views.
    zn::SortKey ReadKey(int col, bool descending, int lo, int hi) const;
    void ShowUnhidden();
    template <class Mark>
    void FindBreaks(int col, int first, int end, Mark mark) const;
    std::vector<std::int32_t> MapWithGroups(const std::vector<std::int32_t>& groups) const;
    const Zn_Variant* GroupValue(int row, int col) const;
    void Regroup();
    template <class... Figures>
    void TakeInto(int col, int from, int to, RawRows rawOf, Figures&... figures) const;
    bool IsSumIntegral(int col, int rawRow) const;
    Zn_Variant SumOf(int col, int from, int to, RawRows rawOf) const;
    Zn_ColSummary SummaryOf(int col, int from, int to, RawRows rawOf) const;

    // Change tracking.
    int StoreValue(int rawRow, int col, const Zn_Variant* value, bool link);
    StoreOutcome TrackStore(Zn_Record& row, int col, const Zn_Variant& value);
    bool KeepOriginal(Zn_Record& row);
    void DropOriginal(Zn_Record& row);
    void LowerPlainLinks(int place);
    void RenumberOriginals();
    long DeleteRawRow(int rawRow);
    void DeleteOriginal(const Zn_Record& row);
    bool MoveToOriginals(Zn_Record& row, int orgIdx);
    void ForgetOriginals();
    void LinkOriginals();
    bool NoteOriginal(bool deleted) noexcept;
    Zn_OriginalIndex& Originals();
    int TakeOver(const Zn_Dataset* other, bool withMap);
    void ShareRows(const Zn_RecList& source, int count);
    void AppendByName(const Zn_Dataset& src, int count);
    void ShowAppended();
    void TakeTable(Zn_Dataset& other);
    int LoadOriginal(const Zn_Buffer& in, int offset, Zn_Record& row, int rawRow);

    Zn_WString id_;
    std::uint32_t codePage_;
    Zn_VariableList constColumns_;
    Zn_ColList columns_;
    Zn_RecList rows_;
    Zn_RecList orgBuffer_;
    std::int32_t insertCount_ = 0;
    std::int32_t rowMapActive_ = 0;
    Zn_IntList rowMap_; // per visible row: bits 24-31 the group level, bits 0-23 the index in rows_
    std::int32_t updateTracking_ = 0;
    Zn_IntList groupColumns_;
    Zn_WString groupStr_;
    Zn_OriginalIndex* originals_ = nullptr; // where the originals of rows_ stand in orgBuffer_
};
