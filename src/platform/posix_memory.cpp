#include "platform/platform.h"

#include "platform/keep_errno.h"

#include <cstdint>

#include <sys/mman.h>
#include <unistd.h>

namespace zn::platform {

void* TakePages(std::size_t size) noexcept
{
    if (size == 0 || size % kLargePage != 0)
        return nullptr;
    const KeepErrno kept;
    void* mapped = ::mmap(nullptr, size + kLargePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED)
        return nullptr;
    auto* begin = static_cast<char*>(mapped);
    const std::size_t before = -reinterpret_cast<std::uintptr_t>(begin) % kLargePage;
    if (before > 0)
        ::munmap(begin, before);
    ::munmap(begin + before + size, kLargePage - before);
    PreferLargePages(begin + before, size);
    return begin + before;
}

void GivePages(void* pages, std::size_t size) noexcept
{
    const KeepErrno kept;
    if (pages)
        ::munmap(pages, size);
}

void PreferLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t size) noexcept
{
#ifdef MADV_HUGEPAGE
    const KeepErrno kept;
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const std::size_t before = reinterpret_cast<std::uintptr_t>(memory) % page; // of the first page, not asked for
    ::madvise(static_cast<char*>(memory) - before, size + before, MADV_HUGEPAGE);
#endif
}

} // namespace zn::platform
