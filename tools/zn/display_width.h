// How many cells of a terminal a text takes: East Asian wide and fullwidth characters two, combining marks
// and format characters none, every other one.
#pragma once

#include <string_view>

namespace zntool {

int DisplayWidth(std::u16string_view text);

// The next code point of a text, at least one unit further on; half of a surrogate pair gives U+FFFD.
char32_t NextCodePoint(std::u16string_view text, std::size_t& pos);
int CodePointWidth(char32_t ch);

} // namespace zntool
