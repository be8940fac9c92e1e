#include "tables.h"

#include <gtest/gtest.h>

namespace {

Zn_ColInfo Column(const char16_t* id, short type = Zn_ColInfo::String, short size = 0, short orgIdx = -1)
{
    Zn_ColInfo column{Zn_WString(id)};
    column.type = type;
    column.size = size;
    column.orgIdx = orgIdx;
    return column;
}

} // namespace

TEST(ColInfo, TypeNames)
{
    const struct {
        const char16_t* name;
        int code;
    } kNames[] = {{u"integer", 2},  {u"INT", 2},      {u"Strix", 1},   {u"STRIN", 1}, {u"double", 1},
                  {u"DATETIME", 8}, {u"char", 12},    {u"url", 10},    {u"Blob", 9},  {u"", 1},
                  {nullptr, 1},     {u"currency", 5}, {u"DECIMAL", 4}, {u"DECIMA", 1}};
    for (const auto& entry : kNames)
        EXPECT_EQ(Zn_ColList::GetTypeNo(entry.name), entry.code) << Zn_WString(entry.name).ToUtf8();
    EXPECT_EQ(Zn_WString(Zn_ColList::GetTypeStr(3)), u"STRING");
    EXPECT_EQ(Zn_WString(Zn_ColList::GetTypeStr(10)), u"URL");
}

TEST(ColInfo, CompareAnswersZeroForEqual)
{
    EXPECT_EQ(Column(u"a", 2, 4) == Column(u"A", 2, 4), 0);
    EXPECT_EQ(Column(u"a", 5, 4) == Column(u"a", 2, 4), 3);
    EXPECT_EQ(Column(u"a", 2, 4) == Column(u"a", 2, 9), -5);
    EXPECT_LT(Column(u"a", 9) == Column(u"b", 1), 0);
    EXPECT_EQ(Column(u"Name") == u"NAME", 0);
}

TEST(ColList, KeepsNameOrderAndOneColumnPerId)
{
    Zn_ColList list;
    int added = 0;
    const Zn_ColInfo b = Column(u"b", 1, 0, 0);
    const Zn_ColInfo a = Column(u"a", 1, 0, 1);
    const Zn_ColInfo otherB = Column(u"B", 2, 9, 2);
    EXPECT_EQ(list.Add(&b, added), 0);
    EXPECT_EQ(added, 1);
    EXPECT_EQ(list.Add(&a, added), 0);
    EXPECT_EQ(list.Add(&otherB, added), 1);
    EXPECT_EQ(added, 0);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.GetItemNN(1)->type, 1);
    EXPECT_EQ(list.GetItemByOrgIdx(0)->id, u"b");
    EXPECT_EQ(list.GetItemByOrgIdx(2), nullptr);
    EXPECT_EQ(list.FindId(u"A"), 0);
    EXPECT_EQ(list.FindId(u"c"), -1);
    EXPECT_EQ(list.Add(nullptr), -1);
    EXPECT_EQ(list.Assign(nullptr), 0);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list[9]->id, u"");
}

TEST(ColList, BinaryFormIsInDefinitionOrder)
{
    Zn_ColList list;
    list.Add(Column(u"b", 1, 20, 0));
    list.Add(Column(u"a", 2, 4, 2));
    Zn_Buffer out;
    EXPECT_EQ(list.Save(out, 65001), 19);
    const unsigned char expected[] = {0xFF, 8, 7, 0xD0, 0, 2, 0, 1, 'b', 0, 1, 0, 20, 0, 0, 0, 0, 0, 0};
    EXPECT_TRUE(std::equal(out.GetSpan().begin(), out.GetSpan().end(), expected, expected + sizeof expected));

    Zn_ColList loaded;
    EXPECT_EQ(loaded.Load(out, 0, 65001), 19);
    ASSERT_EQ(loaded.Count(), 2) << "an entry without a name is a column like any other";
    EXPECT_EQ(loaded.GetItem(0)->id, u"");
    EXPECT_EQ(loaded.GetItem(1)->orgIdx, 0);
}

TEST(ColList, EveryPrefixLoadsWhatIsWhole)
{
    Zn_ColList list;
    list.Add(Column(u"first", 1, 20, 0));
    list.Add(Column(u"second", 2, 4, 1));
    Zn_Buffer whole;
    list.Save(whole, 65001);
    for (int length = 0; length < whole.GetLength(); ++length) {
        Zn_Buffer cut;
        cut.Set(whole.GetData(), length);
        Zn_ColList loaded;
        EXPECT_EQ(loaded.Load(cut, 0, 65001), length);
        EXPECT_EQ(loaded.Count(), length < 17 ? 0 : 1) << length;
    }
    Zn_Buffer wrong;
    wrong.Set(whole);
    wrong.GetSafeBuffer(2)[1] = 0x10;
    EXPECT_EQ(list.Load(wrong, 0, 65001), -1);
    EXPECT_EQ(list.Count(), 0);
}
