// Pools of fixed-size, reference-counted blocks: where the items of lists live.
//
// A block stays at its address until its last reference is released. Every operation is safe to
// call from several threads.
#pragma once

#include "Zn_Base.h"
#include "Zn_RefCount.h"

#include <atomic>

// The count in front of a block. A new block has count 0; the holder that takes it first calls AddRef.
class ZN_API Zn_ObjBufData {
public:
    int AddRef() noexcept { return refs_.AddRef(); }
    // Returns the count left. At 0 the caller destroys what is in the block and gives it back to its pool.
    int Release() noexcept { return refs_.Release(); }
    int GetRefCount() const noexcept { return refs_.Get(); }

    static Zn_ObjBufData* FromItem(void* item) noexcept { return static_cast<Zn_ObjBufData*>(item) - 1; }
    static Zn_ObjBufData* FromItem(const void* item) noexcept { return FromItem(const_cast<void*>(item)); }
    void* GetItem() noexcept { return this + 1; }

private:
    alignas(8) Zn_RefCount refs_;
};

static_assert(sizeof(Zn_ObjBufData) == 8, "items behind the count stay 8-byte aligned");

class ZN_API Zn_ObjBufPool {
public:
    // The name is kept by pointer; itemSize is in bytes; the pool grows by itemsPerBlock items at a time, once it is
    // large by a quarter of what it is, up to 2 MiB.
    Zn_ObjBufPool(const char* name, int itemSize, int itemsPerBlock) noexcept;
    // Copies the description only: name and sizes.
    Zn_ObjBufPool(const Zn_ObjBufPool& other) noexcept;
    Zn_ObjBufPool& operator=(const Zn_ObjBufPool&) = delete;
    ~Zn_ObjBufPool();

    // Uninitialised memory of itemSize bytes with count 0; null when memory runs out.
    void* Alloc() noexcept;
    // Up to count of them into items, in rising addresses where it can; returns how many it got.
    int Alloc(void** items, int count) noexcept;
    // Null does nothing. With the last item of all, the pool gives its memory back but for one block.
    void Free(void* item) noexcept;
    void Free(void* const* items, int count) noexcept;
    // Memory of count items that stand one behind the other, each GetStride() bytes from the next; null when that many
    // can't. They are given back together, or one by one as the others are.
    void* AllocRun(int count) noexcept;
    void FreeRun(void* first, int count) noexcept;
    static constexpr int kLongestRun = 63;
    // Whether an address is an item of this pool (handed out or not).
    bool Owns(const void* item) const noexcept;

    const char* GetName() const noexcept { return name_; }
    int GetItemSize() const noexcept { return itemSize_; }
    int GetItemsPerBlock() const noexcept { return itemsPerBlock_; }
    // Bytes from one item to the next of a run.
    int GetStride() const noexcept { return stride_; }
    static constexpr int StrideOf(int itemSize) noexcept
    {
        return static_cast<int>(sizeof(Zn_ObjBufData)) + (itemSize + 7) / 8 * 8;
    }
    // Items handed out and not yet given back.
    int GetUsedCount() const noexcept;

private:
    struct Block {
        unsigned char* begin;
        std::size_t size; // in bytes
    };
    struct FreeItem;
    std::size_t NextBlockSize() const noexcept;
    void* Take() noexcept;
    void PutBack(void* item) noexcept;
    unsigned char* TakeRun(int count) noexcept;
    unsigned char* PopRun(int count) noexcept;
    void PutRun(unsigned char* run, int count) noexcept;
    std::size_t RunSize(int count) const noexcept
    {
        return static_cast<std::size_t>(stride_) * static_cast<std::size_t>(count);
    }
    bool Grow() noexcept;
    void Shrink() noexcept;
    void OpenBlock(const Block& block) noexcept;

    const char* name_;
    int itemSize_;
    int itemsPerBlock_;
    int stride_; // from one item's count to the next
    int used_ = 0;
    FreeItem* free_ = nullptr;
    FreeItem* freeRuns_[kLongestRun + 1] = {}; // by their length, from 2 on
    std::uint64_t freeLengths_ = 0;            // a bit for each length of which there is a run
    unsigned char* fresh_ = nullptr;           // not yet used part of the newest block
    unsigned char* freshEnd_ = nullptr;
    Block* blocks_ = nullptr; // in the order of their addresses
    std::size_t memory_ = 0;  // bytes of all of them
    int blockCount_ = 0;
    int blockRoom_ = 0;
    mutable int lastOwner_ = 0; // where Owns last found an item
    mutable std::atomic<bool> locked_{false};
};
