// Plain functions on terminated 16-bit and 8-bit text.
//
// A null pointer reads as the empty text. Comparisons answer below, equal to or above 0 by code
// unit (ordinal, not by locale). Case is folded one UTF-16 unit at a time by Unicode's simple
// folding, so results do not depend on the locale.
#pragma once

#include "Zn_Base.h"

#include <string_view>

ZN_API int zn_strlenW(const char16_t* text) noexcept;
ZN_API int zn_strcmpW(const char16_t* a, const char16_t* b) noexcept;
ZN_API int zn_stricmpW(const char16_t* a, const char16_t* b) noexcept;
// Without regard to case, over at most n characters.
ZN_API int zn_strnicmpW(const char16_t* a, const char16_t* b, int n) noexcept;
// Copies at most n characters and pads with 0 up to n, like strncpy; the result is unterminated
// when the source has n characters or more. Returns dst.
ZN_API char16_t* zn_strncpyW(char16_t* dst, const char16_t* src, int n) noexcept;
// First or last place of a character or a text; null when absent.
ZN_API const char16_t* zn_strchrW(const char16_t* text, char16_t ch) noexcept;
ZN_API const char16_t* zn_strrchrW(const char16_t* text, char16_t ch) noexcept;
ZN_API const char16_t* zn_strstrW(const char16_t* text, const char16_t* what) noexcept;
ZN_API const char* zn_strrchrA(const char* text, char ch) noexcept;
// Search without regard to ASCII case.
ZN_API const char* zn_stristrA(const char* text, const char* what) noexcept;

// White space is blank, tab, CR, LF, VT and FF, here and everywhere in the library.
template <class Char>
constexpr bool zn_isspace(Char ch) noexcept
{
    return ch == Char(' ') || (ch >= Char(9) && ch <= Char(13));
}

// Index of the first character at or after start that is no white space; the text's length when there is none.
ZN_API int zn_findskipW(const char16_t* text, int start = 0) noexcept;
// Index of the last character before end that is no white space; -1 when there is none.
// An end of -1, or past the text, means its end.
ZN_API int zn_findrskipW(const char16_t* text, int end = -1) noexcept;

// The same comparisons for text that is not terminated.
ZN_API int zn_compare(std::u16string_view a, std::u16string_view b) noexcept;
ZN_API int zn_icompare(std::u16string_view a, std::u16string_view b) noexcept;
ZN_API bool zn_iequal(std::u16string_view a, std::u16string_view b) noexcept;
