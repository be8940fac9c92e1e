#include "tables.h"

#include "Zn_CodePage.h"

#include <gtest/gtest.h>

TEST(Dataset, ColumnsAreInNameOrderAndConstantOnesBehind)
{
    Zn_Dataset table(u"t", 65001);
    table.AddConstStr(u"user", u"kim");
    EXPECT_EQ(table.AddColumn(u"b"), 0);
    EXPECT_EQ(table.AddColumn(u"a", Zn_ColInfo::Int), 0) << "before b";
    EXPECT_EQ(table.AddColumn(u"B"), 0) << "there already";
    EXPECT_EQ(table.AddColumn(u"USER"), 0) << "a constant column has that id";
    EXPECT_EQ(table.GetColCount(), 3);
    EXPECT_EQ(table.GetColIndex(u"user"), 2);
    EXPECT_EQ(table.GetColIndex(Zn_WString(u"user")), 2) << "names may be text of any kind";
    EXPECT_EQ(table.GetColIndex(std::u16string_view(u"userx", 4)), 2);
    EXPECT_EQ(table.GetColIndex(static_cast<const char16_t*>(nullptr)), -1);
    EXPECT_EQ(table.GetColID(2), u"user");
    EXPECT_EQ(table.GetColID(3), u"");
    EXPECT_EQ(table.GetColID(-1), u"");
    EXPECT_EQ(table.GetColumn(-1, 2)->ToString(), u"kim") << "whatever the row";
    EXPECT_EQ(table.SetConstColumn(u"user", 5), 1);
    EXPECT_EQ(table.SetConstColumn(u"nobody", 5), 0);
    EXPECT_EQ(table.AddConstColumn(u"zero", 0), 1);
    EXPECT_EQ(table.GetConstColumn(u"zero")->type, Zn_Variant::Integer) << "no null pointer";
    EXPECT_EQ(table.SetColumn(-7, u"user", 6), 1);
    EXPECT_EQ(table.GetConstColumn(u"USER")->ToInteger(), 6);
}

TEST(Dataset, LateColumnKeepsValuesAligned)
{
    Zn_Dataset table = MakeTable(2);
    table.SetColumn(0, u"name", u"changed");
    EXPECT_EQ(table.AddColumn(u"category"), 0);
    EXPECT_EQ(table.GetColumn(0, u"name")->ToString(), u"changed");
    EXPECT_EQ(table.GetOrgColumn(0, u"name")->ToString(), u"row 0");
    EXPECT_EQ(table.GetColumn(0, u"category"), nullptr);
    EXPECT_EQ(table.GetColumn(1, u"id")->ToInteger(), 1);
}

TEST(Dataset, ValuesTakeTheColumnsType)
{
    Zn_Dataset table(u"t", 65001);
    const struct {
        short column;
        int stored;
    } kTypes[] = {{Zn_ColInfo::String, Zn_Variant::String},   {Zn_ColInfo::Int, Zn_Variant::Integer},
                  {Zn_ColInfo::Decimal, Zn_Variant::Decimal}, {Zn_ColInfo::Currency, Zn_Variant::Currency},
                  {Zn_ColInfo::Date, Zn_Variant::String},     {Zn_ColInfo::Url, Zn_Variant::String},
                  {Zn_ColInfo::Char, Zn_Variant::String}};
    table.AppendRow(0);
    for (const auto& entry : kTypes) {
        Zn_WString id;
        id.Set(static_cast<int>(entry.column));
        table.AddColumn(id, entry.column);
        EXPECT_EQ(table.SetColumn(0, id, u"12"), 1);
        EXPECT_EQ(table.GetColumn(0, id)->type, entry.stored);
        EXPECT_EQ(table.GetColumn(0, id)->ToInteger(), 12);
        EXPECT_EQ(table.SetColumn(0, id, static_cast<const Zn_Variant*>(nullptr)), 1);
        EXPECT_EQ(table.GetColumn(0, id)->type, Zn_Variant::Empty) << "no value is kept as an empty one";
    }
}

TEST(Dataset, OutOfRangeAnswers)
{
    Zn_Dataset table = MakeTable(2);
    EXPECT_EQ(table.GetColumn(2, 0), nullptr);
    EXPECT_EQ(table.GetColumn(-1, 0), nullptr);
    EXPECT_EQ(table.GetColumn(0, -1), nullptr);
    EXPECT_EQ(table.GetColumnNN(9, u"nothing"), &Zn_Variant::_ZnNullVariant);
    EXPECT_EQ(table.SetColumn(2, 0, 1), 0);
    EXPECT_EQ(table.SetColumn(0, u"nothing", 1), 0);
    EXPECT_EQ(table.GetRowType(2), 0);
    EXPECT_EQ(table.SetRowType(2, 4), 0);
    EXPECT_EQ(table.DeleteRow(2), -1);
    EXPECT_EQ(table[7].GetType(), 1);
    EXPECT_EQ(table.GetOrgBuffType(0), 0);
    EXPECT_EQ(table.GetRowIdxNF(2), -1);
    EXPECT_EQ(table.InsertRow(99, 0), 2);
    EXPECT_EQ(table.InsertRow(-5, 0), 0);
}

