// Input that is deep, hostile or broken: nothing recurses, reads outside, or takes more than linear time.
#include "Zn_XmlDOM.h"

#include "long_tests.h"
#include "markup/charset_declaration.h"
#include "markup/tag_scan.h"

#include <gtest/gtest.h>

#include <ctime>
#include <functional>
#include <random>

namespace {

std::u16string Repeat(std::u16string_view piece, int count)
{
    std::u16string text;
    for (int i = 0; i < count; ++i)
        text += piece;
    return text;
}

std::u16string Nested(int depth)
{
    return Repeat(u"<a>", depth) + u"<b/>" + Repeat(u"</a>", depth);
}

TEST(HostileMarkup, AMillionLevels)
{
    constexpr int kDepth = 1000000;
    const std::u16string text = Nested(kDepth);
    Zn_XmlDOM doc;
    ASSERT_EQ(doc.Load(text.data(), static_cast<int>(text.size())), 1);
    ASSERT_NE(doc.FindTagRecurs(u"b", 0), nullptr);
    EXPECT_EQ(doc.FindTagRecurs(u"a", kDepth), nullptr);
    Zn_XmlDOM copy(doc);
    Zn_WString saved;
    copy.Save(saved, 1, 0, 0);
    EXPECT_TRUE(saved == text);
    Zn_Buffer bytes;
    copy.Save(bytes, 1, 0, 0);
    EXPECT_EQ(bytes.GetLength(), static_cast<int>(text.size()));
}

// Every way in which a deep tree is copied or goes.
TEST(HostileMarkup, DeepCopies)
{
    const std::u16string text = Nested(200000);
    Zn_XmlDOM doc;
    doc.Load(text.data(), static_cast<int>(text.size()));
    Zn_DOMElement element;
    element.Set(doc[0]);
    Zn_XmlDOM copy;
    copy = doc;
    copy.Assign(&element.children, &element);
    element = copy[0];
    copy.Append(&element.children, nullptr);
    copy.ReleaseList();
    EXPECT_EQ(element.children.Count(), 1);
    element.Clear();
    EXPECT_EQ(doc.Delete(0), 1);
}

// Processor time, so that other programs don't count.
double Seconds(const std::function<void()>& work)
{
    const std::clock_t start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

// The time of twice the input may be four times that of the input in a slow moment; the square of a million is
// beyond any limit.
TEST(HostileMarkup, TimeGrowsWithTheInput)
{
    struct {
        std::u16string_view head;
        std::u16string_view piece;
        std::u16string_view tail;
    } rows[] = {
        {u"", u"<", u""},
        {u"", u"<!--", u""},
        {u"", u"<a ", u""},
        {u"", u"</", u""},
        {u"", u"&", u""},
        {u"", u">", u""},
        {u"", u"]", u""},
        {u"", u"-", u""},
        {u"<a ", u"<!--", u""},
        {u"", u"<a <!-- --> ", u"<!--"},
        {u"", u"<a <![CDATA[<!--]]>", u"-->"},
        {u"", u"<a <![CDATA[<!--]]>", u"--><!--"},
        {u"", u"<?a <!-- -->", u""},
        {u"", u"<?a >", u""},
        {u"<!DOCTYPE ", u"]<!---->", u""},
        {u"", u"</a", u""},
        {u"<a>", u"<a x=\"", u""},
        {u"<a ", u"x='\" ", u"/>"},
        {u"<a ", u"x=\"1\" ", u"/>"},
        {u"<a ", u"=", u"/>"},
        {u"", u"&#", u""},
        {u"", u"<?xml", u"?>"},
    };
    const int count = LongTests() ? 1000000 : 30000;
    for (const auto& row : rows) {
        const auto load = [&](int n) {
            const std::u16string text = std::u16string(row.head) + Repeat(row.piece, n) + std::u16string(row.tail);
            return Seconds([&] {
                Zn_XmlDOM doc(1, 1, 1);
                doc.Load(text.data(), static_cast<int>(text.size()));
            });
        };
        bool linear = false;
        for (int tries = 0; !linear && tries < 3; ++tries) { // the machine may have had something else to do
            const double once = load(count);
            linear = once < 3.0 && load(2 * count) < 4 * once + 0.3;
        }
        EXPECT_TRUE(linear) << Zn_WString(row.piece).ToUtf8();
    }
}

TEST(HostileMarkup, TimeOfTheDeclarationsSearch)
{
    std::pair<std::string_view, std::string_view> rows[] = {
        {"?xml", ""}, {"<?xml", "?>"}, {"<?xml?>", ""},         {"<?xml ", ""},
        {"?xm", ""},  {" ?xml  ", ""}, {"<a?>", "?xml12?xml "}, {"?>", ""},
    };
    for (const auto& [piece, tail] : rows) {
        std::string text;
        for (int i = 0; i < 300000; ++i)
            text += piece;
        text += tail;
        EXPECT_LT(Seconds([&] {
                      std::string name;
                      zn::FindXmlEncoding(text, name);
                      zn::FindTag("?xml", text);
                  }),
                  2.0)
            << piece;
    }
}

// The table that stands in for searching once a tag had no end gives the same answers as searching.
TEST(HostileMarkup, TagEndsFromTheTable)
{
    std::mt19937 random(5);
    const std::u16string_view pieces[] = {u"<a", u" ", u">", u"/>", u"?>", u"<!--", u"-->", u"-", u"x", u"<?b", u"?"};
    for (int round = 0; round < 20000; ++round) {
        std::u16string text;
        for (auto n = random() % 30; n > 0; --n)
            text += pieces[random() % std::size(pieces)];
        const char16_t* const end = text.data() + text.size();
        zn::TagEndFinder finder(end);
        for (const char16_t* at = text.data(); at != end; ++at) {
            const zn::Markup kind = random() % 2 ? zn::Markup::Element : zn::Markup::ProcInstr;
            const zn::TagEnd found = finder.Find(at, kind);
            const zn::TagEnd searched = zn::FindTagEnd(at, end, kind);
            ASSERT_EQ(found.at, searched.at) << Zn_WString(text).ToUtf8() << " at " << at - text.data();
            ASSERT_EQ(found.next, searched.next);
            ASSERT_TRUE(!found.at || found.kind == searched.kind);
        }
    }
}

} // namespace
