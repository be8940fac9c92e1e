// A variant of each kind for the tests that walk over all of them.
#pragma once

#include "Zn_VariantList.h"

#include "values/object_double.h"

#include <vector>

inline Zn_Buffer Bytes(std::string_view text)
{
    Zn_Buffer buffer;
    buffer.Set(reinterpret_cast<const unsigned char*>(text.data()), static_cast<int>(text.size()));
    return buffer;
}

inline std::string_view View(const Zn_Buffer& buffer)
{
    return {reinterpret_cast<const char*>(buffer.GetData()), static_cast<std::size_t>(buffer.GetLength())};
}

inline Zn_Variant OfType(std::uint16_t type)
{
    Zn_Variant value;
    value.type = type;
    return value;
}

// What a variant reads as.
struct Kind {
    const char* name;
    Zn_Variant value;
    std::uint16_t type;
    const char* typeName;
    std::int32_t integer;
    double number;
    std::int64_t amount; // ten-thousandths
    double date;         // as stored
    const char* text;
    const char* text8;
};

// The object is kept alive by its reference and answers 42.
inline std::vector<Kind> Kinds()
{
    Zn_VariantList list;
    list.Add(Zn_Variant(u"a"));
    list.Add(Zn_Variant(u"b"));
    Zn_Variant object;
    auto* answer = new ObjectDouble;
    answer->value = 42;
    object.SetObject(nullptr, nullptr, answer);
    const double julyNoon = Zn_DateTime(2004, 7, 15, 12, 0, 0).GetStored();
    return {
        {"empty", Zn_Variant(), 0, "null", 0, 0, 0, 0, "", ""},
        {"null", OfType(1), 1, "null", 0, 0, 0, 0, "", ""},
        {"integer", Zn_Variant(-7), 3, "INTEGER", -7, -7, -70000, -7, "-7", "-7"},
        {"decimal", Zn_Variant(2.75), 5, "DECIMAL", 2, 2.75, 27500, 2.75, "2.75", "2.75"},
        {"negative decimal", Zn_Variant(-0.75), 5, "DECIMAL", 0, -0.75, 7500, -1.25, "-0.75", "-0.75"},
        {"amount", Zn_Variant(Zn_Currency::FromRaw(125000)), 6, "CURRENCY", 12, 12.5, 125000, 12.5, "12.5", "12.5"},
        {"date", Zn_Variant(Zn_DateTime::FromStored(julyNoon)), 7, "DATE", 38183, julyNoon, 381835000, julyNoon,
         "01040604 12:00:02d", "01040604 12:00:02d"},
        {"text", Zn_Variant(u"12.5x"), 8, "STRING", 12, 12.5, 125000, 0, "12.5x", "12.5x"},
        {"true", Zn_Variant(u"TRUE"), 8, "STRING", 1, 0, 0, 0, "TRUE", "TRUE"},
        {"false", Zn_Variant(u"False"), 8, "STRING", 0, 0, 0, 0, "False", "False"},
        {"date text", Zn_Variant(u"20040715"), 8, "STRING", 20040715, 20040715, 200407150000, 38183, "20040715",
         "20040715"},
        {"no text", Zn_Variant(u""), 8, "STRING", 0, 0, 0, 0, "", ""},
        {"bytes", Zn_Variant(Bytes("\1\2")), 13, "BINARY", 0, 0, 0, 0, "[binary]", "[binary]"},
        {"array", Zn_Variant(list), 0x2000, "ARRAY", 0, 0, 0, 0, "91a,b]", "[a,b]"},
        {"object", object, 0x4000, "object", 42, 42, 420000, 42, "42", "42"},
        {"unknown", OfType(2), 2, "UNKNOWN", 0, 0, 0, 0, "", ""},
    };
}
