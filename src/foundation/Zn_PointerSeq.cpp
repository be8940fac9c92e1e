#include "Zn_PointerSeq.h"

#include "foundation/memory.h"
#include "foundation/part_index.h"
#include "foundation/small_blocks.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstring>
#include <new>

namespace {

constexpr int kChunk = 512;            // places of one chunk
constexpr int kFill = kChunk / 8 * 7;  // of them taken when an array becomes chunks
constexpr int kMerge = kChunk / 4 * 3; // two neighbours that hold no more become one
constexpr int kFar = 2048;             // to move more places than that for one pointer is worth having chunks
constexpr int kFirst = 3;              // places that the first pointer brings

constexpr int kMostChunks = INT_MAX / 32; // of a directory whose bytes an int counts

constexpr int kPointer = static_cast<int>(sizeof(void*));
constexpr int kMost = INT_MAX / kPointer - 2; // places of one array behind its head

void Move(void** to, void** from, int count) noexcept
{
    std::memmove(to, from, static_cast<std::size_t>(count) * sizeof(void*));
}

} // namespace

// The directory of the chunks: their addresses, how many places each has taken, and the index over these
// numbers. No chunk stays empty.
struct Zn_PointerSeq::Chunks : Head {
    using Place = zn::PartIndex::Found;

    std::int32_t chunkCount = 0;
    std::int32_t chunkRoom;
    // The chunk last looked up (low half) and the index of its first place: walking along the sequence needs no search.
    std::atomic<std::uint64_t> cursor;
    zn::PartIndex index;

    Chunks(int tagOfOwner, int chunksToHold) noexcept
        : Head{0, -1, static_cast<std::int16_t>(tagOfOwner)}, chunkRoom(chunksToHold), cursor(0),
          index(Used() + chunksToHold, chunksToHold)
    {
    }
    void*** Addresses() noexcept { return reinterpret_cast<void***>(this + 1); }
    std::int32_t* Used() noexcept { return reinterpret_cast<std::int32_t*>(Addresses() + chunkRoom); }

    static Chunks* New(int tagOfOwner, int room) noexcept;
    static void Free(Chunks* chunks) noexcept;
    void SetCursor(int chunk, int start) noexcept
    {
        cursor.store(static_cast<std::uint64_t>(static_cast<std::uint32_t>(start)) << 32 |
                         static_cast<std::uint32_t>(chunk),
                     std::memory_order_relaxed);
    }
    Place Locate(int at) noexcept;
    void AddTo(int chunk, int delta) noexcept;
    void Rebuild() noexcept;
    bool OpenChunk(int at) noexcept;
    void DropChunks(int from, int to) noexcept;
    void MoveTail(int chunk, int moved) noexcept;
    void MoveFront(int chunk, int moved) noexcept;
    void MergeAround(int chunk) noexcept;
    void Remove(int at, int removed) noexcept;
};

Zn_PointerSeq::Chunks* Zn_PointerSeq::Chunks::New(int tagOfOwner, int room) noexcept
{
    if (room > kMostChunks)
        return nullptr;
    constexpr int kNumber = static_cast<int>(sizeof(std::int32_t));
    const int numbers = room + zn::PartIndex::MemoryFor(room);
    void* memory = _zn_malloc(static_cast<int>(sizeof(Chunks)) + room * kPointer + numbers * kNumber);
    return memory ? new (memory) Chunks(tagOfOwner, room) : nullptr;
}

void Zn_PointerSeq::Chunks::Free(Chunks* chunks) noexcept
{
    for (int i = 0; i < chunks->chunkCount; ++i)
        zn_free(chunks->Addresses()[i]);
    zn_free(chunks);
}

Zn_PointerSeq::Chunks::Place Zn_PointerSeq::Chunks::Locate(int at) noexcept
{
    const std::uint64_t last = cursor.load(std::memory_order_relaxed);
    const int lastChunk = static_cast<int>(last & 0xFFFFFFFF);
    const int inLast = at - static_cast<int>(last >> 32);
    if (inLast >= 0 && inLast < Used()[lastChunk])
        return {lastChunk, inLast};
    const Place place = index.Find(at);
    SetCursor(place.part, at - place.offset);
    return place;
}

