// The binary record of a value, at an offset that the first byte chooses.
#include "fuzz.h"

#include "Zn_Variant.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const Zn_Buffer in = BufferOf(data + 1, size - 1);
    Zn_Variant value;
    const int end = value.Load(in, data[0] & 7, 65001);
    Require(end <= in.GetLength());
    Zn_Buffer out;
    value.Save(out, 65001);
    value.ToString();
    return 0;
}
