// Change tracking: what storing and deleting do to row types and originals, undoing and accepting.
// docs/change-tracking.md has the rules as one table.

#include "Zn_Dataset.h"

#include "dataset/original_index.h"
#include "dataset/row_map.h"
#include "foundation/vector_list.h"

#include <utility>
#include <vector>

namespace {

bool HasValue(const Zn_Variant* value)
{
    return value && value->type != Zn_Variant::Empty && value->type != Zn_Variant::Null;
}

bool SlotsAgree(const Zn_Variant* a, const Zn_Variant* b)
{
    if (!HasValue(a) || !HasValue(b))
        return HasValue(a) == HasValue(b);
    return *a == *b;
}

// Whether a new value is the original one again, by the original's type.
bool IsOriginalValue(const Zn_Variant& original, const Zn_Variant& value)
{
    switch (original.type) {
    case Zn_Variant::Integer:
        return original.ToInteger() == value.ToInteger();
    case Zn_Variant::Decimal:
        return original.ToDouble() == value.ToDouble();
    case Zn_Variant::Binary:
        return false;
    default:
        return original.ToString() == value.ToString();
    }
}

bool IsOriginalRow(const Zn_Record& row, const Zn_Record& original, int col, const Zn_Variant& value)
{
    const Zn_Variant* before = original.GetItem(col);
    if (!IsOriginalValue(before ? *before : Zn_Variant::_ZnNullVariant, value))
        return false;
    const int count = row.Count();
    if (count != original.Count())
        return false;
    for (int k = 0; k < count; ++k) {
        if (k != col && !SlotsAgree(row.GetItem(k), original.GetItem(k)))
            return false;
    }
    return true;
}

} // namespace

bool Zn_Dataset::IsStorable(int row) const noexcept
{
    if (!rowMapActive_)
        return true;
    const int rawRow = RawRow(row);
    return rawRow >= 0 && rawRow != kMapIndexMask;
}

int Zn_Dataset::SetColumn(int row, int col, const Zn_Variant* value)
{
    return IsStorable(row) ? UpdateColumn(RawRow(row), col, value) : 0;
}

int Zn_Dataset::SetColumnNF(int rawRow, int col, const Zn_Variant* value)
{
    return UpdateColumn(rawRow, col, value);
}

int Zn_Dataset::SetColumnLink(int row, int col, const Zn_Variant* value)
{
    return IsStorable(row) ? UpdateColumnLink(RawRow(row), col, value) : 0;
}

int Zn_Dataset::SetColumnLinkNF(int rawRow, int col, const Zn_Variant* value)
{
    return UpdateColumnLink(rawRow, col, value);
}

int Zn_Dataset::UpdateColumn(int rawRow, int col, const Zn_Variant* value)
{
    return StoreValue(rawRow, col, value, false);
}

int Zn_Dataset::UpdateColumnLink(int rawRow, int col, const Zn_Variant* value)
{
    return StoreValue(rawRow, col, value, true);
}

int Zn_Dataset::StoreValue(int rawRow, int col, const Zn_Variant* value, bool link)
{
    if (col < 0)
        return 0;
    const Zn_ColInfo* column = columns_.GetItem(col);
    if (!column)
        return SetConstColumn(col - columns_.Count(), value);
    Zn_Record* row = rows_.GetSafeItem(rawRow);
    if (!row)
        return 0;
    Zn_Variant converted;
    const std::uint16_t storedType = Zn_ColList::GetValueType(column->type);
    if (!value) {
        value = &converted;
        link = false;
    } else if (HasValue(value) && value->type != storedType) {
        converted = *value;
        converted.ChangeType(storedType);
        value = &converted;
        link = false;
    }
    const StoreOutcome outcome = updateTracking_ ? TrackStore(*row, col, *value) : StoreOutcome::Store;
    if (outcome == StoreOutcome::Refused || outcome == StoreOutcome::Unchanged)
        return outcome == StoreOutcome::Unchanged;
    constexpr int kFewColumns = 32;
    if (!link && row->Count() == 0 && columns_.Count() <= kFewColumns)
        row->AllocItems(columns_.Count());
    const bool stored = (link ? row->SetLink(col, value, 1) : row->SetColumn(col, value)) >= 0;
    // Only now: the value may be the one that the original holds.
    if (stored && outcome == StoreOutcome::Restore)
        DropOriginal(*row);
    return stored;
}

