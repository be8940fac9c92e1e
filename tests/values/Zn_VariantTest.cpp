#include "Zn_Variant.h"

#include "values/variant_kinds.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <thread>
#include <utility>

namespace {

constexpr std::uint16_t kTypes[] = {0, 1, 2, 3, 5, 6, 7, 8, 13, 0x2000, 0x4000, 0xFFFF};

void ExpectReadsAs(const Zn_Variant& value, const Kind& kind)
{
    EXPECT_EQ(value.type, kind.type);
    EXPECT_EQ(Zn_WString(value.GetTypeString()).ToUtf8(), kind.typeName);
    EXPECT_EQ(value.ToInteger(), kind.integer);
    EXPECT_EQ(value.ToDouble(), kind.number);
    EXPECT_EQ(value.ToCurrency().GetRaw(), kind.amount);
    EXPECT_EQ(value.ToDateTime().GetStored(), kind.date);
    EXPECT_EQ(value.ToString().ToUtf8(), kind.text);
    EXPECT_EQ(value.ToAString(65001), kind.text8);
}

// Everything that looks at a value; what it finds is of no interest, that it finds it safely is.
void TouchEverything(Zn_Variant& value)
{
    const Zn_Variant copy(value);
    Zn_Variant assigned(u"x");
    assigned = copy;
    for (const Zn_Variant* v : {&copy, &std::as_const(value)}) {
        v->ToInteger();
        v->ToDouble();
        v->ToCurrency();
        v->ToDateTime();
        v->ToString();
        v->ToAString(65001);
        v->GetStr()->GetLength();
        v->GetBinary()->GetLength();
        v->GetArray()->Count();
        v->GetObject()->GetID();
        v->GetCurrency()->GetRaw();
        v->GetDateTime()->GetYear();
        Zn_Buffer buffer;
        v->Save(buffer, 65001);
        EXPECT_EQ(v->Compare(assigned), v->Compare(copy)); // not 0 where bits of another kind read as no number
        EXPECT_EQ(*v == assigned, *v == copy);
    }
    if (Zn_WString* text = value.GetStr())
        *text += u"s";
    if (Zn_Buffer* bytes = value.GetBinary())
        bytes->AddSize(1);
    if (Zn_VariantList* list = value.GetArray())
        list->Add(copy);
    if (Zn_VarObject* object = value.GetObject())
        object->GetType();
    if (Zn_Currency* amount = value.GetCurrency())
        *amount += Zn_Currency(1);
    if (Zn_DateTime* date = value.GetDateTime())
        *date += 1.0;
}

TEST(Zn_Variant, CopiesAndMovesBetweenAllKinds)
{
    const std::vector<Kind> kinds = Kinds();
    for (const Kind& from : kinds) {
        for (const Kind& old : kinds) {
            SCOPED_TRACE(testing::Message() << from.name << " into " << old.name);
            Zn_Variant copied(old.value), moved(old.value);
            copied = from.value;
            ExpectReadsAs(copied, from);
            ExpectReadsAs(from.value, from);
            Zn_Variant source(from.value);
            moved = std::move(source);
            ExpectReadsAs(moved, from);
            EXPECT_EQ(source.type, 0);
            copied = &std::as_const(moved);
            moved = *&moved;
            ExpectReadsAs(moved, from);
            Zn_Variant made(std::move(moved));
            ExpectReadsAs(made, from);
            made.Set(old.value);
            ExpectReadsAs(made, old);
            made = static_cast<const Zn_Variant*>(nullptr);
            EXPECT_EQ(made.type, 0);
        }
    }
}

// Each thread has variants of its own, which share what is underneath with those of the others.
TEST(Zn_Variant, CopiesInSeveralThreads)
{
    {
        const std::vector<Kind> kinds = Kinds();
        const auto work = [&kinds] {
            for (int round = 0; round < 500; ++round) {
                std::vector<Zn_Variant> copies;
                for (const Kind& kind : kinds)
                    copies.push_back(kind.value);
                for (std::size_t i = 0; i < copies.size(); ++i)
                    copies[i] = copies[copies.size() - 1 - i];
            }
        };
        std::thread one(work), two(work);
        work();
        one.join();
        two.join();
        for (const Kind& kind : kinds)
            ExpectReadsAs(kind.value, kind);
    }
    EXPECT_EQ(ObjectDouble::alive, 0);
}

TEST(Zn_Variant, ZeroedMemoryIsEmpty)
{
    alignas(Zn_Variant) unsigned char memory[2 * sizeof(Zn_Variant)] = {};
    auto* variants = reinterpret_cast<Zn_Variant*>(memory);
    EXPECT_EQ(variants[0].ToString(), u"");
    variants[0] = u"text";
    std::fill(memory + sizeof(Zn_Variant), std::end(memory), static_cast<unsigned char>(0xEE));
    Zn_Variant::InitWithMemory(&variants[1]);
    variants[1] = variants[0];
    EXPECT_EQ(variants[1].ToString(), u"text");
    Zn_Variant::FreeWithMemory(&variants[0]);
    variants[1].Clear();
    for (std::size_t i = sizeof(Zn_Variant); i < sizeof memory; ++i)
        EXPECT_EQ(memory[i], 0) << i;
    Zn_Variant::InitWithMemory(nullptr);
    Zn_Variant::FreeWithMemory(nullptr);
}

TEST(Zn_Variant, SetsFromPartsOfItself)
{
    Zn_Variant v(u"some text");
    v.SetStr(v.GetStr()->GetText() + 5);
    v.Set(*v.GetStr());
    v.SetStr(v.GetStr()->GetView().substr(1));
    v = *&v;
    v = std::move(*&v);
    EXPECT_EQ(v.ToString(), u"ext");
    Zn_VariantList list;
    list.Add(v);
    v = list;
    v = std::move(*v.GetArray()->GetSafeItem(0));
    EXPECT_EQ(v.ToString(), u"ext");
    v = Bytes("bytes");
    v.SetBinary(*v.GetBinary());
    v.SetBinary(v.GetBinary()->GetData() + 1, 3);
    EXPECT_EQ(View(*v.GetBinary()), "yte");
}

TEST(Zn_Variant, Setters)
{
    struct Row {
        const char* name;
        void (*set)(Zn_Variant& v);
        std::uint16_t type;
        const char* text;
    };
    const Row rows[] = {
        {"a long", [](Zn_Variant& v) { v = 5L; }, 3, "5"},
        {"a long beyond 32 bits", [](Zn_Variant& v) { v = LONG_MAX; }, 3, "2147483647"},
        {"Set of one", [](Zn_Variant& v) { v.Set(LONG_MIN); }, 3, "-2147483648"},
        {"SetStr length", [](Zn_Variant& v) { v.SetStr(u"abc", 2); }, 8, "ab"},
        {"SetStr null", [](Zn_Variant& v) { v.SetStr(static_cast<const char16_t*>(nullptr)); }, 8, ""},
        {"SetText8", [](Zn_Variant& v) { v.SetText8("\xE9", 1, 1252); }, 8, "\xC3\xA9"},
        {"SetCurrency units", [](Zn_Variant& v) { v.SetCurrency(-5, 2500); }, 6, "-4.75"},
        {"SetCurrency int", [](Zn_Variant& v) { v.SetCurrency(9); }, 6, "9"},
        {"SetCurrency double", [](Zn_Variant& v) { v.SetCurrency(-2.5); }, 6, "2.5"},
        {"SetCurrency text", [](Zn_Variant& v) { v.SetCurrency(u"19"); }, 6, "10"},
        {"SetDate fields", [](Zn_Variant& v) { v.SetDate(2004, 7, 15, 0, 0, 0); }, 7, "01040604"},
        {"SetDate text", [](Zn_Variant& v) { v.SetDate(Zn_WString(u"20040715")); }, 7, "01040604"},
        {"SetDate bad text", [](Zn_Variant& v) { v.SetDate(u"04"); }, 7, "-0011106"},
        {"SetDate double", [](Zn_Variant& v) { v.SetDate(38183.0); }, 7, "01040604"},
        {"SetDate integer", [](Zn_Variant& v) { v.SetDate(38183ul); }, 7, "01040604"},
        {"SetInteger", [](Zn_Variant& v) { v.SetInteger(u" -12x"); }, 3, "-12"},
        {"SetInteger too large", [](Zn_Variant& v) { v.SetInteger(u"99999999999"); }, 3, "2147483647"},
        {"SetInteger null", [](Zn_Variant& v) { v.SetInteger(nullptr); }, 3, "0"},
        {"SetDouble", [](Zn_Variant& v) { v.SetDouble(u" 1.5e2x"); }, 5, "150"},
        {"SetDouble null", [](Zn_Variant& v) { v.SetDouble(nullptr); }, 5, "0"},
        {"SetDouble none", [](Zn_Variant& v) { v.SetDouble(u"x"); }, 5, "0"},
        {"SetDouble hexadecimal", [](Zn_Variant& v) { v.SetDouble(u"-0X1.8p1z"); }, 5, "-3"},
        {"SetDouble hexadecimal, too large", [](Zn_Variant& v) { v.SetDouble(u"0x1p9999"); }, 5, "inf"},
        {"SetDouble hexadecimal without digits", [](Zn_Variant& v) { v.SetDouble(u"0xinf"); }, 5, "0"},
        {"SetDouble infinity", [](Zn_Variant& v) { v.SetDouble(u" -INFinity"); }, 5, "-inf"},
        {"SetBinary", [](Zn_Variant& v) { v.SetBinary(nullptr, 0); }, 13, "[binary]"},
        {"SetObject none", [](Zn_Variant& v) { v.SetObject(nullptr, nullptr, nullptr); }, 0x4000, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Zn_Variant v(u"old");
        row.set(v);
        EXPECT_EQ(v.type, row.type);
        EXPECT_EQ(v.ToString().ToUtf8(), row.text);
    }
}

TEST(Zn_Variant, DoublesBeyondIntegers)
{
    constexpr double inf = std::numeric_limits<double>::infinity();
    const std::pair<double, std::int32_t> rows[] = {
        {1e10, INT32_MAX}, {-1e10, INT32_MIN},        {inf, INT32_MAX},           {-inf, INT32_MIN},
        {std::nan(""), 0}, {2147483647.9, INT32_MAX}, {-2147483648.9, INT32_MIN}, {-1.9, -1}};
    for (const auto& [number, integer] : rows)
        EXPECT_EQ(Zn_Variant(number).ToInteger(), integer) << number;
}

// The target kinds of ChangeType from each kind; null text: nothing changes but the type code.
TEST(Zn_Variant, ChangeType)
{
    const std::vector<Kind> kinds = Kinds();
    for (const Kind& kind : kinds) {
        const bool scalar = Zn_Variant(kind.value).IsComparable(kind.value) != 0;
        for (const std::uint16_t target : kTypes) {
            SCOPED_TRACE(testing::Message() << kind.name << " to " << target);
            Zn_Variant inPlace(kind.value), from(u"kept");
            inPlace.ChangeType(target);
            from.ChangeType(target, &kind.value);
            EXPECT_EQ(inPlace.type, target);
            const bool relabels = (target != 3 && target != 5 && target != 6 && target != 7 && target != 8) ||
                                  (target == 8 && kind.type == Zn_Variant::Date);
            EXPECT_EQ(from.type, relabels ? 8 : target);
            if (relabels) {
                EXPECT_EQ(from.ToString(), u"kept");
                TouchEverything(inPlace);
                continue;
            }
            if (target == kind.type)
                continue;
            for (const Zn_Variant* changed : {&inPlace, &from}) {
                if (target == Zn_Variant::String)
                    EXPECT_EQ(changed->ToString().ToUtf8(), kind.text);
                else if (target == Zn_Variant::Currency && kind.type == Zn_Variant::String)
                    EXPECT_EQ(*changed, Zn_Currency(kind.value.GetConstStr()->GetView()));
                else if (target == Zn_Variant::Currency)
                    EXPECT_EQ(changed->GetCurrency()->GetRaw(), scalar ? kind.amount : 0);
                else if (target == Zn_Variant::Date)
                    EXPECT_EQ(changed->GetDateTime()->GetStored(), scalar ? kind.date : 0);
                else
                    EXPECT_EQ(changed->ToDouble(), !scalar                         ? 0
                                                   : target == Zn_Variant::Integer ? kind.integer
                                                                                   : kind.number);
            }
        }
    }
}

TEST(Zn_Variant, RelabelledValuesStaySafe)
{
    for (const Kind& kind : Kinds()) {
        for (const std::uint16_t first : kTypes) {
            for (const std::uint16_t second : kTypes) {
                SCOPED_TRACE(testing::Message() << kind.name << " as " << first << " as " << second);
                Zn_Variant v(kind.value);
                v.type = first; // nothing keeps a program from writing it
                TouchEverything(v);
                v.type = second;
                TouchEverything(v);
            }
        }
    }
    EXPECT_EQ(ObjectDouble::alive, 0);
}

TEST(Zn_Variant, RelabelledValuesReadAsEmpty)
{
    Zn_Variant date(Zn_DateTime(2004, 7, 15, 0, 0, 0));
    date.ChangeType(Zn_Variant::String);
    EXPECT_EQ(date.type, Zn_Variant::String);
    EXPECT_EQ(date.ToString(), u"");
    EXPECT_TRUE(date == u"");
    EXPECT_EQ(date.GetDateTime()->GetYear(), 2004) << "the stored bits are kept";
    *date.GetStr() = u"now a text";
    EXPECT_EQ(date.ToString(), u"now a text");

    Zn_Variant text(u"abc");
    text.ChangeType(Zn_Variant::Binary);
    EXPECT_EQ(text.GetConstBinary()->GetLength(), 0);
    EXPECT_EQ(text.GetConstStr()->GetLength(), 3);
    EXPECT_EQ(text.ToString(), u"[binary]");
    text.ChangeType(Zn_Variant::Array);
    EXPECT_EQ(text.GetArray()->Count(), 0);
    EXPECT_EQ(text.GetConstStr()->GetLength(), 0) << "a list took its place";
    EXPECT_EQ(text.GetStr(), nullptr);

    for (Zn_Variant v : {Zn_Variant(5), Zn_Variant(u"five")}) {
        v.ChangeType(2);
        Zn_Variant copy(v);
        EXPECT_EQ(copy.type, 2) << "of an unknown type only the code is copied";
        copy.type = v.type = Zn_Variant::Integer;
        EXPECT_EQ(copy.ToInteger(), 0);
    }
}

TEST(Zn_Variant, TypeNumbers)
{
    const std::pair<const char16_t*, int> rows[] = {
        {u"Integer", 3},  {u"INT", 3},     {u"interval", 3}, {u"IN", 0},       {u"decimal", 5}, {u"DECIMA", 0},
        {u"STRING", 8},   {u"Strings", 8}, {u"currency", 6}, {u"DATETIME", 7}, {u"BINARY", 0},  {u"Blobby", 13},
        {u"array", 8192}, {u"NULL", 1},    {u"object", 0},   {u"", 0},         {nullptr, 0}};
    for (const auto& [name, type] : rows)
        EXPECT_EQ(Zn_Variant::GetTypeNo(name), type) << Zn_WString(name).ToUtf8();
}

TEST(Zn_Variant, CompareAcrossKinds)
{
    const std::vector<Kind> kinds = Kinds();
    for (const Kind& a : kinds) {
        for (const Kind& b : kinds) {
            SCOPED_TRACE(testing::Message() << a.name << " with " << b.name);
            const bool comparable = a.type == b.type && a.type >= 3 && a.type <= 8;
            EXPECT_EQ(a.value.IsComparable(b.value), comparable);
            if (a.type != b.type) {
                EXPECT_EQ(a.value.Compare(b.value), a.type <= 1 && b.type <= 1 ? 0 : 1);
                EXPECT_EQ(a.value == b.value, 0);
            } else if (&a == &b) {
                const bool never = a.type == Zn_Variant::Array || a.type == 2;
                EXPECT_EQ(a.value == b.value, never ? 0 : 1);
                EXPECT_EQ(a.value != b.value, never ? 1 : 0);
                EXPECT_EQ(a.value.Compare(b.value), a.type == Zn_Variant::Date ? -1 : 0) << "dates: see CompareOrders";
            }
        }
    }
}

TEST(Zn_Variant, CompareOrders)
{
    const Zn_DateTime july(2004, 7, 15, 0, 0, 0);
    struct Row {
        Zn_Variant a, b;
        int order;
    };
    const Row rows[] = {
        {Zn_Variant(1), Zn_Variant(2), -1},
        {Zn_Variant(2), Zn_Variant(1), 1},
        {Zn_Variant(INT32_MIN), Zn_Variant(1), 1}, // the difference wraps
        {Zn_Variant(INT32_MAX), Zn_Variant(-1), -1},
        {Zn_Variant(1.5), Zn_Variant(2.5), -1},
        {Zn_Variant(1.5), Zn_Variant(std::nan("")), 1},
        {Zn_Variant(Zn_Currency(1, 0)), Zn_Variant(Zn_Currency(2, 0)), -1},
        {Zn_Variant(Zn_Currency(2, 0)), Zn_Variant(Zn_Currency(1, 0)), 1},
        {Zn_Variant(u"a"), Zn_Variant(u"b"), -1},
        {Zn_Variant(u"a"), Zn_Variant(u"B"), 1},
        {Zn_Variant(u""), Zn_Variant(u"a"), -1},
        {Zn_Variant(Bytes("ab")), Zn_Variant(Bytes("ac")), -1},
        {Zn_Variant(Bytes("b")), Zn_Variant(Bytes("ac")), -1},
        {Zn_Variant(Bytes("")), Zn_Variant(Bytes("a")), -1},
        {Zn_Variant(Bytes("")), Zn_Variant(Bytes("")), 0},
        // A date is compared with the bits of the other read as an amount: huge for any but day 0.
        {Zn_Variant(july), Zn_Variant(Zn_DateTime()), 1},
        {Zn_Variant(july), Zn_Variant(Zn_DateTime(1.0)), -1},
        {Zn_Variant(Zn_DateTime()), Zn_Variant(Zn_DateTime()), 0},
    };
    for (const Row& row : rows) {
        const int order = row.a.Compare(row.b);
        EXPECT_EQ((order > 0) - (order < 0), row.order) << row.a.ToAString(0) << " with " << row.b.ToAString(0);
        EXPECT_EQ(row.a == row.b, row.order == 0);
    }
    EXPECT_EQ(Zn_Variant(u"a"), Zn_Variant(u"a"));
}

// A variant against plain values, one column for each kind that can be equal.
TEST(Zn_Variant, EqualsPlainValues)
{
    const Zn_Variant integer(5), decimal(5.0), amount(Zn_Currency(5, 2500)), date(Zn_DateTime(5.25)), text(u"5");
    const Zn_Variant* all[] = {&integer, &decimal, &amount, &date, &text};
    const auto matches = [&](const auto& plain) {
        std::string found;
        for (const Zn_Variant* v : all) {
            found += *v == plain ? '1' : '0';
            EXPECT_NE(*v == plain, *v != plain);
        }
        return found;
    };
    EXPECT_EQ(matches(5), "11110") << "fractions of amounts and dates are ignored";
    EXPECT_EQ(matches(5L), "11110");
    EXPECT_EQ(matches(6), "00000");
    EXPECT_EQ(Zn_Variant(INT32_MIN) == LONG_MIN, sizeof(long) == 4) << "compared as it is, not clamped";
    EXPECT_EQ(matches(5.0), "11000");
    EXPECT_EQ(matches(5.25), "00110");
    EXPECT_EQ(matches(Zn_Currency(5, 0)), "11000");
    EXPECT_EQ(matches(Zn_Currency(5, 2500)), "10110");
    EXPECT_EQ(matches(Zn_DateTime(5.0)), "11000");
    EXPECT_EQ(matches(Zn_DateTime(5.25)), "10110");
    EXPECT_EQ(matches(u"5"), "00001");
    EXPECT_EQ(matches(Zn_WString(u"5")), "00001");
    EXPECT_EQ(matches(std::u16string_view(u"55").substr(1)), "00001");
    EXPECT_EQ(matches(static_cast<const char16_t*>(nullptr)), "00000");
    EXPECT_FALSE(Zn_Variant() == 0 || Zn_Variant() == u"" || OfType(1) == 0.0);
}

TEST(Zn_Variant, TextOfObjects)
{
    ObjectDouble object(u"clock", -1), outer(u"outer", -1);
    object.value = Zn_Variant(u"tick");
    Zn_Variant v;
    v.SetObject(nullptr, nullptr, &object);
    EXPECT_EQ(v.ToString(), u"tick");
    outer.value = v; // an object whose value is an object
    Zn_Variant chain;
    chain.SetObject(nullptr, nullptr, &outer);
    EXPECT_EQ(chain.ToString(), u"tick");
    Zn_VariantList list;
    list.Add(chain);
    list.Add(Zn_Variant(1));
    object.value = Zn_Variant(list); // and that one's value holds it again
    EXPECT_EQ(chain.ToAString(0), "[,1]") << "within itself it is empty";
    EXPECT_EQ(chain.ToInteger(), 0);
    object.value = Zn_Variant(u"12");

    for (const bool failing : {true, false}) {
        object.code = failing ? -3 : 0;
        object.defaultName = failing ? u"value" : nullptr;
        EXPECT_EQ(chain.ToString(), u"[object:clock]") << "of the object that failed";
        EXPECT_EQ(v.ToAString(0), "[object:clock]");
        EXPECT_EQ(v.ToInteger(), 0);
        EXPECT_EQ(v.ToDouble(), 0.0);
        EXPECT_EQ(v.ToCurrency().GetRaw(), 0);
        EXPECT_EQ(v.ToDateTime().GetStored(), 0.0);
    }
    object.id.Empty();
    EXPECT_EQ(v.ToString(), u"[object:]");

    object.defaultName = u"value";
    object.givesItself = true;
    EXPECT_EQ(v.ToInteger() + v.ToDouble() + v.ToString().GetLength(), 0);
    EXPECT_LT(object.reads, 1000);
}

TEST(Zn_Variant, TextOfCodePages)
{
    Zn_VariantList list;
    list.Add(Zn_Variant(u"\u00E9"));
    list.Add(Zn_Variant(u"\u20AC"));
    EXPECT_EQ(Zn_Variant(list).ToAString(1252), "[\xE9,\x80]");
    EXPECT_EQ(Zn_Variant(list).ToString(), u"91\u00E9,\u20AC]");
    EXPECT_EQ(Zn_Variant(Zn_VariantList()).ToString(), u"91]");
}

} // namespace
