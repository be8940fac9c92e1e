// The kinds of variants, one row each.
#pragma once

#include "Zn_Variant.h"

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

} // namespace zn
