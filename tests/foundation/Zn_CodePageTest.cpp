#include "Zn_CodePage.h"

#include "foundation/encoding.h"
#include "foundation/utf8.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

namespace {

using namespace std::string_view_literals;

// Wine lacks some of the pages that Windows has.
bool IsThere(unsigned codePage)
{
#if defined(_WIN32)
    using zn::platform::CodePageConverter;
    return zn::KindOfPage(codePage) < zn::PageKind::PlatformAscii ||
           CodePageConverter(codePage, CodePageConverter::Direction::ToUtf16).IsOpen();
#else
    return codePage != 0;
#endif
}

std::u16string Decode(std::string_view bytes, unsigned codePage)
{
    std::u16string text;
    zn::DecodeText(bytes, codePage, text);
    return text;
}

std::string Encode(std::u16string_view text, unsigned codePage, zn::Missing missing = zn::Missing::Replace)
{
    std::string bytes;
    zn::EncodeText(text, codePage, bytes, missing);
    return bytes;
}

TEST(CodePage, Names)
{
    struct Row {
        const char* name;
        unsigned codePage;
        const char* written;
    } rows[] = {{"utf-8", 65001, "utf-8"},
                {"UTF8", 65001, "utf-8"},
                {"utf-16", 1200, "utf-16"},
                {"windows-1252", 1252, "windows-1252"},
                {"CP1252", 1252, "windows-1252"},
                {"EUC-KR", 949, "euc-kr"},
                {"ks_c_5601-1987", 949, "euc-kr"},
                {"eucKR", 949, "euc-kr"},
                {"Shift_JIS", 932, "shift_jis"},
                {"x-sjis", 932, "shift_jis"},
                {"latin1", 28591, "iso-8859-1"},
                {"ISO_8859-1", 28591, "iso-8859-1"},
                {"iso-8859-15", 28605, "iso-8859-15"},
                {"Big5", 950, "big5"},
                {"gb2312", 936, "gbk"},
                {"", 0, "utf-8"},
                {"utf-99", 0, "utf-8"},
                {"--", 0, "utf-8"}};
    ZnSetLocaleCP(65001);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(zn_findcodepageA(row.name), row.codePage);
        EXPECT_EQ(zn_findcodepageW(std::u16string(row.name, row.name + strlen(row.name)).c_str()), row.codePage);
        EXPECT_STREQ(zn_findcharset(row.codePage), row.written);
    }
    EXPECT_EQ(zn_findcodepageW(u"utf-8\u0430"), 0u);
    EXPECT_EQ(zn_findcodepageA(nullptr), 0u);
    EXPECT_STREQ(zn_findcharset(12345), "");
    ZnSetLocaleCP(0);
}

TEST(CodePage, LocaleIsSetForTheProcess)
{
    const unsigned environment = ZnGetLocaleCP();
    ZnSetLocaleCP(949);
    EXPECT_EQ(zn_activecodepage(0), 949u);
    EXPECT_EQ(zn_activecodepage(1252), 1252u);
    EXPECT_EQ(Zn_AString(u"\uD55C", -1, 0), "\xC7\xD1");
    Zn_WString text;
    text += "\xC7\xD1";
    EXPECT_EQ(text, u"\uD55C");
    EXPECT_STREQ(zn_findcharset(0), "euc-kr");
    ZnSetLocaleCP(0);
    EXPECT_EQ(ZnGetLocaleCP(), environment);
}

