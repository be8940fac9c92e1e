#include "Zn_WString.h"

#include "foundation/encoding.h"
#include "foundation/format_text.h"
#include "foundation/number_text.h"
#include "foundation/utf8.h"
#include "foundation/xml_escape.h"

const Zn_WString Zn_WString::_ZnNullString;

void Zn_WString::Set(const char* text, int length, unsigned codePage)
{
    const std::string_view bytes = !text        ? std::string_view()
                                   : length < 0 ? std::string_view(text)
                                                : std::string_view(text, static_cast<std::size_t>(length));
    Zn_WString decoded;
    zn::DecodeText(bytes, codePage, decoded);
    *this = std::move(decoded);
}

void Zn_WString::Set(int value)
{
    Empty();
    *this += value;
}

void Zn_WString::Set(double value)
{
    Empty();
    *this += value;
}

Zn_WString& Zn_WString::operator+=(const char* text)
{
    if (text)
        zn::DecodeText(text, 0, *this);
    return *this;
}

Zn_WString& Zn_WString::operator+=(char ch)
{
    zn::DecodeText(std::string_view(&ch, 1), 0, *this);
    return *this;
}

Zn_WString& Zn_WString::operator+=(int value)
{
    char16_t text[zn::kNumberRoom];
    AppendView(View(text, static_cast<std::size_t>(zn::WriteInteger(value, text))));
    return *this;
}

Zn_WString& Zn_WString::operator+=(double value)
{
    char16_t text[zn::kNumberRoom];
    AppendView(View(text, static_cast<std::size_t>(zn::WriteDouble(value, text))));
    return *this;
}

Zn_WString Zn_WString::EncodeXml() const
{
    if (!zn::NeedsXmlEscape(GetView()))
        return *this;
    Zn_WString encoded;
    encoded.Reserve(GetLength() + GetLength() / 8 + 8);
    zn::AppendXml(GetView(), encoded);
    return encoded;
}

Zn_WString Zn_WString::DecodeXml() const
{
    if (Find(u'&') < 0)
        return *this;
    Zn_WString decoded;
    decoded.Reserve(GetLength());
    zn::AppendDecodedXml(GetView(), decoded);
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
    Zn_WString text;
    zn::FormatText(text, ViewOf(format), args);
    *this = std::move(text);
    return GetText();
}

Zn_WString Zn_WString::FromUtf8(std::string_view text)
{
    Zn_WString decoded;
    zn::DecodeText(text, zn::kUtf8, decoded);
    return decoded;
}

std::string Zn_WString::ToUtf8() const
{
    std::string utf8;
    zn::EncodeText(GetView(), zn::kUtf8, utf8);
    return utf8;
}
