// A hint that memory will soon be read, so that reading it then need not wait. Any address will do: nothing is read.
// A function that does nothing else is one without effect to GCC, which leaves its calls out.
#pragma once

#if defined(_MSC_VER) && !defined(__clang__)
#    include <intrin.h>
#endif

#include <cstddef>

namespace zn {

inline void Prefetch(const void* address) noexcept
{
#if defined(__GNUC__) || defined(__clang__)
    __builtin_prefetch(address);
#elif defined(_M_ARM64)
    __prefetch(address);
#elif defined(_M_X64) || defined(_M_IX86)
    _mm_prefetch(static_cast<const char*>(address), _MM_HINT_T0);
#endif
}

// A thing of up to a cache line that may stand across two of them.
inline void Prefetch(const void* address, std::size_t size) noexcept
{
    Prefetch(address);
    Prefetch(static_cast<const unsigned char*>(address) + size - 1);
}
template <class T>
void PrefetchAll(const T* thing) noexcept
{
    if (thing)
        Prefetch(thing, sizeof(T));
}

} // namespace zn
