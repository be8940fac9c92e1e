// Walks the table of docs/change-tracking.md: what an event does to a row of each state.

#include "tables.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

enum class State { Normal, Updated, Inserted };

// Three rows; the middle one is in the wanted state.
Zn_Dataset TableInState(State state)
{
    Zn_Dataset table = MakeTable(3);
    table.SetUpdate(1);
    if (state == State::Updated)
        table.SetColumn(1, u"name", u"changed");
    if (state == State::Inserted) {
        table.DeleteRow(1);
        table.ApplyChange();
        table.InsertRow(1, 1);
        table.SetColumn(1, u"name", u"new");
    }
    return table;
}

struct Rule {
    const char* name;
    State state;
    std::function<void(Zn_Dataset&)> event;
    const char* expected;
    int isUpdated;
};

const Rule kRules[] = {
    {"normal, different value", State::Normal, [](Zn_Dataset& t) { t.SetColumn(1, u"name", u"x"); },
     "row 0=1 x=4<row 1> row 2=1 |", 1},
    {"normal, equal value", State::Normal, [](Zn_Dataset& t) { t.SetColumn(1, u"name", u"row 1"); },
     "row 0=1 row 1=1 row 2=1 |", 0},
    {"normal, equal value of another type", State::Normal, [](Zn_Dataset& t) { t.SetColumn(1, u"id", u"1"); },
     "row 0=1 row 1=1 row 2=1 |", 0},
    {"normal, deleted", State::Normal, [](Zn_Dataset& t) { t.DeleteRow(1); }, "row 0=1 row 2=1 | row 1", 1},
    {"normal, deleted and reset", State::Normal,
     [](Zn_Dataset& t) {
         t.DeleteRow(1);
         t.Reset();
     },
     "row 0=1 row 1=1 row 2=1 |", 0},
    {"normal, deleted and accepted", State::Normal,
     [](Zn_Dataset& t) {
         t.DeleteRow(1);
         t.ApplyChange();
     },
     "row 0=1 row 2=1 |", 0},
    {"updated, another value", State::Updated, [](Zn_Dataset& t) { t.SetColumn(1, u"name", u"y"); },
     "row 0=1 y=4<row 1> row 2=1 |", 1},
    {"updated, back again", State::Updated, [](Zn_Dataset& t) { t.SetColumn(1, u"name", u"row 1"); },
     "row 0=1 row 1=1 row 2=1 |", 0},
    {"updated, given its original", State::Updated,
     [](Zn_Dataset& t) { t.SetColumn(1, u"name", t.GetOrgColumn(1, u"name")); }, "row 0=1 row 1=1 row 2=1 |", 0},
    {"updated, linked to its original", State::Updated,
     [](Zn_Dataset& t) { t.SetColumnLink(1, u"name", t.GetOrgColumn(1, u"name")); }, "row 0=1 row 1=1 row 2=1 |", 0},
    {"updated, back again but another column differs", State::Updated,
     [](Zn_Dataset& t) {
         t.SetColumn(1, u"id", 77);
         t.SetColumn(1, u"name", u"row 1");
     },
     "row 0=1 row 1=4<row 1> row 2=1 |", 1},
    {"updated, deleted", State::Updated, [](Zn_Dataset& t) { t.DeleteRow(1); }, "row 0=1 row 2=1 | row 1", 1},
    {"updated, deleted and reset: stays gone", State::Updated,
     [](Zn_Dataset& t) {
         t.DeleteRow(1);
         t.Reset();
     },
     "row 0=1 row 2=1 |", 0},
    {"updated, reset", State::Updated, [](Zn_Dataset& t) { t.Reset(); }, "row 0=1 row 1=1 row 2=1 |", 0},
    {"updated, accepted", State::Updated, [](Zn_Dataset& t) { t.ApplyChange(); }, "row 0=1 changed=1 row 2=1 |", 0},
    {"inserted, value", State::Inserted, [](Zn_Dataset& t) { t.SetColumn(1, u"name", u"z"); }, "row 0=1 z=2 row 2=1 |",
     1},
    {"inserted, deleted", State::Inserted, [](Zn_Dataset& t) { t.DeleteRow(1); }, "row 0=1 row 2=1 |", 0},
    {"inserted, reset", State::Inserted, [](Zn_Dataset& t) { t.Reset(); }, "row 0=1 row 2=1 |", 0},
    {"inserted, accepted", State::Inserted, [](Zn_Dataset& t) { t.ApplyChange(); }, "row 0=1 new=1 row 2=1 |", 0},
    {"not tracked, value", State::Updated,
     [](Zn_Dataset& t) {
         t.SetUpdate(0);
         t.SetColumn(0, u"name", u"quiet");
         t.SetColumn(1, u"name", u"row 1");
     },
     "quiet=1 row 1=4<row 1> row 2=1 |", 1},
    {"all deleted while tracked", State::Updated, [](Zn_Dataset& t) { t.DeleteAll(); }, "| row 1 row 2 row 0", 1},
    {"all deleted untracked", State::Updated,
     [](Zn_Dataset& t) {
         t.SetUpdate(0);
         t.DeleteAll();
     },
     "|", 0},
};

} // namespace

