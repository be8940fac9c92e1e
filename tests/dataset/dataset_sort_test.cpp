// Sorting: against the partition procedure done literally, row by row.

#include "long_tests.h"
#include "tables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

namespace {

// The order that the procedure gives, with compare(a, b) of row numbers.
template <class Compare>
std::vector<int> LiteralOrder(int count, Compare compare)
{
    std::vector<int> rows(static_cast<std::size_t>(count));
    std::iota(rows.begin(), rows.end(), 0);
    const auto order = [&](int a, int b) {
        return a >= b ? 0 : compare(rows[static_cast<std::size_t>(a)], rows[static_cast<std::size_t>(b)]);
    };
    const auto exchange = [&](int a, int b) {
        std::swap(rows[static_cast<std::size_t>(a)], rows[static_cast<std::size_t>(b)]);
    };
    std::vector<std::pair<int, int>> waiting{{0, count - 1}};
    while (!waiting.empty()) {
        const auto [low, high] = waiting.back();
        waiting.pop_back();
        if (high <= low)
            continue;
        int i = low, j = high;
        for (;;) {
            while (i < high && order(low, i) >= 0)
                ++i;
            while (j > low && order(low, j) < 1)
                --j;
            if (i >= j)
                break;
            exchange(i, j);
        }
        exchange(low, j);
        waiting.push_back({i, high});
        waiting.push_back({low, i - 1});
    }
    return rows;
}

// A table of n rows with a column "row" that numbers them, and columns k0, k1, ... without values.
Zn_Dataset Numbered(int rows, int keys)
{
    Zn_Dataset table(u"t", 65001);
    table.AddColumn(u"row", Zn_ColInfo::Int);
    for (int k = 0; k < keys; ++k)
        table.AddColumn(Zn_WString().Format(u"k%d", k));
    for (int i = 0; i < rows; ++i)
        table.SetColumn(table.AppendRow(0), u"row", i);
    return table;
}

// Puts a value into a cell whatever its column's type; null leaves the cell absent.
void Put(Zn_Dataset& table, int row, int col, const Zn_Variant* value)
{
    if (value)
        const_cast<Zn_Record&>(table[row]).SetColumn(col, value);
}

std::vector<int> RowsOf(const Zn_Dataset& table)
{
    const int col = table.GetColIndex(u"row");
    std::vector<int> rows;
    for (int i = 0; i < table.GetRowCountNF(); ++i)
        rows.push_back(table.GetColumnNFNN(i, col)->ToInteger());
    return rows;
}

struct Key {
    std::vector<Zn_Variant> values; // of type 0xFFFF: absent
    bool descending;
};

constexpr std::uint16_t kAbsent = 0xFFFF;

const Zn_Variant* ValueOf(const Key& key, int row)
{
    const Zn_Variant& value = key.values[static_cast<std::size_t>(row)];
    return value.type == kAbsent ? nullptr : &value;
}

int CompareRows(const std::vector<Key>& keys, int a, int b)
{
    for (const Key& key : keys) {
        const Zn_Variant* left = ValueOf(key, a);
        const Zn_Variant* right = ValueOf(key, b);
        const int order = left && right ? left->Compare(*right) : (left != nullptr) - (right != nullptr);
        if (order != 0)
            return (order > 0) == key.descending ? -1 : 1;
    }
    return 0;
}

void ExpectLiteralOrder(const std::vector<Key>& keys, const std::string& what)
{
    const int rows = static_cast<int>(keys[0].values.size());
    Zn_Dataset table = Numbered(rows, static_cast<int>(keys.size()));
    std::u16string spec;
    for (std::size_t k = 0; k < keys.size(); ++k) {
        const Zn_WString id = Zn_WString().Format(u"k%d", static_cast<int>(k));
        for (int row = 0; row < rows; ++row)
            Put(table, row, table.GetColIndex(id), ValueOf(keys[k], row));
        spec += (k > 0 ? u"," : u"") + std::u16string(id.GetView()) + (keys[k].descending ? u":d" : u":a");
    }
    ASSERT_EQ(table.Sort(spec.c_str(), 1), 0);
    ASSERT_EQ(RowsOf(table), LiteralOrder(rows, [&](int a, int b) { return CompareRows(keys, a, b); })) << what;
}

using Maker = std::function<Zn_Variant(std::mt19937&)>;

Zn_Variant Absent()
{
    Zn_Variant value;
    value.ChangeType(kAbsent);
    return value;
}

Zn_Variant Mixed(std::mt19937& random)
{
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    static const Zn_Variant kValues[] = {Absent(),
                                         Zn_Variant(),
                                         Zn_Variant(5),
                                         Zn_Variant(u"5"),
                                         Zn_Variant(2.5),
                                         Zn_Variant(7),
                                         Zn_Variant(u"b"),
                                         Zn_Variant(std::nan("")),
                                         Zn_Variant(kInfinite),
                                         Zn_Variant(-kInfinite),
                                         Zn_Variant(Zn_Currency(5, 2500)),
                                         Zn_Variant(Zn_DateTime(2004, 7, 15, 0, 0, 0)),
                                         Zn_Variant(Zn_DateTime(1, 1, 1, 0, 0, 0)),
                                         Zn_Variant(Zn_Buffer()),
                                         Zn_Variant(Zn_VariantList())};
    return kValues[random() % std::size(kValues)];
}

// What columns of the random tables hold.
const std::pair<const char*, Maker> kMakers[] = {
    {"few", [](std::mt19937& r) { return Zn_Variant(static_cast<int>(r() % 4)); }},
    {"numbers", [](std::mt19937& r) { return Zn_Variant(static_cast<int>(r() % 1000) - 500); }},
    {"wide numbers", [](std::mt19937& r) { return Zn_Variant(static_cast<int>(r() % 9 * 0x20000000u)); }},
    {"constant", [](std::mt19937&) { return Zn_Variant(7); }},
    {"with absent", [](std::mt19937& r) { return r() % 3 ? Zn_Variant(static_cast<int>(r() % 9)) : Absent(); }},
    {"with empty", [](std::mt19937& r) { return r() % 2 ? Zn_Variant(static_cast<int>(r() % 9)) : Zn_Variant(); }},
    {"decimals", [](std::mt19937& r) { return Zn_Variant(static_cast<int>(r() % 40) / 8.0 - 2.5); }},
    {"texts",
     [](std::mt19937& r) {
         static const char16_t* const kTexts[] = {u"",         u"a",         u"ab",     u"abcd",      u"abcde",
                                                  u"abcdefgh", u"abcdefghi", u"\xD800", u"b\x7F\x80", u"abce"};
         return Zn_Variant(kTexts[r() % 10]);
     }},
    {"texts with nulls", [](std::mt19937& r) { return Zn_Variant(std::u16string_view(u"a\0\0\0\0\0\0", r() % 7)); }},
    {"amounts",
     [](std::mt19937& r) { return Zn_Variant(Zn_Currency::FromRaw(static_cast<int>(r() % 9) * 5000 - 20000)); }},
    {"close amounts",
     [](std::mt19937& r) {
         static const int kRaw[] = {0, 1, 50, 99, 100, 101, 500, 999, 1000, 1001, 1999, -100, -999, 20000};
         return Zn_Variant(Zn_Currency::FromRaw(kRaw[r() % std::size(kRaw)]));
     }},
    {"cents", [](std::mt19937& r) { return Zn_Variant(Zn_Currency::FromRaw(static_cast<int>(r() % 40) * 100)); }},
    {"dates",
     [](std::mt19937& r) { return Zn_Variant(Zn_DateTime(1 + static_cast<int>(r() % 8) * 300, 1, 1, 0, 0, 0)); }},
    {"far from numbers",
     [](std::mt19937& r) {
         constexpr double kInfinite = std::numeric_limits<double>::infinity();
         static const double kValues[] = {kInfinite, -kInfinite, std::nan(""), 0, 1.5, -1.5, 1e308, -1e308};
         return Zn_Variant(kValues[r() % 8]);
     }},
    {"whole amounts", [](std::mt19937& r) { return Zn_Variant(Zn_Currency(static_cast<int>(r() % 9) - 4)); }},
    {"extreme amounts",
     [](std::mt19937& r) {
         return Zn_Variant(Zn_Currency::FromRaw(static_cast<std::int64_t>(std::uint64_t{r() % 8} << 61)));
     }},
    {"bytes",
     [](std::mt19937& r) {
         Zn_Variant value;
         value.SetBinary(reinterpret_cast<const unsigned char*>("abab"), static_cast<int>(r() % 5));
         return value;
     }},
    {"mixed", Mixed},
};

} // namespace

