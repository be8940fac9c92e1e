#include "markup/markup_writer.h"

#include "Zn_XmlDOM.h"

#include <gtest/gtest.h>

#include <random>

namespace {

std::string TextOf(const Zn_Buffer& buffer)
{
    return std::string(reinterpret_cast<const char*>(buffer.GetData()), buffer.GetSpan().size());
}

TEST(MarkupWriter, WithoutATree)
{
    const auto write = [](auto& output) {
        zn::MarkupWriter writer(output, {});
        writer.Open(Zn_DOMElement::ProcInstr, "xml");
        writer.Attribute("version", "1.0");
        writer.Close();
        writer.Open(Zn_DOMElement::Element, u"root");
        writer.Open(Zn_DOMElement::Element, "n");
        writer.Attribute("id", std::u16string_view(u"<\u00E9\"\uD55C"));
        writer.Attribute("size", "");
        writer.Text(Zn_DOMElement::Text, std::string_view("12.5"));
        writer.Close();
        writer.Open(Zn_DOMElement::EmptyElement, "e");
        writer.Close();
        writer.Close();
        writer.Close(); // one too many does nothing
    };
    struct {
        unsigned codePage;
        zn::Missing missing;
        std::string_view value;
    } rows[] = {
        {65001, zn::Missing::Replace, "&lt;\u00E9&quot;\uD55C"},
        {1252, zn::Missing::Replace, "&lt;\xE9&quot;?"},
        {1252, zn::Missing::XmlReference, "&lt;\xE9&quot;&#xD55C;"},
    };
    for (const auto& row : rows) {
        Zn_Buffer out;
        EXPECT_TRUE(zn::WriteMarkup(out, row.codePage, row.missing, write));
        EXPECT_EQ(TextOf(out), "<?xml version=\"1.0\"?>\r\n<root>\r\n\t<n id='" + std::string(row.value) +
                                   "' >12.5</n>\r\n\t<e/>\r\n</root>");
    }
    Zn_Buffer wide;
    EXPECT_TRUE(zn::WriteMarkup(wide, 1200, zn::Missing::Replace, write));
    Zn_WString text(reinterpret_cast<const char*>(wide.GetData()), wide.GetLength(), 1200);
    EXPECT_EQ(text.Left(6), u"<?xml ");
    EXPECT_EQ(text.Right(7), u"</root>");
}

// Bytes are what the wide text gives when it is escaped first and converted then.
TEST(MarkupWriter, EscapesAndConvertsInOnePass)
{
    std::mt19937 random(3);
    const std::u16string_view pieces[] = {u"a",          u"plain text ",
                                          u"&",          u"<",
                                          u">",          u"\"",
                                          u"'",          u"\t",
                                          u"\n",         u"\r",
                                          u"\x1F",       u" ",
                                          u"~",          u"\x7F",
                                          u"\u00E9",     u"\uD55C\uAE00",
                                          u"\U0001F600", u"0123456789abcdef"};
    for (int round = 0; round < 20000; ++round) {
        std::u16string text;
        for (auto n = random() % 9; n > 0; --n)
            text += pieces[random() % std::size(pieces)];
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
