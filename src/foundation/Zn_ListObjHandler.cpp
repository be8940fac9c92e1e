#include "Zn_ListObjHandler.h"

#include <cstddef>
#include <new>
#include <utility>

namespace {

// Destroying an item may drop the items it holds, and so on down. Beyond this depth they wait, so that a
// deep tree needs no deep stack.
constexpr int kDeepest = 64;

// An item that waits for its destruction, in the place of its count.
struct Waiting {
    Waiting* next;
};
static_assert(sizeof(Waiting) <= sizeof(Zn_ObjBufData));

// What waits in one thread: a chain for each handler concerned. There are about as many handlers as
// there are item classes that nest; one that finds no chain free goes on down the stack.
class Waitlist {
public:
    int depth = 0;

    bool IsEmpty() const noexcept { return count_ == 0; }
    bool Push(Zn_ListObjHandler* handler, void* item) noexcept
    {
        for (Chain& chain : chains_) {
            if (chain.first && chain.handler != handler)
                continue;
            chain = {handler, new (Zn_ObjBufData::FromItem(item)) Waiting{chain.first}};
            ++count_;
            return true;
        }
        return false;
    }
    // One of those that wait.
    std::pair<Zn_ListObjHandler*, void*> Pop() noexcept
    {
        Chain* chain = chains_;
        while (!chain->first)
            ++chain;
        --count_;
        Waiting* item = std::exchange(chain->first, chain->first->next);
        return {chain->handler, reinterpret_cast<Zn_ObjBufData*>(item)->GetItem()};
    }

private:
    struct Chain {
        Zn_ListObjHandler* handler;
        Waiting* first;
    };

    Chain chains_[16] = {};
    std::size_t count_ = 0;
};

thread_local constinit Waitlist waitlist;

} // namespace

Zn_ListObjHandler::~Zn_ListObjHandler() = default;

void Zn_ListObjHandler::_FreeItems(void* const* items, int count)
{
    for (int i = 0; i < count; ++i)
        _FreeItem(items[i]);
}

void* Zn_ListObjHandler::NewItem()
{
    void* memory = pool_.Alloc();
    void* item = memory ? _InitItem(memory) : nullptr;
    if (!item)
        pool_.Free(memory);
    return item;
}

int Zn_ListObjHandler::NewItems(void** items, int count)
{
    const int allocated = pool_.Alloc(items, count);
    for (int i = 0; i < allocated; ++i) {
        if (_InitItem(items[i]))
            continue;
        pool_.Free(items + i, allocated - i);
        return i;
    }
    return allocated;
}

void* Zn_ListObjHandler::NewCopy(const void* source)
{
    void* item = NewItem();
    if (item)
        _AssignItem(item, const_cast<void*>(source));
    return item;
}

void Zn_ListObjHandler::Destroy(void** items, int count)
{
    _FreeItems(items, count);
    pool_.Free(items, count);
}

void Zn_ListObjHandler::Drop(void* item)
{
    DropItems(&item, 1);
}

void Zn_ListObjHandler::DropItems(void** items, int count)
{
    Waitlist& waiting = waitlist;
    int dead = 0;
    for (int i = 0; i < count; ++i) {
        void* item = items[i];
        if (!item || Zn_ObjBufData::FromItem(item)->Release() > 0)
            continue;
        if (waiting.depth < kDeepest || !waiting.Push(this, item))
            items[dead++] = item;
    }
    if (dead == 0)
        return;
    ++waiting.depth;
    Destroy(items, dead);
    DestroyWaiting();
    --waiting.depth;
}

void Zn_ListObjHandler::DropRun(void* first, int count, std::uint64_t taken)
{
    Waitlist& waiting = waitlist;
    const bool isDeep = waiting.depth >= kDeepest;
    void* dead[Zn_ObjBufPool::kLongestRun];
    void* gone[Zn_ObjBufPool::kLongestRun];
    int deadCount = 0;
    int goneCount = 0;
    gone[goneCount++] = first;
    for (int i = 1; i < count; ++i) {
        void* item = static_cast<unsigned char*>(first) + static_cast<std::ptrdiff_t>(i) * pool_.GetStride();
        if (taken >> (i - 1) & 1) {
            if (Zn_ObjBufData::FromItem(item)->Release() > 0 || (isDeep && waiting.Push(this, item)))
                continue;
            dead[deadCount++] = item;
        }
        gone[goneCount++] = item;
    }
    ++waiting.depth;
    _FreeItems(dead, deadCount);
    if (goneCount == count)
        pool_.FreeRun(first, count);
    else
        pool_.Free(gone, goneCount);
    DestroyWaiting();
    --waiting.depth;
}

// Below the outermost destruction nothing happens.
void Zn_ListObjHandler::DestroyWaiting()
{
    while (waitlist.depth == 1 && !waitlist.IsEmpty()) {
        auto [handler, next] = waitlist.Pop();
        handler->Destroy(&next, 1);
    }
}