TEST(DatasetSort, SmallRandomTablesTakeTheLiteralOrder)
{
    std::mt19937 random(20040715);
    const auto below = [&](std::size_t n) { return random() % n; };
    for (int round = 0; round < (LongTests() ? 60000 : 12000); ++round) {
        std::vector<Key> keys(1 + below(3));
        const std::size_t rows = round % 40 == 0 ? 40 + below(160) : 2 + below(24);
        std::string what;
        for (Key& key : keys) {
            const auto& [name, make] = kMakers[below(std::size(kMakers))];
            key.descending = below(2) == 0;
            what += std::string(name) + (key.descending ? " down, " : " up, ");
            for (std::size_t row = 0; row < rows; ++row)
                key.values.push_back(make(random));
        }
        ExpectLiteralOrder(keys, what + "round " + std::to_string(round));
        if (HasFatalFailure())
            return;
    }
}

// Rows enough for sorting by digits, of keys that are wide, close together or long.
TEST(DatasetSort, LargerRandomTablesTakeTheLiteralOrder)
{
    const std::pair<const char*, Maker> makers[] = {
        {"sixteen", [](std::mt19937& r) { return Zn_Variant(static_cast<int>(r() % 16)); }},
        {"wide", [](std::mt19937& r) { return Zn_Variant(static_cast<int>(r() % 2000 * 1000000)); }},
        {"decimals", [](std::mt19937& r) { return Zn_Variant(static_cast<int>(r() % 2500) / 100.0 - 5); }},
        {"close decimals", [](std::mt19937& r) { return Zn_Variant(1e9 + static_cast<int>(r() % 2000) * 1e-6); }},
        {"codes", [](std::mt19937& r) { return Zn_Variant(Zn_WString().Format(u"item %07d", int(r() % 2000))); }},
        {"cities", [](std::mt19937& r) { return Zn_Variant(Zn_WString().Format(u"city of %d", int(r() % 20))); }},
        {"letters",
         [](std::mt19937& r) {
             std::u16string text(r() % 7, u'\0');
             for (char16_t& unit : text)
                 unit = static_cast<char16_t>(r() % 3 * 0x3000 + u'a');
             return Zn_Variant(text);
         }},
        {"with empty",
         [](std::mt19937& r) { return r() % 9 ? Zn_Variant(static_cast<int>(r() % 700)) : Zn_Variant(); }},
    };
    const std::size_t rows = LongTests() ? 20000 : 2500;
    std::mt19937 random(1);
    for (const auto& [first, makeFirst] : makers) {
        for (const auto& [second, makeSecond] : makers) {
            std::vector<Key> keys(first == second ? 1 : 2);
            for (Key& key : keys) {
                key.descending = random() % 2 == 0;
                for (std::size_t row = 0; row < rows; ++row)
                    key.values.push_back((&key == keys.data() ? makeFirst : makeSecond)(random));
            }
            ExpectLiteralOrder(keys, first + std::string(" and ") + second);
            if (HasFatalFailure())
                return;
        }
    }
}

