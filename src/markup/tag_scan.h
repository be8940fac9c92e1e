// What a tag is: the length of its name and where it ends. The rules are kept to the letter, since
// callers rely on what is read as a tag and what as text.
#pragma once

#include "text_scan.h"

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

// A unit above 0x7F counts by its low 8 bits alone: many CJK characters end a name. Callers rely on it.
constexpr bool IsNameUnit(char16_t unit) noexcept
{
    return (unit & 0x80) != 0 || (unit < 0x80 && ((unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
                                                  (unit >= u'0' && unit <= u':') || unit == u'_'));
}

// Length of the tag name just after "<" or "</" ("?" and "!" as first character included); 0 when there is none.
std::ptrdiff_t TagNameLength(const char16_t* at, const char16_t* end) noexcept;

// Whether the text begins with the given one; ASCII letters match in either case.
bool BeginsWith(const char16_t* at, const char16_t* end, std::u16string_view upperCase) noexcept;

// What the name just after "<" begins.
Markup ClassifyMarkup(const char16_t* name, const char16_t* end) noexcept;

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
    TagEnd Find(const char16_t* at, Markup kind) noexcept;

private:
    struct Step {
        const char16_t* at;    // where the search is decided: at a ">" that ends a tag or at a "<!--"
        const char16_t* close; // the ">" it leads to; null for none
    };
    struct Table {
        bool made = false;
        std::vector<Step> steps; // from the back of the text
    };
    static bool MakeTable(Table& table, const char16_t* begin, const char16_t* end, Markup kind) noexcept;
    static const char16_t* LookUp(const Table& table, const char16_t* at) noexcept;

    const char16_t* end_;
    Table elements_;
    Table instructions_;
};

} // namespace zn
