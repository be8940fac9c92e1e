// The table itself: identity, columns and the reading of values.

#include "Zn_Dataset.h"

#include "Zn_CodePage.h"
#include "dataset/original_index.h"
#include "foundation/vector_list.h"

namespace {

unsigned StoredCodePage(unsigned codePage)
{
    constexpr unsigned kUtf16 = 1200;
    constexpr unsigned kUtf8 = 65001;
    if (codePage == 0)
        return ZnGetLocaleCP();
    return codePage == kUtf16 ? kUtf8 : codePage;
}

} // namespace

Zn_Dataset::Zn_Dataset() : codePage_(ZnGetLocaleCP()) {}

Zn_Dataset::Zn_Dataset(unsigned codePage, int colListOption)
    : codePage_(StoredCodePage(codePage)), columns_(colListOption)
{
}

Zn_Dataset::Zn_Dataset(const Zn_WString& id, unsigned codePage) : id_(id), codePage_(StoredCodePage(codePage)) {}

Zn_Dataset::Zn_Dataset(const char16_t* id, unsigned codePage) : Zn_Dataset(Zn_WString(id), codePage) {}

Zn_Dataset::Zn_Dataset(const Zn_Dataset& other) : Zn_Dataset()
{
    Assign(&other);
}

Zn_Dataset& Zn_Dataset::operator=(const Zn_Dataset& other)
{
    Assign(&other);
    return *this;
}

Zn_Dataset::~Zn_Dataset()
{
    if (originals_)
        originals_->Release();
}

void Zn_Dataset::SetCurrentCodePage(unsigned codePage)
{
    if (codePage != 0 && codePage != codePage_) {
        ClearAll();
        codePage_ = codePage;
    }
}

unsigned Zn_Dataset::Change2CodePage(unsigned codePage) noexcept
{
    if (codePage != 0)
        codePage_ = codePage;
    return codePage_;
}

int Zn_Dataset::SetUpdate(int on) noexcept
{
    const int before = updateTracking_;
    updateTracking_ = on;
    return before;
}

int Zn_Dataset::IsUpdated() const noexcept
{
    return insertCount_ > 0 || orgBuffer_.Count() > 0;
}

int Zn_Dataset::GetColIndex(Zn_NameArg id) const noexcept
{
    if (const int position = columns_.FindId(id); position >= 0)
        return position;
    const int position = constColumns_.FindId(id);
    return position >= 0 ? columns_.Count() + position : -1;
}

const Zn_WString& Zn_Dataset::GetColID(int idx) const noexcept
{
    if (const Zn_ColInfo* column = columns_.GetItem(idx))
        return column->id;
    return idx < 0 ? Zn_WString::_ZnNullString : constColumns_.Id(idx - columns_.Count());
}

int Zn_Dataset::AddColumn(const char16_t* id, short type, short size, short summ)
{
    return AddColumn(Zn_WString(id), type, size, summ);
}

int Zn_Dataset::AddColumn(const Zn_WString& id, short type, short size, short summ)
{
    Zn_ColInfo column(id);
    column.type = type;
    column.size = size;
    column.summ = summ;
    return AddColumn(&column);
}

int Zn_Dataset::AddColumn(const Zn_ColInfo* column)
{
    return !column || GetColIndex(column->id) >= 0 ? 0 : DefineColumn(*column);
}

// For an id that no column has.
int Zn_Dataset::DefineColumn(const Zn_ColInfo& column)
{
    Zn_ColInfo defined(column);
    defined.orgIdx = static_cast<short>(columns_.Count());
    int added = 0;
    const int position = columns_.Add(&defined, added);
    if (added) {
        rows_.InsertColumn(position);
        orgBuffer_.InsertColumn(position);
    }
    return position;
}

int Zn_Dataset::AppendColList(const Zn_ColList* list)
{
    if (list) {
        for (const Zn_ColInfo& column : *list)
            AddColumn(&column);
    }
    return GetColCount();
}

const Zn_Variant* Zn_Dataset::GetConstColumn(Zn_NameArg id) const noexcept
{
    return GetConstColumn(constColumns_.FindId(id));
}

const Zn_Variant* Zn_Dataset::GetConstColumn(int idx) const noexcept
{
    const Zn_Variable* variable = constColumns_.GetItem(idx);
    return variable ? &variable->value : nullptr;
}

