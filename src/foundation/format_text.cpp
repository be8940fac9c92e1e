#include "foundation/format_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <type_traits>

namespace zn {

namespace {

enum class Length { None, Char, Short, Long, LongLong, LongDouble, Size, Max, Difference };

struct Spec {
    bool left = false;
    bool plus = false;
    bool blank = false;
    bool alternate = false;
    bool zero = false;
    int width = 0;
    int precision = -1; // -1: none given
    Length length = Length::None;
    char conversion = 0;
};

// The text of a number without its padding: sign or base in front, then the digits.
struct NumberText {
    char prefix[4];
    std::size_t prefixLength = 0;
    std::size_t zeros = 0; // between prefix and digits
    // The digits of the largest long double, a point and the most digits behind it.
    char digits[kMostWidth + 5100];
    std::size_t length = 0;

    void Prefix(char ch) noexcept { prefix[prefixLength++] = ch; }
};

void PutSign(NumberText& text, const Spec& spec, bool negative) noexcept
{
    if (negative)
        text.Prefix('-');
    else if (spec.plus)
        text.Prefix('+');
    else if (spec.blank)
        text.Prefix(' ');
}

void Uppercase(char* first, const char* last) noexcept
{
    for (; first != last; ++first)
        *first = *first >= 'a' && *first <= 'z' ? static_cast<char>(*first - 32) : *first;
}

void WriteUnsigned(NumberText& text, const Spec& spec, std::uint64_t value) noexcept
{
    const bool hex = spec.conversion == 'x' || spec.conversion == 'X' || spec.conversion == 'p';
    const int base = hex ? 16 : spec.conversion == 'o' ? 8 : 10;
    if (hex && ((spec.alternate && value != 0) || spec.conversion == 'p')) {
        text.Prefix('0');
        text.Prefix(spec.conversion == 'X' ? 'X' : 'x');
    }
    if (value != 0 || spec.precision != 0)
        text.length =
            static_cast<std::size_t>(std::to_chars(text.digits, text.digits + 24, value, base).ptr - text.digits);
    if (spec.conversion == 'X')
        Uppercase(text.digits, text.digits + text.length);
    if (spec.precision > static_cast<int>(text.length))
        text.zeros = static_cast<std::size_t>(spec.precision) - text.length;
    if (base == 8 && spec.alternate && text.zeros == 0 && (text.length == 0 || text.digits[0] != '0'))
        text.zeros = 1;
}

// Adds the point that "#" asks for behind the digits of a number that has none.
char* PutPoint(char* first, char* last, char exponent) noexcept
{
    char* const before = std::find(first, last, exponent);
    if (std::find(first, before, '.') != before)
        return last;
    std::copy_backward(before, last, last + 1);
    *before = '.';
    return last + 1;
}

// "%g" that keeps the zeros at its end, as "#" asks for.
template <class Float>
char* WriteGeneralWithZeros(char* first, char* last, Float value, int precision) noexcept
{
    precision = std::max(precision, 1);
    char* const end = std::to_chars(first, last, value, std::chars_format::scientific, precision - 1).ptr;
    const char* mark = std::find(first, end, 'e') + 1;
    int exponent = 0;
    std::from_chars(*mark == '+' ? mark + 1 : mark, end, exponent);
    if (exponent < -4 || exponent >= precision)
        return end;
    return std::to_chars(first, last, value, std::chars_format::fixed, precision - 1 - exponent).ptr;
}

// Returns whether the number is one that zeros may stand in front of.
template <class Float>
bool WriteFloat(NumberText& text, const Spec& spec, Float value) noexcept
{
    const bool upper = spec.conversion < 'a';
    const char kind = upper ? static_cast<char>(spec.conversion + 32) : spec.conversion;
    PutSign(text, spec, std::signbit(value));
    value = std::fabs(value);
    char* const first = text.digits;
    char* const last = first + sizeof text.digits - 1;
    char* end = first;
    if (!std::isfinite(value)) {
        end = std::copy_n(std::isnan(value) ? "nan" : "inf", 3, first);
    } else if (kind == 'a') {
        text.Prefix('0');
        text.Prefix(upper ? 'X' : 'x');
        end = spec.precision < 0 ? std::to_chars(first, last, value, std::chars_format::hex).ptr
                                 : std::to_chars(first, last, value, std::chars_format::hex, spec.precision).ptr;
    } else {
        const int precision = spec.precision < 0 ? 6 : spec.precision;
        if (kind == 'g' && spec.alternate)
            end = WriteGeneralWithZeros(first, last, value, precision);
        else
            end = std::to_chars(first, last, value,
                                kind == 'f'   ? std::chars_format::fixed
                                : kind == 'e' ? std::chars_format::scientific
                                              : std::chars_format::general,
                                precision)
                      .ptr;
    }
    if (spec.alternate && std::isfinite(value))
        end = PutPoint(first, end, kind == 'a' ? 'p' : 'e');
    if (upper)
        Uppercase(first, end);
    text.length = static_cast<std::size_t>(end - first);
    return std::isfinite(value);
}

// Writes into a sink of strings of one width.
template <class String>
class Formatter {
public:
    using View = typename String::View;
    using Char = typename View::value_type;

