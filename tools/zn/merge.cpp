#include "merge.h"

#include "cell_text.h"
#include "key_columns.h"

#include <algorithm>
#include <iterator>
#include <unordered_set>

namespace zntool {
namespace {

std::vector<int> Places(const Zn_Dataset& table, const std::vector<Zn_WString>& key)
{
    std::vector<int> places;
    std::transform(key.begin(), key.end(), std::back_inserter(places),
                   [&](const Zn_WString& id) { return table.GetColIndex(id.GetView()); });
    return places;
}

} // namespace

bool HasColumns(const Zn_Dataset& table, const std::vector<Zn_WString>& key)
{
    const std::vector<int> places = Places(table, key);
    return std::all_of(places.begin(), places.end(),
                       [&](int place) { return place >= 0 && place < table.GetNormalCount(); });
}

bool IsUnique(const Zn_Dataset& table, const std::vector<Zn_WString>& key)
{
    const std::vector<int> places = Places(table, key);
    std::unordered_set<std::u16string> seen;
    for (int row = 0; row < table.GetRowCountNF(); ++row) {
        if (!seen.insert(KeyText(places, [&](int column) { return table.GetColumnNF(row, column); })).second)
            return false;
    }
    return true;
}

TableMerge::TableMerge(Zn_Dataset& base, const Zn_Dataset& changes, const std::vector<Zn_WString>& key)
    : base_(base), changes_(changes), name_(ToUtf8(changes.GetId().GetView())), baseKey_(Places(base, key)),
      changeKey_(Places(changes, key))
{
    for (int column = 0; column < changes.GetNormalCount(); ++column) {
        const int place = base.GetColIndex(changes.GetColID(column).GetView());
        baseColumns_.push_back(place < base.GetNormalCount() ? place : -1);
        if (baseColumns_.back() < 0)
            conflicts_.push_back(name_ + ": the base has no column " + ToUtf8(changes.GetColID(column).GetView()));
    }
}

void TableMerge::Resolve()
{
    IndexBase();
    ResolveUpdates();
    ResolveDeletes();
    ResolveNewKeys();
}

void TableMerge::IndexBase()
{
    taken_.assign(static_cast<std::size_t>(base_.GetRowCountNF()), false);
    index_.reserve(taken_.size());
    for (int row = 0; row < base_.GetRowCountNF(); ++row) {
        const auto [entry, fresh] =
            index_.try_emplace(KeyText(baseKey_, [&](int column) { return base_.GetColumnNF(row, column); }), row);
        if (!fresh)
            entry->second = kSeveral;
    }
}

// The base row of a key that no other change has taken; -1 with a conflict when there is none.
int TableMerge::FindBase(const std::u16string& key, const char* what)
{
    const auto found = index_.find(key);
    if (found == index_.end())
        Report(key, std::string(what) + ", but the base has no such row");
    else if (found->second == kSeveral)
        Report(key, std::string(what) + ", but the base has several such rows");
    else if (taken_[static_cast<std::size_t>(found->second)])
        Report(key, std::string(what) + ", but another change concerns the same row");
    else
        return taken_[static_cast<std::size_t>(found->second)] = true, found->second;
    return -1;
}

void TableMerge::ResolveUpdates()
{
    for (int change = 0; change < changes_.GetRowCountNF(); ++change) {
        if (changes_.GetRowTypeNF(change) != Zn_Record::Updated)
            continue;
        const auto key = KeyText(changeKey_, [&](int column) { return changes_.GetOrgColumnNF(change, column); });
        const int row = FindBase(key, "updated");
        if (row < 0)
            continue;
        updates_.push_back({row, change});
        for (int column = 0; column < changes_.GetNormalCount(); ++column) {
            const Zn_Variant* original = changes_.GetOrgColumnNF(change, column);
            const Zn_Variant* now = changes_.GetColumnNF(change, column);
            if (!SaysSame(original, now))
                CheckCell(row, column, original, now, key);
        }
    }
}

void TableMerge::ResolveDeletes()
{
    for (int n = 0, count = changes_.GetDelRowCount(); n < count; ++n) {
        const auto key = KeyText(changeKey_, [&](int column) { return changes_.GetDelColumn(n, column); });
        const int row = FindBase(key, "deleted");
        if (row < 0)
            continue;
        deletes_.push_back(row);
        for (int column = 0; column < changes_.GetNormalCount(); ++column)
            CheckCell(row, column, changes_.GetDelColumn(n, column), changes_.GetDelColumn(n, column), key);
    }
}

// A changed cell must hold in the base what it held for the other side, or already what that side made of it.
void TableMerge::CheckCell(int baseRow, int column, const Zn_Variant* original, const Zn_Variant* now,
                           const std::u16string& key)
{
    const int place = baseColumns_[static_cast<std::size_t>(column)];
    if (place < 0)
        return;
    const Zn_Variant* held = base_.GetColumnNF(baseRow, place);
    if (TextOf(held) != TextOf(original) && !SaysSame(held, now))
        Report(key, ToUtf8(changes_.GetColID(column).GetView()) + " was '" + ToUtf8(TextOf(original)) +
                        "' for the other side, but is '" + ToUtf8(TextOf(held)) + "' in the base");
}

std::u16string TableMerge::NewKey(int change) const
{
    return KeyText(changeKey_, [&](int column) { return changes_.GetColumnNF(change, column); });
}

// Frees the keys of rows that go or get another, then gives out the new ones.
void TableMerge::ResolveNewKeys()
{
    const auto free = [&](int row) {
        index_.erase(KeyText(baseKey_, [&](int column) { return base_.GetColumnNF(row, column); }));
    };
    std::vector<Pair> moved;
    for (const int row : deletes_)
        free(row);
    for (const Pair& pair : updates_) {
        const auto old = KeyText(changeKey_, [&](int column) { return changes_.GetOrgColumnNF(pair.change, column); });
        if (old != NewKey(pair.change)) {
            free(pair.base);
            moved.push_back(pair);
        }
    }
    for (const Pair& pair : moved)
        Occupy(NewKey(pair.change), pair.change, false);
    for (int change = 0; change < changes_.GetRowCountNF(); ++change) {
        if (changes_.GetRowTypeNF(change) == Zn_Record::Inserted)
            Occupy(NewKey(change), change, true);
    }
}

void TableMerge::Occupy(const std::u16string& key, int change, bool inserted)
{
    constexpr int kNew = -2;
    const auto [entry, fresh] = index_.try_emplace(key, kNew);
    if (!fresh)
        Report(key, inserted ? "inserted, but there is such a row already"
                             : "the new key of an updated row, but there is such a row already");
    if (!inserted)
        return;
    if (fresh || entry->second < 0)
        inserts_.push_back(change);
    else
        overwrites_.push_back({entry->second, change});
}

void TableMerge::Apply()
{
    StoreUpdates();
    const bool place = CanPlace();
    std::sort(deletes_.rbegin(), deletes_.rend());
    for (const int row : deletes_)
        base_.DeleteRow(row);
    for (const int change : inserts_)
        Insert(change, place ? change : base_.GetRowCountNF());
    for (const Zn_Variable& constant : changes_.GetConstColumns()) {
        if (base_.GetColIndex(constant.id.GetView()) < 0 || base_.GetConstColumn(constant.id.GetText()))
            base_.AddConstColumn(constant.id, constant.value);
    }
}

void TableMerge::StoreUpdates()
{
    for (const Pair& pair : updates_) {
        for (int column = 0; column < changes_.GetNormalCount(); ++column) {
            const Zn_Variant* now = changes_.GetColumnNF(pair.change, column);
            if (!SaysSame(changes_.GetOrgColumnNF(pair.change, column), now))
                Store(pair.base, column, now);
        }
    }
    for (const Pair& pair : overwrites_) {
        for (int column = 0; column < changes_.GetNormalCount(); ++column)
            Store(pair.base, column, changes_.GetColumnNF(pair.change, column));
    }
}

// Whether the rows of the changes, the inserted ones apart, are all that the base keeps.
bool TableMerge::CanPlace() const
{
    int others = 0;
    for (int change = 0; change < changes_.GetRowCountNF(); ++change)
        others += changes_.GetRowTypeNF(change) != Zn_Record::Inserted;
    return others == base_.GetRowCountNF() - static_cast<int>(deletes_.size());
}

void TableMerge::Insert(int change, int at)
{
    const int row = base_.InsertRow(at, 1);
    for (int column = 0; column < changes_.GetNormalCount(); ++column) {
        const Zn_Variant* value = changes_.GetColumnNF(change, column);
        if (value)
            Store(row, column, value);
    }
}

void TableMerge::Store(int baseRow, int column, const Zn_Variant* value)
{
    const int place = baseColumns_[static_cast<std::size_t>(column)];
    if (place >= 0)
        base_.SetColumnNF(baseRow, place, value ? value : &Zn_Variant::_ZnNullVariant);
}

// "customers CustomerId=5: ..."
void TableMerge::Report(const std::u16string& key, const std::string& reason)
{
    std::string place = name_;
    std::size_t pos = 0;
    for (const int column : changeKey_) {
        const bool single = changeKey_.size() == 1; // else each value stands behind its length
        const std::u16string value = single ? key : key.substr(pos + 1, key[pos]);
        pos += value.size() + 1;
        place += " " + ToUtf8(changes_.GetColID(column).GetView()) + "=" + ToUtf8(value);
    }
    conflicts_.push_back(place + ": " + reason);
}

} // namespace zntool
