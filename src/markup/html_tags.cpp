#include "html_tags.h"

#include "foundation/casefold.h"
#include "markup/tag_scan.h"

#include <algorithm>

namespace zn {

namespace {

constexpr std::u16string_view kTable = u"TABLE";

struct TagRow {
    std::u16string_view name;
    Zn_DOMElement::Kind style;
};

constexpr TagRow kTags[] = {
    {u"script", Zn_DOMElement::HtmlRaw},       {u"pre", Zn_DOMElement::HtmlRaw},
    {u"style", Zn_DOMElement::HtmlVoid},       {u"br", Zn_DOMElement::HtmlVoid},
    {u"li", Zn_DOMElement::HtmlVoid},          {u"meta", Zn_DOMElement::HtmlVoid},
    {u"link", Zn_DOMElement::HtmlVoid},        {u"img", Zn_DOMElement::HtmlVoid},
    {u"area", Zn_DOMElement::HtmlVoid},        {u"input", Zn_DOMElement::HtmlVoid},
    {u"spacer", Zn_DOMElement::HtmlParagraph}, {u"p", Zn_DOMElement::HtmlParagraph},
    {u"small", Zn_DOMElement::HtmlInline},     {u"table", Zn_DOMElement::HtmlTable},
    {u"tr", Zn_DOMElement::HtmlRow},           {u"td", Zn_DOMElement::Element},
};

bool Begins(std::u16string_view name, std::u16string_view row) noexcept
{
    return name.size() >= row.size() &&
           std::equal(row.begin(), row.end(), name.begin(), [](char16_t a, char16_t b) { return a == FoldCase(b); });
}

} // namespace

int HtmlStyleOf(std::u16string_view name) noexcept
{
    for (const TagRow& row : kTags) {
        if (Begins(name, row.name))
            return row.style;
    }
    const bool ascii = std::all_of(name.begin(), name.end(), [](char16_t unit) { return unit < 0x80; });
    return ascii ? Zn_DOMElement::Element : Zn_DOMElement::Text;
}

std::ptrdiff_t HtmlNameLength(const char16_t* at, const char16_t* end) noexcept
{
    if (at == end || (*at >= u'0' && *at <= u'9'))
        return 0;
    if (*at == u'!')
        return BeginsWith(at, end, u"!--") ? 3 : BeginsWith(at, end, u"!DOCTYPE") ? 8 : 0;
    if (BeginsWith(at, end, kTable))
        return static_cast<std::ptrdiff_t>(kTable.size());
    const char16_t* stop = *at == u'?' ? at + 1 : at;
    while (stop != end && IsHtmlNameUnit(*stop))
        ++stop;
    return stop != end && IsNameEnd(*stop) ? stop - at : 0;
}

} // namespace zn
