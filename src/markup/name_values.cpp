#include "name_values.h"

namespace zn {

namespace {

constexpr bool IsSeparator(char16_t unit) noexcept
{
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

// Characters that a token needs to be read in full for, when they stand in its name.
constexpr bool IsOdd(char16_t unit) noexcept
{
    return unit == u'"' || unit == u'\'' || unit == u'\\' || zn_isspace(unit);
}

// The value without quotes behind a name and "=".
bool TakeBareValue(std::u16string_view& text, std::size_t equals, NameValue& pair) noexcept
{
    std::size_t close = equals + 1;
    for (; close < text.size() && !IsSeparator(text[close]); ++close) {
        if (IsOdd(text[close]))
            return false;
    }
    if (close == equals + 1)
        return false;
    pair = {text.substr(0, equals), text.substr(equals + 1, close - equals - 1), ValuePlace::WithName};
    text.remove_prefix(close);
    return true;
}

} // namespace

bool TakePlainAttribute(std::u16string_view& text, NameValue& pair) noexcept
{
    std::size_t start = 0;
    while (start < text.size() && IsSeparator(text[start]))
        ++start;
    text.remove_prefix(start);
    std::size_t equals = 0;
    while (equals < text.size() && text[equals] != u'=') {
        if (IsOdd(text[equals++]))
            return false;
    }
    if (equals + 1 >= text.size())
        return false;
    const char16_t quote = text[equals + 1];
    if (quote != u'"' && quote != u'\'')
        return TakeBareValue(text, equals, pair);
    std::size_t close = equals + 2;
    while (close < text.size() && text[close] != quote) {
        if (text[close++] == u'\\')
            return false;
    }
    if (close >= text.size() || (close + 1 < text.size() && !IsSeparator(text[close + 1])))
        return false;
    pair = {text.substr(0, equals), text.substr(equals + 1, close - equals), ValuePlace::WithName};
    text.remove_prefix(close + 1);
    return true;
}

} // namespace zn
