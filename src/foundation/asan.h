// Closes memory that is not handed out, so that the address sanitizer sees the use of what was given back.
#pragma once

#include <cstddef>

#if defined(__has_feature)
#    if __has_feature(address_sanitizer)
#        define ZN_HAS_ASAN 1
#    endif
#elif defined(__SANITIZE_ADDRESS__)
#    define ZN_HAS_ASAN 1
#endif
#ifdef ZN_HAS_ASAN
#    include <sanitizer/asan_interface.h>
#endif

namespace zn {

#ifdef ZN_HAS_ASAN
constexpr bool kHasAsan = true;
inline void CloseMemory(const void* memory, std::size_t size) noexcept
{
    ASAN_POISON_MEMORY_REGION(memory, size);
}
inline void OpenMemory(const void* memory, std::size_t size) noexcept
{
    ASAN_UNPOISON_MEMORY_REGION(memory, size);
}
#else
constexpr bool kHasAsan = false;
inline void CloseMemory(const void*, std::size_t) noexcept {}
inline void OpenMemory(const void*, std::size_t) noexcept {}
#endif

} // namespace zn
