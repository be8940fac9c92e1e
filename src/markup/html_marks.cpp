#include "html_marks.h"

#include "html_tags.h"

#include "foundation/casefold.h"
#include "markup/tag_scan.h"

#include <algorithm>

namespace zn {

using View = std::u16string_view;

namespace {

constexpr int kMarkEnd = 3; // length of "-->" and "]]>"
constexpr int kOpen = -2;   // the close of a tag that is yet to be found

constexpr std::size_t Index(int number) noexcept
{
    return static_cast<std::size_t>(number);
}

// The first place of a text at or behind places that are asked for in rising order.
class RisingSearch {
public:
    RisingSearch(View text, View what) noexcept : text_(text), what_(what) {}
    int Find(int from) noexcept
    {
        if (found_ < from) {
            const char16_t* end = text_.data() + text_.size();
            const char16_t* at = text_.data() + from;
            at = what_.size() == 1 ? FindUnit(at, end, what_.front()) : FindText(at, end, what_);
            found_ = static_cast<int>(at - text_.data());
        }
        return found_ == static_cast<int>(text_.size()) ? -1 : found_;
    }

private:
    View text_;
    View what_;
    int found_ = -1;
};

// The letters of a name of up to 8 ASCII units, case folded; 0 for any other.
std::uint64_t ShortKey(View name) noexcept
{
    if (name.size() > 8)
        return 0;
    std::uint64_t key = 0;
    for (const char16_t unit : name) {
        if (unit >= 0x80)
            return 0;
        key = key << 8 | FoldCase(unit);
    }
    return key;
}

} // namespace

int HtmlNames::NumberOf(View name)
{
    const std::uint64_t key = ShortKey(name);
    if (key == 0)
        return Enter(name);
    Recent& recent = recent_[static_cast<std::size_t>(key * 0x9E3779B97F4A7C15u >> 56)];
    if (recent.key != key)
        recent = {key, Enter(name)};
    return recent.number;
}

int HtmlNames::Enter(View name)
{
    std::u16string folded(name);
    std::transform(folded.begin(), folded.end(), folded.begin(), FoldCase);
    const auto [entry, isNew] = numbers_.try_emplace(std::move(folded), Count());
    if (isNew)
        styles_.push_back(HtmlStyleOf(name));
    return entry->second;
}

// The pass over the text.
class HtmlMarks::Scan {
public:
    explicit Scan(HtmlMarks& marks) noexcept
        : marks_(marks), begin_(marks.text_.data()), end_(begin_ + marks.text_.size()), comments_(marks.text_, u"-->"),
          sections_(marks.text_, u"]]>"), ends_(marks.text_, u">")
    {
    }

    void Run()
    {
        for (const char16_t* at = begin_; (at = FindUnit(at, end_, u'<')) != end_ && at + 1 != end_;) {
            if (at[1] == u'/')
                at = ReadEndTag(at, at + 2);
            else if (at[1] == u'!')
                at = ReadSpecial(at, at + 1);
            else if (const std::ptrdiff_t length = HtmlNameLength(at + 1, end_))
                at = ReadTag(at, at + 1, at + 1 + length);
            else
                ++at;
        }
    }

private:
    int PlaceOf(const char16_t* at) const noexcept { return static_cast<int>(at - begin_); }

    void Add(const char16_t* at, const char16_t* nameEnd, HtmlMark::Kind kind, int close, int name = 0)
    {
        const bool whole = nameEnd != end_ && IsNameEnd(*nameEnd);
        marks_.marks_.push_back({PlaceOf(at), PlaceOf(nameEnd), close, name, kind, whole, false});
    }
    // These return a place to look for the next mark from.
    const char16_t* ReadSpecial(const char16_t* at, const char16_t* name)
    {
        if (BeginsWith(name, end_, u"!--"))
            Add(at, name + 3, HtmlMark::Comment, comments_.Find(PlaceOf(name + 3)));
        else if (BeginsWith(name, end_, u"![CDATA["))
            Add(at, name + 8, HtmlMark::CData, sections_.Find(PlaceOf(name + 8)));
        else if (BeginsWith(name, end_, u"!DOCTYPE"))
            return ReadClose(at, name + 8, HtmlMark::Declaration);
        return name;
    }
    const char16_t* ReadTag(const char16_t* at, const char16_t* name, const char16_t* nameEnd)
    {
        if (*name == u'?') {
            marks_.hasInstructions_ = true;
            Add(at, nameEnd, HtmlMark::ProcInstr, -1);
            return nameEnd;
        }
        const int number = marks_.names_.NumberOf(View(name, static_cast<std::size_t>(nameEnd - name)));
        if (marks_.names_.StyleOf(number) == Zn_DOMElement::Text)
            return nameEnd;
        return ReadClose(at, nameEnd, HtmlMark::Start, number);
    }
    // Nearly every tag ends before the next "<"; the others wait until all marks are known.
    const char16_t* ReadClose(const char16_t* at, const char16_t* nameEnd, HtmlMark::Kind kind, int name = 0)
    {
        const char16_t* close = FindUnit(nameEnd, end_, u'>', u'<');
        const bool closed = close != end_ && *close == u'>';
        marks_.hasOpenTags_ = marks_.hasOpenTags_ || !closed;
        Add(at, nameEnd, kind, closed ? PlaceOf(close) : kOpen, name);
        marks_.SetEmpty(marks_.marks_.back());
        return close;
    }
    const char16_t* ReadEndTag(const char16_t* at, const char16_t* name)
    {
        const char16_t* stop = name;
        while (stop != end_ && IsHtmlNameUnit(*stop))
            ++stop;
        if (stop == end_ || stop == name || !IsNameEnd(*stop))
            return stop;
        const int number = marks_.names_.NumberOf(View(name, static_cast<std::size_t>(stop - name)));
        Add(at, stop, HtmlMark::End, *stop == u'>' ? PlaceOf(stop) : ends_.Find(PlaceOf(stop)), number);
        return stop;
    }

