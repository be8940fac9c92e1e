// What is seen of a table: hidden and selected rows, groups, summaries.

#include "tables.h"

#include "Zn_DatasetList.h"
#include "Zn_Stream.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

namespace {

// The visible rows: the name of each, or "L<start>" for a group row of level L.
std::string ViewOf(const Zn_Dataset& table)
{
    std::string view;
    for (int row = 0; row < table.GetRowCount(); ++row) {
        if (row > 0)
            view += " ";
        const int level = table.GetRowLevel(row);
        view += level > 0 ? std::to_string(level) + "<" + std::to_string(table.GetRowIndex(row)) + ">"
                          : table.GetColumnNN(row, u"name")->ToString().ToUtf8();
    }
    return view;
}

// name STRING a, b, c ...; g and h STRING with one letter per row ("-": absent, "0": empty); v INT 1, 2, 3 ...
Zn_Dataset Lettered(const char* outer, const char* inner)
{
    Zn_Dataset table(u"t", 65001);
    for (const char16_t* id : {u"name", u"g", u"h"})
        table.AddColumn(id);
    table.AddColumn(u"v", Zn_ColInfo::Int);
    for (int i = 0; outer[i]; ++i) {
        const int row = table.AppendRow(0);
        const char16_t name = static_cast<char16_t>(u'a' + i);
        table.SetColumn(row, u"name", &name, 1);
        for (const auto& [id, letters] : {std::pair(u"g", outer), std::pair(u"h", inner)}) {
            const char16_t letter = static_cast<char16_t>(letters[i]);
            if (letter == u'0')
                table.SetColumn(row, id, Zn_Variant());
            else if (letter != u'-')
                table.SetColumn(row, id, &letter, 1);
        }
        table.SetColumn(row, u"v", i + 1);
    }
    return table;
}

} // namespace

TEST(DatasetView, RowsAreHiddenOneByOne)
{
    Zn_Dataset table = MakeTable(5);
    EXPECT_EQ(table.Filter(7), 0);
    EXPECT_EQ(table.GetFilterStat(), 0) << "no such row: nothing changes";
    EXPECT_EQ(table.Filter(2), 0);
    EXPECT_EQ(table.GetFilterStat(), 1);
    EXPECT_EQ(ViewOf(table), "row 0 row 1 row 3 row 4");
    table.Filter(2);
    EXPECT_EQ(ViewOf(table), "row 0 row 1 row 4");
    EXPECT_EQ(table.GetRowIdxNF(4), 2);
    EXPECT_EQ(table.GetRowIdxNF(3), -1);
    EXPECT_EQ(table.GetRowIndex(2), 4);
    EXPECT_EQ(table.GetRowCountNF(), 5);
    table.SetFilterStat(0);
    EXPECT_EQ(table.GetRowCount(), 5) << "the switch and nothing else";
    table.SetFilterStat(1);
    table.Filter(99);
    table.Filter(-1);
    EXPECT_EQ(table.GetRowCount(), 3);
    EXPECT_EQ(table.UnFilter(), 0);
    EXPECT_EQ(table.GetRowCount(), 5);
    EXPECT_EQ(table[2].GetFilter(), 0);
}

TEST(DatasetView, FilterByTextComparesThePlaceOfTheRowsNumber)
{
    // Columns in name order: id, name, picture, price. Row 1's place 1 is its name; row 0's place 0 its id.
    Zn_Dataset table = MakeTable(6);
    EXPECT_EQ(table.Filter(u""), -1);
    EXPECT_EQ(table.Filter(u"none=row 1"), -1);
    EXPECT_EQ(table.Filter(u"price=row 1"), 0) << "whatever column is named";
    EXPECT_EQ(table.GetFilterStat(), 1);
    EXPECT_EQ(table.GetRowCount(), 0) << "the map is not built";
    table.Sort(u"id", 1);
    EXPECT_EQ(ViewOf(table), "row 0 row 2 row 3 row 4 row 5");
    EXPECT_EQ(table.Filter(u"name=ROW 1"), 0);
    EXPECT_EQ(table.GetFilterStat(), 0) << "nothing is equal, and what was hidden is shown";
    EXPECT_EQ(ViewOf(table), "row 0 row 1 row 2 row 3 row 4 row 5");
    table.Filter(u"name");
    table.Sort(u"id", 1);
    EXPECT_EQ(ViewOf(table), "row 0 row 1 row 3") << "without = places that are absent or missing are equal";
    table.Filter(u"id=3.5");
    table.Sort(u"id", 1);
    EXPECT_EQ(table.GetRowIdxNF(3), -1) << "numbers are compared as text";
    Zn_Dataset empty;
    empty.AddColumn(u"c");
    EXPECT_EQ(empty.Filter(u"c=1"), 0);
}

