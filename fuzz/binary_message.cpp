// A binary message. One that loads is written in its modes, and what was written loads again and writes the same bytes.
#include "fuzz.h"

#include "Zn_Stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Zn_VariableList variables;
    Zn_DatasetList tables;
    if (ZnBinStreamLoad(variables, tables, BufferOf(data, size)) < 0)
        return 0;
    for (int mode = 0; mode <= 2; ++mode) {
        Zn_Buffer first, second;
        ZnBinStreamSave(variables, tables, first, mode);
        Zn_VariableList variablesAgain;
        Zn_DatasetList tablesAgain;
        Require(ZnBinStreamLoad(variablesAgain, tablesAgain, first) == tables.Count());
        ZnBinStreamSave(variablesAgain, tablesAgain, second, mode);
        Require(first == second);
    }
    return 0;
}
