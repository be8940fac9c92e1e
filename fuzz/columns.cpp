// The binary form of a column list.
#include "fuzz.h"

#include "Zn_ColInfo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Zn_Buffer in = BufferOf(data, size);
    Zn_ColList columns;
    const int end = columns.Load(in, 0, 65001);
    Require(end == -1 || (end >= 0 && end <= in.GetLength()));
    Zn_Buffer out;
    columns.Save(out, 65001);
    Zn_ColList again;
    Require(again.Load(out, 0, 65001) == out.GetLength());
    return 0;
}
