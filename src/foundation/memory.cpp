#include "foundation/memory.h"

#include "foundation/asan.h"
#include "platform/platform.h"

#include <cstdlib>

namespace {

std::atomic<bool> failed{false};

// Memory from this size on is worth large pages.
constexpr int kLarge = 1 << 20;

void* WithLargePages(void* memory, int size) noexcept
{
    if (memory && size >= kLarge)
        zn::platform::PreferLargePages(memory, static_cast<std::size_t>(size));
    return memory;
}

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
    if (size < 1 || zn::AllocationMustFail())
        return nullptr;
    return WithLargePages(std::malloc(static_cast<std::size_t>(size)), size);
}

void zn_free(void* memory) noexcept
{
    std::free(memory);
}

void* zn::Reallocate(void* memory, int size) noexcept
{
    if (size < 1 || zn::AllocationMustFail())
        return nullptr;
    return WithLargePages(std::realloc(memory, static_cast<std::size_t>(size)), size);
}

// The leak checker looks for pointers in the heap alone.
static bool StandsOnPages(std::size_t size) noexcept
{
    return !zn::kHasAsan && size % zn::platform::kLargePage == 0;
}

void* zn::TakeChunk(std::size_t size) noexcept
{
    if (AllocationMustFail())
        return nullptr;
    return StandsOnPages(size) ? platform::TakePages(size) : std::malloc(size);
}

void zn::GiveChunk(void* chunk, std::size_t size) noexcept
{
    StandsOnPages(size) ? platform::GivePages(chunk, size) : zn_free(chunk);
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
