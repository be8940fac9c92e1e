// Tables filled from others: Copy, Append, AppendData and Merge.

#include "Zn_DatasetList.h"
#include "tables.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

// "x" and "name" in another order than in MakeTable, without "id": names match, places do not.
Zn_Dataset OtherTable()
{
    Zn_Dataset table(u"other", 949);
    table.AddColumn(u"zone", Zn_ColInfo::Int, 4);
    table.AddColumn(u"name", Zn_ColInfo::String, 20);
    table.AddConstColumn(u"id", Zn_Variant(77));
    for (const char16_t* name : {u"one", u"two"}) {
        const int row = table.AppendRow(0);
        table.SetColumn(row, u"name", name);
        table.SetColumn(row, u"zone", row);
    }
    return table;
}

// One way of adding a source to a table.
struct Way {
    const char* name;
    int (*add)(Zn_Dataset& table, const Zn_Dataset& source);
    bool isOfCopies = false; // it takes a list, which holds a copy of the source
};

int AppendAll(Zn_Dataset& table, const Zn_Dataset& source)
{
    Zn_DatasetList list;
    list.AddDataset(u"first", &source);
    return table.AppendData(&list);
}

const Way kByName[] = {
    {"Append", [](Zn_Dataset& t, const Zn_Dataset& s) { return t.Append(&s, 1); }},
    {"AppendData", AppendAll, true},
    {"Merge", [](Zn_Dataset& t, const Zn_Dataset& s) { return t.Merge(&s); }},
};

TEST(Combine, ByNameTakesWhatMatches)
{
    for (const Way& way : kByName) {
        SCOPED_TRACE(way.name);
        Zn_Dataset table = MakeTable(1);
        table.SetUpdate(1);
        table.ShowOnly(u"name", u"nothing");
        EXPECT_EQ(way.add(table, OtherTable()), 3);
        EXPECT_EQ(table.GetFilterStat(), 0);
        EXPECT_EQ(StateOf(table), "row 0=1 one=2 two=2 |");
        EXPECT_EQ(table.IsUpdated(), 1);
        EXPECT_EQ(table.GetColumnNN(1, u"id")->ToInteger(), 77); // the constant column, as every row reads it
        EXPECT_EQ(table.GetCurrentCodePage(), way.isOfCopies ? 949u : 65001u);
    }
}

TEST(Combine, ColumnsThatTheSourceLacksStayAbsent)
{
    for (const Way& way : kByName) {
        SCOPED_TRACE(way.name);
        Zn_Dataset table = OtherTable();
        Zn_Dataset source(u"names", 65001);
        source.AddColumn(u"name");
        source.SetColumn(source.AppendRow(0), u"name", u"three");
        source.AppendRow(0);
        EXPECT_EQ(way.add(table, source), 4);
        EXPECT_STREQ(table.GetColumnNN(2, u"name")->ToString().ToUtf8().c_str(), "three");
        EXPECT_EQ(table.GetColumn(2, u"zone"), nullptr);
        EXPECT_EQ(table.GetColumn(3, u"name"), nullptr);
    }
}

TEST(Combine, SharesWhatItLinks)
{
    for (const Way& way : kByName) {
        for (const bool sameColumns : {false, true}) {
            SCOPED_TRACE(way.name);
            auto source = std::make_unique<Zn_Dataset>(sameColumns ? MakeTable(2) : OtherTable());
            Zn_Dataset table = MakeTable(1);
            way.add(table, *source);
            if (!way.isOfCopies) {
                source->SetColumn(1, u"name", u"through the source");
                EXPECT_STREQ(table.GetColumnNN(2, u"name")->ToString().ToUtf8().c_str(), "through the source");
                table.SetColumn(1, u"name", u"through the table");
                EXPECT_STREQ(source->GetColumnNN(0, u"name")->ToString().ToUtf8().c_str(), "through the table");
            }
            source.reset();
            table.SetColumn(2, u"name", u"alone");
            EXPECT_STREQ(table.GetColumnNN(2, u"name")->ToString().ToUtf8().c_str(), "alone");
        }
    }
}

