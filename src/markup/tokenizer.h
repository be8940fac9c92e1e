// The markup tokenizer: one pass over UTF-16 text that tells a handler what it meets. A template over the
// handler, so that a reader of large messages pays for no virtual calls; Zn_SAXIterator is one user.
//
// The handler has these members; the views point into the text, and where a tag has no attributes their
// data() is null:
//
//     ProcInstr(name, attributes)   Declaration(name, body)
//     EmptyElement(name, attributes)   StartElement(name, attributes)   EndElement(name)
//     WhiteSpace(text)   Text(text)   CData(text)   Comment(text)
//
// A handler with a member TextRun(run, text) gets each run of text in one call instead of WhiteSpace and Text:
// the whole run, and the part without the white space at its ends, which may be empty.
//
// Parse answers false for malformed text; what was reported before stands.
#pragma once

#include "tag_scan.h"
#include "work_stack.h"

#include "Zn_Text.h"

#include <string_view>

namespace zn {

template <class Handler>
class Tokenizer {
public:
    using View = std::u16string_view;

    explicit Tokenizer(Handler& handler) noexcept : handler_(handler) {}

    bool Parse(View text)
    {
        at_ = run_ = text.data();
        end_ = at_ + text.size();
        TagEndFinder ends(end_);
        for (;;) {
            at_ = FindUnit(at_, end_, u'<');
            if (at_ == end_)
                break;
            const bool good = at_ + 1 != end_ && at_[1] == u'/' ? ReadEndTag() : ReadMarkup(ends);
            if (!good)
                return false;
        }
        if (!open_.IsEmpty())
            return false;
        Flush(end_);
        return true;
    }

private:
    static View MakeView(const char16_t* from, const char16_t* to) noexcept
    {
        return View(from, static_cast<std::size_t>(to - from));
    }
    // What a tag holds between one character after its name and its end; null when that is nothing.
    static View BodyOf(const char16_t* nameEnd, const char16_t* tagEnd) noexcept
    {
        return tagEnd && tagEnd - nameEnd > 1 ? MakeView(nameEnd + 1, tagEnd) : View();
    }

    // Reports the text run before `to`, the white space at its ends on its own.
    void Flush(const char16_t* to)
    {
        if (run_ == to)
            return;
        const char16_t* first = run_;
        while (first != to && zn_isspace(*first))
            ++first;
        const char16_t* last = to;
        while (last != first && zn_isspace(last[-1]))
            --last;
        if constexpr (requires(View view) { handler_.TextRun(view, view); }) {
            handler_.TextRun(MakeView(run_, to), MakeView(first, last));
        } else {
            if (first != run_)
                handler_.WhiteSpace(MakeView(run_, first));
            if (first != last)
                handler_.Text(MakeView(first, last));
            if (last != to)
                handler_.WhiteSpace(MakeView(last, to));
        }
    }

    void GoOn(const char16_t* to) noexcept { at_ = run_ = to; }

    // False for a comment, section or declaration without an end.
    bool ReadMarkup(TagEndFinder& ends)
    {
        const char16_t* name = at_ + 1;
        const std::ptrdiff_t length = TagNameLength(name, end_);
        if (length == 0) {
            ++at_;
            return true;
        }
        const Markup kind = ClassifyMarkup(name, end_);
        Flush(at_);
        if (kind == Markup::Element || kind == Markup::ProcInstr)
            return ReadTag(name, name + length, ends.Find(name + length, kind), kind);
        constexpr std::ptrdiff_t kDoctype = 8;
        const char16_t* nameEnd = name + (kind == Markup::Declaration ? kDoctype : length);
        const TagEnd found = FindTagEnd(nameEnd, end_, kind);
        if (!found.at)
            return false;
        if (kind == Markup::Comment)
            handler_.Comment(MakeView(nameEnd, found.at));
        else if (kind == Markup::CData)
            handler_.CData(MakeView(nameEnd, found.at));
        else
            ReportDeclaration(MakeView(name, nameEnd), BodyOf(nameEnd, found.at), kind, found.kind);
        GoOn(found.next);
        return true;
    }

    // A "/>" anywhere in it makes a declaration an empty element. Callers rely on it.
    void ReportDeclaration(View name, View body, Markup kind, Markup found)
    {
        if (kind == Markup::Declaration)
            name.remove_prefix(1);
        if (found == Markup::EmptyElement)
            handler_.EmptyElement(name, body);
        else if (found == Markup::Declaration)
            handler_.Declaration(name, body);
    }

    // A missing end is no fault: the tag has no attributes then, and what follows its name is text.
    bool ReadTag(const char16_t* name, const char16_t* nameEnd, const TagEnd& found, Markup kind)
    {
        const View body = BodyOf(nameEnd, found.at);
        const View fullName = MakeView(kind == Markup::ProcInstr ? name + 1 : name, nameEnd);
        if (found.at)
            kind = found.kind;
        if (kind == Markup::EmptyElement) {
            handler_.EmptyElement(fullName, body);
        } else if (kind == Markup::ProcInstr) {
            handler_.ProcInstr(fullName, body);
        } else {
            handler_.StartElement(fullName, body);
            if (!open_.Push(fullName))
                return false;
        }
        GoOn(found.at ? found.next : nameEnd);
        return true;
    }

    // An end tag closes the innermost element when that one's name begins with its own: "</a>" ends "abc".
    // Callers rely on it.
    bool ReadEndTag()
    {
        const char16_t* name = at_ + 2;
        const std::ptrdiff_t length = TagNameLength(name, end_);
        if (length == 0) {
            ++at_;
            return true;
        }
        const View wanted(name, static_cast<std::size_t>(length));
        if (open_.IsEmpty() || open_.Top().size() < wanted.size())
            return false;
        const View opened = open_.Top().substr(0, wanted.size());
        if (opened != wanted && !zn_iequal(opened, wanted))
            return false;
        Flush(at_);
        handler_.EndElement(opened);
        open_.Pop();
        const char16_t* close = FindUnit(name + length, end_, u'>');
        GoOn(close == end_ ? end_ : close + 1);
        return true;
    }

    Handler& handler_;
    const char16_t* at_ = nullptr;
    const char16_t* run_ = nullptr; // where the pending text run starts
    const char16_t* end_ = nullptr;
    WorkStack<View> open_; // the names of the open elements
};

} // namespace zn