TEST(CodePage, ReadsAndWrites)
{
    struct Row {
        unsigned codePage;
        std::string_view bytes;
        std::u16string_view text;
    } rows[] = {
        {65001, "A\0z\xC3\xA9\xE2\x82\xAC\xED\x95\x9C\xF0\x9F\x98\x80"sv, u"A\0z\u00E9\u20AC\uD55C\U0001F600"sv},
        {1200, "a\0\xA9\xAC\x00\xD8!\0"sv, u"a\uACA9\xD800!"sv}, // lone surrogates pass
        {1201, "\0a\xAC\xA9"sv, u"a\uACA9"sv},
        {1252, "caf\xE9 \x80\x81\x9F\xFF"sv, u"caf\u00E9 \u20AC\u0081\u0178\u00FF"sv},
        {28591, "\x80\xFF"sv, u"\u0080\u00FF"sv},
        {949, "\xBE\xC8\xB3\xE7, Zn \xB0\xA1<\xC8\xFE>\xB4\xDF\x8C\x63"sv,
         u"\uC548\uB155, Zn \uAC00<\uD79D>\uB2ED\uB620"sv},
        {932, "\x93\xFA\x96{\x8C\xEA \\ \x83\\\x95\\ \xB1\xDD"sv, u"\u65E5\u672C\u8A9E \\ \u30BD\u8868 \uFF71\uFF9D"sv},
        {936, "\xD6\xD0\xCE\xC4-\xB9\xFA"sv, u"\u4E2D\u6587-\u56FD"sv},
        {950, "\xA4\xA4\xA4\xE5\xB3\\"sv, u"\u4E2D\u6587\u8A31"sv},
        {54936, "\x81\x30\x81\x31 \x94\x39\xDA\x33"sv, u"\u0081 \U0001F4A9"sv},
        {1251, "\xCC\xE8\xF0 ok"sv, u"\u041C\u0438\u0440 ok"sv},
        {50220, "a\x1B$BF|\x1B(Bb"sv, u"a\u65E5b"sv}, // shift states
        {500, "\xC8\x85\x93\x93\x96"sv, u"Hello"sv},  // no ASCII at all
        {20932, "\xC6\xFC\xCB\xDC\x8E\xB1!"sv, u"\u65E5\u672C\uFF71!"sv},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.codePage);
        if (!IsThere(row.codePage))
            continue;
        EXPECT_EQ(Decode(row.bytes, row.codePage), row.text);
        EXPECT_EQ(Encode(row.text, row.codePage), row.bytes);
        // Long enough for several blocks, and at every offset from their borders.
        for (std::size_t shift = 0; shift < 8; ++shift) {
            std::u16string text(2 * shift, u' ');
            std::string bytes = Encode(text, row.codePage);
            for (int i = 0; i < 700; ++i) {
                bytes += row.bytes;
                text += row.text;
            }
            ASSERT_TRUE(Decode(bytes, row.codePage) == text) << shift;
            ASSERT_TRUE(Decode(Encode(text, row.codePage), row.codePage) == text) << shift;
        }
    }
}

TEST(CodePage, MalformedBytesBecomeReplacements)
{
    struct Row {
        unsigned codePage;
        std::string_view bytes;
        std::u16string_view text;
    } rows[] = {
        {65001, "\x80|\xBF|\xFF|\xFE"sv, u"\uFFFD|\uFFFD|\uFFFD|\uFFFD"}, // no lead byte
        {65001, "\xC0\x80|\xC1\xBF"sv, u"\uFFFD\uFFFD|\uFFFD\uFFFD"},     // too long for the value
        {65001, "\xE0\x9F\xBF|\xF0\x8F\xBF\xBF"sv, u"\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD\uFFFD"},
        {65001, "\xED\xA0\x80|\xED\xBF\xBF"sv, u"\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD\uFFFD"}, // surrogates
        {65001, "\xF4\x90\x80\x80|\xF5\x80"sv, u"\uFFFD\uFFFD\uFFFD\uFFFD|\uFFFD\uFFFD"}, // beyond U+10FFFF
        {65001, "\xE2\x82|\xF0\x9F\x98|\xC3"sv, u"\uFFFD|\uFFFD|\uFFFD"},                 // cut off
        {65001, "\xE2\x82\xE2\x82\xAC"sv, u"\uFFFD\u20AC"},
        {65001, "\xED\x9F\xBF\xEE\x80\x80\xF4\x8F\xBF\xBF"sv, u"\uD7FF\uE000\U0010FFFF"}, // the last valid ones
        {1200, "a\0b"sv, u"a\uFFFD"},
        {20127, "a\x80z"sv, u"a\uFFFDz"},
        {949, "\xC7|\xFF|\xC7\xD1\xC7"sv, u"\uFFFD|\uFFFD|\uD55C\uFFFD"},
        {932, "\x93 \xFC\xFC|\x93\xFA"sv, u"\uFFFD \uFFFD|\u65E5"},
        {99999, "a\xE9"sv, u"a\uFFFD"}, // a page that nobody knows
    };
    for (const Row& row : rows)
        EXPECT_EQ(Decode(row.bytes, row.codePage), row.text) << row.codePage << " row " << &row - rows;
}