TEST(Combine, SharedRowsOutliveEitherTable)
{
    auto source = std::make_unique<Zn_Dataset>(MakeTable(4));
    source->SetUpdate(1);
    for (int row = 0; row < 4; ++row)
        source->SetColumn(row, u"name", u"changed");
    auto table = std::make_unique<Zn_Dataset>(MakeTable(1));
    table->SetUpdate(1);
    table->SetColumn(0, u"name", u"own");
    EXPECT_EQ(table->Append(source.get(), 0), 5);
    EXPECT_EQ(table->GetRowType(2), Zn_Record::Updated);
    EXPECT_EQ(table->GetOrgIdx(2), 1);

    source->SetColumn(0, u"name", u"row 0"); // its original goes, which every later link feels
    EXPECT_EQ(table->GetRowType(1), Zn_Record::Normal);
    EXPECT_EQ(table->GetOrgIdx(2), 0);
    table->SetColumn(0, u"name", u"row 0");
    EXPECT_EQ(source->GetOrgIdx(2), 0);
    table.reset();
    source->Reset();
    EXPECT_EQ(source->GetRowCount(), 4);
    EXPECT_EQ(source->IsUpdated(), 0);
}

TEST(Combine, AppendByPlace)
{
    Zn_Dataset empty(u"", 65001);
    const Zn_Dataset other = OtherTable();
    EXPECT_EQ(empty.Append(nullptr, 1), 0);
    EXPECT_EQ(empty.Append(&other, 1), 2); // takes the columns, and copies of the rows
    EXPECT_EQ(empty.GetNormalCount(), 2);
    empty.SetColumn(0, u"name", u"copied");
    EXPECT_STREQ(other.GetColumnNN(0, u"name")->ToString().ToUtf8().c_str(), "one");

    Zn_Dataset strangers(u"", 65001);
    strangers.AddColumn(u"elsewhere");
    EXPECT_EQ(strangers.Append(&other, 1), 0); // nothing matches by name
    EXPECT_EQ(strangers.Append(&other, 0), 2); // by place the first column's values are read as its own
    EXPECT_STREQ(strangers.GetColumnNN(1, 0)->ToString().ToUtf8().c_str(), "two");

    Zn_Dataset hidden = OtherTable();
    hidden.ShowOnly(u"name", u"two"); // one visible row: the first stored one is taken
    EXPECT_EQ(strangers.Append(&hidden, 0), 3);
    EXPECT_STREQ(strangers.GetColumnNN(2, 0)->ToString().ToUtf8().c_str(), "one");
}

TEST(Combine, MergeCountsStoredRowsAndReadsVisibleOnes)
{
    Zn_Dataset hidden = OtherTable();
    hidden.ShowOnly(u"name", u"two");
    Zn_Dataset table = OtherTable();
    EXPECT_EQ(table.Merge(&hidden), 4);
    EXPECT_STREQ(table.GetColumnNN(2, u"name")->ToString().ToUtf8().c_str(), "two");
    EXPECT_EQ(table.GetColumn(3, u"name"), nullptr);

    Zn_DatasetList both;
    both.AddDataset(u"a", &hidden);
    both.AddDataset(u"b", &hidden);
    EXPECT_EQ(table.Merge(&both, 0), 8);
    EXPECT_EQ(table.Merge(static_cast<const Zn_DatasetList*>(nullptr), 0), 0);
}

TEST(Combine, ATableIsAddedToItselfOnce)
{
    for (const Way& way : kByName) {
        SCOPED_TRACE(way.name);
        Zn_Dataset table = OtherTable();
        EXPECT_EQ(way.add(table, table), 4);
        EXPECT_STREQ(table.GetColumnNN(3, u"name")->ToString().ToUtf8().c_str(), "two");
        table.SetUpdate(1);
        while (table.GetRowCount() > 0)
            table.DeleteRow(0);
        table.Reset();
    }
}

TEST(Combine, CopyIsPlain)
{
    Zn_Dataset source = MakeTable(3);
    source.SetUpdate(1);
    source.AppendRow(1);
    Zn_Dataset copy(u"mine", 949);
    EXPECT_EQ(copy.Copy(&source, 0), 4);
    EXPECT_EQ(copy.GetRowType(3), Zn_Record::Inserted); // no other change, no map: types stay
    EXPECT_STREQ(copy.GetId().ToUtf8().c_str(), "mine");
    EXPECT_EQ(copy.GetCurrentCodePage(), 949u);

    source.SetColumn(0, u"name", u"changed");
    source.SetSelect(0, 1);
    source.DeleteRow(1);
    source.ShowOnly(u"name", u"changed");
    EXPECT_EQ(copy.Copy(&source), 3);
    EXPECT_EQ(StateOf(copy), "changed=1 row 2=1 =1 |");
    EXPECT_EQ(copy.GetSelect(0), 1);
    EXPECT_EQ(copy[1].GetFilter(), 0);
    EXPECT_EQ(copy.GetOrgIdx(0), -1);

    source.Copy(&source);
    EXPECT_EQ(StateOf(source), "changed=1 row 2=1 =1 |");
    EXPECT_EQ(source.Copy(nullptr), 0);
}

} // namespace
