// The binary record of a value. What was read is written and read again.
#include "fuzz.h"

#include "Zn_Variant.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Zn_Buffer in = BufferOf(data, size);
    Zn_Variant value;
    const int end = value.Load(in, 0, 65001);
    Require(end >= -1 && end <= in.GetLength());
    value.ToString();
    value.ToDouble();
    Zn_Buffer out;
    Require(value.Save(out, 65001) == out.GetLength());
    out.AddSize(1); // a record that ends with its type is refused
    Zn_Variant again;
    again.Load(out, 0, 65001);
    const bool comesBack = end >= 0 && value.type != Zn_Variant::Currency && value.type != Zn_Variant::Date;
    Require(!comesBack || size > 8000 || again.ToString() == value.ToString());
    return 0;
}
