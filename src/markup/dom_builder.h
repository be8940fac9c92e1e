// Builds nodes by the calls of MarkupWriter, so that what is written as text and what is built as a
// tree come from one piece of code.
//
// New nodes go to the end of a list; each has that list's code page.
#pragma once

#include "Zn_DOMElement.h"
#include "markup/markup_writer.h"

#include <string_view>
#include <vector>

namespace zn {

class DomBuilder {
public:
    explicit DomBuilder(Zn_DOMElemList& list) : list_(list) {}

    void Open(int kind, MarkupName tag)
    {
        Zn_DOMElement* node = Append(kind);
        if (node)
            node->tag = ToText(tag);
        open_.push_back(node);
    }
    template <class Value>
    void Attribute(MarkupName name, const Value& value)
    {
        if (Zn_DOMElement* node = open_.back())
            node->attributes.AddStr(ToText(name), ToText(value), 0);
    }
    template <class Value>
    void Text(int kind, const Value& text)
    {
        if (Zn_DOMElement* node = Append(kind))
            node->text = ToText(text);
    }
    void Close() { open_.pop_back(); }

private:
    static Zn_WString ToText(MarkupName name)
    {
        WideOutput output;
        name.PutTo(output);
        Zn_WString text;
        output.AppendTo(text);
        return text;
    }

    // Null when memory runs out; what belongs to the node is dropped then.
    Zn_DOMElement* Append(int kind)
    {
        if (!open_.empty() && !open_.back())
            return nullptr;
        Zn_DOMElemList& list = open_.empty() ? list_ : open_.back()->children;
        Zn_DOMElement fresh(list.GetCodePage());
        fresh.kind = kind;
        return list.GetSafeItem(list.Add(fresh));
    }

    Zn_DOMElemList& list_;
    std::vector<Zn_DOMElement*> open_;
};

} // namespace zn
