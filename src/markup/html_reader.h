// Builds the tree of an HTML page.
#pragma once

#include "html_ends.h"

#include "Zn_DOMElement.h"

#include <string_view>
#include <vector>

namespace zn {

struct HtmlOptions {
    bool parseContent;
    bool parseAttributes;
    bool keepText;
};

class HtmlReader {
public:
    // The text must outlive the reader.
    HtmlReader(std::u16string_view text, const HtmlOptions& options)
        : text_(text), options_(options), marks_(text), ends_(marks_),
          tags_(static_cast<std::size_t>(marks_.NameCount()))
    {
    }
    // Appends the nodes; false for a comment without an end. Throws when memory runs out.
    bool Read(Zn_DOMElemList& list, Zn_DOMElement* parent);

private:
    using View = std::u16string_view;

    // A list that is being filled, from a part of the text.
    struct Level {
        Zn_DOMElemList* list;
        Zn_DOMElement* parent;
        int end;
        int next; // where the level above goes on
    };
    View TextOf(int from, int to) const noexcept;
    Zn_DOMElement& AddNode(int kind) const;
    void GoOn(int to) noexcept { at_ = to; }
    void Flush(int to);
    bool ReadMark();
    bool ReadComment(const HtmlMark& mark);
    void ReadDeclaration(const HtmlMark& mark);
    void ReadInstruction(const HtmlMark& mark);
    void ReadElement(const HtmlMark& mark);
    bool ReadTag(Zn_DOMElement& node, const HtmlMark& mark, int nameStart);
    const Zn_WString& TagOf(int name, View text);
    void ReadContent(Zn_DOMElement& node, int from, HtmlEnds::End end, bool parse);

    View text_;
    HtmlOptions options_;
    HtmlMarks marks_;
    HtmlEnds ends_;
    Level level_{};
    std::vector<Level> above_;
    std::vector<Zn_WString> tags_; // as last written, by the number of the name
    int mark_ = 0;                 // the next mark
    int at_ = 0;                   // where the pending text begins
};

} // namespace zn
