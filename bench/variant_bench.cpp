// Variants against std::variant and, where Qt is installed, QVariant: copying, making, adding and comparing. Each
// value is checked before it is timed. The ratios at the end are the time of each peer over that of Zn_Variant,
// measured in turns in this one run: above 1 the variant is the faster one.
#include "ZnClassLib.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <variant>
#include <vector>
#ifdef ZN_HAS_QT
#    include <QString>
#    include <QVariant>
#endif

namespace {

using StdVariant = std::variant<std::monostate, int, double, std::u16string>;

constexpr char16_t kText[] =
    u"nineteen characters"; // 19: as long as a name, too long to be kept inside a std::u16string
constexpr int kBatch = 1000;

void Check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "wrong result: %s\n", what);
    std::exit(1);
}

// One side of the comparison: how each type makes its values and computes with them.
struct Zn {
    using Value = Zn_Variant;
    static constexpr const char* name = "Zn_Variant";
    static Value Of(int number) { return Value(number); }
    static Value Of(const char16_t* text) { return Value(text); }
    static void Add(const Value& a, const Value& b, Value& sum) { Var_Add(a, b, sum); }
    static bool IsLess(const Value& a, const Value& b) { return Var_Cmp(a, b, ZN_OP_LESS) != 0; }
};

struct Std {
    using Value = StdVariant;
    static constexpr const char* name = "std::variant";
    static Value Of(int number) { return Value(number); }
    static Value Of(const char16_t* text) { return Value(std::u16string(text)); }
    static void Add(const Value& a, const Value& b, Value& sum)
    {
        sum = std::visit(
            [](const auto& x, const auto& y) -> Value {
                using X = std::decay_t<decltype(x)>;
                using Y = std::decay_t<decltype(y)>;
                if constexpr (std::is_arithmetic_v<X> && std::is_arithmetic_v<Y>)
                    return Value(x + y);
                else if constexpr (std::is_same_v<X, std::u16string> && std::is_same_v<Y, std::u16string>)
                    return Value(x + y);
                else
                    return Value();
            },
            a, b);
    }
    static bool IsLess(const Value& a, const Value& b) { return a < b; }
};

#ifdef ZN_HAS_QT
struct Qt {
    using Value = QVariant;
    static constexpr const char* name = "QVariant";
    static Value Of(int number) { return Value(number); }
    static Value Of(const char16_t* text) { return Value(QString::fromUtf16(text)); }
    static void Add(const Value& a, const Value& b, Value& sum)
    {
        if (a.type() == QVariant::String)
            sum = a.toString() + b.toString();
        else
            sum = a.toInt() + b.toInt();
    }
    static bool IsLess(const Value& a, const Value& b)
    {
        return a.type() == QVariant::String ? a.toString() < b.toString() : a.toInt() < b.toInt();
    }
};
#endif

// The work that is timed, kBatch times over.
// As cells of a table are copied: from one block of values into memory for another, and destroyed again.
template <class Side, class Raw>
struct Copy {
    using Value = typename Side::Value;
    static constexpr const char* name = "copy";
    std::vector<Value> from = std::vector<Value>(kBatch, Side::Of(Raw{}.value));
    std::allocator<Value> memory;
    Value* to = memory.allocate(kBatch);
    ~Copy() { memory.deallocate(to, kBatch); }
    void Run()
    {
        std::uninitialized_copy(from.begin(), from.end(), to);
        benchmark::DoNotOptimize(to);
        benchmark::ClobberMemory();
        std::destroy_n(to, kBatch);
    }
    void CheckResult() { Check(Value(from[0]) == Side::Of(Raw{}.value), name); }
};

template <class Side, class Raw>
struct Construct {
    static constexpr const char* name = "construct";
    void Run()
    {
        for (int i = 0; i < kBatch; ++i) {
            auto raw = Raw{}.value;
            benchmark::DoNotOptimize(raw);
            typename Side::Value made = Side::Of(raw);
            benchmark::DoNotOptimize(made);
        }
    }
    void CheckResult() { Check(Side::Of(Raw{}.value) == Side::Of(Raw{}.value), name); }
};