void Zn_PointerSeq::Chunks::AddTo(int chunk, int delta) noexcept
{
    Used()[chunk] += delta;
    count += delta;
    index.Add(chunk, delta);
}

void Zn_PointerSeq::Chunks::Rebuild() noexcept
{
    index.Build(Used(), chunkCount);
    SetCursor(0, 0);
}

// Puts an empty chunk into the directory, which has room for it.
bool Zn_PointerSeq::Chunks::OpenChunk(int at) noexcept
{
    void* memory = _zn_malloc(kChunk * kPointer);
    if (!memory)
        return false;
    std::copy_backward(Addresses() + at, Addresses() + chunkCount, Addresses() + chunkCount + 1);
    std::copy_backward(Used() + at, Used() + chunkCount, Used() + chunkCount + 1);
    Addresses()[at] = static_cast<void**>(memory);
    Used()[at] = 0;
    ++chunkCount;
    Rebuild();
    return true;
}

void Zn_PointerSeq::Chunks::DropChunks(int from, int to) noexcept
{
    for (int i = from; i < to; ++i)
        zn_free(Addresses()[i]);
    std::copy(Addresses() + to, Addresses() + chunkCount, Addresses() + from);
    std::copy(Used() + to, Used() + chunkCount, Used() + from);
    chunkCount -= to - from;
    Rebuild();
}

// Moves the last places of a chunk to the front of the next.
void Zn_PointerSeq::Chunks::MoveTail(int chunk, int moved) noexcept
{
    void** next = Addresses()[chunk + 1];
    Move(next + moved, next, Used()[chunk + 1]);
    Move(next, Addresses()[chunk] + Used()[chunk] - moved, moved);
    AddTo(chunk, -moved);
    AddTo(chunk + 1, moved);
    SetCursor(0, 0);
}

// Moves the first places of a chunk to the end of the one before.
void Zn_PointerSeq::Chunks::MoveFront(int chunk, int moved) noexcept
{
    void** places = Addresses()[chunk];
    Move(Addresses()[chunk - 1] + Used()[chunk - 1], places, moved);
    Move(places, places + moved, Used()[chunk] - moved);
    AddTo(chunk - 1, moved);
    AddTo(chunk, -moved);
    SetCursor(0, 0);
}

void Zn_PointerSeq::Chunks::MergeAround(int chunk) noexcept
{
    for (int right = std::min(chunk + 1, chunkCount - 1); right >= std::max(chunk, 1); --right) {
        if (Used()[right - 1] + Used()[right] <= kMerge) {
            MoveFront(right, Used()[right]);
            DropChunks(right, right + 1);
        }
    }
}

void Zn_PointerSeq::Chunks::Remove(int at, int removed) noexcept
{
    Place place = Locate(at);
    const int first = place.part;
    const int firstEmpty = place.offset > 0 ? first + 1 : first;
    while (removed > 0) {
        const int here = std::min(removed, Used()[place.part] - place.offset);
        void** from = Addresses()[place.part] + place.offset;
        Move(from, from + here, Used()[place.part] - place.offset - here);
        AddTo(place.part, -here);
        removed -= here;
        place = {place.part + 1, 0};
    }
    int emptyEnd = firstEmpty;
    while (emptyEnd < chunkCount && Used()[emptyEnd] == 0)
        ++emptyEnd;
    if (emptyEnd > firstEmpty)
        DropChunks(firstEmpty, emptyEnd);
    MergeAround(first);
}

constinit const Zn_PointerSeq::Head Zn_PointerSeq::empty[2] = {{0, 0, 0}, {0, 0, 1}};

Zn_PointerSeq::Chunks& Zn_PointerSeq::InChunks() const noexcept
{
    return *static_cast<Chunks*>(head_);
}

