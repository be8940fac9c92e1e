// The encoding that 8-bit markup declares about itself, found before it is converted.
#pragma once

#include "Zn_AString.h"
#include "Zn_WString.h"

#include <string>
#include <string_view>

namespace zn {

// The rule of FindTag_A, which callers rely on to the letter. `what` is searched from a start, at first 0.
// When "<" stands before it the answer is the place of that "<"; else the search starts anew behind it. But the
// place found is counted from that start and then used as if it were counted from the beginning, for the
// character tested, the answer and the next start alike. -1 when `what` is not found, and when the search
// would go on forever; -2 for an empty text.
int FindTag(std::string_view what, std::string_view text) noexcept;

// The encoding name in the first XML declaration that has one, into `name`. 1 when there is a declaration (the
// name is empty when none of them has an encoding), 0 when there is none. The time is n log n on any text.
int FindXmlEncoding(std::string_view text, std::string& name) noexcept;

// Copies what follows the word in front of a charset name: "=" and white space are left out, and it ends
// at the given number of quotes.
std::string ReadCharsetName(std::string_view text, int quotes);

// The encoding that an XML text declares by a name; its code page is 0 when the name is unknown.
struct DeclaredEncoding {
    bool found;
    unsigned codePage;
};
DeclaredEncoding FindDeclaredEncoding(std::string_view text);

// 8-bit markup in a code page as wide text, without a byte order mark in front.
Zn_WString DecodeMarkup(std::string_view text, unsigned codePage);

// The two searches in the form in which the readers offer them to derived classes.
int FindTag_A(const char* what, const char* text, int length) noexcept;
int GetCharSet_A(const char* text, int length, Zn_AString& name);

// The text argument of a reader: a length of -1 means up to the terminator, null is empty.
template <class Char>
std::basic_string_view<Char> ViewOfText(const Char* text, int length) noexcept
{
    using View = std::basic_string_view<Char>;
    if (!text)
        return View();
    return length < 0 ? View(text) : View(text, static_cast<std::size_t>(length));
}

} // namespace zn
