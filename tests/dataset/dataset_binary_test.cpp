#include "Zn_CodePage.h"
#include "tables.h"

#include <gtest/gtest.h>

namespace {

Zn_Dataset ChangedTable()
{
    Zn_Dataset table = MakeTable(4);
    table.AddConstStr(u"source", u"test");
    table.SetColumn(1, u"name", u"changed");
    table.DeleteRow(3);
    table.SetColumn(table.AppendRow(1), u"name", u"new");
    return table;
}

Zn_Dataset Reloaded(const Zn_Dataset& table, int mode)
{
    Zn_Buffer bytes;
    const int end = table.Save(bytes, mode);
    EXPECT_EQ(end, bytes.GetLength());
    Zn_Dataset loaded;
    EXPECT_EQ(loaded.Load(bytes, 0), bytes.GetLength());
    return loaded;
}

} // namespace

TEST(DatasetBinary, DataModes)
{
    const Zn_Dataset table = ChangedTable();
    EXPECT_EQ(StateOf(table), "row 0=1 changed=4<row 1> row 2=1 new=2 | row 3");
    EXPECT_EQ(StateOf(Reloaded(table, 0)), "row 0=1 changed=1 row 2=1 new=1 |");
    EXPECT_EQ(StateOf(Reloaded(table, 7)), "row 0=1 changed=1 row 2=1 new=1 |");
    EXPECT_EQ(StateOf(Reloaded(table, 1)), "row 0=1 changed=4<row 1> row 2=1 new=2 | row 3");
    EXPECT_EQ(StateOf(Reloaded(table, 2)), "changed=4<row 1> new=2 | row 3");
    EXPECT_EQ(Reloaded(table, 1).GetConstColumn(u"source")->ToString(), u"test");
}

TEST(DatasetBinary, HeadIsReadWithItsCodePage)
{
    Zn_Dataset table(u"\uD55C\uAE00", 949);
    table.AddColumn(u"name");
    table.SetColumn(table.AppendRow(0), u"name", u"\uAC00\uB098");
    Zn_Buffer bytes;
    table.Save(bytes, 0);
    Zn_Dataset loaded(u"", 65001);
    EXPECT_EQ(loaded.Load(bytes, 0), bytes.GetLength());
    EXPECT_EQ(loaded.GetCurrentCodePage(), 949u);
    EXPECT_EQ(loaded.GetId(), u"\uD55C\uAE00");
    EXPECT_EQ(loaded.GetColumn(0, 0)->ToString(), u"\uAC00\uB098");
}

TEST(DatasetBinary, EmptyTableIsHeadAndTerminator)
{
    Zn_Buffer bytes;
    Zn_Dataset(u"", 65001).Save(bytes, 1);
    const unsigned char expected[] = {0xFF, 1, 0x0B, 0xB8, 0, 0, 0xFD, 0xE9, 0, 0, 0xFF, 0x10, 7,
                                      0xD0, 0, 0,    0xFF, 8, 7, 0xD0, 0,    0, 0, 0,    0,    0};
    EXPECT_TRUE(std::equal(bytes.GetSpan().begin(), bytes.GetSpan().end(), expected, expected + sizeof expected));
    Zn_Dataset loaded;
    EXPECT_EQ(loaded.Load(bytes, 0), bytes.GetLength());
    bytes.GetSafeBuffer(2)[1] = 8;
    EXPECT_EQ(loaded.Load(bytes, 0), -1);
}

TEST(DatasetBinary, NextPieces)
{
    const Zn_Dataset table = MakeTable(5);
    Zn_Buffer piece;
    EXPECT_EQ(table.SaveNext(piece, 5, 2), 0);
    EXPECT_EQ(table.SaveNext(piece, 0, 0), 0);
    table.SaveNext(piece, 1, -1);
    Zn_Dataset receiver = MakeTable(1);
    int count = 0;
    EXPECT_EQ(receiver.LoadNext(piece, 0, count), piece.GetLength());
    EXPECT_EQ(count, 4);
    EXPECT_EQ(StateOf(receiver), "row 0=1 row 1=1 row 2=1 row 3=1 row 4=1 |");
    EXPECT_EQ(receiver.IsUpdated(), 0);

    Zn_Buffer limited;
    table.SaveNext(limited, 0, 2);
    EXPECT_EQ(limited.GetData()[3], 2) << "two are announced";
    Zn_Buffer all;
    table.SaveNext(all, 0, -1);
    EXPECT_EQ(limited.GetLength(), all.GetLength()) << "and all are written";
}

TEST(DatasetBinary, MissingOriginalKeepsTheReaderInStep)
{
    Zn_Dataset table = MakeTable(2);
    table.SetRowType(0, Zn_Record::Updated);
    EXPECT_EQ(StateOf(Reloaded(table, 1)), "row 0=4<> row 1=1 |");
}

TEST(DatasetBinary, EveryPrefixEndsInAnAnswer)
{
    Zn_Buffer whole;
    ChangedTable().Save(whole, 1);
    for (int length = 0; length < whole.GetLength(); ++length) {
        Zn_Buffer cut;
        cut.Set(whole.GetData(), length);
        Zn_Dataset loaded;
        const int end = loaded.Load(cut, 0);
        EXPECT_TRUE(end == length || (end < 0 && loaded.GetRowCount() == 0)) << length << " gave " << end;
    }
}