std::span<void*> Zn_PointerSeq::Run(int index) const noexcept
{
    if (head_->room >= 0)
        return {Flat() + index, static_cast<std::size_t>(head_->count - index)};
    Chunks& chunks = InChunks();
    const Chunks::Place place = chunks.Locate(index);
    return {chunks.Addresses()[place.part] + place.offset,
            static_cast<std::size_t>(chunks.Used()[place.part] - place.offset)};
}

void Zn_PointerSeq::BeginStrip(void* memory, int stride, int room) noexcept
{
    const std::int16_t tag = head_->tag;
    Clear();
    head_ = new (memory) Strip{{0, kStripRoomOf0 - room, tag, static_cast<std::uint16_t>(stride)}, 0};
}

// Bytes of a head with that many places behind it.
int Zn_PointerSeq::SizeFor(int room) noexcept
{
    return static_cast<int>(sizeof(Head)) + room * kPointer;
}

// Gives the array room for that many places.
bool Zn_PointerSeq::SetRoom(int room) noexcept
{
    if (room > kMost)
        return false;
    const bool fresh = head_ == Empty(head_->tag);
    void* memory = zn::ResizeBlock(fresh ? nullptr : head_, SizeFor(head_->room), SizeFor(room));
    if (!memory)
        return false;
    head_ = fresh ? new (memory) Head{0, room, head_->tag} : static_cast<Head*>(memory);
    head_->room = room;
    return true;
}

bool Zn_PointerSeq::Reserve(int count) noexcept
{
    if (head_->room < 0 || count <= head_->room)
        return true;
    // Never by a few places alone, so that reserving in small steps moves no more than appending does.
    const int step = std::min(head_->room / 2 + kFirst, kMost - head_->room);
    return SetRoom(head_->room == 0 ? count : std::max(count, head_->room + step));
}

bool Zn_PointerSeq::ToChunks() noexcept
{
    const int needed = (head_->count + kFill - 1) / kFill;
    Chunks* chunks = Chunks::New(head_->tag, needed + needed / 4 + 16);
    if (!chunks)
        return false;
    void** from = Flat();
    for (int left = head_->count; left > 0; left -= kFill, from += kFill) {
        void* memory = _zn_malloc(kChunk * kPointer);
        if (!memory) {
            Chunks::Free(chunks);
            return false;
        }
        const int taken = std::min(left, kFill);
        chunks->Addresses()[chunks->chunkCount] = static_cast<void**>(memory);
        chunks->Used()[chunks->chunkCount++] = taken;
        Move(static_cast<void**>(memory), from, taken);
    }
    chunks->count = head_->count;
    chunks->Rebuild();
    zn::GiveBlock(head_, SizeFor(head_->room));
    head_ = chunks;
    return true;
}

// Back to one array when few places are left; stays in chunks when there is no memory.
void Zn_PointerSeq::ToFlat() noexcept
{
    Zn_PointerSeq flat(head_->tag);
    if (!flat.Reserve(head_->count))
        return;
    for (int i = 0; i < head_->count; i = flat.Count()) {
        const std::span<void*> run = Run(i);
        flat.InsertFlat(i, run.data(), static_cast<int>(run.size()));
    }
    Swap(flat);
}

bool Zn_PointerSeq::Insert(int index, void* const* pointers, int count) noexcept
{
    if (count < 1)
        return true;
    if (count > INT_MAX - head_->count)
        return false;
    const int tail = head_->count - index;
    if (head_->room >= 0 && (tail / count <= kFar || !ToChunks()))
        return InsertFlat(index, pointers, count);
    for (int i = 0; i < count; ++i) {
        if (!InsertInChunks(index + i, pointers ? pointers[i] : nullptr)) {
            Remove(index, i);
            return false;
        }
    }
    return true;
}

