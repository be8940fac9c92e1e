// Bytes that grow: what messages are encoded into and read from.
//
// Copies share their bytes until one side writes. The pointer is null for the empty buffer, so
// zeroed memory is a valid one. Offsets and lengths are in bytes and int: a buffer holds less than
// 2 GiB. When that or memory runs out, an operation leaves the buffer as it was.
#pragma once

#include "Zn_Base.h"
#include "Zn_RefCount.h"

#include <cstring>
#include <span>

class Zn_AString;
namespace zn {
class ByteWriter;
}

class ZN_API Zn_Buffer {
public:
    Zn_Buffer() noexcept = default;
    Zn_Buffer(const Zn_Buffer& other) noexcept;
    Zn_Buffer(Zn_Buffer&& other) noexcept : data_(other.data_) { other.data_ = nullptr; }
    Zn_Buffer& operator=(const Zn_Buffer& other) noexcept;
    Zn_Buffer& operator=(Zn_Buffer&& other) noexcept;
    ~Zn_Buffer();

    void Set(const unsigned char* bytes, int length);
    void Set(const Zn_Buffer& other) { *this = other; }
    // Accepts bytes of this buffer itself.
    void Append(const unsigned char* bytes, int length)
    {
        if (!bytes || length < 1)
            return;
        if (!IsOwn(length)) [[unlikely]]
            return AppendSlowly(bytes, length);
        Put(bytes, length);
    }
    // Appends wide text (length -1: up to its terminator) converted to a code page (0: the locale's).
    void AppendStr(const char16_t* text, int length, unsigned codePage);
    // Changes the length; new bytes are zero.
    void SetSize(int length);
    // Grows by count zero bytes and returns the old length, which is where the caller writes; -1 when it can't.
    int AddSize(int count);
    // Room for a length of that many bytes, so that appending up to it moves nothing.
    void Reserve(int length);
    int GetLength() const noexcept { return data_ ? HeaderOf(data_)->length : 0; }
    // The byte at an offset; 0 outside the buffer.
    unsigned char GetAt(int offset) const noexcept
    {
        return offset >= 0 && offset < GetLength() ? data_[offset] : static_cast<unsigned char>(0);
    }
    // The bytes; never null. Valid until this buffer changes.
    const unsigned char* GetData() const noexcept { return data_ ? data_ : &kNothing; }
    std::span<const unsigned char> GetSpan() const noexcept
    {
        return {GetData(), static_cast<std::size_t>(GetLength())};
    }
    // Writable bytes, at least minLength of them (the length grows to that, new bytes zero); null when it can't.
    unsigned char* GetSafeBuffer(int minLength);
    // Base64 of RFC 4648, padded, in one line.
    Zn_AString EncodeBase64() const;
    // Empties the buffer.
    void Release() noexcept;

    // Equal when the bytes are.
    friend bool operator==(const Zn_Buffer& a, const Zn_Buffer& b) noexcept { return a.IsEqual(b); }

private:
    friend class zn::ByteWriter;

    // In front of the bytes.
    struct Header {
        Zn_RefCount refs;
        std::int32_t length;
        std::int32_t capacity;
    };

    static constexpr int kFront = static_cast<int>(sizeof(Header));
    static constexpr int kMost = 0x7FFFFFFF - kFront;
    static constexpr int kFirstCapacity = 48;

    static Header* HeaderOf(unsigned char* data) noexcept { return reinterpret_cast<Header*>(data) - 1; }
    // Whether no other buffer shares the bytes and count more fit behind them.
    bool IsOwn(int count) const noexcept
    {
        return data_ && HeaderOf(data_)->capacity - HeaderOf(data_)->length >= count &&
               HeaderOf(data_)->refs.Get() == 1;
    }
    // Writes behind the present bytes, where there is room.
    void Put(const unsigned char* bytes, int length) noexcept
    {
        Header* header = HeaderOf(data_);
        std::memcpy(data_ + header->length, bytes, static_cast<std::size_t>(length));
        header->length += length;
    }
    static unsigned char* NewBytes(int capacity) noexcept;
    static unsigned char* Share(unsigned char* data) noexcept;
    static void Drop(unsigned char* data) noexcept;
    // Makes the bytes this buffer's own with room for capacity of them, at least; false when it can't.
    bool MakeOwn(int capacity) noexcept;
    bool MakeRoom(int more) noexcept;
    void AppendSlowly(const unsigned char* bytes, int length) noexcept;
    bool IsEqual(const Zn_Buffer& other) const noexcept;

    static inline constexpr unsigned char kNothing = 0;
    unsigned char* data_ = nullptr;
};

static_assert(sizeof(Zn_Buffer) == sizeof(void*), "zeroed memory of one pointer is an empty buffer");
