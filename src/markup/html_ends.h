// Where the elements of an HTML page end, found for all of them at once.
//
// Taken one by one, each search would run over the rest of the page. Here every mark knows the one to which a
// search goes on from it; these steps make a forest, and one walk over it from its roots answers "the first tag of
// this name on the way" for all elements.
#pragma once

#include "html_marks.h"

#include <vector>

namespace zn {

class HtmlEnds {
public:
    explicit HtmlEnds(const HtmlMarks& marks);

    // The end of an element's content, and where the reader goes on; both are -1 when the element is not closed
    // before `rangeEnd`.
    struct End {
        int at = -1;
        int next = -1;
    };
    // Of the start tag at an index, which has an end.
    End Find(int start, int rangeEnd) const noexcept;

private:
    struct Ways;
    void PairNested();
    void EndOptions();
    int StepOver(int index) const noexcept;
    End FindRaw(const HtmlMark& start, int rangeEnd) const noexcept;

    const HtmlMarks& marks_;
    std::vector<int> endings_; // by start tag: the mark that ends it; Count() for none
};

} // namespace zn