namespace {

// The top bits of a scrambled number.
int Scrambled(int i, int bits)
{
    return static_cast<int>(static_cast<unsigned>(i) * 2654435761u >> (32 - bits));
}

// Named arrangements of numbers, on which the literal procedure is at its slowest or its arrangement shows.
struct Pattern {
    const char* name;
    int (*at)(int i, int n);
};
const Pattern kPatterns[] = {
    {"sorted", [](int i, int) { return i; }},
    {"reversed", [](int i, int n) { return n - i; }},
    {"constant", [](int, int) { return 3; }},
    {"two in turn", [](int i, int) { return i % 2; }},
    {"two halves", [](int i, int n) { return i < n / 2 ? 1 : 0; }},
    {"two halves, back", [](int i, int n) { return i < n / 2 ? 0 : 1; }},
    {"sorted in steps", [](int i, int) { return i / 50; }},
    {"reversed in steps", [](int i, int n) { return (n - i) / 50; }},
    {"pipes", [](int i, int n) { return i < n / 2 ? i : n - i; }},
    {"valley", [](int i, int n) { return i < n / 2 ? n - i : i; }},
    {"saw", [](int i, int) { return i % 100; }},
    {"saw, back", [](int i, int) { return -(i % 100); }},
    {"sixteen", [](int i, int) { return Scrambled(i, 4); }},
    {"two at random", [](int i, int) { return Scrambled(i, 1); }},
    {"three at random", [](int i, int) { return Scrambled(i, 16) % 3; }},
    {"random", [](int i, int) { return Scrambled(i, 24); }},
    {"sorted, then random", [](int i, int n) { return i < n / 2 ? i : Scrambled(i, 16); }},
    {"sorted but the last", [](int i, int n) { return i == n - 1 ? -1 : i; }},
    {"spread over all numbers", [](int i, int n) { return static_cast<int>(0xFFFFFFFFu / unsigned(n) * unsigned(i)); }},
};

} // namespace

