// Values as text and back, exactly: what tables show, what CSV holds and what edit commands say.
//
// Unlike the library's own conversions these keep every amount as it is ("0.05", "-19.99") and say why a
// text is no value of a column's type.
#pragma once

#include "Zn_Variant.h"

#include <string>
#include <string_view>

namespace zntool {

std::string ToUtf8(std::u16string_view text);
// "1 row", "2 rows".
std::string Counted(long long count, const std::string& noun);
// Fails to convert (returns false) when the bytes are no UTF-8.
bool FromUtf8(std::string_view bytes, Zn_WString& text);

// No value at all: an absent slot, the empty value or an explicit null.
bool IsNothing(const Zn_Variant* value);

// Whether two values say the same: both nothing, equal, or equal as text.
bool SaysSame(const Zn_Variant* a, const Zn_Variant* b);

// The value as text; nothing adds nothing, bytes are Base64.
void AppendText(const Zn_Variant* value, std::u16string& out);
std::u16string TextOf(const Zn_Variant* value);

// Reads a text as a value of a column type. Returns the empty text, or why it is none: "'abc' is no INT".
std::string ParseValue(std::u16string_view text, short columnType, Zn_Variant& value);

bool IsInt(std::u16string_view text); // a whole number of 32 bits
bool IsDecimal(std::u16string_view text);
bool IsDate(std::u16string_view text); // YYYYMMDD, and hours, minutes and seconds if they follow

} // namespace zntool
