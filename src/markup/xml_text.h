// Text of a document as it is meant: its entities and references resolved.
#pragma once

#include "foundation/xml_escape.h"

#include "Zn_WString.h"

namespace zn {

inline Zn_WString DecodedXml(std::u16string_view text)
{
    Zn_WString decoded;
    AppendDecodedXml(text, decoded);
    return decoded;
}

} // namespace zn
