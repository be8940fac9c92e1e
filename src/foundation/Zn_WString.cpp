#include "Zn_WString.h"

#include "Zn_CodePage.h"

#include "foundation/encoding.h"
#include "foundation/format_text.h"
#include "foundation/number_text.h"
#include "foundation/utf8.h"
#include "foundation/xml_escape.h"

#include <iterator>
#include <new>

const Zn_WString Zn_WString::_ZnNullString;

void Zn_WString::Set(const char* text, int length, unsigned codePage)
{
    // Short UTF-8 is what messages are made of: one allocation of the right size.
    constexpr std::size_t kShort = 128;
    const std::string_view bytes = zn::ViewOf(text, length);
    if (bytes.size() <= kShort && zn_activecodepage(codePage) == zn::kUtf8) {
        char16_t units[kShort + 2];
        AssignView(View(units, zn::DecodeUtf8(bytes, units, std::size(units)).written));
        return;
    }
    zn::AssignWhole(*this, [&](auto& sink) { zn::DecodeText(zn::ViewOf(text, length), codePage, sink); });
}

void Zn_WString::Set(long value)
{
    char16_t text[zn::kNumberRoom];
    AssignView(zn::NumberView(value, text));
}

void Zn_WString::Set(double value)
{
    char16_t text[zn::kNumberRoom];
    AssignView(zn::NumberView(value, text));
}

Zn_WString& Zn_WString::operator+=(const char* text)
{
    zn::AppendWhole(*this, [&](auto& sink) { zn::DecodeText(zn::ViewOf(text), 0, sink); });
    return *this;
}

Zn_WString& Zn_WString::operator+=(char ch)
{
    zn::AppendWhole(*this, [&](auto& sink) { zn::DecodeText(std::string_view(&ch, 1), 0, sink); });
    return *this;
}

Zn_WString& Zn_WString::operator+=(long value)
{
    char16_t text[zn::kNumberRoom];
    AppendView(zn::NumberView(value, text));
    return *this;
}

Zn_WString& Zn_WString::operator+=(double value)
{
    char16_t text[zn::kNumberRoom];
    AppendView(zn::NumberView(value, text));
    return *this;
}

Zn_WString Zn_WString::EncodeXml() const
{
    if (!zn::NeedsXmlEscape(GetView()))
        return *this;
    Zn_WString encoded;
    encoded.Reserve(GetLength() + GetLength() / 8 + 8);
    zn::AppendWhole(encoded, [&](auto& sink) { zn::AppendXml(GetView(), sink); });
    return encoded;
}

Zn_WString Zn_WString::DecodeXml() const
{
    if (Find(u'&') < 0)
        return *this;
    Zn_WString decoded;
    decoded.Reserve(GetLength());
    zn::AppendWhole(decoded, [&](auto& sink) { zn::AppendDecodedXml(GetView(), sink); });
    return decoded;
}

const char16_t* Zn_WString::Format(const char16_t* format, ...)
{
    std::va_list args;
    va_start(args, format);
    Formatv(format, args);
    va_end(args);
    return GetText();
}

const char16_t* Zn_WString::Formatv(const char16_t* format, std::va_list args)
{
    zn::AssignWhole(*this, [&](auto& sink) { zn::FormatText(sink, ViewOf(format), args); });
    return GetText();
}

Zn_WString Zn_WString::FromUtf8(std::string_view text)
{
    Zn_WString decoded;
    zn::AppendWhole(decoded, [&](auto& sink) { zn::DecodeText(text, zn::kUtf8, sink); });
    return decoded;
}

std::string Zn_WString::ToUtf8() const
{
    try {
        std::string utf8;
        zn::EncodeText(GetView(), zn::kUtf8, utf8);
        return utf8;
    } catch (const std::bad_alloc&) {
        return {};
    }
}
