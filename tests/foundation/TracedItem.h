// An item that counts its births, copies and deaths, so that ownership can be tested.
#pragma once

#include "Zn_TypedList.h"

struct Traced {
    static inline int alive = 0;
    static inline int born = 0;
    static inline int copied = 0;

    Traced() noexcept { ++alive, ++born; }
    Traced(int number) noexcept : value(number) { ++alive; } // a caller's own, no item
    Traced(const Traced&) = delete;
    Traced& operator=(const Traced&) = delete;
    ~Traced() { --alive, value = -1; }

    void Set(const Traced& other) noexcept { value = other.value, ++copied; }
    static void InitWithMemory(Traced* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Traced* item) { Zn_FreeInPlace(item); }

    int value = 0;
    char rest[20] = {}; // large enough for lists without pointers
};

class TracedHandler final : public Zn_TypedHandler<Traced> {
public:
    TracedHandler() noexcept : Zn_TypedHandler("Traced", 16) {}
    int _CompareItem(void* a, void* b) override
    {
        return static_cast<Traced*>(a)->value - static_cast<Traced*>(b)->value;
    }
    static TracedHandler& Instance() { return Zn_Global<TracedHandler>(); }
    static const Traced& EmptyItem() { return Zn_Global<Traced>(); }
};

class TracedList : public Zn_TypedList<Traced, TracedHandler> {
public:
    using Base = Zn_TypedList<Traced, TracedHandler>;
    // Room that every list begins with.
    static inline int roomAtStart = 0;
    explicit TracedList(int option = 0) : Base(option)
    {
        if (roomAtStart > 0)
            AllocItems(roomAtStart);
    }
    using Base::DeleteIf;
    using Base::Detach;
    using Base::InsertAbsent;
};
