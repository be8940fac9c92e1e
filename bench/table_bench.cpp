// Tables: filling and reading against SQLite, and change tracking, deleting and undoing at two sizes each, so that
// what grows faster than its table shows in the time per row.

#include "pairs.h"
#include "sample_table.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <random>

#if ZN_WITH_SQLITE
#    include "sqlite_memory.h"
#endif

namespace {

constexpr int kReads = 100000;
constexpr int kEdits = 1000;

std::string Named(const char* what, int rows)
{
    return std::string(what) + ", " + std::to_string(rows);
}

std::vector<int> RandomRows(int count, int rows)
{
    std::mt19937 random(19980401);
    std::vector<int> chosen(static_cast<std::size_t>(count));
    for (int& row : chosen)
        row = static_cast<int>(random() % static_cast<unsigned>(rows));
    return chosen;
}

#if ZN_WITH_SQLITE
// A table of SQLite in memory, which takes text as UTF-8: what it stores.
class SqlTable {
public:
    explicit SqlTable(const std::vector<SampleRow>& sample)
    {
        db_.Do("CREATE TABLE sample (id INTEGER, price REAL, name TEXT, address TEXT, date TEXT, country TEXT,"
               " quantity INTEGER, weight REAL)");
        Fill(sample);
        query_ = db_.Prepare("SELECT quantity FROM sample WHERE rowid = ?");
    }
    ~SqlTable() { sqlite3_finalize(query_); }
    SqlTable(const SqlTable&) = delete;
    SqlTable& operator=(const SqlTable&) = delete;

