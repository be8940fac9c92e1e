// The placeholders of a message template: one reading of them for the program that checks and makes
// the tables and for the code that fills them.
#pragma once

#include <cstddef>
#include <string_view>

namespace zn::messages {

template <class Char>
struct Placeholder {
    std::size_t start = 0;    // where its % stands; the text's length when there are no more
    std::size_t end = 0;      // just past its conversion character
    std::size_t flags = 0;    // flags, width and precision: text[start + 1, start + 1 + flags)
    Char conversion = 0;      // 0 when the text ends first
    bool hasModifier = false; // a length such as h, l, ll
};

constexpr bool IsOneOf(char16_t ch, std::string_view set) noexcept
{
    return ch < 0x80 && set.find(static_cast<char>(ch)) != std::string_view::npos;
}

// The next placeholder at or after a position.
template <class Char>
constexpr Placeholder<Char> NextPlaceholder(std::basic_string_view<Char> text, std::size_t from) noexcept
{
    Placeholder<Char> found;
    found.start = text.find(Char('%'), from);
    if (found.start == text.npos) {
        found.start = found.end = text.size();
        return found;
    }
    std::size_t at = found.start + 1;
    const auto skip = [&](std::string_view set) {
        const std::size_t begin = at;
        while (at < text.size() && IsOneOf(static_cast<char16_t>(text[at]), set))
            ++at;
        return at - begin;
    };
    found.flags = skip("-+ #0123456789.");
    found.hasModifier = skip("hlLqjzt") > 0;
    if (at < text.size())
        found.conversion = text[at++];
    found.end = at;
    return found;
}

} // namespace zn::messages
