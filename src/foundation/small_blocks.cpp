#include "foundation/small_blocks.h"

#include "foundation/asan.h"
#include "foundation/memory.h"
#include "foundation/spin_guard.h"
#include "platform/platform.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace zn {

namespace {

// Sizes go in steps of 8 bytes, from 128 bytes on of 16.
constexpr int kFineSteps = 16;
constexpr int kSizes = kFineSteps + (kLargestSmall - 8 * kFineSteps) / 16;

constexpr int StepOf(int size) noexcept
{
    return size <= 8 * kFineSteps ? (size - 1) / 8 : kFineSteps + (size - 8 * kFineSteps - 1) / 16;
}
constexpr int SizeOfStep(int step) noexcept
{
    return step < kFineSteps ? 8 * (step + 1) : 8 * kFineSteps + 16 * (step - kFineSteps + 1);
}
static_assert(StepOf(1) == 0 && StepOf(8) == 0 && StepOf(9) == 1 && StepOf(128) == 15 && StepOf(129) == 16);
static_assert(StepOf(kLargestSmall) == kSizes - 1 && SizeOfStep(kSizes - 1) == kLargestSmall);

// Slabs begin at multiples of their size, which is how a block finds its own.
constexpr std::uintptr_t kSlab = 0x4000;
// A shard's first region is small and stays; the others are worth large pages. Each loses a slab to where it begins.
constexpr std::size_t kFirstRegion = kSlab * 32;
constexpr std::size_t kRegion = platform::kLargePage;

struct FreeBlock {
    FreeBlock* next;
};

struct Region;
struct Shard;

// Things in a list from which each can take itself out.
template <class T>
struct Linked {
    T* next = nullptr;
    T* before = nullptr;

    static void Put(T*& first, T* thing) noexcept
    {
        thing->before = nullptr;
        thing->next = first;
        if (first)
            first->before = thing;
        first = thing;
    }
    static void TakeOut(T*& first, T* thing) noexcept
    {
        (thing->before ? thing->before->next : first) = thing->next;
        if (thing->next)
            thing->next->before = thing->before;
    }
};

// At the front of a slab; linked while the slab has room.
struct Slab : Linked<Slab> {
    Slab(Region& home, int stepOfBlocks) noexcept
        : region(home), step(stepOfBlocks), size(SizeOfStep(stepOfBlocks)),
          fresh(reinterpret_cast<unsigned char*>(this + 1))
    {
        CloseMemory(fresh, static_cast<std::size_t>(End() - fresh));
    }
    unsigned char* End() noexcept { return reinterpret_cast<unsigned char*>(this) + kSlab; }
    bool HasFresh() noexcept { return End() - fresh >= size; }
    bool HasRoom() noexcept { return free || HasFresh(); }

    Region& region;
    int step;
    int size;
    int used = 0;
    FreeBlock* free = nullptr;
    unsigned char* fresh; // from here on nothing was handed out
};

// Slabs that come from the system together; linked while there is a slab to give.
struct Region : Linked<Region> {
    Region(Shard& owner, std::size_t bytes) noexcept : shard(owner), size(bytes)
    {
        const auto front = reinterpret_cast<std::uintptr_t>(this + 1);
        first = reinterpret_cast<unsigned char*>((front + kSlab - 1) & ~(kSlab - 1));
        const unsigned char* end = reinterpret_cast<unsigned char*>(this) + size;
        count = static_cast<int>((end - first) / static_cast<std::ptrdiff_t>(kSlab));
    }
    bool HasRoom() const noexcept { return free || fresh < count; }
    // Memory of a slab; there is one.
    void* Take() noexcept
    {
        ++used;
        if (!free)
            return first + kSlab * static_cast<std::uintptr_t>(fresh++);
        FreeBlock* slab = free;
        free = slab->next;
        return slab;
    }
    void Give(void* slab) noexcept
    {
        --used;
        free = new (slab) FreeBlock{free};
    }

    Shard& shard;
    std::size_t size;
    unsigned char* first;
    int count;
    int fresh = 0;
    int used = 0;
    FreeBlock* free = nullptr;
};

// The memory of a group of threads.
struct alignas(64) Shard {
    std::atomic<bool> locked{false};
    int regionCount = 0;
    int freeSlabs = 0;     // of all regions
    std::size_t bytes = 0; // of all regions
    Region* regions = nullptr;
    Slab* slabs[kSizes] = {};

