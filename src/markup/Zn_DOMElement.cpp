#include "Zn_DOMElement.h"

#include "foundation/xml_escape.h"
#include "markup/attributes.h"

#include <utility>

Zn_DOMElement::Zn_DOMElement(const Zn_DOMElement& other) : Zn_DOMElement()
{
    *this = other;
}

Zn_DOMElement& Zn_DOMElement::operator=(const Zn_DOMElement& other)
{
    if (this == &other)
        return *this;
    Zn_DOMElement* const parent = other.parent_; // `other` may be a node below this one
    const int parentIndex = other.parentIndex_;
    Set(other);
    parent_ = parent;
    parentIndex_ = parentIndex;
    return *this;
}

int Zn_DOMElement::Set(const Zn_DOMElement& other)
{
    if (this == &other)
        return 1;
    Zn_DOMElemList copies(other.children); // before anything changes: `other` may be a node below this one
    CopyNode(other);
    children = std::move(copies);
    return 1;
}

// Everything but the children's nodes, parent and parent index.
void Zn_DOMElement::CopyNode(const Zn_DOMElement& other)
{
    kind = other.kind;
    tag = other.tag;
    attributes = other.attributes;
    rawAttributes = other.rawAttributes;
    text = other.text;
}

void Zn_DOMElement::Clear()
{
    kind = Element;
    tag.Empty();
    attributes.ReleaseList();
    children.ReleaseList();
    rawAttributes.Empty();
    text.Empty();
}

void Zn_DOMElement::GetAttribute(Zn_WString& out) const
{
    if (!rawAttributes.IsEmpty())
        out = rawAttributes;
    else if (attributes.Count() > 0)
        GetAttributeFromList(out);
}

void Zn_DOMElement::GetAttributeFromList(Zn_WString& out) const
{
    Zn_WString all; // `out` may be one of the values
    for (const Zn_NamedStr& attribute : attributes) {
        const std::u16string_view value = attribute.Str().GetView();
        if (!all.IsEmpty())
            all += u' ';
        if (attribute.Id().Find(u'~') >= 0) {
            all += value;
            continue;
        }
        const char16_t quote = value.find(u'"') == std::u16string_view::npos ? u'"' : u'\'';
        all += attribute.Id();
        all += u'=';
        all += quote;
        zn::AppendXml(value, all);
        all += quote;
    }
    out = std::move(all);
}

int Zn_DOMElement::MakeVarList(std::u16string_view attributeText)
{
    Zn_NamedStrList parsed; // the text may be part of what is replaced
    zn::ReadAttributes(attributeText, parsed);
    attributes = std::move(parsed);
    rawAttributes.Empty();
    return 1;
}

int Zn_DOMElement::MakeVarList(const Zn_WString& attributeText)
{
    return MakeVarList(&attributeText == &rawAttributes ? std::u16string_view() : attributeText.GetView());
}

int Zn_DOMElement::MakeVarList()
{
    if (attributes.Count() > 0 || rawAttributes.IsEmpty())
        return 0;
    return MakeVarList(rawAttributes);
}
