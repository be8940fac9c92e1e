#include "EventLog.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_view_literals;

struct Row {
    std::u16string_view text;
    int result;
    std::u16string_view events;
};

void Expect(std::initializer_list<Row> rows)
{
    for (const Row& row : rows) {
        EventLog handler;
        const int result = Zn_SAXIterator(&handler).Parse(row.text.data(), static_cast<int>(row.text.size()));
        const Zn_WString what(row.text);
        EXPECT_EQ(result, row.result) << what.ToUtf8();
        EXPECT_EQ(Zn_WString(handler.log).ToUtf8(), Zn_WString(row.events).ToUtf8()) << what.ToUtf8();
    }
}

TEST(SAXIterator, Tags)
{
    Expect({
        {u"", 1, u""},
        {u"<a></a>", 1, u"<a >a "},
        {u"<a x='1' y></a>", 1, u"<a[x='1' y] >a "},
        {u"<a ></a>", 1, u"<a >a "},
        {u"<a  ></a>", 1, u"<a[ ] >a "},
        {u"<br/><br /><br x=1/>", 1, u"/br /br /br[x=1] "},
        {u"<?xml version=\"1.0\"?><?p?>", 1, u"?xml[version=\"1.0\"] ?p "},
        {u"<a_1:b></a_1:b>", 1, u"<a_1:b >a_1:b "},
        {u"<my-tag></my>", 1, u"<my[tag] >my "}, // a name ends at "-", and one character more is left out
        {u"<a/b></a>", 1, u"<a[b] >a "},
        {u"<a\\b></a>", 1, u"<a[b] >a "},
        {u"<a <b></a>", 1, u"<a[<b] >a "},
        {u"<a x='>'></a>", 1, u"<a[x='] T['>] >a "},
        {u"<a></a x='1' >t", 1, u"<a >a T[t] "},
        {u"<a></a ", 1, u"<a >a "},
    });
}

TEST(SAXIterator, NamesCountWideCharactersByTheirLowByte)
{
    Expect({
        {u"<\u00E9\uD55Cx></\u00E9>", 1, u"<\u00E9[x] >\u00E9 "}, // the low byte of U+D55C is 5C
        {u"<\uAC80\uD589>t</\uAC80\uD589>", 1, u"<\uAC80\uD589 T[t] >\uAC80\uD589 "},
        {u"<a\uAC00></a\uAC00>", 1, u"<a >a "},
        {u"<\uAC00>", 1, u"T[<\uAC00>] "},
    });
}

TEST(SAXIterator, WhatIsText)
{
    Expect({
        {u"a <1 b", 1, u"T[a <1 b] "},
        {u"a < b", 1, u"T[a < b] "},
        {u"</1></ a><><!", 1, u"T[</1></ a><><!] "},
        {u"<abc", 1, u"T[<abc] "},
        {u"<", 1, u"T[<] "},
        {u"</", 1, u"T[</] "},
        {u"<a> x </a>", 1, u"<a W[ ] T[x] W[ ] >a "},
        {u" \r\n\t\v\f ", 1, u"W[ \r\n\t\v\f ] "},
        {u"<a>x y&amp;</a>\n", 1, u"<a T[x y&amp;] >a W[\n] "},
        {u"a\0b"sv, 1, u"T[a\0b] "sv},
    });
}

TEST(SAXIterator, CommentsAndSections)
{
    Expect({
        {u"<!-- x --><!---->", 1, u"C[ x ] C[] "},
        {u"<!--->-->", 1, u"C[->] "},
        {u"<![CDATA[ <a> ]] ]]><![cdata[]]>", 1, u"D[ <a> ]] ] D[] "},
        {u"<a x <!-- > --> y></a>", 1, u"<a[x <!-- > --> y] >a "},
        {u"<a <!-- --> />", 1, u"/a[<!-- --> ] "},
        {u"<a <!--> --></a>", 0, u"<a[<!--> --></a] "},
        {u"x<!-- ", 0, u"T[x] "},
        {u"x<![CDATA[ ]]", 0, u"T[x] "},
    });
}

TEST(SAXIterator, Declarations)
{
    Expect({
        {u"<!DOCTYPE a [<!ENTITY x \"y\">]><a></a>", 1, u"!DOCTYPE[a [<!ENTITY x \"y\">]] <a >a "},
        {u"<!doctype a []  >\r\n<a/>", 1, u"!doctype[a []  ] W[\n] /a "}, // the CR goes with the ">"
        {u"<!DOCTYPE]>", 1, u"!DOCTYPE "},
        {u"<!DOCTYPE a><a></a>", 0, u""}, // without "]" it has no end
        {u"<!DOCTYPE a><a/>t", 1, u"/DOCTYPE[a><a] T[t] "},
        {u"<!DOCTYPE a <!-- ] --> []>", 1, u"!DOCTYPE[a <!-- ] --> []] "},
        {u"<!ELEMENT a (b)>t", 1, u"T[t] "},
        {u"<!ELEMENT a/>t", 1, u"/!ELEMENT[a] T[t] "},
        {u"t<!ELEMENT a ", 0, u"T[t] "},
    });
}

