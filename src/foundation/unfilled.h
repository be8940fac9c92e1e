// A vector of plain things for much work in between: resize() leaves what it adds as memory has it, and what is long
// stands on large pages. Throws as std::vector does.
#pragma once

#include "foundation/memory.h"
#include "platform/platform.h"

#include <cstddef>
#include <new>
#include <type_traits>
#include <vector>

namespace zn {

template <class T>
struct UnfilledAllocator {
    static_assert(std::is_trivially_default_constructible_v<T>);
    using value_type = T;

    UnfilledAllocator() noexcept = default;
    template <class U>
    UnfilledAllocator(const UnfilledAllocator<U>&) noexcept
    {
    }
    T* allocate(std::size_t count)
    {
        void* memory = count > SIZE_MAX / 2 / sizeof(T) ? nullptr : TakeChunk(SizeFor(count));
        if (!memory)
            throw std::bad_alloc();
        return static_cast<T*>(memory);
    }
    void deallocate(T* memory, std::size_t count) noexcept { GiveChunk(memory, SizeFor(count)); }
    template <class U>
    void construct(U* place)
    {
        ::new (static_cast<void*>(place)) U;
    }
    template <class U>
    bool operator==(const UnfilledAllocator<U>&) const noexcept
    {
        return true;
    }

private:
    static std::size_t SizeFor(std::size_t count) noexcept
    {
        const std::size_t size = count * sizeof(T), over = size % platform::kLargePage;
        return size < platform::kLargePage || over == 0 ? size : size + platform::kLargePage - over;
    }
};

template <class T>
using UnfilledVector = std::vector<T, UnfilledAllocator<T>>;

} // namespace zn