bool Zn_PointerSeq::InsertFlat(int index, void* const* pointers, int count) noexcept
{
    if (!Reserve(head_->room == 0 ? std::max(count, kFirst) : head_->count + count))
        return false;
    void** at = Flat() + index;
    Move(at + count, at, head_->count - index);
    if (pointers)
        std::copy_n(pointers, count, at);
    else
        std::fill_n(at, count, nullptr);
    head_->count += count;
    return true;
}

bool Zn_PointerSeq::InsertInChunks(int index, void* pointer) noexcept
{
    // Behind the place before it: so an index at the end of a chunk means that chunk.
    Chunks::Place place = {0, 0};
    if (index > 0) {
        place = InChunks().Locate(index - 1);
        ++place.offset;
    } else {
        InChunks().SetCursor(0, 0);
    }
    if (InChunks().Used()[place.part] == kChunk && !MakePlace(place.part, place.offset))
        return false;
    Chunks& chunks = InChunks();
    void** at = chunks.Addresses()[place.part] + place.offset;
    Move(at + 1, at, chunks.Used()[place.part] - place.offset);
    *at = pointer;
    chunks.AddTo(place.part, 1);
    return true;
}

// Makes room in a full chunk: by what a neighbour can take, else by a new chunk behind it. The place
// keeps its index.
bool Zn_PointerSeq::MakePlace(int& chunk, int& offset) noexcept
{
    Chunks* chunks = &InChunks();
    const auto spare = [&](int i) { return i >= 0 && i < chunks->chunkCount ? kChunk - chunks->Used()[i] : 0; };
    constexpr int kWorthIt = kChunk / 8;
    if (spare(chunk - 1) >= kWorthIt) {
        const int moved = spare(chunk - 1) / 2;
        const int before = chunks->Used()[chunk - 1];
        chunks->MoveFront(chunk, moved);
        if (offset < moved)
            --chunk, offset += before;
        else
            offset -= moved;
        return true;
    }
    int moved = spare(chunk + 1) / 2;
    if (moved < kWorthIt / 2) {
        if (chunks->chunkCount == chunks->chunkRoom && !GrowDirectory())
            return false;
        chunks = &InChunks();
        if (!chunks->OpenChunk(chunk + 1))
            return false;
        // Appending leaves full chunks behind.
        const bool atEnd = chunk + 2 == chunks->chunkCount && offset == kChunk;
        moved = atEnd ? 0 : kChunk / 2;
    }
    chunks->MoveTail(chunk, moved);
    if (offset > kChunk - moved || offset == kChunk)
        ++chunk, offset -= kChunk - moved;
    return true;
}

bool Zn_PointerSeq::GrowDirectory() noexcept
{
    Chunks& old = InChunks();
    Chunks* grown = Chunks::New(old.tag, old.chunkRoom + old.chunkRoom / 2);
    if (!grown)
        return false;
    grown->count = old.count;
    grown->chunkCount = old.chunkCount;
    std::copy_n(old.Addresses(), old.chunkCount, grown->Addresses());
    std::copy_n(old.Used(), old.chunkCount, grown->Used());
    grown->Rebuild();
    zn_free(head_);
    head_ = grown;
    return true;
}

void Zn_PointerSeq::Remove(int index, int count) noexcept
{
    if (count < 1)
        return;
    const int tail = head_->count - index - count;
    if (head_->room >= 0 && (tail / count <= kFar || !ToChunks())) {
        Move(Flat() + index, Flat() + index + count, tail);
        head_->count -= count;
        // Memory that a long sequence no longer needs goes back; keeping it is no fault.
        if (head_->room > kChunk && head_->count < head_->room / 4)
            SetRoom(head_->room / 2);
        return;
    }
    InChunks().Remove(index, count);
    if (head_->count == 0)
        Clear();
    else if (head_->count < kFar / 2)
        ToFlat();
}

void Zn_PointerSeq::Clear() noexcept
{
    Head* old = std::exchange(head_, Empty(head_->tag));
    if (old->stride != 0)
        return;
    if (old->room < 0)
        Chunks::Free(static_cast<Chunks*>(old));
    else if (old != head_)
        zn::GiveBlock(old, SizeFor(old->room));
}
