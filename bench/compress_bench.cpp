// The compressor beside the search trees it stands in for, zlib and lz4: ten megabytes of message and text, and inputs
// that are hard for one coder or the other. Ratios of the coders follow at the end.
#include "Zn_Compress.h"
#include "Zn_Stream.h"

#include "stream/coder_inputs.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

#ifdef ZN_HAS_ZLIB
#    include <zlib.h>
#endif
#ifdef ZN_HAS_LZ4
#    include <lz4.h>
#endif

namespace {

constexpr int kMessageSize = 10'000'000;
constexpr int kHardSize = 500'000;

void Require(bool holds, const char* what)
{
    if (!holds) {
        std::fprintf(stderr, "wrong: %s\n", what);
        std::exit(1);
    }
}

Zn_Buffer BufferOf(const plain::Bytes& bytes)
{
    Zn_Buffer buffer;
    buffer.Set(bytes.data(), static_cast<int>(bytes.size()));
    return buffer;
}

// A message of as many copies of the sample's tables as it takes.
Zn_Buffer MakeMessage(const std::function<void(const Zn_VariableList&, Zn_DatasetList&, Zn_Buffer&)>& save)
{
    std::ifstream file(ZN_BENCH_DATA "/store/store.bin", std::ios::binary);
    const plain::Bytes bytes((std::istreambuf_iterator<char>(file)), {});
    Zn_VariableList params;
    Zn_DatasetList sample, tables;
    Require(ZnBinStreamLoad(params, sample, BufferOf(bytes)) == 3, "the sample message");
    Zn_Buffer message;
    save(params, sample, message);
    for (int copies = kMessageSize / message.GetLength() + 1; copies > 0; --copies) {
        for (const Zn_Dataset& table : sample)
            tables.AddDataset(Zn_WString::FromUtf8(table.GetId().ToUtf8() + std::to_string(copies)), &table);
    }
    save(params, tables, message);
    Require(message.GetLength() >= kMessageSize, "the size of the message");
    return message;
}

// Sentences of made-up words, the n-th of them about 1/n times as frequent as the first.
plain::Bytes MakeText()
{
    std::mt19937 random(1);
    const auto pick = [&](std::string_view from) { return from[random() % from.size()]; };
    std::vector<std::string> words(5000);
    for (std::string& word : words) {
        for (unsigned n = 1 + random() % 4; n > 0; --n)
            word += {pick("bcdfghlmnprstvw"), pick("aeiou"), pick("aeinorst")};
    }
    plain::Bytes text;
    while (text.size() < kMessageSize) {
        const double rank = std::pow(static_cast<double>(words.size()), static_cast<double>(random()) / 4294967296.0);
        const std::string& word = words[static_cast<std::size_t>(rank) - 1];
        text.insert(text.end(), word.begin(), word.end());
        text.push_back(random() % 12 == 0 ? '\n' : ' ');
    }
    return text;
}

struct Input {
    std::string name;
    Zn_Buffer bytes;
    bool isMessage;
    Zn_Buffer small{};
    int fastSize = 0;
};

std::vector<Input> MakeInputs()
{
    const auto saveXml = [](const auto& params, auto& tables, Zn_Buffer& out) {
        ZnXmlStreamSave(params, tables, out, 65001, nullptr, 0);
    };
    const auto saveBinary = [](const auto& params, auto& tables, Zn_Buffer& out) {
        ZnBinStreamSave(params, tables, out, 0);
    };
    std::vector<Input> inputs{{"xml", MakeMessage(saveXml), true},
                              {"binary", MakeMessage(saveBinary), true},
                              {"text", BufferOf(MakeText()), true}};
    for (const InputKind& kind : InputKinds())
        inputs.push_back({kind.name, BufferOf(kind.Make(kHardSize, 1)), false});
    return inputs;
}

std::vector<Input>& Inputs()
{
    static std::vector<Input> inputs = MakeInputs();
    return inputs;
}

void CheckAll()
{
    const Zn_Compress coder;
    for (Input& input : Inputs()) {
        Zn_Buffer fast, again;
        coder.Encode(input.bytes, input.small);
        const plain::Bytes stream = plain::Encode(input.bytes.GetSpan());
        Require(input.small.GetLength() == static_cast<int>(stream.size()) + 6 &&
                    std::memcmp(input.small.GetData() + 6, stream.data(), stream.size()) == 0,
                "the bytes of Encode");
        coder.EncodeFast(input.bytes, fast);
        input.fastSize = fast.GetLength();
        for (const Zn_Buffer& container : {input.small, fast}) {
            coder.Decode(container, again);
            Require(again == input.bytes, "the bytes of Decode");
        }
    }
#ifdef ZN_HAS_ZLIB
    const Zn_Buffer& bytes = Inputs()[0].bytes;
    Require(zn_crc32(0, bytes.GetData(), bytes.GetLength()) ==
                crc32(0, bytes.GetData(), static_cast<uInt>(bytes.GetLength())),
            "the checksum");
#endif
}

// Times body, which returns the size of what it made.
void Add(const std::string& what, const Input& input, std::function<std::size_t()> body)
{
    const auto run = [&input, body = std::move(body)](benchmark::State& state) {
        std::size_t size = 0;
        for (auto _ : state)
            benchmark::DoNotOptimize(size = body());
        state.SetBytesProcessed(state.iterations() * input.bytes.GetLength());
        state.counters["size"] = static_cast<double>(size);
    };
    benchmark::RegisterBenchmark((what + "/" + input.name).c_str(), run)->Unit(benchmark::kMillisecond)->MinTime(0.3);
}

void AddEncoders(const Input& input)
{
    Add("encode_plain", input, [&] { return plain::Encode(input.bytes.GetSpan()).size() + 6; });
    Add("encode", input, [&] {
        Zn_Buffer out;
        Zn_Compress().Encode(input.bytes, out);
        return out.GetSpan().size();
    });
    Add("encode_fast", input, [&] {
        Zn_Buffer out;
        Zn_Compress().EncodeFast(input.bytes, out);
        return out.GetSpan().size();
    });
}

void AddDecoders(const Input& input)
{
    Add("decode_plain", input, [&] {
        Zn_Buffer out;
        plain::Decode(input.small.GetSpan().subspan(6), [&](unsigned char byte) { out.Append(&byte, 1); });
        return out.GetSpan().size();
    });
    Add("decode", input, [&] {
        Zn_Buffer out;
        Zn_Compress().Decode(input.small, out);
        return out.GetSpan().size();
    });
}

#ifdef ZN_HAS_ZLIB
void AddZlib(const Input& input, int level)
{
    const std::string name = "_zlib" + std::to_string(level);
    const auto encode = [&input, level] {
        uLongf size = compressBound(static_cast<uLong>(input.bytes.GetLength()));
        plain::Bytes out(size);
        compress2(out.data(), &size, input.bytes.GetData(), static_cast<uLong>(input.bytes.GetLength()), level);
        out.resize(size);
        return out;
    };
    Add("encode" + name, input, [encode] { return encode().size(); });
    Add("decode" + name, input, [&input, small = encode()] {
        uLongf size = static_cast<uLongf>(input.bytes.GetLength());
        plain::Bytes out(size);
        uncompress(out.data(), &size, small.data(), static_cast<uLong>(small.size()));
        return out.size();
    });
}
#endif

#ifdef ZN_HAS_LZ4
void AddLz4(const Input& input)
{
    const auto encode = [&input] {
        std::vector<char> out(static_cast<std::size_t>(LZ4_compressBound(input.bytes.GetLength())));
        const char* in = reinterpret_cast<const char*>(input.bytes.GetData());
        const int size = LZ4_compress_default(in, out.data(), input.bytes.GetLength(), static_cast<int>(out.size()));
        out.resize(static_cast<std::size_t>(size));
        return out;
    };
    Add("encode_lz4", input, [encode] { return encode().size(); });
    Add("decode_lz4", input, [&input, small = encode()] {
        std::vector<char> out(input.bytes.GetSpan().size());
        LZ4_decompress_safe(small.data(), out.data(), static_cast<int>(small.size()), static_cast<int>(out.size()));
        return out.size();
    });
}
#endif

void AddAll()
{
    for (const Input& input : Inputs()) {
        AddEncoders(input);
        if (!input.isMessage)
            continue;
        AddDecoders(input);
#ifdef ZN_HAS_ZLIB
        AddZlib(input, 1);
        AddZlib(input, 6);
#endif
#ifdef ZN_HAS_LZ4
        AddLz4(input);
#endif
    }
    const Input& xml = Inputs()[0];
    Add("crc32", xml, [&] { return std::size_t{zn_crc32(0, xml.bytes.GetData(), xml.bytes.GetLength())}; });
#ifdef ZN_HAS_ZLIB
    Add("crc32_zlib", xml,
        [&] { return std::size_t{crc32(0, xml.bytes.GetData(), static_cast<uInt>(xml.bytes.GetLength()))}; });
#endif
}

// The usual table, and how many times as fast each of the library's coders is as what it is measured by.
class RatioReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs)
            times_[run.run_name.function_name] = run.GetAdjustedCPUTime();
        ConsoleReporter::ReportRuns(runs);
    }

    void Finalize() override
    {
        for (const Input& input : Inputs()) {
            Print("encode", "encode_plain", input.name);
            Print("encode_fast", "encode_plain", input.name);
            Print("decode", "decode_plain", input.name);
            std::printf("%-14s encode_fast makes %.4f of the bytes of encode\n", input.name.c_str(),
                        static_cast<double>(input.fastSize) / input.small.GetLength());
        }
        Print("crc32", "crc32_zlib", "xml");
    }

private:
    void Print(const std::string& ours, const std::string& other, const std::string& input)
    {
        const auto a = times_.find(ours + "/" + input), b = times_.find(other + "/" + input);
        if (a != times_.end() && b != times_.end())
            std::printf("%-14s %-11s %6.2f x as fast as %s\n", input.c_str(), ours.c_str(), b->second / a->second,
                        other.c_str());
    }

    std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    CheckAll();
    AddAll();
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
}
