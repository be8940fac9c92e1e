// An XML message. One that loads is written, and what was written loads again.
#include "edit_tables.h"
#include "fuzz.h"

#include "Zn_Stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Zn_VariableList variables;
    Zn_DatasetList tables;
    unsigned codePage = 0;
    if (ZnXmlStreamLoad(variables, tables, BufferOf(data, size), codePage) < 0)
        return 0;
    Zn_Buffer written;
    Require(ZnXmlStreamSave(variables, tables, written, 65001, nullptr, 1) == written.GetLength());
    ZnXmlStreamLoad(variables, tables, written, codePage);
    EditTables(tables);
    return 0;
}
