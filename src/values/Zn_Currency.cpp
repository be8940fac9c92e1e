#include "Zn_Currency.h"

#include "foundation/number_text.h"

#include <charconv>
#include <limits>

// The amount is kept as two words so that its bytes are the same on every machine; sums are made in
// 64 bits, without sign, where wrapping is defined.
namespace {

constexpr Zn_Currency kSmallest = Zn_Currency::FromRaw(std::numeric_limits<std::int64_t>::min());

constexpr std::uint64_t Bits(const Zn_Currency& amount)
{
    return static_cast<std::uint64_t>(amount.GetRaw());
}

constexpr Zn_Currency FromBits(std::uint64_t bits)
{
    return Zn_Currency::FromRaw(static_cast<std::int64_t>(bits));
}

constexpr bool IsNegative(std::uint64_t bits)
{
    return bits >> 63 != 0;
}

constexpr std::uint64_t Size(std::uint64_t bits)
{
    return IsNegative(bits) ? 0 - bits : bits;
}

constexpr int kTextRoom = 32;

// The text of ToString, unterminated; returns its length.
int Write(const Zn_Currency& amount, char16_t (&out)[kTextRoom])
{
    char16_t digits[kTextRoom];
    int first = kTextRoom;
    std::uint64_t size = Size(Bits(amount));
    do {
        digits[--first] = static_cast<char16_t>(u'0' + size % 10);
        size /= 10;
    } while (size > 0);
    if (IsNegative(Bits(amount)))
        digits[--first] = u'-';

    // The point goes four places before the end, counting the sign as a place; a shorter text gets none.
    int length = 0;
    for (int i = first; i < kTextRoom; ++i) {
        if (i == kTextRoom - 4)
            out[length++] = u'.';
        out[length++] = digits[i];
    }
    for (int cut = 0; cut < 5 && length > 0 && (out[length - 1] == u'0' || out[length - 1] == u'.'); ++cut)
        --length;
    return length;
}

} // namespace

// Reads the digits of a text into an amount, one character after the other.
class Zn_Currency::Reader {
public:
    // False when reading stops after this character.
    template <class Char>
    bool Take(Char ch, Char next)
    {
        if (ch == Char('.'))
            place_ = 0;
        // Callers rely on '1' to '8' alone having a value, and on each other character taking a place
        // before the point, but none of the steps after it.
        const int digit = ch >= Char('1') && ch <= Char('8') ? static_cast<int>(ch - Char('0')) : 0;
        if (place_ < 0) {
            result_ *= 10;
            if (digit)
                result_ += step_ * digit;
            return true;
        }
        if (place_ >= 1 && digit) {
            step_ /= 10;
            result_ += step_ * digit;
        }
        if (++place_ <= 4)
            return true;
        if (next >= Char('5') && next <= Char('9'))
            result_ += step_;
        return false;
    }

    template <class Char>
    static Zn_Currency Read(std::basic_string_view<Char> text)
    {
        Reader reader;
        for (std::size_t i = 0; i < text.size() && text[i] != Char(0); ++i) {
            if (!reader.Take(text[i], i + 1 < text.size() ? text[i + 1] : Char(0)))
                break;
        }
        return reader.result_;
    }

private:
    Zn_Currency result_;
    Zn_Currency step_ = FromRaw(kUnit);
    int place_ = -1; // -1 before the point, 0 at it, then the decimal place
};

void Zn_Currency::SetCurrency(std::int32_t units, std::int32_t fraction) noexcept
{
    *this = FromRaw(std::int64_t{units} * kUnit + (fraction >= 1 ? fraction : 0));
}

void Zn_Currency::SetCurrency(long units) noexcept
{
    SetCurrency(units > INT32_MAX ? INT32_MAX : units < INT32_MIN ? INT32_MIN : static_cast<std::int32_t>(units), 0);
}

void Zn_Currency::SetCurrency(double amount) noexcept
{
    // Room for the largest double, "-1797...368.000000".
    char text[std::numeric_limits<double>::max_exponent10 + 16];
    const auto end = std::to_chars(text, text + sizeof text, amount, std::chars_format::fixed, 6);
    *this = Reader::Read(std::string_view(text, static_cast<std::size_t>(end.ptr - text)));
}

void Zn_Currency::SetCurrency(const char16_t* text) noexcept
{
    SetCurrency(text ? std::u16string_view(text) : std::u16string_view());
}

void Zn_Currency::SetCurrency(std::u16string_view text) noexcept
{
    *this = Reader::Read(text);
}

std::int32_t Zn_Currency::ToInteger() const noexcept
{
    const std::uint64_t units = Size(Bits(*this)) / kUnit;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(units));
}

double Zn_Currency::ToDouble() const noexcept
{
    char16_t text[kTextRoom];
    const int length = Write(*this, text);
    return zn::ReadDouble(std::u16string_view(text, static_cast<std::size_t>(length)));
}

Zn_WString Zn_Currency::ToString() const
{
    char16_t text[kTextRoom];
    const int length = Write(*this, text);
    return Zn_WString(text, length);
}

Zn_Currency Zn_Currency::operator+(const Zn_Currency& other) const noexcept
{
    const std::uint64_t a = Bits(*this), b = Bits(other), sum = a + b;
    return IsNegative((a ^ sum) & (b ^ sum)) ? kSmallest : FromBits(sum);
}

Zn_Currency Zn_Currency::operator-(const Zn_Currency& other) const noexcept
{
    const std::uint64_t a = Bits(*this), b = Bits(other), difference = a - b;
    return IsNegative((a ^ b) & (a ^ difference)) ? kSmallest : FromBits(difference);
}

Zn_Currency Zn_Currency::operator-() const noexcept
{
    return FromBits(0 - Bits(*this));
}

Zn_Currency Zn_Currency::operator*(std::int32_t factor) const noexcept
{
    return FromBits(Bits(*this) * static_cast<std::uint64_t>(std::int64_t{factor}));
}

Zn_Currency Zn_Currency::operator/(std::int32_t divisor) const noexcept
{
    if (divisor == 0)
        return kSmallest;
    const std::uint64_t quotient = Size(Bits(*this)) / Size(static_cast<std::uint64_t>(std::int64_t{divisor}));
    return FromBits(IsNegative(Bits(*this)) != (divisor < 0) ? 0 - quotient : quotient);
}