TEST(SAXIterator, Nesting)
{
    Expect({
        {u"<a></A>", 1, u"<a >a "},
        {u"<abc></a>", 1, u"<abc >a "}, // a prefix is enough
        {u"<a></ab>", 0, u"<a "},
        {u"<a><b></a></b>", 0, u"<a <b "},
        {u"t</a>", 0, u""},
        {u"<a>t", 0, u"<a "},
        {u"<a/></a>", 0, u"/a "},
    });
}

TEST(SAXIterator, MissingEndsOfTagsAreNoFault)
{
    Expect({
        {u"<?a b", 1, u"?a W[ ] T[b] "},
        {u"<?a b><?c d?>", 1, u"?a[b><?c d] "},
        {u"<?a /><?b >", 1, u"/a ?b W[ ] T[>] "},
        {u"<?a /><?b <?c >?d>", 1, u"/a ?b W[ ] ?c W[ ] T[>?d>] "},
        {u"<?>", 1, u"? T[>] "},
        {u"<a b", 0, u"<a "},
        {u"<a x <![CDATA[<!--]]> </a>", 1, u"<a W[ ] T[x] W[ ] D[<!--] W[ ] >a "},
        {u"<a <![CDATA[ <!-- ]]> <b> <c <!-- ", 0, u"<a W[ ] D[ <!-- ] W[ ] <b W[ ] <c W[ ] "},
    });
}

TEST(SAXIterator, EncodingOfBytes)
{
    struct {
        std::string_view text;
        unsigned codePage;
        std::u16string_view events;
    } rows[] = {
        {"<a>\xC3\xA9</a>", 65001, u"<a T[\u00E9] >a "},
        {"<a>\xE9</a>", 1252, u"<a T[\u00E9] >a "},
        {"<?xml encoding='windows-1252'?><a>\xE9</a>", 65001,
         u"#[1252] ?xml[encoding='windows-1252'] <a T[\u00E9] >a "},
        {"<?xml version='1.0'?><a>\xE9</a>", 1252, u"?xml[version='1.0'] <a T[\u00E9] >a "},
        {"\xEF\xBB\xBF<a/>", 65001, u"/a "},
    };
    for (const auto& row : rows) {
        EventLog handler;
        EXPECT_EQ(Zn_SAXIterator(&handler).Parse(row.text.data(), static_cast<int>(row.text.size()), row.codePage), 1);
        EXPECT_EQ(Zn_WString(handler.log), row.events) << row.text;
    }
}

TEST(SAXIterator, NothingToReadOrNobodyToTell)
{
    EventLog handler;
    EXPECT_EQ(Zn_SAXIterator(nullptr).Parse(u"<a/>", 4), 0);
    EXPECT_EQ(Zn_SAXIterator(nullptr).Parse("<a/>", 4, 0), 0);
    EXPECT_EQ(Zn_SAXIterator(&handler).Parse(static_cast<const char16_t*>(nullptr), 5), 1);
    EXPECT_EQ(Zn_SAXIterator(&handler).Parse("", 0, 0), 1);
    EXPECT_EQ(handler.log, u"");
    EXPECT_EQ(Zn_SAXIterator(&handler).Parse(u"<a/>", -1), 1);
    EXPECT_EQ(handler.log, u"/a ");
}

// What derived classes are offered.
class Opened : public Zn_SAXIterator {
public:
    using Zn_SAXIterator::FindBeginTagPos;
    using Zn_SAXIterator::GetTagName;
};

TEST(SAXIterator, ParsingHelpers)
{
    EXPECT_EQ(Opened::GetTagName(u"abc>", 4), 3);
    EXPECT_EQ(Opened::GetTagName(u"abc>", 3), 0);
    EXPECT_EQ(Opened::GetTagName(u"!-- ", 4), 3);
    EXPECT_EQ(Opened::GetTagName(u"![cdata[", 8), 8);
    EXPECT_EQ(Opened::GetTagName(u"a?b>", 4), 1);
    EXPECT_EQ(Opened::GetTagName(nullptr, 4), 0);
    int kind = 48;
    int skip = 0;
    EXPECT_EQ(Opened::FindBeginTagPos(u" x />t", 6, kind, skip), 3);
    EXPECT_EQ(kind, 49);
    EXPECT_EQ(skip, 5);
    kind = 153;
    EXPECT_EQ(Opened::FindBeginTagPos(u" x-->", 5, kind, skip), 2);
    EXPECT_EQ(skip, 5);
    EXPECT_EQ(Opened::FindBeginTagPos(u" x", 2, kind, skip), -1);
}

} // namespace