    int Quantity(int row)
    {
        sqlite3_bind_int(query_, 1, row + 1);
        const int found = sqlite3_step(query_) == SQLITE_ROW ? sqlite3_column_int(query_, 0) : 0;
        sqlite3_reset(query_);
        return found;
    }
    int LastRow() const { return db_.LastRow(); }

private:
    void Fill(const std::vector<SampleRow>& sample)
    {
        sqlite3_stmt* insert = db_.Prepare("INSERT INTO sample VALUES (?, ?, ?, ?, ?, ?, ?, ?)");
        const auto bind = [&](int at, const std::string& text) {
            sqlite3_bind_text(insert, at, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
        };
        db_.Do("BEGIN");
        for (const SampleRow& row : sample) {
            sqlite3_bind_int(insert, 1, row.id);
            sqlite3_bind_double(insert, 2, row.price);
            bind(3, row.name);
            bind(4, row.address);
            bind(5, row.date);
            bind(6, row.country);
            sqlite3_bind_int(insert, 7, row.quantity);
            sqlite3_bind_double(insert, 8, row.weight);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        db_.Do("COMMIT");
        sqlite3_finalize(insert);
    }

    SqliteMemory db_;
    sqlite3_stmt* query_ = nullptr;
};
#endif

void AddAppend(Pairs& pairs, int rows)
{
    const auto sample = std::make_shared<std::vector<SampleRow>>(MakeSample(rows));
    const auto wide = std::make_shared<std::vector<WideRow>>(Widen(*sample));
    const auto ours = [sample, wide, rows] {
        auto table = std::make_unique<Zn_Dataset>();
        AddSampleColumns(*table);
        FillTable(*table, *wide);
        Pairs::Untimed([&] {
            const int name = table->GetColIndex(u"name");
            Require(table->GetRowCount() == rows, "rows appended");
            Require(table->GetColumn(rows - 1, name)->GetConstStr()->GetView() == wide->back().name, "last text");
            table.reset();
        });
    };
    std::function<void()> peer;
#if ZN_WITH_SQLITE
    peer = [sample, rows] {
        auto table = std::make_unique<SqlTable>(*sample);
        Pairs::Untimed([&] {
            Require(table->LastRow() == rows, "rows of SQLite");
            table.reset();
        });
    };
#endif
    pairs.Add(Named("append rows", rows), {double(rows) * kSampleColumns}, ours, peer, "sqlite");
}

void AddRead(Pairs& pairs, int rows)
{
    const std::vector<SampleRow> sample = MakeSample(rows);
    const auto chosen = std::make_shared<std::vector<int>>(RandomRows(kReads, rows));
    long long expected = 0;
    for (const int row : *chosen)
        expected += sample[static_cast<std::size_t>(row)].quantity;
    const auto table = std::make_shared<Zn_Dataset>();
    AddSampleColumns(*table);
    FillTable(*table, Widen(sample));
    const int quantity = table->GetColIndex(u"quantity");
    const auto ours = [=] {
        long long sum = 0;
        for (const int row : *chosen)
            sum += table->GetColumn(row, quantity)->ToInteger();
        Require(sum == expected, "cells read");
    };
    std::function<void()> peer;
#if ZN_WITH_SQLITE
    const auto sql = std::make_shared<SqlTable>(sample);
    peer = [=] {
        long long sum = 0;
        for (const int row : *chosen)
            sum += sql->Quantity(row);
        Require(sum == expected, "cells read of SQLite");
    };
#endif
    pairs.Add(Named("read random cells of rows", rows), {kReads}, ours, peer, "sqlite");
}

// A table with tracking on whose rows share the texts of a few samples, so that a million of them fit anywhere.
std::unique_ptr<Zn_Dataset> MakeTracked(int rows)
{
    Zn_Dataset few;
    AddSampleColumns(few);
    FillTable(few, Widen(MakeSample(1000)));
    auto table = std::make_unique<Zn_Dataset>();
    AddSampleColumns(*table);
    for (int i = 0; i < rows; ++i) {
        const int row = table->AppendRow(0);
        for (int col = 0; col < kSampleColumns; ++col)
            table->SetColumn(row, col, few.GetColumn(i % 1000, col));
    }
    table->SetUpdate(1);
    return table;
}

void Edit(Zn_Dataset& table, int col, int row)
{
    table.SetColumn(row, col, table.GetColumn(row, col)->ToInteger() + 1);
}

void Revert(Zn_Dataset& table, int col, int row)
{
    table.SetColumn(row, col, table.GetOrgColumn(row, col)->ToInteger());
}

// One edit at a time, taken back before the next. The same number of rows at every size, spread over the table, so
// that the sizes differ in what an edit costs and not in what the processor's caches hold.
void AddOneEdit(Pairs& pairs, Zn_Dataset& table)
{
    const int rows = table.GetRowCount();
    const int quantity = table.GetColIndex(u"quantity");
    const auto ours = [&table, rows, quantity] {
        for (int i = 0; i < kEdits; ++i) {
            const int row = static_cast<int>(std::int64_t(rows) * i / kEdits);
            Edit(table, quantity, row);
            Require(table.IsUpdated(), "an edit is tracked");
            Revert(table, quantity, row);
        }
        Require(!table.IsUpdated() && table.GetRowType(0) == Zn_Record::Normal, "edits are taken back");
    };
    pairs.Add(Named("one edit and back in rows", rows), {kEdits}, ours, nullptr, "");
}

enum class Order { Forward, Random };

void AddManyEdits(Pairs& pairs, Zn_Dataset& table, Order order)
{
    const int rows = table.GetRowCount();
    const int quantity = table.GetColIndex(u"quantity");
    std::vector<int> back(static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i)
        back[static_cast<std::size_t>(i)] = i;
    if (order == Order::Random)
        std::shuffle(back.begin(), back.end(), std::mt19937(7));
    const auto ours = [&table, rows, quantity, back] {
        for (int row = 0; row < rows; ++row)
            Edit(table, quantity, row);
        Require(table.GetOrgBuffCount() == rows, "all rows edited");
        for (const int row : back)
            Revert(table, quantity, row);
        Require(!table.IsUpdated(), "all edits taken back");
    };
    pairs.Add(
        Named(order == Order::Random ? "edit all, back at random, rows" : "edit all and back in order, rows", rows),
        {double(rows), 0, 1}, ours, nullptr, "");
}

void DeleteEverySecond(Zn_Dataset& table)
{
    const int half = table.GetRowCount() / 2;
    for (int row = 0; row < half; ++row)
        table.DeleteRow(row);
    Require(table.GetDelRowCount() == half, "half of the rows deleted");
}

void SelectEverySecond(Zn_Dataset& table)
{
    for (int row = 0, rows = table.GetRowCount(); row < rows; row += 2)
        table.SetSelect(row, 1);
}

void Undo(Zn_Dataset& table, int rows)
{
    table.Reset();
    Require(table.GetRowCount() == rows && !table.IsUpdated(), "deleted rows are back");
}

void AddDeleting(Pairs& pairs, Zn_Dataset& table)
{
    const int rows = table.GetRowCount();
    const Pairs::Work all{double(rows), 0, 1};
    const Pairs::Work half{rows / 2.0, 0, 1};
    pairs.Add(
        Named("delete every second of rows", rows), half,
        [&table, rows] {
            DeleteEverySecond(table);
            Pairs::Untimed([&] { Undo(table, rows); });
        },
        nullptr, "");
    pairs.Add(
        Named("reset half of rows", rows), half,
        [&table, rows] {
            Pairs::Untimed([&] { DeleteEverySecond(table); });
            Undo(table, rows);
        },
        nullptr, "");
    pairs.Add(
        Named("delete selected half of rows", rows), all,
        [&table, rows] {
            Pairs::Untimed([&] { SelectEverySecond(table); });
            Require(table.DeleteSelected() == rows / 2, "selected rows deleted");
            Pairs::Untimed([&] { Undo(table, rows); });
        },
        nullptr, "");
    const int quantity = table.GetColIndex(u"quantity");
    pairs.Add(
        Named("walk the deleted half of rows", rows), half,
        [&table, rows, quantity] {
            Pairs::Untimed([&] { DeleteEverySecond(table); });
            long long sum = 0;
            for (int n = 0, count = table.GetDelRowCount(); n < count; ++n)
                sum += table.GetDelColumn(n, quantity)->ToInteger();
            Require(sum > 0 && !table.GetDelColumn(rows / 2, quantity), "deleted rows by number");
            Pairs::Untimed([&] { Undo(table, rows); });
        },
        nullptr, "");
}

} // namespace

int main(int argc, char** argv)
{
    Pairs pairs;
    for (const int rows : {10000, 100000}) {
        AddAppend(pairs, rows);
        AddRead(pairs, rows);
    }
    std::vector<std::unique_ptr<Zn_Dataset>> tables;
    for (const int rows : {10000, 100000, 1000000})
        tables.push_back(MakeTracked(rows));
    AddOneEdit(pairs, *tables[0]);
    AddOneEdit(pairs, *tables[2]);
    for (const Order order : {Order::Forward, Order::Random}) {
        AddManyEdits(pairs, *tables[0], order);
        AddManyEdits(pairs, *tables[1], order);
    }
    AddDeleting(pairs, *tables[1]);
    AddDeleting(pairs, *tables[2]);
    return pairs.Run(argc, argv);
}
