// Builds the tree of an HTML page.
#pragma once

#include "html_plan.h"
#include "shared_texts.h"

#include "Zn_DOMElement.h"

#include <string_view>

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
        : text_(text), parseAttributes_(options.parseAttributes), marks_(text),
          plan_(marks_, options.parseContent, options.keepText)
    {
    }
    // Appends the nodes; false for a comment without an end. Throws when memory runs out.
    bool Read(Zn_DOMElemList& list, Zn_DOMElement* parent);

private:
    using View = std::u16string_view;

    View TextOf(int from, int to) const noexcept;
    void Fill(Zn_DOMElement& node, const HtmlNode& plan);
    void SetAttributes(Zn_DOMElement& node, const HtmlMark& mark);

    View text_;
    bool parseAttributes_;
    HtmlMarks marks_;
    HtmlPlan plan_;
    SharedTexts texts_;
};

} // namespace zn
