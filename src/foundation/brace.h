// The rule of TrimBrace, on views: which enclosing pair is taken off a text.
#pragma once

#include <string_view>

namespace zn {

template <class Char>
constexpr bool IsQuote(Char ch) noexcept
{
    return ch == Char('"') || ch == Char('\'');
}

// The bracket that closes one that opens; 0 for any other character.
template <class Char>
constexpr Char ClosingOf(Char open) noexcept
{
    switch (open) {
    case Char('('):
        return Char(')');
    case Char('['):
        return Char(']');
    case Char('{'):
        return Char('}');
    case Char('<'):
        return Char('>');
    default:
        return Char(0);
    }
}

// One enclosing pair of quotes or brackets taken off. With quotesOnly brackets stay, and a quote at the start
// that has no mate goes too.
template <class Char>
constexpr std::basic_string_view<Char> WithoutBrace(std::basic_string_view<Char> text, bool quotesOnly) noexcept
{
    if (text.empty())
        return text;
    const Char first = text.front();
    const bool quote = IsQuote(first);
    const Char mate = quote ? first : ClosingOf(first);
    if (text.size() >= 2 && mate != Char(0) && text.back() == mate && (quote || !quotesOnly))
        return text.substr(1, text.size() - 2);
    return quote && quotesOnly ? text.substr(1) : text;
}

} // namespace zn
