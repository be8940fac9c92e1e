#include "Zn_ObjList.h"

#include "foundation/unfilled.h"
#include "foundation/vector_list.h"

#include <algorithm>
#include <climits>
#include <iterator>
#include <utility>

static_assert(sizeof(Zn_ObjList) == 2 * sizeof(void*));

Zn_ObjList::Zn_ObjList(const Zn_ObjList& other) : Zn_ObjList(other.handler_, other.GetOption())
{
    AppendItems(other);
}

Zn_ObjList::Zn_ObjList(Zn_ObjList&& other) noexcept : Zn_ObjList(other.handler_, other.GetOption())
{
    places_.Swap(other.places_);
}

Zn_ObjList& Zn_ObjList::operator=(const Zn_ObjList& other)
{
    AssignList(other);
    return *this;
}

Zn_ObjList& Zn_ObjList::operator=(Zn_ObjList&& other) noexcept
{
    if (this == &other)
        return *this;
    // Taken first: the other list may live in one of our items.
    Zn_ObjList taken(std::move(other));
    if (GetOption() == taken.GetOption())
        SwapList(taken);
    else
        AssignList(taken);
    return *this;
}

// ---- the strip: see Zn_PointerSeq. Its head and its places are a run of the handler's pool.

bool Zn_ObjList::BeginStrip(int room) noexcept
{
    Zn_ObjBufPool& pool = handler_->GetPool();
    if (room < 1 || room > Zn_PointerSeq::kLongestStrip || pool.GetItemSize() < Zn_PointerSeq::kStripHead ||
        pool.GetStride() > USHRT_MAX)
        return false;
    void* memory = pool.AllocRun(room + 1);
    if (memory)
        places_.BeginStrip(memory, pool.GetStride(), room);
    return memory;
}

// Turns a strip into an array of pointers, whatever room it had; false, and it stays, when memory runs out.
bool Zn_ObjList::LeaveStrip() noexcept
{
    if (!places_.IsStrip())
        return true;
    Zn_PointerSeq pointers(GetOption());
    if (!pointers.Reserve(Count()))
        return false;
    void* unused[Zn_PointerSeq::kLongestStrip + 1] = {places_.StripMemory()};
    int unusedCount = 1;
    for (int i = 0; i < places_.StripRoom(); ++i) {
        void* item = GetItem(i);
        if (i < Count())
            pointers.Append(item);
        if (!item)
            unused[unusedCount++] = places_.StripPlace(i);
    }
    places_.Swap(pointers);
    pointers.Clear();
    handler_->GetPool().Free(unused, unusedCount);
    return true;
}

// Makes the item of a place that is not taken; null when it can't.
void* Zn_ObjList::MakeInStrip(int index)
{
    return handler_->_InitItem(places_.StripPlace(index)) ? HoldInStrip(index) : nullptr;
}

// ---- single items

// What stands in the list for an item of the caller's: itself where it is one of the pool's, else a
// copy; null for null or without memory.
void* Zn_ObjList::OwnOrCopy(void* item)
{
    return item && !handler_->GetPool().Owns(item) ? handler_->NewCopy(item) : item;
}

// Puts an item into a new place and counts this list as its holder.
int Zn_ObjList::Place(int index, void* item)
{
    index = ClampIndex(index);
    if (!item || !LeaveStrip() || !places_.Insert(index, &item, 1))
        return -1;
    Zn_ListObjHandler::Hold(item);
    return index;
}

// Puts an item into a place that is there or, with grow, made.
int Zn_ObjList::Replace(int index, void* item, int grow)
{
    if (!item || index < 0 || index == INT_MAX || !LeaveStrip())
        return -1;
    if (index >= Count() && (!grow || InsertAbsent(Count(), index + 1 - Count()) < 0))
        return -1;
    Zn_ListObjHandler::Hold(item);
    if (void* old = std::exchange(places_.Run(index)[0], item))
        handler_->Drop(old);
    return index;
}

// The result of putting an item somewhere: one that found no place and that no caller knows goes.
int Zn_ObjList::Settle(int index, void* placed, const void* given)
{
    if (index < 0 && placed && placed != given)
        handler_->Drop(placed);
    return index;
}

