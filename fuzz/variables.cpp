// The binary block of a variable list, and the text form of the same list.
#include "fuzz.h"

#include "Zn_Variable.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Zn_Buffer in = BufferOf(data, size);
    Zn_VariableList list;
    Require(list.Load(in, 0, 65001) <= in.GetLength());
    Zn_Buffer out;
    list.Save(out, 65001);
    // A block that ends with a value of no bytes is refused, which callers know.
    Zn_VariableList again;
    Require(again.Load(out, 0, 65001) == -1 || again.Count() == list.Count());

    Zn_VariableList fromText;
    fromText.SetStr(Zn_WString(reinterpret_cast<const char*>(data), static_cast<int>(size), 65001));
    return 0;
}
