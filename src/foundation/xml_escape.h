// The escaping of XML text, on views and into any sink of 16-bit text, so that readers and writers
// of messages build no strings in between.
//
// AppendXml writes & < > " ' as entities, and as numeric references CR, control characters, unpaired
// surrogates and white space at either end; AppendDecodedXml is its reverse, and reads every numeric
// reference. What else begins with "&" stays as it stands.
#pragma once

#include "foundation/encoding.h"

#include <string_view>

namespace zn {

// Room for any entity or reference that is written.
constexpr std::size_t kReferenceRoom = 16;

// Writes "&#x...;" and returns its length.
std::size_t WriteXmlReference(char32_t code, char16_t* out) noexcept;

// Index of the first character from start on that must be escaped; the text's size when there is none.
// The white space at the text's ends is not looked at.
std::size_t FindXmlSpecial(std::u16string_view text, std::size_t start) noexcept;
// What stands for one character that must be escaped; returns its length.
std::size_t WriteXmlEscape(char16_t unit, char16_t* out) noexcept;

// The character reference or entity at the front of text, which begins with "&".
struct XmlReference {
    std::size_t length; // 0: none stands there
    char32_t code;
};
XmlReference ReadXmlReference(std::u16string_view text) noexcept;
// Writes the code point of a reference as units and returns how many (1 or 2).
std::size_t PutXmlReference(XmlReference reference, char16_t* out) noexcept;

// Whether escaping changes the text.
bool NeedsXmlEscape(std::u16string_view text) noexcept;

template <class Sink>
void AppendXml(std::u16string_view text, Sink& sink)
{
    char16_t escape[kReferenceRoom];
    const auto put = [&](char16_t unit, auto write) { Append(sink, std::u16string_view(escape, write(unit, escape))); };
    std::size_t end = text.size();
    while (end > 0 && zn_isspace(text[end - 1]))
        --end;
    std::size_t at = 0;
    for (; at < end && zn_isspace(text[at]); ++at)
        put(text[at], WriteXmlReference);
    while (at < end) {
        const std::size_t special = FindXmlSpecial(text.substr(0, end), at);
        Append(sink, text.substr(at, special - at));
        if (special < end)
            put(text[special], WriteXmlEscape);
        at = special + 1;
    }
    for (at = end; at < text.size(); ++at)
        put(text[at], WriteXmlReference);
}

template <class Sink>
void AppendDecodedXml(std::u16string_view text, Sink& sink)
{
    for (;;) {
        const std::size_t at = text.find(u'&');
        if (at == std::u16string_view::npos)
            break;
        const XmlReference reference = ReadXmlReference(text.substr(at));
        if (reference.length == 0) {
            Append(sink, text.substr(0, at + 1));
            text.remove_prefix(at + 1);
            continue;
        }
        char16_t units[2];
        Append(sink, text.substr(0, at));
        Append(sink, std::u16string_view(units, PutXmlReference(reference, units)));
        text.remove_prefix(at + reference.length);
    }
    Append(sink, text);
}

} // namespace zn
