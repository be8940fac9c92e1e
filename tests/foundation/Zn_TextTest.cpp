#include "Zn_Text.h"

#include <gtest/gtest.h>

namespace {

TEST(Text, ComparesByUnitAndByFoldedUnit)
{
    struct Row {
        const char16_t* a;
        const char16_t* b;
        int ordinal; // expected signs
        int folded;
    } rows[] = {
        {u"", nullptr, 0, 0},
        {u"abc", u"abc", 0, 0},
        {u"abc", u"abd", -1, -1},
        {u"ab", u"abc", -1, -1},
        {u"a", u"B", 1, -1},
        {u"NAME", u"name", -1, 0},
        {u"\u00C4\u0416\u03A9", u"\u00E4\u0436\u03C9", -1, 0}, // umlaut, Cyrillic, Greek
        {u"\u03A3\u03C2", u"\u03C3\u03C3", -1, 0},             // both small sigmas
        {u"\u1E9E\u212A\uFF21", u"\u00DFk\uFF41", 1, 0},       // sharp s, kelvin, full width
        {u"\u0130", u"i", 1, 1},                               // a dotted I has no simple folding
        {u"\uAC00", u"\uAC01", -1, -1},
        {u"\uFFFF", u"\U00010000", 1, 1}, // by unit, not by code point
    };
    const auto sign = [](int value) { return (value > 0) - (value < 0); };
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(sign(zn_strcmpW(row.a, row.b)), row.ordinal);
        EXPECT_EQ(sign(zn_strcmpW(row.b, row.a)), -row.ordinal);
        EXPECT_EQ(sign(zn_stricmpW(row.a, row.b)), row.folded);
        EXPECT_EQ(sign(zn_stricmpW(row.b, row.a)), -row.folded);
        const std::u16string_view a = row.a;
        const std::u16string_view b = row.b ? row.b : u"";
        EXPECT_EQ(sign(zn_icompare(a, b)), row.folded);
        EXPECT_EQ(zn_iequal(a, b), row.folded == 0);
    }
    EXPECT_EQ(zn_strnicmpW(u"ABCx", u"abcy", 3), 0);
    EXPECT_LT(zn_strnicmpW(u"ABCx", u"abcy", 4), 0);
    EXPECT_EQ(zn_strnicmpW(u"a", u"b", 0), 0);
}

TEST(Text, FindsCharactersAndTexts)
{
    const char16_t* text = u"one two one";
    EXPECT_EQ(zn_strchrW(text, u'o') - text, 0);
    EXPECT_EQ(zn_strrchrW(text, u'o') - text, 8);
    EXPECT_EQ(zn_strchrW(text, 0) - text, 11);
    EXPECT_EQ(zn_strrchrW(text, 0) - text, 11);
    EXPECT_EQ(zn_strstrW(text, u"two") - text, 4);
    EXPECT_EQ(zn_strstrW(text, u"") - text, 0);
    EXPECT_EQ(zn_strchrW(text, u'z'), nullptr);
    EXPECT_EQ(zn_strstrW(text, u"onex"), nullptr);
    EXPECT_EQ(zn_strchrW(nullptr, u'a'), nullptr);
    const char* bytes = "Charset=UTF-8; charset";
    EXPECT_EQ(zn_strrchrA(bytes, ';') - bytes, 13);
    EXPECT_EQ(zn_stristrA(bytes, "utf") - bytes, 8);
    EXPECT_EQ(zn_stristrA(bytes, "CHARSET") - bytes, 0);
    EXPECT_EQ(zn_stristrA(bytes, "utf-16"), nullptr);
    EXPECT_EQ(zn_stristrA(bytes, nullptr), bytes);
}

TEST(Text, CopiesAtMostNAndPads)
{
    char16_t buffer[6] = u"#####";
    EXPECT_EQ(zn_strncpyW(buffer, u"ab", 4), buffer);
    EXPECT_EQ(std::u16string_view(buffer, 5), std::u16string_view(u"ab\0\0#", 5));
    zn_strncpyW(buffer, u"wxyz", 2);
    EXPECT_EQ(std::u16string_view(buffer, 3), std::u16string_view(u"wx\0", 3));
}

TEST(Text, SkipsWhiteSpaceFromBothSides)
{
    struct Row {
        const char16_t* text;
        int from;
        int first;
        int end;
        int last;
    } rows[] = {{u" \t\r\n\v\fab \f", 0, 6, -1, 7},
                {u"ab", 0, 0, -1, 1},
                {u"  ", 0, 2, -1, -1},
                {u"", 0, 0, -1, -1},
                {nullptr, 5, 0, 5, -1},
                {u"a b", 1, 2, 2, 0},
                {u"a b", 9, 3, 9, 2},
                {u"\u00A0", -3, 0, 1, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(zn_findskipW(row.text, row.from), row.first);
        EXPECT_EQ(zn_findrskipW(row.text, row.end), row.last);
    }
}

} // namespace
