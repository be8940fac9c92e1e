// How a list treats its items: construct, destroy, copy, compare. One process-wide handler per item
// class; it owns the pool that the items' memory comes from.
//
// To keep an item class of your own in lists, derive from Zn_ListObjHandler (or from Zn_TypedHandler
// of Zn_TypedList.h, which fills the first three slots).
#pragma once

#include "Zn_ObjBufPool.h"

class ZN_API Zn_ListObjHandler {
public:
    Zn_ListObjHandler(const char* poolName, int itemSize, int itemsPerBlock) noexcept
        : pool_(poolName, itemSize, itemsPerBlock)
    {
    }

    // Constructs a default item in the given memory and returns it; null when it can't.
    virtual void* _InitItem(void* memory) = 0;
    // Destroys the item in place; its memory goes back to the pool afterwards.
    virtual void _FreeItem(void* item) = 0;
    // Makes dst a copy of src.
    virtual void _AssignItem(void* dst, void* src) = 0;
    // 0 when the list is to treat both as equal, else the sign orders them.
    virtual int _CompareItem(void* a, void* b) = 0;

    virtual ~Zn_ListObjHandler();
    // Destroys several.
    virtual void _FreeItems(void* const* items, int count);

    Zn_ObjBufPool& GetPool() noexcept { return pool_; }
    // A default item of count 0, for a list to take over by link; null when memory runs out.
    void* NewItem();
    // Up to count of them, for what it costs to make one and a little; returns how many it got.
    int NewItems(void** items, int count);
    void* NewCopy(const void* source);
    // Counts one more holder.
    static void Hold(void* item) noexcept { Zn_ObjBufData::FromItem(item)->AddRef(); }
    // Counts one holder less and destroys the item with the last one. For an item that no list took, call it too.
    // Items that hold items, and so on down, need no deep stack: the deep ones go after those that held them.
    void Drop(void* item);
    // The same for several; null is passed over. What stands in items afterwards is undefined.
    void DropItems(void** items, int count);
    // The same for the items of a run of the pool, which bit i of taken tells for the i-th behind the first. All memory
    // of the run goes back but that of items which others hold.
    void DropRun(void* first, int count, std::uint64_t taken);

private:
    void Destroy(void** items, int count);
    void DestroyWaiting();

    Zn_ObjBufPool pool_;
};
