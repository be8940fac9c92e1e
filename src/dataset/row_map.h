// Entries of a table's row map: bits 24-31 the group level (0 for a data row), bits 0-23 the index.
#pragma once

#include "Zn_IntList.h"

#include <algorithm>
#include <cstdint>

constexpr int kMapIndexMask = 0xFFFFFF;

constexpr int kMostLevel = 0xFF;

constexpr int MapEntry(int level, int index) noexcept
{
    return static_cast<int>(static_cast<std::uint32_t>(level) << 24) | (index & kMapIndexMask);
}

constexpr int MapEntryLevel(int entry) noexcept
{
    return static_cast<int>(static_cast<std::uint32_t>(entry) >> 24);
}

constexpr int MapEntryIndex(int entry) noexcept
{
    return entry & kMapIndexMask;
}

// The stored rows behind row numbers: as a map in force has them, -1 where that has a group row or nothing; without a
// map the numbers themselves.
class RawRows {
public:
    explicit RawRows(const Zn_IntList* map = nullptr) noexcept : map_(map) {}

    int operator()(int row) const noexcept
    {
        if (!map_)
            return row;
        if (row < 0 || row >= map_->Count())
            return -1;
        const int entry = map_->begin()[row];
        return MapEntryLevel(entry) == 0 ? MapEntryIndex(entry) : -1;
    }

    // The rows of data from `from` up to `to`, which is within the map, counted up to a number that is enough.
    int Count(int from, int to, int enough = INT32_MAX) const noexcept
    {
        if (from >= to)
            return 0;
        if (!map_)
            return static_cast<int>(std::min<std::int64_t>(std::int64_t{to} - from, enough));
        int count = 0;
        for (auto entry = map_->begin() + std::max(from, 0), end = map_->begin() + to; entry < end && count < enough;
             ++entry)
            count += MapEntryLevel(*entry) == 0;
        return count;
    }

private:
    const Zn_IntList* map_;
};
