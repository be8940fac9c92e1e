// How markup is written, node by node and without a tree: what stands around each kind of node, where lines
// break, which attributes are left out. Zn_DOMElemList::Save drives it, and so do the writers of messages.
//
//     MarkupWriter writer(output, {.escape = true, .indent = true});
//     writer.Open(Zn_DOMElement::Element, "column");
//     writer.Attribute("id", columnId);
//     writer.Text(Zn_DOMElement::Text, value);
//     writer.Close();
//
// Names and texts are UTF-16, or 8-bit text that is written as it stands (numbers, Base64). A name must stay
// valid until its element is closed.
#pragma once

#include "markup_output.h"
#include "work_stack.h"

#include "Zn_DOMElement.h"

#include <string_view>

namespace zn {

// UTF-16 or 8-bit text, by reference.
class MarkupName {
public:
    MarkupName(std::u16string_view text) noexcept : text_(text.data()), length_(text.size()), wide_(true) {}
    MarkupName(const Zn_WString& text) noexcept : MarkupName(text.GetView()) {}
    MarkupName(const char16_t* text) noexcept : MarkupName(std::u16string_view(text)) {}
    MarkupName(std::string_view text) noexcept : text_(text.data()), length_(text.size()), wide_(false) {}
    MarkupName(const char* text) noexcept : MarkupName(std::string_view(text)) {}

    template <class Output>
    void PutTo(Output& output) const noexcept
    {
        if (wide_)
            output.Put(std::u16string_view(static_cast<const char16_t*>(text_), length_));
        else
            output.PutAscii(std::string_view(static_cast<const char*>(text_), length_));
    }

private:
    const void* text_;
    std::size_t length_;
    bool wide_;
};

struct MarkupLayout {
    bool escape = true;                      // text nodes are escaped
    bool indent = true;                      // nodes stand on lines of their own, indented by tabs
    int depth = 0;                           // tabs of the first level
    char16_t separator = u' ';               // in front of attributes
    EndBlanks blanks = EndBlanks::Reference; // Plain in messages, whose readers keep blanks around a text
};

template <class Output>
class MarkupWriter {
public:
    using View = std::u16string_view;

    MarkupWriter(Output& output, const MarkupLayout& layout) noexcept
        : output_(output), depth_(layout.depth > 0 ? static_cast<std::size_t>(layout.depth) : 0),
          escape_(layout.escape), breakLines_(layout.escape && layout.indent), separator_(layout.separator),
          blanks_(layout.blanks)
    {
    }

    // A node of kind 0 or 1.
    void Text(int kind, View text) noexcept
    {
        BeginNode(kind);
        if (escape_)
            output_.PutEscaped(text, blanks_);
        else
            output_.Put(text);
    }
    // Text that holds nothing to escape.
    void Text(int kind, std::string_view plain) noexcept
    {
        BeginNode(kind);
        output_.PutAscii(plain);
    }
    void Comment(View text) noexcept
    {
        BeginNode(Zn_DOMElement::Comment);
        NewLine();
        output_.PutAscii("<!--");
        output_.Put(text);
        output_.PutAscii("-->");
    }
    void CData(View text) noexcept
    {
        BeginNode(Zn_DOMElement::CData);
        output_.PutAscii("<![CDATA[");
        output_.Put(text);
        output_.PutAscii("]]>");
    }

    // Begins a node of any other kind; its attributes come next, then its content, then Close.
    void Open(int kind, MarkupName tag) noexcept
    {
        BeginNode(kind);
        if (kind == Zn_DOMElement::Declaration) {
            output_.PutAscii("\r\n<!"); // whatever the layout says
        } else if (kind == Zn_DOMElement::ProcInstr) {
            output_.PutAscii("<?");
        } else {
            NewLine();
            output_.PutChar('<');
        }
        tag.PutTo(output_);
        inTag_ = true;
        if (!open_.Push({tag, kind, Content::Inline}))
            output_.Fail();
    }
    // Attributes whose value is empty are left out, but the separator in front of them is not: callers rely on it.
    template <class Value>
    void Attribute(MarkupName name, const Value& value) noexcept
    {
        Separate();
        const auto text = MakeView(value);
        if (text.empty())
            return;
        using Text = decltype(MakeView(value));
        using Char = typename Text::value_type;
        const char quote = text.find(Char('"')) == Text::npos ? '"' : '\'';
        name.PutTo(output_);
        output_.PutChar('=');
        output_.PutChar(quote);
        if constexpr (sizeof(Char) == 1)
            output_.PutAscii(text); // 8-bit values hold nothing to escape
        else
            output_.PutEscaped(text);
        output_.PutChar(quote);
    }
    void RawAttributes(View text) noexcept
    {
        Separate();
        output_.Put(text);
    }
    // Unescaped text that stands for the children of the element.
    void RawContent(View text) noexcept
    {
        EndTag();
        output_.Put(text);
    }
    // Tells of a child that is not written: it counts for where the end tag stands.
    void HiddenChild(int kind) noexcept { CountChild(kind); }

    void Close() noexcept
    {
        EndTag();
        if (open_.IsEmpty())
            return;
        const Frame frame = open_.Top();
        open_.Pop();
        if (!HasEndTag(frame.kind))
            return;
        if (frame.content == Content::OnLines)
            NewLine();
        output_.PutAscii("</");
        frame.tag.PutTo(output_);
        output_.PutChar('>');
    }

private:
    // Where the end tag stands: on a line of its own unless the element has no children or one text.
    enum class Content : unsigned char { Inline, OneText, OnLines };
    struct Frame {
        MarkupName tag;
        int kind;
        Content content;
    };

    static bool HasEndTag(int kind) noexcept
    {
        switch (kind) {
        case Zn_DOMElement::Element:
        case Zn_DOMElement::HtmlRaw:
        case Zn_DOMElement::HtmlParagraph:
        case Zn_DOMElement::HtmlInline:
        case Zn_DOMElement::HtmlTable:
        case Zn_DOMElement::HtmlRow:
            return true;
        default:
            return false;
        }
    }
    static std::string_view MakeView(std::string_view text) noexcept { return text; }
    static View MakeView(View text) noexcept { return text; }

    void CountChild(int kind) noexcept
    {
        if (open_.IsEmpty())
            return;
        Content& content = open_.Top().content;
        content = content == Content::Inline && kind == Zn_DOMElement::Text ? Content::OneText : Content::OnLines;
    }
    void BeginNode(int kind) noexcept
    {
        EndTag();
        CountChild(kind);
    }
    // Ends the start tag that is being written.
    void EndTag() noexcept
    {
        if (!inTag_)
            return;
        inTag_ = false;
        if (open_.IsEmpty()) // there was no memory for it
            return;
        const int kind = open_.Top().kind;
        if (kind == Zn_DOMElement::ProcInstr)
            output_.PutAscii("?>");
        else if (kind == Zn_DOMElement::EmptyElement)
            output_.PutAscii("/>");
        else
            output_.PutChar('>');
    }
    void Separate() noexcept { output_.Put(View(&separator_, 1)); }
    void NewLine() noexcept
    {
        if (breakLines_)
            output_.PutNewLine(depth_ + open_.Count());
    }

    Output& output_;
    std::size_t depth_;
    bool escape_;
    bool breakLines_;
    bool inTag_ = false;
    char16_t separator_;
    EndBlanks blanks_;
    WorkStack<Frame> open_;
};

} // namespace zn
