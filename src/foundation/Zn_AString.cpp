#include "Zn_AString.h"

#include "foundation/encoding.h"
#include "foundation/format_text.h"
#include "foundation/number_text.h"

void Zn_AString::Set(const char16_t* text, int length, unsigned codePage)
{
    Zn_AString encoded;
    if (text)
        zn::EncodeText(length < 0 ? std::u16string_view(text)
                                  : std::u16string_view(text, static_cast<std::size_t>(length)),
                       codePage, encoded);
    *this = std::move(encoded);
}

void Zn_AString::Set(int value)
{
    char text[zn::kNumberRoom];
    AssignView(View(text, static_cast<std::size_t>(zn::WriteInteger(value, text))));
}

void Zn_AString::Set(double value)
{
    char text[zn::kNumberRoom];
    AssignView(View(text, static_cast<std::size_t>(zn::WriteDouble(value, text))));
}

Zn_AString& Zn_AString::operator+=(const char16_t* text)
{
    if (text)
        zn::EncodeText(text, 0, *this);
    return *this;
}

const char* Zn_AString::Format(const char* format, ...)
{
    std::va_list args;
    va_start(args, format);
    Formatv(format, args);
    va_end(args);
    return GetText();
}

const char* Zn_AString::Formatv(const char* format, std::va_list args)
{
    Zn_AString text;
    zn::FormatText(text, ViewOf(format), args);
    *this = std::move(text);
    return GetText();
}
