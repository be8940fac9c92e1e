// Text of a document as it is meant: its entities and references resolved.
#pragma once

#include "shared_texts.h"
#include "text_scan.h"

#include "foundation/xml_escape.h"

#include "Zn_WString.h"

namespace zn {

// Short texts share their body with those remembered, if any are.
inline Zn_WString DecodedXml(std::u16string_view text, SharedTexts* texts = nullptr)
{
    const char16_t* const end = text.data() + text.size();
    if (FindUnit(text.data(), end, u'&') == end)
        return texts ? texts->MakeText(text) : Zn_WString(text);
    Zn_WString decoded;
    AppendDecodedXml(text, decoded);
    return decoded;
}

} // namespace zn
