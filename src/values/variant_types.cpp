#include "values/variant_types.h"

#include "Zn_Text.h"

namespace {

constexpr zn::VariantType kTypes[] = {
    {Zn_Variant::Empty, u"null", false},       {Zn_Variant::Null, u"null", false},
    {Zn_Variant::Integer, u"INTEGER", true},   {Zn_Variant::Decimal, u"DECIMAL", true},
    {Zn_Variant::Currency, u"CURRENCY", true}, {Zn_Variant::Date, u"DATE", true},
    {Zn_Variant::String, u"STRING", true},     {Zn_Variant::Binary, u"BINARY", false},
    {Zn_Variant::Array, u"ARRAY", false},      {Zn_Variant::Object, u"object", false},
};

// What GetTypeNo accepts: the first row whose name agrees over length characters.
struct TypeName {
    const char16_t* name;
    int length;
    std::uint16_t code;
};

constexpr TypeName kTypeNames[] = {
    {u"INTEGER", 3, Zn_Variant::Integer},   {u"DECIMAL", 7, Zn_Variant::Decimal}, {u"STRING", 6, Zn_Variant::String},
    {u"CURRENCY", 8, Zn_Variant::Currency}, {u"DATE", 4, Zn_Variant::Date},       {u"BLOB", 4, Zn_Variant::Binary},
    {u"ARRAY", 5, Zn_Variant::Array},       {u"null", 4, Zn_Variant::Null},
};

} // namespace

const zn::VariantType* zn::FindType(std::uint16_t code) noexcept
{
    for (const VariantType& row : kTypes) {
        if (row.code == code)
            return &row;
    }
    return nullptr;
}

const char16_t* Zn_Variant::GetTypeString() const noexcept
{
    const zn::VariantType* row = zn::FindType(type);
    return row ? row->name : u"UNKNOWN";
}

int Zn_Variant::GetTypeNo(const char16_t* name) noexcept
{
    for (const TypeName& row : kTypeNames) {
        if (zn_strnicmpW(name, row.name, row.length) == 0)
            return row.code;
    }
    return 0;
}

int Zn_Variant::IsComparable(const Zn_Variant& other) const noexcept
{
    const zn::VariantType* row = zn::FindType(type);
    return row && row->ordered && type == other.type;
}
