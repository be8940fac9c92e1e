// Appends many small fields to a buffer at the speed of plain stores: the base of every binary encoder.
//
// The buffer belongs to the writer until Finish (or its destructor) gives it its true length. When memory runs
// out, nothing more is written.
#pragma once

#include "Zn_Buffer.h"
#include "foundation/byteorder.h"
#include "foundation/encoding.h"

#include <optional>
#include <span>
#include <string_view>

namespace zn {

class ByteWriter {
public:
    // Texts are converted to a code page (0: the locale's).
    ByteWriter(Zn_Buffer& out, unsigned codePage) noexcept;
    ~ByteWriter() { Finish(); }
    ByteWriter(const ByteWriter&) = delete;
    ByteWriter& operator=(const ByteWriter&) = delete;

    void Put16(std::uint16_t value) noexcept
    {
        if (unsigned char* to = Room(2))
            PutBe16(to, value);
    }
    void Put32(std::uint32_t value) noexcept
    {
        if (unsigned char* to = Room(4))
            PutBe32(to, value);
    }
    void Put64(std::uint64_t value) noexcept
    {
        if (unsigned char* to = Room(8))
            PutBe64(to, value);
    }
    void PutBytes(std::span<const unsigned char> bytes) noexcept;
    // A text behind a 16-bit count of its bytes. Callers rely on a text of 64 KiB or more being cut to the low 16 bits
    // of its length.
    void PutText(std::u16string_view text) noexcept;
    // Gives the buffer its length and returns it.
    int Finish() noexcept;

private:
    // Where the next count bytes go, null when memory ran out.
    unsigned char* Room(std::size_t count) noexcept
    {
        if (static_cast<std::size_t>(end_ - at_) < count && !Grow(count))
            return nullptr;
        unsigned char* to = at_;
        at_ += count;
        return to;
    }
    bool Grow(std::size_t count) noexcept;
    std::size_t PutEncoded(std::u16string_view text) noexcept;

    Zn_Buffer& out_;
    unsigned codePage_;
    bool isUtf8_;
    std::optional<TextEncoder> encoder_; // of the other code pages, made with the first text
    unsigned char* begin_ = nullptr;
    unsigned char* at_ = nullptr;
    unsigned char* end_ = nullptr;
    int length_; // of the buffer, while there is no room yet
};

} // namespace zn
