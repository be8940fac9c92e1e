// A sequence of pointers that stays fast at any length: the storage of Zn_ObjList. It knows nothing
// of what they point to and owns none of it.
//
// A strip is the form for the few items of one owner that stand one behind the other: it has no pointers, just a head
// in front of the first item that says which places are taken. Nothing is inserted into or removed from a strip: its
// owner, whose memory it is in, makes pointers of it first (see Zn_ObjList).
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
    explicit Zn_PointerSeq(int tag = 0) noexcept : head_(Empty(tag)) {}
    Zn_PointerSeq(const Zn_PointerSeq&) = delete;
    Zn_PointerSeq& operator=(const Zn_PointerSeq&) = delete;
    ~Zn_PointerSeq()
    {
        if (HasMemory())
            Clear();
    }

    int Count() const noexcept { return head_->count; }
    int GetTag() const noexcept { return head_->tag; }
    // False for a sequence that was never filled or was cleared.
    bool HasMemory() const noexcept { return head_->room != 0; }
    // Null when out of range. Who knows a strip's stride saves looking it up.
    void* At(int index) const noexcept { return At(index, head_->stride); }
    void* At(int index, int strideOfStrip) const noexcept
    {
        if (static_cast<unsigned>(index) >= static_cast<unsigned>(head_->count))
            return nullptr;
        if (head_->room >= 0)
            return Flat()[index];
        if (!IsStrip())
            return Run(index)[0];
        return InStrip().taken >> index & 1 ? StripPlace(index, strideOfStrip) : nullptr;
    }
    // What At reads first, and where the item of a strip would stand: for fetching them ahead, not for reading.
    const void* LikelyHead() const noexcept { return head_; }
    const void* LikelyItem(int index, int stride) const noexcept { return StripPlace(index, stride); }
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

    // Makes a strip of an empty sequence: the head in memory of kStripHead bytes, each place stride bytes behind the
    // one before it, room for as many as kLongestStrip. Clear forgets the memory.
    void BeginStrip(void* memory, int stride, int room) noexcept;
    bool IsStrip() const noexcept { return head_->room <= kStripRoomOf0; }
    int StripRoom() const noexcept { return IsStrip() ? kStripRoomOf0 - head_->room : 0; }
    void* StripMemory() const noexcept { return head_; }
    std::uint64_t StripTaken() const noexcept { return InStrip().taken; }
    // Where the item of a place goes, whether it is taken or not.
    void* StripPlace(int index) const noexcept { return StripPlace(index, head_->stride); }
    // The count becomes no less than this; new places are not taken.
    void GrowStrip(int count) noexcept { head_->count = count > head_->count ? count : head_->count; }
    void TakeStripPlace(int index) noexcept { InStrip().taken |= std::uint64_t(1) << index; }
    static constexpr int kLongestStrip = 62;
    static constexpr int kStripHead = 24;

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
        std::int32_t room; // places behind this head; below 0: they are in chunks or in a strip
        alignas(void*) std::int16_t tag;
        std::uint16_t stride = 0; // of a strip, else 0
    };
    struct Strip : Head {
        std::uint64_t taken; // a bit for each place
    };
    static_assert(sizeof(Strip) <= kStripHead);
    struct Chunks;

    void** Flat() const noexcept { return reinterpret_cast<void**>(head_ + 1); }
    Chunks& InChunks() const noexcept;
    Strip& InStrip() const noexcept { return *static_cast<Strip*>(head_); }
    void* StripPlace(int index, int stride) const noexcept
    {
        return reinterpret_cast<unsigned char*>(head_) + static_cast<std::ptrdiff_t>(index + 1) * stride;
    }
    static int SizeFor(int room) noexcept;
    bool SetRoom(int room) noexcept;
    bool ToChunks() noexcept;
    void ToFlat() noexcept;
    bool InsertFlat(int index, void* const* pointers, int count) noexcept;
    bool InsertInChunks(int index, void* pointer) noexcept;
    bool MakePlace(int& chunk, int& offset) noexcept;
    bool GrowDirectory() noexcept;

    static constexpr std::int32_t kStripRoomOf0 = -2; // the room of a strip counts down from here
    static const Head empty[2];
    static Head* Empty(int tag) noexcept { return const_cast<Head*>(&empty[tag == 1]); }

    Head* head_;
};

static_assert(sizeof(Zn_PointerSeq) == sizeof(void*));
