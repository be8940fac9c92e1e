#include "cell_text.h"

#include "Zn_ColInfo.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>

namespace zntool {
namespace {

constexpr std::int64_t kUnit = 10000;

// The text as 8-bit characters where it is short and plain enough to be a number.
std::string_view Ascii(std::u16string_view text, std::array<char, 400>& room)
{
    if (text.empty() || text.size() > room.size())
        return {};
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] <= u' ' || text[i] > u'~')
            return {};
        room[i] = static_cast<char>(text[i]);
    }
    return {room.data(), text.size()};
}

template <class Number>
std::optional<Number> ReadNumber(std::u16string_view text)
{
    std::array<char, 400> room{};
    const std::string_view ascii = Ascii(text, room);
    Number number{};
    const auto [end, error] = std::from_chars(ascii.data(), ascii.data() + ascii.size(), number);
    if (ascii.empty() || error != std::errc() || end != ascii.data() + ascii.size())
        return std::nullopt;
    return number;
}

std::optional<double> ReadDecimal(std::u16string_view text)
{
    const std::optional<double> number = ReadNumber<double>(text);
    return number && std::isfinite(*number) ? number : std::nullopt;
}

// Sign, units, point and up to four decimals, exactly.
std::optional<Zn_Currency> ReadAmount(std::u16string_view text)
{
    const bool negative = text.starts_with(u'-');
    if (negative)
        text.remove_prefix(1);
    std::u16string digits(text);
    const std::size_t point = digits.find(u'.');
    if (point != std::u16string::npos)
        digits.erase(point, 1);
    const std::size_t decimals = point == std::u16string::npos ? 0 : digits.size() - point;
    if (digits.empty() || decimals > 4 || digits.find_first_not_of(u"0123456789") != std::u16string::npos)
        return std::nullopt;
    digits.append(4 - decimals, u'0');
    if (negative)
        digits.insert(0, 1, u'-');
    const std::optional<std::int64_t> raw = ReadNumber<std::int64_t>(digits);
    return raw ? std::optional(Zn_Currency::FromRaw(*raw)) : std::nullopt;
}

std::u16string AmountText(const Zn_Currency& amount)
{
    const std::int64_t raw = amount.GetRaw();
    const std::uint64_t size = raw < 0 ? 0 - static_cast<std::uint64_t>(raw) : static_cast<std::uint64_t>(raw);
    std::string text = (raw < 0 ? "-" : "") + std::to_string(size / kUnit);
    std::string decimals = std::to_string(size % kUnit + kUnit);
    decimals[0] = '.';
    text += decimals.substr(0, decimals.find_last_not_of('0') + 1);
    if (text.back() == '.')
        text.pop_back();
    return {text.begin(), text.end()};
}

std::optional<Zn_Buffer> ReadBase64(std::u16string_view text)
{
    std::string ascii;
    for (const char16_t ch : text) {
        if (ch > u'~')
            return std::nullopt;
        ascii += static_cast<char>(ch);
    }
    const Zn_Buffer bytes = Zn_AString(std::string_view(ascii)).DecodeBase64();
    if (bytes.EncodeBase64() != std::string_view(ascii))
        return std::nullopt;
    return bytes;
}

template <class T>
bool Take(const std::optional<T>& read, Zn_Variant& value)
{
    if (read)
        value = Zn_Variant(*read);
    return read.has_value();
}

int TwoDigits(std::u16string_view text, std::size_t pos)
{
    return (text[pos] - u'0') * 10 + text[pos + 1] - u'0';
}

} // namespace

std::string ToUtf8(std::u16string_view text)
{
    return Zn_WString(text).ToUtf8();
}

std::string Counted(long long count, const std::string& noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

bool FromUtf8(std::string_view bytes, Zn_WString& text)
{
    text = Zn_WString::FromUtf8(bytes);
    return text.ToUtf8() == bytes;
}

bool IsNothing(const Zn_Variant* value)
{
    return !value || value->type <= Zn_Variant::Null;
}

bool SaysSame(const Zn_Variant* a, const Zn_Variant* b)
{
    if (IsNothing(a) || IsNothing(b))
        return IsNothing(a) && IsNothing(b);
    return *a == *b || TextOf(a) == TextOf(b);
}

void AppendText(const Zn_Variant* value, std::u16string& out)
{
    if (IsNothing(value))
        return;
    switch (value->type) {
    case Zn_Variant::String:
        out += value->GetConstStr()->GetView();
        break;
    case Zn_Variant::Currency:
        out += AmountText(*value->GetConstCurrency());
        break;
    case Zn_Variant::Binary: {
        const Zn_AString text = value->GetConstBinary()->EncodeBase64();
        out.append(text.GetText(), text.GetText() + text.GetLength());
        break;
    }
    default:
        out += value->ToString().GetView();
    }
}

std::u16string TextOf(const Zn_Variant* value)
{
    std::u16string text;
    AppendText(value, text);
    return text;
}

std::string ParseValue(std::u16string_view text, short columnType, Zn_Variant& value)
{
    bool read = true;
    const char* form = "";
    switch (columnType) {
    case Zn_ColInfo::Int:
        read = Take(ReadNumber<std::int32_t>(text), value);
        form = " (a whole number of 32 bits)";
        break;
    case Zn_ColInfo::Decimal:
        read = Take(ReadDecimal(text), value);
        break;
    case Zn_ColInfo::Currency:
        read = Take(ReadAmount(text), value);
        form = " (up to four decimals)";
        break;
    case Zn_ColInfo::Blob:
        read = Take(ReadBase64(text), value);
        form = " (bytes are given in Base64)";
        break;
    case Zn_ColInfo::Date:
        read = IsDate(text);
        form = " (YYYYMMDD, hhmmss may follow)";
        [[fallthrough]];
    default:
        value = Zn_Variant(text);
    }
    return read ? std::string() : "'" + ToUtf8(text) + "' is no " + ToUtf8(Zn_ColList::GetTypeStr(columnType)) + form;
}

bool IsInt(std::u16string_view text)
{
    return ReadNumber<std::int32_t>(text).has_value();
}

bool IsDecimal(std::u16string_view text)
{
    return ReadDecimal(text).has_value();
}

bool IsDate(std::u16string_view text)
{
    if (text.size() < 8 || text.size() > 14 || text.size() % 2 != 0 ||
        text.find_first_not_of(u"0123456789") != std::u16string_view::npos)
        return false;
    const int year = TwoDigits(text, 0) * 100 + TwoDigits(text, 2);
    const int month = TwoDigits(text, 4);
    const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    const int days = month == 2 ? (leap ? 29 : 28) : month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
    const int day = TwoDigits(text, 6);
    if (year == 0 || month < 1 || month > 12 || day < 1 || day > days)
        return false;
    constexpr int kLimits[] = {24, 60, 60};
    for (std::size_t pos = 8, part = 0; pos < text.size(); pos += 2, ++part) {
        if (TwoDigits(text, pos) >= kLimits[part])
            return false;
    }
    return true;
}

} // namespace zntool
