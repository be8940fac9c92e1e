// An ordered list of 32-bit integers. One list is used by one thread at a time.
#pragma once

#include "Zn_Base.h"

#include <utility>
#include <vector>

class ZN_API Zn_IntList {
public:
    Zn_IntList() noexcept = default;
    // Without memory a copy is empty, and a list that is assigned to stays as it was.
    Zn_IntList(const Zn_IntList& other) noexcept { AssignList(other); }
    Zn_IntList(Zn_IntList&&) noexcept = default;
    Zn_IntList& operator=(const Zn_IntList& other) noexcept
    {
        AssignList(other);
        return *this;
    }
    Zn_IntList& operator=(Zn_IntList&&) noexcept = default;
    ~Zn_IntList() = default;

    int Add(int value);
    // An index past the end means the end; a negative one 0. Returns the index.
    int Insert(int index, int value);
    // Removes up to count entries from start on; returns how many.
    int Delete(int start, int count = 1);
    // 0 when out of range.
    int GetItem(int index) const noexcept;
    // Replaces an entry; -1 when out of range, else the index.
    int SetItem(int index, int value) noexcept;
    int Count() const noexcept { return static_cast<int>(items_.size()); }
    void Clear() noexcept { items_.clear(); }
    // Makes the list hold n entries: 0, 1, 2, ... n - 1.
    void Reset(int n);
    int AssignList(const Zn_IntList& other) noexcept;
    // Takes the entries over.
    void Take(std::vector<std::int32_t>&& entries) noexcept { items_ = std::move(entries); }

    auto begin() const noexcept { return items_.begin(); }
    auto end() const noexcept { return items_.end(); }

private:
    std::vector<std::int32_t> items_;
};
