#include "Zn_ObjBufPool.h"

#include "foundation/asan.h"
#include "foundation/memory.h"
#include "foundation/spin_guard.h"
#include "platform/platform.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <iterator>
#include <new>
#include <utility>

// An item given back, seen from where its count was.
struct Zn_ObjBufPool::FreeItem {
    FreeItem* next;
};

Zn_ObjBufPool::Zn_ObjBufPool(const char* name, int itemSize, int itemsPerBlock) noexcept
    : name_(name), itemSize_(std::clamp(itemSize, 1, INT_MAX / 4)), itemsPerBlock_(std::max(itemsPerBlock, 1)),
      stride_(StrideOf(itemSize_))
{
    itemsPerBlock_ = std::min(itemsPerBlock_, INT_MAX / stride_);
}

Zn_ObjBufPool::Zn_ObjBufPool(const Zn_ObjBufPool& other) noexcept
    : Zn_ObjBufPool(other.name_, other.itemSize_, other.itemsPerBlock_)
{
}

Zn_ObjBufPool::~Zn_ObjBufPool()
{
    while (blockCount_ > 0) {
        --blockCount_;
        zn::GiveChunk(blocks_[blockCount_].begin, blocks_[blockCount_].size);
    }
    zn_free(blocks_);
}

void* Zn_ObjBufPool::Alloc() noexcept
{
    const zn::SpinGuard guard(locked_);
    return Take();
}

int Zn_ObjBufPool::Alloc(void** items, int count) noexcept
{
    const zn::SpinGuard guard(locked_);
    for (int i = 0; i < count; ++i)
        if (!(items[i] = Take()))
            return i;
    return std::max(count, 0);
}

void* Zn_ObjBufPool::AllocRun(int count) noexcept
{
    if (count < 1 || count > std::min(kLongestRun, itemsPerBlock_))
        return nullptr;
    const zn::SpinGuard guard(locked_);
    unsigned char* run = TakeRun(count);
    if (!run)
        return nullptr;
    zn::OpenMemory(run, RunSize(count));
    for (int i = 0; i < count; ++i)
        new (run + RunSize(i)) Zn_ObjBufData;
    used_ += count;
    return run + sizeof(Zn_ObjBufData);
}

void* Zn_ObjBufPool::Take() noexcept
{
    void* memory = free_;
    if (memory) {
        zn::OpenMemory(memory, static_cast<std::size_t>(stride_));
        free_ = free_->next;
    } else {
        memory = TakeRun(1);
        if (!memory)
            return nullptr;
        zn::OpenMemory(memory, static_cast<std::size_t>(stride_));
    }
    ++used_;
    return (new (memory) Zn_ObjBufData)->GetItem();
}

// A run of the length asked for: one that was given back, a part of a longer one, or new memory. Single items take
// new memory first and leave the runs to those that need them.
unsigned char* Zn_ObjBufPool::TakeRun(int count) noexcept
{
    const auto hasFresh = [&] { return static_cast<std::size_t>(freshEnd_ - fresh_) >= RunSize(count); };
    const std::uint64_t lengths = count == 1 && hasFresh() ? 0 : freeLengths_ >> count;
    if (lengths != 0) {
        const int length = count + std::countr_zero(lengths);
        unsigned char* run = PopRun(length);
        PutRun(run + RunSize(count), length - count);
        return run;
    }
    if (!hasFresh()) {
        unsigned char* rest = fresh_;
        const auto restCount = static_cast<int>((freshEnd_ - fresh_) / stride_);
        if (!Grow())
            return nullptr;
        PutRun(rest, restCount);
    }
    return std::exchange(fresh_, fresh_ + RunSize(count));
}

unsigned char* Zn_ObjBufPool::PopRun(int count) noexcept
{
    FreeItem* run = freeRuns_[count];
    zn::OpenMemory(run, sizeof(FreeItem));
    freeRuns_[count] = run->next;
    if (!run->next)
        freeLengths_ &= ~(std::uint64_t(1) << count);
    return reinterpret_cast<unsigned char*>(run);
}

void Zn_ObjBufPool::PutRun(unsigned char* run, int count) noexcept
{
    if (count < 1)
        return;
    FreeItem*& first = count == 1 ? free_ : freeRuns_[count];
    zn::OpenMemory(run, sizeof(FreeItem));
    first = new (run) FreeItem{first};
    zn::CloseMemory(run, RunSize(count));
    if (count > 1)
        freeLengths_ |= std::uint64_t(1) << count;
}

void Zn_ObjBufPool::Free(void* item) noexcept
{
    if (item)
        Free(&item, 1);
}

