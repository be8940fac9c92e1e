// Views of a table of a million rows against SQLite in memory: sorting by keys in several arrangements, sums, groups
// and filters. Each result is compared with SQLite's, or checked for its order, before it is timed.

#include "pairs.h"

#include "Zn_Dataset.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#if ZN_WITH_SQLITE
#    include "sqlite_memory.h"
#endif

namespace {

constexpr int kRows = 1000000;

// The columns, the same in both tables.
struct Row {
    int shuffled;     // random, some twice
    int counted;      // 0, 1, 2 ...
    int sixteen;      // 16 different ones
    double total;     // an amount
    std::string text; // random letters, hardly any twice
    std::string code; // "item 0000123", rising
    std::string city; // 20 different ones
};

std::vector<Row> MakeRows()
{
    std::mt19937 random(20040715);
    const auto below = [&](unsigned n) { return static_cast<int>(random() % n); };
    std::vector<Row> rows(kRows);
    for (int i = 0; i < kRows; ++i) {
        char code[16];
        std::snprintf(code, sizeof code, "item %07d", i);
        std::string text;
        for (int k = below(8) + 8; k > 0; --k)
            text += static_cast<char>('a' + below(26));
        rows[static_cast<std::size_t>(i)] = {
            below(2000000000), i, below(16), below(100000) / 100.0, text, code, "city of " + std::to_string(below(20))};
    }
    return rows;
}

class Table {
public:
    explicit Table(const std::vector<Row>& rows)
    {
        for (const char16_t* id : {u"shuffled", u"counted", u"sixteen"})
            table_.AddColumn(id, Zn_ColInfo::Int);
        table_.AddColumn(u"total", Zn_ColInfo::Decimal);
        for (const char16_t* id : {u"text", u"code", u"city"})
            table_.AddColumn(id, Zn_ColInfo::String);
        const auto wide = [](const std::string& text) { return Zn_WString::FromUtf8(text); };
        for (const Row& row : rows) {
            const int at = table_.AppendRow(0);
            table_.SetColumn(at, u"shuffled", row.shuffled);
            table_.SetColumn(at, u"counted", row.counted);
            table_.SetColumn(at, u"sixteen", row.sixteen);
            table_.SetColumn(at, u"total", row.total);
            table_.SetColumn(at, u"text", wide(row.text));
            table_.SetColumn(at, u"code", wide(row.code));
            table_.SetColumn(at, u"city", wide(row.city));
        }
    }

    Zn_Dataset& operator*() noexcept { return table_; }
    Zn_Dataset* operator->() noexcept { return &table_; }
    // As it was made.
    void Restore()
    {
        table_.UnFilter();
        table_.Sort(u"counted", 1);
    }

private:
    Zn_Dataset table_;
};

#if ZN_WITH_SQLITE
class SqlTable {
public:
    explicit SqlTable(const std::vector<Row>& rows)
    {
        db_.Do("CREATE TABLE t (shuffled INTEGER, counted INTEGER, sixteen INTEGER, total REAL, text TEXT, code TEXT,"
               " city TEXT)");
        db_.Do("BEGIN");
        sqlite3_stmt* insert = db_.Prepare("INSERT INTO t VALUES (?, ?, ?, ?, ?, ?, ?)");
        for (const Row& row : rows) {
            sqlite3_bind_int(insert, 1, row.shuffled);
            sqlite3_bind_int(insert, 2, row.counted);
            sqlite3_bind_int(insert, 3, row.sixteen);
            sqlite3_bind_double(insert, 4, row.total);
            for (const auto& [at, text] : {std::pair(5, &row.text), std::pair(6, &row.code), std::pair(7, &row.city)})
                sqlite3_bind_text(insert, at, text->data(), static_cast<int>(text->size()), SQLITE_STATIC);
            sqlite3_step(insert);
            sqlite3_reset(insert);
        }
        sqlite3_finalize(insert);
        db_.Do("COMMIT");
    }

