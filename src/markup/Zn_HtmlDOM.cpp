#include "Zn_HtmlDOM.h"

#include "Zn_CodePage.h"

#include "foundation/casefold.h"
#include "foundation/encoding.h"
#include "markup/charset_declaration.h"
#include "markup/html_reader.h"
#include "markup/html_tags.h"
#include "markup/tag_scan.h"

#include <algorithm>
#include <exception>

namespace {

constexpr std::u16string_view kContentType = u"Content-type";

bool IsSameLetter(char a, char b) noexcept
{
    return zn::FoldAscii(a) == zn::FoldAscii(b);
}

// First place of a text, case ignored.
std::size_t FindCaseless(std::string_view text, std::string_view what) noexcept
{
    const auto* found = std::search(text.begin(), text.end(), what.begin(), what.end(), IsSameLetter);
    return found == text.end() ? std::string_view::npos : static_cast<std::size_t>(found - text.begin());
}

bool BeginsCaseless(std::string_view text, std::string_view what) noexcept
{
    return text.size() >= what.size() && std::equal(what.begin(), what.end(), text.begin(), IsSameLetter);
}

// The "<" in front of a name, from a place on.
std::size_t FindMarkup(std::string_view what, std::string_view text, std::size_t from = 0) noexcept
{
    for (std::size_t at = text.find('<', from); at != std::string_view::npos; at = text.find('<', at + 1)) {
        if (BeginsCaseless(text.substr(at + 1), what))
            return at;
    }
    return std::string_view::npos;
}

std::size_t FindClose(std::string_view text, std::size_t from) noexcept
{
    for (;;) {
        const std::size_t at = text.find_first_of("<>", from);
        if (at == std::string_view::npos || text[at] == '>')
            return at;
        from = at + 1;
        if (text.substr(at).starts_with("<!--")) {
            const std::size_t close = text.find("-->", at + 4);
            if (close == std::string_view::npos)
                return close;
            from = close + 3;
        }
    }
}

// The character set that the META tags of a page name; 0 without such a tag.
int FindCharSet(std::string_view text, std::string& name)
{
    constexpr std::string_view kCharSet = "charset";
    int result = 0;
    for (std::size_t from = 0;;) {
        const std::size_t tag = FindMarkup("META", text, from);
        if (tag == std::string_view::npos)
            return result;
        result = 1;
        const std::size_t end = FindClose(text, tag);
        if (end == std::string_view::npos)
            return result;
        const std::string_view body = text.substr(tag, end - tag);
        const std::size_t charSet = FindCaseless(body, kCharSet);
        if (charSet != std::string_view::npos) {
            name = zn::ReadCharsetName(body.substr(charSet + kCharSet.size()), 1);
            return result;
        }
        from = end + 1;
    }
}

int PositionOf(std::size_t place) noexcept
{
    return place == std::string_view::npos ? -1 : static_cast<int>(place);
}

// Finds the end of an element's content by reading the element whole.
int FindContentEnd(std::u16string_view content, std::u16string_view name, int& skip)
{
    try {
        std::u16string page = u"<";
        page.append(name).append(u">");
        const int head = static_cast<int>(page.size());
        page.append(content);
        const zn::HtmlMarks marks(page);
        if (marks.Count() == 0 || marks[0].nameEnd + 1 != head)
            return -1;
        const zn::HtmlEnds::End end = zn::HtmlEnds(marks).Find(0, static_cast<int>(page.size()));
        if (end.at < 0)
            return -1;
        skip = end.next - head;
        return end.at - head;
    } catch (const std::exception&) {
        return -1;
    }
}

// Sets the value in the first META tag that tells the content type; false when there is none.
bool SetContentType(Zn_DOMElement& head, const Zn_WString& value)
{
    for (int nth = 0;; ++nth) {
        Zn_DOMElement* meta = head.children.GetSafeItem(head.children.FindTag(u"META", nth));
        if (!meta)
            return false;
        if (zn_iequal(meta->attributes.Str(u"HTTP-EQUIV").GetView(), kContentType)) {
            meta->attributes.AddStr(u"CONTENT", value, 1);
            return true;
        }
    }
}

void AddContentType(Zn_DOMElement& head, const Zn_WString& value)
{
    if (!head.IsHaveChild())
        head.kind = Zn_DOMElement::Element;
    Zn_DOMElement meta(head.children.GetCodePage());
    meta.kind = Zn_DOMElement::HtmlVoid;
    meta.tag = u"META";
    meta.attributes.AddStr(u"HTTP-EQUIV", kContentType, 1);
    meta.attributes.AddStr(u"CONTENT", value, 1);
    head.children.Add(meta, &head);
}

} // namespace

Zn_HtmlDOM::Zn_HtmlDOM(int parseContent, int parseAttributes, int keepText) noexcept : Zn_DOMElemList(ZnGetLocaleCP())
{
    parseContent_ = parseContent != 0;
    parseAttributes_ = parseAttributes != 0;
    keepText_ = keepText != 0;
}

