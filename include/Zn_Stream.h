// One message: a list of variables and a list of tables, as one XML document or one binary buffer.
//
//     Zn_Buffer message;
//     ZnBinStreamSave(params, tables, message, 2);       // the changes only
//
// The option of the Save functions is the data mode of Zn_Dataset: 0 all rows as they are now, 1 all rows with
// their changes, 2 the changes only. Any bytes may be loaded: what can't be read gives a negative result.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_DatasetList.h"
#include "Zn_Variable.h"

// Replaces out by the document in a code page; the declaration names charsetName, or the code page's charset when
// that is null. Characters that the code page lacks are written as numeric references. Returns the length in bytes; -1
// with out empty when a table can't be written.
ZN_API int ZnXmlStreamSave(const Zn_VariableList& variables, Zn_DatasetList& datasets, Zn_Buffer& out,
                           unsigned codePage, const char16_t* charsetName, int option);
// Replaces both lists by what the document holds; codePage becomes the one that its declaration names, or the
// locale's. Returns the number of tables, -1 without a "root" that has children. Malformed text is no error: what was
// read before it counts.
ZN_API int ZnXmlStreamLoad(Zn_VariableList& variables, Zn_DatasetList& datasets, const Zn_Buffer& in,
                           unsigned& codePage);
// Replaces out by the binary message; returns its length in bytes.
ZN_API int ZnBinStreamSave(const Zn_VariableList& variables, Zn_DatasetList& datasets, Zn_Buffer& out, int option);
// Replaces both lists by what the message holds. Returns the number of tables; 0x83B10209 as a negative number for a
// zero header, -1 or another negative number for a block that can't be read (what came before it is kept).
ZN_API int ZnBinStreamLoad(Zn_VariableList& variables, Zn_DatasetList& datasets, const Zn_Buffer& in);