    // Calls body(statement) for each row of a query; returns how many there were.
    template <class Body>
    int Query(const std::string& sql, Body body)
    {
        sqlite3_stmt* statement = db_.Prepare(sql.c_str());
        int rows = 0;
        for (; sqlite3_step(statement) == SQLITE_ROW; ++rows)
            body(statement);
        sqlite3_finalize(statement);
        return rows;
    }

private:
    SqliteMemory db_;
};
#else
class SqlTable {
public:
    explicit SqlTable(const std::vector<Row>&) {}
};
#endif

using Sql = std::shared_ptr<SqlTable>;

// Whether the rows are all there, in the order of the columns of a spec ("a,b:d").
bool IsSorted(const Zn_Dataset& table, const std::vector<std::pair<int, bool>>& keys)
{
    long long sum = 0;
    const int counted = table.GetColIndex(u"counted");
    for (int row = 0; row < kRows; ++row) {
        sum += table.GetColumn(row, counted)->ToInteger();
        for (std::size_t k = 0; row > 0 && k < keys.size(); ++k) {
            const int order = table.GetColumn(row - 1, keys[k].first)->Compare(*table.GetColumn(row, keys[k].first));
            if (keys[k].second ? order < 0 : order > 0)
                return false;
            if (order != 0)
                break;
        }
    }
    return sum == (kRows - 1LL) * kRows / 2;
}

void AddSort(Pairs& pairs, const char* name, Table& table, const Sql& sql, const char16_t* spec,
             const std::vector<std::pair<const char16_t*, bool>>& keys, const std::string& order)
{
    std::vector<std::pair<int, bool>> columns;
    for (const auto& [id, down] : keys)
        columns.emplace_back(table->GetColIndex(id), down);
    bool checked = false;
    const auto ours = [&table, spec, columns, checked]() mutable {
        table->Sort(spec, 1);
        Pairs::Untimed([&] {
            Require(checked || IsSorted(*table, columns), "the rows are in order");
            checked = true;
            table.Restore();
        });
    };
    std::function<void()> peer;
#if ZN_WITH_SQLITE
    peer = [sql, order] {
        long long sum = 0;
        sql->Query("SELECT rowid FROM t ORDER BY " + order,
                   [&](sqlite3_stmt* statement) { sum += sqlite3_column_int(statement, 0); });
        Require(sum == kRows * (kRows + 1LL) / 2, "all rows of SQLite");
    };
#endif
    pairs.Add(name, {double(kRows), 0, 1}, ours, peer, "sqlite");
}

void AddSum(Pairs& pairs, Table& table, const Sql& sql, double expected)
{
    const int total = table->GetColIndex(u"total");
    const auto ours = [&table, total, expected] {
        Zn_Variant sum;
        table->GetSum(total, 0, table->GetRowCount(), sum);
        Require(sum.ToDouble() == expected, "the sum");
    };
    std::function<void()> peer;
#if ZN_WITH_SQLITE
    peer = [sql, expected] {
        sql->Query("SELECT sum(total) FROM t", [&](sqlite3_stmt* statement) {
            Require(std::abs(sqlite3_column_double(statement, 0) - expected) < 1e-3, "the sum of SQLite");
        });
    };
#endif
    pairs.Add("sum of a column", {double(kRows)}, ours, peer, "sqlite");
}

void AddFilter(Pairs& pairs, Table& table, const Sql& sql, int expected)
{
    const auto ours = [&table, expected] {
        Require(table->ShowOnly(u"city", u"city of 7") == expected, "rows of a city");
        Pairs::Untimed([&] { table->UnFilter(); });
    };
    std::function<void()> peer;
#if ZN_WITH_SQLITE
    peer = [sql, expected] {
        const int found = sql->Query("SELECT rowid FROM t WHERE city = 'city of 7'", [](sqlite3_stmt*) {});
        Require(found == expected, "rows of a city in SQLite");
    };
#endif
    pairs.Add("filter on text", {double(kRows)}, ours, peer, "sqlite");
}

struct Figures {
    double sum = 0, least = 1e9, most = -1, average = 0;
    int count = 0;
};
using Groups = std::map<std::string, Figures>;

void RequireSame(const Figures& figures, const Figures& expected)
{
    Require(std::abs(figures.sum - expected.sum) < 1e-3 && figures.least == expected.least &&
                figures.most == expected.most && std::abs(figures.average - expected.average) < 1e-6,
            "figures of a group");
}

void AddGroups(Pairs& pairs, Table& table, const Sql& sql, const std::shared_ptr<Groups>& expected)
{
    const auto ours = [&table, expected] {
        table->Sort(u"city", 1);
        table->SetGroupStr(u"city");
        const int total = table->GetColIndex(u"total"), city = table->GetColIndex(u"city");
        int groups = 0;
        for (int row = 0, start = 0, rows = table->GetRowCount(); row < rows; ++row) {
            if (table->GetRowLevel(row) == 0)
                continue;
            const Zn_ColSummary figures = table->Summarize(total, start, row);
            RequireSame({figures.sum.ToDouble(), figures.least.ToDouble(), figures.most.ToDouble(), figures.average},
                        (*expected)[table->GetColumn(row, city)->ToString().ToUtf8()]);
            start = row + 1;
            ++groups;
        }
        Require(groups == static_cast<int>(expected->size()), "all groups");
        Pairs::Untimed([&] { table.Restore(); });
    };
    std::function<void()> peer;
#if ZN_WITH_SQLITE
    peer = [sql, expected] {
        const auto check = [&](sqlite3_stmt* statement) {
            const auto number = [&](int at) { return sqlite3_column_double(statement, at); };
            RequireSame({number(1), number(2), number(3), number(4)},
                        (*expected)[reinterpret_cast<const char*>(sqlite3_column_text(statement, 0))]);
        };
        const int groups =
            sql->Query("SELECT city, sum(total), min(total), max(total), avg(total) FROM t GROUP BY city", check);
        Require(groups == static_cast<int>(expected->size()), "all groups of SQLite");
    };
#endif
    pairs.Add("group by, with four figures", {double(kRows), 0, 1}, ours, peer, "sqlite");
}

} // namespace