Zn_Dataset::StoreOutcome Zn_Dataset::TrackStore(Zn_Record& row, int col, const Zn_Variant& value)
{
    switch (row.GetType()) {
    case Zn_Record::Inserted:
        return StoreOutcome::Store;
    case Zn_Record::Updated: {
        const Zn_Record* original = orgBuffer_.GetItem(row.GetOrgIdx());
        if (!original)
            return StoreOutcome::Refused;
        return IsOriginalRow(row, *original, col, value) ? StoreOutcome::Restore : StoreOutcome::Store;
    }
    default:
        const Zn_Variant* present = row.GetItem(col);
        if (value.Compare(present ? *present : Zn_Variant::_ZnNullVariant) == 0)
            return StoreOutcome::Unchanged;
        return KeepOriginal(row) ? StoreOutcome::Store : StoreOutcome::Refused;
    }
}

Zn_OriginalIndex& Zn_Dataset::Originals()
{
    if (!originals_)
        originals_ = Zn_OriginalIndex::Create();
    return *originals_;
}

// Counts the original that was just put at the end of the buffer; false, and it is gone, when there is no memory.
bool Zn_Dataset::NoteOriginal(bool deleted) noexcept
{
    if (zn::Guarded([&] { Originals().Append(deleted); }))
        return true;
    orgBuffer_.Delete(orgBuffer_.Count() - 1);
    return false;
}

// Takes a copy of a normal row before its first change.
bool Zn_Dataset::KeepOriginal(Zn_Record& row)
{
    const int typeBefore = row.GetType();
    row.SetType(Zn_Record::Updated);
    const int place = orgBuffer_.Add(&row);
    if (place < 0 || !NoteOriginal(false)) {
        row.SetType(typeBefore);
        return false;
    }
    Originals().Link(row, place);
    return true;
}

// A row is as it was before its first change: its original goes, and the links of later rows move up.
void Zn_Dataset::DropOriginal(Zn_Record& row)
{
    const int place = row.GetOrgIdx();
    row.SetOrgIdx(-1);
    row.SetType(Zn_Record::Normal);
    orgBuffer_.Delete(place);
    Zn_OriginalIndex& originals = Originals();
    originals.Remove(place);
    if (originals.HasPlainLinks())
        LowerPlainLinks(place);
    if (orgBuffer_.Count() == 0 && !originals.HasPlainLinks())
        originals.Clear();
    else if (originals.IsWorn(rows_.Count()))
        zn::Guarded([this] { RenumberOriginals(); }); // the old keys do without it
}

void Zn_Dataset::LowerPlainLinks(int place)
{
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        Zn_Record* row = rows_.GetSafeItem(i);
        if (!originals_->IsLinkedHere(*row) && row->GetOrgIdx() > place)
            row->SetOrgIdx(row->GetOrgIdx() - 1);
    }
}

void Zn_Dataset::RenumberOriginals()
{
    std::vector<std::pair<Zn_Record*, int>> linked;
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        Zn_Record* row = rows_.GetSafeItem(i);
        if (originals_->IsLinkedHere(*row))
            linked.emplace_back(row, row->GetOrgIdx());
    }
    originals_->Renumber();
    for (const auto& [row, place] : linked)
        originals_->Link(*row, place);
}

// Builds the index of originals anew after rows and buffer were copied or read.
void Zn_Dataset::LinkOriginals()
{
    const int count = orgBuffer_.Count();
    if (count == 0 && !originals_)
        return;
    Zn_OriginalIndex& originals = Originals();
    originals.Clear();
    for (const Zn_Record& original : orgBuffer_)
        originals.Append(original.GetType() == Zn_Record::Deleted);
    // Only a message made by hand links two rows to one original; the second link stays a plain number.
    std::vector<bool> taken(static_cast<std::size_t>(count));
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        Zn_Record* row = rows_.GetSafeItem(i);
        const int place = row->GetOrgIdx();
        if (place < 0)
            continue;
        if (place >= count || taken[static_cast<std::size_t>(place)]) {
            row->SetOrgIdx(place);
            originals.SetHasPlainLinks();
            continue;
        }
        taken[static_cast<std::size_t>(place)] = true;
        originals.Link(*row, place);
    }
}

