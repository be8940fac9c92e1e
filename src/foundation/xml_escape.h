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
// Copies the ASCII at the front of text that needs no escape (as far as its ends are no white space) and returns
// its length. out has room for all of text.
std::size_t CopyPlainXml(std::u16string_view text, char* out) noexcept;
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

// Escapes text whose ends are not those of the whole.
template <class Sink>
void AppendXmlMiddle(std::u16string_view text, Sink& sink)
{
    char16_t escape[kReferenceRoom];
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t special = FindXmlSpecial(text, at);
        Append(sink, text.substr(at, special - at));
        if (special < text.size())
            Append(sink, std::u16string_view(escape, WriteXmlEscape(text[special], escape)));
        at = special + 1;
    }
}

// How blanks at the ends of a text are written. Plain ones are for readers that take them for part of the text;
// a text of nothing but white space has them as references all the same.
enum class EndBlanks { Reference, Plain };

template <class Sink>
void AppendXml(std::u16string_view text, Sink& sink, EndBlanks blanks = EndBlanks::Reference)
{
    std::size_t end = text.size();
    while (end > 0 && zn_isspace(text[end - 1]))
        --end;
    const auto putSpace = [&](char16_t unit) {
        char16_t reference[kReferenceRoom];
        if (unit == u' ' && blanks == EndBlanks::Plain && end > 0)
            Append(sink, std::u16string_view(&unit, 1));
        else
            Append(sink, std::u16string_view(reference, WriteXmlReference(unit, reference)));
    };
    std::size_t at = 0;
    for (; at < end && zn_isspace(text[at]); ++at)
        putSpace(text[at]);
    AppendXmlMiddle(text.substr(at, end - at), sink);
    for (at = end; at < text.size(); ++at)
        putSpace(text[at]);
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