TEST(ChangeTracking, FollowsTheTable)
{
    for (const Rule& rule : kRules) {
        Zn_Dataset table = TableInState(rule.state);
        rule.event(table);
        EXPECT_EQ(StateOf(table), rule.expected) << rule.name;
        EXPECT_EQ(table.IsUpdated(), rule.isUpdated) << rule.name;
    }
}

TEST(ChangeTracking, RevertingMovesLaterLinksUp)
{
    Zn_Dataset table = MakeTable(5);
    for (int row : {4, 0, 2, 3})
        table.SetColumn(row, u"name", u"x");
    EXPECT_EQ(table.GetOrgIdx(4), 0);
    EXPECT_EQ(table.GetOrgIdx(3), 3);
    const Zn_Record& watched = table[3];
    table.SetColumn(0, u"name", u"row 0");
    EXPECT_EQ(table.GetOrgIdx(0), -1);
    EXPECT_EQ(table.GetOrgIdx(2), 1);
    EXPECT_EQ(watched.GetOrgIdx(), 2) << "a record that the program holds must see its link move";
    EXPECT_EQ(table.GetOrgColumn(3, u"name")->ToString(), u"row 3");
    EXPECT_EQ(table.GetOrgBuffCount(), 3);
}

TEST(ChangeTracking, OriginalsAreComparedByTheirOwnType)
{
    const unsigned char bytes[] = {1, 2, 3};
    Zn_Buffer picture;
    picture.Set(bytes, 3);
    Zn_Dataset table = MakeTable(1);
    table.SetUpdate(0);
    table.SetColumn(0, u"picture", picture);
    table.SetUpdate(1);

    table.SetColumn(0, u"id", 7);
    table.SetColumn(0, u"id", u"0");
    EXPECT_EQ(table.GetRowType(0), Zn_Record::Normal);
    table.SetColumn(0, u"price", 9.0);
    table.SetColumn(0, u"price", u"0.50");
    EXPECT_EQ(table.GetRowType(0), Zn_Record::Normal);
    table.SetColumn(0, u"picture", Zn_Buffer());
    table.SetColumn(0, u"picture", picture);
    EXPECT_EQ(table.GetRowType(0), Zn_Record::Updated) << "bytes never count as the original";
}

TEST(ChangeTracking, DeletedRowsAreFoundByNumber)
{
    Zn_Dataset table = MakeTable(6);
    table.SetColumn(5, u"name", u"late");
    table.DeleteRow(1);
    table.DeleteRow(3);
    table.DeleteRow(3); // the updated one
    EXPECT_EQ(StateOf(table), "row 0=1 row 2=1 row 3=1 | row 5 row 1 row 4");
    EXPECT_EQ(table.GetDelRowIdx(0), 0);
    EXPECT_EQ(table.GetDelRowIdx(2), 2);
    EXPECT_EQ(table.GetDelRowIdx(3), -1);
    EXPECT_EQ(table.GetDelRowIdx(-1), -1);
    EXPECT_EQ(table.GetDelColumn(3, 0), nullptr);
    table.Reset();
    EXPECT_EQ(StateOf(table), "row 0=1 row 1=1 row 2=1 row 4=1 row 3=1 |")
        << "each deleted row goes back to the index it had when it went, in the order they went";
}

TEST(ChangeTracking, OriginalSurvivesEditsAndRevertsOfOtherRows)
{
    // So many that the links are renumbered behind the scenes.
    Zn_Dataset table = MakeTable(3);
    table.SetColumn(2, u"name", u"kept");
    for (int i = 0; i < 20000; ++i) {
        table.SetColumn(i % 2, u"name", u"x");
        ASSERT_EQ(table.GetOrgIdx(i % 2), 1);
        table.SetColumn(i % 2, u"name", i % 2 ? u"row 1" : u"row 0");
    }
    EXPECT_EQ(StateOf(table), "row 0=1 row 1=1 kept=4<row 2> |");
    EXPECT_EQ(table.GetOrgIdx(2), 0);
}