void Zn_ObjBufPool::Free(void* const* items, int count) noexcept
{
    const zn::SpinGuard guard(locked_);
    for (int i = 0; i < count; ++i)
        PutBack(items[i]);
    if (used_ == 0 && blockCount_ > 1)
        Shrink();
}

void Zn_ObjBufPool::FreeRun(void* first, int count) noexcept
{
    const zn::SpinGuard guard(locked_);
    PutRun(reinterpret_cast<unsigned char*>(Zn_ObjBufData::FromItem(first)), count);
    used_ -= count;
    if (used_ == 0 && blockCount_ > 1)
        Shrink();
}

void Zn_ObjBufPool::PutBack(void* item) noexcept
{
    PutRun(reinterpret_cast<unsigned char*>(Zn_ObjBufData::FromItem(item)), 1);
    --used_;
}

bool Zn_ObjBufPool::Grow() noexcept
{
    if (blockCount_ == blockRoom_) {
        const int room = blockRoom_ + blockRoom_ / 2 + 8;
        constexpr int kMost = INT_MAX / static_cast<int>(sizeof(Block));
        void* grown = room > kMost ? nullptr : zn::Reallocate(blocks_, room * static_cast<int>(sizeof(Block)));
        if (!grown)
            return false;
        blocks_ = static_cast<Block*>(grown);
        blockRoom_ = room;
    }
    Block block{nullptr, NextBlockSize()};
    block.begin = static_cast<unsigned char*>(zn::TakeChunk(block.size));
    if (!block.begin)
        return false;
    Block* end = blocks_ + blockCount_;
    Block* place = std::upper_bound(blocks_, end, block,
                                    [](const Block& a, const Block& b) { return std::less<>()(a.begin, b.begin); });
    std::copy_backward(place, end, end + 1);
    *place = block;
    ++blockCount_;
    memory_ += block.size;
    OpenBlock(block);
    return true;
}

// Blocks of a large pool are large too, so that there are few to look through and the system gives large pages.
std::size_t Zn_ObjBufPool::NextBlockSize() const noexcept
{
    constexpr std::size_t kPage = zn::platform::kLargePage;
    const std::size_t step = RunSize(itemsPerBlock_);
    const std::size_t part = memory_ / 4;
    if (step > kPage || part < step)
        return step;
    return part < kPage ? part / step * step : kPage;
}

void Zn_ObjBufPool::Shrink() noexcept
{
    std::iter_swap(blocks_, std::min_element(blocks_, blocks_ + blockCount_,
                                             [](const Block& a, const Block& b) { return a.size < b.size; }));
    while (blockCount_ > 1) {
        const Block& block = blocks_[--blockCount_];
        zn::OpenMemory(block.begin, block.size);
        zn::GiveChunk(block.begin, block.size);
    }
    memory_ = blocks_[0].size;
    free_ = nullptr;
    std::fill(std::begin(freeRuns_), std::end(freeRuns_), nullptr);
    freeLengths_ = 0;
    OpenBlock(blocks_[0]);
}

void Zn_ObjBufPool::OpenBlock(const Block& block) noexcept
{
    fresh_ = block.begin;
    freshEnd_ = block.begin + block.size;
    zn::CloseMemory(block.begin, block.size);
}

bool Zn_ObjBufPool::Owns(const void* item) const noexcept
{
    const zn::SpinGuard guard(locked_);
    const auto address = reinterpret_cast<std::uintptr_t>(item) - sizeof(Zn_ObjBufData);
    const auto offsetIn = [address](const Block& block) {
        return address - reinterpret_cast<std::uintptr_t>(block.begin);
    };
    int owner = lastOwner_;
    if (owner >= blockCount_ || offsetIn(blocks_[owner]) >= blocks_[owner].size) {
        const Block* next =
            std::upper_bound(blocks_, blocks_ + blockCount_, address, [](std::uintptr_t a, const Block& b) {
                return a < reinterpret_cast<std::uintptr_t>(b.begin);
            });
        if (next == blocks_)
            return false;
        owner = static_cast<int>(next - blocks_) - 1;
        if (offsetIn(blocks_[owner]) >= blocks_[owner].size)
            return false;
        lastOwner_ = owner;
    }
    const std::uintptr_t offset = offsetIn(blocks_[owner]);
    return offset % static_cast<std::uintptr_t>(stride_) == 0 && offset + RunSize(1) <= blocks_[owner].size;
}

int Zn_ObjBufPool::GetUsedCount() const noexcept
{
    const zn::SpinGuard guard(locked_);
    return used_;
}
