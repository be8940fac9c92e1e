#include "tag_scan.h"

#include <algorithm>
#include <exception>

namespace zn {

using namespace std::string_view_literals;

namespace {

constexpr std::u16string_view kCommentStart = u"<!--";
constexpr std::u16string_view kCommentEnd = u"-->";

// Whether a ">" (the first unit of the search at `from`) ends a tag of that kind.
bool EndsTag(const char16_t* from, const char16_t* close, Markup kind) noexcept
{
    if (kind != Markup::ProcInstr)
        return true;
    return close > from && (close[-1] == u'?' || close[-1] == u'/');
}

TagEnd MakeEnd(const char16_t* from, const char16_t* close, Markup kind) noexcept
{
    const bool empty = close > from && close[-1] == u'/';
    const bool pair = empty || kind == Markup::ProcInstr;
    return {pair ? close - 1 : close, close + 1, empty ? Markup::EmptyElement : kind};
}

// The first "-->" after a "<!--"; the end of the text when there is none.
const char16_t* FindCommentEnd(const char16_t* comment, const char16_t* end) noexcept
{
    return FindText(comment + kCommentStart.size(), end, kCommentEnd);
}

// The ">" that ends a tag, comments inside it skipped; null when there is none.
const char16_t* FindClose(const char16_t* from, const char16_t* end, Markup kind) noexcept
{
    for (const char16_t* at = from;; ++at) {
        at = FindUnit(at, end, u'>', u'<');
        if (at == end)
            return nullptr;
        if (*at == u'>') {
            if (EndsTag(from, at, kind))
                return at;
        } else if (BeginsWith(at, end, kCommentStart)) {
            const char16_t* close = FindCommentEnd(at, end);
            if (close == end)
                return nullptr;
            at = close + 2;
        }
    }
}

// A DOCTYPE ends at the first ">" after the first "]"; without a "]" it has no end. Callers rely on it. The
// character after that ">" (the line break as a rule) is skipped too, unless markup begins there.
TagEnd FindDoctypeEnd(const char16_t* from, const char16_t* end) noexcept
{
    for (const char16_t* at = from;; ++at) {
        at = FindUnit(at, end, u'>', u'<', u']');
        if (at == end)
            return {};
        if (*at == u'>' && at > from && at[-1] == u'/')
            return MakeEnd(from, at, Markup::Declaration);
        if (*at == u']') {
            const char16_t* close = FindUnit(at, end, u'>');
            if (close == end)
                return {};
            const char16_t* next = close + 1;
            return {close, next != end && *next != u'<' ? next + 1 : next, Markup::Declaration};
        }
        if (*at == u'<' && BeginsWith(at, end, kCommentStart)) {
            at = FindCommentEnd(at, end);
            if (at == end)
                return {};
            at += 2;
        }
    }
}

TagEnd FindSectionEnd(const char16_t* from, const char16_t* end, std::u16string_view mark, Markup kind) noexcept
{
    const char16_t* at = FindText(from, end, mark);
    if (at == end)
        return {};
    return {at, at + mark.size(), kind};
}

} // namespace

std::ptrdiff_t MarkLength(const char16_t* at, const char16_t* end) noexcept
{
    for (const std::u16string_view mark : {u"!--"sv, u"![CDATA["sv}) {
        if (BeginsWith(at, end, mark))
            return static_cast<std::ptrdiff_t>(mark.size());
    }
    return 0;
}

bool BeginsWith(const char16_t* at, const char16_t* end, std::u16string_view upperCase) noexcept
{
    if (end - at < static_cast<std::ptrdiff_t>(upperCase.size()))
        return false;
    for (const char16_t want : upperCase) {
        const char16_t unit = *at++;
        if (unit != want && !(unit >= u'a' && unit <= u'z' && unit - u'a' + u'A' == want))
            return false;
    }
    return true;
}

Markup ClassifySpecial(const char16_t* name, const char16_t* end) noexcept
{
    if (*name == u'?')
        return Markup::ProcInstr;
    if (BeginsWith(name, end, u"!--"))
        return Markup::Comment;
    if (BeginsWith(name, end, u"!DOCTYPE"))
        return Markup::Declaration;
    return BeginsWith(name, end, u"![CDATA[") ? Markup::CData : Markup::Ignored;
}

TagEnd FindTagEnd(const char16_t* at, const char16_t* end, Markup kind) noexcept
{
    switch (kind) {
    case Markup::Comment:
        return FindSectionEnd(at, end, kCommentEnd, kind);
    case Markup::CData:
        return FindSectionEnd(at, end, u"]]>", kind);
    case Markup::Declaration:
        return FindDoctypeEnd(at, end);
    default:
        const char16_t* close = FindClose(at, end, kind);
        return close ? MakeEnd(at, close, kind) : TagEnd{};
    }
}

TagEnd TagEndFinder::Search(const char16_t* at, Markup kind) noexcept
{
    Table& table = kind == Markup::ProcInstr ? instructions_ : elements_;
    if (!table.made) {
        const TagEnd found = FindTagEnd(at, end_, kind);
        if (!found.at)
            table.made = MakeTable(table, at, end_, kind);
        return found;
    }
    // In the table "<?>" looks as if it ended there; its "?" belongs to the name, though.
    const bool closesName = kind == Markup::ProcInstr && at != end_ && *at == u'>';
    const char16_t* close = LookUp(table, closesName ? at + 1 : at);
    return close ? MakeEnd(at, close, kind) : TagEnd{};
}

bool TagEndFinder::MakeTable(Table& table, const char16_t* begin, const char16_t* end, Markup kind) noexcept
{
    // Where a search from here, and from 1 to 3 units further, ends.
    const char16_t* closes[4] = {};
    // The same for the two nearest places after "-->" (the nearest may overlap a "<!--").
    struct {
        const char16_t* at;
        const char16_t* close;
    } comments[2] = {};
    try {
        for (const char16_t* at = end; at-- != begin;) {
            std::copy_backward(closes, closes + 3, closes + 4);
            if (*at == u'>') {
                if (EndsTag(begin, at, kind)) {
                    closes[0] = at;
                    table.steps.push_back({at, at});
                }
            } else if (*at == u'-' &&
                       std::u16string_view(at, std::min<std::size_t>(3, static_cast<std::size_t>(end - at))) ==
                           kCommentEnd) {
                comments[1] = comments[0];
                comments[0] = {at, closes[3]};
            } else if (*at == u'<' && BeginsWith(at, end, kCommentStart)) {
                const auto& comment = comments[0].at && comments[0].at < at + 4 ? comments[1] : comments[0];
                closes[0] = comment.at ? comment.close : nullptr;
                table.steps.push_back({at, closes[0]});
            }
        }
        return true;
    } catch (const std::exception&) {
        table.steps.clear();
        return false;
    }
}

const char16_t* TagEndFinder::LookUp(const Table& table, const char16_t* at) noexcept
{
    // The steps are in falling order: the last one that is not before `at` is where its search is decided.
    const auto step =
        std::partition_point(table.steps.begin(), table.steps.end(), [at](const Step& s) { return s.at >= at; });
    return step == table.steps.begin() ? nullptr : std::prev(step)->close;
}

} // namespace zn
