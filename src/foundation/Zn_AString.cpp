#include "Zn_AString.h"

#include "foundation/encoding.h"
#include "foundation/format_text.h"
#include "foundation/number_text.h"

void Zn_AString::Set(const char16_t* text, int length, unsigned codePage)
{
    zn::AssignWhole(*this, [&](auto& sink) { zn::EncodeText(zn::ViewOf(text, length), codePage, sink); });
}

void Zn_AString::Set(long value)
{
    char text[zn::kNumberRoom];
    AssignView(zn::NumberView(value, text));
}

void Zn_AString::Set(double value)
{
    char text[zn::kNumberRoom];
    AssignView(zn::NumberView(value, text));
}

Zn_AString& Zn_AString::operator+=(const char16_t* text)
{
    zn::AppendWhole(*this, [&](auto& sink) { zn::EncodeText(zn::ViewOf(text), 0, sink); });
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
    zn::AssignWhole(*this, [&](auto& sink) { zn::FormatText(sink, ViewOf(format), args); });
    return GetText();
}
