// Operators on variants, as an evaluator of expressions needs them.
//
//     Zn_Variant total;
//     Var_Mul(price, quantity, total);
//     if (Var_Cmp(total, limit, ZN_OP_GREATER))
//         ...
//
// The types of the operands choose the type of the result: docs/operators.md shows all pairs. An
// operand that holds an object stands for the value of the object's default property. Nothing is
// reported: an operation that does not apply, and division by zero, leave an empty result. The
// result may be one of the operands. Numbers are computed without allocating memory.
#pragma once

#include "Zn_Variant.h"

// Sum; texts are joined, also with what is no text; a date moves by a number of days. With one operand
// empty or null the other one.
ZN_API void Var_Add(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result);
// Difference. INTEGER wraps in 32 bits; an overflow of CURRENCY is its smallest amount. A STRING is no number
// here, nor in the next three: callers rely on "7" - 2 being empty.
ZN_API void Var_Sub(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result);
// Product, of the type that the difference has. An empty or null factor counts as zero.
ZN_API void Var_Mul(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result);
// Quotient, always DECIMAL. Empty when either operand is empty or null, or b is closer to zero than 1e-15.
ZN_API void Var_Div(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result);
// Remainder of the operands cut to whole numbers, with the sign of a; always INTEGER. Empty as for Var_Div.
ZN_API void Var_Mod(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result);
// The texts of both (Zn_Variant::ToString), joined; always STRING.
ZN_API void Var_Cat(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result);

enum : short {
    ZN_OP_EQUAL = 31,
    ZN_OP_GREATER = 32,
    ZN_OP_GREATER_EQUAL = 33,
    ZN_OP_LESS = 34,
    ZN_OP_LESS_EQUAL = 35,
    ZN_OP_AND = 41,
    ZN_OP_OR = 42
};

// 1 when a compares to b as the operator says, else 0; 0 for an unknown operator. Empty and null equal each other
// and compare to nothing else. Two of one type compare by Zn_Variant::Compare, numbers and dates as doubles, a text
// with a number or date as texts ("10" is less than 9); no other types compare.
ZN_API int Var_Cmp(const Zn_Variant& a, const Zn_Variant& b, short op);
// 1 or 0. A STRING is true when it reads "true" in any case, any other value when its whole number is not 0. Every
// operator but ZN_OP_AND is "or".
ZN_API int Var_AndOr(const Zn_Variant& a, const Zn_Variant& b, short op);