    Formatter(CountingSink<String>& out, std::va_list args) noexcept : out_(out) { va_copy(args_, args); }
    ~Formatter() { va_end(args_); }
    Formatter(const Formatter&) = delete;
    Formatter& operator=(const Formatter&) = delete;

    void Run(View format)
    {
        while (!format.empty()) {
            const std::size_t percent = std::min(format.find(Char('%')), format.size());
            Append(out_, format.substr(0, percent));
            format.remove_prefix(percent);
            if (format.size() < 2) { // a '%' at the very end stands for itself
                Append(out_, format);
                return;
            }
            format.remove_prefix(1);
            rest_ = format;
            Spec spec = ReadSpec();
            if (Convert(spec)) // of an unknown one only the '%' is dropped
                format = rest_;
        }
    }

private:
    bool Take(char ch) noexcept
    {
        if (rest_.empty() || rest_[0] != Char(ch))
            return false;
        rest_.remove_prefix(1);
        return true;
    }

    Spec ReadSpec() noexcept
    {
        Spec spec;
        for (;;) {
            if (Take('-'))
                spec.left = true;
            else if (Take('+'))
                spec.plus = true;
            else if (Take(' '))
                spec.blank = true;
            else if (Take('#'))
                spec.alternate = true;
            else if (Take('0'))
                spec.zero = true;
            else
                break;
        }
        spec.width = ReadCount();
        if (spec.width < 0) {
            spec.left = true;
            spec.width = -std::max(spec.width, -kMost);
        }
        if (Take('.'))
            spec.precision = std::max(ReadCount(), -1);
        spec.length = ReadLength();
        if (!rest_.empty() && rest_[0] < Char(0x7F) && rest_[0] > Char(0)) {
            spec.conversion = static_cast<char>(rest_[0]);
            rest_.remove_prefix(1);
        }
        spec.width = std::min(spec.width, kMostWidth);
        return spec;
    }

    int ReadCount() noexcept
    {
        if (Take('*'))
            return va_arg(args_, int);
        int count = 0;
        for (; !rest_.empty() && rest_[0] >= Char('0') && rest_[0] <= Char('9'); rest_.remove_prefix(1))
            count = std::min(count * 10 + static_cast<int>(rest_[0] - Char('0')), kMost);
        return count;
    }

    Length ReadLength() noexcept
    {
        if (Take('h'))
            return Take('h') ? Length::Char : Length::Short;
        if (Take('l'))
            return Take('l') ? Length::LongLong : Length::Long;
        if (Take('q'))
            return Length::LongLong;
        if (Take('L'))
            return Length::LongDouble;
        if (Take('z'))
            return Length::Size;
        if (Take('j'))
            return Length::Max;
        return Take('t') ? Length::Difference : Length::None;
    }

    bool Convert(Spec& spec)
    {
        switch (spec.conversion) {
        case 'd':
        case 'i':
            PutInteger(spec);
            return true;
        case 'u':
        case 'o':
        case 'x':
        case 'X':
        case 'p':
            PutUnsigned(spec);
            return true;
        case 'e':
        case 'E':
        case 'f':
        case 'F':
        case 'g':
        case 'G':
        case 'a':
        case 'A':
            PutFloat(spec);
            return true;
        case 'c':
            PutCharacter(spec);
            return true;
        case 's':
            PutString(spec);
            return true;
        case '%':
            Append(out_, View(&kPercent, 1));
            return true;
        default:
            return false;
        }
    }

    // NOLINTBEGIN(bugprone-branch-clone): types that are the same here differ on other platforms
    std::int64_t NextSigned(Length length) noexcept
    {
        switch (length) {
        case Length::Char:
            return static_cast<signed char>(va_arg(args_, int));
        case Length::Short:
            return static_cast<short>(va_arg(args_, int));
        case Length::Long:
            return va_arg(args_, long);
        case Length::LongLong:
        case Length::LongDouble:
            return va_arg(args_, long long);
        case Length::Size:
            return static_cast<std::int64_t>(va_arg(args_, std::make_signed_t<std::size_t>));
        case Length::Max:
            return va_arg(args_, std::intmax_t);
        case Length::Difference:
            return va_arg(args_, std::ptrdiff_t);
        default:
            return va_arg(args_, int);
        }
    }

    std::uint64_t NextUnsigned(Length length) noexcept
    {
        switch (length) {
        case Length::Char:
            return static_cast<unsigned char>(va_arg(args_, unsigned));
        case Length::Short:
            return static_cast<unsigned short>(va_arg(args_, unsigned));
        case Length::Long:
            return va_arg(args_, unsigned long);
        case Length::LongLong:
        case Length::LongDouble:
            return va_arg(args_, unsigned long long);
        case Length::Size:
            return va_arg(args_, std::size_t);
        case Length::Max:
            return va_arg(args_, std::uintmax_t);
        case Length::Difference:
            return static_cast<std::uint64_t>(va_arg(args_, std::make_unsigned_t<std::ptrdiff_t>));
        default:
            return va_arg(args_, unsigned);
        }
    }
    // NOLINTEND(bugprone-branch-clone)

