#include "Zn_HtmlDOM.h"

#include "Zn_CodePage.h"
#include "describe_tree.h"
#include "html_oracle.h"
#include "long_tests.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <random>

namespace {

using View = std::u16string_view;

int LoadPage(Zn_HtmlDOM& page, View text)
{
    return page.Load(text.data(), static_cast<int>(text.size()));
}

TEST(HtmlDOM, EndsOfElements)
{
    struct {
        View text;
        std::string_view tree;
    } rows[] = {
        {u"<b>x", "50b(0'x')"},
        {u"<b>x<b>y</b></B>z", "48b(0'x' 48b(0'y')) 0'z'"},
        {u"<b><b /></b>z", "48b(49b) 0'z'"},
        {u"<b><b x='</b>'></b>z", "50b(48b[x='</b](0''>') 0'z')"},
        {u"<i><b>x</i>y", "48i(50b(0'x')) 0'y'"},
        {u"<a></ab></a >x", "48a(0'</ab>') 0'x'"},
        {u"<b><!--</b>--></b>", "48b(153'</b>')"},
        {u"<script>if (a<b) x();</script>z", "64script'if (a<b) x();' 0'z'"},
        {u"<pre><pre></prefix>z", "64pre'<pre>' 0'z'"},
        {u"<p>a<p>b</p>c", "80p(0'a') 80p(0'b') 0'c'"},
        {u"<p>a<b><p></b></p>", "80p(0'a' 48b(81p))"},
        {u"<p>a<b></p>", "81p(0'a' 50b(0'</p>'))"},
        {u"<p><![CDATA[</p>]]></p>", "80p(0'<![CDATA[</p>]]>')"},
        {u"<param name=x>", "81param[name=x]"},
        {u"<small>a<small></small></small>", "96small(0'a' 96small)"},
        {u"<table><tr><td>a</td><tr>b</tr>c</table>d", "97table(98tr(48td(0'a')) 98tr(0'b') 0'c') 0'</table>d'"},
        {u"<table>a<table>b", "97table(0'a') 97table(0'b')"},
        {u"<tr>a</table>b", "98tr(0'a') 0'</table>b'"},
        {u"<tr><td>a</tr>b", "98tr(50td(0'a</tr>b'))"},
        {u"<tablex y=1>", "97table[x=]"},
    };
    for (const auto& row : rows) {
        Zn_HtmlDOM page;
        EXPECT_EQ(LoadPage(page, row.text), 1);
        EXPECT_EQ(DescribeTree(page), row.tree) << Zn_WString(row.text).ToUtf8();
    }
}

TEST(HtmlDOM, TagsAndText)
{
    struct {
        View text;
        int keepText;
        int result;
        std::string_view tree;
    } rows[] = {
        {u"", 1, 0, ""},
        {u"<br/><my-tag><1></x>< b>", 1, 1, "0'<br/><my-tag><1></x>< b>'"},
        {u"<br>x<IMG src=a>", 1, 1, "32br 0'x' 32IMG[src=a]"},
        {u" a <br> <!-- c --> &amp; ", 1, 1, "0' a ' 32br 0' ' 153' c ' 0' &amp; '"},
        {u" a <br> <!-- c --> &amp; ", 0, 1, "0'a' 32br 0'&amp;'"},
        {u"a<!-- c", 1, 0, "0'a' 153' c'"},
        {u"<b>a<!-- c", 0, 0, "50b(0'a')"},
        {u"<!DOCTYPE html><!doctype><!ELEMENT>", 1, 1, "17DOCTYPE{html} 17doctype 0'<!ELEMENT>'"},
        {u"<?php x=1 ?>y<?z", 1, 1, "16php[x=1] 0'y<?z'"},
        {u"<a <!-- > --> x=1>y</a>", 1, 1, "48a[<!--=](0'y')"},
        {u"<a x=1", 1, 1, "50a(0' x=1')"},
        {u"<\u00E9><p\u00E9>x", 1, 1, "0'<\xC3\xA9>' 81p\xC3\xA9(0'x')"},
    };
    for (const auto& row : rows) {
        Zn_HtmlDOM page(1, 1, row.keepText);
        EXPECT_EQ(LoadPage(page, row.text), row.result);
        EXPECT_EQ(DescribeTree(page), row.tree) << Zn_WString(row.text).ToUtf8();
    }
    Zn_HtmlDOM raw(0, 0, 1);
    EXPECT_EQ(LoadPage(raw, u"<b x=1>y<i></b>"), 1);
    EXPECT_EQ(DescribeTree(raw), "48b{x=1}'y<i>'");
    Zn_WString saved;
    raw.Save(saved, 0, 0, 0);
    EXPECT_EQ(saved.ToUtf8(), "<b x=1>y<i></b>");
}

std::u16string RandomPage(std::mt19937& random)
{
    static constexpr View kNames[] = {u"b",      u"B",      u"i",   u"p",   u"P",       u"param",  u"pre",    u"br",
                                      u"li",     u"td",     u"TD",  u"tr",  u"table",   u"Table",  u"tablex", u"small",
                                      u"spacer", u"script", u"img", u"x:1", u"p\u00E9", u"\u00E9", u"?pi"};
    static constexpr View kPieces[] = {
        u"<!--", u"-->", u"<!-->", u"<![CDATA[", u"]]>",     u"<!DOCTYPE ", u"<!x",  u"<?a ", u"?>", u"/>", u">",
        u"<",    u"</",  u" ",     u"text",      u" x='1>'", u" y=\"<b>\"", u"\r\n", u"/",    u"<1", u"=",  u"'"};
    static constexpr View kTails[] = {u">", u">", u">", u">", u">", u" ", u" />", u" a=1>", u"\t>", u"/>", u""};
    const auto pick = [&random](const auto& from) { return from[random() % std::size(from)]; };
    // Few names for a page, so that they meet.
    const View names[] = {pick(kNames), pick(kNames), pick(kNames), pick(kNames)};
    std::u16string text;
    for (auto n = 1 + random() % 40; n > 0; --n) {
        const auto what = random() % 10;
        if (what < 7)
            text.append(what < 4 ? u"<" : u"</").append(pick(names)).append(pick(kTails));
        else
            text.append(pick(kPieces));
    }
    return text;
}

TEST(HtmlDOM, RandomPagesAsTheLiteralReader)
{
    std::mt19937 random(42);
    const int rounds = LongTests() ? 100000 : 4000;
    for (int round = 0; round < rounds; ++round) {
        const std::u16string text = RandomPage(random);
        const bool content = random() % 8 != 0;
        const bool attributes = random() % 4 != 0;
        const bool keep = random() % 2 != 0;
        Zn_HtmlDOM page(content, attributes, keep);
        Zn_DOMElemList expected(page.GetCodePage());
        const int result = HtmlOracle(content, attributes, keep).Load(expected, text, nullptr);
        ASSERT_EQ(LoadPage(page, text), result) << Zn_WString(text).ToUtf8();
        ASSERT_EQ(DescribeTree(page), DescribeTree(expected)) << Zn_WString(text).ToUtf8();
        Zn_WString saved;
        Zn_WString wanted;
        page.Save(saved, 0, 0, 0);
        expected.Save(wanted, 0, 0, 0);
        ASSERT_TRUE(saved == wanted);
    }
}

// Twice the page may take little more than twice the time: four times in a slow moment.
TEST(HtmlDOM, TimeGrowsWithThePage)
{
    const View rows[] = {u"<b>", u"<p>",  u"<table><tr><td>", u"<",    u"<!--",     u"<!-->",    u"<b><i>x</i></b>",
                         u"<b ", u"<?a ", u"<p><b>",          u"</b ", u"<p <!-- ", u"<script>", u"<p><![CDATA["};
    const auto load = [](const std::u16string& text) {
        Zn_HtmlDOM page;
        const std::clock_t start = std::clock();
        LoadPage(page, text);
        return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    };
    const std::size_t size = LongTests() ? 1000000 : 50000;
    for (int nested = 0; nested < 2; ++nested) {
        for (const View row : rows) {
            double before = 0;
            for (std::size_t length = size; length <= (LongTests() ? 8 : 2) * size; length *= 2) {
                std::u16string text;
                while (text.size() < length)
                    text += row;
                for (std::size_t i = 0; nested != 0 && i < length / 8; ++i)
                    text += u"</b>";
                double time = load(text);
                for (int tries = 0; before > 0 && time >= 3 * before && tries < 2; ++tries)
                    time = std::min(time, load(text)); // the machine may have had something else to do
                if (LongTests())
                    std::printf("%-20s %8zu %.3f s\n", Zn_WString(row).ToUtf8().c_str(), text.size(), time);
                if (before > 0) {
                    EXPECT_LT(time, 4 * before + 0.3) << Zn_WString(row).ToUtf8() << text.size();
                }
                before = time;
            }
        }
    }
}

// Elements of ever other names must not cost a scan each.
TEST(HtmlDOM, ManyNames)
{
    for (const View prefix : {u"p", u"tr", u"x", u"spacer", u"\u00E9"}) {
        std::u16string text;
        const int count = LongTests() ? 200000 : 20000;
        for (int i = 0; i < count; ++i)
            text.append(u"<").append(prefix).append(Zn_WString::FromUtf8(std::to_string(i)).GetView()).append(u">");
        Zn_HtmlDOM page;
        const std::clock_t start = std::clock();
        EXPECT_EQ(LoadPage(page, text), 1);
        EXPECT_LT(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC, 2.0);
    }
}

TEST(HtmlDOM, CharacterSetOfBytes)
{
    struct {
        std::string_view text;
        unsigned codePage;
        unsigned result;
        std::string_view content;
    } rows[] = {
        {"<meta content='text/html; charset=euc-kr'>\xB0\xA1", 1252, 949, "\xEA\xB0\x80"},
        {"<META x><Meta CharSet = windows-1252 >\xE9", 65001, 1252, "\xC3\xA9"},
        {"<meta charset=shift_jis'>\x82\xA0", 0, 932, "\xE3\x81\x82"},
        {"<meta charset=\"euc-kr\">\xE9", 1252, 1252, "\xC3\xA9"}, // a quote at once: no name
        {"<meta charset=no-such>\xC3\xA9", 1252, 65001, "\xC3\xA9"},
        {"<meta>\xE9", 1252, 1252, "\xC3\xA9"},
        {"<br>\xC3\xA9", 0, 65001, "\xC3\xA9"},
    };
    ZnSetLocaleCP(65001);
    for (const auto& row : rows) {
        Zn_HtmlDOM page;
        EXPECT_EQ(page.Load(row.text.data(), static_cast<int>(row.text.size()), row.codePage), 1);
        EXPECT_EQ(page.GetCodePage(), row.result) << row.text;
        EXPECT_EQ(page[page.Count() - 1].text.ToUtf8(), row.content) << row.text;
    }
    ZnSetLocaleCP(0);
}

TEST(HtmlDOM, SetCharSet)
{
    Zn_HtmlDOM page;
    LoadPage(page, u"<head></head><HEAD><meta http-equiv=content-TYPE content=x></HEAD>");
    EXPECT_EQ(page.SetCharSet(949, 0), 1);
    EXPECT_EQ(DescribeTree(page), "48head 48HEAD(32meta[http-equiv=content-TYPE][content=text/html; charset=euc-kr])");
    EXPECT_EQ(page.SetCharSet(1252, 1), 1);
    EXPECT_EQ(DescribeTree(page[0].children, &page[0]),
              "32META[HTTP-EQUIV=Content-type][CONTENT=text/html; charset=windows-1252]");
    Zn_HtmlDOM other;
    LoadPage(other, u"<head>");
    EXPECT_EQ(other.SetCharSet(949, 0), 0);
    EXPECT_EQ(other.SetCharSet(949, 1), 0);
    EXPECT_EQ(other[0].kind, 48);
    EXPECT_EQ(other.SetCharSet(949, 1), 1);
}

// The searches under their names.
struct Searches : Zn_HtmlDOM {
    using Zn_HtmlDOM::FindBeginTagPos;
    using Zn_HtmlDOM::FindOptionTagEndPos;
    using Zn_HtmlDOM::FindPairTag_A;
    using Zn_HtmlDOM::FindTag_A;
    using Zn_HtmlDOM::FindTagEndPos;
    using Zn_HtmlDOM::FindTrTdTagEndPos;
    using Zn_HtmlDOM::GetTagName;
};

TEST(HtmlDOM, Searches)
{
    int kind = 48;
    int skip = 0;
    EXPECT_EQ(Searches::FindBeginTagPos(u" <!-- > --> />", -1, kind, skip), 12);
    EXPECT_EQ(kind, 49);
    EXPECT_EQ(skip, 14);
    EXPECT_EQ(Searches::FindTagEndPos(u"x<b>y</b></b >z", -1, u"b", 1, skip), 9);
    EXPECT_EQ(skip, 14);
    EXPECT_EQ(Searches::FindTagEndPos(u"x</pre>", -1, u"pre", 3, skip), 1);
    EXPECT_EQ(Searches::FindTagEndPos(u"x</p>", -1, u"p", 1, skip), -1);
    EXPECT_EQ(Searches::FindOptionTagEndPos(u"x<p>", -1, u"p", 1, skip), 1);
    EXPECT_EQ(skip, 1);
    EXPECT_EQ(Searches::FindTrTdTagEndPos(u"x</tr>", -1, u"tr", 2, skip), 1);
    EXPECT_EQ(skip, 6);
    EXPECT_EQ(Searches::FindTagEndPos(u"", -1, u"a b", 3, skip), -1);
    EXPECT_EQ(Searches::GetTagName(u"tablet", -1), 5);
    EXPECT_EQ(Searches::GetTagName(u"a", -1), 0);
    EXPECT_EQ(Searches::FindTag_A("meta", "meta <META", 10), 5);
    EXPECT_EQ(Searches::FindTag_A("meta", "", 0), -2);
    EXPECT_EQ(Searches::FindPairTag_A("<!-- > -->x>", 12), 11);
    EXPECT_EQ(Zn_HtmlDOM::FindTagStyle(u"LINK", 4), 32);
    EXPECT_EQ(Zn_HtmlDOM::FindTagStyle(u"\u00E9", 1), 0);
}

} // namespace
