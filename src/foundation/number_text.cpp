#include "foundation/number_text.h"

#include "Zn_Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace zn {

namespace {

template <class Char>
int Widen(const char* text, std::size_t length, Char* out) noexcept
{
    std::copy_n(text, length, out);
    return static_cast<int>(length);
}

template <class Char>
constexpr bool IsDigit(Char ch) noexcept
{
    return ch >= Char('0') && ch <= Char('9');
}

// The significant digits of a finite number above 0, with the place of the point: 0.d1d2d3... * 10^point.
struct Digits {
    char digits[20];
    int count = 0;
    int point = 0;
};

Digits ShortestDigits(double value) noexcept
{
    char text[32];
    const char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::scientific).ptr;
    Digits result{};
    const char* at = text;
    for (; *at != 'e'; ++at) {
        if (*at != '.')
            result.digits[result.count++] = *at;
    }
    ++at;
    if (*at == '+')
        ++at;
    std::from_chars(at, end, result.point);
    ++result.point;
    return result;
}

char* LayFixed(const Digits& number, char* at) noexcept
{
    if (number.point <= 0) {
        *at++ = '0';
        *at++ = '.';
        at = std::fill_n(at, -number.point, '0');
        at = std::copy_n(number.digits, number.count, at);
    } else if (number.point >= number.count) {
        at = std::copy_n(number.digits, number.count, at);
        at = std::fill_n(at, number.point - number.count, '0');
    } else {
        at = std::copy_n(number.digits, number.point, at);
        *at++ = '.';
        at = std::copy(number.digits + number.point, number.digits + number.count, at);
    }
    return at;
}

char* LayScientific(const Digits& number, char* at) noexcept
{
    *at++ = number.digits[0];
    if (number.count > 1) {
        *at++ = '.';
        at = std::copy(number.digits + 1, number.digits + number.count, at);
    }
    *at++ = 'e';
    return std::to_chars(at, at + 8, number.point - 1).ptr;
}

char* WriteMagnitude(double value, char* out) noexcept
{
    if (value < 9007199254740992.0 && value == std::floor(value)) // whole and exact below 2^53
        return std::to_chars(out, out + 20, static_cast<std::int64_t>(value)).ptr;
    const Digits number = ShortestDigits(value);
    return value >= 1e-5 && value < 1e17 ? LayFixed(number, out) : LayScientific(number, out);
}

// A decimal number brought to the form that std::from_chars takes. Digits beyond what can tell
// two doubles apart are dropped; one '1' stands for them when any is not 0.
class DecimalPrefix {
public:
    template <class Char>
    explicit DecimalPrefix(std::basic_string_view<Char> text) noexcept
    {
        const auto* at = text.data();
        const auto* const end = at + text.size();
        if (at != end && (*at == Char('-') || *at == Char('+')))
            negative_ = *at++ == Char('-');
        at = TakeDigits(at, end, 1);
        if (at != end && *at == Char('.'))
            at = TakeDigits(at + 1, end, 0);
        if (anyDigit_)
            TakeExponent(at, end);
    }

    double Value() noexcept
    {
        double value = 0;
        if (count_ > 0) {
            if (dropped_) {
                digits_[count_++] = '1';
                --exponent_;
            }
            const std::int64_t magnitude = exponent_ + count_; // below 10^magnitude
            if (magnitude > 400)
                value = std::numeric_limits<double>::infinity();
            else if (magnitude >= -400)
                value = Convert(magnitude);
        }
        return negative_ && anyDigit_ ? -value : value;
    }

private:
    // No two doubles and no middle between two need more digits than this.
    static constexpr int kDigits = 770;

    template <class Char>
    const Char* TakeDigits(const Char* at, const Char* end, int beforePoint) noexcept
    {
        for (; at != end && IsDigit(*at); ++at) {
            anyDigit_ = true;
            if (count_ == kDigits) {
                dropped_ |= *at != Char('0');
                exponent_ += beforePoint;
                continue;
            }
            if (count_ > 0 || *at != Char('0'))
                digits_[count_++] = static_cast<char>(*at);
            exponent_ -= 1 - beforePoint;
        }
        return at;
    }