int Zn_Dataset::SetConstColumn(int idx, const Zn_Variant* value)
{
    return constColumns_.SetVariant(idx, value) >= 0;
}

int Zn_Dataset::SetConstColumn(Zn_NameArg id, const Zn_Variant* value)
{
    return SetConstColumn(constColumns_.FindId(id), value);
}

const Zn_Variant* Zn_Dataset::NotNull(const Zn_Variant* value) noexcept
{
    return value ? value : &Zn_Variant::_ZnNullVariant;
}

const Zn_Variant* Zn_Dataset::MappedColumn(int row, int col) const
{
    if (col >= columns_.Count())
        return GetConstColumn(col - columns_.Count());
    return IsGroupRow(row) ? GroupValue(row, col) : GetColumnNF(RawRow(row), col);
}

const Zn_Variant* Zn_Dataset::GetColumnNF(int rawRow, int col) const noexcept
{
    const int normalCount = columns_.Count();
    if (col >= normalCount)
        return GetConstColumn(col - normalCount);
    const Zn_Record* record = rows_.GetItem(rawRow);
    return record ? record->GetItem(col) : nullptr;
}

int Zn_Dataset::GetOrgIdx(int row) const
{
    return GetOrgIdxNF(RawRow(row));
}

int Zn_Dataset::GetOrgIdxNF(int rawRow) const noexcept
{
    const Zn_Record* record = rows_.GetItem(rawRow);
    return record ? record->GetOrgIdx() : -1;
}

const Zn_Variant* Zn_Dataset::GetOrgColumn(int row, int col) const
{
    if (IsGroupRow(row))
        return nullptr;
    const int original = GetOrgIdx(row);
    return original < 0 ? GetColumn(row, col) : GetOrgBuffColumn(original, col);
}

const Zn_Variant* Zn_Dataset::GetOrgColumnNF(int rawRow, int col) const
{
    const int original = GetOrgIdxNF(rawRow);
    return original < 0 ? GetColumnNF(rawRow, col) : GetOrgBuffColumn(original, col);
}

int Zn_Dataset::GetOrgBuffType(int idx) const noexcept
{
    const Zn_Record* record = orgBuffer_.GetItem(idx);
    return record ? record->GetType() : 0;
}

const Zn_Variant* Zn_Dataset::GetOrgBuffColumn(int idx, int col) const noexcept
{
    if (col >= columns_.Count())
        return GetConstColumn(col - columns_.Count());
    const Zn_Record* record = orgBuffer_.GetItem(idx);
    return record ? record->GetItem(col) : nullptr;
}

int Zn_Dataset::GetDelRowCount() const noexcept
{
    return originals_ ? originals_->DeletedCount() : 0;
}

int Zn_Dataset::GetDelRowIdx(int n) const noexcept
{
    return originals_ ? originals_->FindDeleted(n) : -1;
}

const Zn_Variant* Zn_Dataset::GetDelColumn(int n, int col) const
{
    const int original = GetDelRowIdx(n);
    return original < 0 ? nullptr : GetOrgBuffColumn(original, col);
}

int Zn_Dataset::TakeOver(const Zn_Dataset* other, bool withMap)
{
    if (other == this)
        return GetRowCount();
    ClearAll();
    if (!other)
        return 0;
    if (id_.IsEmpty())
        id_ = other->id_;
    codePage_ = other->codePage_;
    constColumns_.Assign(&other->constColumns_);
    columns_.TakePlaces(other->columns_);
    rows_.Assign(&other->rows_);
    orgBuffer_.Assign(&other->orgBuffer_);
    insertCount_ = other->insertCount_;
    if (withMap) {
        rowMap_.AssignList(other->rowMap_);
        rowMapActive_ = other->rowMapActive_;
    } else if (other->rowMapActive_) {
        for (int i = 0, n = rows_.Count(); i < n; ++i)
            rows_.GetSafeItem(i)->SetFilter(0);
    }
    if (!zn::Guarded([this] { LinkOriginals(); }))
        ClearAll();
    Regroup();
    return GetRowCount();
}

int Zn_Dataset::Assign(const Zn_Dataset* other)
{
    return TakeOver(other, true);
}

int Zn_Dataset::AssignNF(const Zn_Dataset* other)
{
    return TakeOver(other, false);
}
