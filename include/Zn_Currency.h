// A signed amount of money with four decimal places: a 64-bit count of ten-thousandths.
//
// Nothing throws or reports: overflow of a sum or difference and division by zero give the smallest
// amount (GetRaw() == INT64_MIN), and text that is no number gives what its digits add up to.
//
//     Zn_Currency price(u"12.34");
//     Zn_Currency total = price * 3;              // 37.02
//
// Reading and writing have rules of their own that stored data and programs count on; each stands
// at its operation. For exact amounts use whole units with a fraction, or FromRaw and GetRaw.
#pragma once

#include "Zn_Base.h"
#include "Zn_WString.h"

#include <compare>

class ZN_API Zn_Currency {
public:
    constexpr Zn_Currency() noexcept = default;
    Zn_Currency(std::int32_t units, std::int32_t fraction) noexcept { SetCurrency(units, fraction); }
    // Whole units.
    Zn_Currency(int units) noexcept { SetCurrency(units); }
    Zn_Currency(long units) noexcept { SetCurrency(units); }
    Zn_Currency(double amount) noexcept { SetCurrency(amount); }
    Zn_Currency(const char16_t* text) noexcept { SetCurrency(text); }
    Zn_Currency(std::u16string_view text) noexcept { SetCurrency(text); }

    // Units and ten-thousandths. Callers rely on the fraction being added whatever the sign (-5 and 2500
    // give -4.75), and on a fraction below 1 being ignored.
    void SetCurrency(std::int32_t units, std::int32_t fraction) noexcept;
    void SetCurrency(int units) noexcept { SetCurrency(units, 0); }
    // Clamped to 32 bits.
    void SetCurrency(long units) noexcept;
    // Reads the number written with six decimals, as text: a negative number gives a positive amount and
    // every digit 9 is lost. Callers rely on it.
    void SetCurrency(double amount) noexcept;
    // Callers rely on these rules. There is no sign; before the point every character multiplies by ten and
    // '1' to '8' are added, '0' and '9' are not; after it '0' and '9' are passed over without moving to the next
    // decimal place ("1.05" is 1.5), and a fifth decimal of '5' to '9' rounds up.
    void SetCurrency(const char16_t* text) noexcept;
    void SetCurrency(std::u16string_view text) noexcept;

    // Whole units without sign: callers rely on -5.5 giving 5. The low 32 bits of a larger number.
    std::int32_t ToInteger() const noexcept;
    // The number that ToString writes: callers rely on 0.05 giving 5.0.
    double ToDouble() const noexcept;
    // Callers rely on this form: trailing zeros and point cut off, no leading zero, and below 0.1 no point:
    // 0.5 is ".5", 0.05 is "5", zero is empty.
    Zn_WString ToString() const;
    // Whether the low 32 bits, without sign, are a multiple of one unit. Callers rely on the high ones not being
    // looked at: right for whole amounts from 0 to 429496, by chance beyond.
    int IsInt() const noexcept { return low_ % kUnit == 0; }

    // Ten-thousandths.
    constexpr std::int64_t GetRaw() const noexcept
    {
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(static_cast<std::uint32_t>(high_)) << 32 | low_);
    }
    static constexpr Zn_Currency FromRaw(std::int64_t raw) noexcept
    {
        Zn_Currency amount;
        amount.low_ = static_cast<std::uint32_t>(raw);
        amount.high_ = static_cast<std::int32_t>(raw >> 32);
        return amount;
    }

    Zn_Currency operator+(const Zn_Currency& other) const noexcept;
    Zn_Currency operator-(const Zn_Currency& other) const noexcept;
    // The smallest amount stays what it is.
    Zn_Currency operator-() const noexcept;
    // Wraps in 64 bits.
    Zn_Currency operator*(std::int32_t factor) const noexcept;
    // Cut toward zero.
    Zn_Currency operator/(std::int32_t divisor) const noexcept;
    Zn_Currency& operator+=(const Zn_Currency& other) noexcept { return *this = *this + other; }
    Zn_Currency& operator-=(const Zn_Currency& other) noexcept { return *this = *this - other; }
    Zn_Currency& operator*=(std::int32_t factor) noexcept { return *this = *this * factor; }
    Zn_Currency& operator/=(std::int32_t divisor) noexcept { return *this = *this / divisor; }

    friend constexpr bool operator==(const Zn_Currency& a, const Zn_Currency& b) noexcept
    {
        return a.GetRaw() == b.GetRaw();
    }
    friend constexpr std::strong_ordering operator<=>(const Zn_Currency& a, const Zn_Currency& b) noexcept
    {
        return a.GetRaw() <=> b.GetRaw();
    }

private:
    static constexpr std::uint32_t kUnit = 10000;
    class Reader;

    std::uint32_t low_ = 0;
    std::int32_t high_ = 0;
};

static_assert(sizeof(Zn_Currency) == 8, "two words, the low one first");
