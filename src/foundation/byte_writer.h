// Appends many small fields to a buffer at the speed of plain stores: the base of every binary encoder.
//
// The buffer belongs to the writer until Finish (or its destructor) gives it its true length. When memory runs
// out, nothing more is written. What makes room for several fields at once writes them with Open and Close.
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

    // Where the next fields go, with room for count bytes; null when memory ran out. Close tells where they end.
    unsigned char* Open(std::size_t count) noexcept
    {
        return static_cast<std::size_t>(end_ - at_) >= count || Grow(count) ? at_ : nullptr;
    }
    void Close(unsigned char* end) noexcept { at_ = end; }

    void Put16(std::uint16_t value) noexcept
    {
        if (unsigned char* to = Open(2)) {
            PutBe16(to, value);
            Close(to + 2);
        }
    }
    void Put32(std::uint32_t value) noexcept
    {
        if (unsigned char* to = Open(4)) {
            PutBe32(to, value);
            Close(to + 4);
        }
    }
    void PutBytes(std::span<const unsigned char> bytes) noexcept;
    // A text behind a 16-bit count of its bytes. Callers rely on a text of 64 KiB or more being cut to the low 16 bits
    // of its length.
    void PutText(std::u16string_view text) noexcept;
    // Gives the buffer its length and returns it.
    int Finish() noexcept;

private:
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
