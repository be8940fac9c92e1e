// Reads "param" elements into a list of variables.
#pragma once

#include "Zn_NamedStr.h"
#include "stream/variable_filler.h"

#include <string_view>

namespace zn {

class VariableXmlReader {
public:
    explicit VariableXmlReader(Zn_VariableList& list) : variables_(list) {}
    // One "param": its attributes and the text of its first child.
    void Param(const Zn_NamedStrList& attributes, std::u16string_view text);

private:
    VariableFiller variables_;
};

} // namespace zn
