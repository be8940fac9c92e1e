// Simple case folding of one UTF-16 unit, the same in every locale.
#pragma once

namespace zn {

// For units from 0x80 on.
char16_t FoldCaseBeyondAscii(char16_t unit) noexcept;

inline char16_t FoldCase(char16_t unit) noexcept
{
    if (unit < 0x80) [[likely]]
        return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
    return FoldCaseBeyondAscii(unit);
}

constexpr char FoldAscii(char ch) noexcept
{
    return ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch + 32) : ch;
}

} // namespace zn