    void PutInteger(Spec& spec)
    {
        const std::int64_t value = NextSigned(spec.length);
        NumberText text;
        PutSign(text, spec, value < 0);
        BoundPrecision(spec);
        WriteUnsigned(text, spec,
                      value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value));
        PutNumber(spec, text, spec.precision < 0);
    }

    void PutUnsigned(Spec& spec)
    {
        NumberText text;
        BoundPrecision(spec);
        WriteUnsigned(text, spec,
                      spec.conversion == 'p' ? reinterpret_cast<std::uintptr_t>(va_arg(args_, void*))
                                             : NextUnsigned(spec.length));
        PutNumber(spec, text, spec.precision < 0);
    }

    void PutFloat(Spec& spec)
    {
        NumberText text;
        BoundPrecision(spec);
        const bool finite = spec.length == Length::LongDouble ? WriteFloat(text, spec, va_arg(args_, long double))
                                                              : WriteFloat(text, spec, va_arg(args_, double));
        PutNumber(spec, text, finite);
    }

    void BoundPrecision(Spec& spec) const noexcept { spec.precision = std::min(spec.precision, kMostWidth); }

    void PutNumber(const Spec& spec, NumberText& text, bool zeroFlagHolds)
    {
        const std::size_t length = text.prefixLength + text.zeros + text.length;
        std::size_t pad = Padding(spec, length);
        if (spec.zero && zeroFlagHolds && !spec.left) {
            text.zeros += pad;
            pad = 0;
        }
        if (!spec.left)
            Fill(' ', pad);
        PutAscii(text.prefix, text.prefixLength);
        Fill('0', text.zeros);
        PutAscii(text.digits, text.length);
        if (spec.left)
            Fill(' ', pad);
    }

    static bool TakesWide(const Spec& spec) noexcept
    {
        return spec.length == Length::Long || (sizeof(Char) == sizeof(char16_t) && spec.length != Length::Short);
    }

    void PutCharacter(const Spec& spec)
    {
        const int value = va_arg(args_, int);
        if (TakesWide(spec)) {
            const auto unit = static_cast<char16_t>(value);
            PutText(spec, std::u16string_view(&unit, 1));
        } else {
            const auto byte = static_cast<char>(value);
            PutText(spec, std::string_view(&byte, 1));
        }
    }

    void PutString(const Spec& spec)
    {
        if (TakesWide(spec))
            return PutText(spec, Bounded(va_arg(args_, const char16_t*), spec.precision));
        PutText(spec, Bounded(va_arg(args_, const char*), spec.precision));
    }

    // A text up to its terminator, of which a precision lets only so many characters be looked at.
    template <class Unit>
    static std::basic_string_view<Unit> Bounded(const Unit* text, int precision) noexcept
    {
        std::size_t length = 0;
        while (text && (precision < 0 || length < static_cast<std::size_t>(precision)) && text[length] != Unit(0))
            ++length;
        return {text, length};
    }

    template <class Unit>
    void PutText(const Spec& spec, std::basic_string_view<Unit> text)
    {
        if constexpr (std::is_same_v<Unit, Char>) {
            const std::size_t pad = Padding(spec, text.size());
            if (!spec.left)
                Fill(' ', pad);
            Append(out_, text);
            if (spec.left)
                Fill(' ', pad);
        } else {
            String converted;
            if constexpr (sizeof(Unit) == 1)
                DecodeText(text, 0, converted);
            else
                EncodeText(text, 0, converted);
            PutText(spec, converted.GetView());
        }
    }

    static std::size_t Padding(const Spec& spec, std::size_t length) noexcept
    {
        const auto width = static_cast<std::size_t>(spec.width);
        return width > length ? width - length : 0;
    }

    void Fill(char ch, std::size_t count)
    {
        std::array<Char, 64> block;
        block.fill(Char(ch));
        for (std::size_t step = 0; count > 0; count -= step) {
            step = std::min(count, block.size());
            Append(out_, View(block.data(), step));
        }
    }

    void PutAscii(const char* text, std::size_t length)
    {
        std::array<Char, 64> block;
        for (std::size_t step = 0; length > 0; length -= step, text += step) {
            step = std::min(length, block.size());
            std::copy_n(text, step, block.begin());
            Append(out_, View(block.data(), step));
        }
    }

    static constexpr Char kPercent = Char('%');
    static constexpr int kMost = 1 << 24; // what a count in a format is read as at most

    CountingSink<String>& out_;
    View rest_;
    std::va_list args_;
};

} // namespace

void FormatText(CountingSink<Zn_WString>& sink, std::u16string_view format, std::va_list args)
{
    Formatter<Zn_WString>(sink, args).Run(format);
}

void FormatText(CountingSink<Zn_AString>& sink, std::string_view format, std::va_list args)
{
    Formatter<Zn_AString>(sink, args).Run(format);
}

} // namespace zn
