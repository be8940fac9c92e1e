#include "Zn_Currency.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <random>

namespace {

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

Zn_Currency Raw(std::int64_t raw)
{
    return Zn_Currency::FromRaw(raw);
}

TEST(Zn_Currency, UnitsAndFraction)
{
    struct Row {
        std::int32_t units, fraction;
        std::int64_t raw;
    };
    for (const Row& row : {Row{0, 0, 0}, Row{5, 2500, 52500}, Row{-5, 2500, -47500}, Row{5, -1, 50000},
                           Row{5, 0, 50000}, Row{0, 1, 1}, Row{INT32_MIN, 0, std::int64_t{INT32_MIN} * 10000},
                           Row{INT32_MAX, INT32_MAX, std::int64_t{INT32_MAX} * 10001}})
        EXPECT_EQ(Zn_Currency(row.units, row.fraction).GetRaw(), row.raw) << row.units << " " << row.fraction;
    EXPECT_EQ(Zn_Currency(9).GetRaw(), 90000);
    EXPECT_EQ(Zn_Currency(9L).GetRaw(), 90000);
    Zn_Currency assigned(1.5);
    assigned = 9;
    EXPECT_EQ(assigned.GetRaw(), 90000);
}

TEST(Zn_Currency, ReadsText)
{
    const std::pair<const char16_t*, std::int64_t> rows[] = {
        {u"12.34", 123400},  {u"19", 100000},           {u"-3", 30000},
        {u"1.23456", 12346}, {u"1.2345", 12345},        {u"1.23454", 12345},
        {u"1.05", 15000},    {u"1.95", 15000},          {u"", 0},
        {u"abc", 0},         {u"1,234", 10234 * 10000}, {u" 7 ", 700000},
        {u".5", 5000},       {u"1.9999", 10000},        {u"1.99999", 20000},
        {u"1.00005", 20000}, {u"1.0000", 10000},        {u"1..2", 12000},
        {u"1.2.3", 12300},   {u"1.2e3", 12300},         {u"1.12347778", 11235},
    };
    for (const auto& [text, raw] : rows)
        EXPECT_EQ(Zn_Currency(text).GetRaw(), raw) << Zn_WString(text).ToUtf8();
    EXPECT_EQ(Zn_Currency(static_cast<const char16_t*>(nullptr)).GetRaw(), 0);
    EXPECT_EQ(Zn_Currency(std::u16string_view(u"12.34").substr(0, 4)).GetRaw(), 123000) << "a view ends where it ends";
    EXPECT_EQ(Zn_Currency(std::u16string_view(u"1\0002", 3)).GetRaw(), 10000) << "a terminator ends a view too";
    // Twenty digits: the eighteenth one wraps the product, as it does digit by digit in 64 bits.
    Zn_Currency digitByDigit;
    for (int i = 0; i < 20; ++i)
        digitByDigit = digitByDigit * 10 + Zn_Currency(7, 0);
    EXPECT_EQ(Zn_Currency(u"77777777777777777777"), digitByDigit);
}

TEST(Zn_Currency, ReadsDoublesAsText)
{
    using Row = std::pair<double, std::int64_t>;
    for (const auto& [amount, raw] :
         {Row{2.5, 25000}, Row{-2.5, 250000 / 10}, Row{0.0, 0}, Row{19.0, 100000}, Row{1e-7, 0}, Row{123.4567, 1234567},
          Row{0.99999999, 10000}, Row{1e20, Zn_Currency(u"100000000000000000000").GetRaw()},
          Row{std::numeric_limits<double>::infinity(), 0}, Row{std::numeric_limits<double>::quiet_NaN(), 0}})
        EXPECT_EQ(Zn_Currency(amount).GetRaw(), raw) << amount;
    Zn_WString text;
    for (const double amount : {1e300, -std::numeric_limits<double>::max(), 4.9e-324, 1234567.1234565}) {
        text.Format(u"%f", amount);
        EXPECT_EQ(Zn_Currency(amount), Zn_Currency(text.GetText())) << amount;
    }
}

TEST(Zn_Currency, WritesTextAndNumbers)
{
    struct Row {
        std::int64_t raw;
        const char* text;
        double number;
        std::int32_t integer;
        int isInt;
    };
    const Row rows[] = {
        {0, "", 0, 0, 1},
        {1, "1", 1, 0, 0},
        {500, "5", 5, 0, 0},
        {1000, ".1", .1, 0, 0},
        {5000, ".5", .5, 0, 0},
        {10000, "1", 1, 1, 1},
        {15000, "1.5", 1.5, 1, 0},
        {123456, "12.3456", 12.3456, 12, 0},
        {100000, "10", 10, 10, 1},
        {1000000, "100", 100, 100, 1},
        {-15000, "-1.5", -1.5, 1, 0},
        {-5000, "-.5", -.5, 0, 0},
        {-500, ".-5", 0, 0, 0},
        {-50, "-5", -5, 0, 0},
        {-50000, "-5", -5, 5, 0}, // the low word of a negative amount is no multiple of a unit
        {kMax, "922337203685477.5807", 922337203685477.5807,
         static_cast<std::int32_t>(kMax / 10000 % (std::int64_t{1} << 32)), 0},
        {kMin, "-922337203685477.5808", -922337203685477.5808,
         static_cast<std::int32_t>(kMax / 10000 % (std::int64_t{1} << 32)), 1},
        {std::int64_t{1} << 32, "429496.7296", 429496.7296, 429496, 1},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.raw);
        EXPECT_EQ(Raw(row.raw).ToString().ToUtf8(), row.text);
        EXPECT_EQ(Raw(row.raw).ToDouble(), row.number);
        EXPECT_EQ(Raw(row.raw).ToDouble(), Raw(row.raw).ToString().ToDouble());
        EXPECT_EQ(Raw(row.raw).ToInteger(), row.integer);
        EXPECT_EQ(Raw(row.raw).IsInt(), row.isInt);
    }
}

