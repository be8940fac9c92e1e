#include "foundation/memory.h"

#include <atomic>
#include <cstdlib>

namespace {

// Allocations left up to the one that fails; 0 and below: none fails.
std::atomic<int> countdown{0};
std::atomic<bool> failed{false};

} // namespace

bool zn::AllocationMustFail() noexcept
{
    if (countdown.load(std::memory_order_relaxed) <= 0) [[likely]]
        return false;
    if (countdown.fetch_sub(1, std::memory_order_relaxed) != 1)
        return false;
    failed = true;
    return true;
}

void* _zn_malloc(int size) noexcept
{
    return size < 1 || zn::AllocationMustFail() ? nullptr : std::malloc(static_cast<std::size_t>(size));
}

void zn_free(void* memory) noexcept
{
    std::free(memory);
}

void* zn::Reallocate(void* memory, int size) noexcept
{
    return size < 1 || zn::AllocationMustFail() ? nullptr : std::realloc(memory, static_cast<std::size_t>(size));
}

void zn::FailAllocation(int n) noexcept
{
    failed = false;
    countdown = n;
}

bool zn::AllocationFailed() noexcept
{
    return failed;
}
