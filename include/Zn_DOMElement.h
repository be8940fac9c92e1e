// Documents as trees: a node, and the owning, ordered list of nodes that every node holds as its
// children and every document is.
//
//     Zn_DOMElement item;
//     item.tag = u"item";
//     item.attributes.AddStr(u"id", u"7", 1);
//     Zn_DOMElemList list(65001);
//     list.Add(item);
//     Zn_WString text;
//     list.Save(text, 1, 1, 0);                    // CR LF <item id="7"></item>
//
// An element owns its whole subtree; copying it copies the subtree. Parent pointers are plain back
// references that only Add, Assign and Append of a list set: nothing keeps them right afterwards.
// However deep a tree is, no operation recurses. Look-ups answer -1 or null, nothing throws.
// One tree is used by one thread at a time.
#pragma once

#include "Zn_Buffer.h"
#include "Zn_NamedStr.h"
#include "Zn_TypedList.h"
#include "Zn_WString.h"

#include <utility>

class Zn_DOMElement;

class ZN_API Zn_DOMElemHandler final : public Zn_TypedHandler<Zn_DOMElement> {
public:
    Zn_DOMElemHandler() noexcept;
    // 0 for the same node only.
    int _CompareItem(void* a, void* b) override;
    static Zn_DOMElemHandler& Instance();
    static const Zn_DOMElement& EmptyItem();
};

class ZN_API Zn_DOMElemList : public Zn_TypedList<Zn_DOMElement, Zn_DOMElemHandler> {
public:
    using Base = Zn_TypedList<Zn_DOMElement, Zn_DOMElemHandler>;

    // The code page of the 8-bit form (0: the locale's).
    explicit Zn_DOMElemList(unsigned codePage = 0) noexcept : codePage_(codePage) {}
    Zn_DOMElemList(const Zn_DOMElemList& other);
    Zn_DOMElemList(Zn_DOMElemList&& other) noexcept;
    // Copies the code page and the flags too; null does nothing.
    Zn_DOMElemList& operator=(const Zn_DOMElemList& other);
    Zn_DOMElemList& operator=(Zn_DOMElemList&& other) noexcept;
    Zn_DOMElemList& operator=(const Zn_DOMElemList* other);
    Zn_DOMElemList& operator+=(const Zn_DOMElemList& other);
    Zn_DOMElemList& operator+=(const Zn_DOMElemList* other);
    // Replace by, or append, copies and set the parent and parent index of every item of this list.
    // Return the count; a null source changes nothing.
    int Assign(const Zn_DOMElemList* source, Zn_DOMElement* parent);
    int Append(const Zn_DOMElemList* source, Zn_DOMElement* parent);
    // Appends a copy with that parent; its position, or -1.
    int Add(const Zn_DOMElement& item, Zn_DOMElement* parent = nullptr);
    int Add(const Zn_DOMElement* item, Zn_DOMElement* parent = nullptr);
    // Appends a new element with this list's code page and no parent, to be filled in place; null without memory.
    Zn_DOMElement* AppendNew();

    unsigned GetCodePage() const noexcept { return codePage_; }
    void SetCodePage(unsigned codePage) noexcept { codePage_ = codePage; }

    // Out of range gives the shared empty element.
    const Zn_DOMElement& operator[](int index) const noexcept { return *GetItemNN(index); }
    using Base::GetItem;
    // The nth item of this level, from 0, with that tag (case ignored); a negative nth means the first.
    int FindTag(const char16_t* tag, int nth = 0) const noexcept;
    const Zn_DOMElement* GetItem(const char16_t* tag, int nth) const noexcept { return GetItem(FindTag(tag, nth)); }
    // The nth match of the whole tree in document order, counted from 0 across all levels; a negative nth
    // finds nothing. Items with an empty tag are skipped with their subtrees. With a count, counting goes on
    // from it and it tells afterwards how many matches there were before the one returned.
    const Zn_DOMElement* FindTagRecurs(const char16_t* tag, int nth) const;
    const Zn_DOMElement* FindTagRecurs(const char16_t* tag, int nth, int& count) const;
    Zn_DOMElement* FindSafeTagRecurs(const char16_t* tag, int nth);
    Zn_DOMElement* FindSafeTagRecurs(const char16_t* tag, int nth, int& count);