// The index of the first item that is not before the given one. Absent places come after every item.
int Zn_ObjList::FindPlace(const void* item, bool& found) const
{
    void* sought = const_cast<void*>(item);
    int low = 0;
    int high = Count();
    while (low < high) {
        const int middle = low + (high - low) / 2;
        void* there = GetItem(middle);
        if (there && handler_->_CompareItem(there, sought) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    void* there = GetItem(low);
    found = there && handler_->_CompareItem(there, sought) == 0;
    return low;
}

void* Zn_ObjList::GetSafeItem(int index, int create)
{
    void* item = GetItem(index);
    if (item || !create || index < 0)
        return item;
    const int before = Count();
    if (index < places_.StripRoom()) {
        for (int i = before; i < index; ++i) {
            if (!MakeInStrip(i)) {
                Delete(before, i - before);
                return nullptr;
            }
        }
        return MakeInStrip(index);
    }
    if (index == INT_MAX || !LeaveStrip() || (index >= before && !places_.Reserve(index + 1)))
        return nullptr;
    while (Count() <= index) {
        void* made = handler_->NewItem();
        if (Settle(Place(Count(), made), made, nullptr) < 0) {
            Delete(before, Count() - before);
            return nullptr;
        }
    }
    if (!GetItem(index))
        Replace(index, handler_->NewItem(), 0);
    return GetItem(index);
}

int Zn_ObjList::Add(const void* item)
{
    if (!item || !IsOrdered())
        return AppendItem(item);
    bool found = false;
    const int index = FindPlace(item, found);
    return found ? index : Insert(index, item);
}

int Zn_ObjList::Insert(int index, const void* item)
{
    const int end = Count();
    if (item && index >= end && end < places_.StripRoom()) {
        void* copy = MakeInStrip(end);
        if (!copy)
            return -1;
        handler_->_AssignItem(copy, const_cast<void*>(item));
        return end;
    }
    void* copy = item ? handler_->NewCopy(item) : nullptr;
    return Settle(Place(index, copy), copy, nullptr);
}

int Zn_ObjList::AddLink(void* item)
{
    if (!item || !IsOrdered())
        return AppendItemLink(item);
    bool found = false;
    const int index = FindPlace(item, found);
    return found ? index : InsertLink(index, item);
}

int Zn_ObjList::InsertLink(int index, void* item)
{
    void* own = OwnOrCopy(item);
    return Settle(Place(index, own), own, item);
}

int Zn_ObjList::AppendItem(const void* item)
{
    return Insert(Count(), item);
}

int Zn_ObjList::AppendItemLink(void* item)
{
    return InsertLink(Count(), item);
}

int Zn_ObjList::AppendNew(void* const* items, int count)
{
    if (count < 1 || !LeaveStrip() || !places_.Insert(Count(), items, count))
        return 0;
    for (int i = 0; i < count; ++i)
        if (items[i])
            Zn_ListObjHandler::Hold(items[i]);
    return count;
}

int Zn_ObjList::Set(int index, const void* item, int grow)
{
    void* copy = item ? handler_->NewCopy(item) : nullptr;
    return Settle(Replace(index, copy, grow), copy, nullptr);
}

int Zn_ObjList::SetLink(int index, void* item, int grow)
{
    void* own = OwnOrCopy(item);
    return Settle(Replace(index, own, grow), own, item);
}

int Zn_ObjList::InsertAbsent(int index, int count)
{
    index = ClampIndex(index);
    if (count > 0 && index == Count() && count <= places_.StripRoom() - index) {
        places_.GrowStrip(index + count);
        return index;
    }
    return count > 0 && LeaveStrip() && places_.Insert(index, nullptr, count) ? index : -1;
}

void* Zn_ObjList::Detach(int index) noexcept
{
    if (!LeaveStrip())
        return nullptr;
    void* item = GetItem(index);
    if (index >= 0 && index < Count())
        places_.Remove(index, 1);
    return item;
}

int Zn_ObjList::Delete(int start, int count)
{
    if (start < 0 || start >= Count() || count < 1)
        return 0;
    count = std::min(count, Count() - start);
    if (count == Count()) {
        ReleaseList();
    } else if (!LeaveStrip()) {
        return 0;
    } else if (count == 1) {
        if (void* item = Detach(start))
            handler_->Drop(item);
    } else {
        DropItems(start, count);
        places_.Remove(start, count);
    }
    return count;
}

// Gives up the items of a range, whose places stay behind.
void Zn_ObjList::DropItems(int start, int count) noexcept
{
    void* batch[64];
    while (count > 0) {
        std::span<void*> run = places_.Run(start);
        run = run.first(std::min({run.size(), static_cast<std::size_t>(count), std::size(batch)}));
        std::copy(run.begin(), run.end(), batch);
        std::fill(run.begin(), run.end(), nullptr);
        handler_->DropItems(batch, static_cast<int>(run.size()));
        start += static_cast<int>(run.size());
        count -= static_cast<int>(run.size());
    }
}

int Zn_ObjList::DeleteChosen(bool (*chosen)(void* item, void* context), void* context)
{
    if (!LeaveStrip())
        return 0;
    int kept = 0;
    std::span<void*> target;
    places_.ForEach([&](void* item) {
        if (chosen(item, context)) {
            if (item)
                handler_->Drop(item);
            return;
        }
        if (target.empty())
            target = places_.Run(kept);
        target[0] = item;
        target = target.subspan(1);
        ++kept;
    });
    const int deleted = Count() - kept;
    places_.Remove(kept, deleted);
    return deleted;
}

int Zn_ObjList::Exchange(int a, int b) noexcept
{
    if (a < 0 || b < 0 || a >= Count() || b >= Count() || !LeaveStrip())
        return 0;
    std::swap(places_.Run(a)[0], places_.Run(b)[0]);
    return 1;
}

int Zn_ObjList::ArrangeItems(int start, std::span<const std::int32_t> order) noexcept
{
    if (start < 0 || start > Count() || order.size() > static_cast<std::size_t>(Count() - start))
        return 0;
    const int end = start + static_cast<int>(order.size());
    return zn::Guarded([&] {
        zn::UnfilledVector<void*> items;
        items.reserve(order.size());
        for (int i = start; i < end; i = start + static_cast<int>(items.size())) {
            const std::span<void*> run = places_.Run(i);
            items.insert(items.end(), run.begin(), run.begin() + std::min<std::ptrdiff_t>(std::ssize(run), end - i));
        }
        std::size_t k = 0;
        for (int i = start; i < end; i = start + static_cast<int>(k)) {
            for (void*& place : places_.Run(i).first(std::min(places_.Run(i).size(), order.size() - k)))
                place = items[static_cast<std::size_t>(order[k++])];
        }
    });
}

int Zn_ObjList::FindItem(const void* item) const
{
    if (!item)
        return -1;
    if (IsOrdered()) {
        bool found = false;
        const int index = FindPlace(item, found);
        return found ? index : -1;
    }
    for (int i = 0; i < Count(); ++i) {
        void* there = GetItem(i);
        if (there && handler_->_CompareItem(there, const_cast<void*>(item)) == 0)
            return i;
    }
    return -1;
}

void Zn_ObjList::AllocItems(int n)
{
    if (n > places_.StripRoom() && (Count() > 0 || !BeginStrip(n)) && LeaveStrip())
        places_.Reserve(n);
}

int Zn_ObjList::AssignList(const Zn_ObjList& other)
{
    if (this == &other)
        return Count();
    Zn_ObjList copy(handler_, GetOption());
    const bool sameOrder = GetOption() == other.GetOption();
    const int count = sameOrder ? copy.AppendItems(other) : copy.AppendList(other);
    if (count >= 0)
        SwapList(copy);
    return count;
}

int Zn_ObjList::AppendList(const Zn_ObjList& other)
{
    return IsOrdered() ? AddEach(other) : AppendItems(other);
}

// Appends copies as they stand, absent places included.
int Zn_ObjList::AppendItems(const Zn_ObjList& other)
{
    const int before = Count();
    const int count = other.Count();
    if (before == 0 && other.places_.IsStrip())
        AllocItems(count);
    if (count > INT_MAX - before || (before + count > places_.StripRoom() && !LeaveStrip()) ||
        (!places_.IsStrip() && !places_.Reserve(before + count)))
        return -1;
    for (int i = 0; i < count; ++i) {
        const void* item = other.GetItem(i);
        const int index = item ? AppendItem(item) : InsertAbsent(Count(), 1);
        if (index < 0) {
            Delete(before, Count() - before);
            return -1;
        }
    }
    return Count();
}

// Adds copies in the handler's order; those that were added go again when memory runs out.
int Zn_ObjList::AddEach(const Zn_ObjList& other)
{
    if (this == &other)
        return Count();
    Zn_ObjList added(handler_);
    if (!added.places_.Reserve(other.Count()))
        return -1;
    for (int i = 0; i < other.Count(); ++i) {
        const void* item = other.GetItem(i);
        bool found = false;
        const int index = item ? FindPlace(item, found) : 0;
        if (!item || found)
            continue;
        if (Insert(index, item) < 0) {
            for (int k = 0; k < added.Count(); ++k)
                Delete(FindItem(added.GetItem(k)));
            return -1;
        }
        added.AddLink(GetItem(index));
    }
    return Count();
}

void Zn_ObjList::ReleaseList() noexcept
{
    // The list is empty before its items go, whatever their destruction does.
    if (places_.IsStrip()) {
        void* memory = places_.StripMemory();
        const int room = places_.StripRoom();
        const std::uint64_t taken = places_.StripTaken();
        places_.Clear();
        handler_->DropRun(memory, room + 1, taken);
    } else if (Count() > 0) {
        Zn_ObjList old(handler_, GetOption());
        old.places_.Swap(places_);
        old.DropItems(0, old.Count());
        old.places_.Clear();
    } else {
        places_.Clear();
    }
}

void Zn_ObjList::SwapList(Zn_ObjList& other) noexcept
{
    std::swap(handler_, other.handler_);
    places_.Swap(other.places_);
}
