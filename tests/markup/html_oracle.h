// The HTML reader taken literally: every element searches the rest of its part of the page for its end, and each
// content is read by a call of its own. Slow and recursive, and therefore easy to compare with the rules.
#pragma once

#include "Zn_HtmlDOM.h"
#include "Zn_Text.h"

#include <string_view>

class HtmlOracle {
public:
    using View = std::u16string_view;
    static constexpr std::size_t kNone = View::npos;

    HtmlOracle(bool parseContent, bool parseAttributes, bool keepText)
        : parseContent_(parseContent), parseAttributes_(parseAttributes), keepText_(keepText)
    {
    }

    int Load(Zn_DOMElemList& list, View text, Zn_DOMElement* parent) // NOLINT(misc-no-recursion)
    {
        int result = 1;
        std::size_t run = 0;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t length = text[at] == u'<' ? NameLength(text.substr(at + 1)) : 0;
            const std::size_t nameEnd = at + 1 + length;
            const View name = text.substr(std::min(at + 1, text.size()), length);
            const int style = length == 0 ? 0 : StyleOf(name);
            if (style == 0) {
                ++at;
                continue;
            }
            Flush(list, text.substr(run, at - run), parent);
            if (style == 153) {
                const std::size_t end = text.find(u"-->", nameEnd);
                if (keepText_)
                    Add(list, 153, parent)->text.Set(text.substr(nameEnd, end == kNone ? kNone : end - nameEnd));
                result = end == kNone ? 0 : result;
                run = at = end == kNone ? text.size() : end + 3;
            } else if (style == 17) {
                Zn_DOMElement* node = Add(list, 17, parent);
                node->tag.Set(name.substr(1));
                const std::size_t end = TagClose(text, nameEnd, false);
                if (end != kNone && end > nameEnd + 1)
                    node->rawAttributes.Set(text.substr(nameEnd + 1, end - nameEnd - 1));
                run = at = end == kNone ? nameEnd : end + 1;
            } else {
                run = at = Tag(list, text, nameEnd, name, style, parent, result);
            }
        }
        Flush(list, text.substr(run), parent);
        return result;
    }