TEST(DatasetView, ShowOnlyKeepsWhatIsEqual)
{
    Zn_Dataset table = Lettered("xyxyx0-", "aabbaab");
    EXPECT_EQ(table.ShowOnly(u"G", u"x"), 3);
    EXPECT_EQ(ViewOf(table), "a c e");
    EXPECT_EQ(table.ShowOnly(u"h", u"a"), 2) << "hidden rows stay hidden";
    EXPECT_EQ(ViewOf(table), "a e");
    table.Sort(u"name", 0);
    EXPECT_EQ(ViewOf(table), "e a") << "and carry the filter mark";
    EXPECT_EQ(table.ShowOnly(u"none", u"a"), -1);
    EXPECT_EQ(table.GetRowCount(), 2);
    table.UnFilter();
    EXPECT_EQ(table.ShowOnly(u"g", u""), 2);
    table.UnFilter();
    table.SetGroupStr(u"g");
    EXPECT_EQ(table.ShowOnly(u"v", u"3"), 1) << "group rows leave";
    EXPECT_EQ(ViewOf(table), "c");
}

TEST(DatasetView, MarksAndTheirAsymmetries)
{
    Zn_Dataset table = MakeTable(4);
    table.Filter(1);
    table.SetSelect(1, 5);
    EXPECT_EQ(table.GetSelect(1), 1);
    EXPECT_EQ(table.GetSelect(9), 0);
    table.SetFilterStat(0);
    EXPECT_EQ(table[2].GetFlags(), 0x1001u);
    EXPECT_EQ(table[1].GetFlags(), 0x101u);
    table.SetSelect(1, 0);
    EXPECT_EQ(table[1].GetFlags(), 1u) << "selecting, on or off, shows a hidden row";
    table.Filter(0);
    table.SetType(1, Zn_Record::Inserted);
    EXPECT_EQ(table.ClearSelect(), 1);
    table.SetFilterStat(0);
    EXPECT_EQ(table[0].GetFilter(), 0x100) << "rows without the selection mark keep the other";
    EXPECT_EQ(table.GetType(2), 2);
    EXPECT_EQ(table.GetType(9), 0);

    Zn_Dataset grouped = Lettered("xxy", "aaa");
    grouped.SetRowType(1, Zn_Record::Updated);
    grouped.SetGroupStr(u"g");
    ASSERT_EQ(ViewOf(grouped), "a b 1<0> c 1<3>");
    grouped.SetSelect(2, 1);
    grouped.SetType(2, Zn_Record::Deleted);
    EXPECT_EQ(grouped.GetSelect(2), 0);
    EXPECT_EQ(grouped.GetRowType(2), 16);
    EXPECT_EQ(grouped.SetRowType(2, 4), 0);
    EXPECT_EQ(grouped.GetType(2), 1) << "of the stored row whose index the entry holds: row 0";
    EXPECT_EQ(grouped.GetType(4), 0) << "there is no row 3";
    EXPECT_EQ(grouped.SetColumn(2, u"v", 5), 0);
    grouped.Filter(2);
    EXPECT_EQ(grouped.GetRowCount(), 5) << "a group row is not hidden";
}

TEST(DatasetView, MapStaysSafeAcrossInsertingAndDeleting)
{
    Zn_Dataset table = MakeTable(4);
    table.SetUpdate(0);
    table.Filter(0);
    ASSERT_EQ(ViewOf(table), "row 1 row 2 row 3");
    EXPECT_EQ(table.DeleteRow(0), 1);
    EXPECT_EQ(ViewOf(table), "row 3 ") << "entries are not renumbered; one past the rows reads as none";
    EXPECT_EQ(table.GetRowType(1), 0);
    EXPECT_EQ(table.SetColumn(1, u"name", u"x"), 0);
    EXPECT_EQ(table.DeleteRow(1), -1);
    table.Filter(1);
    EXPECT_EQ(table.GetRowCount(), 1) << "an entry without a row can be taken off";
    table.InsertRow(0, 0);
    EXPECT_EQ(ViewOf(table), " ") << "both entries mean the new row";
    table.Sort(u"id", 1);
    EXPECT_EQ(ViewOf(table), " row 2 row 3");
    const Zn_Variant* value = table.GetColumn(INT_MAX, 0);
    EXPECT_EQ(value, nullptr);
}

