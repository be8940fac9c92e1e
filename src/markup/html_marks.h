// All markup of an HTML page in document order: what the reader and the search for the ends of elements work
// on, so that nothing of the page is scanned twice.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace zn {

// The names of tags as numbers, equal for names that differ in case only.
class HtmlNames {
public:
    int NumberOf(std::u16string_view name);
    int StyleOf(int number) const noexcept { return styles_[static_cast<std::size_t>(number)]; }
    int Count() const noexcept { return static_cast<int>(styles_.size()); }

private:
    struct Recent {
        std::uint64_t key = 0;
        int number = 0;
    };
    int Enter(std::u16string_view name);

    std::array<Recent, 256> recent_; // names of up to 8 ASCII letters, by their letters
    std::map<std::u16string, int> numbers_;
    std::vector<int> styles_;
};

struct HtmlMark {
    enum Kind : unsigned char { Comment, CData, Declaration, ProcInstr, Start, End };

    int at;      // the "<"
    int nameEnd; // behind the name, or the mark of a comment or section
    int close;   // the ">" that ends it, of an end tag the next ">"; of a comment or section its "-->" or "]]>"; or -1
    int name;    // of start and end tags
    Kind kind;
    bool whole; // the name ends there: not so in "<tablex"
    bool empty; // ended by "/>"
};

class HtmlMarks {
public:
    explicit HtmlMarks(std::u16string_view text);

    int Count() const noexcept { return static_cast<int>(marks_.size()); }
    const HtmlMark& operator[](int index) const noexcept { return marks_[static_cast<std::size_t>(index)]; }
    // The first mark at or behind a place, looked for from an index on; Count() when there is none.
    int FirstFrom(int place, int index) const noexcept;
    // Where the text goes on behind a mark that has an end.
    int After(int index) const noexcept;
    int StyleOf(const HtmlMark& mark) const noexcept { return names_.StyleOf(mark.name); }
    int NameCount() const noexcept { return names_.Count(); }
    std::u16string_view GetText() const noexcept { return text_; }

private:
    class Scan;
    void SetEmpty(HtmlMark& mark) const noexcept;
    void FindCloses();
    std::vector<int> ClosesFromMarks(bool instructions) const;
    int CloseWithin(int from, int to, bool instruction) const noexcept;

    std::u16string_view text_;
    HtmlNames names_;
    std::vector<HtmlMark> marks_;
    bool hasOpenTags_ = false; // with a "<" between name and end, or no end
    bool hasInstructions_ = false;
};

} // namespace zn
