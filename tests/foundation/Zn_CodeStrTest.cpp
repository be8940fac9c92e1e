#include "Zn_CodeStr.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

namespace {

std::string Dump(const Zn_CodeStrList& list)
{
    std::string text;
    for (const Zn_CodeStr& item : list)
        text += (text.empty() ? "" : " ") + std::to_string(item.Code()) + "=" + item.Str().ToUtf8();
    return text;
}

Zn_CodeStrList ListOf(std::initializer_list<std::pair<int, const char16_t*>> items)
{
    Zn_CodeStrList list;
    for (const auto& [code, str] : items)
        list.AddStr(code, str);
    return list;
}

TEST(CodeStr, Comparisons)
{
    const Zn_CodeStr five(5, u"a");
    EXPECT_EQ((five == Zn_CodeStr(5, u"a")), 0) << "0 means equal";
    EXPECT_EQ((five == 5), 1) << "1 means equal";
    EXPECT_EQ((five == 6), 0);
    EXPECT_EQ(five.CompareCode(5), 1);
    EXPECT_EQ(Zn_CodeStr(7, u"a").Compare(Zn_CodeStr(3, u"z")), 4);
    EXPECT_EQ(Zn_CodeStr(INT_MIN, u"").Compare(Zn_CodeStr(1, u"")), INT_MAX) << "the difference wraps";
    EXPECT_LT(five.Compare(Zn_CodeStr(5, u"b")), 0);
    EXPECT_EQ(five.CompareStr(u"a"), 0);
    EXPECT_NE(five.CompareStr(u"A"), 0);
    EXPECT_EQ(Zn_CodeStr().Code(), 0);
    Zn_CodeStr same(five), other(5, u"b");
    EXPECT_EQ(Zn_CodeStrHandler::Instance()._CompareItem(&same, &other), 1) << "the reverse of other handlers";
    other.SetCode(6);
    EXPECT_EQ(Zn_CodeStrHandler::Instance()._CompareItem(&same, &other), 0);
}

TEST(CodeStrList, KeepsEveryItemInTheOrderAdded)
{
    for (int option : {0, 1}) {
        Zn_CodeStrList list(option);
        EXPECT_EQ(list.AddStr(9, u"x"), 0);
        EXPECT_EQ(list.AddStr(3, Zn_WString(u"y")), 1);
        EXPECT_EQ(list.Add(Zn_CodeStr(9, u"z")), 2);
        EXPECT_EQ(list.AddStr(-1, u"w"), 3);
        EXPECT_EQ(Dump(list), "9=x 3=y 9=z -1=w");
        Zn_CodeStrList copy(1 - option);
        copy = list;
        copy += list;
        EXPECT_EQ(Dump(copy), "9=x 3=y 9=z -1=w 9=x 3=y 9=z -1=w");
        EXPECT_EQ(list.FindCode(9), 0);
        EXPECT_EQ(list.FindCode(-1), 3);
        EXPECT_EQ(list.FindCode(4), -1);
        EXPECT_EQ(list.FindItem(Zn_CodeStr(3, u"")), 1);
        EXPECT_EQ(list.StrByCode(9), u"x");
        EXPECT_TRUE(list.StrByCode(4).IsEmpty());
        EXPECT_EQ(list.Code(1), 3);
        EXPECT_EQ(list.Code(99), 0);
        EXPECT_TRUE(list.Str(99).IsEmpty());
        EXPECT_EQ(list.GetItem(99), nullptr);
        EXPECT_EQ(list.GetItemNN(99)->Code(), 0);
        EXPECT_EQ(list.DelStr(9), 0);
        EXPECT_EQ(list.DelStr(4), -1);
        EXPECT_EQ(list.StrByCode(9), u"z");
    }
}

// The rest of what lists of keyed texts share is tested with Zn_NamedStrList.
TEST(CodeStrList, ComparesAndAppendsTheDifferenceByCode)
{
    const Zn_CodeStrList base = ListOf({{1, u"a"}, {2, u"b"}});
    EXPECT_EQ((base == ListOf({{2, u"b"}, {1, u"a"}})), 0);
    Zn_CodeStrList list;
    EXPECT_EQ(list.AppendDiffList(base, ListOf({{2, u"b"}, {1, u"A"}, {3, u"c"}})), 2);
    EXPECT_EQ(Dump(list), "1=A 3=c");
}

} // namespace
