// The nodes of an HTML page before any of them is made: in document order, as places in the text.
#pragma once

#include "html_ends.h"

#include <cstdint>
#include <vector>

namespace zn {

struct HtmlNode {
    int mark; // -1 of a text
    int from; // text, or content that is not parsed
    int to;
    int children; // at the level below; all that is below stands behind the node
    std::uint8_t kind;
    bool hasAttributes; // false when the tag does not end within its part of the page
};

class HtmlPlan {
public:
    // Throws when memory runs out.
    HtmlPlan(const HtmlMarks& marks, bool parseContent, bool keepText);

    const std::vector<HtmlNode>& Nodes() const noexcept { return nodes_; }
    int TopCount() const noexcept { return topCount_; }
    // False for a comment without an end.
    bool IsGood() const noexcept { return good_; }

private:
    // The page or the content of an element, while it is read.
    struct Part {
        int node; // -1 for the page
        int end;
        int next; // where the part around it goes on
    };
    HtmlNode& Add(int kind, int mark, int from, int to);
    void GoOn(int to) noexcept { at_ = to; }
    void Flush(int to);
    void ReadMark(int index);
    void ReadComment(int index);
    void ReadDeclaration(int index);
    void ReadInstruction(int index);
    void ReadElement(int index);
    bool IsClosed(const HtmlMark& mark) const noexcept { return mark.close >= 0 && mark.close < part_.end; }

    const HtmlMarks& marks_;
    HtmlEnds ends_;
    bool parseContent_;
    bool keepText_;
    bool good_ = true;
    int topCount_ = 0;
    int at_ = 0; // where the pending text begins
    Part part_;
    std::vector<Part> around_;
    std::vector<HtmlNode> nodes_;
};

} // namespace zn
