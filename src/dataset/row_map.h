// Entries of a table's row map: bits 24-31 the group level (0 for a data row), bits 0-23 the index.
#pragma once

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