TEST(DatasetView, GroupRowsStandBehindTheirRows)
{
    const struct {
        const char* outer;
        const char* inner;
        const char16_t* groups;
        const char* view;
    } kGroups[] = {
        {"xxy", "aab", u"g", "a b 1<0> c 1<3>"},
        {"xxx", "aab", u"g", "a b c 1<0>"},
        {"xyx", "aaa", u"g", "a 1<0> b 1<2> c 1<4>"},
        {"xxyy", "abba", u"g,h", "a 1<0> b 2<0> c 1<4> d 1<6> 2<4>"},
        {"xyy", "abb", u"g,h", "a 1<0> b c 1<2> 2<0>"}, // both break at b: the outer break is passed over
        {"xyy", "abb", u"none,g,,none", "a 1<0> b c 1<2>"},
        {"xyy", "abb", u"name,g,h", "a 1<0> 3<0> b 3<3> c 1<5> 2<5> 3<5>"}, // the third is seen again
        {"0-x0", "aaaa", u"g", "a b 1<0> c 1<3> d 1<5>"},
        {"xx", "aa", u"g,g", "a b 1<0> 2<0>"},
        {"xx", "aa", u"", "a b"},
        {"", "", u"g", ""},
    };
    for (const auto& entry : kGroups) {
        Zn_Dataset table = Lettered(entry.outer, entry.inner);
        const int grouped = table.SetGroupStr(entry.groups);
        EXPECT_EQ(ViewOf(table), entry.view) << Zn_WString(entry.groups).ToUtf8();
        EXPECT_EQ(grouped, table.GetRowCount() > table.GetRowCountNF());
        EXPECT_EQ(table.GetFilterStat(), 1);
        EXPECT_EQ(table.RecalcGroup(), grouped);
        EXPECT_EQ(ViewOf(table), entry.view) << "made anew";
        EXPECT_EQ(table.ClearGroup(), grouped);
        EXPECT_EQ(table.ClearGroup(), 0);
        EXPECT_EQ(table.GetRowCount(), table.GetRowCountNF());
    }
}

TEST(DatasetView, GroupColumns)
{
    Zn_Dataset table = Lettered("xxy", "abb");
    table.AddColumn(u"a:b", Zn_ColInfo::String);
    table.SetColumn(0, u"a:b", u"colon");
    EXPECT_EQ(table.SetGroupStr(u"g,a:b,g:h"), 1);
    EXPECT_EQ(table.GetGroupStr(), u"g,a:b,g:h");
    EXPECT_EQ(ViewOf(table), "a 1<0> b 2<0> c 1<4> 2<4>")
        << "an item with colons is one column's name, found once for each part, or none";
    const int g = table.GetColIndex(u"g"), colon = table.GetColIndex(u"a:b");
    EXPECT_EQ(table.IsGroupCol(1, g), 1);
    EXPECT_EQ(table.IsGroupCol(9, colon), 1) << "whatever the level";
    EXPECT_EQ(table.IsGroupCol(2 << 22, g), 1);
    EXPECT_EQ(table.IsGroupCol((2 << 22) + 1, g), 0);
    EXPECT_EQ(table.IsGroupCol(INT_MIN, table.GetColIndex(u"h")), 0);
    table.SetFilterStat(0);
    EXPECT_EQ(table.IsGroupCol(1, g), 0);
    EXPECT_EQ(table.GetRowLevel(1), 0);
}

