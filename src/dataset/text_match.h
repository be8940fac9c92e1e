// Whether texts are the same, and the text of a value for that, which is not built where the value is a text or a
// number.
#pragma once

#include "Zn_Variant.h"
#include "foundation/number_text.h"

#include <cstdint>
#include <cstring>
#include <string_view>

namespace zn {

inline bool SameText(std::u16string_view a, std::u16string_view b) noexcept
{
    constexpr std::size_t kFour = 4; // units that one number holds
    const std::size_t size = a.size();
    if (size != b.size())
        return false;
    const auto differ = [&](std::size_t at) {
        std::uint64_t x, y;
        std::memcpy(&x, a.data() + at, sizeof x);
        std::memcpy(&y, b.data() + at, sizeof y);
        return x != y;
    };
    std::size_t at = 0;
    for (; at + kFour <= size; at += kFour) {
        if (differ(at))
            return false;
    }
    if (size > kFour)
        return !differ(size - kFour);
    for (; at < size; ++at) {
        if (a[at] != b[at])
            return false;
    }
    return true;
}

// Texts that share their body are told by that.
inline bool SameText(const Zn_WString& a, const Zn_WString& b) noexcept
{
    return a.GetText() == b.GetText() || SameText(a.GetView(), b.GetView());
}

// What match answers for the text of a value; an absent value has none.
template <class Match>
bool TextMatches(const Zn_Variant* value, Match match)
{
    if (!value)
        return match(std::u16string_view());
    char16_t digits[kNumberRoom];
    switch (value->type) {
    case Zn_Variant::String:
        return match(value->GetConstStr()->GetView());
    case Zn_Variant::Integer:
        return match(NumberView(long{value->ToInteger()}, digits));
    case Zn_Variant::Decimal:
        return match(NumberView(value->ToDouble(), digits));
    default:
        return match(value->ToString().GetView());
    }
}

} // namespace zn
