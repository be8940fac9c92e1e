// The typed-list pattern, once: a list class of a concrete item type over Zn_ObjList.
//
// A concrete family says only its item, its compare rule, its pool figures and its own operations:
//
//     class Zn_ThingHandler final : public Zn_TypedHandler<Zn_Thing> {
//     public:
//         Zn_ThingHandler() noexcept : Zn_TypedHandler("Zn_Thing", 64) {}
//         int _CompareItem(void* a, void* b) override;
//         static Zn_ThingHandler& Instance();      // both defined in the source file as Zn_Global<...>(),
//         static const Zn_Thing& EmptyItem();      // so that there is one of each in the process
//     };
//     class Zn_ThingList : public Zn_TypedList<Zn_Thing, Zn_ThingHandler> { ... };
//
// The item class has static InitWithMemory(Zn_Thing*), FreeWithMemory(Zn_Thing*) and Set(const Zn_Thing&).
#pragma once

#include "Zn_ObjList.h"
#include "Zn_Text.h"
#include "Zn_WString.h"

#include <concepts>
#include <cstddef>
#include <iterator>
#include <new>
#include <type_traits>

template <class Item>
class Zn_TypedHandler : public Zn_ListObjHandler {
public:
    Zn_TypedHandler(const char* poolName, int itemsPerBlock) noexcept
        : Zn_ListObjHandler(poolName, static_cast<int>(sizeof(Item)), itemsPerBlock)
    {
    }

    void* _InitItem(void* memory) override
    {
        Item::InitWithMemory(static_cast<Item*>(memory));
        return memory;
    }
    void _FreeItem(void* item) override { Item::FreeWithMemory(static_cast<Item*>(item)); }
    void _FreeItems(void* const* items, int count) override
    {
        for (int i = 0; i < count; ++i)
            Item::FreeWithMemory(static_cast<Item*>(items[i]));
    }
    void _AssignItem(void* dst, void* src) override { static_cast<Item*>(dst)->Set(*static_cast<const Item*>(src)); }
};

// A process-wide object that is made on first use and lives to the end of the process, so that
// lists of static lifetime never outlive it.
template <class T>
T& Zn_Global()
{
    alignas(T) static unsigned char memory[sizeof(T)];
    static T* object = new (memory) T();
    return *object;
}

// InitWithMemory and FreeWithMemory for an item class: construct and destroy in memory of the
// caller's; null is ignored.
template <class Item>
void Zn_InitInPlace(Item* memory)
{
    if (memory)
        new (memory) Item();
}
template <class Item>
void Zn_FreeInPlace(Item* item)
{
    if (item)
        item->~Item();
}

template <class Item, class Handler, int DefaultOption = 0>
class Zn_TypedList : public Zn_ObjList {
public:
    using ItemType = Item;

    Zn_TypedList() noexcept : Zn_ObjList(&Handler::Instance(), DefaultOption) {}
    explicit Zn_TypedList(int option) noexcept : Zn_ObjList(&Handler::Instance(), option) {}

    const Item* GetItem(int index) const noexcept { return static_cast<const Item*>(ItemAt(index, kStride)); }
    // The shared empty item, always the same, instead of null. Never change it.
    const Item* GetItemNN(int index) const noexcept
    {
        const Item* item = GetItem(index);
        return item ? item : &EmptyItem();
    }
    const Item* operator[](int index) const noexcept { return GetItemNN(index); }
    // Addresses that GetItem is likely to go through and to give, for fetching them into the processor's caches
    // before. Nothing needs to be there.
    const void* LikelyHead() const noexcept { return Places().LikelyHead(); }
    const Item* LikelyItem(int index) const noexcept
    {
        return static_cast<const Item*>(Places().LikelyItem(index, kStride));
    }
    // Writable item, or null.
    Item* GetSafeItem(int index) noexcept { return static_cast<Item*>(ItemAt(index, kStride)); }

