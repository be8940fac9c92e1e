// The allocator's inner side: growing in place, and a switch with which tests make it fail.
//
// Everything the library keeps in pools, buffers, strings and lists comes from _zn_malloc, so a test
// that fails one allocation after another meets every place where memory can run out.
#pragma once

#include "Zn_Base.h"

#include <atomic>

namespace zn {

// Allocations left up to the one that fails; 0 and below: none fails.
extern std::atomic<int> allocationsToFailure;
bool IsTheOneToFail() noexcept;

// Resizes what _zn_malloc returned (null: as _zn_malloc), keeping its bytes; null when it can't, and then
// the old memory stays as it was.
void* Reallocate(void* memory, int size) noexcept;

// Memory of the size of many things, taken and given by size: a multiple of platform::kLargePage stands on pages of
// its own, any other size in the heap. Null when there is none.
void* TakeChunk(std::size_t size) noexcept;
void GiveChunk(void* chunk, std::size_t size) noexcept;

// Lets the n-th allocation from now on fail, once (1 is the next); 0 switches failing off. Of one thread's
// use at a time: meant for tests.
void FailAllocation(int n) noexcept;
// Whether the allocation that asks is the one to fail; every allocator of the library's own asks.
inline bool AllocationMustFail() noexcept
{
    return allocationsToFailure.load(std::memory_order_relaxed) > 0 && IsTheOneToFail();
}
// Whether the allocation asked for has failed since.
bool AllocationFailed() noexcept;

} // namespace zn
