#include "markup/markup_writer.h"

#include "Zn_XmlDOM.h"

#include <gtest/gtest.h>

#include <random>

namespace {

std::string TextOf(const Zn_Buffer& buffer)
{
    return std::string(reinterpret_cast<const char*>(buffer.GetData()), buffer.GetSpan().size());
}

// Bytes are what the wide text gives when it is escaped first and converted then.
TEST(MarkupWriter, EscapesAndConvertsInOnePass)
{
    std::mt19937 random(3);
    const std::u16string plain = u"a&<>\"'\t\n\r\x1F ~\x7F\u00E9\uD55C";
    const std::u16string_view pieces[] = {u"plain text ", u"\uD55C\uAE00", u"\U0001F600", u"0123456789abcdef"};
    for (int round = 0; round < 20000; ++round) {
        std::u16string text;
        for (auto n = random() % 9; n > 0; --n)
            text += random() % 4 ? std::u16string(1, plain[random() % plain.size()])
                                 : std::u16string(pieces[random() % std::size(pieces)]);
        if (random() % 8 == 0)
            text.insert(random() % (text.size() + 1), 1, random() % 2 ? u'\xD83D' : u'\xDE00');
        const Zn_WString escaped = Zn_WString(text).EncodeXml();
        for (const unsigned codePage : {65001u, 1252u, 949u}) {
            zn::ByteOutput output(codePage, zn::Missing::XmlReference);
            output.PutEscaped(text);
            output.Put(text);
            Zn_Buffer bytes, expected;
            EXPECT_TRUE(output.AppendTo(bytes));
            zn::EncodeText(escaped.GetView(), codePage, expected, zn::Missing::XmlReference);
            expected.AppendStr(text.data(), static_cast<int>(text.size()), codePage);
            ASSERT_EQ(TextOf(bytes), TextOf(expected)) << escaped.ToUtf8();
        }
    }
}

TEST(MarkupWriter, LongOutputGrows)
{
    zn::WideOutput wide;
    zn::ByteOutput bytes(65001);
    const std::u16string text(100000, u'\uD55C');
    for (int i = 0; i < 20; ++i) {
        wide.PutEscaped(text);
        bytes.PutEscaped(text);
        bytes.PutNewLine(1000);
    }
    Zn_WString out;
    EXPECT_TRUE(wide.AppendTo(out));
    EXPECT_EQ(out.GetLength(), 2000000);
    EXPECT_TRUE(wide.AppendTo(out)); // begun anew: nothing more
    EXPECT_EQ(out.GetLength(), 2000000);
    Zn_Buffer buffer;
    EXPECT_TRUE(bytes.AppendTo(buffer));
    EXPECT_EQ(buffer.GetLength(), 20 * (300000 + 1002));
}

TEST(MarkupWriter, TooLongAnOutputLeavesTheTargetAsItWas)
{
    Zn_DOMElemList list;
    Zn_DOMElement element;
    element.tag = u"a";
    list.Add(element);
    Zn_WString text(u"kept");
    list.Save(text, 1, 1, 0x7FFFFFFF); // that many tabs
    EXPECT_EQ(text, u"kept");
}

} // namespace