    // The forms that take a pointer are templates, so that a literal 0 is the number where items are made of numbers.
    int Add(const Item& item) { return Zn_ObjList::Add(&item); }
    template <std::convertible_to<const Item*> Pointer>
    int Add(Pointer item)
    {
        return Zn_ObjList::Add(static_cast<const Item*>(item));
    }
    int Insert(int index, const Item& item) { return Zn_ObjList::Insert(index, &item); }
    template <std::convertible_to<const Item*> Pointer>
    int Insert(int index, Pointer item)
    {
        return Zn_ObjList::Insert(index, static_cast<const Item*>(item));
    }
    int AddLink(const Item* item) { return Zn_ObjList::AddLink(const_cast<Item*>(item)); }
    int InsertLink(int index, const Item* item) { return Zn_ObjList::InsertLink(index, const_cast<Item*>(item)); }
    int Set(int index, const Item& item, int grow = 0) { return Zn_ObjList::Set(index, &item, grow); }
    template <std::convertible_to<const Item*> Pointer>
    int Set(int index, Pointer item, int grow = 0)
    {
        return Zn_ObjList::Set(index, static_cast<const Item*>(item), grow);
    }
    int SetLink(int index, const Item* item, int grow = 0)
    {
        return Zn_ObjList::SetLink(index, const_cast<Item*>(item), grow);
    }
    Item* NewItem() { return static_cast<Item*>(Zn_ObjList::NewItem()); }

    static const Item& EmptyItem() { return Handler::EmptyItem(); }

    // Walks the items in order; an absent place gives the shared empty item.
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Item;
        using difference_type = std::ptrdiff_t;
        using pointer = const Item*;
        using reference = const Item&;

        Iterator() noexcept = default;
        Iterator(const Zn_TypedList* list, int index) noexcept : list_(list), index_(index) {}
        const Item& operator*() const noexcept { return *list_->Zn_TypedList::GetItemNN(index_); }
        const Item* operator->() const noexcept { return &**this; }
        Iterator& operator++() noexcept
        {
            ++index_;
            return *this;
        }
        Iterator operator++(int) noexcept
        {
            Iterator old = *this;
            ++index_;
            return old;
        }
        friend bool operator==(const Iterator&, const Iterator&) noexcept = default;

    private:
        const Zn_TypedList* list_ = nullptr;
        int index_ = 0;
    };
    Iterator begin() const noexcept { return Iterator(this, 0); }
    Iterator end() const noexcept { return Iterator(this, Count()); }

private:
    // 0 where the handler says by itself how large its items are.
    static constexpr int kStride =
        std::is_base_of_v<Zn_TypedHandler<Item>, Handler> ? Zn_ObjBufPool::StrideOf(static_cast<int>(sizeof(Item))) : 0;
};

// A name to look up, from wide text of any kind. A null pointer stays null: it names nothing.
class Zn_NameArg {
public:
    Zn_NameArg(const char16_t* text) noexcept : text_(text ? std::u16string_view(text) : std::u16string_view()) {}
    Zn_NameArg(std::u16string_view text) noexcept : text_(text.data() ? text : std::u16string_view(u"")) {}
    Zn_NameArg(const Zn_WString& text) noexcept : text_(text.GetView()) {}

    bool IsNull() const noexcept { return !text_.data(); }
    bool IsEmpty() const noexcept { return text_.empty(); }
    std::u16string_view GetView() const noexcept { return text_; }

private:
    std::u16string_view text_;
};

// Adds look-up by id to a typed list whose items have a readable id; ids match without regard to case.
// IdOf is a function object: IdOf{}(const Item&) -> std::u16string_view.
template <class Item, class Handler, class IdOf, int DefaultOption = 0>
class Zn_IdList : public Zn_TypedList<Item, Handler, DefaultOption> {
public:
    using Base = Zn_TypedList<Item, Handler, DefaultOption>;
    using Base::Base;
    using Base::GetItem;
    using Base::GetItemNN;
    using Base::GetSafeItem;
    using Base::operator[];

    // First index whose id matches, -1 for none or for null.
    int FindId(Zn_NameArg id) const noexcept { return id.IsNull() ? -1 : FindIdView(id.GetView()); }
    const Item* GetItem(Zn_NameArg id) const noexcept { return GetItem(FindId(id)); }
    const Item* GetItemNN(Zn_NameArg id) const noexcept { return GetItemNN(FindId(id)); }
    Item* GetSafeItem(Zn_NameArg id) noexcept { return GetSafeItem(FindId(id)); }

protected:
    int FindIdView(std::u16string_view id) const noexcept
    {
        for (int i = 0, n = this->Count(); i < n; ++i) {
            const Item* item = GetItem(i);
            if (!item)
                continue;
            const std::u16string_view there = IdOf{}(*item);
            // Case is folded unit by unit, so equal names are equally long.
            if (there.size() == id.size() && zn_iequal(there, id))
                return i;
        }
        return -1;
    }
};
