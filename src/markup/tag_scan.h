// What a tag is: the length of its name and where it ends. The rules are kept to the letter, since
// callers rely on what is read as a tag and what as text.
#pragma once

#include "text_scan.h"

#include <array>
#include <string_view>
#include <vector>

namespace zn {

// The kinds of markup, with the numbers of Zn_DOMElement::Kind.
enum class Markup : int {
    ProcInstr = 16,
    Declaration = 17, // DOCTYPE
    CData = 18,
    Element = 48,
    EmptyElement = 49,
    Ignored = -1, // any other "<!"
    Comment = 153
};

// Which low bytes of units are those of names.
constexpr auto kNameBytes = [] {
    std::array<bool, 256> bytes{};
    for (std::size_t byte = 0; byte < bytes.size(); ++byte) {
        bytes[byte] = byte >= 0x80 || (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
                      (byte >= '0' && byte <= '9') || byte == '_' || byte == ':';
    }
    return bytes;
}();

// A unit above 0x7F counts by its low 8 bits alone: many CJK characters end a name. Callers rely on it.
constexpr bool IsNameUnit(char16_t unit) noexcept
{
    return kNameBytes[unit & 0xFF] && (unit < 0x80 || (unit & 0x80) != 0);
}

// Length of the mark of a comment or a CDATA section, "!--" or "![CDATA["; 0 when there is none.
std::ptrdiff_t MarkLength(const char16_t* at, const char16_t* end) noexcept;

// Length of the tag name just after "<" or "</" ("?" and "!" as first character included); 0 when there is none.
inline std::ptrdiff_t TagNameLength(const char16_t* at, const char16_t* end) noexcept
{
    const char16_t* stop = at;
    if (stop == end || (*stop >= u'0' && *stop <= u'9'))
        return 0;
    if (*stop == u'!') {
        if (const std::ptrdiff_t mark = MarkLength(at, end))
            return mark;
        ++stop;
    } else if (*stop == u'?') {
        ++stop;
    }
    while (stop != end && IsNameUnit(*stop))
        ++stop;
    return stop == end ? 0 : stop - at;
}

// Whether the text begins with the given one; ASCII letters match in either case.
bool BeginsWith(const char16_t* at, const char16_t* end, std::u16string_view upperCase) noexcept;

// What a name that begins with "?" or "!" begins.
Markup ClassifySpecial(const char16_t* name, const char16_t* end) noexcept;

// What the name just after "<" begins.
inline Markup ClassifyMarkup(const char16_t* name, const char16_t* end) noexcept
{
    return *name == u'?' || *name == u'!' ? ClassifySpecial(name, end) : Markup::Element;
}

// Where a tag ends, and where the reader goes on.
struct TagEnd {
    const char16_t* at = nullptr; // null: it has no end
    const char16_t* next = nullptr;
    Markup kind = Markup::Element; // EmptyElement when it ended with "/>"
};

// Finds the end of markup of a kind, searching from the end of its name.
TagEnd FindTagEnd(const char16_t* at, const char16_t* end, Markup kind) noexcept;

// The same for start tags and processing instructions of one text in rising order. A tag without an end does
// not end the reading, so a text can hold any number of them: from the first one on the ends are looked up in
// a table, made in one pass from the back, which keeps the time linear.
class TagEndFinder {
public:
    explicit TagEndFinder(const char16_t* end) noexcept : end_(end) {}
    TagEnd Find(const char16_t* at, Markup kind) noexcept
    {
        if (at != end_ && *at == u'>' && kind == Markup::Element) // as most tags
            return {at, at + 1, kind};
        return Search(at, kind);
    }

private:
    struct Step {
        const char16_t* at;    // where the search is decided: at a ">" that ends a tag or at a "<!--"
        const char16_t* close; // the ">" it leads to; null for none
    };
    struct Table {
        bool made = false;
        std::vector<Step> steps; // from the back of the text
    };
    TagEnd Search(const char16_t* at, Markup kind) noexcept;
    static bool MakeTable(Table& table, const char16_t* begin, const char16_t* end, Markup kind) noexcept;
    static const char16_t* LookUp(const Table& table, const char16_t* at) noexcept;

    const char16_t* end_;
    Table elements_;
    Table instructions_;
};

} // namespace zn