TEST(DatasetSort, PatternsTakeTheLiteralOrder)
{
    for (const int rows : {33, 500, LongTests() ? 20000 : 3000}) {
        for (const Pattern& pattern : kPatterns) {
            Zn_Dataset numbers = Numbered(rows, 1);
            Zn_Dataset emptyBetween = Numbered(rows, 1);
            std::vector<int> keys;
            for (int i = 0; i < rows; ++i) {
                keys.push_back(pattern.at(i, rows));
                const Zn_Variant key(keys.back()), empty;
                Put(numbers, i, 0, &key);
                Put(emptyBetween, i, 0, i % 3 == 0 ? &empty : &key);
            }
            const auto compare = [&](int a, int b) {
                const auto at = [&](int row) { return static_cast<unsigned>(keys[static_cast<std::size_t>(row)]); };
                return static_cast<int>(at(a) - at(b));
            };
            numbers.Sort(u"k0", 1);
            EXPECT_EQ(RowsOf(numbers), LiteralOrder(rows, compare)) << pattern.name << ", " << rows;
            numbers = Zn_Dataset();
            emptyBetween.Sort(u"k0:d", 1);
            const auto downAroundEmpty = [&](int a, int b) {
                return a % 3 == 0 && b % 3 == 0                        ? 0
                       : a % 3 == 0 || b % 3 == 0 || compare(a, b) > 0 ? -1
                                                                       : compare(a, b) != 0;
            };
            EXPECT_EQ(RowsOf(emptyBetween), LiteralOrder(rows, downAroundEmpty)) << pattern.name << " around empty";
        }
    }
}

TEST(DatasetSort, TimeGrowsLikeTheLogarithm)
{
    // The literal procedure makes billions of comparisons for most of these.
    const int kRows = LongTests() ? 1000000 : 30000;
    for (const Pattern& pattern : kPatterns) {
        // Numbers; the same with empty values between, as dates, and as amounts that differ by cents.
        Zn_Dataset made = Numbered(kRows, 4);
        for (int i = 0; i < kRows; ++i) {
            const int number = pattern.at(i, kRows);
            const Zn_Variant values[] = {Zn_Variant(number), i % 2 ? Zn_Variant() : Zn_Variant(number),
                                         Zn_Variant(Zn_DateTime(number % 100000)),
                                         Zn_Variant(Zn_Currency::FromRaw(std::int64_t{number} * 100))};
            for (int k = 0; k < 4; ++k)
                Put(made, i, k, &values[k]);
        }
        for (const char16_t* spec : {u"k0", u"k1", u"k1,k0:d", u"k0:d,k1", u"k2", u"k2:d,k1", u"k1,k3"}) {
            Zn_Dataset table(made);
            const std::clock_t start = std::clock();
            table.Sort(spec, 1);
            EXPECT_LT(double(std::clock() - start) / CLOCKS_PER_SEC, kRows / 25000)
                << pattern.name << " by " << Zn_WString(spec).ToUtf8();
        }
    }
}

