// What readers of messages take as the value of an element.
#pragma once

#include "Zn_DOMElement.h"

#include <string_view>

namespace zn {

// The text of an element's first child when that is a text or character data, else empty.
inline std::u16string_view FirstText(const Zn_DOMElement& element) noexcept
{
    const Zn_DOMElement* first = element.children.GetItem(0);
    if (!first || (first->kind != Zn_DOMElement::Text && first->kind != Zn_DOMElement::CData))
        return {};
    return first->text.GetView();
}

} // namespace zn
