// Code pages: which 8-bit encoding a text is in, and its names.
//
// Code pages are the Windows numbers: 65001 (UTF-8), 1252, 949 (Korean), 932 (Japanese), 1200
// (UTF-16, little-endian bytes), and whatever else the platform converts. 0 always means the locale's.
// Conversions stand with the strings (Zn_WString, Zn_AString, Zn_Buffer::AppendStr). Malformed bytes become
// U+FFFD; a character that a page lacks becomes '?', an unpaired surrogate in UTF-8 U+FFFD. A page
// that nobody knows is read and written as ASCII.
#pragma once

#include "Zn_Base.h"

// The locale's code page: taken once from LC_ALL, LC_CTYPE or LANG (none, "C" and "POSIX" mean
// 65001), or what ZnSetLocaleCP last set.
ZN_API unsigned ZnGetLocaleCP() noexcept;
// Sets the locale's code page for the whole process; 0 goes back to the environment's.
ZN_API void ZnSetLocaleCP(unsigned codePage) noexcept;
// The code page to use for a requested one: the locale's for 0, else the number itself.
ZN_API unsigned zn_activecodepage(unsigned codePage) noexcept;
// Code page of a charset name or alias ("utf-8", "euc-kr", "Shift_JIS", "latin1", ...), with case and everything
// but letters and digits ignored; 0 when unknown.
ZN_API unsigned zn_findcodepageW(const char16_t* name) noexcept;
ZN_API unsigned zn_findcodepageA(const char* name) noexcept;
// Charset name to write for a code page (0: the locale's): "utf-8", "utf-16", "windows-1252",
// "euc-kr", "shift_jis", ...; the empty text for an unknown one, never null.
ZN_API const char* zn_findcharset(unsigned codePage) noexcept;
