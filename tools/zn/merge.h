// Applies the changes of one table to a base that another side holds.
//
//     TableMerge merge(base, changes, {u"CustomerId"});
//     merge.Resolve();                    // finds every row and every conflict; changes nothing
//     if (merge.Conflicts().empty())
//         merge.Apply();
//
// Rows are found by their keys: an updated row by the key of its original, a deleted one by its own. Of an updated row
// the cells that differ from the original are stored, so that what the base changed elsewhere stays. It is a
// conflict when a row is missing, when its cells are no longer what the other side changed, when a key would stand
// twice. Applying in spite of conflicts leaves out rows that are missing and stores the other side's values.
// When the changes hold every row of the base (mode 1), inserted rows go where they stand there, else to the end.
#pragma once

#include "Zn_Dataset.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace zntool {

class TableMerge {
public:
    // Both tables must have the key columns.
    TableMerge(Zn_Dataset& base, const Zn_Dataset& changes, const std::vector<Zn_WString>& key);

    void Resolve();
    void Apply();
    const std::vector<std::string>& Conflicts() const { return conflicts_; }

private:
    struct Pair {
        int base;
        int change; // a row of the changes
    };

    using KeyIndex = std::unordered_map<std::u16string, int>;
    static constexpr int kSeveral = -1;

    void IndexBase();
    void ResolveUpdates();
    void ResolveDeletes();
    void ResolveNewKeys();
    int FindBase(const std::u16string& key, const char* what);
    void Occupy(const std::u16string& key, int change, bool inserted);
    void CheckCell(int baseRow, int column, const Zn_Variant* original, const Zn_Variant* now,
                   const std::u16string& key);
    bool CanPlace() const;
    void StoreUpdates();
    void Insert(int change, int at);
    void Store(int baseRow, int column, const Zn_Variant* value);
    void Report(const std::u16string& key, const std::string& reason);
    std::u16string NewKey(int change) const;

    Zn_Dataset& base_;
    const Zn_Dataset& changes_;
    std::string name_;
    std::vector<int> baseKey_;
    std::vector<int> changeKey_;
    std::vector<int> baseColumns_; // by column of the changes; -1: the base has none
    KeyIndex index_;               // base rows by key; resolving brings it to the keys after the changes
    std::vector<bool> taken_;      // base rows that a change was found for
    std::vector<Pair> updates_;
    std::vector<Pair> overwrites_; // inserted rows whose key the base has
    std::vector<int> inserts_;
    std::vector<int> deletes_; // base rows
    std::vector<std::string> conflicts_;
};

// Whether no two rows of a table have the same key; all key columns must be there.
bool IsUnique(const Zn_Dataset& table, const std::vector<Zn_WString>& key);
bool HasColumns(const Zn_Dataset& table, const std::vector<Zn_WString>& key);

} // namespace zntool
