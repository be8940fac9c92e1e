#include "foundation/xml_escape.h"

#include "foundation/utf8.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>

#if defined(__SSE2__) || defined(_M_X64)
#    include <emmintrin.h>
#endif

namespace zn {

namespace {

struct Entity {
    char16_t unit;
    std::u16string_view text;
};

constexpr Entity kEntities[] = {
    {u'&', u"&amp;"}, {u'<', u"&lt;"}, {u'>', u"&gt;"}, {u'"', u"&quot;"}, {u'\'', u"&apos;"},
};

// The units below U+00A0 that must be escaped: the entities' and every control character but the
// tab and the line feed.
constexpr auto kSpecial = [] {
    std::array<bool, 0xA0> special{};
    for (const Entity& entity : kEntities)
        special[entity.unit] = true;
    for (std::size_t unit = 0; unit < special.size(); ++unit) {
        if (unit < 0x20 || unit >= 0x7F)
            special[unit] = unit != u'\t' && unit != u'\n';
    }
    return special;
}();

#if defined(__SSE2__) || defined(_M_X64)
// How many of eight units are plain for certain: blank to "~", without those of the entities. Writes all eight.
unsigned CopyPlainBlock(const char16_t* text, char* out) noexcept
{
    const auto all = [](int unit) { return _mm_set1_epi16(static_cast<short>(unit)); };
    const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i out_of_range = _mm_or_si128(_mm_subs_epu16(all(0x20), block), _mm_subs_epu16(block, all(0x7E)));
    const __m128i ampersand_or_apostrophe = _mm_cmpeq_epi16(_mm_andnot_si128(all(1), block), all(u'&'));
    const __m128i angle = _mm_cmpeq_epi16(_mm_andnot_si128(all(2), block), all(u'<'));
    const __m128i quote = _mm_cmpeq_epi16(block, all(u'"'));
    const __m128i special = _mm_or_si128(_mm_or_si128(ampersand_or_apostrophe, angle), quote);
    const __m128i plain = _mm_andnot_si128(special, _mm_cmpeq_epi16(out_of_range, _mm_setzero_si128()));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(block, block));
    const auto mask = static_cast<unsigned>(_mm_movemask_epi8(plain));
    return static_cast<unsigned>(std::countr_one(mask)) / 2;
}
#endif

int DigitValue(char16_t ch, unsigned base) noexcept
{
    int value = 99;
    if (ch >= u'0' && ch <= u'9')
        value = ch - u'0';
    else if (ch >= u'a' && ch <= u'f')
        value = ch - u'a' + 10;
    else if (ch >= u'A' && ch <= u'F')
        value = ch - u'A' + 10;
    return value < static_cast<int>(base) ? value : -1;
}

XmlReference ReadNumericReference(std::u16string_view text) noexcept
{
    const bool hex = text.size() > 2 && (text[2] == u'x' || text[2] == u'X');
    const std::size_t first = hex ? 3 : 2;
    const unsigned base = hex ? 16 : 10;
    char32_t code = 0;
    std::size_t at = first;
    for (; at < text.size(); ++at) {
        const int digit = DigitValue(text[at], base);
        if (digit < 0)
            break;
        code = code * base + static_cast<char32_t>(digit);
        if (code > 0x10FFFF)
            return {0, 0};
    }
    if (at == first || at == text.size() || text[at] != u';')
        return {0, 0};
    return {at + 1, code};
}

} // namespace

std::size_t WriteXmlReference(char32_t code, char16_t* out) noexcept
{
    char digits[8];
    const char* const end = std::to_chars(digits, digits + sizeof digits, static_cast<std::uint32_t>(code), 16).ptr;
    char16_t* at = std::copy_n(u"&#x", 3, out);
    at = std::transform(static_cast<const char*>(digits), end, at,
                        [](char ch) { return static_cast<char16_t>(ch >= 'a' ? ch - 'a' + 'A' : ch); });
    *at++ = u';';
    return static_cast<std::size_t>(at - out);
}

std::size_t FindXmlSpecial(std::u16string_view text, std::size_t start) noexcept
{
    for (std::size_t at = start; at < text.size(); ++at) {
        const char16_t unit = text[at];
        if (unit < kSpecial.size()) {
            if (kSpecial[unit])
                return at;
        } else if (IsSurrogate(unit)) {
            if (!IsHighSurrogate(unit) || at + 1 == text.size() || !IsLowSurrogate(text[at + 1]))
                return at;
            ++at;
        }
    }
    return text.size();
}

std::size_t CopyPlainXml(std::u16string_view text, char* out) noexcept
{
    std::size_t at = 0;
    for (;;) {
#if defined(__SSE2__) || defined(_M_X64)
        while (at + 8 <= text.size()) {
            const unsigned count = CopyPlainBlock(text.data() + at, out + at);
            at += count;
            if (count < 8)
                break;
        }
#endif
        if (at == text.size() || text[at] >= 0x80 || kSpecial[text[at]])
            return at;
        out[at] = static_cast<char>(text[at]);
        ++at;
    }
}

std::size_t WriteXmlEscape(char16_t unit, char16_t* out) noexcept
{
    for (const Entity& entity : kEntities) {
        if (entity.unit == unit)
            return entity.text.copy(out, entity.text.size());
    }
    return WriteXmlReference(unit, out);
}

XmlReference ReadXmlReference(std::u16string_view text) noexcept
{
    if (text.size() > 1 && text[1] == u'#')
        return ReadNumericReference(text);
    for (const Entity& entity : kEntities) {
        if (text.starts_with(entity.text))
            return {entity.text.size(), entity.unit};
    }
    return {0, 0};
}

std::size_t PutXmlReference(XmlReference reference, char16_t* out) noexcept
{
    return PutCodePoint(reference.code, out);
}

bool NeedsXmlEscape(std::u16string_view text) noexcept
{
    return !text.empty() &&
           (zn_isspace(text.front()) || zn_isspace(text.back()) || FindXmlSpecial(text, 0) < text.size());
}

} // namespace zn