int main(int argc, char** argv)
{
    Pairs pairs;
    const std::vector<Row> rows = MakeRows();
    Table table(rows);
    const auto sql = std::make_shared<SqlTable>(rows);
    double sum = 0;
    const auto groups = std::make_shared<Groups>();
    for (const Row& row : rows) {
        sum += row.total;
        Figures& group = (*groups)[row.city];
        group.sum += row.total;
        group.least = std::min(group.least, row.total);
        group.most = std::max(group.most, row.total);
        group.average = group.sum / ++group.count;
    }
    const int inCity = (*groups)["city of 7"].count;

    AddSort(pairs, "sort INT, random", table, sql, u"shuffled", {{u"shuffled", false}}, "shuffled");
    AddSort(pairs, "sort INT, sorted", table, sql, u"counted", {{u"counted", false}}, "counted");
    AddSort(pairs, "sort INT, reversed", table, sql, u"counted:d", {{u"counted", true}}, "counted DESC");
    AddSort(pairs, "sort INT, 16 distinct", table, sql, u"sixteen", {{u"sixteen", false}}, "sixteen");
    AddSort(pairs, "sort STRING, random", table, sql, u"text", {{u"text", false}}, "text");
    AddSort(pairs, "sort STRING, sorted", table, sql, u"code", {{u"code", false}}, "code");
    AddSort(pairs, "sort STRING, reversed", table, sql, u"code:d", {{u"code", true}}, "code DESC");
    AddSort(pairs, "sort STRING, 20 distinct", table, sql, u"city", {{u"city", false}}, "city");
    AddSort(pairs, "sort DECIMAL, random", table, sql, u"total", {{u"total", false}}, "total");
    AddSort(pairs, "sort STRING and INT", table, sql, u"city,shuffled:d", {{u"city", false}, {u"shuffled", true}},
            "city, shuffled DESC");
    AddSort(pairs, "sort INT and DECIMAL", table, sql, u"sixteen:d,total", {{u"sixteen", true}, {u"total", false}},
            "sixteen DESC, total");
    AddSum(pairs, table, sql, sum);
    AddFilter(pairs, table, sql, inCity);
    AddGroups(pairs, table, sql, groups);
    return pairs.Run(argc, argv);
}
