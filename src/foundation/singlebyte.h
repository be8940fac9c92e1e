// The single-byte pages that are converted without the platform: 1252, Latin-1 and ASCII.
#pragma once

namespace zn {

bool IsOwnSingleByte(unsigned codePage) noexcept;
// The character of a byte from 0x80 on; U+FFFD when the page has none.
char16_t DecodeByte(unsigned codePage, unsigned char byte) noexcept;
// The byte of a character from U+0080 on; 0 when the page has none.
unsigned char EncodeByte(unsigned codePage, char16_t unit) noexcept;

} // namespace zn