template <class Side, class Raw>
struct Add {
    static constexpr const char* name = "add";
    typename Side::Value a = Side::Of(Raw{}.value), b = Side::Of(Raw{}.value), sum;
    void Run()
    {
        for (int i = 0; i < kBatch; ++i) {
            benchmark::DoNotOptimize(a);
            Side::Add(a, b, sum);
            benchmark::DoNotOptimize(sum);
        }
    }
    void CheckResult()
    {
        Side::Add(a, b, sum);
        Check(sum == Side::Of(Raw{}.twice), name);
    }
};

template <class Side, class Raw>
struct Compare {
    static constexpr const char* name = "compare";
    typename Side::Value a = Side::Of(Raw{}.value), b = Side::Of(Raw{}.twice);
    void Run()
    {
        for (int i = 0; i < kBatch; ++i) {
            benchmark::DoNotOptimize(a);
            bool less = Side::IsLess(a, b);
            benchmark::DoNotOptimize(less);
        }
    }
    void CheckResult() { Check(Side::IsLess(a, b) && !Side::IsLess(b, a), name); }
};

struct Number {
    static constexpr const char* name = "integer";
    int value = 1234567;
    int twice = 2469134;
};

struct Text {
    static constexpr const char* name = "text";
    const char16_t* value = kText;
    const char16_t* twice = u"nineteen charactersnineteen characters";
};

template <template <class, class> class Work, class Side, class Raw>
void Measure(benchmark::State& state)
{
    Work<Side, Raw> work;
    work.CheckResult();
    for (auto _ : state)
        work.Run();
    state.SetItemsProcessed(state.iterations() * kBatch);
}

template <class Work>
double NanosecondsOnce(Work& work)
{
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 20; ++i)
        work.Run();
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count() / (20 * kBatch);
}

// The sides in turns, the best of each: what else the machine does in between disturbs none more than the others.
// Prints a line and returns the ratio to std::variant.
template <template <class, class> class Work, class Raw>
double Ratio()
{
    Work<Zn, Raw> ours;
    Work<Std, Raw> theirs;
    double best = 1e9, peer = 1e9;
#ifdef ZN_HAS_QT
    Work<Qt, Raw> other;
    double qt = 1e9;
#endif
    for (int turn = 0; turn < 100; ++turn) {
        best = std::min(best, NanosecondsOnce(ours));
        peer = std::min(peer, NanosecondsOnce(theirs));
#ifdef ZN_HAS_QT
        qt = std::min(qt, NanosecondsOnce(other));
#endif
    }
    std::printf("%-10s %-8s %8.2f ns %10.2f", Work<Zn, Raw>::name, Raw::name, best, peer / best);
#ifdef ZN_HAS_QT
    std::printf(" %10.2f", qt / best);
#endif
    std::printf("\n");
    return peer / best;
}

template <template <class, class> class Work, class Side, class Raw>
void RegisterOne()
{
    const std::string name = std::string(Work<Side, Raw>::name) + '/' + Raw::name + '/' + Side::name;
    benchmark::RegisterBenchmark(name.c_str(), Measure<Work, Side, Raw>);
}

template <template <class, class> class Work>
void Register()
{
    RegisterOne<Work, Zn, Number>();
    RegisterOne<Work, Std, Number>();
    RegisterOne<Work, Zn, Text>();
    RegisterOne<Work, Std, Text>();
#ifdef ZN_HAS_QT
    RegisterOne<Work, Qt, Number>();
    RegisterOne<Work, Qt, Text>();
#endif
}

bool PrintRatios()
{
    std::printf("\n%-10s %-8s %11s %s\n", "", "", "Zn_Variant", "times as fast as std::variant, QVariant");
    const double copyInteger = Ratio<Copy, Number>();
    const double copyText = Ratio<Copy, Text>();
    Ratio<Construct, Number>();
    Ratio<Construct, Text>();
    Ratio<Add, Number>();
    Ratio<Add, Text>();
    Ratio<Compare, Number>();
    Ratio<Compare, Text>();
    const bool reached = copyInteger >= 1.0 && copyText >= 1.2;
    std::printf("copying: integer at least 1.0x, text at least 1.2x: %s\n", reached ? "reached" : "MISSED");
    return reached;
}

} // namespace

int main(int argc, char** argv)
{
    Register<Copy>();
    Register<Construct>();
    Register<Add>();
    Register<Compare>();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return PrintRatios() ? 0 : 1;
}
