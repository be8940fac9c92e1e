#include "html_reader.h"

#include "html_tags.h"

#include "Zn_Text.h"

#include <new>

namespace zn {

bool HtmlReader::Read(Zn_DOMElemList& list, Zn_DOMElement* parent)
{
    const int length = static_cast<int>(text_.size());
    level_ = {&list, parent, length, length};
    bool good = true;
    for (;;) {
        while (mark_ < marks_.Count() && marks_[mark_].at < at_)
            ++mark_;
        if (mark_ < marks_.Count() && marks_[mark_].at < level_.end) {
            good = ReadMark() && good;
            continue;
        }
        Flush(level_.end);
        if (above_.empty())
            return good;
        GoOn(level_.next);
        level_ = above_.back();
        above_.pop_back();
    }
}

HtmlReader::View HtmlReader::TextOf(int from, int to) const noexcept
{
    return text_.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
}

Zn_DOMElement& HtmlReader::AddNode(int kind) const
{
    Zn_DOMElement* node = level_.list->AppendNew();
    if (!node)
        throw std::bad_alloc();
    node->kind = kind;
    node->SetParent(level_.parent);
    return *node;
}

void HtmlReader::Flush(int to)
{
    View run = TextOf(at_, to);
    if (!options_.keepText) {
        while (!run.empty() && zn_isspace(run.front()))
            run.remove_prefix(1);
        while (!run.empty() && zn_isspace(run.back()))
            run.remove_suffix(1);
    }
    if (!run.empty())
        AddNode(Zn_DOMElement::Text).text.Set(run);
}

// False for a comment without an end. End tags and CDATA sections are text to the reader.
bool HtmlReader::ReadMark()
{
    const HtmlMark& mark = marks_[mark_];
    if (mark.kind == HtmlMark::End || mark.kind == HtmlMark::CData) {
        ++mark_;
        return true;
    }
    Flush(mark.at);
    if (mark.kind == HtmlMark::Comment)
        return ReadComment(mark);
    if (mark.kind == HtmlMark::Declaration)
        ReadDeclaration(mark);
    else if (mark.kind == HtmlMark::ProcInstr)
        ReadInstruction(mark);
    else
        ReadElement(mark);
    return true;
}

bool HtmlReader::ReadComment(const HtmlMark& mark)
{
    const bool closed = mark.close >= 0 && marks_.After(mark_) <= level_.end;
    if (options_.keepText)
        AddNode(Zn_DOMElement::Comment).text.Set(TextOf(mark.nameEnd, closed ? mark.close : level_.end));
    GoOn(closed ? marks_.After(mark_) : level_.end);
    return closed;
}

void HtmlReader::ReadDeclaration(const HtmlMark& mark)
{
    Zn_DOMElement& node = AddNode(Zn_DOMElement::Declaration);
    node.tag.Set(TextOf(mark.at + 2, mark.nameEnd));
    if (mark.close < 0 || mark.close >= level_.end)
        return GoOn(mark.nameEnd);
    if (mark.close > mark.nameEnd + 1)
        node.rawAttributes.Set(TextOf(mark.nameEnd + 1, mark.close));
    GoOn(mark.close + 1);
}

// Elements of one name share its text.
const Zn_WString& HtmlReader::TagOf(int name, View text)
{
    Zn_WString& tag = tags_[static_cast<std::size_t>(name)];
    if (tag.GetView() != text)
        tag = Zn_WString(text);
    return tag;
}

// Name and attributes; false, and no attributes, when the tag has no end in this part of the text.
bool HtmlReader::ReadTag(Zn_DOMElement& node, const HtmlMark& mark, int nameStart)
{
    const View name = TextOf(nameStart, mark.nameEnd);
    if (mark.kind == HtmlMark::Start)
        node.tag = TagOf(mark.name, name);
    else
        node.tag.Set(name);
    if (mark.close < 0 || mark.close >= level_.end)
        return false;
    const bool pair = mark.empty || mark.kind == HtmlMark::ProcInstr;
    const int from = mark.whole ? mark.nameEnd + 1 : mark.nameEnd; // the blank behind the name belongs to neither
    const int to = pair ? mark.close - 1 : mark.close;
    if (from >= to)
        return true;
    if (options_.parseAttributes)
        node.MakeVarList(TextOf(from, to));
    else
        node.rawAttributes.Set(TextOf(from, to));
    return true;
}

void HtmlReader::ReadInstruction(const HtmlMark& mark)
{
    Zn_DOMElement& node = AddNode(Zn_DOMElement::ProcInstr);
    const bool closed = ReadTag(node, mark, mark.at + 2);
    if (closed && mark.empty)
        node.kind = Zn_DOMElement::EmptyElement;
    GoOn(closed ? mark.close + 1 : mark.nameEnd);
}

void HtmlReader::ReadElement(const HtmlMark& mark)
{
    const int style = marks_.StyleOf(mark);
    Zn_DOMElement& node = AddNode(style);
    const bool closed = ReadTag(node, mark, mark.at + 1);
    const int content = closed ? mark.close + 1 : mark.nameEnd;
    if (closed && mark.empty)
        node.kind = Zn_DOMElement::EmptyElement;
    if (node.kind == Zn_DOMElement::EmptyElement || style == Zn_DOMElement::HtmlVoid)
        return GoOn(content);
    HtmlEnds::End end = closed ? ends_.Find(mark_, level_.end) : HtmlEnds::End{};
    if (end.at < 0) {
        end = {level_.end, level_.end};
        if (style == Zn_DOMElement::HtmlParagraph)
            node.kind = Zn_DOMElement::UnclosedParagraph;
        else if (style != Zn_DOMElement::HtmlTable && style != Zn_DOMElement::HtmlRow)
            node.kind = Zn_DOMElement::Unclosed;
    }
    ReadContent(node, content, end, options_.parseContent && style != Zn_DOMElement::HtmlRaw);
}

void HtmlReader::ReadContent(Zn_DOMElement& node, int from, HtmlEnds::End end, bool parse)
{
    if (from == end.at || !parse) {
        node.text.Set(TextOf(from, end.at));
        return GoOn(end.next);
    }
    above_.push_back(level_);
    level_ = {&node.children, &node, end.at, end.next};
    GoOn(from);
}

} // namespace zn
