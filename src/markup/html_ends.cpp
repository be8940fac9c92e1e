#include "html_ends.h"

#include "html_tags.h"

#include "Zn_Text.h"

#include "markup/tag_scan.h"

#include <algorithm>
#include <utility>

namespace zn {

namespace {

using Ints = std::vector<int>;

constexpr std::size_t Index(int number) noexcept
{
    return static_cast<std::size_t>(number);
}

bool IsStart(const HtmlMark& mark) noexcept
{
    return mark.kind == HtmlMark::Start;
}

bool IsTag(const HtmlMark& mark) noexcept
{
    return IsStart(mark) || mark.kind == HtmlMark::End;
}

// A start tag with content to be searched.
bool HasContent(const HtmlMark& mark) noexcept
{
    return IsStart(mark) && mark.close >= 0 && !mark.empty;
}

} // namespace

// The steps of a search from mark to mark, and what it looks for.
struct HtmlEnds::Ways {
    explicit Ways(int marks, int labelCount)
        : count(marks), steps(Index(marks), marks), labels(Index(marks), -1), starts(Index(marks), -1),
          tops(Index(labelCount), marks), hidden(Index(marks), marks)
    {
    }

    // Calls answer(mark) for each mark with a start; First(label) is then the first mark of that label on the way
    // that begins at the start.
    template <class Answer>
    void Walk(Answer answer)
    {
        if (WalkBack(answer))
            return;
        std::fill(tops.begin(), tops.end(), count);
        WalkForest(answer);
    }
    int First(int label) const noexcept { return tops[Index(label)]; }

    int count;
    Ints steps;  // always forward; `count` ends the search
    Ints labels; // -1 for none
    Ints starts; // -1 for none
    Ints tops;   // by label: the nearest mark on the way from the mark of the walk
    Ints hidden; // by mark: the one that had its label before

private:
    using Waiting = std::vector<std::pair<int, int>>; // start and mark

    // One pass from the back, for ways that leave marks out but never part: false when they do, or when one does
    // not start at the next mark.
    template <class Answer>
    bool WalkBack(Answer answer)
    {
        Ints way{count}; // from the next mark on, the nearest last
        for (int i = count; i-- > 0;) {
            if (starts[Index(i)] >= 0) {
                if (starts[Index(i)] != i + 1)
                    return false;
                answer(i);
            }
            for (; way.back() < steps[Index(i)]; way.pop_back())
                Leave(way.back());
            if (way.back() != steps[Index(i)])
                return false;
            Enter(i);
            way.push_back(i);
        }
        return true;
    }

    // Through the marks that lead to each mark, from the ends of all ways on, which stand below the place `count`.
    template <class Answer>
    void WalkForest(Answer answer)
    {
        Ints below(Index(count) + 1, -1), beside(Index(count), -1);
        for (int i = 0; i < count; ++i)
            beside[Index(i)] = std::exchange(below[Index(steps[Index(i)])], i);
        Waiting waiting;
        for (int i = 0; i < count; ++i) {
            if (starts[Index(i)] >= 0 && !IsNext(i))
                waiting.emplace_back(starts[Index(i)], i);
        }
        std::sort(waiting.begin(), waiting.end());
        for (int at = below[Index(count)]; at >= 0;) {
            if (IsNext(at))
                answer(at);
            Enter(at);
            AnswerWaiting(at, waiting, answer);
            int next = below[Index(at)];
            while (next < 0 && at != count) {
                Leave(at);
                next = beside[Index(at)];
                at = next < 0 ? steps[Index(at)] : at;
            }
            at = next;
        }
    }