TEST(DatasetView, ValuesOfGroupRows)
{
    Zn_Dataset table = Lettered("xxy", "abb");
    table.AddConstStr(u"c", u"constant");
    table.SetGroupStr(u"g");
    ASSERT_EQ(ViewOf(table), "a b 1<0> c 1<3>");
    EXPECT_EQ(table.GetRowIdxNF(1 << 24), -1) << "no index of a stored row, though a group row's entry";
    EXPECT_EQ(table.GetColumn(2, u"g")->ToString(), u"x");
    EXPECT_EQ(table.GetColumn(2, u"v"), nullptr) << "of two rows";
    EXPECT_EQ(table.GetColumn(4, u"v")->ToInteger(), 3) << "of one";
    EXPECT_EQ(table.GetColumn(2, u"c")->ToString(), u"constant");
    EXPECT_EQ(table.GetOrgColumn(2, u"g"), nullptr);
    EXPECT_EQ(table.DeleteRow(4), 0);
    EXPECT_EQ(ViewOf(table), "a b 1<0> c") << "a group row only leaves the map";
    // Hidden rows put the group rows where they would be without them: what they point at reads as nothing, safely.
    table.UnFilter();
    table.Filter(0);
    table.RecalcGroup();
    EXPECT_EQ(ViewOf(table), "b c 1<0> 1<3>");
    EXPECT_EQ(table.GetColumn(3, u"g"), nullptr);
}

TEST(DatasetView, GroupsFollowTheTable)
{
    Zn_Dataset source = Lettered("xxy", "abb");
    Zn_Dataset table;
    table.SetGroupStr(u"g");
    const std::string grouped = "a b 1<0> c 1<3>";
    table.Assign(&source);
    EXPECT_EQ(ViewOf(table), grouped);
    table.AssignNF(&source);
    EXPECT_EQ(ViewOf(table), grouped);
    Zn_Buffer binary, xml;
    source.Save(binary, 0);
    source.SaveDataXml(xml, 0, 1, 0, 65001);
    EXPECT_EQ(table.Load(binary, 0), binary.GetLength());
    EXPECT_EQ(ViewOf(table), grouped);
    EXPECT_EQ(table.LoadDataXml(xml, 1), 5);
    EXPECT_EQ(ViewOf(table), grouped);
    Zn_Buffer next;
    source.SaveNext(next, 2, 1);
    int count = 0;
    table.LoadNext(next, 0, count);
    EXPECT_EQ(ViewOf(table), "a b 1<0> c c 1<3>");
    table.SetSelect(0, 1);
    EXPECT_EQ(table.DeleteSelected(), 1);
    EXPECT_EQ(ViewOf(table), "c 1<0> c  1<2>") << "made anew on a map whose entries are not renumbered";
    table.ClearAll();
    EXPECT_EQ(table.GetGroupStr(), u"g");
    EXPECT_EQ(ViewOf(table), "");

    Zn_Buffer message;
    Zn_DatasetList tables;
    Zn_VariableList params;
    source.SetGroupStr(u"g");
    tables.AddDataset(u"t", &source);
    EXPECT_EQ(ViewOf(*tables[0]), "a b c") << "a copy has no definition of its own, and no map";
    tables.GetSafeItem(0, 0)->SetGroupStr(u"h");
    tables.AddDataset(u"t", &source);
    EXPECT_EQ(ViewOf(*tables[0]), "a 1<0> b c 1<2>");
}

