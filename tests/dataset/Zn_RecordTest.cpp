#include "tables.h"

#include <gtest/gtest.h>

TEST(Record, MarksAndTheirAsymmetry)
{
    Zn_Record record;
    EXPECT_EQ(record.GetType(), 1);
    record.SetFilter(1);
    record.SetSelect(1);
    EXPECT_EQ(record.GetFilter(), 0) << "selecting takes the filter mark away";
    EXPECT_EQ(record.GetSelect(), 0x1000);
    record.SetFilter(5);
    EXPECT_EQ(record.GetFilter(), 0x100);
    EXPECT_EQ(record.GetSelect(), 0x1000) << "filtering keeps the selection";
    record.SetType(4);
    EXPECT_EQ(record.GetFlags(), 0x1104u);
}

TEST(Record, MissingSlotsAreAbsent)
{
    Zn_Record record;
    const Zn_Variant value(7);
    EXPECT_EQ(record.SetColumn(3, &value), 3);
    EXPECT_EQ(record.Count(), 4);
    EXPECT_EQ(record.GetItem(1), nullptr);
    EXPECT_EQ(record.GetItemNN(1)->type, Zn_Variant::Empty);
    EXPECT_EQ(record.SetColumn(-1, &value), -1);

    Zn_RecList list;
    list.Add(record);
    list.Add(Zn_Record());
    list.InsertColumn(1);
    EXPECT_EQ(list.GetItem(0)->Count(), 5);
    EXPECT_EQ(list.GetItem(0)->GetItemNN(4)->ToInteger(), 7);
    EXPECT_EQ(list.GetItem(1)->Count(), 0) << "short records stay as they are";
}

TEST(Record, BinaryForm)
{
    Zn_Record record;
    const Zn_Variant text(u"abc");
    record.SetColumn(1, &text);
    record.SetSelect(1);
    record.SetOrgIdx(70000);
    Zn_Buffer out;
    EXPECT_EQ(record.Save(out, 2, 65001), 15);
    const unsigned char expected[] = {0, 2, 0, 2, 0x11, 0x70, 0, 0, 0, 8, 0, 3, 'a', 'b', 'c'};
    EXPECT_TRUE(std::equal(out.GetSpan().begin(), out.GetSpan().end(), expected, expected + sizeof expected));

    Zn_Record loaded;
    EXPECT_EQ(loaded.Load(out, 0, 65001), 15);
    EXPECT_EQ(loaded.GetType(), 2) << "the type given to Save, without the marks";
    EXPECT_EQ(loaded.GetOrgIdx(), 0x1170) << "the low 16 bits";
    EXPECT_EQ(loaded.Count(), 2);
    EXPECT_EQ(loaded.GetItem(0), nullptr);
    EXPECT_EQ(loaded.GetItem(1)->ToString(), u"abc");

    Zn_Buffer empty;
    EXPECT_EQ(Zn_Record().Save(empty, -1, 65001), 6);
}

TEST(Record, CutDataGivesTheLength)
{
    Zn_Record record;
    const Zn_Variant text(u"abc");
    for (int k = 0; k < 3; ++k)
        record.SetColumn(k, &text);
    Zn_Buffer whole;
    record.Save(whole, -1, 65001);
    for (int length = 0; length < whole.GetLength(); ++length) {
        Zn_Buffer cut;
        cut.Set(whole.GetData(), length);
        Zn_Record loaded;
        const int end = loaded.Load(cut, 0, 65001);
        EXPECT_TRUE(end == length || (end == -1 && loaded.Count() == 0)) << length;
    }
    // A count that the data can't hold takes no memory for itself.
    const unsigned char lie[] = {0xFF, 0xFF, 0, 1, 0xFF, 0xFF};
    Zn_Buffer lying;
    lying.Set(lie, sizeof lie);
    Zn_Record loaded;
    EXPECT_EQ(loaded.Load(lying, 0, 65001), 6);
    EXPECT_EQ(loaded.Count(), 0);
}
