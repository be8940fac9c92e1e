#include "html_plan.h"

#include "html_tags.h"

#include "Zn_Text.h"

namespace zn {

HtmlPlan::HtmlPlan(const HtmlMarks& marks, bool parseContent, bool keepText)
    : marks_(marks), ends_(marks), parseContent_(parseContent), keepText_(keepText)
{
    const int length = static_cast<int>(marks.GetText().size());
    part_ = {-1, length, length};
    nodes_.reserve(2 * static_cast<std::size_t>(marks.Count()) + 1);
    for (int mark = 0;;) {
        while (mark < marks_.Count() && marks_[mark].at < at_)
            ++mark;
        if (mark < marks_.Count() && marks_[mark].at < part_.end) {
            ReadMark(mark++);
            continue;
        }
        Flush(part_.end);
        if (part_.node < 0)
            return;
        GoOn(part_.next);
        part_ = around_.back();
        around_.pop_back();
    }
}

HtmlNode& HtmlPlan::Add(int kind, int mark, int from, int to)
{
    ++(part_.node < 0 ? topCount_ : nodes_[static_cast<std::size_t>(part_.node)].children);
    nodes_.push_back({mark, from, to, 0, static_cast<std::uint8_t>(kind), false});
    return nodes_.back();
}

void HtmlPlan::Flush(int to)
{
    int from = at_;
    if (!keepText_) {
        const std::u16string_view text = marks_.GetText();
        while (from < to && zn_isspace(text[static_cast<std::size_t>(from)]))
            ++from;
        while (from < to && zn_isspace(text[static_cast<std::size_t>(to) - 1]))
            --to;
    }
    if (from < to)
        Add(Zn_DOMElement::Text, -1, from, to);
}

// End tags and CDATA sections are text to the reader.
void HtmlPlan::ReadMark(int index)
{
    const HtmlMark& mark = marks_[index];
    if (mark.kind == HtmlMark::End || mark.kind == HtmlMark::CData)
        return;
    Flush(mark.at);
    if (mark.kind == HtmlMark::Start)
        ReadElement(index);
    else if (mark.kind == HtmlMark::Comment)
        ReadComment(index);
    else if (mark.kind == HtmlMark::Declaration)
        ReadDeclaration(index);
    else
        ReadInstruction(index);
}

void HtmlPlan::ReadComment(int index)
{
    const HtmlMark& mark = marks_[index];
    const bool closed = mark.close >= 0 && marks_.After(index) <= part_.end;
    if (keepText_)
        Add(Zn_DOMElement::Comment, index, mark.nameEnd, closed ? mark.close : part_.end);
    good_ = good_ && closed;
    GoOn(closed ? marks_.After(index) : part_.end);
}

void HtmlPlan::ReadDeclaration(int index)
{
    const HtmlMark& mark = marks_[index];
    const bool closed = IsClosed(mark);
    Add(Zn_DOMElement::Declaration, index, 0, 0).hasAttributes = closed;
    GoOn(closed ? mark.close + 1 : mark.nameEnd);
}

void HtmlPlan::ReadInstruction(int index)
{
    const HtmlMark& mark = marks_[index];
    const bool closed = IsClosed(mark);
    const int kind = closed && mark.empty ? Zn_DOMElement::EmptyElement : Zn_DOMElement::ProcInstr;
    Add(kind, index, 0, 0).hasAttributes = closed;
    GoOn(closed ? mark.close + 1 : mark.nameEnd);
}

void HtmlPlan::ReadElement(int index)
{
    const HtmlMark& mark = marks_[index];
    const int style = marks_.StyleOf(mark);
    const bool closed = IsClosed(mark);
    const bool empty = closed && mark.empty;
    const int content = closed ? mark.close + 1 : mark.nameEnd;
    HtmlNode& node = Add(empty ? Zn_DOMElement::EmptyElement : style, index, 0, 0);
    node.hasAttributes = closed;
    if (empty || style == Zn_DOMElement::HtmlVoid)
        return GoOn(content);
    HtmlEnds::End end = closed ? ends_.Find(index, part_.end) : HtmlEnds::End{};
    if (end.at < 0) {
        end = {part_.end, part_.end};
        if (style == Zn_DOMElement::HtmlParagraph)
            node.kind = Zn_DOMElement::UnclosedParagraph;
        else if (style != Zn_DOMElement::HtmlTable && style != Zn_DOMElement::HtmlRow)
            node.kind = Zn_DOMElement::Unclosed;
    }
    if (content == end.at || !parseContent_ || style == Zn_DOMElement::HtmlRaw) {
        node.from = content;
        node.to = end.at;
        return GoOn(end.next);
    }
    around_.push_back(part_);
    part_ = {static_cast<int>(nodes_.size()) - 1, end.at, end.next};
    GoOn(content);
}

} // namespace zn
