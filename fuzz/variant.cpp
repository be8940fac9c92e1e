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
    Zn_Variant again;
    again.Load(out, 0, 65001);
    return 0;
}
