#include "Zn_Buffer.h"

#include "Zn_AString.h"
#include "foundation/memory.h"

#include <algorithm>
#include <climits>
#include <new>
#include <utility>

namespace {

constexpr int kFirstCapacity = 48;

} // namespace

unsigned char* Zn_Buffer::NewBytes(int capacity) noexcept
{
    constexpr int kMost = INT_MAX - static_cast<int>(sizeof(Header));
    if (capacity > kMost)
        return nullptr;
    void* memory = _zn_malloc(static_cast<int>(sizeof(Header)) + capacity);
    if (!memory)
        return nullptr;
    return reinterpret_cast<unsigned char*>(new (memory) Header{{1}, 0, capacity} + 1);
}

unsigned char* Zn_Buffer::Share(unsigned char* data) noexcept
{
    if (data)
        HeaderOf(data)->refs.fetch_add(1, std::memory_order_relaxed);
    return data;
}

void Zn_Buffer::Drop(unsigned char* data) noexcept
{
    if (data && HeaderOf(data)->refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
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
    if (IsOwn(0) && HeaderOf(data_)->capacity >= capacity)
        return true;
    const int length = GetLength();
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
    const int grown = length > INT_MAX / 3 * 2 ? 0 : length + length / 2;
    return MakeOwn(std::max(length + more, grown)) || MakeOwn(length + more);
}

void Zn_Buffer::AppendSlowly(const unsigned char* bytes, int length) noexcept
{
    const Zn_Buffer source(*this); // bytes may be ours: they stay where they are while we move
    if (MakeRoom(length))
        Append(bytes, length);
}

void Zn_Buffer::Set(const unsigned char* bytes, int length)
{
    if (!bytes || length < 1)
        return Release();
    Zn_Buffer fresh;
    if (!fresh.MakeOwn(length))
        return;
    fresh.Append(bytes, length);
    std::swap(data_, fresh.data_);
}

void Zn_Buffer::AppendStr(const char16_t* text, int length, unsigned codePage)
{
    const Zn_AString converted(text, length, codePage);
    Append(reinterpret_cast<const unsigned char*>(converted.GetText()), converted.GetLength());
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
    if (length > 0)
        MakeOwn(length);
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
