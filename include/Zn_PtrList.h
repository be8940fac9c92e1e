// An ordered list of pointers that it does not own. One list is used by one thread at a time.
#pragma once

#include "Zn_Base.h"

#include <vector>

class ZN_API Zn_PtrList {
public:
    // Returns the new index.
    int Add(void* pointer);
    int Count() const noexcept { return static_cast<int>(items_.size()); }
    // Null when out of range.
    void* Items(int index) const noexcept { return GetItem(index); }
    void* GetItem(int index) const noexcept;
    // First index, -1 when absent.
    int IndexOf(const void* pointer) const noexcept;
    // Removes up to count entries from start on; returns how many.
    int Delete(int start, int count = 1);
    void Clear() noexcept { items_.clear(); }

    auto begin() const noexcept { return items_.begin(); }
    auto end() const noexcept { return items_.end(); }

private:
    std::vector<void*> items_;
};
