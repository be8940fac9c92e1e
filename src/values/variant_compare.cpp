// Order and equality of variants.
#include "Zn_Text.h"
#include "Zn_VarObject.h"
#include "Zn_Variant.h"
#include "values/variant_types.h"

#include <cstring>

namespace {

// What Compare makes of a difference; NaN counts as above.
int SignOf(double difference)
{
    return difference < 0 ? -1 : difference == 0 ? 0 : 1;
}

std::int32_t WrappedDifference(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

int CompareBytes(const Zn_Buffer& a, const Zn_Buffer& b)
{
    if (a.GetLength() != b.GetLength())
        return a.GetLength() - b.GetLength();
    return std::memcmp(a.GetData(), b.GetData(), static_cast<std::size_t>(a.GetLength()));
}

} // namespace

int Zn_Variant::Compare(const Zn_Variant& other) const
{
    if (zn::IsAbsent(*this) && zn::IsAbsent(other))
        return 0;
    if (type != other.type)
        return 1;
    switch (type) {
    case Integer:
        return WrappedDifference(HeldInteger(), other.HeldInteger());
    case Decimal:
        return SignOf(HeldDecimal() - other.HeldDecimal());
    case Currency:
        return SignOf((*GetConstCurrency() - *other.GetConstCurrency()).ToDouble());
    case Date:
        return SignOf(GetConstDateTime()->ToDouble() - zn::DateReadAsAmount(*other.GetConstDateTime()));
    case String:
        return zn_compare(*GetConstStr(), *other.GetConstStr());
    case Binary:
        return CompareBytes(*GetConstBinary(), *other.GetConstBinary());
    case Object:
        return GetConstObject()->Compare(other.GetConstObject());
    default:
        return 0;
    }
}

int Zn_Variant::operator==(const Zn_Variant& other) const
{
    if (type != other.type)
        return 0;
    switch (type) {
    case Empty:
    case Null:
        return 1;
    case Decimal:
        return HeldDecimal() == other.HeldDecimal();
    case Currency:
        return *GetConstCurrency() == *other.GetConstCurrency();
    case Date:
        return *GetConstDateTime() == *other.GetConstDateTime();
    case Integer:
    case String:
    case Binary:
    case Object:
        return Compare(other) == 0;
    default:
        return 0;
    }
}

int Zn_Variant::operator==(const char16_t* text) const noexcept
{
    return *this == (text ? std::u16string_view(text) : std::u16string_view());
}

int Zn_Variant::operator==(std::u16string_view text) const noexcept
{
    return type == String && GetConstStr()->GetView() == text;
}

int Zn_Variant::operator==(long value) const
{
    switch (type) {
    case Integer:
    case Currency:
    case Date:
        return ToInteger() == value;
    case Decimal:
        return HeldDecimal() == static_cast<double>(value);
    default:
        return 0;
    }
}

int Zn_Variant::operator==(double value) const
{
    switch (type) {
    case Integer:
    case Decimal:
    case Currency:
    case Date:
        return ToDouble() == value;
    default:
        return 0;
    }
}

int Zn_Variant::operator==(const Zn_Currency& value) const
{
    switch (type) {
    case Integer:
        return HeldInteger() == value.ToInteger();
    case Currency:
        return *GetConstCurrency() == value;
    default:
        return *this == value.ToDouble();
    }
}

int Zn_Variant::operator==(const Zn_DateTime& value) const
{
    switch (type) {
    case Integer:
        return HeldInteger() == value.ToInteger();
    case Date:
        return *GetConstDateTime() == value;
    default:
        return *this == value.ToDouble();
    }
}
