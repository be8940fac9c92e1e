// Arithmetic on variants: the table says of what type a result is, an operator's own functions compute it.
#include "Zn_VariantOp.h"

#include "values/operand.h"
#include "values/operator_table.h"

#include <cmath>
#include <limits>
#include <utility>

namespace {

using zn::OperatorTable;

constexpr double kSmallestDivisor = 1e-15;

// The operands are read as the type asked for, by Zn_Variant's conversions.
struct Arithmetic {
    const OperatorTable& table;
    std::int32_t (*integer)(const Zn_Variant& a, const Zn_Variant& b);
    double (*decimal)(const Zn_Variant& a, const Zn_Variant& b);
    Zn_Currency (*currency)(const Zn_Variant& a, const Zn_Variant& b);
    Zn_DateTime (*date)(const Zn_Variant& a, const Zn_Variant& b);
};

std::uint32_t Word(const Zn_Variant& value)
{
    return static_cast<std::uint32_t>(value.ToInteger());
}

std::int32_t AddIntegers(const Zn_Variant& a, const Zn_Variant& b)
{
    return static_cast<std::int32_t>(Word(a) + Word(b));
}

double AddDecimals(const Zn_Variant& a, const Zn_Variant& b)
{
    return a.ToDouble() + b.ToDouble();
}

Zn_Currency AddCurrencies(const Zn_Variant& a, const Zn_Variant& b)
{
    return a.ToCurrency() + b.ToCurrency();
}

Zn_DateTime AddDates(const Zn_Variant& a, const Zn_Variant& b)
{
    const bool dateFirst = a.type == Zn_Variant::Date;
    const Zn_Variant& date = dateFirst ? a : b;
    const Zn_Variant& days = dateFirst ? b : a;
    return date.ToDateTime() + Zn_DateTimeSpan(days.ToDouble());
}

std::int32_t SubIntegers(const Zn_Variant& a, const Zn_Variant& b)
{
    return static_cast<std::int32_t>(Word(a) - Word(b));
}

double SubDecimals(const Zn_Variant& a, const Zn_Variant& b)
{
    return zn::IsAbsent(a) ? -b.ToDouble() : a.ToDouble() - b.ToDouble(); // nothing less 0.0 is -0.0
}

Zn_Currency SubCurrencies(const Zn_Variant& a, const Zn_Variant& b)
{
    return a.ToCurrency() - b.ToCurrency();
}

Zn_DateTime SubDates(const Zn_Variant& a, const Zn_Variant& b)
{
    return a.ToDateTime() - Zn_DateTimeSpan(b.ToDouble());
}

std::int32_t MulIntegers(const Zn_Variant& a, const Zn_Variant& b)
{
    return static_cast<std::int32_t>(Word(a) * Word(b));
}

double MulDecimals(const Zn_Variant& a, const Zn_Variant& b)
{
    return a.ToDouble() * b.ToDouble();
}

constexpr std::uint64_t Magnitude(std::int64_t value) noexcept
{
    return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

// Adds a product to a sum; false when either does not fit.
bool AddProduct(std::uint64_t& sum, std::uint64_t a, std::uint64_t b) noexcept
{
    constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
    if (b != 0 && a > (most - sum) / b)
        return false;
    sum += a * b;
    return true;
}

// The product of two amounts, cut to ten-thousandths; the smallest amount when it does not fit.
Zn_Currency Product(Zn_Currency a, Zn_Currency b) noexcept
{
    constexpr std::uint64_t unit = 10000;
    constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
    const std::uint64_t x = Magnitude(a.GetRaw());
    const std::uint64_t y = Magnitude(b.GetRaw());
    // x * y / unit, with x taken apart into whole units and the rest, and y too where the rest meets it.
    std::uint64_t product = (x % unit) * (y % unit) / unit;
    const bool fits = AddProduct(product, x / unit, y) && AddProduct(product, x % unit, y / unit) &&
                      product <= static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (!fits)
        return Zn_Currency::FromRaw(smallest);
    const auto raw = static_cast<std::int64_t>(product);
    return Zn_Currency::FromRaw((a.GetRaw() < 0) != (b.GetRaw() < 0) ? -raw : raw);
}

Zn_Currency MulCurrencies(const Zn_Variant& a, const Zn_Variant& b)
{
    if (a.type == Zn_Variant::Integer)
        return b.ToCurrency() * a.ToInteger();
    if (b.type == Zn_Variant::Integer)
        return a.ToCurrency() * b.ToInteger();
    return Product(a.ToCurrency(), b.ToCurrency());
}

Zn_DateTime MulDates(const Zn_Variant& a, const Zn_Variant& b)
{
    return Zn_DateTime(a.ToDouble() * b.ToDouble());
}

constexpr Arithmetic kAdd = {zn::kAddTable, AddIntegers, AddDecimals, AddCurrencies, AddDates};
constexpr Arithmetic kSub = {zn::kSubTable, SubIntegers, SubDecimals, SubCurrencies, SubDates};
constexpr Arithmetic kMul = {zn::kMulTable, MulIntegers, MulDecimals, MulCurrencies, MulDates};

void ComputeValues(const Arithmetic& op, const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result)
{
    switch (op.table.At(zn::OperandKindOf(a), zn::OperandKindOf(b))) {
    case 'I':
        result.Set(op.integer(a, b));
        break;
    case 'D':
        result.Set(op.decimal(a, b));
        break;
    case 'C':
        result.Set(op.currency(a, b));
        break;
    case 'T':
        result.Set(op.date(a, b));
        break;
    case 'S':
        Var_Cat(a, b, result);
        break;
    case 'a':
        result.Set(a);
        break;
    case 'b':
        result.Set(b);
        break;
    default:
        result.Clear();
    }
}

void Compute(const Arithmetic& op, const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result)
{
    if (a.type == Zn_Variant::Object || b.type == Zn_Variant::Object)
        ComputeValues(op, *zn::Operand(a), *zn::Operand(b), result);
    else
        ComputeValues(op, a, b, result);
}

} // namespace

void Var_Add(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result)
{
    Compute(kAdd, a, b, result);
}

void Var_Sub(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result)
{
    Compute(kSub, a, b, result);
}

void Var_Mul(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result)
{
    Compute(kMul, a, b, result);
}

void Var_Div(const Zn_Variant& left, const Zn_Variant& right, Zn_Variant& result)
{
    const zn::Operand a(left);
    const zn::Operand b(right);
    const bool applies = zn::kDivTable.At(zn::OperandKindOf(*a), zn::OperandKindOf(*b)) == 'D';
    const double divisor = applies ? b->ToDouble() : 0.0;
    if (std::fabs(divisor) < kSmallestDivisor)
        result.Clear();
    else
        result.Set(a->ToDouble() / divisor);
}

void Var_Mod(const Zn_Variant& left, const Zn_Variant& right, Zn_Variant& result)
{
    const zn::Operand a(left);
    const zn::Operand b(right);
    const bool applies = zn::kModTable.At(zn::OperandKindOf(*a), zn::OperandKindOf(*b)) == 'I';
    const int divisor = applies ? b->ToInteger() : 0;
    if (divisor == 0)
        result.Clear();
    else
        result.Set(divisor == -1 ? 0 : a->ToInteger() % divisor); // INT32_MIN % -1 has no quotient
}

void Var_Cat(const Zn_Variant& a, const Zn_Variant& b, Zn_Variant& result)
{
    const Zn_WString tail = b.ToString();
    if (&result == &a && a.type == Zn_Variant::String && result.GetStr()) {
        *result.GetStr() += tail; // grows in place, so that appending again and again stays cheap
        return;
    }
    Zn_WString text = a.ToString();
    text += tail;
    result = Zn_Variant(std::move(text));
}

Zn_Variant& Zn_Variant::operator+=(const Zn_Variant& other)
{
    Var_Add(*this, other, *this);
    return *this;
}
