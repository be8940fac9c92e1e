// Numbers to text and back, in both character types and without an allocation: the one home of the
// rules behind Set, ToInteger, ToDouble and IsNumber of the strings.
#pragma once

#include <cstdint>
#include <string_view>

namespace zn {

// Room for the text of any number.
constexpr int kNumberRoom = 32;

// Writes the decimal text of a number, unterminated, and returns its length.
template <class Char>
int WriteInteger(std::int64_t value, Char (&out)[kNumberRoom]) noexcept;
// The shortest text that reads back to the same double: no exponent from 1e-5 to below 1e17, whole
// numbers without a point, "inf", "-inf", "nan"; minus zero keeps its sign ("-0").
template <class Char>
int WriteDouble(double value, Char (&out)[kNumberRoom]) noexcept;
// The same as a view of out.
template <class Char>
std::basic_string_view<Char> NumberView(long value, Char (&out)[kNumberRoom]) noexcept
{
    return {out, static_cast<std::size_t>(WriteInteger(value, out))};
}
template <class Char>
std::basic_string_view<Char> NumberView(double value, Char (&out)[kNumberRoom]) noexcept
{
    return {out, static_cast<std::size_t>(WriteDouble(value, out))};
}

// Leading white space, sign, digits; 0 without digits, clamped to 32 bits.
template <class Char>
std::int32_t ReadInteger(std::basic_string_view<Char> text) noexcept;
// Leading white space, then the longest prefix that is a decimal number; 0 when there is none.
// What is too large reads as infinity, what is too small as 0.
template <class Char>
double ReadDouble(std::basic_string_view<Char> text) noexcept;
// Optional sign, digits, at most one point, at least one digit, nothing else.
template <class Char>
bool IsNumber(std::basic_string_view<Char> text) noexcept;

} // namespace zn
