// Random edits with tracking on, against a plain model of the rules and against the promises of undoing
// and accepting.

#include "tables.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

// The rules of change tracking on plain vectors, link renumbering by the letter.
struct Model {
    struct Row {
        std::string name;
        int type = 1;
        int orgIdx = -1;
    };
    std::vector<Row> rows;
    std::vector<Row> originals;

    void Store(std::size_t at, const std::string& name)
    {
        Row& row = rows[at];
        if (row.type == 1 && row.name != name) {
            row.type = 4;
            originals.push_back(row);
            row.orgIdx = static_cast<int>(originals.size()) - 1;
        } else if (row.type == 4 && originals[static_cast<std::size_t>(row.orgIdx)].name == name) {
            const int gone = row.orgIdx;
            for (Row& other : rows)
                other.orgIdx -= other.orgIdx > gone ? 1 : 0;
            originals.erase(originals.begin() + gone);
            row.orgIdx = -1;
            row.type = 1;
        }
        row.name = name;
    }
    void Insert(std::size_t at) { rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(at), Row{"", 2, -1}); }
    void Delete(std::size_t at)
    {
        Row row = rows[at];
        if (row.type == 4) {
            originals[static_cast<std::size_t>(row.orgIdx)].type = 8;
        } else if (row.type == 1) {
            row.type = 8;
            originals.push_back(row);
        }
        rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(at));
    }
    std::string State() const
    {
        std::string state;
        for (const Row& row : rows) {
            state += row.name + "=" + std::to_string(row.type);
            if (row.orgIdx >= 0)
                state += "<" + originals[static_cast<std::size_t>(row.orgIdx)].name + ">";
            state += " ";
        }
        state += "|";
        for (const Row& row : originals)
            state += row.type == 8 ? " " + row.name : "";
        return state;
    }
};

std::string Name(int number)
{
    return "name " + std::to_string(number);
}

} // namespace

TEST(RandomEdits, AgreeWithThePlainRules)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        std::mt19937 random(seed);
        const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
        Zn_Dataset table(u"t", 65001);
        table.AddColumn(u"name");
        Model model;
        for (int i = 0; i < 12; ++i) {
            table.SetColumn(table.AppendRow(0), 0, Zn_WString::FromUtf8(Name(i % 5)));
            model.rows.push_back({Name(i % 5), 1, -1});
        }
        table.SetUpdate(1);
        const Zn_Dataset before(table);
        bool updatedRowDeleted = false;
        for (int step = 0; step < 60; ++step) {
            const int rows = table.GetRowCount();
            const int at = rows > 0 ? below(rows) : 0;
            const int what = below(10);
            if (rows == 0 || what == 0) {
                table.InsertRow(at, 1);
                model.Insert(static_cast<std::size_t>(at));
            } else if (what == 1) {
                updatedRowDeleted |= table.GetRowType(at) == Zn_Record::Updated;
                table.DeleteRow(at);
                model.Delete(static_cast<std::size_t>(at));
            } else {
                const std::string name = Name(below(5));
                table.SetColumn(at, 0, Zn_WString::FromUtf8(name));
                model.Store(static_cast<std::size_t>(at), name);
            }
            ASSERT_EQ(StateOf(table), model.State()) << "seed " << seed << " step " << step;
        }
        Zn_Dataset accepted(table);
        accepted.ApplyChange();
        EXPECT_EQ(accepted.IsUpdated(), 0);
        EXPECT_EQ(accepted.GetUpdateRowCount(), 0);
        table.Reset();
        EXPECT_EQ(table.IsUpdated(), 0);
        EXPECT_EQ(table.GetUpdateRowCount(), 0);
        EXPECT_EQ(table.GetUpdate(), 1);
        if (!updatedRowDeleted) {
            EXPECT_EQ(table.GetRowCount(), before.GetRowCount()) << "seed " << seed;
        }
    }
}