TEST(DatasetView, SummariesOfVisibleRows)
{
    Zn_Dataset table = Lettered("xxyy", "abcd");
    table.AddColumn(u"d", Zn_ColInfo::Decimal);
    table.AddConstColumn(Zn_WString(u"rate"), Zn_Variant(1.5));
    const double decimals[] = {2.5, -1, 0, 0};
    for (int i = 0; i < 3; ++i)
        table.SetColumn(i, u"d", decimals[i]);
    table.SetColumn(2, u"d", Zn_Variant());
    table.SetGroupStr(u"g");
    ASSERT_EQ(ViewOf(table), "a b 1<0> c d 1<3>");
    const auto sum = [&](const char16_t* id, int from, int to) {
        Zn_Variant out(u"old");
        table.GetSum(id, from, to, out);
        return Zn_WString(out.GetTypeString()).ToUtf8() + " " + out.ToString().ToUtf8();
    };
    EXPECT_EQ(table.GetCount(0, 6), 4);
    EXPECT_EQ(table.GetCount(1, 99), 3);
    EXPECT_EQ(table.GetCount(2, 3), 0);
    EXPECT_EQ(table.GetCount(INT_MIN, INT_MAX), 4);
    EXPECT_EQ(table.GetCount(5, 2), 0);
    EXPECT_EQ(sum(u"v", 0, 6), "INTEGER 10");
    EXPECT_EQ(sum(u"v", 3, 4), "INTEGER 3");
    EXPECT_EQ(sum(u"v", 2, 99), "DECIMAL 7") << "a group row comes first";
    EXPECT_EQ(sum(u"v", 0, 0), "INTEGER 0");
    EXPECT_EQ(sum(u"v", -5, 6), "DECIMAL 10");
    EXPECT_EQ(sum(u"d", 0, 6), "DECIMAL 1.5");
    EXPECT_EQ(sum(u"rate", 0, 6), "DECIMAL 6");
    EXPECT_EQ(sum(u"rate", 4, 4), "DECIMAL 0");
    EXPECT_EQ(sum(u"none", 0, 6), "DECIMAL 0");
    EXPECT_EQ(table.GetAvg(u"v", 0, 6), 2.5);
    EXPECT_EQ(table.GetAvg(u"d", 0, 6), 1.5 / 4) << "rows without a value count";
    EXPECT_EQ(table.GetAvg(u"v", 6, 6), 0);

    Zn_Variant out;
    table.GetMax(u"d", 0, 6, out);
    EXPECT_EQ(out.ToDouble(), 2.5);
    table.GetMin(u"d", 0, 6, out);
    EXPECT_EQ(out.ToDouble(), -1) << "neither absent nor empty is a value";
    table.GetMax(u"d", 3, 6, out);
    EXPECT_EQ(out.ToDouble(), -1) << "no row: out stays";
    table.GetMax(u"v", INT_MIN, INT_MAX, out);
    EXPECT_EQ(out.ToInteger(), 4);
    table.GetMin(u"name", 0, 6, out);
    EXPECT_EQ(out.ToInteger(), 4) << "what out holds takes part: \"4\" is below \"a\"";
    table.GetMax(u"rate", 0, 1, out = Zn_Variant());
    EXPECT_EQ(out.ToDouble(), 1.5);
    table.GetMax(u"none", 0, 6, out = Zn_Variant());
    EXPECT_EQ(out.type, Zn_Variant::Empty);
}

TEST(DatasetView, SummariesOfStoredRows)
{
    Zn_Dataset table = Lettered("xxyy", "abcd");
    table.AddColumn(u"mixed", Zn_ColInfo::Int);
    table.AddConstColumn(Zn_WString(u"rate"), Zn_Variant(1.5));
    const Zn_Variant mixed[] = {Zn_Variant(1), Zn_Variant(2.5), Zn_Variant(u"3.7"), Zn_Variant(2147483647)};
    for (int i = 0; i < 4; ++i)
        const_cast<Zn_Record&>(table[i]).SetColumn(table.GetColIndex(u"mixed"), &mixed[i]);
    table.Filter(0);
    Zn_Variant out;
    table.GetSumNF(u"v", 0, 4, out);
    EXPECT_EQ(out.ToInteger(), 10);
    table.GetSum(u"v", 0, 4, out);
    EXPECT_EQ(out.ToInteger(), 9) << "without the hidden row";
    table.GetSumNF(u"mixed", 0, 3, out);
    EXPECT_EQ(out.type, Zn_Variant::Integer);
    EXPECT_EQ(out.ToInteger(), 6) << "an INTEGER first makes integers of all";
    table.GetSumNF(u"mixed", 1, 3, out);
    EXPECT_EQ(out.ToDouble(), 6.2);
    table.GetSumNF(u"mixed", 0, 4, out);
    EXPECT_EQ(out.ToInteger(), INT_MIN + 5) << "sums of INTEGER wrap";
    table.GetSumNF(u"rate", INT_MIN, 0, out);
    EXPECT_EQ(out.ToDouble(), 1.5 * INT_MAX) << "negative rows count, as without a map";
    table.GetMaxNF(u"v", 0, 99, out = Zn_Variant());
    EXPECT_EQ(out.ToInteger(), 4);
    table.GetMinNF(u"v", 0, 99, out = Zn_Variant());
    EXPECT_EQ(out.ToInteger(), 1);
    EXPECT_EQ(table.GetAvgNF(u"v", 0, 99), 2.5);
    EXPECT_EQ(table.GetAvgNF(u"v", 4, 4), 0);
}