TEST(DatasetSort, SpecificationsName)
{
    const struct {
        const char16_t* spec;
        int ascending;
        long result;
        std::vector<int> order;
    } kSpecs[] = {
        {u"", 1, -1, {0, 1, 2, 3}},       {u"k0", 1, 0, {2, 1, 3, 0}},      {u"k0", 0, 0, {0, 3, 1, 2}},
        {u"k0", 2, 0, {0, 3, 1, 2}},      {u"K0:Down", 1, 0, {0, 3, 1, 2}}, {u"k0:a", 0, 0, {2, 1, 3, 0}},
        {u"k0:x", 0, 0, {0, 3, 1, 2}},    {u"k0:", 1, 0, {2, 1, 3, 0}},     {u"none,k0", 1, 0, {2, 1, 3, 0}},
        {u"none", 1, 0, {0, 1, 2, 3}},    {u":d", 1, 0, {0, 1, 2, 3}},      {u"k1,k0", 1, 0, {2, 3, 1, 0}},
        {u"k1:d,k0", 1, 0, {1, 0, 2, 3}}, {u"\\k0", 1, 0, {2, 1, 3, 0}},    {u"fixed,k0", 1, 0, {2, 1, 3, 0}},
    };
    for (const auto& entry : kSpecs) {
        Zn_Dataset table = Numbered(4, 2);
        table.AddConstStr(u"fixed", u"f");
        const int first[] = {9, 5, 0, 7}, second[] = {2, 2, 1, 1};
        for (int i = 0; i < 4; ++i) {
            table.SetColumn(i, u"k1", second[i]);
            if (i != 2)
                table.SetColumn(i, u"k0", first[i]);
        }
        EXPECT_EQ(table.Sort(entry.spec, entry.ascending), entry.result) << Zn_WString(entry.spec).ToUtf8();
        EXPECT_EQ(RowsOf(table), entry.order) << Zn_WString(entry.spec).ToUtf8() << ": absent is below all values";
    }
    EXPECT_EQ(Zn_Dataset().Sort(nullptr, 1), -1);
}

TEST(DatasetSort, RowsKeepTheirOriginalsAndTheMapIsMadeAnew)
{
    Zn_Dataset table = MakeTable(5);
    table.SetColumn(1, u"name", u"changed");
    table.DeleteRow(4);
    table.Filter(2);
    ASSERT_EQ(table.GetRowCount(), 3);
    table.Sort(u"id", 0);
    EXPECT_EQ(StateOf(table), "row 3=1 row 2=1 changed=4<row 1> row 0=1 | row 4");
    ASSERT_EQ(table.GetRowCount(), 3);
    EXPECT_EQ(table.GetColumn(1, u"name")->ToString(), u"changed");
    EXPECT_EQ(table.GetOrgColumn(1, u"name")->ToString(), u"row 1");
    table.UnFilter();
    table.Reset();
    EXPECT_EQ(StateOf(table), "row 3=1 row 2=1 row 1=1 row 0=1 row 4=1 |");
}

namespace {

struct Opened : Zn_Dataset {
    using Zn_Dataset::_CompareRecord;
    using Zn_Dataset::_qsort;
    using Zn_Dataset::Zn_Dataset;
};

} // namespace

TEST(DatasetSort, PartsOfATable)
{
    Opened table(u"t", 65001);
    table.AddColumn(u"row", Zn_ColInfo::Int);
    for (int i = 0; i < 6; ++i)
        table.SetColumn(table.AppendRow(0), u"row", 6 - i);
    int keys[] = {-1, 0}, up[] = {1, 1}, down[] = {1, -1};
    EXPECT_GT(table._CompareRecord(keys, 2, 0, 1, up), 0);
    EXPECT_LT(table._CompareRecord(keys, 2, 0, 1, down), 0);
    EXPECT_EQ(table._CompareRecord(keys, 2, 1, 0, up), 0) << "rows equal those before them";
    EXPECT_EQ(table._CompareRecord(keys, 0, 0, 1, up), 0);
    EXPECT_GT(table._CompareRecord(keys, 2, 0, 99, up), 0) << "a missing row has absent values";
    EXPECT_EQ(table._qsort(keys, 2, 1, 3, up), 0);
    EXPECT_EQ(RowsOf(table), (std::vector<int>{6, 3, 4, 5, 2, 1}));
    EXPECT_EQ(table._qsort(keys, 2, -9, 99, up), 0);
    EXPECT_EQ(RowsOf(table), (std::vector<int>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(table._qsort(keys, 1, 0, 5, up), 0);
}
