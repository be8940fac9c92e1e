// The type that an operator's result has, for every pair of operand types. The operators work by this table,
// their test walks it, and docs/operators.md shows it.
#pragma once

#include "Zn_Variant.h"

namespace zn {

// Rows and columns of the table. Object is one whose default property did not replace it; it also stands for
// the type codes that are no kind of value.
enum class OperandKind { Empty, Null, Integer, Decimal, Currency, Date, String, Binary, Array, Object };
inline constexpr int kOperandKinds = 10;

constexpr OperandKind OperandKindOf(const Zn_Variant& value) noexcept
{
    switch (value.type) {
    case Zn_Variant::Empty:
        return OperandKind::Empty;
    case Zn_Variant::Null:
        return OperandKind::Null;
    case Zn_Variant::Integer:
        return OperandKind::Integer;
    case Zn_Variant::Decimal:
        return OperandKind::Decimal;
    case Zn_Variant::Currency:
        return OperandKind::Currency;
    case Zn_Variant::Date:
        return OperandKind::Date;
    case Zn_Variant::String:
        return OperandKind::String;
    case Zn_Variant::Binary:
        return OperandKind::Binary;
    case Zn_Variant::Array:
        return OperandKind::Array;
    default:
        return OperandKind::Object;
    }
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
