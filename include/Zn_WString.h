// Wide text: UTF-16 code units in native byte order. All text inside the library is Zn_WString;
// 8-bit text is met at the edges only and is converted with a named code page.
//
//     Zn_WString name(u"Seoul");
//     name += u" 2004";
//     std::string utf8 = name.ToUtf8();
//
// One string belongs to one thread at a time; copies share their text and may live in other threads.
#pragma once

#include "Zn_StringBase.h"

#include <cstdarg>

class Zn_AString;

class ZN_API Zn_WString : public Zn_StringBase<char16_t, Zn_WString> {
public:
    Zn_WString() noexcept = default;
    Zn_WString(const Zn_WString&) noexcept = default;
    Zn_WString(Zn_WString&&) noexcept = default;
    // A length of -1 means up to the terminator; a null pointer is the empty text.
    Zn_WString(const char16_t* text, int length = -1) { Set(text, length); }
    Zn_WString(std::u16string_view text) { Set(text); }
    Zn_WString(const char* text, int length, unsigned codePage) { Set(text, length, codePage); }
    Zn_WString& operator=(const Zn_WString&) noexcept = default;
    Zn_WString& operator=(Zn_WString&&) noexcept = default;
    Zn_WString& operator=(const char16_t* text)
    {
        Set(text);
        return *this;
    }
    Zn_WString& operator=(std::u16string_view text)
    {
        Set(text);
        return *this;
    }

    void Set(const Zn_WString& other) { *this = other; }
    void Set(const char16_t* text, int length = -1) { AssignView(ViewOf(text, length)); }
    void Set(std::u16string_view text) { AssignView(text); }
    // Converts 8-bit text from a code page (0: the locale's).
    void Set(const char* text, int length, unsigned codePage);
    // Decimal text of the number. A double gives the shortest text that reads back to the same
    // double, the same in every locale, without exponent from 1e-5 to below 1e17; minus zero is "-0".
    void Set(int value) { Set(static_cast<long>(value)); }
    void Set(long value);
    void Set(double value);

    Zn_WString& operator+=(const Zn_WString& other)
    {
        AppendView(other.GetView());
        return *this;
    }
    Zn_WString& operator+=(const char16_t* text)
    {
        AppendView(ViewOf(text));
        return *this;
    }
    Zn_WString& operator+=(std::u16string_view text)
    {
        AppendView(text);
        return *this;
    }
    // 8-bit text in the locale's code page.
    Zn_WString& operator+=(const char* text);
    Zn_WString& operator+=(char ch);
    Zn_WString& operator+=(char16_t ch)
    {
        AppendView(View(&ch, 1));
        return *this;
    }
    Zn_WString& operator+=(int value) { return *this += static_cast<long>(value); }
    Zn_WString& operator+=(long value);
    Zn_WString& operator+=(double value);

    // The text with & < > " ' as entities; CR, control characters, unpaired surrogates and white space
    // at either end as numeric references, so that DecodeXml gives back exactly this text.
    Zn_WString EncodeXml() const;
    // Reads the five entities and every numeric reference of XML; anything else after "&" stays as it stands.
    Zn_WString DecodeXml() const;

    // printf rules with "." as the point in every locale: %s and %ls take const char16_t*, %hs const char* in the
    // locale's code page, %c char16_t. A null text prints nothing. An unknown conversion prints its characters
    // and drops the "%"; %n is unknown. Widths, and precisions of numbers, count up to 4096. Returns the text.
    const char16_t* Format(const char16_t* format, ...);
    const char16_t* Formatv(const char16_t* format, std::va_list args);

    static Zn_WString FromUtf8(std::string_view text);
    std::string ToUtf8() const;

    // Shared and always empty: what getters return by reference when they have nothing to give.
    static const Zn_WString _ZnNullString;
};

static_assert(sizeof(Zn_WString) == sizeof(void*), "zeroed memory of one pointer is an empty string");

inline Zn_WString operator+(Zn_WString a, const Zn_WString& b)
{
    a += b;
    return a;
}
