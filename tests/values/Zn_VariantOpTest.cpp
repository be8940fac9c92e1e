#include "Zn_VariantOp.h"

#include "foundation/memory.h"
#include "values/object_double.h"
#include "values/operator_table.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace {

using zn::OperandKind;
using zn::OperatorTable;
using Operator = void (*)(const Zn_Variant&, const Zn_Variant&, Zn_Variant&);

constexpr int kSmallest = std::numeric_limits<int>::min();

// An object whose default property has a value, with a result code that operators do not look at.
Zn_Variant ObjectOf(const Zn_Variant& value)
{
    auto* object = new ObjectDouble;
    object->value = value;
    object->code = -1;
    Zn_Variant variant;
    variant.SetObject(nullptr, nullptr, object);
    return variant;
}

// One without a default property.
Zn_Variant BareObject()
{
    Zn_Variant variant = ObjectOf(Zn_Variant());
    static_cast<ObjectDouble*>(variant.GetObject()->GetObject())->defaultName = nullptr;
    return variant;
}

Zn_Variant Null()
{
    Zn_Variant variant;
    variant.type = Zn_Variant::Null;
    return variant;
}

Zn_Variant Amount(std::int64_t raw)
{
    return Zn_Variant(Zn_Currency::FromRaw(raw));
}

// One value of each kind, in the order of the table.
std::vector<Zn_Variant> OneOfEach()
{
    Zn_Variant binary;
    binary.SetBinary(reinterpret_cast<const unsigned char*>("xyz"), 3);
    Zn_VariantList list;
    list.Add(Zn_Variant(1));
    return {
        Zn_Variant(),      Null(), Zn_Variant(7),    Zn_Variant(2.5), Amount(15000), Zn_Variant(Zn_DateTime(38183.0)),
        Zn_Variant(u"12"), binary, Zn_Variant(list), BareObject()};
}

constexpr struct {
    Operator op;
    const OperatorTable& table;
} kOperators[] = {{Var_Add, zn::kAddTable},
                  {Var_Sub, zn::kSubTable},
                  {Var_Mul, zn::kMulTable},
                  {Var_Div, zn::kDivTable},
                  {Var_Mod, zn::kModTable}};

int TypeOf(char letter, const Zn_Variant& a, const Zn_Variant& b)
{
    constexpr std::string_view letters = ".IDCTSab";
    const int types[] = {0, 3, 5, 6, 7, 8, a.type, b.type};
    return types[letters.find(letter)];
}

TEST(Zn_VariantOp, ResultTypesFollowTheTable)
{
    const std::vector<Zn_Variant> values = OneOfEach();
    for (const auto& [op, table] : kOperators) {
        for (const Zn_Variant& a : values) {
            for (const Zn_Variant& b : values) {
                SCOPED_TRACE(std::string(table.name) + ' ' + Zn_WString(a.GetTypeString()).ToUtf8() + ' ' +
                             Zn_WString(b.GetTypeString()).ToUtf8());
                const char letter = table.At(zn::OperandKindOf(a), zn::OperandKindOf(b));
                Zn_Variant result(u"old");
                op(a, b, result);
                EXPECT_EQ(result.type, TypeOf(letter, a, b));
                if (letter == 'a' || letter == 'b') {
                    EXPECT_EQ(result.ToString(), (letter == 'a' ? a : b).ToString());
                }

                Zn_Variant left(a), right(b), wrappedResult;
                op(left, right, left);
                EXPECT_EQ(left.type, result.type) << "the result replaces the left operand";
                EXPECT_EQ(left.ToString(), result.ToString());
                op(a, right, right);
                EXPECT_EQ(right.ToString(), result.ToString()) << "the result replaces the right operand";
                op(ObjectOf(a), ObjectOf(b), wrappedResult);
                EXPECT_EQ(wrappedResult.type, result.type) << "objects stand for their default properties";
                EXPECT_EQ(wrappedResult.ToString(), result.ToString());
            }
        }
    }
}

// docs/operators.md shows each table as lines of a type's name and the row as it stands in the source.
TEST(Zn_VariantOp, TheDocumentShowsTheTables)
{
    std::ifstream file(ZN_TEST_DATA "/../../docs/operators.md");
    std::stringstream text;
    text << file.rdbuf();
    for (const auto& [op, table] : kOperators) {
        std::istringstream section(
            text.str().substr(std::min(text.str().find(std::string("`") + table.name + "`:"), text.str().size())));
        std::string line;
        std::getline(section, line);
        std::getline(section, line); // opens the block
        std::getline(section, line); // names the columns
        for (const auto& row : table.results) {
            std::getline(section, line);
            std::istringstream words(line);
            std::string name, cell, cells;
            for (words >> name; words >> cell;)
                cells += cell;
            EXPECT_EQ(cells, row) << table.name << ' ' << name;
        }
    }
}