    template <class Char>
    void TakeExponent(const Char* at, const Char* end) noexcept
    {
        if (at == end || (*at != Char('e') && *at != Char('E')))
            return;
        ++at;
        const bool negative = at != end && *at == Char('-');
        if (at != end && (*at == Char('-') || *at == Char('+')))
            ++at;
        constexpr std::int64_t kFar = std::int64_t(1) << 40; // beyond what any text's length makes up for
        std::int64_t exponent = 0;
        for (; at != end && IsDigit(*at); ++at)
            exponent = std::min(exponent * 10 + (*at - Char('0')), kFar);
        exponent_ += negative ? -exponent : exponent;
    }

    double Convert(std::int64_t magnitude) noexcept
    {
        digits_[count_] = 'e';
        char* const end = std::to_chars(digits_ + count_ + 1, digits_ + sizeof digits_, exponent_).ptr;
        double value = 0;
        if (std::from_chars(digits_, end, value).ec == std::errc::result_out_of_range)
            value = magnitude > 0 ? std::numeric_limits<double>::infinity() : 0;
        return value;
    }

    char digits_[kDigits + 32];
    int count_ = 0;
    std::int64_t exponent_ = 0; // the number is digits * 10^exponent
    bool negative_ = false;
    bool anyDigit_ = false;
    bool dropped_ = false;
};

template <class Char>
std::basic_string_view<Char> SkipSpace(std::basic_string_view<Char> text) noexcept
{
    std::size_t at = 0;
    while (at < text.size() && zn_isspace(text[at]))
        ++at;
    return text.substr(at);
}

} // namespace

template <class Char>
int WriteInteger(std::int64_t value, Char (&out)[kNumberRoom]) noexcept
{
    char text[24];
    return Widen(text, static_cast<std::size_t>(std::to_chars(text, text + sizeof text, value).ptr - text), out);
}

template <class Char>
int WriteDouble(double value, Char (&out)[kNumberRoom]) noexcept
{
    if (std::isnan(value))
        return Widen("nan", 3, out);
    char text[kNumberRoom] = {'-'};
    char* const first = std::signbit(value) ? text + 1 : text;
    const char* end = std::isinf(value) ? std::copy_n("inf", 3, first) : WriteMagnitude(std::fabs(value), first);
    return Widen(text, static_cast<std::size_t>(end - text), out);
}

template <class Char>
std::int32_t ReadInteger(std::basic_string_view<Char> text) noexcept
{
    text = SkipSpace(text);
    const bool negative = !text.empty() && text[0] == Char('-');
    if (!text.empty() && (text[0] == Char('-') || text[0] == Char('+')))
        text.remove_prefix(1);
    const std::int64_t limit = std::int64_t(std::numeric_limits<std::int32_t>::max()) + negative;
    std::int64_t value = 0;
    for (const Char ch : text) {
        if (!IsDigit(ch))
            break;
        value = std::min<std::int64_t>(value * 10 + (ch - Char('0')), limit);
    }
    return static_cast<std::int32_t>(negative ? -value : value);
}

template <class Char>
double ReadDouble(std::basic_string_view<Char> text) noexcept
{
    return DecimalPrefix(SkipSpace(text)).Value();
}

template <class Char>
bool IsNumber(std::basic_string_view<Char> text) noexcept
{
    if (!text.empty() && (text[0] == Char('-') || text[0] == Char('+')))
        text.remove_prefix(1);
    const auto points = std::count(text.begin(), text.end(), Char('.'));
    const auto digits = std::count_if(text.begin(), text.end(), IsDigit<Char>);
    return points <= 1 && digits >= 1 && points + digits == static_cast<std::ptrdiff_t>(text.size());
}

#define ZN_INSTANTIATE(Char)                                                                                           \
    template int WriteInteger(std::int64_t, Char(&)[kNumberRoom]) noexcept;                                            \
    template int WriteDouble(double, Char(&)[kNumberRoom]) noexcept;                                                   \
    template std::int32_t ReadInteger(std::basic_string_view<Char>) noexcept;                                          \
    template double ReadDouble(std::basic_string_view<Char>) noexcept;                                                 \
    template bool IsNumber(std::basic_string_view<Char>) noexcept;

ZN_INSTANTIATE(char)
ZN_INSTANTIATE(char16_t)

#undef ZN_INSTANTIATE

} // namespace zn