int Zn_HtmlDOM::Load(const char16_t* text, int length)
{
    return Load(this, text, length, nullptr);
}

int Zn_HtmlDOM::Load(Zn_DOMElemList* list, const char16_t* text, int length, Zn_DOMElement* parent)
{
    const std::u16string_view page = zn::ViewOfText(text, length);
    if (!list || page.empty())
        return 0;
    try {
        zn::HtmlReader reader(page, {parseContent_, parseAttributes_, keepText_});
        return reader.Read(*list, parent) ? 1 : 0;
    } catch (const std::exception&) {
        return 0;
    }
}

int Zn_HtmlDOM::Load(const char* text, int length, unsigned codePage)
{
    const std::string_view bytes = zn::ViewOfText(text, length);
    Zn_AString charSet;
    GetCharSet_A(bytes.data(), static_cast<int>(bytes.size()), charSet);
    if (charSet.IsEmpty())
        codePage_ = zn_activecodepage(codePage);
    else if (const unsigned named = zn_findcodepageA(charSet))
        codePage_ = named;
    const Zn_WString wide = zn::DecodeMarkup(bytes, codePage_);
    return Load(wide.GetText(), wide.GetLength());
}

int Zn_HtmlDOM::SetCharSet(unsigned codePage, int add)
{
    const std::string_view charSet = zn_findcharset(codePage);
    Zn_WString value = u"text/html; charset=";
    value += Zn_WString(charSet.data(), static_cast<int>(charSet.size()), zn::kUtf8);
    for (int nth = 0;; ++nth) {
        Zn_DOMElement* head = GetSafeItem(FindTag(u"HEAD", nth));
        if (!head)
            return 0;
        if (SetContentType(*head, value))
            return 1;
        if (add)
            AddContentType(*head, value);
    }
}

int Zn_HtmlDOM::FindTagStyle(const char16_t* name, int length) noexcept
{
    return zn::HtmlStyleOf(zn::ViewOfText(name, length));
}

int Zn_HtmlDOM::GetTagName(const char16_t* at, int length) noexcept
{
    const std::u16string_view text = zn::ViewOfText(at, length);
    return static_cast<int>(zn::HtmlNameLength(text.data(), text.data() + text.size()));
}

int Zn_HtmlDOM::FindBeginTagPos(const char16_t* at, int length, int& kind, int& skip) noexcept
{
    const std::u16string_view text = zn::ViewOfText(at, length);
    const bool instruction = kind == Zn_DOMElement::ProcInstr;
    const zn::TagEnd found = zn::FindTagEnd(text.data(), text.data() + text.size(),
                                            instruction ? zn::Markup::ProcInstr : zn::Markup::Element);
    if (!found.at)
        return -1;
    if (found.kind == zn::Markup::EmptyElement)
        kind = Zn_DOMElement::EmptyElement;
    skip = static_cast<int>(found.next - text.data());
    return static_cast<int>(found.at - text.data());
}

int Zn_HtmlDOM::FindTagEndPos(const char16_t* content, int length, const char16_t* name, int nameLength, int& skip)
{
    const std::u16string_view tag = zn::ViewOfText(name, nameLength);
    const int style = zn::HtmlStyleOf(tag);
    const bool fits = zn::IsNestedStyle(style) || style == Zn_DOMElement::HtmlRaw;
    return fits ? FindContentEnd(zn::ViewOfText(content, length), tag, skip) : -1;
}

int Zn_HtmlDOM::FindOptionTagEndPos(const char16_t* content, int length, const char16_t* name, int nameLength,
                                    int& skip)
{
    const std::u16string_view tag = zn::ViewOfText(name, nameLength);
    const bool fits = zn::HtmlStyleOf(tag) == Zn_DOMElement::HtmlParagraph;
    return fits ? FindContentEnd(zn::ViewOfText(content, length), tag, skip) : -1;
}

int Zn_HtmlDOM::FindTrTdTagEndPos(const char16_t* content, int length, const char16_t* name, int nameLength, int& skip)
{
    const std::u16string_view tag = zn::ViewOfText(name, nameLength);
    const int style = zn::HtmlStyleOf(tag);
    const bool fits = style == Zn_DOMElement::HtmlTable || style == Zn_DOMElement::HtmlRow;
    return fits ? FindContentEnd(zn::ViewOfText(content, length), tag, skip) : -1;
}

int Zn_HtmlDOM::FindTag_A(const char* what, const char* text, int length) noexcept
{
    if (!what || !text || length < 1)
        return -2;
    return PositionOf(FindMarkup(what, zn::ViewOfText(text, length)));
}

int Zn_HtmlDOM::FindPairTag_A(const char* text, int length) noexcept
{
    return PositionOf(FindClose(zn::ViewOfText(text, length), 0));
}

int Zn_HtmlDOM::GetCharSet_A(const char* text, int length, Zn_AString& name)
{
    std::string found;
    const int result = FindCharSet(zn::ViewOfText(text, length), found);
    name.Set(std::string_view(found));
    return result;
}