TEST(CodePage, MissingCharactersAreReplacedOrReferred)
{
    struct Row {
        unsigned codePage;
        std::u16string_view text;
        std::string_view replaced;
        std::string_view referred;
    } rows[] = {
        {1252, u"a\uD55C\U0001F600\xD800z"sv, "a???z", "a&#xD55C;&#x1F600;&#xD800;z"},
        {28591, u"\u20AC", "?", "&#x20AC;"},
        {20127, u"\u00E9", "?", "&#xE9;"},
        {949, u"\uD55C\U0001F600\u00E9\xDC00!"sv, "\xC7\xD1?\?\?!", "\xC7\xD1&#x1F600;&#xE9;&#xDC00;!"},
        {932, u"\uD55C\u65E5"sv, "?\x93\xFA", "&#xD55C;\x93\xFA"},
        {50220, u"\u65E5\uD55C", "\x1B$BF|\x1B(B?", "\x1B$BF|\x1B(B&#xD55C;"},
        {65001, u"\xD800|\xDFFF\xDBFF"sv, "\xEF\xBF\xBD|\xEF\xBF\xBD\xEF\xBF\xBD", "&#xD800;|&#xDFFF;&#xDBFF;"},
    };
    for (const Row& row : rows) {
        if (!IsThere(row.codePage))
            continue;
        EXPECT_EQ(Encode(row.text, row.codePage), row.replaced) << row.codePage;
        EXPECT_EQ(Encode(row.text, row.codePage, zn::Missing::XmlReference), row.referred) << row.codePage;
    }
    // At every place of a block.
    const std::u16string many(5000, u'\xD800');
    EXPECT_EQ(Encode(many, 1252).size(), 5000u);
    EXPECT_EQ(Encode(many, 65001, zn::Missing::XmlReference).size(), 5000u * 8);
}

TEST(CodePage, HostileTextTakesLinearTime)
{
    const std::string bad(400000, '\xFF');
    const std::string unbroken = "\xC7" + std::string(400000, '\xD1'); // one run without a blank, out of step
    const std::u16string missing(400000, u'\uFFFC');
    for (const unsigned codePage : {949u, 50220u}) {
        EXPECT_LE(Decode(bad, codePage).size(), bad.size()) << codePage;
        EXPECT_LE(Decode(unbroken, codePage).size(), unbroken.size()) << codePage;
        EXPECT_GE(Encode(missing, codePage, zn::Missing::XmlReference).size(), missing.size()) << codePage;
    }
}

TEST(CodePage, CountsAreExactForWellFormedUtf8)
{
    std::mt19937 random(7);
    for (int i = 0; i < 200; ++i) {
        std::u16string text;
        for (auto n = random() % 60; n > 0; --n) {
            const auto code = static_cast<char32_t>(random() % (1u << (7 + random() % 14)) % 0x110000);
            char16_t units[2];
            if (code < 0xD800 || code > 0xDFFF)
                text.append(units, zn::PutCodePoint(code, units));
        }
        const std::string utf8 = Encode(text, 65001);
        ASSERT_EQ(Decode(utf8, 65001), text);
        EXPECT_EQ(zn::CountUtf8OfUtf16(text), utf8.size());
        EXPECT_EQ(zn::CountUtf16OfUtf8(utf8), text.size());
    }
}

TEST(CodePage, ThreadsConvertSideBySide)
{
    const Zn_WString korean(u"\uD55C\uAD6D\uC5B4 text");
    const unsigned other = IsThere(51949) ? 51949 : 949;
    const auto work = [&] {
        for (int i = 0; i < 300; ++i) {
            Zn_WString copy = korean; // shares its text with the other threads
            copy.Set(Zn_AString(copy, -1, i % 2 ? 949 : other), -1, 949);
            EXPECT_EQ(copy, korean);
            ZnSetLocaleCP(i % 2 ? 949 : 0);
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    ZnSetLocaleCP(0);
}

#ifndef _WIN32
TEST(CodePage, ConversionsLeaveTheLastErrorAlone)
{
    errno = ECONNREFUSED;
    EXPECT_EQ(Decode("\xC7|", 949), u"\uFFFD|"); // sets the platform's error on its way
    EXPECT_EQ(Encode(u"\u00E9", 949), "?");
    EXPECT_EQ(zn_getlasterror(), 10061);
    errno = 0;
    EXPECT_EQ(zn_getlasterror(), 0);
    EXPECT_EQ(zn::platform::ErrorNumber(99999), 31) << "one that has no counterpart";
}
#endif

TEST(CodePage, StringsConvert)
{
    EXPECT_EQ(Zn_WString("\xB0\xA1\xB0\xA2", 2, 949), u"\uAC00");
    EXPECT_TRUE(Zn_WString(static_cast<const char*>(nullptr), 5, 949).IsEmpty());
    EXPECT_EQ(Zn_AString(u"\u00E9\u00E8", 1, 1252), "\xE9");
    EXPECT_EQ(Zn_WString::FromUtf8("\xED\x95\x9C").ToUtf8(), "\xED\x95\x9C");
}

} // namespace
