// Comparison and logic on variants.
#include "Zn_VariantOp.h"

#include "Zn_Text.h"
#include "values/operand.h"
#include "values/operator_table.h"

namespace {

using zn::OperandKind;

int Holds(int order, short op) noexcept
{
    switch (op) {
    case ZN_OP_EQUAL:
        return order == 0;
    case ZN_OP_GREATER:
        return order > 0;
    case ZN_OP_GREATER_EQUAL:
        return order >= 0;
    case ZN_OP_LESS:
        return order < 0;
    case ZN_OP_LESS_EQUAL:
        return order <= 0;
    default:
        return 0;
    }
}

bool IsNumeric(OperandKind kind) noexcept
{
    return kind >= OperandKind::Integer && kind <= OperandKind::Date;
}

bool IsText(OperandKind kind) noexcept
{
    return kind == OperandKind::String;
}

// Operands of different types, objects replaced. Nothing that is no number, date or text compares.
int CompareAcross(const Zn_Variant& a, const Zn_Variant& b, short op)
{
    const OperandKind left = zn::OperandKindOf(a);
    const OperandKind right = zn::OperandKindOf(b);
    if (IsNumeric(left) && IsNumeric(right)) {
        const double x = a.ToDouble();
        const double y = b.ToDouble();
        return Holds(x > y ? 1 : x < y ? -1 : 0, op);
    }
    const bool comparable = (IsText(left) || IsNumeric(left)) && (IsText(right) || IsNumeric(right));
    return comparable ? Holds(zn_strcmpW(a.ToString(), b.ToString()), op) : 0;
}

bool IsTrue(const Zn_Variant& value)
{
    if (value.type == Zn_Variant::String)
        return zn_iequal(*value.GetConstStr(), u"true");
    return value.ToInteger() != 0;
}

} // namespace

int Var_Cmp(const Zn_Variant& a, const Zn_Variant& b, short op)
{
    if (zn::IsAbsent(a) || zn::IsAbsent(b))
        return zn::IsAbsent(a) && zn::IsAbsent(b) ? Holds(0, op) : 0;
    if (a.type == b.type)
        return Holds(a.Compare(b), op);
    const zn::Operand left(a);
    const zn::Operand right(b);
    return CompareAcross(*left, *right, op);
}

int Var_AndOr(const Zn_Variant& a, const Zn_Variant& b, short op)
{
    return op == ZN_OP_AND ? IsTrue(a) && IsTrue(b) : IsTrue(a) || IsTrue(b);
}
