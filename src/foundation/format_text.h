// printf formatting into the library's strings, one body for both widths and the same in every locale.
//
// Flags "-+ 0#", width and precision (also "*"), lengths hh h l ll q L z j t, conversions d i u x X o c s p
// e E f F g G a A and %. Text of the other width than the format's is converted by the locale's code page.
// An unknown conversion prints its character and drops the "%"; "%n" is unknown. A width, and the
// precision of a number, counts up to kMostWidth only, so that a format can't ask for any amount of memory.
#pragma once

#include "foundation/encoding.h"

#include <cstdarg>
#include <string_view>

namespace zn {

constexpr int kMostWidth = 4096;

// Append to the sink. The arguments must be those that the format names.
void FormatText(CountingSink<Zn_WString>& sink, std::u16string_view format, std::va_list args);
void FormatText(CountingSink<Zn_AString>& sink, std::string_view format, std::va_list args);

} // namespace zn
