// The fast part of UTF-8 on processors whose vectors hold 64 bytes.
#pragma once

#include "foundation/utf8.h"

namespace zn {

// Each converts well-formed text from the front on and stops in front of what it leaves to others: a character beyond
// U+FFFF, anything malformed, what is too long for the room.
struct WideUtf8 {
    Converted (*decode)(std::string_view bytes, char16_t* out, std::size_t room) noexcept;
    Converted (*encode)(std::u16string_view text, char* out, std::size_t room) noexcept;
};

// Null on a processor without the instructions.
const WideUtf8* FindWideUtf8() noexcept;

} // namespace zn
