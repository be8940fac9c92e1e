// Reads "param" elements into a list of variables.
#pragma once

#include "Zn_NamedStr.h"
#include "Zn_Variable.h"
#include "foundation/id_index.h"

#include <string_view>

namespace zn {

class VariableXmlReader {
public:
    explicit VariableXmlReader(Zn_VariableList& list) : list_(list)
    {
        for (const Zn_Variable& variable : list)
            ids_.Add(variable.id);
    }
    // One "param": its attributes and the text of its first child.
    void Param(const Zn_NamedStrList& attributes, std::u16string_view text);

private:
    Zn_VariableList& list_;
    IdIndex ids_;
};

} // namespace zn
