#include "charset_declaration.h"

#include "Zn_CodePage.h"

#include <algorithm>
#include <exception>
#include <vector>

namespace zn {

namespace {

// FindTag over any way to look up the next place of `what` at or after a position (-1: none).
template <class NextPlace>
int SearchTag(std::string_view text, int whatLength, NextPlace next)
{
    if (text.empty())
        return -2;
    int start = 0;
    int last = -1;
    for (;;) {
        const int place = next(start);
        if (place < 0)
            return -1;
        const int counted = place - start;
        if (counted > 0 && text[static_cast<std::size_t>(counted) - 1] == '<')
            return counted - 1;
        if (counted + whatLength >= static_cast<int>(text.size()))
            return counted;
        // From here on each place is at or before the last one. The same place twice means that the two
        // starts that lead to it follow each other for ever.
        if (place == last)
            return -1;
        last = place;
        start = counted + whatLength;
    }
}

// The places of a word in a text, found once and as far as they are asked for.
class PlaceIndex {
public:
    PlaceIndex(std::string_view word, std::string_view text) noexcept : word_(word), text_(text) {}

    int NextFrom(int position)
    {
        while (!complete_ && (places_.empty() || places_.back() < position))
            FindMore();
        const auto place = std::lower_bound(places_.begin(), places_.end(), position);
        return place == places_.end() ? -1 : *place;
    }

private:
    void FindMore()
    {
        const std::size_t place = text_.find(word_, scanned_);
        complete_ = place == std::string_view::npos;
        if (complete_)
            return;
        places_.push_back(static_cast<int>(place));
        scanned_ = place + 1;
    }

    std::string_view word_;
    std::string_view text_;
    std::size_t scanned_ = 0;
    bool complete_ = false;
    std::vector<int> places_;
};

int FindXmlEncodingIn(std::string_view text, std::string& name)
{
    constexpr std::string_view kDeclaration = "?xml";
    constexpr std::string_view kEncoding = "encoding";
    PlaceIndex places(kDeclaration, text);
    int result = 0;
    for (std::size_t offset = 0;;) {
        const std::string_view rest = text.substr(offset);
        const int begin = SearchTag(rest, static_cast<int>(kDeclaration.size()), [&](int start) {
            const int from = static_cast<int>(offset);
            const int place = places.NextFrom(from + start);
            return place < 0 ? -1 : place - from;
        });
        if (begin < 0)
            return result;
        const std::size_t close = rest.find("?>", static_cast<std::size_t>(begin));
        if (close == std::string_view::npos)
            return result;
        const std::string_view declaration = rest.substr(0, close).substr(static_cast<std::size_t>(begin));
        result = 1;
        const std::size_t encoding = declaration.find(kEncoding);
        if (encoding != std::string_view::npos) {
            name = ReadCharsetName(declaration.substr(encoding + kEncoding.size()), 2);
            return result;
        }
        offset += close + 2;
    }
}

} // namespace

int FindTag(std::string_view what, std::string_view text) noexcept
{
    return SearchTag(text, static_cast<int>(what.size()), [&](int start) {
        const std::size_t place = text.find(what, static_cast<std::size_t>(start));
        return place == std::string_view::npos ? -1 : static_cast<int>(place);
    });
}

int FindXmlEncoding(std::string_view text, std::string& name) noexcept
{
    try {
        name.clear();
        return FindXmlEncodingIn(text, name);
    } catch (const std::exception&) {
        return 0;
    }
}

DeclaredEncoding FindDeclaredEncoding(std::string_view text)
{
    std::string name;
    if (FindXmlEncoding(text, name) == 0 || name.empty())
        return {false, 0};
    return {true, zn_findcodepageA(name.c_str())};
}

Zn_WString DecodeMarkup(std::string_view text, unsigned codePage)
{
    const Zn_WString wide(text.data(), static_cast<int>(text.size()), codePage);
    return wide.GetAt(0) == 0xFEFF ? wide.Mid(1) : wide;
}

int FindTag_A(const char* what, const char* text, int length) noexcept
{
    if (!what || !text || length < 1)
        return -2;
    return FindTag(what, std::string_view(text, static_cast<std::size_t>(length)));
}

int GetCharSet_A(const char* text, int length, Zn_AString& name)
{
    std::string found;
    const int result = length < 1 ? 0 : FindXmlEncoding(ViewOfText(text, length), found);
    name.Set(std::string_view(found));
    return result;
}

std::string ReadCharsetName(std::string_view text, int quotes)
{
    std::string name;
    for (const char ch : text) {
        if (ch == '"' || ch == '\'') {
            if (--quotes == 0)
                break;
        } else if (ch != '=' && ch != ' ' && ch != '\t' && ch != '\r' && ch != '\n') {
            name += ch;
        }
    }
    return name;
}

} // namespace zn
