#include "Zn_DOMElement.h"

#include "markup/markup_writer.h"

namespace {

template <class Output>
void WriteAttributes(const Zn_DOMElement& item, zn::MarkupWriter<Output>& writer)
{
    if (item.attributes.Count() == 0 && !item.rawAttributes.IsEmpty())
        writer.RawAttributes(item.rawAttributes.GetView());
    for (const Zn_NamedStr& attribute : item.attributes)
        writer.Attribute(attribute.Id(), attribute.Str().GetView());
}

// Writes the whole of a node, or what stands before its children; true when they and Close are to follow.
template <class Output>
bool BeginNode(const Zn_DOMElement& item, zn::MarkupWriter<Output>& writer)
{
    const std::u16string_view text = item.text.GetView();
    switch (item.kind) {
    case Zn_DOMElement::Text:
    case Zn_DOMElement::WhiteSpace:
        writer.Text(item.kind, text);
        return false;
    case Zn_DOMElement::Comment:
        writer.Comment(text);
        return false;
    case Zn_DOMElement::CData:
        writer.CData(text);
        return false;
    default:
        break;
    }
    writer.Open(item.kind, item.tag);
    WriteAttributes(item, writer);
    if (text.empty())
        return true;
    writer.RawContent(text);
    for (int i = 0, n = item.children.Count(); i < n && i < 2; ++i)
        writer.HiddenChild(item.children[i].kind);
    writer.Close();
    return false;
}

template <class Output>
void WriteTree(const Zn_DOMElemList& top, Output& output, const zn::MarkupLayout& layout)
{
    struct Level {
        const Zn_DOMElemList* list;
        int next;
    };
    zn::MarkupWriter writer(output, layout);
    zn::WorkStack<Level> levels;
    levels.Push({&top, 0});
    while (!levels.IsEmpty() && !output.HasFailed()) {
        Level& level = levels.Top();
        if (level.next == level.list->Count()) {
            writer.Close();
            levels.Pop();
            continue;
        }
        const Zn_DOMElement* item = level.list->GetItem(level.next++);
        if (item && BeginNode(*item, writer) && !levels.Push({&item->children, 0}))
            output.Fail();
    }
}

} // namespace

int Zn_DOMElemList::Save(Zn_WString& out, int encode, int indent, char16_t separator, int depth) const
{
    zn::WideOutput output;
    WriteTree(*this, output, {encode != 0, indent != 0, depth, separator});
    output.AppendTo(out);
    return 1;
}

int Zn_DOMElemList::Save(Zn_Buffer& out, int encode, int indent, int depth) const
{
    zn::WriteMarkup(out, codePage_, zn::Missing::XmlReference, [&](auto& output) {
        WriteTree(*this, output, {encode != 0, indent != 0, depth});
    });
    return 1;
}