    bool IsNext(int mark) const noexcept { return starts[Index(mark)] == mark + 1 && steps[Index(mark)] == mark + 1; }
    template <class Answer>
    void AnswerWaiting(int at, const Waiting& waiting, Answer answer)
    {
        if (waiting.empty())
            return;
        for (auto it = std::lower_bound(waiting.begin(), waiting.end(), std::pair(at, -1));
             it != waiting.end() && it->first == at; ++it)
            answer(it->second);
    }
    void Enter(int at) noexcept
    {
        if (const int label = labels[Index(at)]; label >= 0)
            hidden[Index(at)] = std::exchange(tops[Index(label)], at);
    }
    void Leave(int at) noexcept
    {
        if (const int label = labels[Index(at)]; label >= 0)
            tops[Index(label)] = hidden[Index(at)];
    }
};

HtmlEnds::HtmlEnds(const HtmlMarks& marks) : marks_(marks), endings_(Index(marks.Count()), marks.Count())
{
    PairNested();
    EndOptions();
}

// Pairs the tags of elements that nest: only comments are stepped over, and the element's own start tags whole.
void HtmlEnds::PairNested()
{
    const int count = marks_.Count();
    Ways ways(count, marks_.NameCount());
    for (int i = 0; i < count; ++i) {
        const HtmlMark& mark = marks_[i];
        if (mark.kind != HtmlMark::Comment)
            ways.steps[Index(i)] = i + 1;
        else if (mark.close >= 0)
            ways.steps[Index(i)] = marks_.FirstFrom(marks_.After(i), i + 1);
        if (!IsTag(mark) || !IsNestedStyle(marks_.StyleOf(mark)))
            continue;
        ways.labels[Index(i)] = mark.name;
        if (mark.kind == HtmlMark::End)
            ways.starts[Index(i)] = i + 1;
        else if (mark.close >= 0)
            ways.starts[Index(i)] = marks_.FirstFrom(marks_.After(i), i + 1);
    }
    Ints following(Index(count) + 1, count); // the next tag of the name
    ways.Walk([&](int i) { following[Index(i)] = ways.First(marks_[i].name); });

    // From each tag on, the first end tag that is one too many.
    Ints surplus(Index(count) + 1, count);
    for (int i = count; i-- > 0;) {
        if (ways.labels[Index(i)] < 0)
            continue;
        const int after = surplus[Index(following[Index(i)])];
        if (marks_[i].kind == HtmlMark::End) {
            surplus[Index(i)] = i;
        } else if (marks_[i].empty) {
            surplus[Index(i)] = after;
        } else {
            endings_[Index(i)] = after;
            surplus[Index(i)] = surplus[Index(following[Index(after)])];
        }
    }
}

// To which mark the search for the end of a paragraph, table or row goes on.
int HtmlEnds::StepOver(int index) const noexcept
{
    const HtmlMark& mark = marks_[index];
    if (mark.kind == HtmlMark::End || (IsStart(mark) && !IsNestedStyle(marks_.StyleOf(mark))))
        return index + 1;
    int last = index;
    if (HasContent(mark))
        last = endings_[Index(index)];
    if (last == marks_.Count() || marks_[last].close < 0)
        return marks_.Count();
    return marks_.FirstFrom(marks_.After(last), last + 1);
}

void HtmlEnds::EndOptions()
{
    const int count = marks_.Count();
    Ints tags; // those of elements that end so; the ways between them lead over many others
    for (int i = 0; i < count; ++i) {
        if (IsTag(marks_[i]) && IsOptionStyle(marks_.StyleOf(marks_[i])))
            tags.push_back(i);
    }
    if (tags.empty())
        return;
    Ints nextTag(Index(count) + 1, static_cast<int>(tags.size())); // by mark: the first of these tags on its way
    for (int i = count, tag = nextTag.back(); i-- > 0;) {
        const bool isTag = tag > 0 && tags[Index(tag) - 1] == i;
        nextTag[Index(i)] = isTag ? --tag : nextTag[Index(StepOver(i))];
    }
    const int tableEnd = marks_.NameCount(); // the label of "</table"
    Ways ways(static_cast<int>(tags.size()), tableEnd + 1);
    for (std::size_t tag = 0; tag < tags.size(); ++tag) {
        const int i = tags[tag];
        const HtmlMark& mark = marks_[i];
        ways.steps[tag] = nextTag[Index(StepOver(i))];
        // Not the end tags of other names that begin with "table".
        constexpr int kTableEnd = 7;
        const bool endsTable =
            marks_.StyleOf(mark) == Zn_DOMElement::HtmlTable && !IsStart(mark) && mark.nameEnd - mark.at == kTableEnd;
        if (mark.whole)
            ways.labels[tag] = endsTable ? tableEnd : mark.name;
        if (HasContent(mark))
            ways.starts[tag] = nextTag[Index(marks_.FirstFrom(marks_.After(i), i + 1))];
    }
    ways.Walk([&](int tag) {
        const HtmlMark& mark = marks_[tags[Index(tag)]];
        int ending = ways.First(mark.name);
        if (marks_.StyleOf(mark) != Zn_DOMElement::HtmlParagraph)
            ending = std::min(ending, ways.First(tableEnd));
        endings_[Index(tags[Index(tag)])] = ending < ways.count ? tags[Index(ending)] : count;
    });
}

// The first "</" and name; not even the end of the name counts.
HtmlEnds::End HtmlEnds::FindRaw(const HtmlMark& start, int rangeEnd) const noexcept
{
    const char16_t* const text = marks_.GetText().data();
    const char16_t* const end = text + rangeEnd;
    const std::u16string_view name(text + start.at + 1, Index(start.nameEnd - start.at - 1));
    for (const char16_t* at = text + start.close + 1;;) {
        at = FindUnit(at, end, u'<');
        if (at == end)
            return {};
        const char16_t* const rest = at + 2;
        if (BeginsWith(at, end, u"<!--")) {
            at = FindTagEnd(at + 4, end, Markup::Comment).next;
            if (!at)
                return {};
        } else if (end - at >= 2 && at[1] == u'/' && end - rest >= static_cast<std::ptrdiff_t>(name.size()) &&
                   zn_iequal(std::u16string_view(rest, name.size()), name)) {
            const char16_t* close = FindUnit(rest + name.size(), end, u'>');
            return {static_cast<int>(at - text), static_cast<int>((close == end ? end : close + 1) - text)};
        } else {
            ++at;
        }
    }
}

HtmlEnds::End HtmlEnds::Find(int start, int rangeEnd) const noexcept
{
    const int style = marks_.StyleOf(marks_[start]);
    if (style == Zn_DOMElement::HtmlRaw)
        return FindRaw(marks_[start], rangeEnd);
    const int ending = endings_[Index(start)];
    if (ending == marks_.Count() || marks_[ending].nameEnd >= rangeEnd)
        return {};
    const HtmlMark& mark = marks_[ending];
    // Callers rely on it: a table leaves its end tag to what is around it, as a row leaves that of the table.
    if (IsStart(mark) || marks_.StyleOf(mark) == Zn_DOMElement::HtmlTable)
        return {mark.at, mark.at};
    return {mark.at, mark.close < 0 || mark.close >= rangeEnd ? rangeEnd : mark.close + 1};
}

} // namespace zn
