// UTF-8 and the runs of ASCII that every page but the exotic ones shares with it.
#pragma once

#include <cstddef>
#include <string_view>

namespace zn {

constexpr bool IsSurrogate(char16_t unit) noexcept
{
    return (unit & 0xF800) == 0xD800;
}
constexpr bool IsHighSurrogate(char16_t unit) noexcept
{
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(char16_t unit) noexcept
{
    return (unit & 0xFC00) == 0xDC00;
}
constexpr char32_t JoinSurrogates(char16_t high, char16_t low) noexcept
{
    return 0x10000 + ((char32_t(high) & 0x3FF) << 10) + (low & 0x3FF);
}
// Writes a code point as one or two units and returns how many.
constexpr std::size_t PutCodePoint(char32_t code, char16_t* out) noexcept
{
    if (code < 0x10000) {
        out[0] = static_cast<char16_t>(code);
        return 1;
    }
    out[0] = static_cast<char16_t>(0xD7C0 + (code >> 10));
    out[1] = static_cast<char16_t>(0xDC00 | (code & 0x3FF));
    return 2;
}

// Copy the ASCII run at the front, at most room characters of it; return its length.
std::size_t CopyAscii(std::string_view bytes, char16_t* out, std::size_t room) noexcept;
std::size_t CopyAscii(std::u16string_view text, char* out, std::size_t room) noexcept;

struct Converted {
    std::size_t read;
    std::size_t written;
};

struct WideUtf8;
extern const WideUtf8* const ownWideUtf8; // of this processor, else null

// Each maximal malformed part gives one U+FFFD. Stops when fewer than 2 units of room are left.
Converted DecodeUtf8(std::string_view bytes, char16_t* out, std::size_t room,
                     const WideUtf8* wide = ownWideUtf8) noexcept;
// Stops in front of an unpaired surrogate, or when fewer than 4 bytes of room are left.
Converted EncodeUtf8(std::u16string_view text, char* out, std::size_t room,
                     const WideUtf8* wide = ownWideUtf8) noexcept;

std::size_t CountUtf16OfUtf8(std::string_view bytes) noexcept;
std::size_t CountUtf8OfUtf16(std::u16string_view text) noexcept;

} // namespace zn
