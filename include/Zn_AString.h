// 8-bit text. Which code page it is in is the caller's knowledge; it is named where text is converted.
// One string belongs to one thread at a time; copies share their text and may live in other threads.
#pragma once

#include "Zn_StringBase.h"

#include <cstdarg>

class Zn_AString;
class Zn_Buffer;

class ZN_API Zn_AString : public Zn_StringBase<char, Zn_AString> {
public:
    Zn_AString() noexcept = default;
    Zn_AString(const Zn_AString&) noexcept = default;
    Zn_AString(Zn_AString&&) noexcept = default;
    // A length of -1 means up to the terminator; a null pointer is the empty text.
    Zn_AString(const char* text, int length = -1) { Set(text, length); }
    Zn_AString(std::string_view text) { Set(text); }
    // Converts wide text to a code page (0: the locale's).
    Zn_AString(const char16_t* text, int length, unsigned codePage) { Set(text, length, codePage); }
    Zn_AString& operator=(const Zn_AString&) noexcept = default;
    Zn_AString& operator=(Zn_AString&&) noexcept = default;
    Zn_AString& operator=(const char* text)
    {
        Set(text);
        return *this;
    }
    Zn_AString& operator=(std::string_view text)
    {
        Set(text);
        return *this;
    }

    void Set(const Zn_AString& other) { *this = other; }
    void Set(const char* text, int length = -1) { AssignView(ViewOf(text, length)); }
    void Set(std::string_view text) { AssignView(text); }
    void Set(const char16_t* text, int length, unsigned codePage);
    // Decimal text, by the rules of Zn_WString::Set.
    void Set(int value) { Set(static_cast<long>(value)); }
    void Set(long value);
    void Set(double value);

    Zn_AString& operator+=(const Zn_AString& other)
    {
        AppendView(other.GetView());
        return *this;
    }
    Zn_AString& operator+=(const char* text)
    {
        AppendView(ViewOf(text));
        return *this;
    }
    Zn_AString& operator+=(std::string_view text)
    {
        AppendView(text);
        return *this;
    }
    Zn_AString& operator+=(char ch)
    {
        AppendView(View(&ch, 1));
        return *this;
    }
    // Wide text, converted to the locale's code page.
    Zn_AString& operator+=(const char16_t* text);

    // printf rules; %s takes const char*, %ls const char16_t*; otherwise as Zn_WString::Format.
    const char* Format(const char* format, ...);
    const char* Formatv(const char* format, std::va_list args);

    // Decodes Base64 (RFC 4648), skipping every character outside its alphabet, up to the first "=".
    Zn_Buffer DecodeBase64() const;
};

static_assert(sizeof(Zn_AString) == sizeof(void*), "zeroed memory of one pointer is an empty string");