#ifdef __SIZEOF_INT128__ // which compilers for 32-bit machines lack
__extension__ using Wide = __int128;

// What 64 bits hold of a number, or the smallest amount where that is how overflow is told.
std::int64_t Checked(Wide value)
{
    return value < kMin || value > kMax ? kMin : static_cast<std::int64_t>(value);
}

std::int64_t Wrapped(Wide value)
{
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(value));
}

TEST(Zn_Currency, ArithmeticAgainst128Bits)
{
    std::mt19937_64 random(20040715);
    constexpr std::array<std::int64_t, 11> edges = {
        0, 1, -1, 9999, 10000, kMin, kMin + 1, kMax, std::int64_t{1} << 32, -(std::int64_t{1} << 32), 0x7FFFFFFF};
    const auto pick = [&] {
        const std::uint64_t bits = random();
        return bits % 4 == 0 ? edges[static_cast<std::size_t>(random() % edges.size())]
                             : static_cast<std::int64_t>(bits) >> (random() % 64);
    };
    for (int i = 0; i < 200000; ++i) {
        const std::int64_t a = pick(), b = pick();
        const auto f = static_cast<std::int32_t>(pick() >> (random() % 2 * 32));
        ASSERT_EQ((Raw(a) + Raw(b)).GetRaw(), Checked(Wide{a} + b)) << a << " + " << b;
        ASSERT_EQ((Raw(a) - Raw(b)).GetRaw(), Checked(Wide{a} - b)) << a << " - " << b;
        ASSERT_EQ((-Raw(a)).GetRaw(), Wrapped(-Wide{a})) << "-" << a;
        ASSERT_EQ((Raw(a) * f).GetRaw(), Wrapped(Wide{a} * f)) << a << " * " << f;
        ASSERT_EQ((Raw(a) / f).GetRaw(), f == 0 ? kMin : Wrapped(Wide{a} / f)) << a << " / " << f;
        ASSERT_EQ(Raw(a) < Raw(b), a < b);
        ASSERT_EQ(Raw(a) == Raw(b), a == b);
    }
}
#endif

TEST(Zn_Currency, AssigningOperators)
{
    EXPECT_EQ((Zn_Currency(7, 0) / 2).ToString(), u"3.5");
    Zn_Currency sum(1, 0);
    sum += Zn_Currency(2, 0);
    sum *= 5;
    sum -= Zn_Currency(1, 0);
    sum /= 4;
    EXPECT_EQ(sum.GetRaw(), 35000);
}

} // namespace
