// Views of text given by pointer: null is the empty text, a length below 0 means up to the terminator.
#pragma once

#include <cstddef>
#include <string_view>

namespace zn {

template <class Char>
constexpr std::basic_string_view<Char> ViewOf(const Char* text, int length = -1) noexcept
{
    if (!text)
        return {};
    return length < 0 ? std::basic_string_view<Char>(text)
                      : std::basic_string_view<Char>(text, static_cast<std::size_t>(length));
}

} // namespace zn
