// A binary message. One that loads is written in its modes, and what was written loads again.
#include "edit_tables.h"
#include "fuzz.h"

#include "Zn_Stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Zn_VariableList variables;
    Zn_DatasetList tables;
    if (ZnBinStreamLoad(variables, tables, BufferOf(data, size)) < 0)
        return 0;
    for (int mode = 0; mode <= 2; ++mode) {
        Zn_Buffer written;
        ZnBinStreamSave(variables, tables, written, mode);
        Zn_VariableList variablesAgain;
        Zn_DatasetList tablesAgain;
        // A message that ends with a parameter of no bytes is refused, which callers know.
        if (ZnBinStreamLoad(variablesAgain, tablesAgain, written) < 0) {
            Require(tables.Count() == 0);
            continue;
        }
        Require(tablesAgain.Count() == tables.Count() && variablesAgain.Count() == variables.Count());
        for (int i = 0; i < tables.Count(); ++i)
            Require(mode == 2 || tablesAgain.GetItem(i)->GetRowCount() == tables.GetItem(i)->GetRowCountNF());
    }
    EditTables(tables);
    return 0;
}
