#include "markup/name_values.h"

#include "Zn_DOMElement.h"

#include <gtest/gtest.h>

#include <random>

namespace {

std::string Attributes(std::u16string_view text)
{
    Zn_DOMElement element;
    EXPECT_EQ(element.MakeVarList(text), 1);
    std::string all;
    for (const Zn_NamedStr& item : element.attributes)
        all += item.Id().ToUtf8() + "[" + item.Str().ToUtf8() + "]";
    return all;
}

TEST(NameValues, AttributesOfATag)
{
    struct {
        std::u16string_view text;
        std::string_view attributes;
    } rows[] = {
        {u"", ""},
        {u"a=1 b = '2' c", "a[1]b[2]c[]"},
        {u"x y=1", "x[]"},
        {u"id=h1 border=1\ta=b=c\r\nd=\u00e4", "id[h1]border[1]a[b=c]d[\xC3\xA4]"},
        {u"a=\"1\" b='2'\r\n\tc=\"\"", "a[1]b[2]c[]"},
        {u"a=\"x y\" b='it\"s'", "a[x y]b[it\"s]"},
        {u"a= 1 b =2 c = 3", "a[1]b[2]c[3]"},
        {u"a =", "a[]"},
        {u"a==", "a[=]"},
        {u"= 1 =2 b=3", "b[3]"},
        {u"a=\"&lt;&amp;\" &quot;=1", "a[<&]\"[1]"},
        {u"&amp;", "&amp;[]"}, // a name alone is not decoded
        {u"a=(1) b = (2) c={3}", "a[1]b[(2)]c[3]"},
        {u"a='1 b=2", "a['1]b[2]"}, // a quote without its mate
        {u"a = '1 b=2", "a[1]b[2]"},
        {u"a=\"b\"c d=1", "a[\"b\"c]d[1]"},
        {u"a=C:\\temp b=\"C:\\\\temp\" c='&#92;' d=x\\ y", "a[C:temp]b[C:\\temp]c[\\]d[x y]"},
        {u"a=1 A=2 a=3", "a[1]A[2]a[3]"},
        {u"a\v=\"1\" b=\"2\"", "a\v[1]b[2]"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Attributes(row.text), row.attributes) << Zn_WString(row.text).ToUtf8();
}

TEST(NameValues, RawTextIsGoneBeforeItIsRead)
{
    Zn_DOMElement element;
    EXPECT_EQ(element.MakeVarList(), 0);
    element.SetAttrib(u"a=1");
    EXPECT_EQ(element.MakeVarList(), 1);
    EXPECT_TRUE(element.rawAttributes.IsEmpty());
    EXPECT_EQ(element.attributes.Count(), 0);
    element.MakeVarList(Zn_WString(u"a='b=1 c=2'"));
    element.MakeVarList(element.attributes.Str(u"a")); // a text that is replaced on the way
    EXPECT_EQ(element.attributes.Str(u"c"), u"2");
    element.SetAttrib(u"b=1");
    const Zn_WString copy = element.rawAttributes;
    element.MakeVarList(copy);
    EXPECT_EQ(element.attributes.Str(u"b"), u"1") << "a copy is not the raw text";
    element.SetAttrib(u"b=1");
    EXPECT_EQ(element.MakeVarList(), 0);
    EXPECT_EQ(element.rawAttributes, u"b=1");
}

std::u16string Pairs(std::u16string_view text, bool plainFirst)
{
    std::u16string all;
    const auto add = [&](const zn::NameValue& pair) {
        all.append(pair.name).append(u"|").append(pair.value).append(u"|");
        all += static_cast<char16_t>(u'0' + static_cast<int>(pair.place));
    };
    if (plainFirst) {
        zn::ReadNameValues(text, add);
        return all;
    }
    Zn_WStrList tokens;
    tokens.Parse(text, u" \t\r\n", u'\\', 1, 1, 1);
    zn::NameValueReader reader(add);
    for (const Zn_WString& token : tokens)
        reader.Token(token.GetView());
    reader.End();
    return all;
}

// The short cut for plain attributes gives what splitting into tokens gives.
TEST(NameValues, PlainAttributesAreReadAsAllOthers)
{
    std::mt19937 random(7);
    const std::u16string_view pieces[] = {u"a", u"=", u"\"", u"'", u" ", u"\\", u"\v", u"a=\"1\"", u" b='x y' "};
    for (int round = 0; round < 20000; ++round) {
        std::u16string text;
        for (auto n = random() % 12; n > 0; --n)
            text += pieces[random() % std::size(pieces)];
        ASSERT_EQ(Pairs(text, true), Pairs(text, false)) << Zn_WString(text).ToUtf8();
    }
}

} // namespace
