#include "foundation/memory.h"

#include <cstdlib>

namespace {

std::atomic<bool> failed{false};

} // namespace

constinit std::atomic<int> zn::allocationsToFailure{0};

bool zn::IsTheOneToFail() noexcept
{
    if (allocationsToFailure.fetch_sub(1, std::memory_order_relaxed) != 1)
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
    allocationsToFailure = n;
}

bool zn::AllocationFailed() noexcept
{
    return failed;
}
