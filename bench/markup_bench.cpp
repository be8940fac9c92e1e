// Reading and writing markup, on the sample message repeated to 20 MB. Rates are of the UTF-8 text.
#include "Zn_SAXIterator.h"
#include "Zn_XmlDOM.h"

#include "markup/markup_writer.h"
#include "markup/tokenizer.h"
#include "markup/xml_text.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <deque>
#include <fstream>
#include <iostream>
#include <sstream>
#include <vector>

namespace {

using View = std::u16string_view;

std::string MakeMessage()
{
    std::ifstream file(ZN_BENCH_DATA "/store/store.xml", std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    const std::string text = content.str();
    const std::string_view tail = "\r\n</root>";
    const std::size_t begin = text.find("<root>") + 6;
    const std::size_t end = text.rfind(tail);
    std::string message = text.substr(0, begin);
    while (message.size() < 20000000)
        message.append(text, begin, end - begin);
    return message.append(tail);
}

const std::string& Message()
{
    static const std::string message = MakeMessage();
    return message;
}

const Zn_WString& WideMessage()
{
    static const Zn_WString message = Zn_WString::FromUtf8(Message());
    return message;
}

void SetRate(benchmark::State& state)
{
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(Message().size()));
}

void Require(bool good)
{
    if (!good) {
        std::cerr << "wrong result\n";
        std::exit(1);
    }
}

struct CountingHandler {
    void ProcInstr(View, View) { ++pieces; }
    void Declaration(View, View) { ++pieces; }
    void EmptyElement(View, View) { ++pieces; }
    void StartElement(View, View) { ++pieces; }
    void EndElement(View) { ++pieces; }
    void TextRun(View, View text) { pieces += text.empty() ? 0 : 1; }
    void CData(View) { ++pieces; }
    void Comment(View) { ++pieces; }

    int pieces = 0;
};

void Tokenize(benchmark::State& state)
{
    const View text = WideMessage().GetView();
    for (auto _ : state) {
        CountingHandler handler;
        Require(zn::Tokenizer(handler).Parse(text));
        benchmark::DoNotOptimize(handler.pieces);
    }
    SetRate(state);
}
BENCHMARK(Tokenize)->Unit(benchmark::kMillisecond);

struct VirtualCounter : Zn_SAXCtxHandler {
    int OnCharSet(unsigned) override { return 1; }
    int OnProcInstr(const char16_t*, int, const char16_t*, int) override { return ++pieces; }
    int OnDeclaration(const char16_t*, int, const char16_t*, int) override { return ++pieces; }
    int OnEmptyElement(const char16_t*, int, const char16_t*, int) override { return ++pieces; }
    int OnStartElement(const char16_t*, int, const char16_t*, int) override { return ++pieces; }
    int OnEndElement(const char16_t*, int) override { return ++pieces; }
    int OnWhiteSpace(const char16_t*, int) override { return 1; }
    int OnText(const char16_t*, int) override { return ++pieces; }
    int OnCData(const char16_t*, int) override { return ++pieces; }
    int OnComment(const char16_t*, int) override { return ++pieces; }

    int pieces = 0;
};

void SaxFromBytes(benchmark::State& state)
{
    const int length = static_cast<int>(Message().size());
    for (auto _ : state) {
        VirtualCounter handler;
        Require(Zn_SAXIterator(&handler).Parse(Message().data(), length, 0) == 1);
        benchmark::DoNotOptimize(handler.pieces);
    }
    SetRate(state);
}
BENCHMARK(SaxFromBytes)->Unit(benchmark::kMillisecond);

// The calls that write the message, taken down from reading it.
struct Call {
    enum What { Open, Text, Close } what;
    int kind;
    Zn_WString text;
    std::vector<std::pair<Zn_WString, Zn_WString>> attributes;
};

class CallRecorder {
public:
    void ProcInstr(View name, View attributes) { Add(Zn_DOMElement::ProcInstr, name, attributes), EndElement({}); }
    void Declaration(View, View) {}
    void EmptyElement(View name, View attributes)
    {
        Add(Zn_DOMElement::EmptyElement, name, attributes), EndElement({});
    }
    void StartElement(View name, View attributes) { Add(Zn_DOMElement::Element, name, attributes); }
    void EndElement(View) { calls.push_back({Call::Close, 0, {}, {}}); }
    void TextRun(View run, View text)
    {
        if (!text.empty())
            calls.push_back({Call::Text, Zn_DOMElement::Text, zn::DecodedXml(run), {}});
    }
    void CData(View) {}
    void Comment(View) {}

    std::deque<Call> calls;

private:
    void Add(int kind, View name, View attributes)
    {
        calls.push_back({Call::Open, kind, Zn_WString(name), {}});
        Zn_DOMElement parsed;
        parsed.MakeVarList(attributes);
        for (const Zn_NamedStr& attribute : parsed.attributes)
            calls.back().attributes.emplace_back(attribute.Id(), attribute.Str());
    }
};

void WriteEvents(benchmark::State& state)
{
    CallRecorder recorder;
    Require(zn::Tokenizer(recorder).Parse(WideMessage().GetView()));
    const auto write = [&](auto& output) {
        zn::MarkupWriter writer(output, {.blanks = zn::EndBlanks::Plain});
        for (const Call& call : recorder.calls) {
            if (call.what == Call::Text) {
                writer.Text(call.kind, call.text.GetView());
            } else if (call.what == Call::Close) {
                writer.Close();
            } else {
                writer.Open(call.kind, call.text);
                for (const auto& [name, value] : call.attributes)
                    writer.Attribute(name, value.GetView());
            }
        }
    };
    const auto codePage = static_cast<unsigned>(state.range(0));
    for (auto _ : state) {
        Zn_Buffer out;
        Require(zn::WriteMarkup(out, codePage, zn::Missing::XmlReference, write));
        if (codePage == zn::kUtf8)
            Require(std::string_view(reinterpret_cast<const char*>(out.GetData()), out.GetSpan().size()) == Message());
    }
    SetRate(state);
}
BENCHMARK(WriteEvents)->Arg(65001)->Arg(1252)->Arg(949)->Unit(benchmark::kMillisecond);

void LoadDocument(benchmark::State& state)
{
    const int length = static_cast<int>(Message().size());
    for (auto _ : state) {
        Zn_XmlDOM doc;
        Require(doc.Load(Message().data(), length, 0) == 1);
    }
    SetRate(state);
}
BENCHMARK(LoadDocument)->Unit(benchmark::kMillisecond);

void SaveDocument(benchmark::State& state)
{
    Zn_XmlDOM doc;
    Require(doc.Load(Message().data(), static_cast<int>(Message().size()), 0) == 1);
    for (auto _ : state) {
        Zn_Buffer out;
        doc.Save(out, 1, 1, 0);
        Require(out.GetLength() > 19000000);
    }
    SetRate(state);
}
BENCHMARK(SaveDocument)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
