// The binary block of a variable list, and the text form of the same list.
#include "fuzz.h"

#include "Zn_Variable.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Zn_Buffer in = BufferOf(data, size);
    Zn_VariableList list;
    Require(list.Load(in, 0, 65001) <= in.GetLength());
    Zn_Buffer first, second;
    list.Save(first, 65001);
    Zn_VariableList again;
    Require(again.Load(first, 0, 65001) == first.GetLength());
    again.Save(second, 65001);
    Require(first == second);

    Zn_VariableList fromText;
    fromText.SetStr(Zn_WString(reinterpret_cast<const char*>(data), static_cast<int>(size), 65001));
    return 0;
}