    // Append the markup text of this list and return 1. encode escapes text nodes; line breaks and tabs are
    // written only with both encode and indent; depth is the number of tabs to start with; separator stands
    // before attributes. The buffer form writes the same text in the list's code page; where text is escaped,
    // characters that the page lacks become numeric references.
    int Save(Zn_WString& out, int encode, int indent, char16_t separator, int depth) const;
    int Save(Zn_WString& out, int encode, int indent, int depth) const
    {
        return Save(out, encode, indent, u' ', depth);
    }
    int Save(Zn_Buffer& out, int encode, int indent, int depth) const;

protected:
    unsigned codePage_;
    bool parseContent_ = true;    // HTML: element content becomes children
    bool parseAttributes_ = true; // HTML: attribute text becomes attributes
    bool keepText_ = false;       // white-space text and comments are kept

private:
    friend class Zn_DOMElement;
    void CopyNodes(const Zn_DOMElemList& other);
    void CopySettings(const Zn_DOMElemList& other) noexcept;
    void SetParents(Zn_DOMElement* parent) noexcept;
};

class ZN_API Zn_DOMElement {
public:
    // What `kind` says, and how a node of that kind is written.
    enum Kind : int {
        Text = 0,
        WhiteSpace = 1,    // text of white space only
        ProcInstr = 16,    // <?tag attributes?>
        Declaration = 17,  // CR LF <!tag rawAttributes>
        CData = 18,        // <![CDATA[text]]>
        HtmlVoid = 32,     // <tag attributes>, never with an end tag
        Element = 48,      // <tag attributes>content</tag>
        EmptyElement = 49, // <tag attributes/>
        Unclosed = 50,     // an element whose end tag was missing: written without one
        HtmlRaw = 64,      // content is not parsed
        HtmlParagraph = 80,
        UnclosedParagraph = 81,
        HtmlInline = 96,
        HtmlTable = 97,
        HtmlRow = 98,
        Comment = 153
    };

    explicit Zn_DOMElement(unsigned codePage = 0) noexcept : children(codePage) {}
    // Copies everything, parent and parent index too.
    Zn_DOMElement(const Zn_DOMElement& other);
    Zn_DOMElement(Zn_DOMElement&& other) noexcept = default;
    Zn_DOMElement& operator=(const Zn_DOMElement& other);
    ~Zn_DOMElement() = default;
    // Copies everything but parent and parent index; null and the element itself: nothing happens. Returns 1.
    int Set(const Zn_DOMElement& other);
    int Set(const Zn_DOMElement* other) { return other ? Set(*other) : 1; }
    // Back to an empty element of kind 48; parent and parent index stay.
    void Clear();

    Zn_DOMElement* GetParent() const noexcept { return parent_; }
    // Returns the previous parent.
    Zn_DOMElement* SetParent(Zn_DOMElement* parent) noexcept { return std::exchange(parent_, parent); }
    // The index in the list that holds it; -1 when it stands in none.
    int GetParentIndex() const noexcept { return parentIndex_; }
    // Returns the previous index.
    int SetParentIndex(int index) noexcept { return std::exchange(parentIndex_, index); }
    bool IsHaveChild() const noexcept { return children.Count() > 0; }

    // Sets the raw attribute text; the parsed attributes stay.
    void SetAttrib(const Zn_WString& raw) { rawAttributes = raw; }
    // The raw attribute text or, when there is none, the attributes as text; out stays when there are neither.
    void GetAttribute(Zn_WString& out) const;
    // name="value" of each attribute, escaped, with blanks between; the value alone for a name with "~" in it.
    void GetAttributeFromList(Zn_WString& out) const;
    // Replaces the attributes by those of a text such as `a=1 b = '2' c` (c is empty) and clears the raw text. 1.
    int MakeVarList(std::u16string_view attributeText);
    int MakeVarList(const char16_t* attributeText) { return MakeVarList(Zn_WString(attributeText)); }
    // Callers rely on it: the element's own raw text, given here, is gone before it is read.
    int MakeVarList(const Zn_WString& attributeText);
    // Callers rely on it: 0 when there are attributes or no raw text; else both become empty and it returns 1.
    int MakeVarList();

    static void InitWithMemory(Zn_DOMElement* memory) { Zn_InitInPlace(memory); }
    static void FreeWithMemory(Zn_DOMElement* item) { Zn_FreeInPlace(item); }

    int kind = Element;

private:
    int parentIndex_ = -1; // here, where it takes no room: pages are made of millions of nodes

public:
    Zn_WString tag;
    Zn_NamedStrList attributes;
    Zn_DOMElemList children;
    Zn_WString rawAttributes; // written when `attributes` is empty; the whole body of a declaration
    Zn_WString text;          // of text, comment and CDATA; for an element, written instead of its children

private:
    friend class Zn_DOMElemList;
    void CopyNode(const Zn_DOMElement& other);

    Zn_DOMElement* parent_ = nullptr;
};
