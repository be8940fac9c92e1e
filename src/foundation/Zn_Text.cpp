#include "Zn_Text.h"

#include "foundation/casefold.h"
#include "foundation/view.h"

#include <algorithm>
#include <limits>

using zn::ViewOf;

namespace {

constexpr char16_t kEmpty[1] = {0};

int ClampLength(std::size_t length) noexcept
{
    return static_cast<int>(std::min<std::size_t>(length, std::numeric_limits<int>::max()));
}

} // namespace

int zn_strlenW(const char16_t* text) noexcept
{
    return ClampLength(ViewOf(text).size());
}

int zn_strcmpW(const char16_t* a, const char16_t* b) noexcept
{
    return zn_compare(ViewOf(a), ViewOf(b));
}

int zn_stricmpW(const char16_t* a, const char16_t* b) noexcept
{
    return zn_strnicmpW(a, b, std::numeric_limits<int>::max());
}

int zn_strnicmpW(const char16_t* a, const char16_t* b, int n) noexcept
{
    a = a ? a : kEmpty;
    b = b ? b : kEmpty;
    for (; n > 0; --n, ++a, ++b) {
        const int difference = zn::FoldCase(*a) - zn::FoldCase(*b);
        if (difference != 0 || *a == 0)
            return difference;
    }
    return 0;
}

char16_t* zn_strncpyW(char16_t* dst, const char16_t* src, int n) noexcept
{
    int i = 0;
    for (; i < n && src && src[i]; ++i)
        dst[i] = src[i];
    for (; i < n; ++i)
        dst[i] = 0;
    return dst;
}

const char16_t* zn_strchrW(const char16_t* text, char16_t ch) noexcept
{
    if (!text)
        return nullptr;
    for (; *text != ch; ++text) {
        if (*text == 0)
            return nullptr;
    }
    return text;
}

const char16_t* zn_strrchrW(const char16_t* text, char16_t ch) noexcept
{
    const char16_t* last = nullptr;
    for (const char16_t* at = text; at; ++at) {
        if (*at == ch)
            last = at;
        if (*at == 0)
            break;
    }
    return last;
}

const char16_t* zn_strstrW(const char16_t* text, const char16_t* what) noexcept
{
    if (!text)
        return nullptr;
    const std::size_t at = ViewOf(text).find(ViewOf(what));
    return at == std::u16string_view::npos ? nullptr : text + at;
}

const char* zn_strrchrA(const char* text, char ch) noexcept
{
    if (!text)
        return nullptr;
    const std::string_view view(text);
    if (ch == 0)
        return text + view.size();
    const std::size_t at = view.rfind(ch);
    return at == std::string_view::npos ? nullptr : text + at;
}

const char* zn_stristrA(const char* text, const char* what) noexcept
{
    if (!text)
        return nullptr;
    const std::string_view in(text);
    const std::string_view sought = ViewOf(what);
    const auto same = [](char a, char b) { return zn::FoldAscii(a) == zn::FoldAscii(b); };
    const auto at = std::search(in.begin(), in.end(), sought.begin(), sought.end(), same) - in.begin();
    return text[at] == 0 && !sought.empty() ? nullptr : text + at;
}

int zn_findskipW(const char16_t* text, int start) noexcept
{
    const std::u16string_view view = ViewOf(text);
    std::size_t at = std::min(view.size(), static_cast<std::size_t>(std::max(start, 0)));
    while (at < view.size() && zn_isspace(view[at]))
        ++at;
    return ClampLength(at);
}

int zn_findrskipW(const char16_t* text, int end) noexcept
{
    const std::u16string_view view = ViewOf(text);
    std::size_t at = end < 0 ? view.size() : std::min(view.size(), static_cast<std::size_t>(end));
    while (at > 0 && zn_isspace(view[at - 1]))
        --at;
    return ClampLength(at) - 1;
}

int zn_compare(std::u16string_view a, std::u16string_view b) noexcept
{
    return a.compare(b);
}

int zn_icompare(std::u16string_view a, std::u16string_view b) noexcept
{
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        if (a[i] == b[i]) [[likely]]
            continue;
        if (const int difference = zn::FoldCase(a[i]) - zn::FoldCase(b[i]))
            return difference;
    }
    return a.size() < b.size() ? -1 : a.size() > b.size();
}

bool zn_iequal(std::u16string_view a, std::u16string_view b) noexcept
{
    if (a.size() != b.size())
        return false;
    // From the end: ids that differ mostly do so there (column1, column2).
    for (const char16_t *first = a.data(), *x = first + a.size(), *y = b.data() + b.size(); x != first;) {
        if (*--x != *--y && zn::FoldCase(*x) != zn::FoldCase(*y))
            return false;
    }
    return true;
}
