#include "html_reader.h"

#include "attributes.h"

#include <new>
#include <vector>

namespace zn {

bool HtmlReader::Read(Zn_DOMElemList& list, Zn_DOMElement* parent)
{
    struct Level {
        Zn_DOMElement* parent;
        int missing; // nodes yet to be made
    };
    std::vector<Level> levels = {{parent, plan_.TopCount()}};
    list.AllocItems(list.Count() + plan_.TopCount());
    for (const HtmlNode& plan : plan_.Nodes()) {
        while (levels.back().missing == 0)
            levels.pop_back();
        Level& level = levels.back();
        --level.missing;
        Zn_DOMElement* node = (levels.size() == 1 ? list : level.parent->children).AppendNew();
        if (!node)
            throw std::bad_alloc();
        node->SetParent(level.parent);
        Fill(*node, plan);
        if (plan.children == 0)
            continue;
        node->children.AllocItems(plan.children);
        levels.push_back({node, plan.children});
    }
    return plan_.IsGood();
}

HtmlReader::View HtmlReader::TextOf(int from, int to) const noexcept
{
    return text_.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

void HtmlReader::Fill(Zn_DOMElement& node, const HtmlNode& plan)
{
    node.kind = plan.kind;
    if (plan.from < plan.to)
        node.text = texts_.MakeText(TextOf(plan.from, plan.to));
    if (plan.mark < 0 || plan.kind == Zn_DOMElement::Comment)
        return;
    const HtmlMark& mark = marks_[plan.mark];
    if (mark.kind == HtmlMark::Start)
        node.tag = texts_.Of(TextOf(mark.at + 1, mark.nameEnd));
    else
        node.tag.Set(TextOf(mark.at + 2, mark.nameEnd));
    if (plan.hasAttributes)
        SetAttributes(node, mark);
}

void HtmlReader::SetAttributes(Zn_DOMElement& node, const HtmlMark& mark)
{
    const bool declaration = mark.kind == HtmlMark::Declaration;
    const bool pair = mark.empty || mark.kind == HtmlMark::ProcInstr;
    // The blank behind the name belongs to neither.
    const int from = mark.whole || declaration ? mark.nameEnd + 1 : mark.nameEnd;
    const int to = pair && !declaration ? mark.close - 1 : mark.close;
    if (from >= to)
        return;
    if (parseAttributes_ && !declaration)
        ReadAttributes(TextOf(from, to), node.attributes, &texts_);
    else
        node.rawAttributes.Set(TextOf(from, to));
}

} // namespace zn
