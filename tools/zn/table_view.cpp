#include "table_view.h"

#include "cell_text.h"
#include "display_width.h"

#include <algorithm>

namespace zntool {
namespace {

constexpr std::string_view kGap = "  ";
constexpr char16_t kCut = u'\u2026';

bool IsControl(char16_t ch)
{
    return ch < 0x20 || (ch >= 0x7F && ch < 0xA0) || (ch >= 0x200E && ch <= 0x200F) || (ch >= 0x2028 && ch <= 0x202E) ||
           (ch >= 0x2066 && ch <= 0x2069); // the last three would break or turn the line around
}

void AppendEscape(char16_t ch, std::u16string& out)
{
    constexpr std::u16string_view kDigits = u"0123456789abcdef";
    out += u'\\';
    if (ch == u'\n' || ch == u'\r' || ch == u'\t') {
        out += ch == u'\n' ? u'n' : ch == u'\r' ? u'r' : u't';
        return;
    }
    out += u'u';
    for (int shift = 12; shift >= 0; shift -= 4)
        out += kDigits[static_cast<std::size_t>(ch >> shift & 0xF)];
}

// Cuts a printable text to a width; the last cell of a cut one is an ellipsis.
void Cut(std::u16string& text, int& width, int widest)
{
    if (widest <= 0 || width <= widest)
        return;
    std::size_t pos = 0;
    for (width = 1; pos < text.size();) {
        std::size_t next = pos;
        const int more = CodePointWidth(NextCodePoint(text, next));
        if (width + more > widest)
            break;
        width += more;
        pos = next;
    }
    text.resize(pos);
    text += kCut;
}

// Makes a text fit for its column and returns its width.
int Fit(std::u16string& text, int widest)
{
    if (std::any_of(text.begin(), text.end(), IsControl))
        text = Printable(text);
    int width = DisplayWidth(text);
    Cut(text, width, widest);
    return width;
}

class LineWriter {
public:
    LineWriter(Output& out, const std::vector<ViewColumn>& columns, const std::vector<int>& widths)
        : out_(out), columns_(columns), widths_(widths)
    {
    }

    // A line's blanks are written only when something follows them.
    void Put(std::size_t column, const std::u16string& text, int width, Style style)
    {
        const auto room = static_cast<std::size_t>(widths_[column] - width);
        blanks_.append(kGap);
        if (columns_[column].right)
            blanks_.append(room, ' ');
        if (!text.empty()) {
            out_.Write(blanks_);
            out_.Write(ToUtf8(text), style);
            blanks_.clear();
        }
        if (!columns_[column].right)
            blanks_.append(room, ' ');
    }
    void End()
    {
        blanks_.clear();
        out_.Write("\n");
    }

private:
    Output& out_;
    const std::vector<ViewColumn>& columns_;
    const std::vector<int>& widths_;
    std::string blanks_;
};

} // namespace

std::u16string Printable(std::u16string_view text)
{
    std::u16string out;
    for (const char16_t ch : text) {
        if (IsControl(ch))
            AppendEscape(ch, out);
        else
            out += ch;
    }
    return out;
}

void PrintTable(Output& out, const std::vector<ViewColumn>& columns, std::size_t lines, const CellSource& source,
                int widest)
{
    std::vector<int> widths;
    std::vector<std::u16string> titles;
    for (const ViewColumn& column : columns) {
        titles.push_back(column.title);
        widths.push_back(Fit(titles.back(), 0));
    }
    ViewCell cell;
    const auto load = [&](std::size_t line, std::size_t column) {
        cell.text.clear();
        cell.style = Style::Plain;
        source(line, column, cell);
        return Fit(cell.text, widest);
    };
    for (std::size_t line = 0; line < lines; ++line) {
        for (std::size_t column = 0; column < columns.size(); ++column)
            widths[column] = std::max(widths[column], load(line, column));
    }

    LineWriter writer(out, columns, widths);
    for (std::size_t column = 0; column < columns.size(); ++column)
        writer.Put(column, titles[column], DisplayWidth(titles[column]), Style::Title);
    writer.End();
    for (std::size_t column = 0; column < columns.size(); ++column)
        writer.Put(column, std::u16string(static_cast<std::size_t>(widths[column]), u'-'), widths[column],
                   Style::Faint);
    writer.End();
    for (std::size_t line = 0; line < lines; ++line) {
        for (std::size_t column = 0; column < columns.size(); ++column) {
            const int width = load(line, column);
            writer.Put(column, cell.text, width, cell.style);
        }
        writer.End();
    }
}

} // namespace zntool
