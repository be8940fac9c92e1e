// A vector of plain things that resize() leaves as memory has them, for what is all written anyway.
#pragma once

#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

namespace zn {

template <class T>
struct UnfilledAllocator : std::allocator<T> {
    static_assert(std::is_trivially_default_constructible_v<T>);
    template <class U>
    struct rebind {
        using other = UnfilledAllocator<U>;
    };
    template <class U, class... Args>
    void construct(U* place, Args&&... args)
    {
        if constexpr (sizeof...(Args) == 0)
            ::new (static_cast<void*>(place)) U;
        else
            ::new (static_cast<void*>(place)) U(std::forward<Args>(args)...);
    }
};

template <class T>
using UnfilledVector = std::vector<T, UnfilledAllocator<T>>;

} // namespace zn
