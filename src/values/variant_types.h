// The kinds of variants, one row each.
#pragma once

#include "Zn_Variant.h"

#include <bit>

namespace zn {

struct VariantType {
    std::uint16_t code;
    const char16_t* name;
    bool ordered; // IsComparable with its own kind
};

// The row of a type code; null for a code that is none.
const VariantType* FindType(std::uint16_t code) noexcept;

// Empty or null: no value at all.
inline bool IsAbsent(const Zn_Variant& value) noexcept
{
    return value.type == Zn_Variant::Empty || value.type == Zn_Variant::Null;
}

// What a date is compared with: callers rely on the bits of the other date being read as an amount there.
inline double DateReadAsAmount(const Zn_DateTime& date) noexcept
{
    return Zn_Currency::FromRaw(std::bit_cast<std::int64_t>(date.GetStored())).ToDouble();
}

} // namespace zn
