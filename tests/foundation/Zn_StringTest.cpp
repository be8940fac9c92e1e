#include "Zn_AString.h"
#include "Zn_WString.h"

#include "foundation/memory.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <limits>
#include <random>

namespace {

// One body over both widths: literals are ASCII and widened to the string's character.
template <class String>
class StringTest : public testing::Test {
public:
    using Char = typename String::View::value_type;
    static std::basic_string<Char> L(std::string_view ascii) { return {ascii.begin(), ascii.end()}; }
    static String S(std::string_view ascii) { return String(std::basic_string_view<Char>(L(ascii))); }
};

using BothWidths = testing::Types<Zn_WString, Zn_AString>;
TYPED_TEST_SUITE(StringTest, BothWidths);

#define L(text) TestFixture::L(text).c_str()
#define S(text) TestFixture::S(text)

TYPED_TEST(StringTest, EmptyAndNeverSetAreTheSame)
{
    const TypeParam never;
    const TypeParam null(nullptr, -1);
    TypeParam emptied = S("x");
    emptied.Empty();
    EXPECT_EQ(never, emptied);
    EXPECT_EQ(never, null);
    EXPECT_EQ(never.GetText()[0], 0);
    EXPECT_EQ(never.GetAt(0), 0);
    EXPECT_TRUE(S("").IsEmpty());
}

TYPED_TEST(StringTest, CopiesKeepTheirText)
{
    TypeParam a = S("shared");
    const TypeParam b = a;
    EXPECT_EQ(a.GetText(), b.GetText()) << "copies share their text";
    a.SetAt(0, 'S');
    a.SetAt(6, '!');
    a.SetAt(-1, '!');
    EXPECT_EQ(a, S("Shared"));
    EXPECT_EQ(b, S("shared"));
    TypeParam c = b;
    c += S("+");
    TypeParam d = b;
    d.GetSafeBuffer(2)[0] = 'x';
    EXPECT_EQ(b, S("shared"));
    EXPECT_EQ(c, S("shared+"));
    EXPECT_EQ(d, S("xhared"));
    a = std::move(c);
    EXPECT_EQ(a, S("shared+"));
}

TYPED_TEST(StringTest, TakesViewsIntoItself)
{
    TypeParam a = S("0123456789");
    for (int i = 0; i < 6; ++i)
        a += a.GetView().substr(1); // moves the text as it grows
    EXPECT_EQ(a.GetLength(), 10 * 64 - 63);
    a.Set(a.GetView().substr(3, 4));
    EXPECT_EQ(a, S("3456"));
    a.Set(a.GetText() + 1, 2);
    EXPECT_EQ(a, S("45"));
    a.Replace(a.GetText() + 1, a.GetText());
    EXPECT_EQ(a, S("445"));
}

TYPED_TEST(StringTest, Pieces)
{
    const TypeParam a = S("abcdef");
    struct Row {
        int start, n;
        const char* mid;
        const char* left;
        const char* right;
    } rows[] = {
        {0, 0, "", "", ""},   {2, 3, "cde", "abc", "def"}, {-1, 2, "ab", "ab", "ef"}, {4, 9, "ef", "abcdef", "abcdef"},
        {9, 1, "", "a", "f"}, {1, -1, "", "", ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(a.Mid(row.start, row.n), S(row.mid));
        EXPECT_EQ(a.Left(row.n), S(row.left));
        EXPECT_EQ(a.Right(row.n), S(row.right));
    }
    EXPECT_EQ(a.Mid(4), S("ef"));
    EXPECT_EQ(a.Mid(INT_MIN, INT_MAX), a);
}

TYPED_TEST(StringTest, FindAndReplace)
{
    TypeParam a = S("banana");
    EXPECT_EQ(a.Find(L("ana")), 1);
    EXPECT_EQ(a.Find(L("ana"), 2), 3);
    EXPECT_EQ(a.Find(L("ana"), 4), -1);
    EXPECT_EQ(a.Find(L("")), -1);
    EXPECT_EQ(a.Find('n', -5), 2);
    EXPECT_EQ(a.Find('n', 99), -1);
    struct Row {
        const char* what;
        const char* with;
        int count;
        const char* result;
    } rows[] = {
        {"ana", "x", 1, "bxna"}, {"a", "", 3, "bnn"},   {"an", "<an>", 2, "b<an><an>a"}, {"", "x", 0, "banana"},
        {"x", "y", 0, "banana"}, {"banana", "", 1, ""}, {"a", "a", 3, "banana"},
    };
    for (const Row& row : rows) {
        TypeParam text = a;
        EXPECT_EQ(text.Replace(L(row.what), L(row.with)), row.count);
        EXPECT_EQ(text, S(row.result)) << row.what;
    }
    EXPECT_EQ(a.Replace('a', 'o'), 3);
    EXPECT_EQ(a, S("bonono"));
}

TYPED_TEST(StringTest, TrimAndTrimBrace)
{
    EXPECT_EQ(S(" \t\r\n\v\f a b \f").Trim(), S("a b"));
    EXPECT_EQ(S("  ").Trim(), S(""));
    struct Row {
        const char* text;
        const char* flag0;
        const char* flag1;
    } rows[] = {
        {"\"a\"", "a", "a"}, {"'a'", "a", "a"},   {"\"a'", "\"a'", "a'"},    {"'a", "'a", "a"},   {"a'", "a'", "a'"},
        {"(a)", "a", "(a)"}, {"[a]", "a", "[a]"}, {"{a}", "a", "{a}"},       {"<a>", "a", "<a>"}, {"(a]", "(a]", "(a]"},
        {"''", "", ""},      {"'", "'", ""},      {"((a))", "(a)", "((a))"}, {"", "", ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(S(row.text).TrimBrace(0), S(row.flag0)) << row.text;
        EXPECT_EQ(S(row.text).TrimBrace(1), S(row.flag1)) << row.text;
    }
}

TYPED_TEST(StringTest, SafeBufferIsFilledInPlace)
{
    TypeParam a = S("ab");
    auto* buffer = a.GetSafeBuffer(100);
    EXPECT_EQ(a.GetLength(), 100);
    EXPECT_EQ(buffer[1], 'b');
    EXPECT_EQ(buffer[2], 0);
    EXPECT_EQ(buffer[100], 0);
    buffer[2] = 'c';
    a.FreeExtra();
    EXPECT_EQ(a, S("abc"));
    a.FreeExtra(1);
    EXPECT_EQ(a, S("a"));
    EXPECT_EQ(a.GetSafeBuffer(INT_MAX), nullptr) << "larger than a text can be";
    EXPECT_EQ(a, S("a"));
    a.FreeExtra(0);
    EXPECT_TRUE(a.IsEmpty());
}

TYPED_TEST(StringTest, OrdersByUnit)
{
    EXPECT_LT(S("a"), S("b"));
    EXPECT_LT(S("a"), S("ab"));
    EXPECT_GT(S("b").Compare(L("abc")), 0);
    EXPECT_EQ(S("a").Compare(L("a")), 0);
    EXPECT_TRUE(S("a") == L("a"));
}

TYPED_TEST(StringTest, ReadsNumbers)
{
    struct Row {
        const char* text;
        int integer;
        double number;
        bool isNumber;
    } rows[] = {{"", 0, 0, false},
                {"12", 12, 12, true},
                {" \t-7x", -7, -7, false},
                {"+5", 5, 5, true},
                {"--5", 0, 0, false},
                {"2147483648", 2147483647, 2147483648.0, true},
                {"-99999999999999999999", INT_MIN, -1e20, true},
                {".5", 0, .5, true},
                {"5.", 5, 5, true},
                {".", 0, 0, false},
                {"1.2.3", 1, 1.2, false},
                {"1e3", 1, 1000, false},
                {"1e", 1, 1, false},
                {"1e+", 1, 1, false},
                {"1.5E-2z", 1, .015, false},
                {"inf", 0, 0, false},
                {"nan", 0, 0, false},
                {"0x10", 0, 0, false},
                {"1,5", 1, 1, false},
                {"1e400", 1, HUGE_VAL, false},
                {"-1e-400", -1, -0.0, false},
                {"0e999999999999", 0, 0, false},
                {"1e99999999999999999999", 1, HUGE_VAL, false},
                {"- 1", 0, 0, false}};
    for (const Row& row : rows) {
        const TypeParam text = S(row.text);
        EXPECT_EQ(text.ToInteger(), row.integer) << row.text;
        EXPECT_EQ(std::bit_cast<std::uint64_t>(text.ToDouble()), std::bit_cast<std::uint64_t>(row.number)) << row.text;
        EXPECT_EQ(text.IsNumber(), row.isNumber) << row.text;
    }
}

TYPED_TEST(StringTest, ReadsLongNumbersExactly)
{
    const std::string zeros(2000, '0');
    EXPECT_EQ(S("0." + zeros + "25e2001").ToDouble(), 2.5);
    EXPECT_EQ(S("25" + zeros + ".0e-2001").ToDouble(), 2.5);
    // 1 + 2^-53 lies in the middle of two doubles: what follows far behind decides.
    const std::string middle = "1.00000000000000011102230246251565404236316680908203125";
    EXPECT_EQ(S(middle + zeros).ToDouble(), 1.0);
    EXPECT_EQ(S(middle + zeros + "1").ToDouble(), std::nextafter(1.0, 2.0));
    EXPECT_EQ(S("5e-324").ToDouble(), std::numeric_limits<double>::denorm_min());
}

TYPED_TEST(StringTest, WritesNumbers)
{
    TypeParam text;
    text.Set(INT_MIN);
    EXPECT_EQ(text, S("-2147483648"));
    text.Set(2147483647L);
    EXPECT_EQ(text, S("2147483647"));
    const std::pair<double, const char*> rows[] = {{0, "0"},
                                                   {-0.0, "-0"},
                                                   {7, "7"},
                                                   {-2.5, "-2.5"},
                                                   {0.1, "0.1"},
                                                   {1e-5, "0.00001"},
                                                   {9.9e-6, "9.9e-6"},
                                                   {1e15, "1000000000000000"},
                                                   {1.5e16, "15000000000000000"},
                                                   {99999999999999984.0, "99999999999999980"},
                                                   {1e17, "1e17"},
                                                   {-1.25e300, "-1.25e300"},
                                                   {5e-324, "5e-324"},
                                                   {HUGE_VAL, "inf"},
                                                   {-HUGE_VAL, "-inf"},
                                                   {std::nan(""), "nan"},
                                                   {123456.789, "123456.789"}};
    for (const auto& [value, written] : rows) {
        text.Set(value);
        EXPECT_EQ(text, S(written));
    }
}

TYPED_TEST(StringTest, DoublesReadBackBitForBit)
{
    std::mt19937_64 random(20040517);
    TypeParam text;
    for (int i = 0; i < 20000; ++i) {
        double value = std::bit_cast<double>(random());
        if (i % 2 == 1)
            value = std::ldexp(static_cast<double>(random() >> 11), -static_cast<int>(random() % 60));
        if (!std::isfinite(value))
            continue;
        text.Set(value);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(text.ToDouble()), std::bit_cast<std::uint64_t>(value))
            << std::hexfloat << value;
    }
}

// Fails the first, the second, ... allocation of an operation until it needs no more: it either happens
// whole or leaves the text as it was.
template <class String, class Operation>
void FailEveryAllocation(const String& start, Operation operation)
{
    String done = start;
    operation(done);
    ASSERT_NE(done, start);
    for (int n = 1;; ++n) {
        String text = start; // shared, so that writing needs a body of its own
        zn::FailAllocation(n);
        operation(text);
        const bool failed = zn::AllocationFailed();
        zn::FailAllocation(0);
        EXPECT_TRUE(text == start || text == done) << "allocation " << n;
        if (!failed) {
            EXPECT_EQ(text, done);
            return;
        }
    }
}

TYPED_TEST(StringTest, KeepsItsTextWhenMemoryRunsOut)
{
    const TypeParam start = S(std::string(100, 'a') + "<b>");
    const TypeParam more = S(std::string(9000, 'x'));
    const auto fails = [&](auto operation) { FailEveryAllocation(start, operation); };
    fails([](TypeParam& text) { text.SetAt(0, 'b'); });
    fails([](TypeParam& text) { text.Replace('a', 'b'); });
    fails([](TypeParam& text) { text.Replace(L("a"), L("bc")); });
    fails([](TypeParam& text) { text.GetSafeBuffer(5000); });
    fails([](TypeParam& text) { text.FreeExtra(50); });
    fails([](TypeParam& text) { text.Set(1.5); });
    fails([&](TypeParam& text) { text += more; });
    fails([](TypeParam& text) { text.Set(L(std::string(9000, 'y'))); });
    fails([&](TypeParam& text) { text.Format(L("%s%s%30d"), more.GetText(), L("-"), 5); });
    fails([](TypeParam& text) {
        if constexpr (sizeof(typename TypeParam::View::value_type) == 2) {
            const std::string bytes = std::string(5000, 'a') + "\xC7\xD1";
            text.Set(bytes.c_str(), -1, 949);
        } else {
            text.Set(std::u16string(5000, u'\uD55C').c_str(), -1, 65001);
        }
    });
}

TEST(WString, AppendsEveryKind)
{
    Zn_WString text(u"a");
    text += Zn_WString(u"b");
    text += u"c";
    text += "d";
    text += 'e';
    text += u'f';
    text += 12L;
    text += 0.5;
    text += static_cast<const char*>(nullptr);
    EXPECT_EQ(text, u"abcdef120.5");
    EXPECT_EQ(Zn_WString(u"a") + Zn_WString(u"b"), u"ab");
    EXPECT_TRUE(Zn_WString::_ZnNullString.IsEmpty());
}

} // namespace
