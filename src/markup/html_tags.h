// What the HTML reader takes as a tag, and how the element of a tag is closed.
#pragma once

#include "Zn_DOMElement.h"

#include <cstddef>
#include <string_view>

namespace zn {

// How the element of a tag is closed is the kind of node that it becomes, its style:
//   HtmlVoid       it has neither content nor end tag
//   Element        by its matching end tag, elements of the name nesting; HtmlInline the same
//   HtmlRaw        by the first matching end tag; the content is not parsed
//   HtmlParagraph  by its end tag or the next element of the name
//   HtmlTable      the same, or by the end tag of a table; HtmlRow the same
//   Text           it is no tag at all
constexpr bool IsNestedStyle(int style) noexcept
{
    return style == Zn_DOMElement::Element || style == Zn_DOMElement::HtmlInline;
}
constexpr bool IsOptionStyle(int style) noexcept
{
    return style == Zn_DOMElement::HtmlParagraph || style == Zn_DOMElement::HtmlTable ||
           style == Zn_DOMElement::HtmlRow;
}

// What ends the name of a tag.
constexpr bool IsNameEnd(char16_t unit) noexcept
{
    return unit == u' ' || unit == u'>' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

constexpr bool IsHtmlNameUnit(char16_t unit) noexcept
{
    return unit >= 0x80 || (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'0' && unit <= u'9') || unit == u':';
}

// A name takes the style of the first row that it begins with: callers rely on "param" being a "p".
int HtmlStyleOf(std::u16string_view name) noexcept;

// Length of the name just behind "<"; 0 when it begins no tag. A name with any other unit than those above is none.
std::ptrdiff_t HtmlNameLength(const char16_t* at, const char16_t* end) noexcept;

} // namespace zn
