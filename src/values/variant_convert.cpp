// Conversions of variants to numbers, amounts and dates, and in place.
#include "Zn_Text.h"
#include "Zn_Variant.h"
#include "values/default_property.h"
#include "values/to_int32.h"
#include "values/variant_types.h"

namespace {

// The conversion of an object: that of its default property's value.
template <class Result>
Result OfDefaultProperty(const Zn_Variant& object, Result (Zn_Variant::*convert)() const)
{
    Zn_Variant value;
    return zn::FollowDefaultProperty(object, value) ? (value.*convert)() : Result();
}

std::int32_t IntegerOfText(const Zn_WString& text)
{
    if (zn_iequal(text, u"true"))
        return 1;
    return zn_iequal(text, u"false") ? 0 : text.ToInteger();
}

Zn_DateTime DateOfText(const Zn_WString& text)
{
    Zn_DateTime date;
    date.SetDateTime(text.GetView());
    return date;
}

// Whether ChangeType reads a value of this type for a number, an amount or a date.
bool IsScalar(const Zn_Variant& source)
{
    const zn::VariantType* row = zn::FindType(source.type);
    return row && row->ordered;
}

} // namespace

std::int32_t Zn_Variant::ConvertToInteger() const
{
    switch (type) {
    case Integer:
        return HeldInteger();
    case Decimal:
        return zn::ToInt32(HeldDecimal());
    case Currency:
        return GetConstCurrency()->ToInteger();
    case Date:
        return GetConstDateTime()->ToInteger();
    case String:
        return IntegerOfText(*GetConstStr());
    case Object:
        return OfDefaultProperty(*this, &Zn_Variant::ToInteger);
    default:
        return 0;
    }
}

double Zn_Variant::ConvertToDouble() const
{
    switch (type) {
    case Integer:
        return HeldInteger();
    case Decimal:
        return HeldDecimal();
    case Currency:
        return GetConstCurrency()->ToDouble();
    case Date:
        return GetConstDateTime()->ToDouble();
    case String:
        return GetConstStr()->ToDouble();
    case Object:
        return OfDefaultProperty(*this, &Zn_Variant::ToDouble);
    default:
        return 0.0;
    }
}

Zn_Currency Zn_Variant::ToCurrency() const
{
    switch (type) {
    case Integer:
        return Zn_Currency(HeldInteger(), 0);
    case Currency:
        return *GetConstCurrency();
    case Decimal:
    case Date:
    case String:
        return Zn_Currency(ToDouble());
    case Object:
        return OfDefaultProperty(*this, &Zn_Variant::ToCurrency);
    default:
        return Zn_Currency();
    }
}

Zn_DateTime Zn_Variant::ToDateTime() const
{
    switch (type) {
    case Integer:
    case Decimal:
    case Currency:
        return Zn_DateTime(ToDouble());
    case Date:
        return *GetConstDateTime();
    case String:
        return DateOfText(*GetConstStr());
    case Object:
        return OfDefaultProperty(*this, &Zn_Variant::ToDateTime);
    default:
        return Zn_DateTime();
    }
}

void Zn_Variant::ChangeType(std::uint16_t newType, const Zn_Variant* source)
{
    const bool inPlace = !source || source == this;
    const Zn_Variant& from = inPlace ? *this : *source;
    if (inPlace && type == newType)
        return;
    switch (newType) {
    case Integer:
        Set(IsScalar(from) ? from.ToInteger() : 0);
        return;
    case Decimal:
        Set(IsScalar(from) ? from.ToDouble() : 0.0);
        return;
    case Currency:
        if (from.type == String)
            Set(Zn_Currency(from.GetConstStr()->GetView()));
        else
            Set(IsScalar(from) ? from.ToCurrency() : Zn_Currency());
        return;
    case Date:
        Set(IsScalar(from) ? from.ToDateTime() : Zn_DateTime());
        return;
    case String:
        if (from.type != Date) {
            Set(from.ToString());
            return;
        }
        break;
    default:
        break;
    }
    if (inPlace)
        Relabel(newType);
}
