// The index rules of lists that stand on a std::vector, and the place where its want of memory ends:
// the vector stays as it was and the caller hears of it.
#pragma once

#include <algorithm>
#include <climits>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <vector>

namespace zn {

// Whether body ran without running out of memory.
template <class Body>
bool Guarded(Body body) noexcept
{
    try {
        body();
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}

template <class T>
bool IsIndexOf(const std::vector<T>& items, int index) noexcept
{
    return index >= 0 && static_cast<std::size_t>(index) < items.size();
}

// An index past the end means the end; a negative one 0. Returns the index, -1 without memory.
template <class T>
int InsertInto(std::vector<T>& items, int index, const T& value) noexcept
{
    if (items.size() >= INT_MAX)
        return -1;
    const int place = std::clamp(index, 0, static_cast<int>(items.size()));
    return Guarded([&] { items.insert(items.begin() + place, value); }) ? place : -1;
}

// Removes up to count entries from start on; returns how many.
template <class T>
int DeleteFrom(std::vector<T>& items, int start, int count) noexcept
{
    if (!IsIndexOf(items, start) || count < 1)
        return 0;
    count = std::min(count, static_cast<int>(items.size()) - start);
    items.erase(items.begin() + start, items.begin() + start + count);
    return count;
}

} // namespace zn
