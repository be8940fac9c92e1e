// An HTML page as a tree: the document is itself the list of its top-level nodes. Nothing has to be well
// formed: a small table of tags says how each element is closed, and what is left open takes what follows.
//
//     Zn_HtmlDOM page;
//     page.Load(bytes, length, 0);                    // in the character set that the page names
//     const Zn_DOMElement* title = page.FindTagRecurs(u"title", 0);
//     Zn_Buffer out;
//     page.Save(out, 0, 0, 0);                        // texts are not decoded: write them unescaped
//
// Any page loads in a time close to linear, however deep its elements are. One document is used by one thread at a
// time.
#pragma once

#include "Zn_AString.h"
#include "Zn_DOMElement.h"

class ZN_API Zn_HtmlDOM : public Zn_DOMElemList {
public:
    // parseContent 0 keeps the content of elements as their text, parseAttributes 0 the attributes as raw text.
    // keepText keeps comments and text as it stands; 0 drops comments and the white space around texts.
    explicit Zn_HtmlDOM(int parseContent = 1, int parseAttributes = 1, int keepText = 1) noexcept;
    using Zn_DOMElemList::operator=;

    // Append the nodes of a page to what the document (or a list, with that parent) holds: 1, or 0 for an empty
    // text and for a comment without an end; what was read stays. A length of -1 means up to the terminator.
    int Load(const char16_t* text, int length);
    int Load(Zn_DOMElemList* list, const char16_t* text, int length, Zn_DOMElement* parent);
    // A character set that a META tag names becomes the document's code page if it is known; with no such name
    // the document takes codePage (0: the locale's).
    int Load(const char* text, int length, unsigned codePage);

    // Names the code page in the META tag of each top-level HEAD until one had it: 1. Without one, add appends
    // such a tag to every HEAD; the answer is then 0 all the same.
    int SetCharSet(unsigned codePage, int add);

    // How the element of a tag is closed, as the kind of node it becomes. A name takes the style of the first row
    // of the table that it begins with ("param" that of "p"); 0 for what is no tag.
    static int FindTagStyle(const char16_t* name, int length) noexcept;

protected:
    // Length of the tag name behind "<"; 0 when it begins no tag.
    static int GetTagName(const char16_t* at, int length) noexcept;
    // The place where a tag ends, searched from behind its name, and how much to skip to go on; -1 without an
    // end. kind becomes 49 for "/>".
    static int FindBeginTagPos(const char16_t* at, int length, int& kind, int& skip) noexcept;
    // Where the content of an element ends, searched from its beginning, and how much to skip to go on; -1 when it
    // is not closed or the name has a style of another search: nested and raw elements, paragraphs, and
    // tables and rows.
    static int FindTagEndPos(const char16_t* content, int length, const char16_t* name, int nameLength, int& skip);
    static int FindOptionTagEndPos(const char16_t* content, int length, const char16_t* name, int nameLength,
                                   int& skip);
    static int FindTrTdTagEndPos(const char16_t* content, int length, const char16_t* name, int nameLength, int& skip);
    // Position of the "<" in front of `what`, case ignored; -1 when absent, -2 without a text.
    static int FindTag_A(const char* what, const char* text, int length) noexcept;
    // Position of the first ">", comments skipped; -1 when there is none.
    static int FindPairTag_A(const char* text, int length) noexcept;
    // 1 and the character set (empty when no META tag names one), or 0 without a META tag.
    static int GetCharSet_A(const char* text, int length, Zn_AString& name);
};