    HtmlMarks& marks_;
    const char16_t* begin_;
    const char16_t* end_;
    RisingSearch comments_;
    RisingSearch sections_;
    RisingSearch ends_;
};

HtmlMarks::HtmlMarks(View text) : text_(text)
{
    constexpr std::size_t kUnitsOfMark = 12; // about; few pages have more marks, and room that stays is not touched
    marks_.reserve(text.size() / kUnitsOfMark);
    Scan(*this).Run();
    if (hasOpenTags_ || hasInstructions_)
        FindCloses();
}

void HtmlMarks::SetEmpty(HtmlMark& mark) const noexcept
{
    mark.empty = mark.close > mark.nameEnd && text_[Index(mark.close - 1)] == u'/';
}

int HtmlMarks::FirstFrom(int place, int index) const noexcept
{
    if (index >= Count() || marks_[Index(index)].at >= place)
        return std::min(index, Count());
    const auto found = std::partition_point(marks_.begin() + index, marks_.end(),
                                            [place](const HtmlMark& mark) { return mark.at < place; });
    return static_cast<int>(found - marks_.begin());
}

int HtmlMarks::After(int index) const noexcept
{
    const HtmlMark& mark = marks_[Index(index)];
    const bool section = mark.kind == HtmlMark::Comment || mark.kind == HtmlMark::CData;
    return mark.close + (section ? kMarkEnd : 1);
}

// The ">" that ends a tag within a part of the text that begins no comment; -1 when there is none.
int HtmlMarks::CloseWithin(int from, int to, bool instruction) const noexcept
{
    const char16_t* begin = text_.data();
    const TagEnd found = FindTagEnd(begin + from, begin + to, instruction ? Markup::ProcInstr : Markup::Element);
    return found.at ? static_cast<int>(found.next - begin) - 1 : -1;
}

// For each mark, the ">" that ends a tag which begins before it and goes on there: comments are skipped.
std::vector<int> HtmlMarks::ClosesFromMarks(bool instructions) const
{
    const int count = Count();
    std::vector<int> closes(marks_.size() + 1, -1);
    int lastComment = count; // comments that end at the same place lead to the same ">"
    for (int i = count; i-- > 0;) {
        const HtmlMark& mark = marks_[Index(i)];
        int from = mark.at;
        int next = i + 1;
        if (mark.kind == HtmlMark::Comment) {
            if (mark.close < 0)
                continue;
            if (lastComment < count && marks_[Index(lastComment)].close == mark.close) {
                closes[Index(i)] = closes[Index(lastComment)];
                continue;
            }
            lastComment = i;
            from = After(i);
            next = FirstFrom(from, next);
        }
        const int to = next < count ? marks_[Index(next)].at : static_cast<int>(text_.size());
        const int close = CloseWithin(from, to, instructions);
        closes[Index(i)] = close >= 0 ? close : closes[Index(next)];
    }
    return closes;
}

// Of the tags that are not closed before the next "<".
void HtmlMarks::FindCloses()
{
    const std::vector<int> tags = hasOpenTags_ ? ClosesFromMarks(false) : std::vector<int>();
    const std::vector<int> instructions = hasInstructions_ ? ClosesFromMarks(true) : std::vector<int>();
    for (int i = 0; i < Count(); ++i) {
        HtmlMark& mark = marks_[Index(i)];
        if (mark.kind == HtmlMark::ProcInstr) {
            // Not from the mark itself: in "<?>" the "?" belongs to the name.
            const int to = i + 1 < Count() ? marks_[Index(i + 1)].at : static_cast<int>(text_.size());
            const int close = CloseWithin(mark.nameEnd, to, true);
            mark.close = close >= 0 ? close : instructions[Index(i + 1)];
        } else if (mark.close == kOpen) {
            mark.close = tags[Index(i)];
        } else {
            continue;
        }
        SetEmpty(mark);
    }
}

} // namespace zn
