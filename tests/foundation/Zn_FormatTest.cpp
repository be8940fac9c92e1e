#include "Zn_AString.h"
#include "Zn_CodePage.h"
#include "Zn_WString.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>

namespace {

// Formats with both widths; both must give the same.
template <class... Args>
std::string Both(const char* format, Args... args)
{
    Zn_AString narrow;
    narrow.Format(format, args...);
    const std::string ascii = format;
    Zn_WString wide;
    wide.Format(std::u16string(ascii.begin(), ascii.end()).c_str(), args...);
    EXPECT_EQ(wide.ToUtf8(), narrow.GetText());
    return narrow.GetText();
}

// Where the C library leaves the standard: it prints a blank in front of numbers without a sign, and no octal 0 when
// no digit is asked for.
bool IsPrintedOtherwise(std::string_view flags, std::string_view size, char conversion)
{
#if defined(_WIN32)
    const auto has = [flags](char flag) { return flags.find(flag) != flags.npos; };
    return (has(' ') && conversion == 'u') || (has('#') && size == ".0" && conversion == 'o');
#else
    static_cast<void>(flags), static_cast<void>(size), static_cast<void>(conversion);
    return false;
#endif
}

// What the C library prints (in the "C" locale) is what is expected.
template <class... Args>
void LikePrintf(const char* format, Args... args)
{
    char expected[6000];
    std::snprintf(expected, sizeof expected, format, args...);
    EXPECT_EQ(Both(format, args...), expected) << format;
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-security"
#pragma GCC diagnostic ignored "-Wformat-nonliteral"

TEST(Format, Integers)
{
    for (const char* flags : {"", "-", "+", " ", "0", "#", "-0", "+0", "#0", "-#", " 0"}) {
        for (const char* size : {"", "1", "8", ".0", ".4", "8.4", "12.8"}) {
            for (const char conversion : {'d', 'i', 'u', 'o', 'x', 'X'}) {
                if (IsPrintedOtherwise(flags, size, conversion))
                    continue;
                const std::string format = std::string("[%") + flags + size + conversion + "]";
                for (const int value : {0, 7, 255, -1, -2147483647 - 1})
                    LikePrintf(format.c_str(), value);
            }
        }
    }
    LikePrintf("%hhd %hhu %hd %hu", 511, 511, 65537, 65537);
    LikePrintf("%ld %lld %zu %jd %td", -5L, INT64_MIN, SIZE_MAX, INTMAX_MAX, std::ptrdiff_t(-1));
    LikePrintf("%lx %llX %zo", 0xABCUL, ~0ULL, std::size_t(8));
    LikePrintf("%*d|%-*d|%.*d|%*d", 6, 1, 6, 2, 3, 3, -6, 4);
    LikePrintf("%.*d", -1, 5);
}

TEST(Format, Floats)
{
    for (const char* flags : {"", "-", "+", " ", "0", "#", "+0", "#0"}) {
        for (const char* size : {"", "12", ".0", ".1", ".10", "24.3", ".17", ".40"}) {
            for (const char conversion : {'e', 'f', 'g', 'E', 'F', 'G', 'a', 'A'}) {
                const std::string format = std::string("[%") + flags + size + conversion + "]";
                for (const double value : {0.0, -0.0, 1.0, 0.5, 1.5, 2.5, 123456.0, 1234567.0, 0.0001, 0.00001,
                                           9.9999996, -1e300, 5e-324, 0.1, HUGE_VAL, -HUGE_VAL, std::nan("")})
                    LikePrintf(format.c_str(), value);
            }
        }
    }
    LikePrintf("%Lf %.3Le", 1.5L, 2.25L);
    LikePrintf("%.1100f", 5e-324);
}

TEST(Format, TextOfBothWidths)
{
    ZnSetLocaleCP(65001);
    Zn_WString wide;
    EXPECT_STREQ(wide.ToUtf8().c_str(), "");
    wide.Format(u"%s|%ls|%hs|%6s|%-6s|%.2s|%c%c%hc", u"\uD55C", u"l", "\xC3\xA9", u"r", u"l", u"cut", u'\uAC00', 'x',
                'y');
    EXPECT_EQ(wide, u"\uD55C|l|\u00E9|     r|l     |cu|\uAC00xy");
    Zn_AString narrow;
    narrow.Format("%s|%hs|%ls|%6s|%-6ls|%.2s|%c%lc", "a", "h", u"\u00E9", "r", u"l", "cut", 'x', u'\u00E9');
    EXPECT_EQ(narrow, "a|h|\xC3\xA9|     r|l     |cu|x\xC3\xA9");
    const char16_t open[] = {u'a', u'b'}; // a precision keeps it from reading on
    wide.Format(u"%.2s", open);
    EXPECT_EQ(wide, u"ab");
    wide.Format(u"<%s><%hs>", static_cast<const char16_t*>(nullptr), static_cast<const char*>(nullptr));
    EXPECT_EQ(wide, u"<><>");
    wide.Set(u"me");
    EXPECT_STREQ(reinterpret_cast<const char*>(
                     Zn_WString(wide.Format(u"%s and %s", wide.GetText(), wide.GetText())).ToUtf8().c_str()),
                 "me and me");
    ZnSetLocaleCP(0);
}

TEST(Format, UnknownConversionsLoseThePercentSign)
{
    EXPECT_EQ(Both("%:02d", 5), ":02d");
    EXPECT_EQ(Both("%y %-5q %n %% %5%"), "y -5q n % %");
    EXPECT_EQ(Both("100%"), "100%");
    EXPECT_EQ(Both("%d%", 7), "7%");
    EXPECT_EQ(Both("%l"), "l");
    EXPECT_EQ(Both(""), "");
}

TEST(Format, WidthsAreBounded)
{
    EXPECT_EQ(Both("%2000000000d", 7).size(), 4096u);
    EXPECT_EQ(Both("%99999999999999999999d|", 7).size(), 4097u);
    EXPECT_EQ(Both("%*d", -2147483647 - 1, 7).size(), 4096u);
    EXPECT_EQ(Both("%.2000000000d", 7).size(), 4096u);
    EXPECT_EQ(Both("%.2000000000f", 1e308).size(), 309u + 1 + 4096);
    EXPECT_EQ(Both("%.2000000000e", 0.1).size(), 4096u + 6);
}

TEST(Format, Pointers)
{
    EXPECT_EQ(Both("%p", reinterpret_cast<void*>(0x1f)), "0x1f");
}

#pragma GCC diagnostic pop

} // namespace