private:
    struct End {
        std::size_t at;
        std::size_t next;
    };

    static bool Same(View text, View what)
    {
        return text.size() >= what.size() && zn_iequal(text.substr(0, what.size()), what);
    }
    static bool IsEnd(char16_t unit) { return View(u" \t\r\n>").find(unit) != kNone; }
    // The text begins with the mark, the name and something that ends a name.
    static bool Named(View text, View mark, View name)
    {
        if (!text.starts_with(mark) || !Same(text.substr(mark.size()), name))
            return false;
        const std::size_t end = mark.size() + name.size();
        return end < text.size() && IsEnd(text[end]);
    }

    static std::size_t NameLength(View text)
    {
        if (text.empty() || (text[0] >= u'0' && text[0] <= u'9'))
            return 0;
        if (text.starts_with(u"!--"))
            return 3;
        if (Same(text, u"table"))
            return 5;
        if (Same(text, u"!doctype"))
            return 8;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const char16_t unit = text[i];
            if (IsEnd(unit))
                return i;
            const bool letter = (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
            const bool digit = unit >= u'0' && unit <= u'9';
            if (!letter && !digit && unit != u':' && unit < 0x80 && !(unit == u'?' && i == 0))
                return 0;
        }
        return 0;
    }

    static int StyleOf(View name)
    {
        if (name == u"!--")
            return 153;
        if (name[0] == u'!')
            return 17;
        if (name[0] == u'?')
            return 16;
        const std::pair<View, int> rows[] = {
            {u"script", 64}, {u"pre", 64},   {u"style", 32}, {u"br", 32},    {u"li", 32},     {u"meta", 32},
            {u"link", 32},   {u"img", 32},   {u"area", 32},  {u"input", 32}, {u"spacer", 80}, {u"p", 80},
            {u"small", 96},  {u"table", 97}, {u"tr", 98},    {u"td", 48},
        };
        for (const auto& [row, style] : rows) {
            if (Same(name, row))
                return style;
        }
        for (const char16_t unit : name) {
            if (unit >= 0x80)
                return 0;
        }
        return 48;
    }

    static std::size_t SkipComment(View text, std::size_t at)
    {
        const std::size_t end = text.find(u"-->", at + 4);
        return end == kNone ? text.size() : end + 3;
    }

    // The ">" that ends a tag.
    static std::size_t TagClose(View text, std::size_t from, bool instruction)
    {
        for (std::size_t at = from; at < text.size();) {
            if (text.substr(at).starts_with(u"<!--")) {
                at = SkipComment(text, at);
                continue;
            }
            if (text[at] == u'>' && (!instruction || (at > from && (text[at - 1] == u'?' || text[at - 1] == u'/'))))
                return at;
            ++at;
        }
        return kNone;
    }
    static bool IsEmptyTag(View text, std::size_t nameEnd, std::size_t close)
    {
        return close > nameEnd && text[close - 1] == u'/';
    }
    static End EndTag(View text, std::size_t at, std::size_t nameLength)
    {
        const std::size_t close = text.find(u'>', at + 2 + nameLength);
        return {at, close == kNone ? text.size() : close + 1};
    }

    static End FindTagEnd(View text, View name, bool raw)
    {
        int depth = 1;
        for (std::size_t at = 0; at < text.size();) {
            const View rest = text.substr(at);
            if (rest.starts_with(u"<!--")) {
                at = SkipComment(text, at);
            } else if (raw ? rest.starts_with(u"</") && Same(rest.substr(2), name) : Named(rest, u"</", name)) {
                if (--depth == 0)
                    return EndTag(text, at, name.size());
                at += 2 + name.size();
            } else if (!raw && Named(rest, u"<", name)) {
                const std::size_t nameEnd = at + 1 + name.size();
                const std::size_t close = TagClose(text, nameEnd, false);
                if (close == kNone)
                    break;
                depth += IsEmptyTag(text, nameEnd, close) ? 0 : 1;
                at = close + 1;
            } else {
                ++at;
            }
        }
        return {kNone, kNone};
    }

    // Where the search for the end of a paragraph goes on; kNone when it stops.
    static std::size_t StepOver(View text, std::size_t at)
    {
        const View rest = text.substr(at);
        if (rest.starts_with(u"<!--"))
            return SkipComment(text, at);
        if (Same(rest, u"<![cdata[")) {
            const std::size_t end = text.find(u"]]>", at + 9);
            return end == kNone ? kNone : end + 3;
        }
        const std::size_t length = rest[0] == u'<' ? NameLength(rest.substr(1)) : 0;
        const std::size_t nameEnd = at + 1 + length;
        const int style = length == 0 ? 0 : StyleOf(rest.substr(1, length));
        if (style != 16 && style != 17 && style != 48 && style != 96)
            return nameEnd;
        const std::size_t close = TagClose(text, nameEnd, style == 16);
        if (close == kNone)
            return kNone;
        if (style < 48 || IsEmptyTag(text, nameEnd, close))
            return close + 1;
        const End end = FindTagEnd(text.substr(close + 1), rest.substr(1, length), false);
        return end.at == kNone ? kNone : close + 1 + end.next;
    }

    static End FindOptionEnd(View text, View name, int style)
    {
        for (std::size_t at = 0; at < text.size();) {
            const View rest = text.substr(at);
            if (Named(rest, u"<", name) || (style != 80 && Named(rest, u"</", u"table")))
                return {at, at};
            if (Named(rest, u"</", name))
                return EndTag(text, at, name.size());
            at = StepOver(text, at);
        }
        return {kNone, kNone};
    }

    Zn_DOMElement* Add(Zn_DOMElemList& list, int kind, Zn_DOMElement* parent)
    {
        Zn_DOMElement node(list.GetCodePage());
        node.kind = kind;
        return list.GetSafeItem(list.Add(node, parent));
    }
    void Flush(Zn_DOMElemList& list, View run, Zn_DOMElement* parent)
    {
        while (!keepText_ && !run.empty() && zn_isspace(run.front()))
            run.remove_prefix(1);
        while (!keepText_ && !run.empty() && zn_isspace(run.back()))
            run.remove_suffix(1);
        if (!run.empty())
            Add(list, 0, parent)->text.Set(run);
    }

    std::size_t Tag(Zn_DOMElemList& list, View text, std::size_t nameEnd, View name, // NOLINT(misc-no-recursion)
                    int style, Zn_DOMElement* parent, int& result)
    {
        Zn_DOMElement* node = Add(list, style, parent);
        node->tag.Set(style == 16 ? name.substr(1) : name);
        const std::size_t close = TagClose(text, nameEnd, style == 16);
        const bool empty = close != kNone && IsEmptyTag(text, nameEnd, close);
        if (close != kNone) {
            const std::size_t from = nameEnd + (IsEnd(text[nameEnd]) ? 1 : 0);
            const std::size_t to = empty || style == 16 ? close - 1 : close;
            if (from < to && parseAttributes_)
                node->MakeVarList(text.substr(from, to - from));
            else if (from < to)
                node->rawAttributes.Set(text.substr(from, to - from));
        }
        if (empty)
            node->kind = 49;
        const std::size_t begin = close == kNone ? nameEnd : close + 1;
        if (empty || style < 48)
            return begin;
        const View rest = text.substr(begin);
        End end{kNone, kNone};
        if (close != kNone)
            end = style == 80 || style > 96 ? FindOptionEnd(rest, name, style) : FindTagEnd(rest, name, style == 64);
        if (end.at == kNone) {
            end = {rest.size(), rest.size()};
            node->kind = style == 80 ? 81 : style > 96 ? style : 50;
        }
        const View content = rest.substr(0, end.at);
        if (!parseContent_ || style == 64)
            node->text.Set(content);
        else if (Load(node->children, content, node) == 0)
            result = 0;
        return begin + end.next;
    }

    bool parseContent_;
    bool parseAttributes_;
    bool keepText_;
};