void Zn_Dataset::ForgetOriginals()
{
    orgBuffer_.ReleaseList();
    if (originals_)
        originals_->Clear();
    insertCount_ = 0;
}

long Zn_Dataset::DeleteRawRow(int rawRow)
{
    Zn_Record* row = rows_.GetSafeItem(rawRow);
    if (!row)
        return -1;
    if (updateTracking_) {
        if (row->GetType() == Zn_Record::Inserted)
            --insertCount_;
        else if (row->GetType() & Zn_Record::Updated)
            DeleteOriginal(*row);
        else if (!MoveToOriginals(*row, rawRow))
            return -1;
    }
    return rows_.Delete(rawRow);
}

// The original of an updated row stands as the deleted row from now on.
void Zn_Dataset::DeleteOriginal(const Zn_Record& row)
{
    const int place = row.GetOrgIdx();
    if (Zn_Record* original = orgBuffer_.GetSafeItem(place)) {
        original->SetType(Zn_Record::Deleted);
        original->SetOrgIdx(-1);
        Originals().MarkDeleted(place);
    }
}

// Shares a row with the buffer of originals as a deleted one that knows where it stood, -1 for nowhere.
bool Zn_Dataset::MoveToOriginals(Zn_Record& row, int orgIdx)
{
    if (orgBuffer_.AddLink(&row) < 0 || !NoteOriginal(true))
        return false;
    row.SetOrgIdx(orgIdx);
    row.SetType(Zn_Record::Deleted);
    return true;
}

// Takes over the contents of another table, which is empty afterwards; an own id stays.
void Zn_Dataset::TakeTable(Zn_Dataset& other)
{
    ClearAll();
    if (id_.IsEmpty())
        id_ = other.id_;
    codePage_ = other.codePage_;
    constColumns_ = std::move(other.constColumns_);
    columns_ = std::move(other.columns_);
    rows_ = std::move(other.rows_);
    orgBuffer_ = std::move(other.orgBuffer_);
    insertCount_ = other.insertCount_;
    std::swap(originals_, other.originals_);
    other.ClearAll();
    Regroup();
}

void Zn_Dataset::DeleteAll()
{
    if (!updateTracking_) {
        rows_.ReleaseList();
        orgBuffer_.ReleaseList();
        if (originals_)
            originals_->Clear();
        return;
    }
    rowMap_.Clear();
    rowMapActive_ = 0;
    for (int i = rows_.Count() - 1; i >= 0; --i)
        DeleteRawRow(i);
}

void Zn_Dataset::ClearAll()
{
    rows_.ReleaseList();
    columns_.ReleaseList();
    constColumns_.ReleaseList();
    ForgetOriginals();
    rowMap_.Clear();
    rowMapActive_ = 0;
    groupColumns_.Clear();
}

void Zn_Dataset::Reset()
{
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        Zn_Record* row = rows_.GetSafeItem(i);
        if (row->GetType() != Zn_Record::Updated)
            continue;
        if (const Zn_Record* original = orgBuffer_.GetItem(row->GetOrgIdx()))
            row->Assign(original);
        row->SetOrgIdx(-1);
        row->SetType(Zn_Record::Normal);
    }
    for (int i = 0, n = orgBuffer_.Count(); i < n; ++i) {
        const Zn_Record* deleted = orgBuffer_.GetItem(i);
        if (deleted->GetType() != Zn_Record::Deleted || deleted->GetOrgIdx() < 0)
            continue;
        if (Zn_Record* row = rows_.GetSafeItem(rows_.Insert(deleted->GetOrgIdx(), deleted))) {
            row->SetOrgIdx(-1);
            row->SetType(Zn_Record::Normal);
        }
    }
    rows_.DeleteType(Zn_Record::Inserted);
    ForgetOriginals();
}

void Zn_Dataset::ApplyChange()
{
    for (int i = 0, n = rows_.Count(); i < n; ++i) {
        Zn_Record* row = rows_.GetSafeItem(i);
        if (row->GetType() != Zn_Record::Normal) {
            row->SetType(Zn_Record::Normal);
            row->SetOrgIdx(-1);
        }
    }
    ForgetOriginals();
}
