// An ordered list of items that it owns, driven by a handler; the base of every typed list.
//
// Items live in blocks of the handler's pool at stable addresses and carry a count of the lists
// that hold them. Add, Insert and Set copy; the ...Link forms take over an item of the same
// handler (from NewItem, or one that another list holds, which both then share); an address that is
// no item of the handler's pool is copied instead. A place may be absent (null).
//
// An item that a ...Link operation refuses (-1, or an equal one of an ordered list) stays the caller's.
//
// Indexes are 0-based. Operations that can't (index out of range, null item, no memory) return -1
// or null and change nothing. Inserting or deleting anywhere, and look-up by index, cost at most
// the logarithm of the count. One list is used by one thread at a time.
#pragma once

#include "Zn_ListObjHandler.h"
#include "Zn_PointerSeq.h"

#include <span>

class ZN_API Zn_ObjList {
public:
    // With option 1 items are kept in the handler's order and Add does not add one that compares
    // equal to one already there, but returns its index. Absent places come last. What Insert, Set and
    // Exchange put elsewhere stands where it was told: keeping the order is then the caller's.
    explicit Zn_ObjList(Zn_ListObjHandler* handler, int option = 0) noexcept : handler_(handler), places_(option) {}
    Zn_ObjList(const Zn_ObjList& other);
    Zn_ObjList(Zn_ObjList&& other) noexcept;
    // Assigning takes over the items; the option stays the list's own.
    Zn_ObjList& operator=(const Zn_ObjList& other);
    Zn_ObjList& operator=(Zn_ObjList&& other) noexcept;
    ~Zn_ObjList()
    {
        if (places_.HasMemory())
            ReleaseList();
    }

    int Count() const noexcept { return places_.Count(); }
    // Null when out of range or absent.
    void* GetItem(int index) const noexcept { return places_.At(index); }
    // As GetItem; with create the list first grows to index + 1 items, all made by the handler, and an
    // absent place at index is filled.
    void* GetSafeItem(int index, int create);
    int Add(const void* item);
    // An index past the end means the end; a negative one 0.
    int Insert(int index, const void* item);
    int AddLink(void* item);
    int InsertLink(int index, void* item);
    // Replace the item at an index by a copy or by the item itself; with grow the list first grows, with
    // absent places, to index + 1. Returns the index.
    int Set(int index, const void* item, int grow = 0);
    int SetLink(int index, void* item, int grow = 0);
    // Deletes up to count items from start on; returns how many.
    int Delete(int start, int count = 1);
    // Exchanges two places; 1, or 0 when either is out of range.
    int Exchange(int a, int b) noexcept;
    // Index of the first item that the handler's compare finds equal, -1 when there is none.
    int FindItem(const void* item) const;
    // Room for n items. An empty list of few places keeps the items that it makes one behind the other, without
    // pointers, until more come, one goes or one is linked.
    void AllocItems(int n);
    // Replaces by, or appends, copies; returns the new count. With option 1 appending follows Add.
    int AssignList(const Zn_ObjList& other);
    int AppendList(const Zn_ObjList& other);
    // Deletes everything.
    void ReleaseList() noexcept;

    Zn_ListObjHandler* GetHandler() const noexcept { return handler_; }
    int GetOption() const noexcept { return places_.GetTag(); }
    // A default item of count 0, for one of the ...Link operations to take over.
    void* NewItem() { return handler_->NewItem(); }

protected:
    // GetItem where the stride of the handler's pool is known (0: it is not).
    void* ItemAt(int index, int stride) const noexcept
    {
        return stride != 0 ? places_.At(index, stride) : places_.At(index);
    }
    // For finding out where items are likely to stand.
    const Zn_PointerSeq& Places() const noexcept { return places_; }
    // Memory at the end of a list that keeps its items one behind the other, for the caller to make one more there at
    // once; null when it doesn't or has no room.
    void* OpenPlace() noexcept
    {
        const int index = Count();
        return index < places_.StripRoom() ? HoldInStrip(index) : nullptr;
    }
    // Adds count absent places at an index; -1 when it can't.
    int InsertAbsent(int index, int count);
    // Add at the end whatever the option says.
    int AppendItem(const void* item);
    int AppendItemLink(void* item);
    // Adds new items of count 0 (null: absent places) at the end, which the list takes over; 0, and they stay the
    // caller's, when it can't.
    int AppendNew(void* const* items, int count);
    int AppendItems(const Zn_ObjList& other);
    // Takes the place out without giving up its item's count; the caller owns that count now.
    void* Detach(int index) noexcept;
    // Deletes in one walk the items for which pred(void* item) is true; absent places are asked for as null. Returns
    // how many. Neither pred nor the destruction of an item may touch this list.
    template <class Pred>
    int DeleteIf(Pred pred)
    {
        return DeleteChosen([](void* item, void* context) { return bool((*static_cast<Pred*>(context))(item)); },
                            &pred);
    }
    // Puts the items from start on into a new order: place start + k gets the item that stood at start + order[k], each
    // number below the count of order once. 0, and nothing changed, when there is no memory or no such range.
    int ArrangeItems(int start, std::span<const std::int32_t> order) noexcept;
    // Exchanges the items, the option and the handler.
    void SwapList(Zn_ObjList& other) noexcept;

private:
    bool BeginStrip(int room) noexcept;
    bool LeaveStrip() noexcept;
    void* MakeInStrip(int index);
    // Counts this list as the holder of the item at a place of its strip, and the place as taken.
    void* HoldInStrip(int index) noexcept
    {
        void* item = places_.StripPlace(index);
        Zn_ListObjHandler::Hold(item);
        places_.GrowStrip(index + 1);
        places_.TakeStripPlace(index);
        return item;
    }
    bool IsOrdered() const noexcept { return GetOption() == 1; }
    int ClampIndex(int index) const noexcept { return index < 0 ? 0 : index > Count() ? Count() : index; }
    int FindPlace(const void* item, bool& found) const;
    void* OwnOrCopy(void* item);
    int Place(int index, void* item);
    int Replace(int index, void* item, int grow);
    int Settle(int index, void* placed, const void* given);
    int AddEach(const Zn_ObjList& other);
    int DeleteChosen(bool (*chosen)(void* item, void* context), void* context);
    void DropItems(int start, int count) noexcept;

    Zn_ListObjHandler* handler_;
    Zn_PointerSeq places_;
};