TEST(DatasetView, SummariesInOneWalkAreThoseOfTheSingleOperations)
{
    Zn_Dataset table = Lettered("xxxyyzzz", "aabbaabb");
    table.AddColumn(u"mixed", Zn_ColInfo::Decimal);
    table.AddConstColumn(Zn_WString(u"rate"), Zn_Variant(1.5));
    const Zn_Variant mixed[] = {Zn_Variant(2.5), Zn_Variant(),     Zn_Variant(u"3.7"),       Zn_Variant(-1.0),
                                Zn_Variant(7),   Zn_Variant(-0.5), Zn_Variant(std::nan("")), Zn_Variant(2.5)};
    for (int i = 0; i < 8; ++i)
        const_cast<Zn_Record&>(table[i]).SetColumn(table.GetColIndex(u"mixed"), &mixed[i]);
    table.Filter(5);
    table.SetGroupStr(u"g");
    const auto shown = [](const Zn_Variant& value) {
        return Zn_WString(value.GetTypeString()).ToUtf8() + " " + value.ToString().ToUtf8();
    };
    for (const char16_t* id : {u"v", u"mixed", u"name", u"rate", u"none"}) {
        for (int from = -1; from < 12; ++from) {
            for (int to = from - 1; to < 13; ++to) {
                const std::string where =
                    Zn_WString(id).ToUtf8() + " " + std::to_string(from) + " to " + std::to_string(to);
                Zn_Variant sum, least, most, sumNF, leastNF, mostNF;
                table.GetSum(id, from, to, sum);
                table.GetMin(id, from, to, least);
                table.GetMax(id, from, to, most);
                const Zn_ColSummary all = table.Summarize(id, from, to);
                EXPECT_EQ(all.count, table.GetCount(from, to)) << where;
                EXPECT_EQ(shown(all.sum), shown(sum)) << where;
                EXPECT_EQ(shown(all.least), shown(least)) << where;
                EXPECT_EQ(shown(all.most), shown(most)) << where;
                EXPECT_EQ(shown(Zn_Variant(all.average)), shown(Zn_Variant(table.GetAvg(id, from, to)))) << where;
                table.GetSumNF(id, from, to, sumNF);
                table.GetMinNF(id, from, to, leastNF);
                table.GetMaxNF(id, from, to, mostNF);
                const Zn_ColSummary stored = table.SummarizeNF(id, from, to);
                EXPECT_EQ(shown(stored.sum), shown(sumNF)) << where;
                EXPECT_EQ(shown(stored.least) + shown(stored.most), shown(leastNF) + shown(mostNF)) << where;
                EXPECT_EQ(shown(Zn_Variant(stored.average)), shown(Zn_Variant(table.GetAvgNF(id, from, to)))) << where;
            }
        }
    }
}

// The walk goes through rows in batches, and what it fetches ahead may be of any form.
TEST(DatasetView, WalksOverRowsOfAllForms)
{
    for (const int rows : {1, 31, 32, 33, 127, 128, 129, 4095, 4096, 4097, 9000}) {
        Zn_Dataset table(u"t", 65001);
        table.AddColumn(u"g", Zn_ColInfo::Int);
        table.AddColumn(u"text", Zn_ColInfo::String);
        table.AddColumn(u"v", Zn_ColInfo::Int);
        int sum = 0, even = 0, shared = 0;
        const Zn_Variant one(1);
        for (int i = 0; i < rows; ++i) {
            const int row = table.AppendRow(0);
            table.SetColumn(row, u"g", i / 100);
            if (i % 7 != 0)
                table.SetColumn(row, u"text", i % 2 ? u"odd" : u"even");
            even += i % 7 != 0 && i % 2 == 0;
            if (i % 5 == 0) // no strip any more
                table.SetColumnLink(row, u"v", &one), ++shared;
            else if (i % 3 != 0)
                table.SetColumn(row, u"v", i), sum += i;
        }
        const Zn_ColSummary all = table.Summarize(u"v", 0, rows);
        EXPECT_EQ(all.sum.ToInteger(), sum + shared) << rows;
        EXPECT_EQ(all.count, rows);
        table.SetGroupStr(u"g");
        EXPECT_EQ(table.GetRowCount(), rows + (rows + 99) / 100) << rows;
        for (int row = 0, start = 0; row < table.GetRowCount(); ++row) {
            if (table.GetRowLevel(row) == 0)
                continue;
            EXPECT_EQ(table.GetRowIndex(row), start) << rows;
            EXPECT_EQ(table.Summarize(u"g", start, row).average, start / 101) << rows;
            start = row + 1;
        }
        EXPECT_EQ(table.ShowOnly(u"text", u"even"), even) << rows;
    }
}
