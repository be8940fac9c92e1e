// The type that an operator's result has, for every pair of operand types. The operators work by this table,
// their test walks it, and docs/operators.md shows it.
#pragma once

#include "Zn_Variant.h"

#include <array>

namespace zn {

// Rows and columns of the table. Object is one whose default property did not replace it; it also stands for
// the type codes that are no kind of value.
enum class OperandKind { Empty, Null, Integer, Decimal, Currency, Date, String, Binary, Array, Object };
inline constexpr int kOperandKinds = 10;

// By table as well: the compiler would make a tree of jumps of a switch here and in the operators.
inline constexpr auto kKindOfCode = [] {
    std::array<OperandKind, Zn_Variant::Binary + 1> kinds;
    kinds.fill(OperandKind::Object);
    kinds[Zn_Variant::Empty] = OperandKind::Empty;
    kinds[Zn_Variant::Null] = OperandKind::Null;
    kinds[Zn_Variant::Integer] = OperandKind::Integer;
    kinds[Zn_Variant::Decimal] = OperandKind::Decimal;
    kinds[Zn_Variant::Currency] = OperandKind::Currency;
    kinds[Zn_Variant::Date] = OperandKind::Date;
    kinds[Zn_Variant::String] = OperandKind::String;
    kinds[Zn_Variant::Binary] = OperandKind::Binary;
    return kinds;
}();

inline OperandKind OperandKindOf(const Zn_Variant& value) noexcept
{
    if (value.type < kKindOfCode.size())
        return kKindOfCode[value.type];
    return value.type == Zn_Variant::Array ? OperandKind::Array : OperandKind::Object;
}

// One row per kind of the left operand, one character per kind of the right one:
//   I D C T S   an INTEGER, DECIMAL, CURRENCY, DATE or STRING
//   a b         a copy of the left or the right operand
//   .           empty
struct OperatorTable {
    const char* name;
    char results[kOperandKinds][kOperandKinds + 1];

    constexpr char At(OperandKind a, OperandKind b) const noexcept
    {
        return results[static_cast<int>(a)][static_cast<int>(b)];
    }
};

// clang-format off
inline constexpr OperatorTable kAddTable = {"Var_Add", {
    // ENIDCTSBAO
    "..bbbbbbbb", // empty
    "..bbbbbbbb", // null
    "aaIDCTS...", // INTEGER
    "aaDDDTS...", // DECIMAL
    "aaCDCTS...", // CURRENCY
    "aaTTTTS...", // DATE
    "aaSSSSSSSS", // STRING
    "aa....S...", // BINARY
    "aa....S...", // ARRAY
    "aa....S...", // object
}};

inline constexpr OperatorTable kSubTable = {"Var_Sub", {
    "..IDCC....",
    "..IDCC....",
    "aaIDCI....",
    "aaDDDD....",
    "aaCDCC....",
    "aaTTTT....",
    "..........",
    "..........",
    "..........",
    "..........",
}};

inline constexpr OperatorTable kMulTable = {"Var_Mul", {
    "..IDCC....",
    "..IDCC....",
    "IIIDCI....",
    "DDDDDD....",
    "CCCDCC....",
    "TTTTTT....",
    "..........",
    "..........",
    "..........",
    "..........",
}};

inline constexpr OperatorTable kDivTable = {"Var_Div", {
    "..........",
    "..........",
    "..DDDD....",
    "..DDDD....",
    "..DDDD....",
    "..DDDD....",
    "..........",
    "..........",
    "..........",
    "..........",
}};

inline constexpr OperatorTable kModTable = {"Var_Mod", {
    "..........",
    "..........",
    "..IIII....",
    "..IIII....",
    "..IIII....",
    "..IIII....",
    "..........",
    "..........",
    "..........",
    "..........",
}};
// clang-format on

} // namespace zn
