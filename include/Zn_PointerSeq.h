// A sequence of pointers that stays fast at any length: the storage of Zn_ObjList. It knows nothing
// of what they point to and owns none of it.
//
// The places stand in one array until something is inserted or removed far from the end of a long
// sequence; from then on they stand in chunks, and inserting, removing and reading anywhere cost the
// logarithm of the count. What fails for lack of memory changes nothing; removing never fails. Several
// threads may read one sequence at a time.
#pragma once

#include "Zn_Base.h"

#include <span>
#include <utility>

class ZN_API Zn_PointerSeq {
public:
    // The tag, 0 or 1, is kept for the owner.
    explicit Zn_PointerSeq(int tag = 0) noexcept;
    Zn_PointerSeq(const Zn_PointerSeq&) = delete;
    Zn_PointerSeq& operator=(const Zn_PointerSeq&) = delete;
    ~Zn_PointerSeq() { Clear(); }

    int Count() const noexcept { return head_->count; }
    int GetTag() const noexcept { return head_->tag; }
    // Null when out of range.
    void* At(int index) const noexcept
    {
        if (static_cast<unsigned>(index) >= static_cast<unsigned>(head_->count))
            return nullptr;
        return head_->room >= 0 ? Flat()[index] : Run(index)[0];
    }
    // The place at an index in range, and those behind it that stand next to it in memory.
    std::span<void*> Run(int index) const noexcept;

    bool Reserve(int count) noexcept;
    // Inserts pointers (null: that many null pointers) at an index from 0 to Count().
    bool Insert(int index, void* const* pointers, int count) noexcept;
    bool Append(void* pointer) noexcept
    {
        if (head_->count >= head_->room)
            return Insert(head_->count, &pointer, 1);
        Flat()[head_->count++] = pointer;
        return true;
    }
    // Removes a range that is there.
    void Remove(int index, int count) noexcept;
    void Clear() noexcept;
    // Tags go along.
    void Swap(Zn_PointerSeq& other) noexcept { std::swap(head_, other.head_); }

    // Calls body(pointer&) for every place in order.
    template <class Body>
    void ForEach(Body body) const
    {
        for (int i = 0; i < Count();) {
            const std::span<void*> run = Run(i);
            for (void*& pointer : run)
                body(pointer);
            i += static_cast<int>(run.size());
        }
    }

private:
    struct Head {
        std::int32_t count;
        std::int32_t room; // places behind this head; below 0: they are in chunks
        alignas(void*) std::int32_t tag;
    };
    struct Chunks;

    void** Flat() const noexcept { return reinterpret_cast<void**>(head_ + 1); }
    Chunks& InChunks() const noexcept;
    static int SizeFor(int room) noexcept;
    bool SetRoom(int room) noexcept;
    bool ToChunks() noexcept;
    void ToFlat() noexcept;
    bool InsertFlat(int index, void* const* pointers, int count) noexcept;
    bool InsertInChunks(int index, void* pointer) noexcept;
    bool MakePlace(int& chunk, int& offset) noexcept;
    bool GrowDirectory() noexcept;

    static const Head empty[2];
    static Head* Empty(int tag) noexcept { return const_cast<Head*>(&empty[tag == 1]); }

    Head* head_;
};

static_assert(sizeof(Zn_PointerSeq) == sizeof(void*));