TEST(Dataset, LinkedValueIsShared)
{
    Zn_Dataset table = MakeTable(2);
    table.SetUpdate(0);
    const Zn_Variant* shared = table.GetColumn(0, u"name");
    EXPECT_EQ(table.SetColumnLink(1, u"name", shared), 1);
    EXPECT_EQ(table.GetColumn(1, u"name"), shared);
    EXPECT_EQ(table.SetColumnLink(1, u"id", shared), 1);
    EXPECT_EQ(table.GetColumn(1, u"id")->type, Zn_Variant::Integer) << "another type is converted in a copy";
    EXPECT_EQ(shared->type, Zn_Variant::String);

    table.AddConstStr(u"constant", u"c");
    const Zn_Variant* constant = table.GetConstColumn(u"constant");
    EXPECT_EQ(table.SetColumnLink(0, u"name", constant), 1);
    EXPECT_NE(table.GetColumn(0, u"name"), constant) << "no list item: a copy";
    EXPECT_EQ(table.GetColumn(1, u"name")->ToString(), u"row 0");
}

TEST(Dataset, SelectedRowsAreDeleted)
{
    Zn_Dataset table = MakeTable(6);
    for (int row : {1, 2, 5})
        table.SetSelect(row, 1);
    EXPECT_EQ(table.GetSelect(2), 1);
    EXPECT_EQ(table.DeleteSelected(), 3);
    EXPECT_EQ(StateOf(table), "row 0=1 row 3=1 row 4=1 | row 5 row 2 row 1");
    EXPECT_EQ(table.DeleteSelected(), 0);
    EXPECT_EQ(table.ReverseRow(), 3);
    EXPECT_EQ(table.GetColumn(0, u"name")->ToString(), u"row 4");
}

TEST(Dataset, Lookups)
{
    Zn_Dataset table = MakeTable(12);
    EXPECT_EQ(table.LookupDataRow(u"name", u"row 3"), 3);
    EXPECT_EQ(table.LookupDataRow(u"name", u"ROW 3"), -1);
    EXPECT_EQ(table.LookupDataRow(u"id", u"11"), 11);
    EXPECT_EQ(table.LookupDataRowAs(u"name", u"ROW 1"), 1);
    EXPECT_EQ(table.LookupDataRowAs(u"name", u"row 12"), -1);
    EXPECT_EQ(table.LookupDataRow(u"none", u""), -1);
    EXPECT_EQ(table.LookupDataText(u"name", u"row 7", u"price")->ToDouble(), 7.5);
    EXPECT_EQ(table.LookupDataText(u"name", u"row 7", u"picture"), nullptr);
    EXPECT_EQ(table.LookupDataText(u"name", u"row 99", u"price"), nullptr);
}

TEST(Dataset, CopiesAreWholeAndTheirOwn)
{
    Zn_Dataset table = MakeTable(4);
    table.SetColumn(1, u"name", u"changed");
    table.DeleteRow(3);
    Zn_Dataset copy(table);
    EXPECT_EQ(StateOf(copy), StateOf(table));
    EXPECT_EQ(copy.GetUpdate(), 0) << "the switch is not copied";
    copy.SetUpdate(1);
    copy.SetColumn(1, u"name", u"row 1");
    EXPECT_EQ(StateOf(copy), "row 0=1 row 1=1 row 2=1 | row 3");
    EXPECT_EQ(StateOf(table), "row 0=1 changed=4<row 1> row 2=1 | row 3");

    const std::string before = StateOf(table);
    const Zn_Dataset& self = table;
    table = self;
    EXPECT_EQ(StateOf(table), before);
    EXPECT_EQ(table.Assign(nullptr), 0);
    EXPECT_EQ(table.GetColCount(), 0);
    EXPECT_EQ(table.GetId(), u"table");
}

TEST(Dataset, CopiesKeepColumnsWhereTheyAre)
{
    Zn_Dataset unordered(65001, 0);
    Zn_Dataset renamed;
    for (Zn_Dataset* table : {&unordered, &renamed}) {
        table->AppendRow(0);
        for (int i = 0; i < 3; ++i) {
            table->AddColumn(std::u16string_view(u"cba").substr(static_cast<std::size_t>(i), 1));
            table->SetColumn(0, std::u16string_view(u"cba").substr(static_cast<std::size_t>(i), 1), i);
        }
    }
    renamed.GetSafeColInfo(0)->SetId(u"z");
    const Zn_Dataset ofUnordered(unordered);
    Zn_Dataset ofRenamed;
    ofRenamed.Copy(&renamed, 0);
    EXPECT_EQ(ofUnordered.GetColumn(0, u"c")->ToInteger(), 0);
    EXPECT_EQ(ofUnordered.GetColumn(0, u"a")->ToInteger(), 2);
    EXPECT_EQ(ofRenamed.GetColumn(0, u"z")->ToInteger(), 2);
    EXPECT_EQ(ofRenamed.GetColumn(0, u"c")->ToInteger(), 0);
}

TEST(Dataset, CodePages)
{
    ZnSetLocaleCP(949);
    EXPECT_EQ(Zn_Dataset().GetCurrentCodePage(), 949u);
    EXPECT_EQ(Zn_Dataset(0, 1).GetCurrentCodePage(), 949u);
    ZnSetLocaleCP(0);
    EXPECT_EQ(Zn_Dataset(1200, 1).GetCurrentCodePage(), 65001u);
    Zn_Dataset table = MakeTable(2);
    table.SetCurrentCodePage(0);
    table.SetCurrentCodePage(65001);
    EXPECT_EQ(table.GetRowCount(), 2);
    EXPECT_EQ(table.Change2CodePage(949), 949u);
    EXPECT_EQ(table.GetRowCount(), 2);
    table.SetCurrentCodePage(1200);
    EXPECT_EQ(table.GetColCount(), 0);
    EXPECT_EQ(table.GetCurrentCodePage(), 1200u);
}
