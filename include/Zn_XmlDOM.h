// An XML document as a tree: the document is itself the list of its top-level nodes.
//
//     Zn_XmlDOM doc;
//     if (!doc.Load(bytes, length, 0)) ...          // malformed; the nodes read so far stay
//     const Zn_DOMElement* root = doc.GetItem(u"root", 0);
//     Zn_Buffer out;
//     doc.Save(out, 1, 1, 0);                        // in the code page the document was read in
//
// Reading does not validate: it checks only that start and end tags nest. One document is used by one
// thread at a time.
#pragma once

#include "Zn_AString.h"
#include "Zn_DOMElement.h"

class ZN_API Zn_XmlDOM : public Zn_DOMElemList {
public:
    // The first two flags mean nothing to XML. keepText keeps comments and white-space text between tags.
    explicit Zn_XmlDOM(int parseContent = 1, int parseAttributes = 1, int keepText = 0) noexcept;
    using Zn_DOMElemList::operator=;

    // Append the nodes of a text to what the document holds (clear it with ReleaseList first to replace it);
    // 1, or 0 for malformed text, of which the nodes before the fault stay. A length of -1 means up to the
    // terminator. Wide text makes the document's code page the locale's. 8-bit text is in the encoding that its
    // declaration names, which becomes the document's code page, else in codePage (0: the locale's).
    int Load(const char16_t* text, int length);
    int Load(const char* text, int length, unsigned codePage);

    // 1 when an XML declaration begins within the first 10 bytes.
    static int IsXML_A(const char* text, int length) noexcept;

    // Names the code page in the "encoding" attribute of the top-level node tagged "?xml": 1. Without one, add
    // inserts a declaration in front; the answer is then 0 all the same. Callers rely on that tag: the reader's
    // own declarations are tagged "xml" and are not found.
    int SetCharSet(unsigned codePage, int add);

protected:
    // Position of the "<" in front of `what`; -1 when absent, -2 without a text.
    static int FindTag_A(const char* what, const char* text, int length) noexcept;
    // 1 and the encoding's name (empty when the declarations name none), or 0 without an XML declaration.
    static int GetCharSet_A(const char* text, int length, Zn_AString& name);

private:
    class Builder;
    int Build(std::u16string_view text);
};