TEST(Zn_VariantOp, Computes)
{
    const Zn_Variant empty;
    const Zn_Variant date(Zn_DateTime(38183.25));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    const std::int64_t least = std::numeric_limits<std::int64_t>::min();
    const struct {
        const char* name;
        Operator op;
        Zn_Variant a, b, result;
    } cases[] = {
        {"add wraps", Var_Add, INT32_MAX, 1, kSmallest},
        {"add texts", Var_Add, u"a", u"b", u"ab"},
        {"add text and number", Var_Add, u"n", 5, u"n5"},
        {"add number and text", Var_Add, 1.5, u"n", u"1.5n"},
        {"add amounts", Var_Add, Amount(15000), 2, Amount(35000)},
        {"add amount overflow", Var_Add, Amount(most), Amount(1), Amount(least)},
        {"add days", Var_Add, date, 2, Zn_DateTime(38185.25)},
        {"add to days", Var_Add, 0.5, date, Zn_DateTime(38183.75)},
        {"add to nothing", Var_Add, empty, u"x", u"x"},
        {"sub nothing", Var_Sub, 5, empty, 5},
        {"sub from nothing", Var_Sub, empty, 5, -5},
        {"sub smallest from nothing", Var_Sub, Null(), kSmallest, kSmallest},
        {"sub amount from nothing", Var_Sub, empty, Amount(15000), Amount(-15000)},
        {"sub nothings", Var_Sub, Null(), Null(), empty},
        {"sub text", Var_Sub, u"7", 2, empty},
        {"sub decimal", Var_Sub, 3, 0.5, 2.5},
        {"sub amount", Var_Sub, 3, Amount(5000), Amount(25000)},
        {"sub wraps", Var_Sub, kSmallest, 1, INT32_MAX},
        {"sub amount overflow", Var_Sub, Amount(least), Amount(1), Amount(least)},
        {"sub days", Var_Sub, date, 0.25, Zn_DateTime(38183.0)},
        {"sub dates", Var_Sub, date, Zn_DateTime(38182.0), Zn_DateTime(1.25)},
        {"sub date from number", Var_Sub, 40000, date, 1817},
        {"mul wraps", Var_Mul, 65536, 65537, 65536},
        {"mul integer and amount", Var_Mul, 3, Amount(-15000), Amount(-45000)},
        {"mul amount and decimal", Var_Mul, Amount(15000), 2.0, 3.0},
        {"mul amounts", Var_Mul, Amount(-12345), Amount(20001), Amount(-24691)},
        {"mul large amounts", Var_Mul, Amount(most), Amount(10000), Amount(most)},
        {"mul amount overflow", Var_Mul, Amount(most), Amount(10001), Amount(least)},
        {"mul nothing", Var_Mul, 5, empty, 0},
        {"mul nothings", Var_Mul, empty, Null(), empty},
        {"mul text", Var_Mul, 5, u"2", empty},
        {"div integers", Var_Div, 7, 2, 3.5},
        {"div zero", Var_Div, 1, 0.0, empty},
        {"div tiny", Var_Div, 1, -1e-16, empty},
        {"div small", Var_Div, 1, 1e-15, 1 / 1e-15},
        {"div text", Var_Div, 1, u"2", empty},
        {"div nothing", Var_Div, empty, 2, empty},
        {"mod zero", Var_Mod, 7, 0, empty},
        {"mod fraction", Var_Mod, 7, 0.9, empty},
        {"mod negative", Var_Mod, -7, 3, -1},
        {"mod by negative", Var_Mod, 7, -3, 1},
        {"mod smallest", Var_Mod, kSmallest, -1, 0},
        {"cat", Var_Cat, 1, u"a", u"1a"},
        {"cat nothings", Var_Cat, empty, empty, u""},
        {"cat array", Var_Cat, OneOfEach()[8], empty, u"911]"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Zn_Variant result;
        c.op(c.a, c.b, result);
        EXPECT_EQ(result.type, c.result.type);
        EXPECT_EQ(result.ToString(), c.result.ToString());
        EXPECT_TRUE(result == c.result || result.type == Zn_Variant::Empty);
    }
    for (const Operator op : {Var_Add, Var_Sub, Var_Mul, Var_Div}) {
        Zn_Variant result;
        op(nan, 1, result);
        EXPECT_TRUE(result.type == Zn_Variant::Decimal && std::isnan(result.ToDouble()));
        op(1, nan, result);
        EXPECT_TRUE(result.type == Zn_Variant::Decimal && std::isnan(result.ToDouble()));
    }
    Zn_Variant zero;
    Var_Sub(empty, 0.0, zero);
    EXPECT_TRUE(std::signbit(zero.ToDouble())) << "the negation of 0.0";
}

TEST(Zn_VariantOp, NumbersAreComputedWithoutAllocating)
{
    const std::vector<Zn_Variant> values = OneOfEach();
    Zn_Variant result;
    for (std::size_t a = 2; a < 6; ++a) {
        for (std::size_t b = 2; b < 6; ++b) {
            zn::FailAllocation(1);
            for (const auto& [op, table] : kOperators)
                op(values[a], values[b], result);
            Var_Cmp(values[a], values[b], ZN_OP_LESS);
            Var_AndOr(values[a], values[b], ZN_OP_AND);
            EXPECT_FALSE(zn::AllocationFailed()) << a << ' ' << b;
            zn::FailAllocation(0);
        }
    }
}

TEST(Zn_VariantOp, AppendsInPlace)
{
    Zn_Variant text(u"a");
    const Zn_Variant before(text);
    text += u"b";
    text += 1;
    text += text;
    EXPECT_EQ(text.ToString(), u"ab1ab1");
    EXPECT_EQ(before.ToString(), u"a");
    Zn_Variant sum;
    sum += 2;
    sum += 0.5;
    EXPECT_TRUE(sum == 2.5);
}

TEST(Zn_VariantOp, Compares)
{
    const Zn_Variant empty;
    const Zn_Variant bare = BareObject();
    Zn_Variant binary = OneOfEach()[7];
    enum : int { Less = 1, Equal = 2, Greater = 4, Never = 0 };
    const struct {
        const char* name;
        Zn_Variant a, b;
        int order;
    } cases[] = {
        {"nothings", Null(), empty, Equal},
        {"nothing and number", 5, Null(), Never},
        {"nothing and object", empty, bare, Never},
        {"integers", 3, 4, Less},
        {"integers wrap", kSmallest, 1, Greater},
        {"numbers", 2, 2.0, Equal},
        {"numbers the other way", 2.5, 2, Greater},
        {"amount and decimal", Amount(15000), 1.5, Equal},
        {"date and integer", Zn_DateTime(10.0), 11, Less},
        {"not a number", std::numeric_limits<double>::quiet_NaN(), 1, Equal},
        {"texts", u"abc", u"abd", Less},
        {"text and number", u"10", 9, Less},
        {"number and text", 9, u"10", Greater},
        {"text and date", u"9", Zn_DateTime(0.0), Greater},
        {"bytes and text", binary, u"[binary]", Never},
        {"bytes", binary, binary, Equal},
        {"arrays", OneOfEach()[8], OneOfEach()[8], Equal},
        {"array and number", OneOfEach()[8], 1, Never},
        {"one object twice", bare, bare, Equal},
        {"two objects", bare, BareObject(), Greater},
        {"object without value", bare, 1, Never},
        {"object and number", ObjectOf(3), 4, Less},
        {"text and object", u"3", ObjectOf(3), Equal},
        {"number and object of nothing", 0, ObjectOf(empty), Never},
        {"object of an object", ObjectOf(ObjectOf(1)), 1, Never},
    };
    constexpr struct {
        short op;
        int truth;
    } ops[] = {{31, Equal}, {32, Greater}, {33, Greater | Equal}, {34, Less}, {35, Less | Equal}, {30, 0}, {36, 0}};
    for (const auto& c : cases) {
        for (const auto& [op, truth] : ops)
            EXPECT_EQ(Var_Cmp(c.a, c.b, op), (c.order & truth) ? 1 : 0) << c.name << ' ' << op;
    }
}

TEST(Zn_VariantOp, AndsAndOrs)
{
    const std::pair<Zn_Variant, bool> cases[] = {
        {Zn_Variant(), false}, {1, true},       {0, false},    {0.9, false},      {-1.0, true},
        {u"TRUE", true},       {u"yes", false}, {u"1", false}, {u"false", false}, {Amount(15000), true},
        {ObjectOf(1), false}, // its property answers with an error, which conversions heed
    };
    for (const auto& [value, truth] : cases) {
        EXPECT_EQ(Var_AndOr(value, 1, 41), truth ? 1 : 0) << value.ToString().ToUtf8();
        EXPECT_EQ(Var_AndOr(0, value, 40), truth ? 1 : 0) << value.ToString().ToUtf8();
        EXPECT_EQ(Var_AndOr(value, 0, 41), 0);
        EXPECT_EQ(Var_AndOr(1, value, 42), 1);
    }
}

} // namespace
