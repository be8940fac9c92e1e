#include "Zn_Buffer.h"

#include "foundation/encoding.h"
#include "foundation/memory.h"

#include <algorithm>
#include <climits>
#include <functional>
#include <new>
#include <utility>

unsigned char* Zn_Buffer::NewBytes(int capacity) noexcept
{
    void* memory = capacity > kMost ? nullptr : _zn_malloc(kFront + capacity);
    return memory ? reinterpret_cast<unsigned char*>(new (memory) Header{{1}, 0, capacity} + 1) : nullptr;
}

unsigned char* Zn_Buffer::Share(unsigned char* data) noexcept
{
    if (data)
        HeaderOf(data)->refs.AddRef();
    return data;
}

void Zn_Buffer::Drop(unsigned char* data) noexcept
{
    if (data && HeaderOf(data)->refs.Release() == 0)
        zn_free(HeaderOf(data));
}

Zn_Buffer::Zn_Buffer(const Zn_Buffer& other) noexcept : data_(Share(other.data_)) {}

Zn_Buffer& Zn_Buffer::operator=(const Zn_Buffer& other) noexcept
{
    Drop(std::exchange(data_, Share(other.data_)));
    return *this;
}

Zn_Buffer& Zn_Buffer::operator=(Zn_Buffer&& other) noexcept
{
    std::swap(data_, other.data_);
    return *this;
}

Zn_Buffer::~Zn_Buffer()
{
    Drop(data_);
}

bool Zn_Buffer::MakeOwn(int capacity) noexcept
{
    const int length = GetLength();
    if (IsOwn(0)) {
        if (HeaderOf(data_)->capacity >= capacity)
            return true;
        void* grown = capacity > kMost ? nullptr : zn::Reallocate(HeaderOf(data_), kFront + capacity);
        if (!grown)
            return false;
        data_ = reinterpret_cast<unsigned char*>(static_cast<Header*>(grown) + 1);
        HeaderOf(data_)->capacity = capacity;
        return true;
    }
    unsigned char* fresh = NewBytes(std::max({capacity, length, kFirstCapacity}));
    if (!fresh)
        return false;
    std::memcpy(fresh, GetData(), static_cast<std::size_t>(length));
    HeaderOf(fresh)->length = length;
    Drop(std::exchange(data_, fresh));
    return true;
}

// Room for more bytes behind the present ones; what must move moves to one and a half times the room.
bool Zn_Buffer::MakeRoom(int more) noexcept
{
    const int length = GetLength();
    if (more > INT_MAX - length)
        return false;
    if (IsOwn(more))
        return true;
    const int grown = length + std::min(length / 2, std::max(kMost - length, 0));
    return MakeOwn(std::max(length + more, grown));
}

void Zn_Buffer::AppendSlowly(const unsigned char* bytes, int length) noexcept
{
    Zn_Buffer source;
    if (data_ && !std::less<>()(bytes, data_) && std::less<>()(bytes, data_ + GetLength()))
        source = *this; // our own bytes stay where they are while we move
    if (MakeRoom(length))
        Put(bytes, length);
}

void Zn_Buffer::Set(const unsigned char* bytes, int length)
{
    if (!bytes || length < 1)
        return Release();
    Zn_Buffer fresh;
    if (!fresh.MakeOwn(length))
        return;
    fresh.Put(bytes, length);
    std::swap(data_, fresh.data_);
}

void Zn_Buffer::AppendStr(const char16_t* text, int length, unsigned codePage)
{
    zn::AppendWhole(*this, [&](auto& sink) { zn::EncodeText(zn::ViewOf(text, length), codePage, sink); });
}

void Zn_Buffer::SetSize(int length)
{
    const int old = GetLength();
    if (length > old)
        AddSize(length - old);
    else if (length == 0)
        Release();
    else if (length > 0 && length < old && MakeOwn(length))
        HeaderOf(data_)->length = length;
}

int Zn_Buffer::AddSize(int count)
{
    const int old = GetLength();
    if (count == 0)
        return old;
    if (count < 0 || !MakeRoom(count))
        return -1;
    std::memset(data_ + old, 0, static_cast<std::size_t>(count));
    HeaderOf(data_)->length = old + count;
    return old;
}

void Zn_Buffer::Reserve(int length)
{
    if (length > GetLength())
        MakeRoom(length - GetLength());
}

unsigned char* Zn_Buffer::GetSafeBuffer(int minLength)
{
    const int missing = minLength > GetLength() ? minLength - GetLength() : 0;
    return MakeRoom(missing) && AddSize(missing) >= 0 ? data_ : nullptr;
}

void Zn_Buffer::Release() noexcept
{
    Drop(std::exchange(data_, nullptr));
}

bool Zn_Buffer::IsEqual(const Zn_Buffer& other) const noexcept
{
    const int length = GetLength();
    return length == other.GetLength() &&
           (data_ == other.data_ || std::memcmp(GetData(), other.GetData(), static_cast<std::size_t>(length)) == 0);
}
