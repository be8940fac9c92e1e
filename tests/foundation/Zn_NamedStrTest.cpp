#include "Zn_NamedStr.h"

#include <gtest/gtest.h>

#include <string>
#include <type_traits>

namespace {

// "id=str" of every item, blank-separated.
std::string Dump(const Zn_NamedStrList& list)
{
    std::string text;
    for (const Zn_NamedStr& item : list)
        text += (text.empty() ? "" : " ") + item.Id().ToUtf8() + "=" + item.Str().ToUtf8();
    return text;
}

Zn_NamedStrList ListOf(std::initializer_list<std::pair<const char16_t*, const char16_t*>> items)
{
    Zn_NamedStrList list;
    for (const auto& [id, str] : items)
        list.AddStr(id, str, 0);
    return list;
}

TEST(NamedStr, ComparisonsAnswerZeroForEqual)
{
    const Zn_NamedStr item(u"b", u"2");
    static_assert(std::is_same_v<decltype(item == item), int>);
    EXPECT_EQ((item == Zn_NamedStr(u"b", u"2")), 0);
    EXPECT_LT(item.Compare(Zn_NamedStr(u"c", u"1")), 0) << "the id decides first";
    EXPECT_GT(item.Compare(Zn_NamedStr(u"b", u"1")), 0);
    EXPECT_NE((item == Zn_NamedStr(u"B", u"2")), 0) << "with case";
    EXPECT_EQ((item == u"b"), 0);
    EXPECT_NE((item == u"B"), 0);
    EXPECT_EQ(item.CompareId(u"B"), 0);
    EXPECT_EQ(item.CompareStr(u"2"), 0);
    EXPECT_LT(item.CompareStr(u"3"), 0);
}

TEST(NamedStrList, AddingTable)
{
    struct Row {
        const char* name;
        int (*act)(Zn_NamedStrList&);
        int result;
        const char* list;
    };
    using L = Zn_NamedStrList;
    const Row rows[] = {
        {"AddStr replaces the text, not the name", [](L& l) { return l.AddStr(u"NAME", u"b", 1); }, 1, "x=0 Name=b"},
        {"AddStr appends a second one", [](L& l) { return l.AddStr(u"NAME", u"b", 0); }, 2, "x=0 Name=a NAME=b"},
        {"only 1 replaces", [](L& l) { return l.AddStr(u"NAME", u"b", 2); }, 2, "x=0 Name=a NAME=b"},
        {"AddStr of a new name", [](L& l) { return l.AddStr(u"y", u"1", 1); }, 2, "x=0 Name=a y=1"},
        {"AddStr without a name", [](L& l) { return l.AddStr(u"", u"1", 1); }, -1, "x=0 Name=a"},
        {"Add replaces name and text", [](L& l) { return l.Add(Zn_NamedStr(u"NAME", u"b"), 1); }, 1, "x=0 NAME=b"},
        {"Add never repeats", [](L& l) { return l.Add(Zn_NamedStr(u"NAME", u"b"), 0); }, 1, "x=0 Name=a"},
        {"Add of a new name", [](L& l) { return l.Add(Zn_NamedStr(u"y", u"1"), 0); }, 2, "x=0 Name=a y=1"},
        {"Add without a name", [](L& l) { return l.Add(Zn_NamedStr(u"", u"1"), 1); }, -1, "x=0 Name=a"},
        {"an int", [](L& l) { return l.AddStr(Zn_WString(u"X"), 5, 1); }, 0, "x=5 Name=a"},
        {"a long", [](L& l) { return l.AddStr(u"X", -7L, 1); }, 0, "x=-7 Name=a"},
        {"zero", [](L& l) { return l.AddStr(u"y", 0, 0); }, 2, "x=0 Name=a y=0"},
        {"a double", [](L& l) { return l.AddStr(u"y", 2.5, 0); }, 2, "x=0 Name=a y=2.5"},
        {"DelStr", [](L& l) { return l.DelStr(u"X"); }, 0, "Name=a"},
        {"DelStr of an absent name", [](L& l) { return l.DelStr(u"z"); }, -1, "x=0 Name=a"},
        {"DelStr of null", [](L& l) { return l.DelStr(nullptr); }, -1, "x=0 Name=a"},
        {"DelStr of nothing", [](L& l) { return l.DelStr(u""); }, -1, "x=0 Name=a"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Zn_NamedStrList list = ListOf({{u"x", u"0"}, {u"Name", u"a"}});
        EXPECT_EQ(row.act(list), row.result);
        EXPECT_EQ(Dump(list), row.list);
    }
}

TEST(NamedStrList, LooksUpTheFirstByAnyKindOfText)
{
    Zn_NamedStrList list = ListOf({{u"x", u"1"}, {u"X", u"2"}, {u"y", u"3"}});
    const std::u16string_view view(u"Xy", 1);
    EXPECT_EQ(list.Str(u"X"), u"1");
    EXPECT_EQ(list.Str(Zn_WString(u"Y")), u"3");
    EXPECT_EQ(list.Str(view), u"1");
    EXPECT_EQ(list.Str(0), u"1");
    EXPECT_EQ(list.FindId(nullptr), -1);
    EXPECT_EQ(list.GetItem(u"x"), list.GetItem(0));
    EXPECT_EQ(list.GetItem(u"z"), nullptr);
    EXPECT_EQ(list.GetItem(99), nullptr);
    list.GetSafeItem(u"y")->SetStr(u"4");
    EXPECT_EQ(list[2]->Str(), u"4");
    EXPECT_EQ(list.DelStr(u"x"), 0);
    EXPECT_EQ(list.Str(u"x"), u"2");
    EXPECT_TRUE(list.Str(99).IsEmpty());
    EXPECT_TRUE(list.Id(99).IsEmpty());
    EXPECT_TRUE(list.GetItemNN(99)->Id().IsEmpty());
    EXPECT_EQ(list.GetItemNN(99), list[-1]);
    EXPECT_EQ(list.GetItemNN(u"z"), list.GetItemNN(u"w"));
    EXPECT_NE(list.GetItemNN(u"z"), list.GetItemNN(99)) << "two empty items";
}

TEST(NamedStrList, ComparesInAnyOrder)
{
    const Zn_NamedStrList ab = ListOf({{u"a", u"1"}, {u"b", u"2"}});
    struct Row {
        const char* name;
        Zn_NamedStrList other;
        int sign;
    };
    const Row rows[] = {{"same pairs, other order", ListOf({{u"B", u"2"}, {u"A", u"1"}}), 0},
                        {"longer", ListOf({{u"a", u"1"}, {u"b", u"2"}, {u"c", u"3"}}), -1},
                        {"shorter", ListOf({{u"a", u"1"}}), 1},
                        {"a name missing", ListOf({{u"a", u"1"}, {u"c", u"2"}}), -1},
                        {"the other text is greater", ListOf({{u"a", u"1"}, {u"b", u"3"}}), 1},
                        {"the other text is smaller", ListOf({{u"a", u"0"}, {u"b", u"2"}}), -1}};
    for (const Row& row : rows) {
        const int result = ab.Compare(row.other);
        EXPECT_EQ((result > 0) - (result < 0), row.sign) << row.name;
        EXPECT_EQ((ab == row.other), result);
    }
    const Zn_NamedStrList twice = ListOf({{u"a", u"1"}, {u"a", u"1"}});
    EXPECT_EQ(twice.Compare(ab), 0) << "both match the first";
    EXPECT_EQ(ab.Compare(ab), 0);
}

TEST(NamedStrList, AppendsTheDifference)
{
    const Zn_NamedStrList base = ListOf({{u"a", u"1"}, {u"b", u"2"}});
    const Zn_NamedStrList changed = ListOf({{u"A", u"1"}, {u"b", u"3"}, {u"c", u"4"}, {u"c", u"5"}});
    Zn_NamedStrList list = ListOf({{u"c", u"0"}});
    EXPECT_EQ(list.AppendDiffList(base, changed), 3);
    EXPECT_EQ(Dump(list), "c=0 b=3 c=4 c=5");
    EXPECT_EQ(list.AppendDiffList(base, Zn_NamedStrList()), 0);
    EXPECT_EQ(list.AppendDiffList(Zn_NamedStrList(), list), 4) << "takes what was there at the start";
    EXPECT_EQ(list.Count(), 8);
}

TEST(NamedStrList, AssignsAndAppends)
{
    const Zn_NamedStrList source = ListOf({{u"a", u"1"}, {u"a", u"2"}});
    const Zn_NamedStrList* const null = nullptr;
    Zn_NamedStrList list = ListOf({{u"z", u"9"}});
    EXPECT_EQ(list.Assign(null), 1);
    EXPECT_EQ(list.Append(null), 1);
    list = null;
    (list += source) += &source;
    EXPECT_EQ(Dump(list), "z=9 a=1 a=2 a=1 a=2");
    list = &list;
    EXPECT_EQ(list.Append(&list), 10);
    list = source;
    list.GetSafeItem(0)->SetStr(u"changed");
    EXPECT_EQ(Dump(source), "a=1 a=2");
    Zn_NamedStrList ordered(1);
    for (const char16_t* id : {u"b", u"a", u"B"})
        ordered.AddStr(id, id, 0);
    EXPECT_EQ(Dump(ordered), "a=a b=b") << "option 1: in order, each name once";
}

} // namespace
