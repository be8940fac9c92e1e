// Text: code pages and XML escaping in bytes per second, numbers against the C library's and, where Qt is
// installed, UTF-8 against QString. Every conversion is checked before it is timed.
#include "Zn_AString.h"
#include "Zn_WString.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <type_traits>
#include <vector>
#ifdef ZN_HAS_QT
#    include <QString>
#endif

namespace {

void Check(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "wrong result: %s\n", what);
    std::exit(1);
}

// About 2 MB of a message's lines, one in eight of them with Korean, or of Korean alone.
Zn_WString Lines(bool korean)
{
    Zn_WString text;
    for (int line = 0; line < 30000; ++line) {
        if (!korean)
            text += u"<row id=\"42\" name=\"Some text of a message\">12345.678</row>\n";
        if (korean || line % 8 == 0)
            text += u"\uC548\uB155\uD558\uC138\uC694 \uC138\uACC4\uC778 \uC5EC\uB7EC\uBD84, "
                    u"\uBC18\uAC11\uC2B5\uB2C8\uB2E4.\n";
    }
    return text;
}

void Decode(benchmark::State& state, unsigned codePage, bool korean)
{
    const Zn_WString text = Lines(korean);
    const Zn_AString bytes(text, text.GetLength(), codePage);
    Check(Zn_WString(bytes, bytes.GetLength(), codePage) == text, "decode");
    for (auto _ : state)
        benchmark::DoNotOptimize(Zn_WString(bytes, bytes.GetLength(), codePage));
    state.SetBytesProcessed(state.iterations() * bytes.GetLength());
}

void Encode(benchmark::State& state, unsigned codePage, bool korean)
{
    const Zn_WString text = Lines(korean);
    const Zn_AString bytes(text, text.GetLength(), codePage);
    for (auto _ : state)
        benchmark::DoNotOptimize(Zn_AString(text, text.GetLength(), codePage));
    state.SetBytesProcessed(state.iterations() * bytes.GetLength());
}

#ifdef ZN_HAS_QT
void QtDecode(benchmark::State& state, bool korean)
{
    const std::string bytes = Lines(korean).ToUtf8();
    for (auto _ : state)
        benchmark::DoNotOptimize(QString::fromUtf8(bytes.data(), static_cast<int>(bytes.size())));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}
#endif

void EscapeXml(benchmark::State& state)
{
    const Zn_WString text = Lines(false);
    Check(text.EncodeXml().DecodeXml() == text, "escape");
    for (auto _ : state)
        benchmark::DoNotOptimize(text.EncodeXml());
    state.SetBytesProcessed(state.iterations() * text.GetLength() * 2);
}

std::vector<double> Numbers()
{
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> some(-1e6, 1e6);
    std::vector<double> numbers(1000);
    for (double& number : numbers)
        number = some(random);
    return numbers;
}

void WriteNumbers(benchmark::State& state)
{
    const std::vector<double> numbers = Numbers();
    Zn_WString text;
    for (auto _ : state) {
        for (const double number : numbers)
            text.Set(number);
        benchmark::DoNotOptimize(text);
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

void PrintNumbers(benchmark::State& state)
{
    const std::vector<double> numbers = Numbers();
    char text[64];
    for (auto _ : state) {
        for (const double number : numbers)
            std::snprintf(text, sizeof text, "%.17g", number);
        benchmark::DoNotOptimize(text);
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}

template <class String>
void ReadNumbers(benchmark::State& state)
{
    std::vector<Zn_WString> texts;
    std::vector<std::string> narrow;
    for (const double number : Numbers()) {
        texts.emplace_back().Set(number);
        narrow.push_back(texts.back().ToUtf8());
        Check(texts.back().ToDouble() == number, "number");
    }
    double sum = 0;
    for (auto _ : state) {
        if constexpr (std::is_same_v<String, Zn_WString>) {
            for (const Zn_WString& text : texts)
                sum += text.ToDouble();
        } else {
            for (const std::string& text : narrow)
                sum += std::strtod(text.c_str(), nullptr);
        }
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * 1000);
}

BENCHMARK_CAPTURE(Decode, utf8_lines, 65001u, false);
BENCHMARK_CAPTURE(Decode, utf8_korean, 65001u, true);
#ifdef ZN_HAS_QT
BENCHMARK_CAPTURE(QtDecode, utf8_lines, false);
BENCHMARK_CAPTURE(QtDecode, utf8_korean, true);
#endif
BENCHMARK_CAPTURE(Decode, page949_lines, 949u, false);
BENCHMARK_CAPTURE(Decode, page949_korean, 949u, true);
BENCHMARK_CAPTURE(Encode, utf8_lines, 65001u, false);
BENCHMARK_CAPTURE(Encode, utf8_korean, 65001u, true);
BENCHMARK_CAPTURE(Encode, page949_lines, 949u, false);
BENCHMARK_CAPTURE(Encode, page949_korean, 949u, true);
BENCHMARK(EscapeXml);
BENCHMARK(WriteNumbers);
BENCHMARK(PrintNumbers);
BENCHMARK(ReadNumbers<Zn_WString>);
BENCHMARK(ReadNumbers<std::string>);

} // namespace

BENCHMARK_MAIN();