    void* Take(int step) noexcept;
    void Give(Slab& slab, void* block) noexcept;
    Slab* OpenSlab(int step) noexcept;
    void CloseSlab(Slab& slab) noexcept;
    bool OpenRegion(std::size_t size) noexcept;
    void CloseRegion(Region& region) noexcept;
};

constexpr unsigned kShards = 16;
constinit Shard shards[kShards];
constinit std::atomic<unsigned> threads{0};
thread_local constinit Shard* mine = nullptr;

Shard& OfThisThread() noexcept
{
    if (Zn_RefCount::IsOnlyThread())
        return shards[0];
    if (!mine)
        mine = &shards[threads.fetch_add(1, std::memory_order_relaxed) % kShards];
    return *mine;
}

Slab& SlabOf(void* block) noexcept
{
    return *reinterpret_cast<Slab*>(reinterpret_cast<std::uintptr_t>(block) & ~(kSlab - 1));
}

void* Shard::Take(int step) noexcept
{
    Slab* slab = slabs[step];
    if (!slab && !(slab = OpenSlab(step)))
        return nullptr;
    void* block = slab->free;
    if (block) {
        OpenMemory(block, sizeof(FreeBlock));
        slab->free = slab->free->next;
        CloseMemory(block, sizeof(FreeBlock));
    } else {
        block = slab->fresh;
        slab->fresh += slab->size;
    }
    ++slab->used;
    if (!slab->HasRoom())
        Slab::TakeOut(slabs[step], slab);
    return block;
}

void Shard::Give(Slab& slab, void* block) noexcept
{
    if (!slab.HasRoom())
        Slab::Put(slabs[slab.step], &slab);
    OpenMemory(block, sizeof(FreeBlock));
    slab.free = new (block) FreeBlock{slab.free};
    CloseMemory(block, static_cast<std::size_t>(slab.size));
    // An empty slab stays in a shard of one region, so that one text that comes and goes is cheap.
    if (--slab.used == 0 && (regionCount > 1 || slab.next || slab.before))
        CloseSlab(slab);
}

Slab* Shard::OpenSlab(int step) noexcept
{
    if (!regions && !OpenRegion(regionCount == 0 ? kFirstRegion : kRegion))
        return nullptr;
    Region* region = regions;
    void* memory = region->Take();
    --freeSlabs;
    if (!region->HasRoom())
        Region::TakeOut(regions, region);
    Slab* slab = new (memory) Slab(*region, step);
    Slab::Put(slabs[step], slab);
    return slab;
}

void Shard::CloseSlab(Slab& slab) noexcept
{
    Region& region = slab.region;
    Slab::TakeOut(slabs[slab.step], &slab);
    OpenMemory(&slab, kSlab);
    if (!region.HasRoom())
        Region::Put(regions, &region);
    region.Give(&slab);
    ++freeSlabs;
    // Not when the others are full: what comes and goes then would take it anew each time.
    constexpr int kSpare = 4;
    if (region.used == 0 && region.size == kRegion && freeSlabs - region.count >= kSpare)
        CloseRegion(region);
}

bool Shard::OpenRegion(std::size_t size) noexcept
{
    void* memory = TakeChunk(size);
    if (!memory)
        return false;
    auto* region = new (memory) Region(*this, size);
    Region::Put(regions, region);
    ++regionCount;
    freeSlabs += region->count;
    bytes += size;
    return true;
}

void Shard::CloseRegion(Region& region) noexcept
{
    Region::TakeOut(regions, &region);
    --regionCount;
    freeSlabs -= region.count;
    bytes -= region.size;
    GiveChunk(&region, region.size);
}

} // namespace

void* TakeSmall(int size) noexcept
{
    Shard& shard = OfThisThread();
    const SpinGuard guard(shard.locked);
    void* block = shard.Take(StepOf(size));
    OpenMemory(block, static_cast<std::size_t>(size));
    return block;
}

void GiveSmall(void* block, int) noexcept
{
    Slab& slab = SlabOf(block);
    Shard& shard = slab.region.shard;
    const SpinGuard guard(shard.locked);
    shard.Give(slab, block);
}

std::size_t SmallMemory() noexcept
{
    std::size_t memory = 0;
    for (Shard& shard : shards) {
        const SpinGuard guard(shard.locked);
        memory += shard.bytes;
    }
    return memory;
}

void* TakeBlock(int size) noexcept
{
    if (kHasAsan || size > kLargestSmall || size < 1)
        return _zn_malloc(size);
    return AllocationMustFail() ? nullptr : TakeSmall(size);
}

void GiveBlock(void* block, int size) noexcept
{
    if (kHasAsan || size > kLargestSmall)
        zn_free(block);
    else if (block)
        GiveSmall(block, size);
}

void* ResizeBlock(void* block, int size, int newSize) noexcept
{
    if (!block)
        return TakeBlock(newSize);
    if (kHasAsan || (size > kLargestSmall && newSize > kLargestSmall))
        return Reallocate(block, newSize);
    void* moved = TakeBlock(newSize);
    if (!moved)
        return nullptr;
    std::memcpy(moved, block, static_cast<std::size_t>(std::min(size, newSize)));
    GiveBlock(block, size);
    return moved;
}

} // namespace zn
