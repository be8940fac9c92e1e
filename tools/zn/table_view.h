// Tables of text with aligned columns. Widths are counted in cells of the terminal, so that Korean or Japanese
// text stands in line; control characters are shown as escapes and so can't disturb anything.
#pragma once

#include "output.h"

#include <functional>
#include <vector>

namespace zntool {

struct ViewColumn {
    std::u16string title;
    bool right = false; // numbers stand at the right
};

struct ViewCell {
    std::u16string text;
    Style style = Style::Plain;
};

// Fills an empty cell; asked twice for each, once to measure and once to print.
using CellSource = std::function<void(std::size_t line, std::size_t column, ViewCell& cell)>;

// Titles, a rule and the lines, each indented by two. Texts wider than widest cells are cut; 0: never.
void PrintTable(Output& out, const std::vector<ViewColumn>& columns, std::size_t lines, const CellSource& source,
                int widest);

// A text as one line of printable characters: \n, \r, \t, and \u0007 for any other control character.
std::u16string Printable(std::u16string_view text);

} // namespace zntool
