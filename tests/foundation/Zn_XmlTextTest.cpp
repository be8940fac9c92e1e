#include "Zn_WString.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using namespace std::string_view_literals;

TEST(XmlText, Encodes)
{
    const std::pair<std::u16string_view, std::u16string_view> rows[] = {
        {u"", u""},
        {u"plain \uD55C text", u"plain \uD55C text"},
        {u"a<b>&\"c'", u"a&lt;b&gt;&amp;&quot;c&apos;"},
        {u"&amp;", u"&amp;amp;"},
        {u" a\tb\nc\n ", u"&#x20;a\tb\nc&#xA;&#x20;"},
        {u"  ", u"&#x20;&#x20;"},
        {u"a\rb\vc\0\x1F\x7F\x85"sv, u"a&#xD;b&#xB;c&#x0;&#x1F;&#x7F;&#x85;"},
        {u"\U0001F600|\xD83D|\xDE00|\xD83D"sv, u"\U0001F600|&#xD83D;|&#xDE00;|&#xD83D;"},
    };
    for (const auto& [plain, encoded] : rows) {
        const Zn_WString text(plain);
        EXPECT_EQ(text.EncodeXml(), encoded);
        EXPECT_EQ(text.EncodeXml().DecodeXml(), text);
    }
}

TEST(XmlText, Decodes)
{
    const std::pair<std::u16string_view, std::u16string_view> rows[] = {
        {u"&lt;&gt;&amp;&quot;&apos;", u"<>&\"'"},
        {u"&#65;&#x41;&#X6a;&#x00000000000041;&#128512;", u"AAjA\U0001F600"},
        {u"&#xD83D;&#xDE00;", u"\U0001F600"}, // halves that others wrote join
        {u"&amp;lt;", u"&lt;"},
        {u"a & b &", u"a & b &"},
        {u"&nbsp;&LT;&lt&#;&#x;&#65&#x4G;&#-1;", u"&nbsp;&LT;&lt&#;&#x;&#65&#x4G;&#-1;"},
        {u"&#x110000;&#99999999999999999999;&#x10FFFF;", u"&#x110000;&#99999999999999999999;\U0010FFFF"},
        {u"&&lt;&", u"&<&"},
    };
    for (const auto& [text, decoded] : rows)
        EXPECT_EQ(Zn_WString(text).DecodeXml(), decoded) << Zn_WString(text).ToUtf8();
}

TEST(XmlText, DecodingIsTheReverseOfEncoding)
{
    std::mt19937 random(41);
    const std::u16string_view alphabet = u"a&<>\"' \t\r\n\v\f\x01#x;1lgtmpquos\u0085\uD55C\uFFFE"sv;
    for (int i = 0; i < 5000; ++i) {
        std::u16string text;
        for (auto n = random() % 24; n > 0; --n) {
            const auto kind = random() % 8;
            text += kind == 0   ? static_cast<char16_t>(0xD800 + random() % 0x800)
                    : kind == 1 ? static_cast<char16_t>(random())
                                : alphabet[random() % alphabet.size()];
        }
        const Zn_WString original(text);
        const Zn_WString encoded = original.EncodeXml();
        ASSERT_EQ(encoded.DecodeXml(), original) << original.ToUtf8();
        ASSERT_EQ(Zn_WString::FromUtf8(encoded.ToUtf8()).DecodeXml(), original) << "survives UTF-8";
        ASSERT_EQ(Zn_WString(encoded).Trim(), encoded) << "survives trimming";
    }
}

} // namespace
