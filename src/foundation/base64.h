// Base64 (RFC 4648) between bytes and text of either width, without temporaries: the caller provides
// the room.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

namespace zn {

// Characters of the padded text for that many bytes.
constexpr std::size_t Base64TextSize(std::size_t bytes) noexcept
{
    return (bytes + 2) / 3 * 4;
}
// At least the bytes that a text of that many characters decodes to.
constexpr std::size_t Base64MaxBytes(std::size_t characters) noexcept
{
    return characters / 4 * 3 + 3;
}

// Writes Base64TextSize(bytes.size()) characters, no terminator. Char is char or char16_t.
template <class Char>
void Base64Encode(std::span<const unsigned char> bytes, Char* out) noexcept;

// Decodes up to the first "=", skipping every character outside the alphabet; bits that make no whole byte are
// dropped. Writes at most Base64MaxBytes(text.size()) bytes and returns how many.
template <class Char>
std::size_t Base64Decode(std::basic_string_view<Char> text, unsigned char* out) noexcept;

} // namespace zn
