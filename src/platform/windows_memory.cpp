#include "platform/platform.h"

#include <windows.h>

// Large pages are a privilege of few programs here, so none are asked for.
namespace zn::platform {

void* TakePages(std::size_t size) noexcept
{
    if (size == 0 || size % kLargePage != 0)
        return nullptr;
    return ::VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

void GivePages(void* pages, std::size_t) noexcept
{
    if (pages)
        ::VirtualFree(pages, 0, MEM_RELEASE);
}

void PreferLargePages(void*, std::size_t) noexcept {}

} // namespace zn::platform
